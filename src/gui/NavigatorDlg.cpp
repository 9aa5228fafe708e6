#include "gui/NavigatorDlg.h"

#include "gui/LabelEditDelegate.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QDropEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QIcon IconFor(int image) {
    QStyle* style = QApplication::style();
    switch (image) {
    case eNavClient:
        return style->standardIcon(QStyle::SP_DirIcon);
    case eNavStandard:
        return style->standardIcon(QStyle::SP_FileIcon);
    default: {
        // A deleted standard: the standard's icon, greyed.
        const QIcon icon = style->standardIcon(QStyle::SP_FileIcon);
        return QIcon(icon.pixmap(16, 16, QIcon::Disabled));
    }
    }
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
    if (handle == 0)
        return nullptr;
    for (QTreeWidgetItemIterator it(const_cast<CNavigatorTreeCtrl*>(this)); *it; ++it) {
        if (HandleOf(*it) == handle)
            return *it;
    }
    return nullptr;
}

void CNavigatorTreeCtrl::AddItems(QTreeWidgetItem* parent, const std::vector<CNavItem>& items) {
    for (const auto& item : items) {
        auto* widget = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
        widget->setText(0, Q(item.text));
        widget->setIcon(0, IconFor(item.image));
        widget->setData(0, kHandleRole, QVariant::fromValue<qulonglong>(item.handle));
        Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
        flags |= item.image == eNavClient ? Qt::ItemIsDropEnabled
                                          : Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
        widget->setFlags(flags);
        AddItems(widget, item.children);
    }
}

void CNavigatorTreeCtrl::Render() {
    m_rendering = true;
    clear();
    AddItems(nullptr, m_controller.Tree().Roots());
    expandAll();
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
    m_controller.EndLabelEdit(newText);
    Render();
    emit SelectionChanged();
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
