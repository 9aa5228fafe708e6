#include "datafile/Names.h"

#include "datafile/Text.h"
#include "platform/System.h"

// Room left for the files and sub-folders a standard keeps inside its folder.
constexpr std::size_t kRoomInside = 40;

namespace {

std::wstring UnstorableText(wchar_t c) {
    return L"a name cannot hold '" + std::wstring(1, c) +
           L"': a datafile stores only characters up to code 255.";
}

} // namespace

std::wstring UnstorableCharacterProblem(const std::wstring& text) {
    for (wchar_t c : text) {
        if (static_cast<std::uint32_t>(c) > 0xFF)
            return UnstorableText(c);
    }
    return {};
}

std::wstring NameProblem(const std::wstring& rawName, const std::wstring& folder,
                         const std::wstring& prefix) {
    const std::wstring name = TrimBlanks(rawName);
    if (name.empty())
        return L"a name cannot be empty.";
    if (name == L"." || name == L"..")
        return L"a name cannot be '.' or '..'.";
    for (wchar_t c : name) {
        if (c < 32 || c == 127)
            return L"a name cannot hold a control character such as a line break or a TAB.";
        if (static_cast<std::uint32_t>(c) > 0xFF)
            return UnstorableText(c);
        if (std::wstring_view(L"<>:\"/\\|?*").find(c) != std::wstring_view::npos)
            return L"a name cannot hold '" + std::wstring(1, c) +
                   L"' (none of < > : \" / \\ | ? * may be used).";
    }
    // Windows cannot hold a file name ending in a dot.
    if (name.back() == L'.')
        return L"a name cannot end with a dot.";
    const std::wstring component = prefix + name;
    if (platform::NativeLength(component) > platform::MaxNameLength())
        return L"the name is too long for a folder name.";
    if (!folder.empty() &&
        platform::NativeLength(WithTrailingSeparator(folder) + component) + kRoomInside >
            platform::MaxPathLength())
        return L"the name is too long: the folder's path would pass the system's limit.";
    return {};
}

bool IsValidName(const std::wstring& name, const std::wstring& folder, const std::wstring& prefix) {
    return NameProblem(name, folder, prefix).empty();
}
