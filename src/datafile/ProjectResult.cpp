#include "datafile/ProjectResult.h"

#include <array>

std::wstring ProjectResultText(int code) {
    static constexpr std::array<const wchar_t*, 14> kTexts = {
        L"Ok",
        L"Can't create folder",
        L"Can't find project",
        L"Can't get project location folder",
        L"Can't get project template folder",
        L"Can't open project datafile",
        L"Error copying project folder",
        L"Error copying project template folder",
        L"Invalid location",
        L"Invalid name",
        L"Invalid project id",
        L"Error moving project folder",
        L"Project already exists",
        L"Project is deleted",
    };
    return ResultText(kTexts, code);
}

std::wstring ResultText(std::span<const wchar_t* const> texts, int code) {
    if (code < 0 || code >= static_cast<int>(texts.size()))
        return L"Unknown error";
    return texts[static_cast<std::size_t>(code)];
}
