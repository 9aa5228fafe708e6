// What a layer of "Layers.ini" may hold: the AutoCAD linetypes and
// lineweights the layers page offers, and the names AutoCAD accepts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// "CONTINUOUS", then the linetypes of AutoCAD's acad.lin, each with its
// half-size "2" and double-size "X2" variant.
const std::vector<std::wstring>& StandardLinetypes();

// AutoCAD's lineweights in hundredths of a millimetre, Default (-3) first.
const std::vector<std::int32_t>& StandardLineweights();

// A layer name AutoCAD and "Layers.ini" can both hold: not empty after
// trimming, at most 255 characters, one byte each, no control character and
// none of < > / \ " : ; ? * | , = `.
bool IsValidLayerName(const std::wstring& name);
