// The main window and its navigator, driven as a user would: actions by
// name, label editing, drops, scripted answers to the questions.
#include "GuiSupport.h"

#include "app/Startup.h"
#include "gui/MainFrame.h"
#include "gui/NavigatorDlg.h"
#include "gui/NewStandardWizard.h"
#include "gui/QtText.h"

#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QTimer>

class MainFrameTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;

    CNavigatorTreeCtrl* Tree() { return frame->NavigatorPanel()->Tree(); }
    QTreeWidgetItem* Item(const QStringList& path) {
        QTreeWidgetItem* item = nullptr;
        for (const QString& text : path) {
            QTreeWidgetItem* next = nullptr;
            const int count = item ? item->childCount() : Tree()->topLevelItemCount();
            for (int i = 0; i < count && !next; ++i) {
                QTreeWidgetItem* child = item ? item->child(i) : Tree()->topLevelItem(i);
                if (child->text(0) == text)
                    next = child;
            }
            if (!next)
                return nullptr;
            item = next;
        }
        return item;
    }
    void Select(const QStringList& path) {
        QTreeWidgetItem* item = Item(path);
        QVERIFY(item);
        Tree()->setCurrentItem(item);
    }
    void Trigger(int command) { frame->Action(command)->trigger(); }
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
        world->prompter.answers = {EPromptAnswer::No};
        Trigger(eCmdImportStandards);
        QCOMPARE(world->dialogs.titles,
                 (QStringList{QStringLiteral("Save Standard As"),
                              QStringLiteral("Select the Exported files to Import")}));
        QVERIFY(Item({QStringLiteral("Acme"), QStringLiteral("Pipe")}));
        QCOMPARE(world->core.clients.GetClientProjectIds(1), (std::vector<std::int32_t>{1, 3}));
    }
};

QTEST_MAIN(MainFrameTest)
#include "MainFrameTest.moc"
