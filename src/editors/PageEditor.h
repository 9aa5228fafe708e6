// What every page editor of a standard shares: Apply is enabled exactly while
// something is unsaved, Apply saves it, and closing a modified page asks
// whether to save.
#pragma once

#include "store/Prompter.h"

#include <string>

class CPageEditor {
public:
    explicit CPageEditor(IPrompter& prompter) : m_prompter(prompter) {}
    virtual ~CPageEditor() = default;

    virtual bool ApplyEnabled() const = 0;
    // Saves what changed. A failure is told to the user, naming the
    // standard, and the changes stay for another try.
    virtual bool Apply() = 0;

    // The page is closing: a modified editor asks its question; Yes saves,
    // No discards and shows the file's values again. False keeps the page
    // open: the save failed (the changes stay) or the question was cancelled.
    bool Close();

protected:
    // Such as "Standard 'Pipe' settings have been modified..."
    virtual std::wstring CloseQuestion() const = 0;
    // Drops the changes: the rows show the file again.
    virtual void Discard() = 0;
    // "Error saving <what> of standard '<name>'." and the file that could not
    // be written, when known; false, for Apply to return.
    bool SaveFailed(const std::wstring& what, const std::wstring& standardName,
                    const std::wstring& file = {});

    IPrompter& m_prompter;
};

// The close question of a modified page: "Standard 'Pipe' <what> have been
// modified..." with `what` such as "general settings".
std::wstring PageModifiedQuestion(const std::wstring& standardName, const std::wstring& what);
