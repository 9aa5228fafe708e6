// The 256 colours of the AutoCAD Color Index: the colour numbers a layer's
// colour is stored with next to its RGB value.
#pragma once

#include <array>
#include <cstdint>

struct SAciRgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const SAciRgb&, const SAciRgb&) = default;
};

constexpr int kAciColorCount = 256;

// Index 0 (ByBlock) is black, 1-7 the named colours, 8 and 9 the greys,
// 10-249 the 24 hues in five shades full and pale, 250-255 the grey ramp.
const std::array<SAciRgb, kAciColorCount>& AciPalette();

// The first palette position holding this RGB value; 0 when none does. So
// white is 7, not 255, and pure red 1, not 10.
int FindAciIndex(const SAciRgb& rgb);
