// Whether a name typed by a user can become a folder name and a datafile
// value on every platform the datafiles folder is shared with.
#pragma once

#include <string>

// Trims blanks and returns true when the trimmed name is usable: not empty,
// not "." or "..", no path separator, none of <>:"/\|?*, no control
// character, no character above 255, and - when `folder` is given - short
// enough that `folder` + `prefix` + name stays within the platform's limits.
bool IsValidName(const std::wstring& name, const std::wstring& folder = {},
                 const std::wstring& prefix = {});

// The first character of `text` a datafile cannot hold (one byte per
// character), as the end of a sentence ("a name cannot hold '€': ..."); empty
// when there is none. Names that never become folder names (clients) are
// held to this rule only.
std::wstring UnstorableCharacterProblem(const std::wstring& text);

// What is wrong with a name by the rules of IsValidName, as the end of a
// sentence ("a name cannot hold '/' ..."); empty for a usable name.
std::wstring NameProblem(const std::wstring& name, const std::wstring& folder = {},
                         const std::wstring& prefix = {});
