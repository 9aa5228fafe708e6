// What the desktop tests share: a core over a temporary datafiles folder with
// scripted answers to every question and file dialog.
#pragma once

#include "app/Environment.h"
#include "app/StandardsCore.h"
#include "gui/BackgroundWork.h"
#include "gui/FileDialogs.h"
#include "gui/MainFrame.h"
#include "gui/NavigatorDlg.h"
#include "gui/StandardDocument.h"
#include "platform/System.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QTest>
#include <QTreeWidget>
#include <deque>
#include <functional>

class CScriptedFileDialogs : public IFileDialogs {
public:
    std::deque<QStringList> answers;
    QStringList titles;

    QString SaveFile(QWidget*, const QString& title, const QString&, const QString&) override {
        titles << title;
        return Next().value(0);
    }
    QStringList OpenFiles(QWidget*, const QString& title, const QString&, const QString&) override {
        titles << title;
        return Next();
    }
    QString Folder(QWidget*, const QString& title, const QString&) override {
        titles << title;
        return Next().value(0);
    }

private:
    QStringList Next() {
        if (answers.empty())
            return {};
        QStringList answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

// Scripted answers; `whileAsking` looks at the screen while a box would be up.
class CGuiPrompter : public test::CScriptedPrompter {
public:
    std::function<void(const SPrompt&)> whileAsking;

    EPromptAnswer Ask(const SPrompt& prompt) override {
        if (whileAsking)
            whileAsking(prompt);
        return CScriptedPrompter::Ask(prompt);
    }
};

// The item of a tree reached through `path`, one text per level from the
// top; nullptr when there is none.
inline QTreeWidgetItem* ItemAt(const QTreeWidget* tree, const QStringList& path) {
    QTreeWidgetItem* item = nullptr;
    for (const QString& text : path) {
        QTreeWidgetItem* next = nullptr;
        const int count = item ? item->childCount() : tree->topLevelItemCount();
        for (int i = 0; i < count && !next; ++i) {
            QTreeWidgetItem* child = item ? item->child(i) : tree->topLevelItem(i);
            if (child->text(0) == text)
                next = child;
        }
        if (!next)
            return nullptr;
        item = next;
    }
    return item;
}

// Opens a standard from the navigator (`standard`: its path in the tree) and
// chooses a page in its page tree (`page`: the page's path); the page shown,
// nullptr when either is missing.
inline QWidget* OpenStandardPage(CMainFrame& frame, const QStringList& standard,
                                 const QStringList& page) {
    CNavigatorTreeCtrl* navigator = frame.NavigatorPanel()->Tree();
    QTreeWidgetItem* item = ItemAt(navigator, standard);
    if (!item)
        return nullptr;
    navigator->setCurrentItem(item);
    frame.Action(eCmdOpenStandard)->trigger();
    QMdiSubWindow* window = frame.Documents()->activeSubWindow();
    auto* document = window ? qobject_cast<CStandardDocument*>(window->widget()) : nullptr;
    if (!document || !ItemAt(document->Pages(), page))
        return nullptr;
    document->Pages()->setCurrentItem(ItemAt(document->Pages(), page));
    return document->CurrentPage();
}

// A temporary datafiles folder with the shipped templates, its own registry
// files, and the core over them.
struct SGuiWorld {
    test::CDatafilesFixture folder;
    test::CTempDir config;
    CGuiPrompter prompter;
    // As the program does: questions of long work come to the GUI thread.
    CGuiThreadPrompter onGuiThread{prompter};
    CScriptedFileDialogs dialogs;
    CStandardsCore core{
        std::make_unique<CIniRegistry>(config.File(L"machine"), config.File(L"user")),
        folder.Dir().Text(), onGuiThread};

    // Installs this program's help (LocalAppPath in the test's folder) with
    // one page; the page's path.
    std::wstring InstallHelpPage(const wchar_t* page) {
        const std::wstring local = config.Text() + L"app/";
        core.registry->SetString(ERegistryRoot::LocalMachine, CInstallation::kInstallKey,
                                 L"LocalAppPath", local);
        const std::wstring path =
            local + L"Help/" + CEnvironment::HelpName(platform::ExecutablePath()) + L"/" + page;
        test::WriteBytes(test::P(path), "<html></html>");
        return path;
    }

    // A new standard of no client, metric (`units` 0) or imperial (1); its
    // id, 0 when it cannot be made.
    std::int32_t CreateStandard(const wchar_t* name, int units = 0) {
        std::int32_t id = 0;
        const SNewProject project{name, units, units == 0 ? 1 : 2, 0, false};
        return core.projects.CreateProject(project, id) == eProjectOk ? id : 0;
    }

    // A file in a standard's folder.
    std::filesystem::path StandardFile(std::int32_t id, const wchar_t* name) const {
        return test::P(core.projects.StandardFile(id, name));
    }
};

// The main window over `world`, shown at `size` and made the active window:
// keys reach shortcuts only there. nullptr when it does not become active.
inline std::unique_ptr<CMainFrame> ShowActiveFrame(SGuiWorld& world, QSize size) {
    auto frame = std::make_unique<CMainFrame>(world.core, world.dialogs);
    frame->resize(size);
    frame->show();
    frame->activateWindow();
    if (!QTest::qWaitForWindowActive(frame.get()))
        return nullptr;
    return frame;
}
