// The main window and its navigator, driven as a user would: actions by
// name, label editing, drops, scripted answers to the questions.
#include "GuiSupport.h"

#include "app/Startup.h"
#include "gui/BackgroundWork.h"
#include "gui/MainFrame.h"
#include "gui/NavigatorDlg.h"
#include "gui/NewStandardWizard.h"
#include "gui/QtText.h"

#include <QComboBox>
#include <QDockWidget>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressDialog>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QTableWidget>
#include <QThread>
#include <QTimer>

namespace fs = std::filesystem;

class MainFrameTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;

    CNavigatorTreeCtrl* Tree() { return frame->NavigatorPanel()->Tree(); }
    QTreeWidgetItem* Item(const QStringList& path) { return ItemAt(Tree(), path); }
    void Select(const QStringList& path) {
        QTreeWidgetItem* item = Item(path);
        QVERIFY(item);
        Tree()->setCurrentItem(item);
    }
    void Trigger(ENavCommand command) { frame->Action(command)->trigger(); }
    QStringList TopTexts() {
        QStringList texts;
        for (int i = 0; i < Tree()->topLevelItemCount(); ++i)
            texts << Tree()->topLevelItem(i)->text(0);
        return texts;
    }
    void Create(const wchar_t* name, std::int32_t client = 0) {
        std::int32_t id = 0;
        QCOMPARE(world->core.projects.CreateProject({name, 0, 1, client, false}, id), eProjectOk);
    }
    // The tree widget shows the navigator's model item for item, in order.
    static bool Mirrors(QTreeWidgetItem* parent, const std::vector<CNavItem>& items) {
        if (parent->childCount() != static_cast<int>(items.size()))
            return false;
        for (int i = 0; i < parent->childCount(); ++i) {
            QTreeWidgetItem* widget = parent->child(i);
            const CNavItem& item = items[static_cast<std::size_t>(i)];
            if (widget->text(0) != Q(item.text) ||
                CNavigatorTreeCtrl::HandleOf(widget) != item.handle ||
                !Mirrors(widget, item.children))
                return false;
        }
        return true;
    }
    bool Mirrored() {
        return Mirrors(Tree()->invisibleRootItem(), frame->Navigator().Tree().Roots());
    }
    void Reopen() {
        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->show();
    }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        std::int32_t id = 0;
        std::wstring name;
        world->core.clients.CreateClient(id, name);
        world->core.clients.RenameClient(id, L"Acme");
        world->core.clients.CreateClient(id, name);
        world->core.clients.RenameClient(id, L"Zeta");
        Create(L"Pipe", 1);
        Create(L"Tank");
        Reopen();
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void startUpOnAnEmptyFolderShowsTheFirstStandards() {
        cleanup();
        world = std::make_unique<SGuiWorld>();
        CStartup::SServices services;
        services.userName = L"root";
        CStartup startup(*world->core.registry, world->core.installation, world->core.projects,
                         world->prompter, services);
        QCOMPARE(startup.Run({L"standards-desk"}), CStartup::eRun);
        Reopen();
        QCOMPARE(TopTexts(), (QStringList{QStringLiteral("English Standard"),
                                          QStringLiteral("Metric Standard")}));
    }

    void renamingALabelWritesTheRegistry() {
        Select({QStringLiteral("Tank")});
        Trigger(eCmdRenameStandard);
        auto* editor = Tree()->findChild<QLineEdit*>();
        QVERIFY(editor);
        editor->setText(QStringLiteral("Tank Farm"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(Item({QStringLiteral("Tank Farm")}) != nullptr);
        QCOMPARE(world->core.projects.GetProjectName(2, true, false), std::wstring(L"Tank Farm"));
    }

    void markDeletedShowDeletedRecoverAndPurge() {
        Select({QStringLiteral("Tank")});
        world->prompter.answers = {EPromptAnswer::Yes};
        Trigger(eCmdDeleteStandard);
        QVERIFY(!Item({QStringLiteral("Tank")}));
        Trigger(eCmdShowDeleted);
        QVERIFY(frame->Action(eCmdShowDeleted)->isChecked());
        QVERIFY(Item({QStringLiteral("Tank")}));
        Select({QStringLiteral("Tank")});
        QVERIFY(frame->Action(eCmdRecoverStandard)->isEnabled());
        QVERIFY(!frame->Action(eCmdOpenStandard)->isEnabled());
        Trigger(eCmdRecoverStandard);
        QCOMPARE(world->core.projects.GetProjectName(2, true, false), std::wstring(L"Tank"));

        world->prompter.answers = {EPromptAnswer::Yes, EPromptAnswer::Yes, EPromptAnswer::No};
        Trigger(eCmdDeleteStandard);
        Select({QStringLiteral("Tank")});
        Trigger(eCmdPurgeStandard);
        QVERIFY(Item({QStringLiteral("Tank")}));
        world->prompter.answers = {EPromptAnswer::Yes, EPromptAnswer::Yes};
        Trigger(eCmdPurgeStandard);
        QVERIFY(!Item({QStringLiteral("Tank")}));
        QCOMPARE(world->core.projects.GetProjectName(2, true, true), std::wstring());
    }

    void droppingAStandardOnAnotherClientMovesIt() {
        Select({QStringLiteral("Acme"), QStringLiteral("Pipe")});
        Tree()->DropOn(Item({QStringLiteral("Zeta")}));
        QVERIFY(Item({QStringLiteral("Zeta"), QStringLiteral("Pipe")}));
        QCOMPARE(Tree()->currentItem(), Item({QStringLiteral("Zeta"), QStringLiteral("Pipe")}));
        QCOMPARE(world->core.clients.GetClientProjectIds(2), std::vector<std::int32_t>{1});
        QVERIFY(world->core.clients.GetClientProjectIds(1).empty());
        Tree()->DropOn(nullptr);
        QCOMPARE(TopTexts(), (QStringList{QStringLiteral("Acme"), QStringLiteral("Pipe"),
                                          QStringLiteral("Tank"), QStringLiteral("Zeta")}));
    }

    void eachCommandUpdatesOnlyTheItemsItConcerns() {
        // A client no command touches keeps its very item throughout.
        QTreeWidgetItem* zeta = Item({QStringLiteral("Zeta")});
        QVERIFY(zeta);
        Select({QStringLiteral("Tank")});
        Trigger(eCmdRenameStandard);
        auto* editor = Tree()->findChild<QLineEdit*>();
        QVERIFY(editor);
        editor->setText(QStringLiteral("Aardvark"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(Item({QStringLiteral("Aardvark")}) != nullptr);
        QCOMPARE(TopTexts(), (QStringList{QStringLiteral("Aardvark"), QStringLiteral("Acme"),
                                          QStringLiteral("Zeta")}));
        QVERIFY(Mirrored());
        Select({QStringLiteral("Acme"), QStringLiteral("Pipe")});
        Tree()->DropOn(zeta);
        QVERIFY(Mirrored());
        QCOMPARE(Tree()->currentItem(), Item({QStringLiteral("Zeta"), QStringLiteral("Pipe")}));
        world->prompter.answers = {EPromptAnswer::Yes};
        Trigger(eCmdDeleteStandard);
        QVERIFY(Mirrored());
        QVERIFY(!Item({QStringLiteral("Zeta"), QStringLiteral("Pipe")}));
        Trigger(eCmdNewClient);
        QVERIFY(Mirrored());
        QCOMPARE(Item({QStringLiteral("Zeta")}), zeta);
        // Showing the deleted ones reads the registries again: a new tree.
        Trigger(eCmdShowDeleted);
        QVERIFY(Mirrored());
        QVERIFY(Item({QStringLiteral("Zeta"), QStringLiteral("Pipe")}));
    }

    void openWindowsFollowRenamesAndPurgesAndTheStatusBarCounts() {
        auto status = [&] {
            return frame->findChild<QLabel*>(QStringLiteral("standardsCount"))->text();
        };
        QCOMPARE(status(), QStringLiteral("2 standards"));
        Select({QStringLiteral("Tank")});
        Trigger(eCmdOpenStandard);
        QCOMPARE(frame->Documents()->subWindowList().size(), 1);
        QCOMPARE(frame->windowTitle(), QStringLiteral("Tank"));
        Trigger(eCmdRenameStandard);
        auto* editor = Tree()->findChild<QLineEdit*>();
        QVERIFY(editor);
        editor->setText(QStringLiteral("Tank Farm"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(frame->Documents()->subWindowList().value(0)->windowTitle(),
                     QStringLiteral("Tank Farm"));
        QCOMPARE(frame->windowTitle(), QStringLiteral("Tank Farm"));
        // Deleted, then purged: the window of a standard that is gone closes.
        Select({QStringLiteral("Tank Farm")});
        world->prompter.answers = {EPromptAnswer::Yes};
        Trigger(eCmdDeleteStandard);
        QCOMPARE(status(), QStringLiteral("1 standard, 1 deleted"));
        QCOMPARE(frame->Documents()->subWindowList().size(), 1);
        Trigger(eCmdShowDeleted);
        Select({QStringLiteral("Tank Farm")});
        world->prompter.answers = {EPromptAnswer::Yes, EPromptAnswer::Yes};
        Trigger(eCmdPurgeStandard);
        QTRY_VERIFY(frame->Documents()->subWindowList().isEmpty());
        QCOMPARE(status(), QStringLiteral("1 standard"));
        QCOMPARE(frame->windowTitle(), QString());
    }

    void theWizardMakesAStandardUnderTheSelectedClient() {
        Select({QStringLiteral("Acme")});
        QTimer::singleShot(0, [] {
            auto* wizard = qobject_cast<CNewStandardWizardDlg*>(QApplication::activeModalWidget());
            QVERIFY(wizard);
            wizard->findChild<QLineEdit*>(QStringLiteral("nameEdit"))
                ->setText(QStringLiteral("Pump House"));
            wizard->findChild<QComboBox*>(QStringLiteral("workingUnits"))->setCurrentIndex(1);
            wizard->next();
            wizard->next();
            wizard->accept();
        });
        Trigger(eCmdNewStandard);
        QCOMPARE(Tree()->currentItem(),
                 Item({QStringLiteral("Acme"), QStringLiteral("Pump House")}));
        QCOMPARE(world->core.projects.GetProjectName(3, true, false), std::wstring(L"Pump House"));
        QCOMPARE(world->core.clients.GetClientProjectIds(1), (std::vector<std::int32_t>{1, 3}));
    }

    void exportAndImportGoThroughTheFileDialogs() {
        const QString archive = Q(world->config.File(L"Pipe.xst"));
        world->dialogs.answers = {{archive}, {archive}};
        Select({QStringLiteral("Acme"), QStringLiteral("Pipe")});
        Trigger(eCmdExportStandard);
        QVERIFY(QFileInfo::exists(archive));
        const auto result = [&] {
            return frame->findChild<QLabel*>(QStringLiteral("lastResult"))->text();
        };
        QCOMPARE(result(), QStringLiteral("Standard 'Pipe' exported to ") + archive);
        world->prompter.answers = {EPromptAnswer::No};
        Trigger(eCmdImportStandards);
        QCOMPARE(result(), QStringLiteral("1 standard imported"));
        Select({QStringLiteral("Tank")});
        Trigger(eCmdCopyStandard);
        QCOMPARE(result(), QStringLiteral("Standard 'Tank' copied as 'Copy of Tank'"));
        QCOMPARE(world->dialogs.titles,
                 (QStringList{QStringLiteral("Save Standard As"),
                              QStringLiteral("Select the Exported files to Import")}));
        QVERIFY(Item({QStringLiteral("Acme"), QStringLiteral("Pipe")}));
        QCOMPARE(world->core.clients.GetClientProjectIds(1), (std::vector<std::int32_t>{1, 3}));
    }

    void aMessageDuringAnImportIsNotCoveredByItsProgress() {
        // An archive with no entries starts the progress dialog's clock and
        // never fills its bar; the file after it is no archive at all.
        const std::string comment = CStandardArchive::kComment;
        const std::wstring empty = world->config.File(L"Empty.xst");
        test::WriteBytes(test::P(empty), std::string("PK\x05\x06", 4) + std::string(16, '\0') +
                                             char(comment.size()) + '\0' + comment);
        const std::wstring junk = world->config.File(L"Junk.xst");
        test::WriteBytes(test::P(junk), "no archive at all");
        world->dialogs.answers = {{Q(empty), Q(junk)}};
        world->prompter.answers = {EPromptAnswer::No};
        QStringList covered;
        int onWorker = 0;
        int notBusy = 0;
        world->prompter.whileAsking = [&](const SPrompt& prompt) {
            // The import runs on a worker thread; its questions come here.
            onWorker += QThread::currentThread() != qApp->thread();
            const bool busy = QApplication::overrideCursor() &&
                              QApplication::overrideCursor()->shape() == Qt::BusyCursor;
            // The format question comes before the work starts.
            notBusy += !busy && prompt.buttons != EPromptButtons::YesNoCancel;
            // A box stays up a while; a progress dialog shows itself meanwhile
            // and, being modal, would take the clicks meant for the box.
            QTest::qWait(800);
            for (auto* progress : frame->findChildren<QProgressDialog*>()) {
                if (progress->isVisible())
                    covered << Q(prompt.text);
            }
        };
        Trigger(eCmdImportStandards);
        // The format question, then what became of the file.
        QVERIFY(world->prompter.asked.size() >= 2);
        QVERIFY(world->prompter.asked.back().buttons == EPromptButtons::Ok);
        QCOMPARE(covered, QStringList());
        QCOMPARE(onWorker, 0);
        QCOMPARE(notBusy, 0);
        QVERIFY(!QApplication::overrideCursor());
    }

    void theSizesTheUserGaveAreKeptForTheNextWindows() {
        QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("VANDIX"),
                  QStringLiteral("standards-desk-layout"))
            .clear();
        auto* dock = frame->findChild<QDockWidget*>(QStringLiteral("navigatorDock"));
        frame->resize(1200, 800);
        QApplication::processEvents();
        frame->resizeDocks({dock}, {420}, Qt::Horizontal);
        QApplication::processEvents();
        QVERIFY(OpenStandardPage(*frame, {QStringLiteral("Tank")}, {QStringLiteral("Lines")}));
        const auto document = [&] {
            return frame->Documents()->activeSubWindow()->findChild<QSplitter*>(
                QStringLiteral("standardDocument"));
        };
        document()->setSizes({333, 600});
        QVERIFY(frame->Documents()->activeSubWindow()->close());
        Select({QStringLiteral("Tank")});
        Trigger(eCmdCompareStandards);
        auto* grid = frame->findChild<QTableWidget*>(QStringLiteral("compareGrid"));
        QVERIFY(grid);
        grid->horizontalHeader()->resizeSection(0, 277);
        QVERIFY(frame->Documents()->activeSubWindow()->close());
        QVERIFY(frame->close());

        frame = std::make_unique<CMainFrame>(world->core, world->dialogs);
        frame->resize(1200, 800);
        frame->show();
        QApplication::processEvents();
        QCOMPARE(frame->findChild<QDockWidget*>(QStringLiteral("navigatorDock"))->width(), 420);
        QVERIFY(OpenStandardPage(*frame, {QStringLiteral("Tank")}, {QStringLiteral("Lines")}));
        QCOMPARE(document()->sizes().value(0), 333);
        Trigger(eCmdCompareStandards);
        grid = frame->Documents()->activeSubWindow()->findChild<QTableWidget*>(
            QStringLiteral("compareGrid"));
        QCOMPARE(grid->columnWidth(0), 277);
        QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("VANDIX"),
                  QStringLiteral("standards-desk-layout"))
            .clear();
    }

    void longWorkShowsItsProgressAndCancelStopsIt() {
        CBackgroundWork::showAfterMs = 0;
        QString label;
        auto* watch = new QTimer(frame.get());
        connect(watch, &QTimer::timeout, [&] {
            auto* progress = frame->findChild<QProgressDialog*>(QStringLiteral("workProgress"));
            if (!progress || !progress->isVisible() || progress->value() < 1)
                return;
            label = progress->labelText();
            watch->stop();
            progress->findChild<QPushButton*>()->click();
        });
        watch->start(10);
        std::size_t steps = 0;
        bool stopped = false;
        frame->RunLong(L"Copying standard 'Pipe'...", true, [&](const CProgress& progress) {
            // Works until told to stop; gives up after a while so that a
            // broken Cancel fails the test instead of hanging it.
            for (; steps < 1000 && !stopped; ++steps) {
                stopped = !progress(steps, 1000, L"Drawings/P-100.dwg");
                QThread::msleep(10);
            }
        });
        CBackgroundWork::showAfterMs = 400;
        QVERIFY(stopped);
        QVERIFY(steps < 1000);
        QCOMPARE(label, QStringLiteral("Copying standard 'Pipe'...\nDrawings/P-100.dwg"));
        QVERIFY(!QApplication::overrideCursor());
    }
};

QTEST_MAIN(MainFrameTest)
#include "MainFrameTest.moc"
