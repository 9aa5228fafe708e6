// The "Lines" and "Specs" pages of a standard, driven through their widgets:
// each shows the standard's values and writes one change.
#include "GuiSupport.h"

#include "gui/LinesFormView.h"
#include "gui/MainFrame.h"
#include "gui/SpecsFormView.h"

#include <QPushButton>

namespace fs = std::filesystem;

class LinesSpecsPagesTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;
    std::int32_t id = 0;

    fs::path Folder() { return world->StandardFile(id, L""); }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        QCOMPARE(world->core.projects.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void theLinesPageRenamesALine() {
        test::WriteBytes(Folder() / "Lines.ini", "[DeletedLines]\r\nVX2D_LINE_2 = Old\r\n\r\n"
                                                 "[LineList]\r\nVX2D_LINE_1 = Line 1\r\n");
        CLinesFormView view(world->core, *frame, id);
        QTableWidget* grid = view.findChild<QTableWidget*>(QStringLiteral("linesGrid"));
        QVERIFY(grid);
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(grid->item(0, 0)->text(), QStringLiteral("Line 1"));
        QCOMPARE(grid->item(1, 0)->text(), QStringLiteral("Old"));
        QCOMPARE(grid->item(1, 2)->text(), QStringLiteral("Deleted"));
        QVERIFY(view.findChild<QPushButton*>(QStringLiteral("deleteButton"))->isEnabled());
        QVERIFY(!view.findChild<QPushButton*>(QStringLiteral("recoverButton"))->isEnabled());
        QVERIFY(view.findChild<QPushButton*>(QStringLiteral("helpButton")));

        grid->item(0, 0)->setText(QStringLiteral("Drain"));
        QCOMPARE(test::ReadBytes(Folder() / "Lines.ini"),
                 std::string("[DeletedLines]\r\nVX2D_LINE_2 = Old\r\n\r\n"
                             "[LineList]\r\nVX2D_LINE_1 = Drain\r\n"));
        QCOMPARE(grid->item(0, 0)->text(), QStringLiteral("Drain"));
        QVERIFY(world->prompter.asked.empty());
        QVERIFY(view.CanClose());
    }

    void theSpecsPageAppliesACheck() {
        test::WriteBytes(world->folder.Dir().Path() / "SpecDatafile.ini",
                         "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = SS300\r\n");
        test::WriteBytes(Folder() / "Specs.ini", "[SpecList]\r\nVX2D_SPEC_6 = SS300\r\n");
        CSpecsFormView view(world->core, *frame, id);
        QTableWidget* grid = view.findChild<QTableWidget*>(QStringLiteral("specsGrid"));
        auto* apply = view.findChild<QPushButton*>(QStringLiteral("applyButton"));
        QVERIFY(grid && apply);
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(grid->item(0, 0)->text(), QStringLiteral("CS150"));
        QCOMPARE(grid->item(0, 0)->checkState(), Qt::Unchecked);
        QCOMPARE(grid->item(1, 0)->checkState(), Qt::Checked);
        QCOMPARE(grid->item(1, 2)->text(), QStringLiteral("Common"));
        QVERIFY(!apply->isEnabled());

        grid->item(0, 0)->setCheckState(Qt::Checked);
        QVERIFY(apply->isEnabled());
        apply->click();
        QVERIFY(!apply->isEnabled());
        QCOMPARE(test::ReadBytes(Folder() / "Specs.ini"),
                 std::string("[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = SS300\r\n"));

        // An unapplied uncheck is asked about on closing; No keeps the file.
        grid->item(1, 0)->setCheckState(Qt::Unchecked);
        world->prompter.answers = {EPromptAnswer::No};
        QVERIFY(view.CanClose());
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QCOMPARE(world->prompter.asked[0].text,
                 std::wstring(L"Standard 'Pipe' specs have been modified.\n\n"
                              L"Do you want to save your changes?"));
        QCOMPARE(test::ReadBytes(Folder() / "Specs.ini"),
                 std::string("[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = SS300\r\n"));
    }
};

QTEST_MAIN(LinesSpecsPagesTest)
#include "LinesSpecsPagesTest.moc"
