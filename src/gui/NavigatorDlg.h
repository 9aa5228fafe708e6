// The navigator panel: "New Client", "New Standard", "Open Standard" and the
// tree of clients and standards, rendering the navigator controller.
#pragma once

#include "app/NavigatorController.h"

#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <unordered_map>

class CNavigatorTreeCtrl : public QTreeWidget {
    Q_OBJECT
public:
    static constexpr int kHandleRole = Qt::UserRole + 1;

    explicit CNavigatorTreeCtrl(CNavigatorController& controller, QWidget* parent = nullptr);

    // Shows the controller's tree, its selection, and starts label editing
    // when the controller asks for it.
    void Render();
    QTreeWidgetItem* ItemOf(std::uint64_t handle) const;
    // The selected (dragged) standard released on `target` (nullptr: the
    // empty area at the top level).
    void DropOn(QTreeWidgetItem* target);
    static std::uint64_t HandleOf(const QTreeWidgetItem* item);

signals:
    void SelectionChanged();
    // A client or a standard has a new name.
    void Renamed();
    void ContextMenuWanted(const QPoint& globalPos);

protected:
    void dropEvent(QDropEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void startDrag(Qt::DropActions actions) override;
    bool viewportEvent(QEvent* event) override;

private:
    // An item for a model item and its children, not yet in the tree.
    QTreeWidgetItem* MakeItem(const CNavItem& item);
    // Drops an item and its children from the handle map.
    void Forget(QTreeWidgetItem* widget);
    // Brings the items up to one change of the model.
    void Apply(const SNavChange& change);
    void LabelEdited(const std::optional<QString>& text);

    CNavigatorController& m_controller;
    bool m_rendering = false;
    std::uint64_t m_dragged = 0;
    std::unordered_map<std::uint64_t, QTreeWidgetItem*> m_items;
};

class CNavigatorDlg : public QWidget {
    Q_OBJECT
public:
    CNavigatorDlg(CNavigatorController& controller, QWidget* parent = nullptr);
    CNavigatorTreeCtrl* Tree() const { return m_tree; }
    void UpdateButtons();

signals:
    void CommandRequested(ENavCommand command);

private:
    CNavigatorController& m_controller;
    CNavigatorTreeCtrl* m_tree;
    QPushButton* m_newClient;
    QPushButton* m_newStandard;
    QPushButton* m_openStandard;
};
