#include "datafile/Names.h"

#include "datafile/Text.h"
#include "platform/System.h"

// Room left for the files and sub-folders a standard keeps inside its folder.
constexpr std::size_t kRoomInside = 40;

bool IsValidName(const std::wstring& rawName, const std::wstring& folder,
                 const std::wstring& prefix) {
    const std::wstring name = TrimBlanks(rawName);
    if (name.empty() || name == L"." || name == L"..")
        return false;
    for (wchar_t c : name) {
        if (c < 32 || c == 127 || static_cast<std::uint32_t>(c) > 0xFF)
            return false;
        if (std::wstring_view(L"<>:\"/\\|?*").find(c) != std::wstring_view::npos)
            return false;
    }
    // Windows cannot hold a file name ending in a dot.
    if (name.back() == L'.')
        return false;
    const std::wstring component = prefix + name;
    if (platform::NativeLength(component) > platform::MaxNameLength())
        return false;
    if (!folder.empty() &&
        platform::NativeLength(WithTrailingSeparator(folder) + component) + kRoomInside >
            platform::MaxPathLength())
        return false;
    return true;
}
