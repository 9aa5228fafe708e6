// Rating formats: how a standard writes pressure ratings ("150#", "CL150").
// A standard's general settings name one by its code ("RatingsFormat").
//
// The list comes from "Rating.xml" in the datafiles folder when that file
// holds at least one format, in this shape (element names are case-sensitive;
// comments, attributes on <Formats> and CDATA are allowed; the usual entities
// and character references are decoded; UTF-8, Latin-1 or UTF-16 with a BOM):
//
//   <?xml version="1.0" encoding="UTF-8"?>
//   <Formats>
//     <Count>2</Count>
//     <Title1>150#</Title1>   <Format1>%d#</Format1>
//     <Title2>CL150</Title2>  <Format2>CL%d</Format2>
//   </Formats>
//
// Entry N (1 to Count) is the format with code N: Title%d is the name users
// see, Format%d its pattern. An entry without a Title element is no format.
// Without a usable file the built-in list (codes 1 to 4) serves, so that the
// standards made from the shipped templates (code 1) always compare.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class CVX2D_Datafiles;

struct SRatingFormat {
    std::int32_t code = 0;
    std::wstring title;
    std::wstring format;
};

const std::vector<SRatingFormat>& BuiltInRatingFormats();

// The formats of a "Rating.xml" text in code order; false when it holds none.
bool ParseRatingFormats(const std::wstring& xml, std::vector<SRatingFormat>& formats);

// The datafiles folder's "Rating.xml" when present and usable, else the
// built-in list. Never fails.
std::vector<SRatingFormat> LoadRatingFormats(const CVX2D_Datafiles& datafiles);

// The format with this code; null when the list has none.
const SRatingFormat* FindRatingFormat(const std::vector<SRatingFormat>& formats, std::int32_t code);
