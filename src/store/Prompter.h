// How the core asks the user a question or tells them something. The desktop
// program answers with message boxes, the command line with its flags, tests
// with scripted answers.
#pragma once

#include <string>

enum class EPromptIcon { None, Stop, Exclamation, Question, Information };
enum class EPromptButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class EPromptAnswer { Ok, Cancel, Yes, No };

struct SPrompt {
    std::wstring text;
    std::wstring caption;
    EPromptButtons buttons = EPromptButtons::Ok;
    EPromptIcon icon = EPromptIcon::None;
    EPromptAnswer defaultAnswer = EPromptAnswer::Ok;
    // Shown above every other window (start-up questions with no owner).
    bool topmost = false;
};

class IPrompter {
public:
    virtual ~IPrompter() = default;
    virtual EPromptAnswer Ask(const SPrompt& prompt) = 0;

    void Show(const std::wstring& text, EPromptIcon icon, const std::wstring& caption = {}) {
        Ask({text, caption, EPromptButtons::Ok, icon, EPromptAnswer::Ok});
    }
};
