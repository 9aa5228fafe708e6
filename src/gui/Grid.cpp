#include "gui/Grid.h"

#include <QHeaderView>
#include <QPainter>

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

void GreyOut(std::initializer_list<QTableWidgetItem*> items, const QFont& font,
             const QString& toolTip) {
    const QBrush greyed(QColor(110, 110, 110));
    QFont slanted = font;
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
    PaintFrame(painter, option);
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
