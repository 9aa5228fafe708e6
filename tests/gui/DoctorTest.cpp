// Tools > Check Datafiles Folder... through the main window: the rows of a
// damaged folder, the severity filter, opening the page a row points to, and
// the repair with its question, after which the check runs again.
#include "GuiSupport.h"

#include "gui/DoctorDlg.h"
#include "gui/MainFrame.h"

#include <QComboBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>

namespace fs = std::filesystem;

class DoctorTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;

    CDoctorDlg* Open() {
        QAction* action = frame->findChild<QAction*>(QStringLiteral("checkDatafilesAction"));
        if (!action)
            return nullptr;
        action->trigger();
        return frame->findChild<CDoctorDlg*>();
    }
    static int VisibleRows(const CDoctorDlg* dialog) {
        int visible = 0;
        for (int row = 0; row < dialog->Table()->rowCount(); ++row)
            visible += dialog->Table()->isRowHidden(row) ? 0 : 1;
        return visible;
    }
    static int RowOf(const CDoctorDlg* dialog, const QString& kind) {
        for (int row = 0; row < dialog->Table()->rowCount(); ++row) {
            if (dialog->Table()->item(row, 1)->text() == kind)
                return row;
        }
        return -1;
    }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        QVERIFY(world->CreateStandard(L"Pipe") == 1);
        QVERIFY(world->CreateStandard(L"Gone") == 2);
        fs::remove_all(world->StandardFile(2, L""));
        test::WriteBytes(world->StandardFile(1, L"Layers.ini"),
                         "[PID - Linetypes]\r\n014 = WAVY\r\n");
        test::WriteBytes(world->folder.Dir().Path() / "ClientDatafile.ini.lock", "");
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->show();
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void theToolsMenuShowsTheRowsAndFiltersThem() {
        CDoctorDlg* dialog = Open();
        QVERIFY(dialog);
        QVERIFY(dialog->isVisible());
        QCOMPARE(dialog->findChild<QLabel*>(QStringLiteral("summary"))->text(),
                 QStringLiteral("1 error, 2 warnings"));
        QTableWidget* table = dialog->Table();
        QCOMPARE(table->rowCount(), 3);
        QCOMPARE(table->item(0, 0)->text(), QStringLiteral("Error"));
        QVERIFY(!table->item(0, 0)->icon().isNull());
        QCOMPARE(table->item(0, 1)->text(), QStringLiteral("entry-without-folder"));

        auto* filter = dialog->findChild<QComboBox*>(QStringLiteral("severityFilter"));
        filter->setCurrentIndex(CDoctorDlg::eErrors);
        QCOMPARE(VisibleRows(dialog), 1);
        filter->setCurrentIndex(CDoctorDlg::eWarnings);
        QCOMPARE(VisibleRows(dialog), 2);
        QVERIFY(table->isRowHidden(0));
        filter->setCurrentIndex(CDoctorDlg::eAll);
        QCOMPARE(VisibleRows(dialog), 3);
    }

    void openGoesToTheStandardsPage() {
        CDoctorDlg* dialog = Open();
        QVERIFY(dialog);
        auto* open = dialog->findChild<QPushButton*>(QStringLiteral("openButton"));
        dialog->Table()->selectRow(RowOf(dialog, QStringLiteral("entry-without-folder")));
        QVERIFY2(!open->isEnabled(), "a standard without a folder cannot be opened");

        dialog->Table()->selectRow(RowOf(dialog, QStringLiteral("layer-linetype")));
        QVERIFY(open->isEnabled());
        open->click();
        const QList<QMdiSubWindow*> windows = frame->Documents()->subWindowList();
        QCOMPARE(windows.size(), 1);
        auto* document = qobject_cast<CStandardDocument*>(windows.front()->widget());
        QVERIFY(document);
        QCOMPARE(document->StandardId(), 1);
        QTreeWidgetItem* page = document->Pages()->currentItem();
        QVERIFY(page && page->parent());
        QCOMPARE(page->text(0), QStringLiteral("Layers"));
        QCOMPARE(page->parent()->text(0), QStringLiteral("P&ID Settings"));
    }

    void repairAsksFirstThenChecksAgain() {
        CDoctorDlg* dialog = Open();
        QVERIFY(dialog);
        auto* repair = dialog->findChild<QPushButton*>(QStringLiteral("repairButton"));
        QVERIFY(repair->isEnabled());
        QVERIFY(ItemAt(frame->NavigatorPanel()->Tree(), {QStringLiteral("Gone")}));

        world->prompter.answers = {EPromptAnswer::No};
        repair->click();
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        QVERIFY(world->prompter.asked[0].text.starts_with(L"These repairs will be made:"));
        QCOMPARE(dialog->Table()->rowCount(), 3);
        QVERIFY(fs::exists(world->folder.Dir().Path() / "ClientDatafile.ini.lock"));

        world->prompter.answers = {EPromptAnswer::Yes};
        repair->click();
        QVERIFY(!fs::exists(world->folder.Dir().Path() / "ClientDatafile.ini.lock"));
        QCOMPARE(world->core.projects.GetProjectName(2, true, true), std::wstring());
        QCOMPARE(dialog->Table()->rowCount(), 1);
        QCOMPARE(dialog->Table()->item(0, 1)->text(), QStringLiteral("layer-linetype"));
        QVERIFY(!repair->isEnabled());
        QVERIFY2(!ItemAt(frame->NavigatorPanel()->Tree(), {QStringLiteral("Gone")}),
                 "the navigator still shows the dropped standard");
    }
};

QTEST_MAIN(DoctorTest)
#include "DoctorTest.moc"
