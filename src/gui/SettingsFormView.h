// One settings section of one application of a standard: the two-column
// grid of label and value, "Restore Defaults", "Apply" and "Help...".
#pragma once

#include "editors/SettingsEditor.h"
#include "gui/Grid.h"
#include "gui/PageView.h"

#include <QTableWidget>
#include <functional>

// The value cells: a drop-down for choices, a field with a browse button for
// folders, a "..." button for fonts, a line editor for the rest. Each cell's
// kind is the value item's Qt::UserRole (an ESettingsCell, -1 when it cannot
// be changed) and a drop-down's choices its kChoicesRole.
class CSettingsCellDelegate : public CCellFrameDelegate {
public:
    static constexpr int kChoicesRole = Qt::UserRole + 1;
    // `pick(row)`: the picker of a font or folder cell, for its "..."
    // button and the browse button of the path field.
    CSettingsCellDelegate(QObject* parent, std::function<void(int)> pick);

    static int Kind(const QModelIndex& index);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    // The cell's "..." or drop-down button; empty for other cells.
    static QRect ButtonRect(const QStyleOptionViewItem& option, const QModelIndex& index);

    std::function<void(int)> m_pick;
};

// The grid as a spreadsheet: the current cell stays in the value column,
// arrows and Tab move it, Enter and F2 start editing (or the picker of a
// font), Enter ends an edit and moves down, Esc cancels.
class CSettingsGridCtrl : public QTableWidget {
    Q_OBJECT
public:
    explicit CSettingsGridCtrl(QWidget* parent = nullptr);
    // Column 0 sized to its labels, the last column to the rest of the width.
    void FitColumns();

signals:
    // Enter, F2 or a double click on a cell that only a picker changes.
    void PickRequested(int row);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    // The value cell of `row`, clamped to the rows there are.
    QModelIndex ValueCell(int row) const;
};

class CSettingsFormView : public CEditorPageView<CSettingsEditor> {
    Q_OBJECT
public:
    CSettingsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                      int application, int section, QWidget* parent = nullptr);

    CSettingsGridCtrl* Grid() const { return m_grid; }
    // Puts a typed or picked text into a row, as the cell would.
    void SetCellText(int row, const QString& text);

protected:
    void Refresh() override;

private:
    void UpdateRow(int row);
    void Pick(int row);
    void PickFont(int row);

    CSettingsGridCtrl* m_grid;
    QPushButton* m_restore;
};
