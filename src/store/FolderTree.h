// Copies and deletes whole folder trees, reporting success or failure. A copy
// onto an existing folder asks whether to back that folder up first.
#pragma once

#include "store/Progress.h"
#include "store/Prompter.h"

#include <filesystem>
#include <string>

class CVX2D_FolderTree {
public:
    explicit CVX2D_FolderTree(IPrompter& prompter) : m_prompter(prompter) {}
    virtual ~CVX2D_FolderTree() = default;

    // Copies every file and sub-folder of `source` into `destination`
    // (created with its parents). When `destination` exists the user chooses:
    // Yes moves it aside to "<parent>/Backup (n) of <name>", No copies over it,
    // Cancel gives up. Files are copied one by one in blocks; `progress`
    // hears of the bytes copied, and a stop from it ends the copy (a new
    // destination is then removed again).
    virtual bool CopyTree(const std::wstring& source, const std::wstring& destination,
                          const CProgress& progress = {});

    // Deletes the folder and everything in it; true when nothing is left.
    virtual bool DeleteTree(const std::wstring& folder);

    // Makes one new, empty folder (its parent must exist); false when
    // something of that name is there already or it cannot be made.
    virtual bool MakeFolder(const std::wstring& folder);
    // Renames a folder, never onto anything that exists.
    virtual bool MoveFolder(const std::wstring& from, const std::wstring& to);

    // The first "Backup (n) of <name>" beside `folder` that does not exist.
    static std::wstring BackupNameFor(const std::wstring& folder);

private:
    IPrompter& m_prompter;
};

// Copies every file and folder below `from` into the folder `to` (which may
// exist), file by file in blocks, replacing files of the same name; false on
// an error or a stop from `progress`. The one way folders are copied: some
// standard libraries refuse to copy a folder into an existing one.
bool CopyFolderFiles(const std::filesystem::path& from, const std::filesystem::path& to,
                     const CProgress& progress = {});
