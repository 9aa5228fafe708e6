#include "contents/SettingsText.h"

#include "datafile/Text.h"

#include <cerrno>
#include <cwchar>
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

namespace {

bool IsDigitChar(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// The whole text (blanks around it aside) is [sign]digits, or with `real`
// [sign]digits[.digits] or [sign].digits, then [e[sign]digits].
bool IsNumberText(std::wstring_view typed, bool real) {
    const std::wstring text = TrimBlanks(typed);
    std::size_t i = 0;
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-'))
        ++i;
    std::size_t digits = 0;
    for (; i < text.size() && IsDigitChar(text[i]); ++i)
        ++digits;
    if (real && i < text.size() && text[i] == L'.') {
        for (++i; i < text.size() && IsDigitChar(text[i]); ++i)
            ++digits;
    }
    if (digits == 0)
        return false;
    if (real && i < text.size() && (text[i] == L'e' || text[i] == L'E')) {
        ++i;
        if (i < text.size() && (text[i] == L'+' || text[i] == L'-'))
            ++i;
        const std::size_t start = i;
        for (; i < text.size() && IsDigitChar(text[i]); ++i) {
        }
        if (i == start)
            return false;
    }
    return i == text.size();
}

bool FitsInteger(std::wstring_view typed) {
    const std::wstring text = TrimBlanks(typed);
    errno = 0;
    const long long value = std::wcstoll(text.c_str(), nullptr, 10);
    return errno == 0 && value >= INT32_MIN && value <= INT32_MAX;
}

} // namespace

bool StoreTypedSettingsText(Base::CVariable& variable, std::wstring_view typed,
                            std::wstring& allowed) {
    const std::wstring text(typed);
    switch (variable.m_nKind) {
    case Base::eBool:
        for (const wchar_t* value : {L"On", L"Off"}) {
            if (EqualsNoCase(TrimBlanks(text), value))
                return StoreSettingsText(variable, value);
        }
        allowed = L"On or Off";
        return false;
    case Base::eInteger:
        if (IsNumberText(text, false) && FitsInteger(text))
            return StoreSettingsText(variable, TrimBlanks(text));
        allowed = L"a whole number";
        return false;
    case Base::eReal:
        if (IsNumberText(text, true))
            return StoreSettingsText(variable, TrimBlanks(text));
        allowed = L"a number, with a point for decimals (such as 2.5)";
        return false;
    case Base::eChoice: {
        const std::wstring trimmed = TrimBlanks(text);
        for (const EPrjVal choice : variable.m_arrChoices) {
            if (EqualsNoCase(trimmed, PrjValText(choice)) ||
                (IsNumberText(trimmed, false) && FitsInteger(trimmed) &&
                 WToI(trimmed) == static_cast<int>(choice))) {
                variable.SetChoice(static_cast<std::int32_t>(choice), false);
                return true;
            }
        }
        allowed = L"one of the choices (label or number):";
        for (const EPrjVal choice : variable.m_arrChoices)
            allowed += fmt::format(L"\n  {} {}", static_cast<int>(choice), PrjValText(choice));
        return false;
    }
    default:
        return StoreSettingsText(variable, text);
    }
}
