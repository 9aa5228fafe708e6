#include "gui/DrawingsFormView.h"

#include "gui/LabelEditDelegate.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressDialog>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>

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

// The desktop theme's icon of that name, else the style's own; `fallback`
// SP_CustomBase for none where the style has nothing that fits.
QIcon ThemeIcon(const char* name, QStyle::StandardPixmap fallback) {
    const QIcon themed = QIcon::fromTheme(QLatin1String(name));
    if (!themed.isNull() || fallback == QStyle::SP_CustomBase)
        return themed;
    return QApplication::style()->standardIcon(fallback);
}

// A path that fits its width: shortened in the middle when it does not, the
// whole path in the tooltip, selectable for copying.
class CPathLabel : public QLabel {
public:
    explicit CPathLabel(QWidget* parent) : QLabel(parent) {
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        setTextFormat(Qt::PlainText);
    }
    void SetPath(const QString& path) {
        m_path = path;
        setToolTip(path);
        Elide();
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        Elide();
    }

private:
    void Elide() {
        const int room = contentsRect().width() - 2 * margin();
        const QString shown = fontMetrics().elidedText(m_path, Qt::ElideMiddle, room);
        if (shown != text())
            setText(shown);
    }
    QString m_path;
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
    tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    // `label` beside the icon on the toolbar, `text` in the pop-up and as
    // the tooltip; the keys work while the list has the focus.
    const auto add = [&](const QString& name, const char* icon, QStyle::StandardPixmap fallback,
                         const QString& text, const QString& label, auto slot) {
        auto* action = new QAction(ThemeIcon(icon, fallback), text, this);
        action->setObjectName(name);
        action->setIconText(label);
        action->setToolTip(text);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, slot);
        tools->addAction(action);
        m_actions[name] = action;
        return action;
    };
    const auto separator = [this] {
        auto* line = new QAction(this);
        line->setSeparator(true);
        return line;
    };
    add(QStringLiteral("openFolder"), "folder-open", QStyle::SP_DirOpenIcon,
        Q(CDrawingsManager::OpenFolderText()), tr("Open Folder"),
        [this] { m_manager.OpenFolder(); });
    tools->addSeparator();
    m_list->addAction(add(QStringLiteral("open"), "document-open", QStyle::SP_DialogOpenButton,
                          tr("Open"), tr("Open"), [this] { OpenSelected(); }));
    m_list->addAction(add(QStringLiteral("copy"), "edit-copy", QStyle::SP_CustomBase, tr("Copy"),
                          tr("Copy"), [this] { Copy(); }));
    QAction* rename = add(QStringLiteral("rename"), "edit-rename", QStyle::SP_CustomBase,
                          tr("Rename"), tr("Rename"), [this] {
                              if (QTreeWidgetItem* item = m_list->currentItem())
                                  m_list->editItem(item, 0);
                          });
    rename->setShortcut(Qt::Key_F2);
    m_list->addAction(rename);
    QAction* remove = add(QStringLiteral("delete"), "edit-delete", QStyle::SP_TrashIcon,
                          tr("Delete"), tr("Delete"), [this] { Delete(); });
    remove->setShortcut(QKeySequence::Delete);
    m_list->addAction(remove);
    m_list->addAction(separator());
    m_list->addAction(add(QStringLiteral("newDrawing"), "document-new", QStyle::SP_FileIcon,
                          tr("New drawing from the template"), tr("New Drawing"),
                          [this] { NewDrawing(); }));
    tools->addSeparator();
    QAction* backups = add(QStringLiteral("backups"), "document-open-recent", QStyle::SP_CustomBase,
                           tr("Show backup files"), tr("Backups"), [this] {
                               m_manager.ToggleBackupState();
                               Render();
                           });
    backups->setCheckable(true);
    add(QStringLiteral("help"), "help-contents", QStyle::SP_DialogHelpButton, tr("Help"),
        tr("Help"), [this] { m_host.ShowHelp(CDrawingsManager::kHelpTopic); });
    for (QAction* action : tools->actions()) {
        if (!action->shortcut().isEmpty())
            action->setToolTip(QStringLiteral("%1 (%2)").arg(
                action->text(), action->shortcut().toString(QKeySequence::NativeText)));
    }

    auto* folder = new CPathLabel(this);
    folder->setObjectName(QStringLiteral("drawingsFolder"));
    folder->setMargin(4);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(tools);
    layout->addWidget(folder);
    layout->addWidget(m_list, 1);
    // Enter, a double click (or the desktop's single click) opens the drawing.
    connect(m_list, &QAbstractItemView::activated, this, [this] { OpenSelected(); });
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, [this] { UpdateActions(); });

    m_manager.Open(standardId, application);
    folder->SetPath(Q(m_manager.Folder()));
    Render();
}

void CDrawingsFormView::UpdateActions() {
    const bool chosen = !m_list->selectedItems().isEmpty();
    for (const char* name : {"open", "copy", "rename", "delete"})
        Action(QLatin1String(name))->setEnabled(chosen);
    Action(QStringLiteral("openFolder"))->setEnabled(!m_manager.Folder().empty());
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
    UpdateActions();
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
    QTreeWidgetItem* current = m_list->currentItem();
    const QString name = current ? current->text(0) : QString();
    const int place = current ? m_list->indexOfTopLevelItem(current) : -1;
    m_manager.Delete(items);
    // The drawing stays chosen when it was kept, else the one now in its place.
    Render(name);
    const int count = m_list->topLevelItemCount();
    if (!m_list->currentItem() && place >= 0 && count > 0)
        m_list->setCurrentItem(m_list->topLevelItem(std::min(place, count - 1)));
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
