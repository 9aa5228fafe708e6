// Answers the core's questions on the command line: messages go to standard
// error (with --quiet only those that tell of a failure), questions take the
// default answer, or Yes with --yes.
#pragma once

#include "platform/Utf8.h"
#include "store/Prompter.h"

#include <iostream>

class CCliPrompter : public IPrompter {
public:
    CCliPrompter(bool yes, bool quiet) : m_yes(yes), m_quiet(quiet) {}

    EPromptAnswer Ask(const SPrompt& prompt) override {
        const bool told =
            !m_quiet || (prompt.buttons == EPromptButtons::Ok && prompt.icon == EPromptIcon::Stop);
        if (told)
            std::cerr << platform::ToUtf8(prompt.text) << '\n';
        if (prompt.buttons == EPromptButtons::Ok)
            return EPromptAnswer::Ok;
        const EPromptAnswer answer = m_yes ? EPromptAnswer::Yes : prompt.defaultAnswer;
        if (!told)
            return answer;
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
    bool m_quiet;
};
