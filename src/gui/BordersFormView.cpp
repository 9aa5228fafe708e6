#include "gui/BordersFormView.h"

#include "editors/StandardMerge.h"

#include "gui/Grid.h"
#include "gui/QtText.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

// Grid column of each editor column; column 0 holds the sheet size.
int GridColumn(EBorderColumn column) {
    return static_cast<int>(column) + 1;
}

bool IsDrawing(EBorderColumn column) {
    return column == EBorderColumn::Border || column == EBorderColumn::Revision;
}

constexpr EBorderColumn kColumns[] = {EBorderColumn::Border, EBorderColumn::LimitsMin,
                                      EBorderColumn::LimitsMax, EBorderColumn::Revision};

} // namespace

CBordersFormView::CBordersFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                                   QWidget* parent)
    : CEditorPageView(core, host, parent, QStringLiteral("bordersFormView")),
      m_grid(new QTableWidget(this)), m_folder(new QLabel(this)) {
    m_grid->setObjectName(QStringLiteral("bordersGrid"));
    m_folder->setObjectName(QStringLiteral("bordersFolderLabel"));
    m_editor.Open(standardId);

    m_folder->setWordWrap(true);
    m_folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_header->setText(tr("Border Settings"));

    // A sheet's limits are one value of the comparison; the sheets of the
    // other units than the standard's are not compared and not offered.
    QPushButton* push =
        MakePushButton([this](std::vector<std::wstring>& all, std::vector<std::wstring>& chosen) {
            static const wchar_t* const kIds[] = {L"border", L"limits", L"limits", L"revision"};
            const auto& rows = m_editor.Rows();
            for (const auto& row : rows) {
                for (const wchar_t* id : {kIds[0], kIds[1], kIds[3]})
                    all.push_back(BorderRowId(row.size, id));
            }
            for (const QModelIndex& cell : ChosenCells(m_grid)) {
                const int column = cell.column() - 1;
                if (static_cast<std::size_t>(cell.row()) < rows.size() && column >= 0 &&
                    column < kBorderColumnCount)
                    chosen.push_back(
                        BorderRowId(rows[static_cast<std::size_t>(cell.row())].size, kIds[column]));
            }
        });
    LayOutGrid(m_grid, MakeButtons({MakeRestoreButton(), push}), nullptr, m_folder);

    connect(m_grid, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        const int column = item->column() - 1;
        if (!m_busy && column >= 0 && column < kBorderColumnCount)
            Commit(item->row(), static_cast<EBorderColumn>(column), item->text());
    });
    Build();
}

void CBordersFormView::Build() {
    m_busy = true;
    SetUpGrid(m_grid,
              {tr("Size"), tr("Border Drawing"), tr("Lower-Left Limit"), tr("Upper-Right Limit"),
               tr("Revision Drawing")},
              m_grid->editTriggers());
    const auto& rows = m_editor.Rows();
    m_grid->setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
        const SBorderRow& data = rows[static_cast<std::size_t>(row)];
        // ANSI sizes are drawn in inches, ISO sizes in millimetres.
        auto* size = new QTableWidgetItem(
            QStringLiteral("%1  (%2)").arg(Q(data.name), data.size <= eDwgE ? tr("in") : tr("mm")));
        size->setFlags(Qt::ItemIsEnabled);
        m_grid->setItem(row, 0, size);
        for (const EBorderColumn column : kColumns) {
            const int gridColumn = GridColumn(column);
            m_grid->setItem(row, gridColumn, new QTableWidgetItem);
            if (!IsDrawing(column))
                continue;
            m_grid->item(row, gridColumn)->setFlags(Qt::ItemIsEnabled);
            auto* combo = new QComboBox(m_grid);
            combo->setObjectName(QStringLiteral("%1%2")
                                     .arg(column == EBorderColumn::Border
                                              ? QStringLiteral("border")
                                              : QStringLiteral("revision"))
                                     .arg(row));
            combo->setEditable(true);
            combo->setInsertPolicy(QComboBox::NoInsert);
            connect(combo, &QComboBox::textActivated, this,
                    [this, row, column](const QString& text) { Commit(row, column, text); });
            connect(combo->lineEdit(), &QLineEdit::editingFinished, this,
                    [this, row, column, combo] { Commit(row, column, combo->currentText()); });
            m_grid->setCellWidget(row, gridColumn, combo);
        }
    }
    m_busy = false;
    FillDrawingLists();
    Refresh();
    m_grid->resizeColumnsToContents();
    m_grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_grid->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
}

QComboBox* CBordersFormView::DrawingCombo(int row, int column) const {
    return qobject_cast<QComboBox*>(m_grid->cellWidget(row, column));
}

void CBordersFormView::FillDrawingLists() {
    const bool busy = m_busy;
    m_busy = true;
    QStringList drawings;
    for (const auto& name : m_editor.DrawingFiles())
        drawings << Q(name);
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        for (const EBorderColumn column : {EBorderColumn::Border, EBorderColumn::Revision}) {
            QComboBox* combo = DrawingCombo(row, GridColumn(column));
            if (!combo)
                continue;
            const QSignalBlocker blocker(combo);
            const QString text = combo->currentText();
            combo->clear();
            combo->addItems(drawings);
            combo->setCurrentIndex(-1);
            combo->setEditText(text);
        }
    }
    if (m_editor.BordersFolder().empty())
        m_folder->setText(tr("No borders folder is set for this standard: set one on the File "
                             "Locations page to pick its drawings here."));
    else
        m_folder->setText(
            tr("The drop-downs offer the drawings of the borders folder %1 (%2 found); another "
               "name can be typed.")
                .arg(Q(m_editor.BordersFolder()),
                     drawings.isEmpty() ? tr("none") : QString::number(drawings.size())));
    m_busy = busy;
}

void CBordersFormView::Refresh() {
    const bool busy = m_busy;
    m_busy = true;
    const auto& rows = m_editor.Rows();
    for (int row = 0; row < static_cast<int>(rows.size()) && row < m_grid->rowCount(); ++row) {
        const SBorderRow& data = rows[static_cast<std::size_t>(row)];
        for (const EBorderColumn column : kColumns) {
            const int c = static_cast<int>(column);
            const QString text = Q(data.texts[c]);
            // A changed cell stands out until it is saved.
            QFont font = m_grid->font();
            font.setBold(data.changed[c]);
            QTableWidgetItem* item = m_grid->item(row, GridColumn(column));
            if (QComboBox* combo = DrawingCombo(row, GridColumn(column))) {
                const QSignalBlocker blocker(combo);
                combo->setEditText(text);
                combo->setFont(font);
                item->setText(text); // for a reader of the grid
            } else {
                item->setText(text);
                item->setFont(font);
            }
        }
    }
    m_busy = busy;
}

void CBordersFormView::Commit(int row, EBorderColumn column, const QString& text) {
    if (m_busy || row < 0 || row >= static_cast<int>(m_editor.Rows().size()))
        return;
    m_busy = true;
    const std::wstring& shown =
        m_editor.Rows()[static_cast<std::size_t>(row)].texts[static_cast<int>(column)];
    const bool changed =
        W(text) != shown && m_editor.SetCellText(static_cast<std::size_t>(row), column, W(text));
    m_busy = false;
    Refresh();
    if (changed)
        Edited();
}

void CBordersFormView::showEvent(QShowEvent* event) {
    CPageView::showEvent(event);
    if (m_editor.RefreshDrawingFiles())
        FillDrawingLists();
}
