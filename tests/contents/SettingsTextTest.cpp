// A settings variable as an editor cell shows it, and a typed text stored by
// the variable's kind.
#include "contents/SettingsText.h"
#include "contents/ProjectSettings.h"

#include <gtest/gtest.h>

namespace settings_text_test {

using Base = CVX2D_ProjectSettingsBase;

TEST(SettingsTextTest, RealsShowTrimmedPrintfDecimals) {
    const std::pair<double, const wchar_t*> cases[] = {
        {4.0, L"4.0"},   {0.0, L"0.0"},   {0.015625, L"0.015625"},   {0.0000001, L"0.0"},
        {-2.5, L"-2.5"}, {10.1, L"10.1"}, {1234567.0, L"1234567.0"}, {1.23456789, L"1.234568"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(SettingsRealText(value), text) << value;
}

TEST(SettingsTextTest, TypedTextIsStoredByKind) {
    // The variable, the typed text, whether it was taken, and the text shown
    // afterwards; the variable stays clean when the text is its value already.
    const std::tuple<int, const wchar_t*, bool, const wchar_t*> cases[] = {
        {158, L"on", true, L"Off"}, // "On" exactly, else off
        {158, L"On", true, L"On"},
        {123, L" 7 rungs", true, L"7"},
        {123, L"many", true, L"0"},
        {102, L"abc", true, L"0.0"},
        {102, L"0.5", true, L"0.5"},
        {169, L"16\"", true, L"16\""},
        {168, L"Arial; Bold; arial.ttf", true, L"Arial; Bold; arial.ttf"},
        {189, L"/blocks", true, L"/blocks"},
        {173, L"STANDARD", true, L"STANDARD"},
        {136, L"Dashed", true, L"Dashed"},
        {136, L"Center", false, L"Hidden"}, // not offered for this variable
        {136, L"hidden", false, L"Hidden"},
    };
    for (const auto& [id, typed, stored, shown] : cases) {
        SCOPED_TRACE(testing::Message() << id << " " << typed);
        auto settings = NewProjectSettings(4);
        settings->BuildCatalogue(1);
        Base::CVariable& v = *settings->FindVariable(id);
        const int kind = v.m_nKind;
        const std::wstring before = SettingsValueText(v);
        EXPECT_EQ(StoreSettingsText(v, typed), stored);
        EXPECT_EQ(SettingsValueText(v), shown);
        EXPECT_EQ(v.m_bClean, before == shown);
        EXPECT_EQ(v.m_nKind, kind);
    }
}

} // namespace settings_text_test
