#include "contents/LayerCatalogue.h"

#include "contents/ProjectLayers.h"
#include "datafile/Text.h"

#include <iterator>
#include <string_view>

namespace {

// The linetypes acad.lin defines, in its order; each also comes at half
// ("2") and double ("X2") size.
constexpr const wchar_t* kAcadLinetypes[] = {
    L"BORDER", L"CENTER", L"DASHDOT", L"DASHED", L"DIVIDE", L"DOT", L"HIDDEN", L"PHANTOM",
};

// The lineweights AutoCAD offers, in hundredths of a millimetre.
constexpr std::int32_t kLineweights[] = {
    0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
    53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211,
};

// What AutoCAD refuses in a layer name.
constexpr std::wstring_view kLayerNameForbidden = L"<>/\\\":;?*|,=`";

} // namespace

const std::vector<std::wstring>& StandardLinetypes() {
    static const std::vector<std::wstring> linetypes = [] {
        std::vector<std::wstring> list{L"CONTINUOUS"};
        for (const wchar_t* name : kAcadLinetypes) {
            list.push_back(name);
            list.push_back(std::wstring(name) + L"2");
            list.push_back(std::wstring(name) + L"X2");
        }
        return list;
    }();
    return linetypes;
}

const std::vector<std::int32_t>& StandardLineweights() {
    static const std::vector<std::int32_t> lineweights = [] {
        std::vector<std::int32_t> list{CVX2D_ProjectLayers::kDefaultLineweight};
        list.insert(list.end(), std::begin(kLineweights), std::end(kLineweights));
        return list;
    }();
    return lineweights;
}

bool IsValidLayerName(const std::wstring& name) {
    const std::wstring trimmed = TrimBlanks(name);
    if (trimmed.empty() || trimmed.size() > 255 || !IsOneByteText(trimmed))
        return false;
    for (const wchar_t c : trimmed) {
        if (c < 32 || c == 127 || kLayerNameForbidden.find(c) != std::wstring_view::npos)
            return false;
    }
    return true;
}
