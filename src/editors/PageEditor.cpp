#include "editors/PageEditor.h"

#include <fmt/xchar.h>

std::wstring PageModifiedQuestion(const std::wstring& standardName, const std::wstring& what) {
    return L"Standard '" + standardName + L"' " + what +
           L" have been modified.\n\nDo you want to save your changes?";
}

bool CPageEditor::SaveFailed(const std::wstring& what, const std::wstring& standardName,
                             const std::wstring& file) {
    std::wstring text = fmt::format(L"Error saving {} of standard '{}'.", what, standardName);
    if (!file.empty())
        text += fmt::format(L"\n\nThe file '{}' could not be written.", file);
    m_prompter.Show(text, EPromptIcon::Stop);
    return false;
}

bool CPageEditor::Close() {
    if (!ApplyEnabled())
        return true;
    const SPrompt question{CloseQuestion(), L"", EPromptButtons::YesNo, EPromptIcon::Question,
                           EPromptAnswer::Yes};
    switch (m_prompter.Ask(question)) {
    case EPromptAnswer::Yes:
        return Apply();
    case EPromptAnswer::No:
        Discard();
        return true;
    default:
        return false;
    }
}
