#include "gui/DrawingsFormView.h"

#include "gui/LabelEditDelegate.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QProgressDialog>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

// Sizes sort by their number, not their text.
class CDrawingItem : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem& other) const override {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        if (column == 1)
            return text(1).section(QLatin1Char(' '), 0, 0).toLongLong() <
                   other.text(1).section(QLatin1Char(' '), 0, 0).toLongLong();
        return QTreeWidgetItem::operator<(other);
    }
};

} // namespace

CDrawingsListCtrl::CDrawingsListCtrl(QWidget* parent) : QTreeWidget(parent) {
    setObjectName(QStringLiteral("drawingsList"));
    setColumnCount(3);
    setHeaderLabels({tr("Name"), tr("Size"), tr("Modified")});
    setRootIsDecorated(false);
    setSortingEnabled(true);
    sortByColumn(0, Qt::AscendingOrder);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
}

QStringList CDrawingsListCtrl::SelectedNames() const {
    QStringList names;
    for (QTreeWidgetItem* item : selectedItems())
        names << item->text(0);
    return names;
}

CDrawingsFormView::CDrawingsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                                     int application, QWidget* parent)
    : CPageView(core, host, parent),
      m_manager(core.projects, core.installation, core.profile, core.prompter),
      m_list(new CDrawingsListCtrl(this)) {
    setObjectName(QStringLiteral("drawingsFormView"));
    m_list->setItemDelegate(new CLabelEditDelegate(
        this,
        [this](const QString& item, const std::optional<QString>& text) { Renamed(item, text); }));
    auto* tools = new QToolBar(this);
    QStyle* style = QApplication::style();
    const auto add = [&](const QString& name, QStyle::StandardPixmap icon, const QString& tip,
                         auto slot) {
        auto* action = new QAction(style->standardIcon(icon), tip, this);
        action->setObjectName(name);
        action->setToolTip(tip);
        connect(action, &QAction::triggered, this, slot);
        tools->addAction(action);
        m_actions[name] = action;
        return action;
    };
    add(QStringLiteral("openFolder"), QStyle::SP_DirOpenIcon, tr("Open folder in Windows Explorer"),
        [this] { m_manager.OpenFolder(); });
    m_list->addAction(add(QStringLiteral("open"), QStyle::SP_DialogOpenButton, tr("Open"),
                          [this] { OpenSelected(); }));
    m_list->addAction(add(QStringLiteral("copy"), QStyle::SP_FileDialogDetailedView, tr("Copy"),
                          [this] { Copy(); }));
    m_list->addAction(
        add(QStringLiteral("rename"), QStyle::SP_FileDialogInfoView, tr("Rename"), [this] {
            if (QTreeWidgetItem* item = m_list->currentItem())
                m_list->editItem(item, 0);
        }));
    m_list->addAction(
        add(QStringLiteral("delete"), QStyle::SP_TrashIcon, tr("Delete"), [this] { Delete(); }));
    add(QStringLiteral("newDrawing"), QStyle::SP_FileIcon, tr("New drawing from the template"),
        [this] { NewDrawing(); });
    QAction* backups =
        add(QStringLiteral("backups"), QStyle::SP_BrowserReload, tr("Show backup files"), [this] {
            m_manager.ToggleBackupState();
            Render();
        });
    backups->setCheckable(true);
    add(QStringLiteral("help"), QStyle::SP_DialogHelpButton, tr("Help"),
        [this] { m_host.ShowHelp(CDrawingsManager::kHelpTopic); });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tools);
    layout->addWidget(m_list, 1);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, [this] { OpenSelected(); });

    m_manager.Open(standardId, application);
    Render();
}

QAction* CDrawingsFormView::Action(const QString& name) const {
    const auto it = m_actions.find(name);
    return it == m_actions.end() ? nullptr : it->second;
}

void CDrawingsFormView::Render(const QString& select) {
    m_list->setSortingEnabled(false);
    m_list->clear();
    const SDrawingList& list = m_manager.List();
    for (std::size_t i = 0; i < list.names.size(); ++i) {
        auto* item =
            new CDrawingItem(m_list, {Q(list.names[i]), Q(list.sizes[i]), Q(list.dates[i])});
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    }
    m_list->setSortingEnabled(true);
    m_list->resizeColumnToContents(1);
    m_list->resizeColumnToContents(2);
    Action(QStringLiteral("backups"))->setChecked(m_manager.BackupsShown());
    if (!select.isEmpty()) {
        const auto found = m_list->findItems(select, Qt::MatchFixedString, 0);
        if (!found.isEmpty())
            m_list->setCurrentItem(found.front());
    }
    if (!m_manager.EditingItem().empty()) {
        const auto found = m_list->findItems(Q(m_manager.EditingItem()), Qt::MatchExactly, 0);
        if (!found.isEmpty()) {
            m_list->setCurrentItem(found.front());
            m_list->editItem(found.front(), 0);
        }
    }
}

void CDrawingsFormView::Renamed(const QString& item, const std::optional<QString>& text) {
    std::optional<std::wstring> renamed;
    if (text && *text != item)
        renamed = m_manager.Rename(W(item), W(*text));
    // The drawing stays the chosen one, under whichever name it now has.
    Render(renamed ? Q(*renamed) : item);
}

bool CDrawingsFormView::Progress(int number, int count, const std::wstring& source,
                                 const std::wstring& target) {
    if (!m_progress) {
        m_progress = new QProgressDialog(this);
        m_progress->setWindowTitle(Q(CDrawingsManager::kCopyTitle));
        m_progress->setWindowModality(Qt::WindowModal);
        m_progress->setMinimumDuration(300);
    }
    m_progress->setMaximum(count);
    m_progress->setValue(number - 1);
    m_progress->setLabelText(Q(CopyProgressText(number, count, source, target)));
    return !m_progress->wasCanceled();
}

void CDrawingsFormView::Copy() {
    std::vector<std::wstring> items;
    for (const QString& name : m_list->SelectedNames())
        items.push_back(W(name));
    m_manager.Copy(items, [this](int n, int c, const std::wstring& s, const std::wstring& t) {
        return Progress(n, c, s, t);
    });
    delete m_progress;
    m_progress = nullptr;
    Render();
}

void CDrawingsFormView::Delete() {
    std::vector<std::wstring> items;
    for (const QString& name : m_list->SelectedNames())
        items.push_back(W(name));
    m_manager.Delete(items);
    Render();
}

void CDrawingsFormView::NewDrawing() {
    m_manager.NewDrawing([this](int n, int c, const std::wstring& s, const std::wstring& t) {
        return Progress(n, c, s, t);
    });
    delete m_progress;
    m_progress = nullptr;
    Render();
}

void CDrawingsFormView::OpenSelected() {
    if (QTreeWidgetItem* item = m_list->currentItem())
        m_manager.OpenDrawing(W(item->text(0)));
}
