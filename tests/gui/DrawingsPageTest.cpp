// The drawings page of a standard, reached through the navigator and used
// from the keyboard: its labelled actions, the folder it shows, Del, F2 and
// Enter, and what the user is told when no program opens a drawing, the
// folder or the page's help.
#include "GuiSupport.h"

#include "gui/DrawingsFormView.h"
#include "gui/QtText.h"
#include "store/GeneralSettings.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolBar>
#include <QToolButton>

namespace fs = std::filesystem;

class DrawingsPageTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SGuiWorld> world;
    std::unique_ptr<CMainFrame> frame;
    fs::path drawings;
    std::vector<std::wstring> opened;
    bool openWorks = true;

    // The PID drawings page of "Pipe", its list focused on `item`.
    CDrawingsFormView* OpenPage(const QString& item = {}) {
        auto* view = qobject_cast<CDrawingsFormView*>(OpenStandardPage(
            *frame, {QStringLiteral("Pipe")}, {QStringLiteral("Drawings"), QStringLiteral("PID")}));
        if (!view)
            return nullptr;
        SDrawingsShell shell;
        shell.open = [this](const std::wstring& verb, const std::wstring& target) {
            opened.push_back(verb + L" " + target);
            return openWorks;
        };
        view->Manager().SetShell(shell);
        view->List()->setFocus();
        if (!QTest::qWaitFor([&] { return view->List()->hasFocus(); }))
            return nullptr;
        if (!item.isEmpty()) {
            const auto found = view->List()->findItems(item, Qt::MatchExactly, 0);
            if (found.size() == 1)
                view->List()->setCurrentItem(found[0]);
        }
        return view;
    }
    std::wstring Folder() const { return W(QString::fromStdString(drawings.string())) + L"/"; }

private slots:
    void init() {
        world = std::make_unique<SGuiWorld>();
        std::int32_t id = 0;
        QCOMPARE(world->core.projects.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
        drawings = world->folder.Dir().Path() / "Drawings";
        for (const char* name : {"Pump.dwg", "Valve.dwg"})
            test::WriteBytes(drawings / name, name);
        CVX2D_GeneralSettings general;
        QVERIFY(general.Load(world->core.projects, id));
        general.SetDrawingsLocation(2, W(QString::fromStdString(drawings.string())));
        QVERIFY(general.Save());
        opened.clear();
        openWorks = true;
        frame = ShowActiveFrame(*world, QSize(1000, 700));
        QVERIFY(frame);
    }
    void cleanup() {
        frame.reset();
        world.reset();
    }

    void theToolbarLabelsEveryActionAndTheFolderIsShown() {
        CDrawingsFormView* view = OpenPage();
        QVERIFY(view);
        auto* tools = view->findChild<QToolBar*>();
        QVERIFY(tools);
        QCOMPARE(tools->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
        for (QAction* action : tools->actions()) {
            if (action->isSeparator())
                continue;
            QVERIFY2(!action->iconText().isEmpty(), qPrintable(action->objectName()));
            auto* button = qobject_cast<QToolButton*>(tools->widgetForAction(action));
            QVERIFY(button);
            QCOMPARE(button->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
        }
        // The folder action names this system's file manager.
        QCOMPARE(view->Action(QStringLiteral("openFolder"))->toolTip(),
                 Q(CDrawingsManager::OpenFolderText()));

        // The folder: its whole path as the tooltip, the text selectable.
        auto* folder = view->findChild<QLabel*>(QStringLiteral("drawingsFolder"));
        QVERIFY(folder);
        QCOMPARE(folder->toolTip(), Q(Folder()));
        QVERIFY(folder->textInteractionFlags() & Qt::TextSelectableByMouse);
        QVERIFY(folder->isVisible());
        // Too narrow for the path, it is shortened in the middle.
        view->resize(200, view->height());
        QTRY_VERIFY(folder->text() != Q(Folder()));
        QVERIFY(folder->text().contains(QChar(0x2026)));
        view->resize(1000, view->height());
        QTRY_COMPARE(folder->text(), Q(Folder()));

        // The pop-up offers a new drawing too.
        QVERIFY(view->List()->actions().contains(view->Action(QStringLiteral("newDrawing"))));
    }

    void delAsksAndDeletesTheChosenDrawing() {
        CDrawingsFormView* view = OpenPage(QStringLiteral("Pump.dwg"));
        QVERIFY(view);
        // The answer, and whether Pump is gone.
        const std::pair<EPromptAnswer, bool> cases[] = {{EPromptAnswer::No, false},
                                                        {EPromptAnswer::Yes, true}};
        for (const auto& [answer, gone] : cases) {
            world->prompter.asked.clear();
            world->prompter.answers = {answer};
            QTest::keyClick(view->List(), Qt::Key_Delete);
            QCOMPARE(world->prompter.asked.size(), std::size_t{1});
            QCOMPARE(
                world->prompter.asked[0].text,
                std::wstring(L"Are you sure you want to delete these drawings?\n\nPump.dwg\n"));
            QCOMPARE(fs::exists(drawings / "Pump.dwg"), !gone);
        }
        QCOMPARE(view->List()->topLevelItemCount(), 1);
        QVERIFY(fs::exists(drawings / "Valve.dwg"));
        // The next drawing is the chosen one now: Del again would delete it.
        QVERIFY(view->List()->currentItem());
        QCOMPARE(view->List()->currentItem()->text(0), QStringLiteral("Valve.dwg"));
    }

    void f2RenamesAndEnterOpens() {
        CDrawingsFormView* view = OpenPage(QStringLiteral("Valve.dwg"));
        QVERIFY(view);
        QTest::keyClick(view->List(), Qt::Key_F2);
        QLineEdit* editor = nullptr;
        QTRY_VERIFY((editor = view->List()->findChild<QLineEdit*>()) && editor->isVisible());
        editor->selectAll();
        QTest::keyClicks(editor, QStringLiteral("Gate"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(fs::exists(drawings / "Gate.dwg"));
        QVERIFY(!fs::exists(drawings / "Valve.dwg"));
        QVERIFY(opened.empty()); // the Enter that ends the edit opens nothing

        // Enter on the chosen drawing opens it, with focus back in the list.
        QTRY_COMPARE(view->List()->currentItem()->text(0), QStringLiteral("Gate.dwg"));
        view->List()->setFocus();
        QTest::keyClick(view->List(), Qt::Key_Return);
        QCOMPARE(opened, std::vector<std::wstring>{L"open " + Folder() + L"Gate.dwg"});
        QVERIFY(world->prompter.asked.empty());
    }

    void aDrawingOrFolderNothingOpensIsToldToTheUser() {
        CDrawingsFormView* view = OpenPage(QStringLiteral("Pump.dwg"));
        QVERIFY(view);
        openWorks = false;
        // How it is opened, and the start of what the user is told.
        const std::pair<std::function<void()>, std::wstring> cases[] = {
            {[&] { QTest::keyClick(view->List(), Qt::Key_Return); },
             L"No program could open the drawing '" + Folder() + L"Pump.dwg'."},
            {[&] { view->Action(QStringLiteral("openFolder"))->trigger(); },
             L"No program could open the folder '" + Folder() + L"'."},
        };
        for (const auto& [open, told] : cases) {
            world->prompter.asked.clear();
            open();
            QCOMPARE(world->prompter.asked.size(), std::size_t{1});
            QCOMPARE(world->prompter.asked[0].text.substr(0, told.size()), told);
        }

        // The page's help, installed but with nothing to show it.
        const std::wstring help = world->InstallHelpPage(L"Drawings_Dialog_Box.htm");
        frame->SetOpener([](const std::wstring&) { return false; });
        world->prompter.asked.clear();
        view->Action(QStringLiteral("help"))->trigger();
        QCOMPARE(world->prompter.asked.size(), std::size_t{1});
        const std::wstring told = L"No program could open the help page '" + help + L"'.";
        QCOMPARE(world->prompter.asked[0].text.substr(0, told.size()), told);
    }
};

QTEST_MAIN(DrawingsPageTest)
#include "DrawingsPageTest.moc"
