// GUID text from any input: decoding depends on the text alone, the written
// form has one shape and reads back as the same GUID, and a text cut short
// loses only the pieces it no longer holds.
#include "FuzzSupport.h"

#include "datafile/Guid.h"

#include <algorithm>
#include <cstring>
#include <cwctype>

namespace {

// Where each field's hexadecimal digits sit in the written form, Data1 first.
struct SPiece {
    std::size_t start;
    std::size_t length;
};
constexpr SPiece kPieces[] = {{0, 8},  {9, 4},  {14, 4}, {19, 2}, {21, 2}, {24, 2},
                              {26, 2}, {28, 2}, {30, 2}, {32, 2}, {34, 2}};

std::uint32_t Field(const CGuid& g, std::size_t piece) {
    switch (piece) {
    case 0:
        return g.Data1;
    case 1:
        return g.Data2;
    case 2:
        return g.Data3;
    default:
        return g.Data4[piece - 3];
    }
}

void CheckShape(const std::wstring& text) {
    SD_FUZZ_CHECK(text.size() == 36);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == 8 || i == 13 || i == 18 || i == 23)
            SD_FUZZ_CHECK(text[i] == L'-');
        else
            SD_FUZZ_CHECK((text[i] >= L'0' && text[i] <= L'9') ||
                          (text[i] >= L'A' && text[i] <= L'F'));
    }
}

// Decoding must not look past the end of the text: the same text with other
// characters left in the string's buffer after its end decodes alike.
CGuid Decode(const std::wstring& text) {
    const CGuid guid = GuidFromText(text);
    std::wstring stale = text + L"0123456789ABCDEF0123456789ABCDEF0123456789";
    stale.resize(text.size());
    SD_FUZZ_CHECK(GuidFromText(stale) == guid);
    return guid;
}

void CheckDecoded(const std::wstring& text) {
    const CGuid decoded = Decode(text);
    const std::wstring written = GuidToText(decoded);
    CheckShape(written);
    SD_FUZZ_CHECK(Decode(written) == decoded);
}

void CheckRoundTrip(const CGuid& g, std::size_t cut) {
    const std::wstring text = GuidToText(g);
    CheckShape(text);
    SD_FUZZ_CHECK(Decode(text) == g);
    SD_FUZZ_CHECK(GuidToText(Decode(text)) == text);
    std::wstring lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](wchar_t c) { return static_cast<wchar_t>(std::towlower(c)); });
    SD_FUZZ_CHECK(Decode(lower) == g);

    // Pieces wholly inside the cut text keep their value, pieces wholly
    // outside it read as zero.
    const CGuid shortened = Decode(text.substr(0, cut % (text.size() + 1)));
    const std::size_t kept = cut % (text.size() + 1);
    for (std::size_t piece = 0; piece < std::size(kPieces); ++piece) {
        if (kPieces[piece].start + kPieces[piece].length <= kept)
            SD_FUZZ_CHECK(Field(shortened, piece) == Field(g, piece));
        else if (kPieces[piece].start >= kept)
            SD_FUZZ_CHECK(Field(shortened, piece) == 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // As a datafile holds text: one character per byte.
    CheckDecoded(std::wstring(data, data + size));

    // As text typed in the program may be: any wide character at all.
    std::wstring wide(size / sizeof(wchar_t), L'\0');
    if (!wide.empty())
        std::memcpy(wide.data(), data, wide.size() * sizeof(wchar_t));
    CheckDecoded(wide);

    // A GUID made of the input's first sixteen bytes (zero when shorter).
    std::uint8_t bytes[17] = {};
    std::memcpy(bytes, data, std::min(size, sizeof bytes));
    CGuid g;
    std::memcpy(&g.Data1, bytes, 4);
    std::memcpy(&g.Data2, bytes + 4, 2);
    std::memcpy(&g.Data3, bytes + 6, 2);
    std::memcpy(g.Data4.data(), bytes + 8, 8);
    CheckRoundTrip(g, bytes[16]);
    return 0;
}
