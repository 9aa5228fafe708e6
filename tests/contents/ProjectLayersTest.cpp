// Layers per application: the default sets, the colour palette they take
// their colour numbers from, "Layers.ini" overlaid on them and the exact bytes
// a save writes.
#include "contents/ProjectLayers.h"
#include "contents/ColorPalette.h"
#include "datafile/IniFile.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace project_layers_test {

using L = CVX2D_ProjectLayers;

std::string Narrow(const std::wstring& text) {
    return std::string(text.begin(), text.end());
}

// One layer as "KEY NAME R,G,B,I LINETYPE LINEWEIGHT".
std::string Row(const L& layers, std::size_t i) {
    return Narrow(L::FormatKey(layers.GetKeys()[i]) + L" " + layers.GetNames()[i] + L" " +
                  L::FormatColor(layers.GetColors()[i]) + L" " + layers.GetLinetypes()[i] + L" " +
                  std::to_wstring(layers.GetLineweights()[i]));
}

std::string RowOf(const L& layers, std::int32_t key) {
    const int at = layers.Find(key);
    return at < 0 ? "" : Row(layers, static_cast<std::size_t>(at));
}

TEST(ColorPaletteTest, SpotChecksAndFirstMatch) {
    const std::pair<int, SAciRgb> entries[] = {
        {0, {0, 0, 0}},      {9, {192, 192, 192}}, {13, {165, 82, 82}},
        {237, {76, 38, 57}}, {250, {51, 51, 51}},  {255, {255, 255, 255}},
    };
    for (const auto& [index, rgb] : entries)
        EXPECT_EQ(AciPalette()[static_cast<std::size_t>(index)], rgb) << index;
    // The first position wins; a colour the palette lacks gives 0.
    EXPECT_EQ(FindAciIndex({255, 255, 255}), 7);
    EXPECT_EQ(FindAciIndex({1, 2, 3}), 0);
    for (int index = 0; index < kAciColorCount; ++index) {
        const SAciRgb rgb = AciPalette()[static_cast<std::size_t>(index)];
        const int first = FindAciIndex(rgb);
        EXPECT_LE(first, index);
        EXPECT_EQ(AciPalette()[static_cast<std::size_t>(first)], rgb);
    }
}

TEST(ProjectLayersDefaultsTest, EachApplicationHasItsBlocksOrderedByRoleNumber) {
    const std::pair<int, std::vector<std::int32_t>> cases[] = {
        {1, {14, 16, 17, 18, 19, 20, 22, 24, 25, 26, 27, 29, 31, 32, 33, 36, 37, 41, 42, 43, 44}},
        {2,
         {14, 15, 16, 17, 20, 23, 24, 25, 26, 27, 28, 30, 32, 33, 34, 35, 37, 38, 42, 43, 45, 46}},
        {4, {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 20, 21,
             23, 24, 25, 26, 27, 28, 32, 33, 34, 35, 37, 39, 40, 42, 43, 47, 48, 49}},
        {5, {}},
    };
    for (const auto& [application, keys] : cases) {
        SCOPED_TRACE(application);
        const L layers(application);
        EXPECT_EQ(layers.GetKeys(), keys);
        EXPECT_EQ(layers.GetNames().size(), keys.size());
        EXPECT_EQ(layers.GetColors().size(), keys.size());
        EXPECT_EQ(layers.GetLinetypes().size(), keys.size());
        EXPECT_EQ(layers.GetLineweights(), std::vector<std::int32_t>(keys.size(), -3));
        EXPECT_FALSE(layers.IsModified());
    }
    // ISOMETRIC has ORTHO's set without CONCRETE and STEEL.
    EXPECT_EQ(L(3).GetCount(), 35u);
    EXPECT_EQ(L(3).Find(21), -1);
    EXPECT_EQ(L(3).Find(39), -1);
}

TEST(ProjectLayersDefaultsTest, RowsKeepTheirValuesThroughTheSort) {
    // Rows of each block, and of the pressure classes listed out of key order.
    const std::tuple<int, std::int32_t, const char*> cases[] = {
        {1, 14, "014 ATTRIB 255,255,255,7 CONTINUOUS -3"},
        {1, 44, "044 UG_COND_CBL 255,0,255,6 HIDDEN -3"},
        {2, 35, "035 MTO-BAL 255,0,0,1 CONTINUOUS -3"},
        {3, 5, "005 900LB 255,0,255,6 CONTINUOUS -3"},
        {3, 47, "047 LIMITS_BORDER 0,255,255,4 PHANTOM -3"},
        {3, 48, "048 9000LB 0,0,255,5 CONTINUOUS -3"},
        {3, 49, "049 800LB 255,255,255,7 CONTINUOUS -3"},
        {4, 39, "039 STEEL 0,255,0,3 CONTINUOUS -3"},
        {1, 1, ""},
    };
    for (const auto& [application, key, row] : cases)
        EXPECT_EQ(RowOf(L(application), key), row) << application << " " << key;
}

TEST(ProjectLayersDefaultsTest, DescriptionsKeysAndColourTexts) {
    const std::pair<std::int32_t, const wchar_t*> descriptions[] = {
        {1, L"150 lb"},  {13, L"10,000 lb"}, {44, L"U/G Conduit Cable"},
        {49, L"800 lb"}, {0, L""},           {50, L""},
    };
    for (const auto& [key, text] : descriptions)
        EXPECT_EQ(L::GetDescription(key), text) << key;
    EXPECT_EQ(L::FormatKey(1), L"001");
    EXPECT_EQ(L::FormatKey(123), L"123");

    const std::tuple<const wchar_t*, bool, SLayerColor> colors[] = {
        {L"255,255,255,255", true, {{255, 255, 255}, 255}},
        {L" 1, 2 ,3,0", true, {{1, 2, 3}, 0}},
        {L"0,255,255", false, {}},
        {L"0,255,255,4,5", false, {}},
        {L"256,0,0,1", false, {}},
        {L"-1,0,0,1", false, {}},
        {L"0,0,0,256", false, {}},
        {L"red", false, {}},
        {L"1,,2,3", false, {}},
    };
    for (const auto& [text, ok, expected] : colors) {
        SLayerColor color{{9, 9, 9}, 9};
        EXPECT_EQ(L::ParseColor(text, color), ok) << Narrow(text);
        if (ok) {
            EXPECT_EQ(color, expected) << Narrow(text);
        }
    }
    EXPECT_EQ(L::FormatColor({{1, 2, 3}, 0}), L"1,2,3,0");
}

class ProjectLayersTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards({"No folder"});
        fs::create_directories(Folder());
    }
    fs::path File() const { return Folder() / "Layers.ini"; }

    L Loaded(int application, int version) const {
        L layers(registry, 1, application, version);
        layers.Load(layers.GetFilePath());
        return layers;
    }
};

TEST_F(ProjectLayersTest, TheFileOverlaysTheApplicationsOwnSections) {
    WriteBytes(File(), "[Flow - Layers]\r\n016 = OLD_FRAME\r\n\r\n"
                       "[PID - Colors]\r\n016 = 1,2,3,0\r\n017 = red\r\n\r\n"
                       "[PID - Layers]\r\n016 = FRAME\r\n099 = EXTRA\r\n\r\n"
                       "[PID - LineWeights]\r\n014 = 35\r\n\r\n"
                       "[PID - Linetypes]\r\n016 = DASHED\r\n\r\n"
                       "[ORTHO - Layers]\r\n016 = ORTHO_FRAME\r\n");
    const std::tuple<int, int, std::int32_t, const char*> cases[] = {
        {2, 2023, 16, "016 FRAME 1,2,3,0 DASHED -3"},
        // A colour that does not read keeps the default.
        {2, 2023, 17, "017 BORDER2 255,255,0,2 CONTINUOUS -3"},
        {2, 2023, 14, "014 ATTRIB 255,255,255,7 CONTINUOUS 35"},
        {2, 2015, 16, "016 OLD_FRAME 0,255,255,4 CONTINUOUS -3"},
        {4, 2023, 16, "016 ORTHO_FRAME 0,255,255,4 CONTINUOUS -3"},
        {4, 2015, 16, "016 BORDER1 0,255,255,4 CONTINUOUS -3"},
    };
    for (const auto& [application, version, key, row] : cases) {
        SCOPED_TRACE(::testing::Message() << application << " " << version);
        const L layers = Loaded(application, version);
        EXPECT_EQ(RowOf(layers, key), row);
        EXPECT_EQ(layers.Find(99), -1);
        EXPECT_FALSE(layers.IsModified());
    }
}

// Every layer of the application's set as the file holds it: the four
// sections' keys must be exactly the set's, in its order.
std::vector<std::string> RowsInFile(const fs::path& file, const std::wstring& prefix) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    EXPECT_EQ(ini.Open(file.wstring()), CVX2D_IniFile::eOk);
    std::vector<std::wstring> keys[4], values[4];
    const wchar_t* suffixes[] = {L" - Layers", L" - Colors", L" - Linetypes", L" - LineWeights"};
    for (int n = 0; n < 4; ++n) {
        ini.SetSection(prefix + suffixes[n]);
        ini.GetSectionEntries(keys[n], values[n]);
    }
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < keys[0].size(); ++i) {
        std::wstring row = keys[0][i];
        for (int n = 0; n < 4; ++n) {
            EXPECT_EQ(keys[n].size(), keys[0].size());
            if (i < keys[n].size()) {
                EXPECT_EQ(keys[n][i], keys[0][i]);
                row += L" " + values[n][i];
            }
        }
        rows.push_back(Narrow(row));
    }
    return rows;
}

std::vector<std::string> RowsOf(const L& layers) {
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < layers.GetCount(); ++i)
        rows.push_back(Row(layers, i));
    return rows;
}

TEST_F(ProjectLayersTest, SaveWritesTheWholeSetOfTheApplication) {
    struct SCase {
        const char* name;
        int application;
        int version;
        std::string before; // empty: no file
        void (*change)(L&);
        std::int32_t key; // a layer to check, 0 when nothing is saved
        const char* row;  // that layer as the file then holds it
    };
    const std::string other =
        "[ORTHO - Layers]\r\n039 = BEAMS\r\n\r\n[PID - Layers]\r\n038 = X\r\n";
    const SCase cases[] = {
        {"BORDER1's colour with its palette index", 2, 2023, "",
         [](L& l) {
             const auto at = static_cast<std::size_t>(l.Find(16));
             l.SetColor(at, LayerColorOf({255, 0, 0}));
             l.SetColor(at, LayerColorOf({0, 0, 255}));
         },
         16, "016 BORDER1 0,0,255,5 CONTINUOUS -3"},
        {"all four values of one layer in an old standard", 1, 2015, "",
         [](L& l) {
             const auto at = static_cast<std::size_t>(l.Find(14));
             l.SetName(at, L"ATTRS");
             l.SetColor(at, {{255, 255, 255}, 255});
             l.SetLinetype(at, L"DASHED");
             l.SetLineweight(at, 50);
         },
         14, "014 ATTRS 255,255,255,255 DASHED 50"},
        {"one change, another application's sections kept", 4, 2023, other,
         [](L& l) { l.SetLineweight(static_cast<std::size_t>(l.Find(49)), 0); }, 49,
         "049 800LB 255,255,255,7 CONTINUOUS 0"},
        {"unchanged: nothing written", 3, 2023, "", [](L&) {}, 0, ""},
        {"the same values again are no change", 3, 2023, "",
         [](L& l) {
             l.SetName(0, L"150LB");
             l.SetLineweight(0, -3);
             l.SetColor(0, {{255, 255, 0}, 2});
         },
         0, ""},
        {"a position outside the set is ignored", 3, 2023, "",
         [](L& l) { l.SetName(l.GetCount(), L"X"); }, 0, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fs::remove(File());
        if (!c.before.empty())
            WriteBytes(File(), c.before);
        L layers = Loaded(c.application, c.version);
        c.change(layers);
        EXPECT_EQ(layers.IsModified(), c.key != 0);
        EXPECT_TRUE(layers.Save());
        EXPECT_FALSE(layers.IsModified());
        if (c.key == 0) {
            EXPECT_FALSE(fs::exists(File()));
            continue;
        }
        const std::vector<std::string> rows = RowsInFile(File(), layers.GetSectionPrefix());
        EXPECT_EQ(rows, RowsOf(layers));
        EXPECT_EQ(rows.size(), L(c.application).GetCount());
        EXPECT_NE(std::find(rows.begin(), rows.end(), c.row), rows.end());
        if (!c.before.empty()) {
            const std::string bytes = ReadBytes(File());
            EXPECT_NE(bytes.find("[ORTHO - Layers]\r\n001 = 150LB\r\n"), std::string::npos);
            EXPECT_NE(bytes.find("039 = BEAMS\r\n"), std::string::npos);
            EXPECT_NE(bytes.find("[PID - Layers]\r\n038 = X\r\n"), std::string::npos);
        }
        EXPECT_EQ(RowsOf(Loaded(c.application, c.version)), rows);
    }
}

TEST_F(ProjectLayersTest, ASuccessfulSaveClearsTheChangesAndAFailedOneKeepsThem) {
    L layers = Loaded(2, 2023);
    const auto at = static_cast<std::size_t>(layers.Find(38));
    layers.SetName(at, L"LINES");
    ASSERT_TRUE(layers.Save());
    // Another program changes two entries: the next save keeps them, as it
    // writes only its own changes over what the file holds now.
    CVX2D_IniFile theirs;
    ASSERT_EQ(theirs.OpenForUpdate(File().wstring()), CVX2D_IniFile::eOk);
    theirs.SetSection(L"PID - Layers");
    theirs.SetString(L"038", L"THEIRS");
    theirs.SetSection(L"PID - Colors");
    theirs.SetString(L"016", L"1,2,3,4");
    ASSERT_EQ(theirs.Save(), CVX2D_IniFile::eOk);
    theirs.Unlock();
    layers.SetLinetype(at, L"DOT");
    ASSERT_TRUE(layers.Save());
    const L reread = Loaded(2, 2023);
    EXPECT_EQ(RowOf(reread, 38), "038 THEIRS 0,255,255,4 DOT -3");
    EXPECT_EQ(RowOf(reread, 16), "016 BORDER1 1,2,3,4 CONTINUOUS -3");
    EXPECT_EQ(RowsInFile(File(), L"PID"), RowsOf(reread));
    const std::string saved = ReadBytes(File());

    layers.SetName(at, L"\u20acURO");
    EXPECT_FALSE(layers.Save());
    EXPECT_TRUE(layers.IsModified());
    EXPECT_EQ(ReadBytes(File()), saved);

    // Without a folder nothing is written and the change stays.
    std::vector<L> detached = {L(2), L(registry, 2, 2, 2023)};
    for (L& other : detached) {
        EXPECT_EQ(other.GetFilePath(), L"");
        EXPECT_TRUE(other.Save());
        other.SetName(0, L"X");
        EXPECT_FALSE(other.Save());
        EXPECT_TRUE(other.IsModified());
    }
    EXPECT_FALSE(fs::exists(Root() / "Projects" / "VX2D_PRJ_2 - No folder"));
}

} // namespace project_layers_test
