#include "editors/RatingFormats.h"

#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/Datafiles.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cwchar>
#include <cwctype>
#include <fmt/xchar.h>
#include <map>
#include <string_view>

namespace {

// A rating list is a few lines; anything far bigger is not one.
constexpr std::size_t kMaxFileSize = 1u << 20;
constexpr int kMaxCount = 1000;

std::wstring Trimmed(std::wstring_view text) {
    return TrimChars(text, L" \t\r\n");
}

std::wstring WithoutComments(std::wstring_view xml) {
    std::wstring out;
    std::size_t pos = 0;
    for (;;) {
        const std::size_t start = xml.find(L"<!--", pos);
        if (start == std::wstring_view::npos) {
            out.append(xml.substr(pos));
            return out;
        }
        out.append(xml.substr(pos, start - pos));
        const std::size_t end = xml.find(L"-->", start + 4);
        if (end == std::wstring_view::npos)
            return out;
        pos = end + 3;
    }
}

bool DecodeEntity(std::wstring_view name, std::wstring& out) {
    static const std::pair<std::wstring_view, wchar_t> kNamed[] = {
        {L"amp", L'&'}, {L"lt", L'<'}, {L"gt", L'>'}, {L"quot", L'"'}, {L"apos", L'\''}};
    for (const auto& [entity, c] : kNamed) {
        if (name == entity) {
            out += c;
            return true;
        }
    }
    if (name.size() < 2 || name[0] != L'#')
        return false;
    const bool hex = name[1] == L'x' || name[1] == L'X';
    const std::wstring_view digits = name.substr(hex ? 2 : 1);
    if (digits.empty() || digits.size() > 8)
        return false;
    unsigned long code = 0;
    for (const wchar_t c : digits) {
        const int digit = (c >= L'0' && c <= L'9')          ? c - L'0'
                          : hex && (c >= L'a' && c <= L'f') ? c - L'a' + 10
                          : hex && (c >= L'A' && c <= L'F') ? c - L'A' + 10
                                                            : -1;
        if (digit < 0)
            return false;
        code = code * (hex ? 16 : 10) + static_cast<unsigned long>(digit);
    }
    // A code the wide string cannot hold as one character stays as written.
    if (code == 0 || code > 0x10FFFF || code > static_cast<unsigned long>(WCHAR_MAX))
        return false;
    out += static_cast<wchar_t>(code);
    return true;
}

// Character data with its entities and CDATA sections resolved.
std::wstring Decode(std::wstring_view raw) {
    std::wstring out;
    for (std::size_t i = 0; i < raw.size();) {
        if (raw.compare(i, 9, L"<![CDATA[") == 0) {
            const std::size_t end = raw.find(L"]]>", i + 9);
            const std::size_t stop = end == std::wstring_view::npos ? raw.size() : end;
            out.append(raw.substr(i + 9, stop - i - 9));
            i = end == std::wstring_view::npos ? raw.size() : end + 3;
            continue;
        }
        if (raw[i] == L'&') {
            const std::size_t semi = raw.find(L';', i);
            if (semi != std::wstring_view::npos && semi - i <= 12 &&
                DecodeEntity(raw.substr(i + 1, semi - i - 1), out)) {
                i = semi + 1;
                continue;
            }
        }
        out += raw[i++];
    }
    return out;
}

bool IsNameEnd(wchar_t c) {
    return c == L'>' || c == L'/' || std::iswspace(static_cast<wint_t>(c));
}

// The position of "</name>" (blanks allowed before ">") from `from` on.
std::size_t FindEndTag(std::wstring_view xml, std::wstring_view name, std::size_t from,
                       std::size_t& after) {
    const std::wstring tag = L"</" + std::wstring(name);
    for (std::size_t pos = xml.find(tag, from); pos != std::wstring_view::npos;
         pos = xml.find(tag, pos + 1)) {
        std::size_t i = pos + tag.size();
        while (i < xml.size() && std::iswspace(static_cast<wint_t>(xml[i])))
            ++i;
        if (i < xml.size() && xml[i] == L'>') {
            after = i + 1;
            return pos;
        }
    }
    return std::wstring_view::npos;
}

// The elements directly inside `xml` by name, the first of each name winning.
// Processing instructions, declarations and stray end tags are skipped.
std::map<std::wstring, std::wstring_view> Children(std::wstring_view xml) {
    std::map<std::wstring, std::wstring_view> children;
    std::size_t pos = 0;
    while ((pos = xml.find(L'<', pos)) != std::wstring_view::npos) {
        const std::size_t close = xml.find(L'>', pos);
        if (close == std::wstring_view::npos)
            break;
        const wchar_t first = pos + 1 < xml.size() ? xml[pos + 1] : L'>';
        if (first == L'/' || first == L'!' || first == L'?') {
            pos = close + 1;
            continue;
        }
        std::size_t nameEnd = pos + 1;
        while (nameEnd < close && !IsNameEnd(xml[nameEnd]))
            ++nameEnd;
        const std::wstring_view name = xml.substr(pos + 1, nameEnd - pos - 1);
        if (xml[close - 1] == L'/') {
            children.emplace(std::wstring(name), std::wstring_view());
            pos = close + 1;
            continue;
        }
        std::size_t after = 0;
        const std::size_t end = FindEndTag(xml, name, close + 1, after);
        if (end == std::wstring_view::npos) {
            pos = close + 1;
            continue;
        }
        children.emplace(std::wstring(name), xml.substr(close + 1, end - close - 1));
        pos = after;
    }
    return children;
}

std::wstring FromUtf16(const std::string& bytes, bool bigEndian) {
    std::wstring out;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
        const auto lo = static_cast<unsigned char>(bytes[i + (bigEndian ? 1 : 0)]);
        const auto hi = static_cast<unsigned char>(bytes[i + (bigEndian ? 0 : 1)]);
        const unsigned unit = hi << 8 | lo;
        if constexpr (sizeof(wchar_t) == 4) {
            // Join surrogate pairs into one code point.
            if (unit >= 0xDC00 && unit <= 0xDFFF && !out.empty() &&
                static_cast<unsigned>(out.back()) >= 0xD800 &&
                static_cast<unsigned>(out.back()) <= 0xDBFF) {
                const unsigned high = static_cast<unsigned>(out.back());
                out.back() =
                    static_cast<wchar_t>(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
                continue;
            }
        }
        out += static_cast<wchar_t>(unit);
    }
    return out;
}

std::wstring DecodeFile(const std::string& bytes) {
    if (bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE')
        return FromUtf16(bytes, false);
    if (bytes.size() >= 2 && bytes[0] == '\xFE' && bytes[1] == '\xFF')
        return FromUtf16(bytes, true);
    std::string_view text(bytes);
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    return platform::FromUtf8(text);
}

bool ReadSmallFile(const std::wstring& path, std::string& bytes) {
    std::FILE* file = platform::OpenFile(platform::ToPath(path), "rb");
    if (!file)
        return false;
    char buffer[16384];
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0 && bytes.size() <= kMaxFileSize)
        bytes.append(buffer, got);
    const bool ok = !std::ferror(file) && bytes.size() <= kMaxFileSize;
    std::fclose(file);
    return ok;
}

} // namespace

const std::vector<SRatingFormat>& BuiltInRatingFormats() {
    static const std::vector<SRatingFormat> kFormats = {
        {1, L"150#", L"%d#"},
        {2, L"150 LB", L"%d LB"},
        {3, L"CL150", L"CL%d"},
        {4, L"150", L"%d"},
    };
    return kFormats;
}

bool ParseRatingFormats(const std::wstring& xml, std::vector<SRatingFormat>& formats) {
    formats.clear();
    const std::wstring text = WithoutComments(xml);
    const auto top = Children(text);
    const auto root = top.find(L"Formats");
    if (root == top.end())
        return false;
    const auto entries = Children(root->second);
    const auto count = entries.find(L"Count");
    if (count == entries.end())
        return false;
    const int last = std::min(WToI(Trimmed(Decode(count->second))), kMaxCount);
    for (int code = 1; code <= last; ++code) {
        const auto title = entries.find(fmt::format(L"Title{}", code));
        if (title == entries.end())
            continue;
        const auto format = entries.find(fmt::format(L"Format{}", code));
        formats.push_back({code, Trimmed(Decode(title->second)),
                           format == entries.end() ? L"" : Trimmed(Decode(format->second))});
    }
    return !formats.empty();
}

std::vector<SRatingFormat> LoadRatingFormats(const CVX2D_Datafiles& datafiles) {
    const std::wstring path = datafiles.File(L"Rating.xml");
    std::string bytes;
    std::vector<SRatingFormat> formats;
    if (!path.empty() && ReadSmallFile(path, bytes) &&
        ParseRatingFormats(DecodeFile(bytes), formats))
        return formats;
    return BuiltInRatingFormats();
}

const SRatingFormat* FindRatingFormat(const std::vector<SRatingFormat>& formats,
                                      std::int32_t code) {
    const auto found = std::find_if(formats.begin(), formats.end(),
                                    [code](const SRatingFormat& f) { return f.code == code; });
    return found == formats.end() ? nullptr : &*found;
}
