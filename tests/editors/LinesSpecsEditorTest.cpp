// The lines and specs pages: what each line command writes, what is refused
// with which message, which specs a standard is offered and what Apply and
// the close question write.
#include "editors/LinesEditor.h"
#include "editors/SpecsEditor.h"
#include "platform/Utf8.h"
#include "support/SpecsPageEditor.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace lines_specs_editor_test {

// Standard 1 "Pipe" under client 1, standard 2 "Other", standard 3 "Gone"
// without a folder; specs 5 common, 6 of client 1, 7 of Pipe, 8 of Other,
// 9 of client 2.
class LinesSpecsEditorTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandardsWithClients();
        WriteBytes(Root() / "SpecDatafile.ini",
                   "[ClientSpecs]\r\nVX2D_SPEC_6 = VX2D_CLIENT_1\r\nVX2D_SPEC_9 = VX2D_CLIENT_2\r\n"
                   "[ProjectSpecs]\r\nVX2D_SPEC_7 = VX2D_PRJ_1\r\nVX2D_SPEC_8 = VX2D_PRJ_2\r\n"
                   "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = Client A\r\n"
                   "VX2D_SPEC_7 = Pipe own\r\nVX2D_SPEC_8 = Other own\r\n"
                   "VX2D_SPEC_9 = Client B\r\n");
    }
    std::wstring LastMessage() const {
        return prompter.asked.empty() ? L"" : prompter.asked.back().text;
    }
};

TEST_F(LinesSpecsEditorTest, EachLineCommandWritesAtOnce) {
    WriteBytes(Root() / "LineDatafile.ini", "[General]\r\nLastLineId = 41\r\n");
    WriteBytes(Folder() / "Lines.ini", "[LineList]\r\nVX2D_LINE_7 = Main\r\n");
    WriteBytes(Folder() / "Specs.ini", "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
    CLinesEditor editor(registry, prompter);
    ASSERT_TRUE(editor.Open(1));
    EXPECT_EQ(editor.Header(), L"Lines - Pipe");

    EXPECT_EQ(editor.CreateLine(), 42);
    EXPECT_EQ(Read("Lines.ini"), "[LineList]\r\nVX2D_LINE_42 = Line 42\r\nVX2D_LINE_7 = Main\r\n");
    EXPECT_EQ(ReadBytes(Root() / "LineDatafile.ini"), "[General]\r\nLastLineId = 42\r\n");
    // The new line offers the checked specs in every application.
    const std::string specs = Read("Specs.ini");
    for (const char* application : {"ELECTRIC", "ISOMETRIC", "ORTHO", "PID"})
        EXPECT_NE(specs.find(std::string("[LineSpecs - ") + application +
                             "]\r\nVX2D_LINE_42 = VX2D_SPEC_5\r\n"),
                  std::string::npos)
            << application;

    struct SStep {
        const char* what;
        std::function<bool()> command;
        std::string lines;
    };
    const SStep steps[] = {
        {"rename (trimmed)", [&] { return editor.RenameLine(42, L" Drain "); },
         "[LineList]\r\nVX2D_LINE_42 = Drain\r\nVX2D_LINE_7 = Main\r\n"},
        {"delete", [&] { return editor.DeleteLine(7); },
         "[DeletedLines]\r\nVX2D_LINE_7 = Main\r\n\r\n[LineList]\r\nVX2D_LINE_42 = Drain\r\n"},
        {"recover", [&] { return editor.RecoverLine(7); },
         "[LineList]\r\nVX2D_LINE_42 = Drain\r\nVX2D_LINE_7 = Main\r\n"},
    };
    prompter.answers = {EPromptAnswer::Yes};
    for (const auto& step : steps) {
        SCOPED_TRACE(step.what);
        EXPECT_TRUE(step.command());
        EXPECT_EQ(Read("Lines.ini"), step.lines);
    }
    EXPECT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text, L"Are you sure you want to mark the line 'Main' as deleted?");
    // Live lines by id, then deleted ones.
    ASSERT_EQ(editor.Rows().size(), 2u);
    EXPECT_EQ(editor.Rows()[0].id, 7);
    EXPECT_EQ(editor.Rows()[1].name, L"Drain");
}

TEST_F(LinesSpecsEditorTest, RefusedLineCommandsSayWhyAndWriteNothing) {
    const std::string lines = "[LineList]\r\nVX2D_LINE_1 = Main\r\nVX2D_LINE_2 = Drain\r\n\r\n"
                              "[DeletedLines]\r\nVX2D_LINE_3 = Main\r\n";
    struct SCase {
        const char* what;
        std::function<bool(CLinesEditor&)> command;
        EPromptAnswer answer;
        std::wstring message;
    };
    const SCase cases[] = {
        {"rename to a live line's name", [](CLinesEditor& e) { return e.RenameLine(2, L"Main"); },
         EPromptAnswer::Ok, L"Error renaming line from 'Drain' to 'Main'.\n\nLine already exists"},
        {"rename to a path", [](CLinesEditor& e) { return e.RenameLine(2, L"a/b"); },
         EPromptAnswer::Ok, L"Error renaming line from 'Drain' to 'a/b'.\n\nInvalid name"},
        {"recover over a live name", [](CLinesEditor& e) { return e.RecoverLine(3); },
         EPromptAnswer::Ok, L"Error recovering line 'Main'.\n\nLine already exists"},
        {"delete declined", [](CLinesEditor& e) { return e.DeleteLine(2); }, EPromptAnswer::No,
         L"Are you sure you want to mark the line 'Drain' as deleted?"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        WriteBytes(Folder() / "Lines.ini", lines);
        CLinesEditor editor(registry, prompter);
        ASSERT_TRUE(editor.Open(1));
        prompter.answers = {c.answer};
        EXPECT_FALSE(c.command(editor));
        EXPECT_EQ(LastMessage(), c.message);
        EXPECT_EQ(Read("Lines.ini"), lines);
    }

    // A standard without a folder has nowhere to keep lines.
    CLinesEditor gone(registry, prompter);
    EXPECT_FALSE(gone.Open(3));
    EXPECT_EQ(LastMessage(), L"Error reading the lines of standard 'Gone'.\n\nCan't open line "
                             L"datafile");
    EXPECT_EQ(gone.CreateLine(), 0);
    EXPECT_EQ(LastMessage(), L"Error creating a new line in standard 'Gone'.\n\nCan't open line "
                             L"datafile");
}

TEST_F(LinesSpecsEditorTest, SpecsOfferedAndWhatApplyWrites) {
    // Client 2's spec is still checked from before a move between clients.
    WriteBytes(Folder() / "Specs.ini",
               "[SpecList]\r\nVX2D_SPEC_6 = Client A\r\nVX2D_SPEC_9 = Client B\r\n");
    test::CSpecsPageEditor editor(registry, prompter);
    ASSERT_TRUE(editor.Open(1));
    EXPECT_EQ(editor.Header(), L"Specs - Pipe");
    std::wstring shown;
    for (const auto& row : editor.Rows())
        shown += std::to_wstring(row.id) + L" " + row.name + L" (" + row.scope + L")" +
                 (row.checked ? L" x" : L"") + L"\n";
    EXPECT_EQ(shown, L"5 CS150 (Common)\n6 Client A (Client) x\n7 Pipe own (Standard)\n"
                     L"9 Client B (Not in the register) x\n");

    EXPECT_FALSE(editor.ApplyEnabled());
    EXPECT_TRUE(editor.SetChecked(0, true));
    EXPECT_TRUE(editor.SetChecked(1, false));
    EXPECT_TRUE(editor.SetChecked(3, false));
    EXPECT_FALSE(editor.SetChecked(4, true));
    EXPECT_TRUE(editor.ApplyEnabled());
    EXPECT_EQ(Read("Specs.ini"),
              "[SpecList]\r\nVX2D_SPEC_6 = Client A\r\nVX2D_SPEC_9 = Client B\r\n");
    EXPECT_TRUE(editor.Apply());
    EXPECT_EQ(Read("Specs.ini"), "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
    EXPECT_FALSE(editor.ApplyEnabled());
    EXPECT_EQ(editor.Rows().size(), 3u);
    EXPECT_TRUE(prompter.asked.empty());

    // Checking back and forth leaves nothing to save.
    EXPECT_TRUE(editor.SetChecked(2, true));
    EXPECT_TRUE(editor.SetChecked(2, false));
    EXPECT_FALSE(editor.ApplyEnabled());
}

TEST_F(LinesSpecsEditorTest, ClosingAModifiedSpecsPageAsks) {
    struct SCase {
        EPromptAnswer answer;
        std::string specs;
    };
    const SCase cases[] = {
        {EPromptAnswer::Yes, "[SpecList]\r\nVX2D_SPEC_7 = Pipe own\r\n"},
        {EPromptAnswer::No, ""},
    };
    for (const auto& c : cases) {
        fs::remove(Folder() / "Specs.ini");
        prompter.asked.clear();
        test::CSpecsPageEditor editor(registry, prompter);
        ASSERT_TRUE(editor.Open(1));
        ASSERT_TRUE(editor.SetChecked(2, true));
        prompter.answers = {c.answer};
        EXPECT_TRUE(editor.Close());
        ASSERT_EQ(prompter.asked.size(), 1u);
        EXPECT_EQ(
            prompter.asked[0].text,
            L"Standard 'Pipe' specs have been modified.\n\nDo you want to save your changes?");
        EXPECT_EQ(prompter.asked[0].buttons, EPromptButtons::YesNo);
        EXPECT_EQ(fs::exists(Folder() / "Specs.ini") ? Read("Specs.ini") : "", c.specs);
    }
}

TEST_F(LinesSpecsEditorTest, ApplyShowsASpecThatLeftTheRegister) {
    test::CSpecsPageEditor editor(registry, prompter);
    ASSERT_TRUE(editor.Open(1));
    ASSERT_TRUE(editor.SetChecked(0, true));
    WriteBytes(Root() / "SpecDatafile.ini", "[SpecList]\r\nVX2D_SPEC_6 = Client A\r\n");
    EXPECT_FALSE(editor.Apply());
    EXPECT_EQ(LastMessage(),
              L"Error checking spec 'CS150' for standard 'Pipe'.\n\nCan't find spec");
    EXPECT_FALSE(fs::exists(Folder() / "Specs.ini"));
    EXPECT_FALSE(editor.ApplyEnabled());
}

TEST_F(LinesSpecsEditorTest, ThePageManagesSpecsAtOnceAndKeepsUnappliedChecks) {
    test::CSpecsPageEditor editor(registry, prompter);
    ASSERT_TRUE(editor.Open(1));
    std::wstring places;
    for (const auto& choice : editor.Places())
        places += choice.text + L"\n";
    EXPECT_EQ(places, L"Common\nClient 'Client 1'\nStandard 'Pipe'\n");
    const auto shown = [&] {
        std::wstring text;
        for (const auto& row : editor.Rows())
            text += row.group + L": " + std::to_wstring(row.id) + L" " + row.name +
                    (row.checked ? L" x" : L"") + L"\n";
        return text;
    };
    const auto rowOf = [&](std::int32_t id) {
        for (std::size_t i = 0; i < editor.Rows().size(); ++i) {
            if (editor.Rows()[i].id == id)
                return i;
        }
        return editor.Rows().size();
    };
    ASSERT_TRUE(editor.SetChecked(0, true)); // CS150, not applied

    const auto made = editor.NewSpec(L"Drains", {eSpecClient, 1});
    ASSERT_TRUE(made);
    EXPECT_EQ(editor.Rows()[*made].id, 10);
    EXPECT_EQ(editor.Rows()[*made].folder, test::N(L"Specs/VX2D_CLIENT_1/VX2D_SPEC_10"));
    const auto copied = editor.CopySpec(rowOf(5), editor.ProposedCopyName(rowOf(5)), {});
    ASSERT_TRUE(copied);
    EXPECT_TRUE(editor.MoveSpec(*copied, {eSpecProject, 1}));
    EXPECT_EQ(shown(), L"Common specs: 5 CS150 x\n"
                       L"Specs of client 'Client 1': 6 Client A\n"
                       L"Specs of client 'Client 1': 10 Drains\n"
                       L"Specs of standard 'Pipe': 11 Copy of CS150\n"
                       L"Specs of standard 'Pipe': 7 Pipe own\n");
    EXPECT_TRUE(editor.ApplyEnabled());
    EXPECT_TRUE(prompter.asked.empty());

    // Refusals say why; a No changes nothing and says nothing more.
    EXPECT_FALSE(editor.RenameSpec(rowOf(10), L"a/b"));
    EXPECT_EQ(LastMessage(), L"Error renaming spec 'Drains' to 'a/b'.\n\nInvalid name: a name "
                             L"cannot hold '/' (none of < > : \" / \\ | ? * may be used).");
    EXPECT_FALSE(editor.NewSpec(L"drains", {eSpecClient, 1}));
    EXPECT_EQ(LastMessage(), L"Error creating spec 'drains'.\n\nSpec already exists");
    prompter.answers = {EPromptAnswer::No};
    EXPECT_FALSE(editor.DeleteSpec(rowOf(7)));
    EXPECT_EQ(LastMessage(), L"Delete spec 'Pipe own' and its folder for good?");
    EXPECT_EQ(rowOf(7), 4u);

    std::wstring opened;
    editor.SetOpener([&](const std::wstring& target) {
        opened = target;
        return true;
    });
    EXPECT_TRUE(editor.OpenFolder(rowOf(10)));
    EXPECT_EQ(test::P(opened), Root() / "Specs" / "VX2D_CLIENT_1" / "VX2D_SPEC_10" / "");
    // A spec entered in the register by hand may have no folder yet.
    EXPECT_FALSE(editor.OpenFolder(rowOf(6)));
    EXPECT_EQ(LastMessage(),
              L"The folder of spec 'Client A' is not there:\n" +
                  platform::FromPath(Root() / "Specs" / "VX2D_CLIENT_1" / "VX2D_SPEC_6" / ""));

    EXPECT_TRUE(editor.Apply());
    EXPECT_EQ(Read("Specs.ini"), "[ProjectSpecs]\r\nVX2D_SPEC_11 = Copy of CS150\r\n\r\n"
                                 "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
    EXPECT_EQ(ReadBytes(Root() / "SpecDestinationDatafile.ini"),
              "[VX2D_PRJ_1]\r\nVX2D_SPEC_5 = Specs\\Common\\VX2D_SPEC_5\\\r\n");
}

} // namespace lines_specs_editor_test
