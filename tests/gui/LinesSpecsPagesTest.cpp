// The "Lines" and "Specs" pages of a standard, driven through their widgets:
// each shows the standard's values and writes one change.
#include "GuiSupport.h"

#include "gui/LinesFormView.h"
#include "gui/MainFrame.h"
#include "gui/QtText.h"
#include "gui/SpecsFormView.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

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
        QCOMPARE(grid->rowCount(), 3);
        QCOMPARE(grid->item(0, 0)->text(), QStringLiteral("Common specs"));
        QCOMPARE(grid->item(1, 0)->text(), QStringLiteral("CS150"));
        QCOMPARE(grid->item(1, 0)->checkState(), Qt::Unchecked);
        QCOMPARE(grid->item(2, 0)->checkState(), Qt::Checked);
        QCOMPARE(grid->item(2, 2)->text(), Q(test::N(L"Specs/Common/VX2D_SPEC_6")));
        QVERIFY(!apply->isEnabled());

        grid->item(1, 0)->setCheckState(Qt::Checked);
        QVERIFY(apply->isEnabled());
        apply->click();
        QVERIFY(!apply->isEnabled());
        QCOMPARE(test::ReadBytes(Folder() / "Specs.ini"),
                 std::string("[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = SS300\r\n"));

        // An unapplied uncheck is asked about on closing; No keeps the file.
        grid->item(2, 0)->setCheckState(Qt::Unchecked);
        world->prompter.answers = {EPromptAnswer::No};
        QVERIFY(view.CanClose());
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QCOMPARE(world->prompter.asked[0].text,
                 std::wstring(L"Standard 'Pipe' specs have been modified.\n\n"
                              L"Do you want to save your changes?"));
        QCOMPARE(test::ReadBytes(Folder() / "Specs.ini"),
                 std::string("[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = SS300\r\n"));
    }

    // Through the main window as a user does: open the standard from the
    // navigator, make specs on its Specs page, check one, apply, close.
    void theSpecsPageMakesSpecsAndAppliesTheirChecks() {
        std::int32_t clientId = 0;
        std::wstring clientName;
        QVERIFY(world->core.clients.CreateClient(clientId, clientName));
        QVERIFY(world->core.clients.RenameClient(clientId, L"Acme"));
        QVERIFY(world->core.clients.AddProjectToClient(clientId, id));
        // The navigator shows the standard under its client from the start.
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->resize(1200, 800);
        frame->show();
        auto* view = qobject_cast<CSpecsFormView*>(OpenStandardPage(
            *frame, {QStringLiteral("Acme"), QStringLiteral("Pipe")}, {QStringLiteral("Specs")}));
        QVERIFY(view);
        QTableWidget* grid = view->Grid();
        const auto button = [&](const char* name) {
            return view->findChild<QPushButton*>(QLatin1String(name));
        };
        QVERIFY(view->findChild<QLabel*>(QStringLiteral("noSpecsNote"))->isVisibleTo(view));
        QVERIFY(!button("deleteSpecButton")->isEnabled());

        // The dialog of New... and Copy...: a name and a place.
        const auto answer = [](const QString& name, int place) {
            QTimer::singleShot(0, [name, place] {
                auto* dialog = qobject_cast<CSpecPlaceDialog*>(QApplication::activeModalWidget());
                QVERIFY(dialog);
                dialog->findChild<QLineEdit*>(QStringLiteral("specName"))->setText(name);
                dialog->findChild<QComboBox*>(QStringLiteral("specPlace"))->setCurrentIndex(place);
                dialog->accept();
            });
        };
        answer(QStringLiteral("CS150"), 1); // Client 'Acme'
        button("newSpecButton")->click();
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(grid->item(0, 0)->text(), QStringLiteral("Specs of client 'Acme'"));
        QCOMPARE(grid->item(1, 0)->text(), QStringLiteral("CS150"));
        const fs::path root = world->folder.Dir().Path();
        QVERIFY(fs::is_directory(root / "Specs" / "VX2D_CLIENT_1" / "VX2D_SPEC_1"));

        grid->item(1, 0)->setCheckState(Qt::Checked);
        button("applyButton")->click();

        // A common copy, then deleted again after the question.
        grid->setCurrentCell(1, 0);
        answer(QStringLiteral("CS150 Common"), 0);
        button("copySpecButton")->click();
        QCOMPARE(grid->rowCount(), 4);
        QCOMPARE(grid->item(1, 0)->text(), QStringLiteral("CS150 Common"));
        QVERIFY(fs::is_directory(root / "Specs" / "Common" / "VX2D_SPEC_2"));
        QCOMPARE(grid->currentRow(), 1);
        world->prompter.answers = {EPromptAnswer::Yes};
        button("deleteSpecButton")->click();
        QCOMPARE(Q(world->prompter.asked.at(0).text),
                 QStringLiteral("Delete spec 'CS150 Common' and its folder for good?"));
        QCOMPARE(grid->rowCount(), 2);
        QVERIFY(!fs::exists(root / "Specs" / "Common" / "VX2D_SPEC_2"));

        // A name typed over the pipe spec's renames it everywhere it is checked.
        grid->item(1, 0)->setText(QStringLiteral("CS150 A"));
        QTRY_COMPARE(grid->item(1, 0)->text(), QStringLiteral("CS150 A"));
        QTRY_COMPARE(test::ReadBytes(Folder() / "Specs.ini"),
                     std::string("[SpecList]\r\nVX2D_SPEC_1 = CS150 A\r\n"));

        QVERIFY(frame->Documents()->subWindowList().value(0)->close());
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QCOMPARE(test::ReadBytes(root / "SpecDatafile.ini"),
                 std::string("[ClientSpecs]\r\nVX2D_SPEC_1 = VX2D_CLIENT_1\r\n\r\n"
                             "[General]\r\nLastSpecId = 2\r\n\r\n"
                             "[SpecList]\r\nVX2D_SPEC_1 = CS150 A\r\n"));
        QCOMPARE(
            test::ReadBytes(root / "SpecDestinationDatafile.ini"),
            std::string("[VX2D_PRJ_1]\r\nVX2D_SPEC_1 = Specs\\VX2D_CLIENT_1\\VX2D_SPEC_1\\\r\n"));
    }
};

QTEST_MAIN(LinesSpecsPagesTest)
#include "LinesSpecsPagesTest.moc"
