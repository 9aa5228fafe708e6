// Result codes of the standard registry and the texts users see for them.
#pragma once

#include <span>
#include <string>

enum [[nodiscard]] EProjectResult{
    eProjectOk = 0,
    eProjectCantCreateFolder = 1,
    eProjectCantFind = 2,
    eProjectCantGetLocationFolder = 3,
    eProjectCantGetTemplateFolder = 4,
    eProjectCantOpenDatafile = 5,
    eProjectErrorCopyingFolder = 6,
    eProjectErrorCopyingTemplateFolder = 7,
    eProjectInvalidLocation = 8,
    eProjectInvalidName = 9,
    eProjectInvalidId = 10,
    eProjectErrorMovingFolder = 11,
    eProjectAlreadyExists = 12,
    eProjectIsDeleted = 13,
};

// The message of a code; "Unknown error" for anything outside the table.
std::wstring ProjectResultText(int code);

// The text of a result code from its table ordered by code; "Unknown error"
// for a code the table does not have.
std::wstring ResultText(std::span<const wchar_t* const> texts, int code);
