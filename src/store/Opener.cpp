#include "store/Opener.h"

#include "platform/System.h"

#include <fmt/xchar.h>

std::wstring OpenFailedText(const std::wstring& what, const std::wstring& target) {
    return fmt::format(L"No program could open {} '{}'.\n\n{}", what, target,
                       platform::ShellOpenAdvice());
}

bool OpenOrTell(const COpener& open, const std::wstring& target, const std::wstring& what,
                IPrompter& prompter) {
    if (open && open(target))
        return true;
    prompter.Show(OpenFailedText(what, target), EPromptIcon::Exclamation);
    return false;
}
