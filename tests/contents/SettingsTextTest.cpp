// A settings variable as an editor cell shows it, and a typed text stored by
// the variable's kind.
#include "contents/SettingsText.h"
#include "contents/ProjectSettings.h"

#include <gtest/gtest.h>

namespace {

using Base = CVX2D_ProjectSettingsBase;

TEST(SettingsTextTest, RealsShowTrimmedPrintfDecimals) {
    const std::pair<double, const wchar_t*> cases[] = {
        {0.5, L"0.5"},
        {4.0, L"4.0"},
        {0.125, L"0.125"},
        {2.5, L"2.5"},
        {3.0, L"3.0"},
        {0.0, L"0.0"},
        {1.6667, L"1.6667"},
        {0.015625, L"0.015625"},
        {0.0000001, L"0.0"},
        {-2.5, L"-2.5"},
        {1234567.0, L"1234567.0"},
        {10.1, L"10.1"},
        {1.23456789, L"1.234568"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(SettingsRealText(value), text) << value;
}

TEST(SettingsTextTest, ShownTextByKind) {
    auto settings = NewProjectSettings(4);
    settings->BuildCatalogue(1);
    const std::pair<int, const wchar_t*> cases[] = {
        {158, L"On"},     {131, L"Off"}, {169, L"14\""}, {168, L"RomanS; Regular; romans__.ttf"},
        {123, L"4"},      {102, L"0.5"}, {189, L""},     {173, L"STANDARD"},
        {136, L"Hidden"}, {183, L""}, // nothing chosen
    };
    for (const auto& [id, text] : cases)
        EXPECT_EQ(SettingsValueText(*settings->FindVariable(id)), text) << id;
}

TEST(SettingsTextTest, TypedTextIsStoredByKind) {
    struct SCase {
        int id;
        const wchar_t* typed;
        bool stored;
        const wchar_t* shown;
        bool clean;
    };
    const SCase cases[] = {
        {158, L"Off", true, L"Off", false},
        {158, L"on", true, L"Off", false}, // "On" exactly, else off
        {158, L"On", true, L"On", true},
        {123, L"12", true, L"12", false},
        {123, L" 7 rungs", true, L"7", false},
        {123, L"many", true, L"0", false},
        {102, L"2.25", true, L"2.25", false},
        {102, L"abc", true, L"0.0", false},
        {102, L"0.5", true, L"0.5", true},
        {169, L"16\"", true, L"16\"", false},
        {168, L"Arial; Bold; arial.ttf", true, L"Arial; Bold; arial.ttf", false},
        {189, L"/blocks", true, L"/blocks", false},
        {173, L"STANDARD", true, L"STANDARD", true},
        {136, L"Dashed", true, L"Dashed", false},
        {136, L"Center", false, L"Hidden", true}, // not offered for this variable
        {136, L"hidden", false, L"Hidden", true},
        {136, L"Hidden", true, L"Hidden", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.id << " " << c.typed);
        auto settings = NewProjectSettings(4);
        settings->BuildCatalogue(1);
        Base::CVariable& v = *settings->FindVariable(c.id);
        const int kind = v.m_nKind;
        EXPECT_EQ(StoreSettingsText(v, c.typed), c.stored);
        EXPECT_EQ(SettingsValueText(v), c.shown);
        EXPECT_EQ(v.m_bClean, c.clean);
        EXPECT_EQ(v.m_nKind, kind);
    }
}

} // namespace
