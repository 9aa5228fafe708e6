// A standard's "General.ini": defaults, the version-dependent drawings keys,
// the GUID and the exact bytes a save writes.
#include "store/GeneralSettings.h"
#include "datafile/Text.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <array>
#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace general_settings_test {

std::string Narrow(const std::wstring& text) {
    return std::string(text.begin(), text.end());
}

class GeneralSettingsTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override { ListStandards({"No folder"}); }
    fs::path GeneralIni() const { return Folder() / "General.ini"; }
};

TEST_F(GeneralSettingsTest, DrawingsKeysFollowTheVersionYear) {
    // The file, and the drawings folders of applications 1-4 it gives.
    const std::pair<const char*, std::array<const wchar_t*, 4>> cases[] = {
        // No version: 2015, the old keys.
        {"[Drawings Location]\r\nElectric = /d/e\r\nFlow = /d/f\r\nIso = /d/i\r\nOrtho = /d/o\r\n"
         "PID = /d/new\r\n",
         {L"/d/e/", L"/d/f/", L"/d/i/", L"/d/o/"}},
        {"[Drawings Location]\r\nFlow = /d/f\r\n\r\n[General]\r\nProjectVersion = 2016\r\n",
         {L"", L"", L"", L""}},
        {"[Drawings Location]\r\nELECTRIC = /d/E\r\nISOMETRIC = /d/I/\r\nORTHO = /d/O\r\n"
         "PID = /d/P\r\n\r\n[General]\r\nProjectVersion = 2023\r\n",
         {L"/d/E/", L"/d/P/", L"/d/I/", L"/d/O/"}},
    };
    for (const auto& [bytes, folders] : cases) {
        WriteBytes(GeneralIni(), bytes);
        CVX2D_GeneralSettings settings;
        ASSERT_TRUE(settings.Load(registry, 1));
        for (int application = 1; application <= 4; ++application)
            EXPECT_EQ(settings.GetDrawingsLocation(application), folders[application - 1])
                << bytes << application;
        EXPECT_EQ(settings.GetDrawingsLocation(5), L"");
    }
}

TEST_F(GeneralSettingsTest, LoadFailsWithoutAFolderAndSaveThenWritesNothing) {
    for (const std::int32_t id : {0, -1, 2, 3}) {
        CVX2D_GeneralSettings settings;
        EXPECT_FALSE(settings.Load(registry, id)) << id;
        EXPECT_EQ(settings.GetPath(), L"");
        EXPECT_TRUE(settings.Save());
    }
    EXPECT_FALSE(fs::exists(Root() / "Projects"));
}

TEST_F(GeneralSettingsTest, AMissingOrDamagedGuidIsMadeAndWrittenBackOnLoad) {
    for (const std::string guidLine :
         {"", "ProjectGuid = xyz\r\n", "ProjectGuid = 00000000-0000-0000-0000-000000000000\r\n"}) {
        WriteBytes(GeneralIni(), "[General]\r\n" + guidLine + "\r\n[Units]\r\nWorking = 0\r\n");
        CVX2D_GeneralSettings settings;
        ASSERT_TRUE(settings.Load(registry, 1));
        EXPECT_FALSE(settings.m_guid.IsNull());
        // Only the GUID is written; every later look sees the same one.
        EXPECT_EQ(ReadBytes(GeneralIni()),
                  "[General]\r\nProjectGuid = " + Narrow(GuidToText(settings.m_guid)) +
                      "\r\n\r\n[Units]\r\nWorking = 0\r\n")
            << guidLine;
        CVX2D_GeneralSettings again;
        ASSERT_TRUE(again.Load(registry, 1));
        EXPECT_EQ(again.m_guid, settings.m_guid) << guidLine;
    }
}

TEST_F(GeneralSettingsTest, SaveLeavesAnUnchangedFileAloneAndWritesExactFormats) {
    // Not in sorted order: a rewrite would show.
    const std::string bytes =
        "[Units]\r\nWorking = 0\r\nDisplayed = 0\r\nRatingsFormat = 3\r\n\r\n"
        "[General]\r\nProjectGuid = 0123ABCD-0001-0002-0304-05060708090A\r\n"
        "LocalLineIni = 1\r\nBordersLocation = /b/\r\nTemplatesLocation = /t/\r\n"
        "LibrariesLocation = /l/\r\nLocalLineIniPath = /x/Lines.ini\r\n"
        "ProjectVersion = 2016\r\n\r\n[Drawings Location]\r\nELECTRIC = /d/e\r\n"
        "PID = /d/p\r\nISOMETRIC = /d/i\r\nORTHO = /d/o\r\n";
    WriteBytes(GeneralIni(), bytes);
    CVX2D_GeneralSettings settings;
    ASSERT_TRUE(settings.Load(registry, 1));
    EXPECT_EQ(settings.GetPath(), Datafiles().ProjectsFolder() + L"VX2D_PRJ_1 - Pipe" +
                                      kPathSeparator + L"General.ini");
    EXPECT_EQ(settings.m_nRatingsFormat, 3);
    EXPECT_EQ(settings.m_strTemplatesLocation, L"/t/");
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(ReadBytes(GeneralIni()), bytes);

    settings.m_nWorkingUnits = -2;
    settings.m_bLocalLineIni = false;
    settings.m_strTemplatesLocation.clear();
    settings.SetDrawingsLocation(2, L"/d/q");
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(
        ReadBytes(GeneralIni()),
        "[Drawings Location]\r\nELECTRIC = /d/e\r\nISOMETRIC = /d/i\r\nORTHO = /d/o\r\nPID = "
        "/d/q\r\n"
        "\r\n[General]\r\nBordersLocation = /b/\r\nLibrariesLocation = /l/\r\nLocalLineIni = 0\r\n"
        "LocalLineIniPath = /x/Lines.ini\r\nProjectGuid = 0123ABCD-0001-0002-0304-05060708090A\r\n"
        "ProjectVersion = 2016\r\nTemplatesLocation = \r\n\r\n[Units]\r\nDisplayed = 0\r\n"
        "RatingsFormat = 3\r\nWorking = -2\r\n");
}

} // namespace general_settings_test
