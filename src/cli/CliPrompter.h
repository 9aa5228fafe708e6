// Answers the core's questions on the command line: messages go to standard
// error, questions take the default answer, or Yes with --yes.
#pragma once

#include "platform/Utf8.h"
#include "store/Prompter.h"

#include <iostream>

class CCliPrompter : public IPrompter {
public:
    explicit CCliPrompter(bool yes) : m_yes(yes) {}

    EPromptAnswer Ask(const SPrompt& prompt) override {
        std::cerr << platform::ToUtf8(prompt.text) << '\n';
        if (prompt.buttons == EPromptButtons::Ok)
            return EPromptAnswer::Ok;
        const EPromptAnswer answer = m_yes ? EPromptAnswer::Yes : prompt.defaultAnswer;
        std::cerr << "(answered "
                  << (answer == EPromptAnswer::Yes  ? "Yes"
                      : answer == EPromptAnswer::No ? "No"
                      : answer == EPromptAnswer::Ok ? "OK"
                                                    : "Cancel")
                  << ")\n";
        return answer;
    }

private:
    bool m_yes;
};
