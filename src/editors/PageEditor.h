// What every page editor of a standard shares: Apply is enabled exactly while
// something is unsaved, Apply saves it, and closing a modified page asks
// whether to save.
#pragma once

#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <string>

class CPageEditor {
public:
    CPageEditor(const CVX2D_ProjectRegistry& projects, IPrompter& prompter)
        : m_projects(projects), m_prompter(prompter) {}
    virtual ~CPageEditor() = default;

    // The standard the page was opened on (0 before Open).
    std::int32_t ProjectId() const { return m_nProjectId; }

    // The page's title, such as "Lines - Pipe"; empty on a page whose title
    // does not change.
    const std::wstring& Header() const { return m_strHeader; }
    // The topic "Help..." opens, such as "::/Specs.htm".
    virtual std::wstring HelpTopic() const = 0;

    virtual bool ApplyEnabled() const = 0;
    // Saves what changed; true at once when nothing did. A failure is told
    // to the user, naming the standard, and the changes stay for another try.
    bool Apply() { return !ApplyEnabled() || Save(); }

    // The page is closing: a modified editor asks its question; Yes saves,
    // No discards and shows the file's values again. False keeps the page
    // open: the save failed (the changes stay) or the question was cancelled.
    bool Close();

    // The files changed behind the page (a merge or a push from another
    // window): an unmodified page reads them again; a modified one keeps
    // the user's changes, which its Apply writes over the file as it is
    // then. True when the page was read again.
    bool Revert();

protected:
    // Writes the changes Apply found; on failure says so (SaveFailed) and
    // keeps them.
    virtual bool Save() = 0;
    // What the page holds, such as "general settings", for the question on
    // closing: "Standard 'Pipe' general settings have been modified...".
    virtual std::wstring ContentsName() const = 0;
    // Drops the changes: the rows show the file again.
    virtual void Discard() = 0;
    // "Error saving <what> of standard '<name>'." and the file that could not
    // be written, when known; false, for Save to return.
    bool SaveFailed(const std::wstring& what, const std::wstring& file = {});

    // The standard's name as the registry has it now, for questions and
    // messages.
    std::wstring StandardName() const;
    // Open has begun on a standard: keeps its id and its name, and titles the
    // page "<title> - <name>".
    void SetStandard(std::int32_t projectId, const std::wstring& title);

    const CVX2D_ProjectRegistry& m_projects;
    IPrompter& m_prompter;
    std::int32_t m_nProjectId = 0;
    std::wstring m_strName; // as the standard was named when the page opened
    std::wstring m_strHeader;
};
