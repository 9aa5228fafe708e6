#include "gui/NavigatorDlg.h"

#include "gui/LabelEditDelegate.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QDropEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QStyle>
#include <QToolTip>
#include <QVBoxLayout>

namespace {

// One icon per kind, made once and shared by every item of that kind: a
// large office has tens of thousands of items.
const QIcon& IconFor(int image) {
    static const QIcon client = QApplication::style()->standardIcon(QStyle::SP_DirIcon);
    static const QIcon standard = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
    // A deleted standard: the standard's icon, greyed.
    static const QIcon deleted = QIcon(standard.pixmap(16, 16, QIcon::Disabled));
    switch (image) {
    case eNavClient:
        return client;
    case eNavStandard:
        return standard;
    default:
        return deleted;
    }
}

void Show(QTreeWidgetItem* widget, const CNavItem& item) {
    widget->setText(0, Q(item.text));
    widget->setIcon(0, IconFor(item.image));
    // A deleted standard: greyed and slanted as well, in any palette.
    const bool deleted = item.image == eNavDeleted;
    if (deleted || widget->font(0).italic()) {
        QFont font = widget->font(0);
        font.setItalic(deleted);
        widget->setFont(0, font);
        widget->setForeground(
            0,
            deleted ? QApplication::palette().brush(QPalette::Disabled, QPalette::Text) : QBrush());
    }
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
    flags |= item.image == eNavClient ? Qt::ItemIsDropEnabled
                                      : Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
    widget->setFlags(flags);
}

} // namespace

CNavigatorTreeCtrl::CNavigatorTreeCtrl(CNavigatorController& controller, QWidget* parent)
    : QTreeWidget(parent), m_controller(controller) {
    setObjectName(QStringLiteral("navigatorTree"));
    setHeaderHidden(true);
    setColumnCount(1);
    setItemDelegate(new CLabelEditDelegate(
        this, [this](const QString&, const std::optional<QString>& text) { LabelEdited(text); }));
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::InternalMove);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (m_rendering)
            return;
        m_controller.Select(HandleOf(item));
        emit SelectionChanged();
    });
    connect(this, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& pos) { emit ContextMenuWanted(viewport()->mapToGlobal(pos)); });
}

std::uint64_t CNavigatorTreeCtrl::HandleOf(const QTreeWidgetItem* item) {
    return item ? item->data(0, kHandleRole).toULongLong() : 0;
}

QTreeWidgetItem* CNavigatorTreeCtrl::ItemOf(std::uint64_t handle) const {
    const auto it = m_items.find(handle);
    return it == m_items.end() ? nullptr : it->second;
}

QTreeWidgetItem* CNavigatorTreeCtrl::MakeItem(const CNavItem& item) {
    auto* widget = new QTreeWidgetItem;
    Show(widget, item);
    widget->setData(0, kHandleRole, QVariant::fromValue<qulonglong>(item.handle));
    m_items[item.handle] = widget;
    QList<QTreeWidgetItem*> children;
    children.reserve(static_cast<qsizetype>(item.children.size()));
    for (const auto& child : item.children)
        children.append(MakeItem(child));
    widget->addChildren(children);
    return widget;
}

void CNavigatorTreeCtrl::Forget(QTreeWidgetItem* widget) {
    m_items.erase(HandleOf(widget));
    for (int i = 0; i < widget->childCount(); ++i)
        Forget(widget->child(i));
}

void CNavigatorTreeCtrl::Apply(const SNavChange& change) {
    const CNavigatorTree& tree = m_controller.Tree();
    const CNavItem* item = tree.Find(change.handle);
    switch (change.kind) {
    case SNavChange::Reset:
        break;
    case SNavChange::Inserted: {
        if (!item || ItemOf(change.handle))
            return;
        const CNavItem* parent = tree.Parent(change.handle);
        QTreeWidgetItem* under = parent ? ItemOf(parent->handle) : nullptr;
        QTreeWidgetItem* widget = MakeItem(*item);
        const int at = static_cast<int>(tree.IndexOf(change.handle));
        if (under)
            under->insertChild(at, widget);
        else
            insertTopLevelItem(at, widget);
        widget->setExpanded(true);
        if (under)
            under->setExpanded(true);
        return;
    }
    case SNavChange::Removed:
        if (QTreeWidgetItem* widget = ItemOf(change.handle)) {
            Forget(widget);
            delete widget;
        }
        return;
    case SNavChange::Changed:
        if (QTreeWidgetItem* widget = ItemOf(change.handle); widget && item)
            Show(widget, *item);
        return;
    case SNavChange::Resorted: {
        // The children in the model's order; the items themselves stay.
        QTreeWidgetItem* parent = change.handle ? ItemOf(change.handle) : invisibleRootItem();
        const std::vector<CNavItem>* children =
            change.handle ? (item ? &item->children : nullptr) : &tree.Roots();
        if (!parent || !children)
            return;
        const QList<QTreeWidgetItem*> taken = parent->takeChildren();
        QList<QTreeWidgetItem*> ordered;
        ordered.reserve(taken.size());
        for (const auto& child : *children) {
            if (QTreeWidgetItem* widget = ItemOf(child.handle))
                ordered.append(widget);
        }
        parent->addChildren(ordered);
        for (QTreeWidgetItem* widget : ordered)
            widget->setExpanded(true);
        return;
    }
    }
}

void CNavigatorTreeCtrl::Render() {
    m_rendering = true;
    const std::vector<SNavChange> changes = m_controller.TakeTreeChanges();
    const bool reset = m_items.empty() ||
                       std::any_of(changes.begin(), changes.end(), [](const SNavChange& change) {
                           return change.kind == SNavChange::Reset;
                       });
    if (reset) {
        // Built aside and added in one go: one notification for the lot.
        clear();
        m_items.clear();
        QList<QTreeWidgetItem*> roots;
        for (const auto& item : m_controller.Tree().Roots())
            roots.append(MakeItem(item));
        addTopLevelItems(roots);
        expandAll();
    } else {
        for (const SNavChange& change : changes)
            Apply(change);
    }
    QTreeWidgetItem* selected = ItemOf(m_controller.Selection());
    setCurrentItem(selected);
    if (selected)
        scrollToItem(selected);
    m_rendering = false;
    if (QTreeWidgetItem* editing = ItemOf(m_controller.EditingItem()))
        editItem(editing, 0);
}

void CNavigatorTreeCtrl::LabelEdited(const std::optional<QString>& text) {
    std::optional<std::wstring> newText;
    if (text)
        newText = W(*text);
    const bool renamed = m_controller.EndLabelEdit(newText);
    Render();
    emit SelectionChanged();
    if (renamed)
        emit Renamed();
}

bool CNavigatorTreeCtrl::viewportEvent(QEvent* event) {
    // Made when asked: an office has tens of thousands of items.
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const QString text = Q(m_controller.ToolTipOf(HandleOf(itemAt(help->pos()))));
        if (text.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(help->globalPos(), text, viewport());
        return true;
    }
    return QTreeWidget::viewportEvent(event);
}

void CNavigatorTreeCtrl::startDrag(Qt::DropActions actions) {
    const int kind = m_controller.KindOf(HandleOf(currentItem()));
    if (kind != eNavStandard && kind != eNavDeleted)
        return;
    m_dragged = HandleOf(currentItem());
    QTreeWidget::startDrag(actions);
}

void CNavigatorTreeCtrl::dragMoveEvent(QDragMoveEvent* event) {
    QTreeWidget::dragMoveEvent(event);
    if (event->source() == this)
        event->acceptProposedAction();
}

void CNavigatorTreeCtrl::dropEvent(QDropEvent* event) {
    // The controller moves the standard between clients; the tree only shows it.
    QTreeWidgetItem* target = itemAt(event->position().toPoint());
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
    QMetaObject::invokeMethod(
        this, [this, handle = HandleOf(target)] { DropOn(ItemOf(handle)); }, Qt::QueuedConnection);
}

void CNavigatorTreeCtrl::DropOn(QTreeWidgetItem* target) {
    // The drag starts from the selected standard.
    const std::uint64_t dragged = m_dragged ? m_dragged : HandleOf(currentItem());
    m_dragged = 0;
    m_controller.Drop(dragged, HandleOf(target));
    Render();
    emit SelectionChanged();
}

CNavigatorDlg::CNavigatorDlg(CNavigatorController& controller, QWidget* parent)
    : QWidget(parent), m_controller(controller), m_tree(new CNavigatorTreeCtrl(controller, this)),
      m_newClient(new QPushButton(tr("New Client"), this)),
      m_newStandard(new QPushButton(tr("New Standard"), this)),
      m_openStandard(new QPushButton(tr("Open Standard"), this)) {
    setObjectName(QStringLiteral("navigator"));
    m_newClient->setObjectName(QStringLiteral("newClientButton"));
    m_newStandard->setObjectName(QStringLiteral("newStandardButton"));
    m_openStandard->setObjectName(QStringLiteral("openStandardButton"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_newClient);
    layout->addWidget(m_newStandard);
    layout->addWidget(m_openStandard);
    layout->addWidget(m_tree, 1);
    connect(m_newClient, &QPushButton::clicked, this,
            [this] { emit CommandRequested(eCmdNewClient); });
    connect(m_newStandard, &QPushButton::clicked, this,
            [this] { emit CommandRequested(eCmdNewStandard); });
    connect(m_openStandard, &QPushButton::clicked, this,
            [this] { emit CommandRequested(eCmdOpenStandard); });
    connect(m_tree, &CNavigatorTreeCtrl::SelectionChanged, this, &CNavigatorDlg::UpdateButtons);
    connect(m_tree, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        if (m_controller.KindOf(CNavigatorTreeCtrl::HandleOf(item)) == eNavStandard)
            emit CommandRequested(eCmdOpenStandard);
    });
    UpdateButtons();
}

void CNavigatorDlg::UpdateButtons() {
    const SNavButtons buttons = m_controller.Buttons();
    m_newClient->setEnabled(buttons.newClient);
    m_newStandard->setEnabled(buttons.newStandard);
    m_openStandard->setEnabled(buttons.openStandard);
}
