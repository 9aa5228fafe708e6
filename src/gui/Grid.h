// The look the grids of the program share: column headers and no row
// numbers, one cell or row chosen at a time, read-only cells, and the grey
// slanted rows of what is deleted or no longer offered.
#pragma once

#include <QAbstractItemView>
#include <QStringList>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <initializer_list>

// Sets the column headers, hides the row numbers, allows one selection at a
// time (whole rows when `wholeRows`) and opens the editor on `triggers`.
// Column `stretch` takes the spare width and the others fit their contents;
// -1 leaves the widths alone.
void SetUpGrid(QTableWidget* grid, const QStringList& headers,
               QAbstractItemView::EditTriggers triggers, bool wholeRows = false, int stretch = -1);

// A cell that can be chosen but not typed into; a number is set to the right.
QTableWidgetItem* ReadOnlyItem(const QString& text);
QTableWidgetItem* NumberItem(int number);

// Greys and slants a row's cells, still readable; `toolTip` says why.
void GreyOut(std::initializer_list<QTableWidgetItem*> items, const QFont& font,
             const QString& toolTip = {});

// Draws cells as usual and a frame in the palette's highlight colour around
// the current cell while the grid has the focus, so the keyboard's place
// shows on any cell, chosen or not, in light and dark palettes.
class CCellFrameDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    // The frame alone, for delegates that paint their cells themselves.
    static void PaintFrame(QPainter* painter, const QStyleOptionViewItem& option);
};
