// The printed report of a standard: every part of it as plain text, for a
// text viewer or a printer. General settings, file locations, borders per
// sheet size, lines, specs, each settings page of each application with its
// labels and values as the settings editor shows them, and the layers. Each
// file of the standard is read once.
#pragma once

#include "store/Opener.h"
#include "store/Prompter.h"

#include <cstdint>
#include <functional>
#include <string>

class CVX2D_ProjectRegistry;

// The file the desktop program writes and opens: "VANDIX 2D Standards Desk -
// Print View.txt" in the system's temporary folder.
std::wstring StandardReportDefaultPath();

// The report, lines ending in "\n", with `date` in its heading. False, with
// the message to show in `error`, when the standard or its folder cannot be
// found.
bool StandardReportText(const CVX2D_ProjectRegistry& registry, std::int32_t standardId,
                        const std::wstring& date, std::wstring& text, std::wstring& error);

// Builds the report dated now and writes it to `path` as UTF-8 (CR LF line
// ends on Windows). False, with the message in `error`, when it cannot be
// built or written.
bool WriteStandardReport(const CVX2D_ProjectRegistry& registry, std::int32_t standardId,
                         const std::wstring& path, std::wstring& error);

// "Print...": writes the report to its default path and hands that to
// `open` (the system's text viewer). Failures are shown; false then.
bool PrintStandardReport(const CVX2D_ProjectRegistry& registry, IPrompter& prompter,
                         std::int32_t standardId, const COpener& open);
