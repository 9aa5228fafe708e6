// Standards as single archive files: export of a standard's folder to an
// ".xst" ZIP archive, and the safe extraction of ".xst" and older ".xpj"
// archives into a new standard's folder.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Called per file with the number done, the number in all and the file's
// name; returning false cancels.
using CArchiveProgress =
    std::function<bool(std::size_t done, std::size_t total, const std::wstring& file)>;

class CStandardArchive {
public:
    static constexpr const char* kComment = "VANDIX 2D Exported Standard V2017.0 - VANDIX Software";
    static constexpr std::uint64_t kDefaultTotalLimit = 2ull << 30;

    // Writes every file under `folder` (sub-folders by relative path with "/",
    // folders themselves not stored) at compression level 9, with the
    // exported-standard comment. An existing archive is replaced.
    static bool Export(const std::wstring& folder, const std::wstring& archive,
                       const CArchiveProgress& progress = {});

    struct SExtraction {
        bool opened = false;
        std::size_t extracted = 0;
        // Entries left out, with the reason ("unsafe name", "link", ...).
        std::vector<std::wstring> skipped;
    };

    // Extracts an archive into `folder`. An ".xpj" (by the extension, in any
    // letter case) gives only the entries under its five settings folders,
    // each by file name into its folder of the standard; anything else gives
    // every entry by its stored path. Unsafe entries (absolute, a drive, a
    // ".." segment, links) are skipped; extraction stops at an entry that
    // inflates past its declared size or when the whole passes `totalLimit`.
    static SExtraction Extract(const std::wstring& archive, const std::wstring& folder,
                               const CArchiveProgress& progress = {},
                               std::uint64_t totalLimit = kDefaultTotalLimit);

    // The text from the last "." when it comes after the last separator,
    // lower-cased; empty when the name has no extension.
    static std::wstring ExtensionOf(const std::wstring& path);
    // The file name without folder and without its extension.
    static std::wstring StandardNameOf(const std::wstring& path);
};
