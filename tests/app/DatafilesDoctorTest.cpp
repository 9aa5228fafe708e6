// The check of a whole datafiles folder: each kind of damage found with its
// place and advice, nothing on a healthy folder, each registry read once,
// and repairs that do what their preview said and never take a lock file
// from its holder.
#include "app/DatafilesDoctor.h"
#include "contents/ProjectSettingsBase.h"
#include "datafile/FileLock.h"
#include "datafile/IniFile.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <thread>

namespace fs = std::filesystem;
using test::N;
using test::WriteBytes;

namespace datafiles_doctor_test {

using ES = EDoctorSeverity;
using ER = EDoctorRepair;

// Standards 1 "Pipe" (under client 1) and 2 "Elec" (under none), made from
// the metric template.
struct SWorld : test::CStandardOnDisk {
    SWorld() {
        Create(L"Pipe");
        Create(L"Elec");
        CVX2D_ClientRegistry clients(Datafiles());
        std::int32_t id = 0;
        std::wstring name;
        EXPECT_TRUE(clients.CreateClient(id, name));
        EXPECT_TRUE(clients.AddProjectToClient(1, 1));
    }
    fs::path Folder2() const { return Root() / "Projects" / "VX2D_PRJ_2 - Elec"; }
    void Set(const fs::path& file, const wchar_t* section, const wchar_t* key,
             const wchar_t* value) const {
        ASSERT_TRUE(UpdateDatafile(platform::FromPath(file), [&](CVX2D_IniFile& ini) {
            ini.SetSection(section);
            if (value)
                ini.SetString(key, value);
            else
                ini.DeleteKey(key);
            return true;
        }));
    }
    std::vector<SDoctorFinding> Examine() {
        std::vector<SDoctorFinding> findings;
        EXPECT_TRUE(CDatafilesDoctor(registry).Examine(findings));
        return findings;
    }
};

struct SExpected {
    ES severity;
    std::string kind;
    std::int32_t standard;
    std::int32_t client;
    std::string file; // relative, with '/'
    std::string says; // part of the message
    ER repair = ER::eNone;
};

std::string Text(const std::wstring& text) {
    return platform::ToUtf8(text);
}

TEST(DatafilesDoctorTest, FindsEachKindWithItsPlaceAndAdvice) {
    const std::string pipe = "Projects/VX2D_PRJ_1 - Pipe/";
    const std::string elec = "Projects/VX2D_PRJ_2 - Elec/";
    struct SCase {
        const char* what;
        std::function<void(SWorld&)> damage;
        std::vector<SExpected> expected;
    };
    const std::vector<SCase> cases = {
        {"a registry entry without its folder",
         [](SWorld& w) { fs::remove_all(w.Folder2()); },
         {{ES::eError, "entry-without-folder", 2, 0, "ProjectDatafile.ini", "standard 2 'Elec'",
           ER::eRegistry}}},
        {"a folder the registry does not list",
         [](SWorld& w) {
             w.Set(w.Root() / "ProjectDatafile.ini", L"ProjectList", L"VX2D_PRJ_2", nullptr);
         },
         {{ES::eWarning, "unregistered-folder", 2, 0, "Projects/VX2D_PRJ_2 - Elec",
           "'VX2D_PRJ_2 - Elec' is not in the registry", ER::eRegistry}}},
        {"a standard counter below the highest id",
         [](SWorld& w) {
             w.Set(w.Root() / "ProjectDatafile.ini", L"General", L"LastProjectId", L"1");
         },
         {{ES::eError, "project-counter-low", 0, 0, "ProjectDatafile.ini", "highest standard id 2",
           ER::eRegistry}}},
        {"two folders of one standard",
         [](SWorld& w) { fs::create_directories(w.Root() / "Projects" / "VX2D_PRJ_1 - Old"); },
         {{ES::eWarning, "two-folders", 1, 0, "", "uses 'VX2D_PRJ_1 - Pipe'"}}},
        {"a standard under two clients",
         [](SWorld& w) {
             CVX2D_ClientRegistry clients(w.Datafiles());
             std::int32_t id = 0;
             std::wstring name;
             ASSERT_TRUE(clients.CreateClient(id, name));
             w.Set(w.Root() / "ClientDatafile.ini", L"ProjectList - 2", L"1", L"1");
         },
         {{ES::eWarning, "standard-in-two-clients", 1, 1, "ClientDatafile.ini", "clients 1, 2"}}},
        {"a client that does not exist",
         [](SWorld& w) { w.Set(w.Root() / "ClientDatafile.ini", L"ProjectList - 7", L"2", L"2"); },
         {{ES::eWarning, "client-unknown", 2, 7, "ClientDatafile.ini",
           "listed by client 7, which does not exist"}}},
        {"a client listing an unknown standard",
         [](SWorld& w) {
             w.Set(w.Root() / "ClientDatafile.ini", L"ProjectList - 1", L"55", L"55");
         },
         {{ES::eWarning, "client-lists-unknown-standard", 55, 1, "ClientDatafile.ini",
           "lists standard 55"}}},
        {"a copy with its source's GUID",
         [](SWorld& w) {
             // Not fs::copy_file: MinGW's cannot replace a file.
             test::WriteBytes(w.Folder2() / "General.ini",
                              test::ReadBytes(w.Folder() / "General.ini"));
         },
         {{ES::eWarning, "duplicate-guid", 1, 0, pipe + "General.ini", "of standard 2 'Elec'"},
          {ES::eWarning, "duplicate-guid", 2, 0, elec + "General.ini", "of standard 1 'Pipe'"}}},
        {"a missing General.ini",
         [](SWorld& w) { fs::remove(w.Folder2() / "General.ini"); },
         {{ES::eError, "general-ini-missing", 2, 0, elec + "General.ini", "no General.ini"}}},
        {"settings that are no number or not offered",
         [](SWorld& w) {
             WriteBytes(w.Folder() / "PID.ini", "[Settings]\r\nVariable 145 = abc\r\n"
                                                "Variable 155 = 25\r\nVariable 156 = 10\r\n");
         },
         {{ES::eWarning, "setting-not-a-number", 1, 0, pipe + "PID.ini",
           "Variable 145 \"Text Height\" of P&ID is 'abc'"},
          {ES::eWarning, "setting-not-in-choices", 1, 0, pipe + "PID.ini",
           "not one of its choices (17, 18)"}}},
        {"layers with a bad name, colour, linetype and lineweight",
         [](SWorld& w) {
             WriteBytes(w.Folder() / "Layers.ini",
                        "[PID - Colors]\r\n014 = 300,0,0,1\r\n016 = 0,255,255,4\r\n"
                        "[PID - Layers]\r\n014 = A<B\r\n[PID - LineWeights]\r\n014 = 7\r\n"
                        "016 = 25\r\n[PID - Linetypes]\r\n014 = WAVY\r\n016 = dashed\r\n");
         },
         {{ES::eWarning, "layer-color", 1, 0, pipe + "Layers.ini", "colour '300,0,0,1'"},
          {ES::eWarning, "layer-name", 1, 0, pipe + "Layers.ini", "Layer 014 (Attribute) of PID"},
          {ES::eWarning, "layer-lineweight", 1, 0, pipe + "Layers.ini", "lineweight '7'"},
          {ES::eWarning, "layer-linetype", 1, 0, pipe + "Layers.ini", "linetype 'WAVY'"}}},
        {"a line counter below the highest line id",
         [](SWorld& w) {
             WriteBytes(w.Folder2() / "Lines.ini", "[LineList]\r\nVX2D_LINE_90 = L90\r\n");
             WriteBytes(w.Root() / "LineDatafile.ini", "[General]\r\nLastLineId = 50\r\n");
         },
         {{ES::eError, "line-counter-low", 2, 0, "LineDatafile.ini",
           "LastLineId is 50, below line id 90 of standard 2 'Elec'", ER::eLineCounter}}},
        {"folders General.ini names that do not exist",
         [](SWorld& w) {
             const fs::path general = w.Folder2() / "General.ini";
             w.Set(general, L"Drawings Location", L"PID", L"/nowhere/pid/");
             w.Set(general, L"General", L"BordersLocation", L"/nowhere/borders/");
             w.Set(general, L"General", L"TemplatesLocation", L"/nowhere/templates/");
         },
         {{ES::eWarning, "borders-folder-missing", 2, 0, elec + "General.ini",
           "'/nowhere/borders/'"},
          {ES::eWarning, "templates-folder-missing", 2, 0, elec + "General.ini",
           "templates folder"},
          {ES::eWarning, "drawings-folder-missing", 2, 0, elec + "General.ini",
           "The PID drawings folder '/nowhere/pid/'"}}},
        {"a missing shipped template",
         [](SWorld& w) { fs::remove_all(w.Root() / "Template" / "Imperial 2015"); },
         {{ES::eError, "template-missing", 0, 0, "Template/Imperial 2015", "'Imperial 2015'"}}},
        {"lock and temporary files nobody uses",
         [](SWorld& w) {
             WriteBytes(w.Root() / "ClientDatafile.ini.lock", "");
             WriteBytes(w.Folder() / "Layers.ini.lock", "");
             WriteBytes(w.Folder() / "General.ini.4242.tmp", "[Gen");
             // Not a datafile's: an export's own temporary file.
             WriteBytes(w.Folder() / "Pipe.xst.4242.tmp", "PK");
         },
         {{ES::eWarning, "leftover-lock", 0, 0, "ClientDatafile.ini.lock",
           "lock file of ClientDatafile.ini", ER::eLeftover},
          {ES::eWarning, "leftover-temp", 1, 0, pipe + "General.ini.4242.tmp",
           "save of General.ini", ER::eLeftover},
          {ES::eWarning, "leftover-lock", 1, 0, pipe + "Layers.ini.lock", "Layers.ini",
           ER::eLeftover}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        SWorld world;
        c.damage(world);
        const auto findings = world.Examine();
        ASSERT_EQ(findings.size(), c.expected.size()) << Text(CDatafilesDoctor::Summary(findings));
        for (std::size_t i = 0; i < findings.size(); ++i) {
            const SDoctorFinding& f = findings[i];
            const SExpected& e = c.expected[i];
            SCOPED_TRACE(Text(f.message));
            EXPECT_EQ(f.severity, e.severity);
            EXPECT_EQ(Text(f.kind), e.kind);
            EXPECT_EQ(f.standardId, e.standard);
            EXPECT_EQ(f.clientId, e.client);
            EXPECT_EQ(Text(f.file), N(e.file));
            EXPECT_NE(Text(f.message).find(e.says), std::string::npos);
            EXPECT_FALSE(f.todo.empty());
            EXPECT_EQ(f.repair, e.repair);
        }
    }
}

TEST(DatafilesDoctorTest, TheRowsNameTheStandardsFolderAndPage) {
    SWorld world;
    WriteBytes(world.Folder() / "PID.ini", "[Settings]\r\nVariable 155 = 25\r\n");
    WriteBytes(world.Folder() / "Layers.ini", "[ISOMETRIC - Linetypes]\r\n001 = WAVY\r\n");
    const auto findings = world.Examine();
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0].folder, L"VX2D_PRJ_1 - Pipe");
    EXPECT_EQ(findings[0].page, EDoctorPage::eSection);
    EXPECT_EQ(findings[0].application, 2);
    EXPECT_EQ(findings[0].section, CVX2D_ProjectSettingsBase::eSystemToggles);
    EXPECT_EQ(findings[1].page, EDoctorPage::eLayers);
    EXPECT_EQ(findings[1].application, 3);
}

TEST(DatafilesDoctorTest, AHealthyFolderGivesNothingAndEachRegistryIsReadOnce) {
    SWorld world;
    WriteBytes(world.Folder() / "Lines.ini", "[LineList]\r\nVX2D_LINE_4 = L4\r\n");
    WriteBytes(world.Root() / "LineDatafile.ini", "[General]\r\nLastLineId = 4\r\n");
    std::map<std::string, int> reads;
    SetDatafileReadObserver(
        [&](const std::wstring& path) { ++reads[fs::path(path).filename().string()]; });
    const auto findings = world.Examine();
    SetDatafileReadObserver({});
    for (const auto& f : findings)
        ADD_FAILURE() << Text(f.kind) << ": " << Text(f.message);
    for (const char* file : {"ProjectDatafile.ini", "ClientDatafile.ini", "LineDatafile.ini"})
        EXPECT_EQ(reads[file], 1) << file;
    EXPECT_EQ(reads["General.ini"], 2) << "each standard's General.ini once";

    std::vector<SDoctorFinding> partial;
    EXPECT_FALSE(
        CDatafilesDoctor(world.registry)
            .Examine(partial, [](std::size_t, std::size_t, const std::wstring&) { return false; }))
        << "a stop from the progress is obeyed";
    EXPECT_EQ(CDatafilesDoctor::Summary(findings), L"No problems found.");
    EXPECT_EQ(CDatafilesDoctor::Summary(partial, false),
              L"The check was stopped. Until then: no problems found.");
}

std::vector<std::string> Texts(const std::vector<SDoctorRepairStep>& steps) {
    std::vector<std::string> texts;
    for (const auto& step : steps)
        texts.push_back(Text(step.text));
    return texts;
}

TEST(DatafilesDoctorTest, RepairsDoWhatThePreviewSaidAndNothingElse) {
    SWorld world;
    fs::remove_all(world.Folder2());
    fs::create_directories(world.Root() / "Projects" / "VX2D_PRJ_5 - Stray");
    WriteBytes(world.Root() / "Projects" / "VX2D_PRJ_5 - Stray" / "General.ini",
               "[General]\r\nProjectVersion = 2023\r\n");
    WriteBytes(world.Folder() / "Lines.ini", "[LineList]\r\nVX2D_LINE_90 = L90\r\n");
    WriteBytes(world.Root() / "LineDatafile.ini", "[General]\r\nLastLineId = 50\r\n");
    WriteBytes(world.Folder() / "Layers.ini.lock", "");
    WriteBytes(world.Folder() / "Layers.ini.777.tmp", "x");
    fs::remove_all(world.Root() / "Template" / "Metric 2015");
    const std::string registryBefore = test::ReadBytes(world.Root() / "ProjectDatafile.ini");

    CDatafilesDoctor doctor(world.registry);
    const auto findings = world.Examine();
    const auto preview = doctor.Preview(findings);
    EXPECT_EQ(Texts(preview),
              (std::vector<std::string>{
                  "Drop the registry entry of standard 2 'Elec', whose folder is missing",
                  "Register the folder of standard 5 'Stray'",
                  "Raise LastProjectId in ProjectDatafile.ini to 5",
                  "Raise LastLineId in LineDatafile.ini to the highest line id of standard 1",
                  N("Remove Projects/VX2D_PRJ_1 - Pipe/Layers.ini.777.tmp"),
                  N("Remove Projects/VX2D_PRJ_1 - Pipe/Layers.ini.lock")}));
    for (const auto& step : preview)
        EXPECT_FALSE(step.done);
    EXPECT_EQ(test::ReadBytes(world.Root() / "ProjectDatafile.ini"), registryBefore);
    EXPECT_EQ(world.Examine().size(), findings.size()) << "the preview changed something";

    const auto done = doctor.Repair(findings);
    EXPECT_EQ(Texts(done), Texts(preview));
    for (const auto& step : done)
        EXPECT_TRUE(step.done) << Text(step.text);
    EXPECT_EQ(test::ReadBytes(world.Root() / "LineDatafile.ini"),
              "[General]\r\nLastLineId = 90\r\n");
    EXPECT_FALSE(fs::exists(world.Folder() / "Layers.ini.lock"));
    EXPECT_FALSE(fs::exists(world.Folder() / "Layers.ini.777.tmp"));
    const auto after = world.Examine();
    ASSERT_EQ(after.size(), 1u) << "only what has no repair is left";
    EXPECT_EQ(after[0].kind, L"template-missing");
}

TEST(DatafilesDoctorTest, TheDesktopsRepairAsksWithThePreviewFirst) {
    SWorld world;
    WriteBytes(world.Folder() / "Layers.ini.lock", "");
    fs::remove_all(world.Root() / "Template" / "Metric");
    CDatafilesDoctor doctor(world.registry);
    std::vector<SDoctorRepairStep> done;

    world.prompter.answers = {EPromptAnswer::No};
    EXPECT_FALSE(doctor.AskAndRepair(world.prompter, world.Examine(), done));
    ASSERT_EQ(world.prompter.asked.size(), 1u);
    EXPECT_EQ(world.prompter.asked[0].text,
              N(L"These repairs will be made:\n\n\u2022 Remove Projects/VX2D_PRJ_1 - "
                L"Pipe/Layers.ini.lock\n\nMake them?"));
    EXPECT_EQ(world.prompter.asked[0].defaultAnswer, EPromptAnswer::No);
    EXPECT_TRUE(fs::exists(world.Folder() / "Layers.ini.lock")) << "repaired after a no";

    world.prompter.answers = {EPromptAnswer::Yes};
    EXPECT_TRUE(doctor.AskAndRepair(world.prompter, world.Examine(), done));
    ASSERT_EQ(done.size(), 1u);
    EXPECT_TRUE(done[0].done);
    EXPECT_FALSE(fs::exists(world.Folder() / "Layers.ini.lock"));
    EXPECT_EQ(world.prompter.asked.size(), 2u) << "told something after a full repair";

    // What is left has no repair: the user is told so, nothing is asked.
    EXPECT_FALSE(doctor.AskAndRepair(world.prompter, world.Examine(), done));
    ASSERT_EQ(world.prompter.asked.size(), 3u);
    EXPECT_EQ(world.prompter.asked[2].buttons, EPromptButtons::Ok);
}

#ifndef _WIN32
// Another workstation's process that takes a datafile's lock and keeps it
// until it is killed, as a crash would end it.
class CHolder {
public:
    explicit CHolder(const std::wstring& datafile) {
        const std::wstring ready = datafile + L".ready";
        m_pid = platform::StartProcess(SD_TEST_WORKER, {L"hold", datafile, ready});
        for (int i = 0; i < 1000 && !fs::exists(test::P(ready)); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_TRUE(fs::exists(test::P(ready))) << "the holder never took the lock";
        fs::remove(test::P(ready));
    }
    ~CHolder() { Kill(); }
    void Kill() {
        if (m_pid > 0) {
            test::KillProcess(m_pid);
            platform::WaitProcess(m_pid);
        }
        m_pid = 0;
    }

private:
    std::int64_t m_pid = 0;
};

TEST(DatafilesDoctorTest, ALockSomeoneHoldsIsNeitherReportedNorRemoved) {
    SWorld world;
    const std::wstring layers = platform::FromPath(world.Folder() / "Layers.ini");
    const fs::path lockFile = test::P(CVX2D_FileLock::LockPathOf(layers));
    CDatafilesDoctor doctor(world.registry);
    {
        CHolder holder(layers);
        // A save of that file may be writing this one now.
        WriteBytes(world.Folder() / "Layers.ini.777.tmp", "x");
        EXPECT_TRUE(world.Examine().empty()) << "a live writer's files were reported";
    }
    // The holder was killed: its lock file stays behind, nobody's now.
    ASSERT_TRUE(fs::exists(lockFile));
    const auto findings = world.Examine();
    ASSERT_EQ(findings.size(), 2u);

    // Someone takes the lock between the check and the repair.
    CHolder late(layers);
    for (const auto& step : doctor.Repair(findings)) {
        EXPECT_FALSE(step.done) << Text(step.text);
        EXPECT_NE(step.text.find(L"in use now: left alone"), std::wstring::npos);
    }
    EXPECT_TRUE(fs::exists(lockFile));
    EXPECT_TRUE(CVX2D_FileLock::IsHeldNow(layers)) << "the repair took the lock from its holder";
    late.Kill();

    for (const auto& step : doctor.Repair(world.Examine()))
        EXPECT_TRUE(step.done) << Text(step.text);
    EXPECT_FALSE(fs::exists(lockFile));
    EXPECT_TRUE(world.Examine().empty());
}
#endif

} // namespace datafiles_doctor_test
