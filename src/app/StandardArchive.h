// Standards as single archive files: export of a standard's folder to an
// ".xst" ZIP archive, and the safe extraction of ".xst" and older ".xpj"
// archives into a new standard's folder.
#pragma once

#include "store/Progress.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Called per file with the number done, the number in all and the file's
// name; returning false cancels.
using CArchiveProgress = CProgress;

// What one import (every archive of it together) may write. A standard's
// folder holds settings datafiles, border drawings and BOM lists: typically
// tens to hundreds of files and a few MB. The limits only stop archives made
// to fill the disk:
// - 2 GiB unpacked, what a single archive could give before, so no archive
//   that imported then is refused now when imported on its own;
// - 10,000 files: far above any standard, while 100,000 tiny files cost
//   minutes and inodes on a network share;
// - 100:1 per file above 1 MiB. Deflate reaches about 1000:1 on runs of one
//   byte; text and drawings pack well below 100:1. Smaller files pass
//   whatever their ratio (a few KB of blanks packs far better than 100:1),
//   and they are bounded by the totals anyway.
struct SArchiveLimits {
    std::uint64_t totalBytes = 2ull << 30;
    std::uint64_t files = 10000;
    std::uint64_t ratio = 100;
    std::uint64_t ratioFloor = 1ull << 20;
};

// What the archives of an import extracted so far.
struct SArchiveUsage {
    std::uint64_t bytes = 0;
    std::uint64_t files = 0;
};

class CStandardArchive {
public:
    static constexpr const char* kComment = "VANDIX 2D Exported Standard V2017.0 - VANDIX Software";

    // Writes every file under `folder` (sub-folders by relative path with "/",
    // folders themselves not stored) at compression level 9, with the
    // exported-standard comment; a folder without files gives an archive
    // holding only the comment. An existing archive is replaced only by a
    // complete new one: a failed or cancelled export leaves it as it was.
    static bool Export(const std::wstring& folder, const std::wstring& archive,
                       const CArchiveProgress& progress = {});

    struct SExtraction {
        bool opened = false; // the file could be read as an archive
        // Why the archive was refused or stopped, for the user; everything
        // it had written is removed again. Empty when it was extracted.
        std::wstring failure;
        bool cancelled = false;
        std::size_t extracted = 0;
        std::uint64_t bytes = 0;
        // Entries left out, with the reason ("unsafe name", "link", ...).
        std::vector<std::wstring> skipped;
        bool Ok() const { return failure.empty(); }
    };

    // Why the archive cannot be imported after what `used` took, or nothing
    // when it can: it must be a ZIP archive with files to extract, none of
    // them encrypted, packed with an unknown method or past `limits` as
    // their sizes are declared. Writes nothing.
    static std::wstring Check(const std::wstring& archive, const SArchiveLimits& limits = {},
                              const SArchiveUsage& used = {});

    // Extracts an archive into `folder` after the same checks. An ".xpj" (by
    // the extension, in any letter case) gives only the entries under its
    // five settings folders, each by file name into its folder of the
    // standard; anything else gives every entry by its stored path. Unsafe
    // entries (absolute, a drive, a ".." segment, links) and entries whose
    // file is already there are skipped. An entry that inflates past its
    // declared size, a damaged entry, a write that fails or a cancel stops
    // the whole and removes what it wrote; files that were there before are
    // never touched. On success `used` (when given) grows by what was written.
    static SExtraction Extract(const std::wstring& archive, const std::wstring& folder,
                               const CArchiveProgress& progress = {},
                               const SArchiveLimits& limits = {}, SArchiveUsage* used = nullptr);

    // The text from the last "." when it comes after the last separator,
    // lower-cased; empty when the name has no extension.
    static std::wstring ExtensionOf(const std::wstring& path);
    // The file name without folder and without its extension.
    static std::wstring StandardNameOf(const std::wstring& path);
};
