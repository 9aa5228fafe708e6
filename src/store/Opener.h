// Handing a file, folder or page to the desktop's program for it, and telling
// the user when no program took it: every caller that opens something goes
// through here, so none of them fails silently.
#pragma once

#include "store/Prompter.h"

#include <functional>
#include <string>

// Opens a target with the desktop's program; false when nothing opened it.
using COpener = std::function<bool(const std::wstring& target)>;

// "No program could open <what> '<target>'." and what opening needs on this
// system. `what` names the kind of target: "the drawing", "the folder".
std::wstring OpenFailedText(const std::wstring& what, const std::wstring& target);

// Hands `target` to `open`. When there is no opener or it fails, the user is
// told so (OpenFailedText, an exclamation); false then.
bool OpenOrTell(const COpener& open, const std::wstring& target, const std::wstring& what,
                IPrompter& prompter);
