#include "editors/PageEditor.h"

#include "datafile/DatafileProblem.h"

#include <fmt/xchar.h>

namespace {

std::wstring PageModifiedQuestion(const std::wstring& standardName, const std::wstring& what) {
    return L"Standard '" + standardName + L"' " + what +
           L" have been modified.\n\nDo you want to save your changes?";
}

} // namespace

bool CPageEditor::SaveFailed(const std::wstring& what, const std::wstring& file) {
    std::wstring text = fmt::format(L"Error saving {} of standard '{}'.", what, StandardName());
    // Why, when the datafile said: another workstation, a read-only share,
    // a full disk.
    const std::wstring why = DatafileProblemText();
    if (!why.empty())
        text += L"\n\n" + why;
    else if (!file.empty())
        text += fmt::format(L"\n\nThe file '{}' could not be written.", file);
    m_prompter.Show(text, EPromptIcon::Stop);
    return false;
}

std::wstring CPageEditor::StandardName() const {
    return m_projects.GetProjectName(m_nProjectId, true, true);
}

bool CPageEditor::Close() {
    if (!ApplyEnabled())
        return true;
    ClearDatafileProblem();
    const SPrompt question{PageModifiedQuestion(StandardName(), ContentsName()), L"",
                           EPromptButtons::YesNo, EPromptIcon::Question, EPromptAnswer::Yes};
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

bool CPageEditor::Revert() {
    if (ApplyEnabled())
        return false;
    Discard();
    return true;
}

void CPageEditor::SetStandard(std::int32_t projectId, const std::wstring& title) {
    m_nProjectId = projectId;
    m_strName = StandardName();
    m_strHeader = title + L" - " + m_strName;
}
