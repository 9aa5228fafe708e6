#include "gui/Grid.h"

#include <QApplication>
#include <QHeaderView>
#include <QPainter>

#include <algorithm>
#include <cmath>

void SetUpGrid(QTableWidget* grid, const QStringList& headers,
               QAbstractItemView::EditTriggers triggers, bool wholeRows, int stretch) {
    grid->setColumnCount(static_cast<int>(headers.size()));
    grid->setHorizontalHeaderLabels(headers);
    grid->verticalHeader()->hide();
    if (wholeRows)
        grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->setEditTriggers(triggers);
    if (stretch < 0)
        return;
    for (int column = 0; column < grid->columnCount(); ++column) {
        grid->horizontalHeader()->setSectionResizeMode(
            column, column == stretch ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
    }
}

QModelIndexList ChosenCells(const QAbstractItemView* grid) {
    QModelIndexList cells = grid->selectionModel()->selectedIndexes();
    if (grid->currentIndex().isValid() && !cells.contains(grid->currentIndex()))
        cells << grid->currentIndex();
    std::sort(cells.begin(), cells.end(), [](const QModelIndex& a, const QModelIndex& b) {
        return a.row() != b.row() ? a.row() < b.row() : a.column() < b.column();
    });
    return cells;
}

QTableWidgetItem* ReadOnlyItem(const QString& text) {
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

QTableWidgetItem* NumberItem(int number) {
    QTableWidgetItem* item = ReadOnlyItem(QString::number(number));
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return item;
}

void GreyOut(const QTableWidget* grid, std::initializer_list<QTableWidgetItem*> items,
             const QString& toolTip) {
    const QBrush greyed(SubduedText(grid->palette()));
    QFont slanted = grid->font();
    slanted.setItalic(true);
    for (QTableWidgetItem* item : items) {
        item->setForeground(greyed);
        item->setFont(slanted);
        if (!toolTip.isEmpty())
            item->setToolTip(toolTip);
    }
}

void CCellFrameDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    QStyleOptionViewItem plain = option;
    // The style's own dotted focus line is replaced by the frame.
    plain.state &= ~QStyle::State_HasFocus;
    QStyledItemDelegate::paint(painter, plain, index);
    if (index.data(Qt::CheckStateRole).isValid())
        PaintCheckOutline(painter, option, index);
    PaintFrame(painter, option);
}

void CCellFrameDelegate::PaintCheckOutline(QPainter* painter, const QStyleOptionViewItem& option,
                                           const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QStyle* style = item.widget ? item.widget->style() : QApplication::style();
    const QRect box =
        style->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &item, item.widget);
    painter->save();
    // Some styles draw an empty box in a dark palette nearly as dark as the
    // cell: an outline in the text's subdued colour keeps it in sight.
    const bool chosen = option.state & QStyle::State_Selected;
    painter->setPen(chosen ? option.palette.color(QPalette::HighlightedText)
                           : SubduedText(option.palette));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5));
    painter->restore();
}

void CCellFrameDelegate::PaintFrame(QPainter* painter, const QStyleOptionViewItem& option) {
    if (!(option.state & QStyle::State_HasFocus))
        return;
    painter->save();
    // Inside a chosen cell the frame takes the chosen text's colour.
    const bool chosen = option.state & QStyle::State_Selected;
    QPen pen(option.palette.color(QPalette::Active,
                                  chosen ? QPalette::HighlightedText : QPalette::Highlight),
             2);
    pen.setJoinStyle(Qt::MiterJoin);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(QRectF(option.rect).adjusted(1, 1, -1, -1));
    painter->restore();
}

namespace {

// The relative luminance of a colour as sRGB: 0 for black, 1 for white.
double Luminance(const QColor& colour) {
    const auto linear = [](float channel) {
        return channel <= 0.04045f ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    const QColor rgb = colour.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) +
           0.0722 * linear(rgb.blueF());
}

QColor Mix(const QColor& from, const QColor& to, double amount) {
    const auto channel = [amount](int a, int b) {
        return static_cast<int>(std::lround(a + (b - a) * amount));
    };
    const QColor a = from.toRgb(), b = to.toRgb();
    return QColor(channel(a.red(), b.red()), channel(a.green(), b.green()),
                  channel(a.blue(), b.blue()));
}

} // namespace

double ContrastRatio(const QColor& one, const QColor& two) {
    const double a = Luminance(one), b = Luminance(two);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor ReadableBlend(const QColor& from, const QColor& to, double amount, const QColor& against) {
    // The furthest of 32 steps back towards `from` that is still readable.
    constexpr int kSteps = 32;
    amount = std::clamp(amount, 0.0, 1.0);
    for (int step = kSteps; step > 0; --step) {
        const QColor blend = Mix(from, to, amount * step / kSteps);
        if (ContrastRatio(blend, against) >= kReadableContrast)
            return blend;
    }
    return from;
}

QColor SubduedText(const QPalette& palette, QPalette::ColorRole text,
                   QPalette::ColorRole background) {
    const QColor back = palette.color(background);
    return ReadableBlend(palette.color(text), back, 0.45, back);
}

QColor MarkBackground(const QPalette& palette, EGridMark mark) {
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    switch (mark) {
    case EGridMark::eHeading:
        return ReadableBlend(base, text, 0.38, text);
    case EGridMark::eSubHeading:
        return ReadableBlend(base, text, 0.17, text);
    default:
        return ReadableBlend(base, QColor(255, 255, 0), 1.0, text);
    }
}

void Mark(std::initializer_list<QTableWidgetItem*> items, const QPalette& palette, EGridMark mark) {
    const QBrush background(MarkBackground(palette, mark));
    const QBrush foreground(palette.color(QPalette::Text));
    for (QTableWidgetItem* item : items) {
        item->setBackground(background);
        item->setForeground(foreground);
    }
}
