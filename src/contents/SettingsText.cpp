#include "contents/SettingsText.h"

#include "datafile/Text.h"

#include <fmt/xchar.h>

using Base = CVX2D_ProjectSettingsBase;

std::wstring SettingsRealText(double value) {
    std::wstring text = fmt::format(L"{:f}", value);
    if (text.find(L'.') != std::wstring::npos) {
        while (!text.empty() && text.back() == L'0')
            text.pop_back();
        if (!text.empty() && text.back() == L'.')
            text += L'0';
    }
    return text;
}

std::wstring SettingsValueText(const Base::CVariable& variable) {
    switch (variable.m_nKind) {
    case Base::eBool:
        return variable.m_bValue ? L"On" : L"Off";
    case Base::eString:
        return variable.m_strValue;
    case Base::eFont:
        return variable.m_strFont;
    case Base::eInteger:
        return fmt::format(L"{}", variable.m_nValue);
    case Base::eReal:
        return SettingsRealText(variable.m_dValue);
    case Base::eFolder:
        return variable.m_strFolder;
    case Base::eText:
        return variable.m_strText;
    case Base::eChoice:
        return PrjValText(variable.m_nChoice);
    default:
        return L"";
    }
}

bool StoreSettingsText(Base::CVariable& variable, const std::wstring& text) {
    switch (variable.m_nKind) {
    case Base::eBool:
        variable.SetBool(text == L"On", false);
        return true;
    case Base::eString:
        variable.SetString(text, false);
        return true;
    case Base::eFont:
        variable.SetFont(text, false);
        return true;
    case Base::eInteger:
        variable.SetInteger(WToI(text), false);
        return true;
    case Base::eReal:
        variable.SetReal(WToF(text), false);
        return true;
    case Base::eFolder:
        variable.SetFolder(text, false);
        return true;
    case Base::eText:
        variable.SetText(text, false);
        return true;
    case Base::eChoice:
        return variable.SetChoiceByLabel(text);
    default:
        return false;
    }
}
