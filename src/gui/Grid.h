// The look the grids of the program share: column headers and no row
// numbers, one cell or row chosen at a time, read-only cells, the grey
// slanted rows of what is deleted or no longer offered, and the marked rows
// (headings, differences). Every colour comes from the palette, so light
// and dark themes both stay readable.
#pragma once

#include <QAbstractItemView>
#include <QColor>
#include <QPalette>
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

// The chosen cells of a grid and its current cell, each once, in row and
// column order: what a command on "the chosen values" takes.
QModelIndexList ChosenCells(const QAbstractItemView* grid);

// Greys and slants a row's cells of `grid` (in its font and palette), still
// readable; `toolTip` says why.
void GreyOut(const QTableWidget* grid, std::initializer_list<QTableWidgetItem*> items,
             const QString& toolTip = {});

// Draws cells as usual and a frame in the palette's highlight colour around
// the current cell while the grid has the focus, so the keyboard's place
// shows on any cell, chosen or not, in light and dark palettes; a check box
// gets an outline that shows on both.
class CCellFrameDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    // The frame alone, for delegates that paint their cells themselves.
    static void PaintFrame(QPainter* painter, const QStyleOptionViewItem& option);

private:
    // An outline around a cell's check box, seen on any palette.
    void PaintCheckOutline(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const;
};

// How far apart two colours are for the eye: 1 (the same luminance) to 21
// (black on white). 4.5 keeps ordinary text readable.
double ContrastRatio(const QColor& one, const QColor& two);
inline constexpr double kReadableContrast = 4.5;

// `amount` (0 to 1) of the way from `from` to `to`, or less far where going
// that far would leave less than `kReadableContrast` against `against`.
QColor ReadableBlend(const QColor& from, const QColor& to, double amount, const QColor& against);

// The `text` colour toned down towards `background`: for hints and greyed
// rows, still readable on that background.
QColor SubduedText(const QPalette& palette, QPalette::ColorRole text = QPalette::Text,
                   QPalette::ColorRole background = QPalette::Base);

// Rows a grid sets apart: a section heading, a heading within a section,
// and a value that differs between two standards.
enum class EGridMark { eHeading, eSubHeading, eDifference };

// The background of a marked cell: a tint of the palette's base colour
// (towards its text colour for headings, towards yellow for differences)
// that leaves the palette's text colour readable on it.
QColor MarkBackground(const QPalette& palette, EGridMark mark);

// Gives the cells the mark's background and the palette's text colour.
void Mark(std::initializer_list<QTableWidgetItem*> items, const QPalette& palette, EGridMark mark);
