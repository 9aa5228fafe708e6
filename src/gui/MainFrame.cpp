#include "gui/MainFrame.h"

#include "app/Environment.h"
#include "editors/StandardReport.h"
#include "gui/BackgroundWork.h"
#include "gui/CompareWindow.h"
#include "gui/DatafilesChooser.h"
#include "gui/DoctorDlg.h"
#include "gui/Layout.h"
#include "gui/NavigatorDlg.h"
#include "gui/NewStandardWizard.h"
#include "gui/QtText.h"
#include "gui/StandardDocument.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/Opener.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>
#include <fmt/xchar.h>

CMainFrame::CMainFrame(CStandardsCore& core, IFileDialogs& dialogs, QWidget* parent)
    : QMainWindow(parent), m_core(core), m_dialogs(dialogs),
      m_navigator(core.projects, core.clients, core.profile, core.prompter, *this),
      m_transfer(core.projects, core.profile, core.prompter), m_opener(platform::ShellOpen) {
    setObjectName(QStringLiteral("mainFrame"));
    m_documents = new QMdiArea(this);
    m_documents->setObjectName(QStringLiteral("documents"));
    m_documents->setViewMode(QMdiArea::TabbedView);
    m_documents->setTabsClosable(true);
    m_documents->setDocumentMode(true);
    setCentralWidget(m_documents);
    connect(m_documents, &QMdiArea::subWindowActivated, this, [this] {
        UpdateTitle();
        UpdateUndo();
    });

    m_panel = new CNavigatorDlg(m_navigator, this);
    auto* dock = new QDockWidget(tr("Navigator"), this);
    dock->setObjectName(QStringLiteral("navigatorDock"));
    dock->setWidget(m_panel);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    resizeDocks({dock}, {280}, Qt::Horizontal);

    CreateActions();
    CreateMenus();
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("standardsCount"));
    m_folder = new QLabel(this);
    m_folder->setObjectName(QStringLiteral("datafilesFolder"));
    m_folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_result = new QLabel(this);
    m_result->setObjectName(QStringLiteral("lastResult"));
    statusBar()->addWidget(m_status);
    statusBar()->addWidget(m_result, 1);
    statusBar()->addPermanentWidget(m_folder);
    connect(m_panel, &CNavigatorDlg::CommandRequested, this, &CMainFrame::RunCommand);
    connect(m_panel->Tree(), &CNavigatorTreeCtrl::ContextMenuWanted, this, &CMainFrame::ShowPopup);
    connect(m_panel->Tree(), &CNavigatorTreeCtrl::Renamed, this, [this] {
        ShowOutcome(m_navigator.Outcome());
        SyncDocuments();
    });
    connect(m_panel->Tree(), &CNavigatorTreeCtrl::SelectionChanged, this, [this] {
        for (const auto& [command, action] : m_actions)
            action->setEnabled(m_navigator.Applies(command));
    });

    m_navigator.Rebuild();
    m_panel->Tree()->Render();
    emit m_panel->Tree()->SelectionChanged();
    UpdateTitle();
    UpdateStatus();
}

QAction* CMainFrame::AddCommand(ENavCommand command, const QString& text,
                                const QKeySequence& shortcut) {
    auto* action = new QAction(text, this);
    action->setObjectName(QStringLiteral("command%1").arg(command));
    if (!shortcut.isEmpty())
        action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, [this, command] { RunCommand(command); });
    m_actions[command] = action;
    return action;
}

QAction* CMainFrame::Action(ENavCommand command) const {
    const auto it = m_actions.find(command);
    return it == m_actions.end() ? nullptr : it->second;
}

void CMainFrame::CreateActions() {
    QStyle* style = QApplication::style();
    AddCommand(eCmdNewClient, tr("&New Client"))
        ->setIcon(style->standardIcon(QStyle::SP_FileDialogNewFolder));
    AddCommand(eCmdRenameClient, tr("&Rename"), QKeySequence(Qt::Key_F2));
    AddCommand(eCmdDeleteClient, tr("&Delete..."));
    AddCommand(eCmdNewStandard, tr("&New Standard..."), QKeySequence::New)
        ->setIcon(style->standardIcon(QStyle::SP_FileIcon));
    AddCommand(eCmdOpenStandard, tr("&Open"), QKeySequence::Open)
        ->setIcon(style->standardIcon(QStyle::SP_DialogOpenButton));
    AddCommand(eCmdCopyStandard, tr("&Copy..."));
    AddCommand(eCmdRenameStandard, tr("&Rename"), QKeySequence(Qt::Key_F2));
    AddCommand(eCmdPrintStandard, tr("&Print..."), QKeySequence::Print);
    AddCommand(eCmdDeleteStandard, tr("&Delete..."), QKeySequence::Delete)
        ->setIcon(style->standardIcon(QStyle::SP_TrashIcon));
    AddCommand(eCmdRecoverStandard, tr("Reco&ver"));
    AddCommand(eCmdPurgeStandard, tr("&Purge..."));
    AddCommand(eCmdExportStandard, tr("&Export..."))
        ->setIcon(style->standardIcon(QStyle::SP_DialogSaveButton));
    AddCommand(eCmdImportStandards, tr("&Import..."));
    AddCommand(eCmdCompareStandards, tr("Co&mpare..."))
        ->setIcon(style->standardIcon(QStyle::SP_FileDialogContentsView));
    m_showDeleted = AddCommand(eCmdShowDeleted, tr("Show &Deleted Standards"));
    m_showDeleted->setCheckable(true);
    m_showDeleted->setChecked(m_navigator.DeletedShown());
    AddCommand(eCmdRefresh, tr("&Refresh List"), QKeySequence::Refresh)
        ->setIcon(style->standardIcon(QStyle::SP_BrowserReload));
    // The client and standard renames share F2: the one that applies acts.
    Action(eCmdRenameClient)->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    Action(eCmdRenameStandard)->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_panel->addAction(Action(eCmdRenameClient));
    m_panel->addAction(Action(eCmdRenameStandard));
    Action(eCmdDeleteStandard)->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_panel->addAction(Action(eCmdDeleteStandard));
}

void CMainFrame::CreateMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(QIcon::fromTheme(QStringLiteral("folder-open"),
                                     style()->standardIcon(QStyle::SP_DirOpenIcon)),
                    tr("&Open Datafiles Folder..."), this,
                    [this] { SwitchDatafilesFolder(EDatafilesPick::Existing); })
        ->setObjectName(QStringLiteral("openDatafilesAction"));
    file->addAction(QIcon::fromTheme(QStringLiteral("folder-new"),
                                     style()->standardIcon(QStyle::SP_FileDialogNewFolder)),
                    tr("&New Datafiles Folder..."), this,
                    [this] { SwitchDatafilesFolder(EDatafilesPick::New); })
        ->setObjectName(QStringLiteral("newDatafilesAction"));
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);
    quit->setObjectName(QStringLiteral("quitAction"));
    quit->setMenuRole(QAction::QuitRole);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    m_undo = edit->addAction(QIcon::fromTheme(QStringLiteral("edit-undo")), tr("&Undo"),
                             QKeySequence::Undo, this, [this] {
                                 QMdiSubWindow* window = m_documents->activeSubWindow();
                                 if (auto* comparison =
                                         window ? qobject_cast<CCompareWindow*>(window->widget())
                                                : nullptr)
                                     comparison->Result()->Undo();
                             });
    m_undo->setObjectName(QStringLiteral("undoAction"));
    m_undo->setEnabled(false);

    QMenu* client = menuBar()->addMenu(tr("&Client"));
    client->addAction(Action(eCmdNewClient));
    client->addAction(Action(eCmdRenameClient));
    client->addAction(Action(eCmdDeleteClient));

    QMenu* standard = menuBar()->addMenu(tr("&Standard"));
    for (const ENavCommand command :
         {eCmdNewStandard, eCmdOpenStandard, eCmdCopyStandard, eCmdRenameStandard,
          eCmdPrintStandard, eCmdDeleteStandard, eCmdRecoverStandard, eCmdPurgeStandard}) {
        standard->addAction(Action(command));
    }
    standard->addSeparator();
    standard->addAction(Action(eCmdExportStandard));
    standard->addAction(Action(eCmdImportStandards));
    standard->addSeparator();
    standard->addAction(Action(eCmdCompareStandards));

    QMenu* view = menuBar()->addMenu(tr("&View"));
    view->addAction(m_showDeleted);
    view->addAction(Action(eCmdRefresh));

    QMenu* toolsMenu = menuBar()->addMenu(tr("&Tools"));
    toolsMenu->setObjectName(QStringLiteral("toolsMenu"));
    toolsMenu
        ->addAction(style()->standardIcon(QStyle::SP_FileDialogInfoView),
                    tr("Check Datafiles &Folder..."), this, [this] { CheckDatafilesFolder(); })
        ->setObjectName(QStringLiteral("checkDatafilesAction"));

    // The documents are tabs: the menu moves between them and closes them.
    QMenu* window = menuBar()->addMenu(tr("&Window"));
    QAction* next = window->addAction(tr("&Next Tab"), QKeySequence::NextChild, m_documents,
                                      &QMdiArea::activateNextSubWindow);
    QAction* previous = window->addAction(tr("&Previous Tab"), QKeySequence::PreviousChild,
                                          m_documents, &QMdiArea::activatePreviousSubWindow);
    window->addSeparator();
    QAction* closeTab = window->addAction(tr("&Close Tab"), QKeySequence::Close, this, [this] {
        if (QMdiSubWindow* active = m_documents->activeSubWindow())
            active->close();
    });
    closeTab->setObjectName(QStringLiteral("closeTabAction"));
    QAction* closeAll =
        window->addAction(tr("Close &All Tabs"), m_documents, &QMdiArea::closeAllSubWindows);
    connect(window, &QMenu::aboutToShow, this, [=, this] {
        const bool any = m_documents->activeSubWindow() != nullptr;
        const bool several = m_documents->subWindowList().size() > 1;
        for (QAction* action : {closeTab, closeAll})
            action->setEnabled(any);
        for (QAction* action : {next, previous})
            action->setEnabled(several);
    });

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&Help..."), QKeySequence::HelpContents, this,
                    [this] { ShowHelp(CEnvironment::kIndexTopic); });
    help->addAction(tr("&About"), this,
                    [this] {
                        QMessageBox::about(
                            this, tr("About Standards Desk"),
                            tr("<b>Standards Desk %1</b><p>Drafting standards administration for "
                               "the 2D Kryn "
                               "2023 suite.</p><p>%2</p><p>Datafiles folder:<br>%3</p>")
                                .arg(QStringLiteral(SD_VERSION),
                                     QStringLiteral(SD_LICENSE).toHtmlEscaped(),
                                     Q(m_core.installation.DatafilesPath()).toHtmlEscaped()));
                    })
        ->setObjectName(QStringLiteral("aboutAction"));

    QToolBar* tools = addToolBar(tr("Standard"));
    tools->setObjectName(QStringLiteral("toolbar"));
    tools->setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (const ENavCommand command : {eCmdNewStandard, eCmdOpenStandard, eCmdDeleteStandard,
                                      eCmdExportStandard, eCmdCompareStandards, eCmdRefresh})
        tools->addAction(Action(command));
}

void CMainFrame::RunCommand(ENavCommand command) {
    m_navigator.Execute(command);
    // Export and import tell their own outcome.
    if (!m_navigator.Outcome().empty())
        ShowOutcome(m_navigator.Outcome());
    m_showDeleted->setChecked(m_navigator.DeletedShown());
    m_panel->Tree()->Render();
    emit m_panel->Tree()->SelectionChanged();
    SyncDocuments();
    UpdateStatus();
}

void CMainFrame::ShowPopup(const QPoint& globalPos) {
    const QPoint local = m_panel->Tree()->viewport()->mapFromGlobal(globalPos);
    const SNavPopup popup =
        m_navigator.RightClick(CNavigatorTreeCtrl::HandleOf(m_panel->Tree()->itemAt(local)));
    m_panel->Tree()->Render();
    emit m_panel->Tree()->SelectionChanged();
    QMenu menu(this);
    for (const ENavCommand command : popup.items) {
        if (command == eCmdSeparator) {
            menu.addSeparator();
            continue;
        }
        QAction* action = Action(command);
        action->setEnabled(!popup.greyed.contains(command));
        menu.addAction(action);
    }
    m_showDeleted->setChecked(popup.showDeletedChecked);
    menu.exec(globalPos);
}

void CMainFrame::Request(ENavRequest request, std::int32_t standardId) {
    if (request == ENavRequest::Open)
        OpenStandard(standardId);
    else
        OpenComparison(standardId);
}

bool CMainFrame::RunNewStandardWizard(std::int32_t clientId, std::int32_t& newId,
                                      std::wstring& newName) {
    CNewStandardWizardDlg wizard(m_core, m_dialogs, clientId, this);
    if (wizard.exec() != QDialog::Accepted)
        return false;
    newId = wizard.CreatedId();
    newName = wizard.CreatedName();
    return newId != 0;
}

void CMainFrame::PrintStandard(std::int32_t standardId) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    PrintStandardReport(m_core.projects, m_core.prompter, standardId, m_opener);
    QApplication::restoreOverrideCursor();
}

void CMainFrame::ExportStandard(std::int32_t standardId, const std::wstring& name) {
    const QString file = m_dialogs.SaveFile(this, Q(CStandardTransfer::kSaveTitle),
                                            Q(CStandardTransfer::kSaveFilter),
                                            Q(m_transfer.ProposedExportFile(name)));
    if (file.isEmpty())
        return;
    bool exported = false;
    CBackgroundWork::Run(this, tr("Exporting standard '%1'...").arg(Q(name)), true,
                         [&](const CProgress& progress) {
                             exported = m_transfer.Export(standardId, W(file), progress);
                         });
    ShowOutcome(exported ? fmt::format(L"Standard '{}' exported to {}", name, W(file))
                         : fmt::format(L"Standard '{}' was not exported", name));
}

void CMainFrame::ImportStandards(std::int32_t clientId) {
    const std::optional<bool> oldFormat = m_transfer.AskOldFormat();
    if (!oldFormat)
        return;
    const QStringList files =
        m_dialogs.OpenFiles(this, Q(CStandardTransfer::kOpenTitle),
                            Q(CStandardTransfer::kOpenFilter), Q(m_transfer.ImportFolder()));
    std::vector<std::wstring> chosen;
    for (const QString& file : files)
        chosen.push_back(W(file));
    if (chosen.empty())
        return;
    std::vector<CStandardTransfer::SImported> imported;
    CBackgroundWork::Run(this, tr("Importing standards..."), true, [&](const CProgress& progress) {
        imported = m_transfer.Import(chosen, clientId, *oldFormat, progress);
    });
    const auto made = std::count_if(imported.begin(), imported.end(),
                                    [](const auto& standard) { return standard.id != 0; });
    ShowOutcome(made == 1 ? std::wstring(L"1 standard imported")
                          : fmt::format(L"{} standards imported", made));
}

void CMainFrame::RunLong(const std::wstring& text, bool canStop,
                         const std::function<void(const CProgress&)>& work) {
    CBackgroundWork::Run(this, Q(text), canStop, work);
}

void CMainFrame::OpenStandard(std::int32_t standardId) {
    for (QMdiSubWindow* window : m_documents->subWindowList()) {
        if (auto* document = qobject_cast<CStandardDocument*>(window->widget());
            document && document->StandardId() == standardId) {
            m_documents->setActiveSubWindow(window);
            return;
        }
    }
    auto* document = new CStandardDocument(m_core, *this, standardId);
    QMdiSubWindow* window = m_documents->addSubWindow(document);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowIcon(QIcon::fromTheme(QStringLiteral("x-office-document"),
                                           style()->standardIcon(QStyle::SP_FileIcon)));
    window->showMaximized();
}

void CMainFrame::OpenComparison(std::int32_t standardId) {
    auto* comparison = new CCompareWindow(m_core, *this, standardId);
    connect(comparison->Result(), &CCompareSettingsFormView::UndoChanged, this,
            &CMainFrame::UpdateUndo);
    connect(comparison->Result(), &CCompareSettingsFormView::StandardChanged, this,
            [this, comparison](std::int32_t id) { StandardFilesChanged(id, comparison); });
    QMdiSubWindow* window = m_documents->addSubWindow(comparison);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowIcon(Action(eCmdCompareStandards)->icon());
    window->showMaximized();
}

void CMainFrame::StandardFilesChanged(std::int32_t standardId, const QWidget* changer) {
    for (QMdiSubWindow* window : m_documents->subWindowList()) {
        if (window->widget() == changer)
            continue;
        if (auto* document = qobject_cast<CStandardDocument*>(window->widget());
            document && document->StandardId() == standardId)
            document->FilesChanged();
        if (auto* comparison = qobject_cast<CCompareWindow*>(window->widget())) {
            CVX2D_StandardComparison& shown = comparison->Result()->Comparison();
            if (shown.GetStandard1() == standardId || shown.GetStandard2() == standardId)
                comparison->Result()->Rebuild();
        }
    }
}

void CMainFrame::UpdateUndo() {
    QMdiSubWindow* window = m_documents->activeSubWindow();
    const auto* comparison = window ? qobject_cast<CCompareWindow*>(window->widget()) : nullptr;
    const bool can = comparison && comparison->Result()->CanUndo();
    m_undo->setEnabled(can);
    m_undo->setText(can ? comparison->Result()->UndoText() : tr("&Undo"));
}

CDoctorDlg* CMainFrame::CheckDatafilesFolder() {
    if (!m_doctor) {
        m_doctor = new CDoctorDlg(
            m_core, *this, [this](const SDoctorFinding& finding) { OpenFinding(finding); }, this);
        m_doctor->setAttribute(Qt::WA_DeleteOnClose);
        connect(m_doctor, &CDoctorDlg::Repaired, this, [this] { RunCommand(eCmdRefresh); });
    }
    m_doctor->show();
    m_doctor->raise();
    m_doctor->Check();
    return m_doctor;
}

namespace {

// The page tree's item for a finding's page: its title and its parent's.
bool FindPageTitles(const std::vector<SSettingsPage>& pages, const SDoctorFinding& finding,
                    const std::wstring& parent, std::wstring& title, std::wstring& parentTitle) {
    for (const auto& page : pages) {
        bool match = false;
        switch (finding.page) {
        case EDoctorPage::eGeneral:
            match = page.kind == ESettingsPage::General;
            break;
        case EDoctorPage::eFileLocations:
            match = page.kind == ESettingsPage::FileLocations;
            break;
        case EDoctorPage::eDrawingFolder:
            match = page.kind == ESettingsPage::DrawingFolder &&
                    page.application == finding.application;
            break;
        case EDoctorPage::eLines:
            match = page.kind == ESettingsPage::Lines;
            break;
        case EDoctorPage::eSection:
            match = page.kind == ESettingsPage::Section &&
                    page.application == finding.application && page.section == finding.section;
            break;
        case EDoctorPage::eLayers:
            match = page.kind == ESettingsPage::Layers && page.application == finding.application;
            break;
        case EDoctorPage::eNone:
            return false;
        }
        if (match) {
            title = page.title;
            parentTitle = parent;
            return true;
        }
        if (FindPageTitles(page.children, finding, page.title, title, parentTitle))
            return true;
    }
    return false;
}

} // namespace

void CMainFrame::OpenFinding(const SDoctorFinding& finding) {
    if (finding.standardId <= 0 ||
        m_core.projects.GetProjectName(finding.standardId, true, true).empty())
        return;
    OpenStandard(finding.standardId);
    // The check's window may be the active one: the standard's window comes
    // forward, and is found by its standard.
    raise();
    activateWindow();
    CStandardDocument* document = nullptr;
    for (QMdiSubWindow* window : m_documents->subWindowList()) {
        auto* candidate = qobject_cast<CStandardDocument*>(window->widget());
        if (candidate && candidate->StandardId() == finding.standardId)
            document = candidate;
    }
    std::wstring title, parentTitle;
    if (!document || !FindPageTitles(SettingsPageTree(false), finding, L"", title, parentTitle))
        return;
    if (QTreeWidgetItem* item = document->Pages()->FindPage(Q(title), Q(parentTitle)))
        document->ShowPage(item);
}

void CMainFrame::ShowHelp(const std::wstring& topic) {
    const CEnvironment environment(m_core.installation);
    std::wstring error;
    const std::wstring page = CEnvironment::HelpTopicPath(
        environment.HelpFilePath(platform::ExecutablePath()), topic, error);
    if (!error.empty()) {
        m_core.prompter.Show(error, EPromptIcon::Stop);
        return;
    }
    OpenOrTell(m_opener, page, L"the help page", m_core.prompter);
}

void CMainFrame::UpdateTitle() {
    // The desktop adds the program's name after the title.
    QMdiSubWindow* window = m_documents->activeSubWindow();
    setWindowTitle(window ? window->windowTitle() : QString());
}

void CMainFrame::ShowOutcome(const std::wstring& text) {
    m_result->setText(Q(text));
    m_result->setToolTip(Q(text));
}

void CMainFrame::UpdateStatus() {
    std::size_t live = 0;
    std::size_t deleted = 0;
    QString text;
    if (m_core.projects.CountProjects(live, deleted) == eProjectOk) {
        text = live == 1 ? tr("1 standard") : tr("%1 standards").arg(live);
        if (deleted > 0)
            text += tr(", %1 deleted").arg(deleted);
    } else {
        text = tr("The standard registry cannot be read");
    }
    m_status->setText(text);
    m_status->setToolTip(Q(m_core.installation.DatafilesPath()));
    m_folder->setText(Q(m_core.installation.DatafilesPath()));
}

void CMainFrame::SyncDocuments() {
    for (QMdiSubWindow* window : m_documents->subWindowList()) {
        if (auto* comparison = qobject_cast<CCompareWindow*>(window->widget()))
            comparison->Refresh();
        auto* document = qobject_cast<CStandardDocument*>(window->widget());
        if (!document)
            continue;
        const std::wstring name =
            m_core.projects.GetProjectName(document->StandardId(), true, true);
        if (name.empty()) {
            // Purged: the window goes, asking first about what is unsaved.
            window->close();
            continue;
        }
        if (window->windowTitle() != Q(name)) {
            window->setWindowTitle(Q(name));
            document->setWindowTitle(Q(name));
        }
    }
    UpdateTitle();
}

void CMainFrame::SwitchDatafilesFolder(EDatafilesPick pick) {
    CDatafilesChoice choice(*m_core.registry, m_core.prompter);
    const QString folder = CDatafilesChooserDlg::Pick(choice, m_dialogs, pick,
                                                      Q(m_core.installation.DatafilesPath()), this);
    if (folder.isEmpty())
        return;
    m_nextFolder = folder;
    if (!close()) {
        m_nextFolder.clear(); // a window kept open keeps this folder
        return;
    }
    choice.Remember(W(folder));
}

void CMainFrame::showEvent(QShowEvent* event) {
    // The dock and toolbar where the user left them, once the window has its size.
    if (!m_layoutRestored) {
        m_layoutRestored = true;
        restoreState(layout::Value(QStringLiteral("window/state")));
    }
    QMainWindow::showEvent(event);
}

void CMainFrame::closeEvent(QCloseEvent* event) {
    for (QMdiSubWindow* window : m_documents->subWindowList()) {
        if (!window->close()) {
            m_documents->setActiveSubWindow(window);
            event->ignore();
            return;
        }
    }
    layout::SetValue(QStringLiteral("window/state"), saveState());
    const QRect frame = geometry();
    m_core.profile.SetString(L"Application", L"WindowPosition",
                             fmt::format(L"{},{},{},{}", frame.left(), frame.top(),
                                         frame.right() + 1, frame.bottom() + 1));
    event->accept();
}
