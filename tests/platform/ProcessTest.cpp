// Starting programs: arguments arrive whole whatever they hold, the program
// runs in the folder it is given, and a program path may have blanks and
// accents (the drafting launcher lives under "Program Files").
#include "platform/System.h"
#include "platform/Utf8.h"
#include "support/TestSupport.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace fs = std::filesystem;

namespace process_test {

struct SFolders {
    test::CTempDir dir;
    fs::path program = dir.Path() / platform::ToPath(L"Program Files (x86)") /
                       platform::ToPath(L"Dr\u00E4fting Suite") /
                       fs::path(SD_TEST_WORKER).filename();
    fs::path work = dir.Path() / platform::ToPath(L"Work \u00C4rea");
    fs::path out = dir.Path() / platform::ToPath(L"r\u00E9sult.txt");
    SFolders() {
        fs::create_directories(program.parent_path());
        fs::create_directories(work);
        fs::copy_file(SD_TEST_WORKER, program);
    }
    // What the worker wrote: its working folder, then its arguments.
    std::string Written() const {
        for (int i = 0; i < 3000 && !fs::exists(out); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        // A launched program may still be writing.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return test::ReadBytes(out);
    }
    std::string Expected(const std::vector<std::string>& args) const {
        std::string text = platform::ToUtf8(platform::FromPath(fs::canonical(work))) + "\n";
        for (const auto& arg : args)
            text += arg + "\n";
        return text;
    }
};

TEST(Processes, ArgumentsArriveWholeInTheWorkingFolder) {
    SFolders f;
    const std::vector<std::wstring> args = {L"where",      platform::FromPath(f.out), L"two words",
                                            L"say \"hi\"", L"back\\slash\\",          L"",
                                            L"\u20AC"};
    const std::int64_t pid = platform::StartProcess(f.program, args, f.work);
    ASSERT_GT(pid, 0);
    EXPECT_EQ(platform::WaitProcess(pid), 0);
    EXPECT_EQ(test::ReadBytes(f.out),
              f.Expected({"two words", "say \"hi\"", "back\\slash\\", "", "\xE2\x82\xAC"}));
}

TEST(Processes, ALaunchedProgramGetsItsParameterLineAndWorkingFolder) {
    SFolders f;
    // As the drafting launcher is started: a line with quoted parts.
    const std::wstring line =
        L"where \"" + platform::FromPath(f.out) + L"\" ProjectId=3 DrawingName=\"Pump A.dwg\"";
    ASSERT_TRUE(platform::LaunchProgram(f.program, line, f.work));
    EXPECT_EQ(f.Written(), f.Expected({"ProjectId=3", "DrawingName=Pump A.dwg"}));
}

TEST(Processes, WhatCannotBeStartedSaysSo) {
    SFolders f;
    EXPECT_EQ(platform::StartProcess(f.dir.Path() / "missing.exe", {}), -1);
    EXPECT_FALSE(platform::LaunchProgram(f.dir.Path() / "missing.exe", L""));
    EXPECT_FALSE(platform::LaunchProgram(f.program, L"where x", f.dir.Path() / "no folder"));
}

TEST(Processes, ParameterLinesSplitAsAWindowsProgramReadsThem) {
    const std::pair<const wchar_t*, std::vector<std::wstring>> cases[] = {
        {L"", {}},
        {L"  a\tb  ", {L"a", L"b"}},
        {L"\"C:\\Program Files\\x.dwg\" ProjectId=1",
         {L"C:\\Program Files\\x.dwg", L"ProjectId=1"}},
        {L"Name=\"A B\"C", {L"Name=A BC"}},
        {L"\"\" x", {L"", L"x"}},
    };
    for (const auto& [line, words] : cases)
        EXPECT_EQ(platform::SplitParameters(line), words) << platform::ToUtf8(line);
}

TEST(Processes, ArgumentsAreQuotedSoThatAWindowsProgramSplitsThemBack) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"plain", L"plain"},
        {L"", L"\"\""},
        {L"two words", L"\"two words\""},
        {L"say \"hi\"", L"\"say \\\"hi\\\"\""},
        {L"C:\\Program Files\\", L"\"C:\\Program Files\\\\\""},
        {L"a\\b", L"a\\b"},
    };
    for (const auto& [arg, quoted] : cases)
        EXPECT_EQ(platform::QuotedArgument(arg), quoted) << platform::ToUtf8(arg);
}

} // namespace process_test
