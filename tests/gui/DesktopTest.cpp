// The desktop program from its start: the datafiles folder chooser when no
// folder is known, and File > Open Datafiles Folder... starting it again on
// another folder.
#include "GuiSupport.h"

#include "app/DatafilesChoice.h"
#include "gui/Desktop.h"
#include "gui/QtText.h"

#include <QAbstractButton>
#include <QDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QTableWidget>
#include <QTimer>

namespace fs = std::filesystem;

namespace {

// Runs `act` on the first modal dialog named `name` (any, when empty) once it is up.
void WhenDialog(const QString& name, std::function<void(QDialog*)> act) {
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, name, act] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || (!name.isEmpty() && dialog->objectName() != name))
            return;
        timer->stop();
        timer->deleteLater();
        act(dialog);
    });
    timer->start(20);
}

QAction* MenuAction(CMainFrame& frame, const QString& name) {
    return frame.menuBar()->findChild<QAction*>(name);
}

} // namespace

class DesktopTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::CTempDir> config, work;
    std::unique_ptr<CGuiPrompter> prompter;
    std::unique_ptr<CScriptedFileDialogs> dialogs;
    SDesktopRun run;

    std::unique_ptr<IRegistry> Registry() const {
        return std::make_unique<CIniRegistry>(config->File(L"machine"), config->File(L"user"));
    }
    QString Sub(const char* name) const { return Q(platform::FromPath(work->Path() / name)); }
    static bool HoldsStandards(const QString& folder) {
        return CDatafilesChoice::HoldsDatafiles(W(folder));
    }

private slots:
    void init() {
        config = std::make_unique<test::CTempDir>();
        work = std::make_unique<test::CTempDir>();
        prompter = std::make_unique<CGuiPrompter>();
        dialogs = std::make_unique<CScriptedFileDialogs>();
        run = {};
        run.registry = [this] { return Registry(); };
        run.splash = false;
    }

    void firstStartChoosesANewFolderThenTheMenuSwitchesToAnother() {
        QStringList folders;
        run.shown = [&](CMainFrame& frame) {
            folders << frame.findChild<QLabel*>(QStringLiteral("datafilesFolder"))->text();
            if (folders.size() == 1) {
                // The first standards are there, in the navigator of the new folder.
                QVERIFY(
                    ItemAt(frame.NavigatorPanel()->Tree(), {QStringLiteral("Metric Standard")}));
                dialogs->answers.push_back({Sub("second")});
                prompter->answers.push_back(EPromptAnswer::Yes); // set up the empty folder
                QTimer::singleShot(0, &frame, [&frame] {
                    MenuAction(frame, QStringLiteral("openDatafilesAction"))->trigger();
                });
            } else {
                QTimer::singleShot(0, &frame, &QWidget::close);
            }
        };
        fs::create_directories(work->Path() / "second");
        dialogs->answers.push_back({Sub("office")});
        QString reason;
        WhenDialog(QStringLiteral("datafilesChooser"), [&](QDialog* chooser) {
            reason = chooser->findChild<QLabel*>(QStringLiteral("reason"))->text();
            chooser->findChild<QAbstractButton*>(QStringLiteral("createNew"))->click();
        });

        QCOMPARE(RunDesktop(run, *prompter, *dialogs), 0);
        QVERIFY2(reason.contains(QStringLiteral("No datafiles folder is known")),
                 qPrintable(reason));
        QCOMPARE(folders.size(), 2);
        QVERIFY(folders[0].startsWith(Sub("office")));
        QVERIFY(folders[1].startsWith(Sub("second")));
        QVERIFY(HoldsStandards(Sub("office")));
        QVERIFY(HoldsStandards(Sub("second")));
        QCOMPARE(prompter->asked.size(), std::size_t{1});
        QVERIFY(prompter->asked[0].text.find(L"holds no standards") != std::wstring::npos);
        // The next start opens the folder chosen last.
        const std::unique_ptr<IRegistry> registry = Registry();
        QCOMPARE(Q(CDatafilesChoice(*registry, *prompter).StartFolder(L"")), Sub("second"));
    }

    void aFolderThatIsAwayOffersTheChooserAndQuitEndsWithNothingMade() {
        run.datafiles = W(Sub("share"));
        bool shown = false;
        run.shown = [&](CMainFrame&) { shown = true; };
        QString reason;
        WhenDialog(QStringLiteral("datafilesChooser"), [&](QDialog* chooser) {
            reason = chooser->findChild<QLabel*>(QStringLiteral("reason"))->text();
            chooser->findChild<QAbstractButton*>(QStringLiteral("quit"))->click();
        });
        QCOMPARE(RunDesktop(run, *prompter, *dialogs), 1);
        QVERIFY(!shown);
        QVERIFY2(reason.contains(QStringLiteral("cannot be reached")), qPrintable(reason));
        QVERIFY(fs::is_empty(work->Path()));
    }

    void aboutShowsTheVersionAndTheLicence() {
        SGuiWorld world;
        CMainFrame frame(world.core, world.dialogs);
        frame.show();
        QString text;
        WhenDialog(QString(), [&](QDialog* box) {
            text = qobject_cast<QMessageBox*>(box)->text();
            box->accept();
        });
        MenuAction(frame, QStringLiteral("aboutAction"))->trigger();
        QVERIFY2(text.contains(QStringLiteral("Standards Desk " SD_VERSION)), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral(SD_LICENSE)), qPrintable(text));
    }

    void switchingAsksAboutUnsavedChangesFirstAndRemembersTheFolder() {
        SGuiWorld world;
        std::int32_t id = 0;
        QCOMPARE(world.core.projects.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
        CMainFrame frame(world.core, world.dialogs);
        frame.show();
        QWidget* page = OpenStandardPage(
            frame, {QStringLiteral("Pipe")},
            {QStringLiteral("P&ID Settings"), QStringLiteral("General Drawing Parameters")});
        QVERIFY(page);
        page->findChild<QTableWidget*>(QStringLiteral("settingsGrid"))
            ->item(3, 1)
            ->setText(QStringLiteral("3.5"));
        fs::create_directories(work->Path() / "other");
        test::WriteBytes(work->Path() / "other" / "ProjectDatafile.ini", "");
        world.dialogs.answers.push_back({Sub("other")});
        world.prompter.answers = {EPromptAnswer::Yes};

        MenuAction(frame, QStringLiteral("openDatafilesAction"))->trigger();
        QCOMPARE(frame.NextFolder(), Sub("other"));
        QVERIFY(!frame.isVisible());
        QCOMPARE(world.prompter.asked.size(), std::size_t{1});
        QVERIFY(world.prompter.asked[0].text.find(L"have been modified") != std::wstring::npos);
        QVERIFY(test::ReadBytes(world.StandardFile(id, L"PID.ini")).find("3.5") !=
                std::string::npos);
        QCOMPARE(Q(CDatafilesChoice(*world.core.registry, world.prompter).StartFolder(L"")),
                 Sub("other"));
    }
};

QTEST_MAIN(DesktopTest)
#include "DesktopTest.moc"
