// The main window: menus, toolbar, the docked navigator and the document
// windows of opened standards and comparisons.
#pragma once

#include "app/DatafilesChoice.h"
#include "app/NavigatorController.h"
#include "app/StandardTransfer.h"
#include "app/StandardsCore.h"
#include "gui/FileDialogs.h"
#include "gui/PageHost.h"
#include "store/Opener.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QPointer>
#include <functional>
#include <map>

class CDoctorDlg;
class CNavigatorDlg;
struct SDoctorFinding;

class CMainFrame : public QMainWindow, public INavigatorOwner, public IPageHost {
    Q_OBJECT
public:
    CMainFrame(CStandardsCore& core, IFileDialogs& dialogs, QWidget* parent = nullptr);

    CNavigatorController& Navigator() { return m_navigator; }
    CNavigatorDlg* NavigatorPanel() const { return m_panel; }
    QMdiArea* Documents() const { return m_documents; }
    IFileDialogs& FileDialogs() override { return m_dialogs; }
    // The action of a navigator command id (menus, toolbar, pop-ups share them).
    QAction* Action(ENavCommand command) const;
    // Runs a navigator command and shows its outcome.
    void RunCommand(ENavCommand command);

    // INavigatorOwner
    void Request(ENavRequest request, std::int32_t standardId) override;
    bool RunNewStandardWizard(std::int32_t clientId, std::int32_t& newId,
                              std::wstring& newName) override;
    void PrintStandard(std::int32_t standardId) override;
    void ExportStandard(std::int32_t standardId, const std::wstring& name) override;
    void ImportStandards(std::int32_t clientId) override;
    void RunLong(const std::wstring& text, bool canStop,
                 const std::function<void(const CProgress&)>& work) override;

    // Opens (or brings forward) the window of a standard.
    void OpenStandard(std::int32_t standardId);
    void OpenComparison(std::int32_t standardId);
    // A standard's files were changed by another window (a copy from a
    // comparison, a push from a page): its window and comparisons show them.
    void StandardFilesChanged(std::int32_t standardId, const QWidget* changer) override;
    // Edit > Undo: the active comparison's last copy.
    QAction* UndoAction() const { return m_undo; }
    // Tools > Check Datafiles Folder...: shows the check (made once, kept
    // while open) and runs it again.
    CDoctorDlg* CheckDatafilesFolder();
    // Opens the standard a finding is about, at its page.
    void OpenFinding(const SDoctorFinding& finding);
    // "Help..." of a view: opens its topic or says the help is missing.
    void ShowHelp(const std::wstring& topic) override;
    // What opens help pages and reports (the desktop's default program unless
    // replaced); true when it could.
    void SetOpener(COpener opener) { m_opener = std::move(opener); }
    // File > Open/New Datafiles Folder...: picks the folder, closes every
    // window (asking about what is unsaved) and then the main window; the
    // program starts again on NextFolder().
    void SwitchDatafilesFolder(EDatafilesPick pick);
    const QString& NextFolder() const { return m_nextFolder; }

protected:
    // Quitting closes every window first; one that stays open (a page kept
    // after its question) keeps the program running.
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void CreateActions();
    void CreateMenus();
    void ShowPopup(const QPoint& globalPos);
    void UpdateTitle();
    // Edit > Undo follows the active window.
    void UpdateUndo();
    // The open standards' windows follow renames and purges.
    void SyncDocuments();
    // The status bar: how many standards, which datafiles folder.
    void UpdateStatus();
    // The last operation's result, in the status bar until the next one.
    void ShowOutcome(const std::wstring& text);
    QAction* AddCommand(ENavCommand command, const QString& text,
                        const QKeySequence& shortcut = {});

    CStandardsCore& m_core;
    IFileDialogs& m_dialogs;
    CNavigatorController m_navigator;
    CStandardTransfer m_transfer;
    CNavigatorDlg* m_panel = nullptr;
    QMdiArea* m_documents = nullptr;
    std::map<ENavCommand, QAction*> m_actions;
    QAction* m_showDeleted = nullptr;
    QAction* m_undo = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_folder = nullptr;
    QLabel* m_result = nullptr;
    COpener m_opener;
    QPointer<CDoctorDlg> m_doctor;
    QString m_nextFolder;
    bool m_layoutRestored = false;
};
