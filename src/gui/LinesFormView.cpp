#include "gui/LinesFormView.h"

#include "gui/Grid.h"
#include "gui/QtText.h"

#include <QHeaderView>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int kNameColumn = 0;
constexpr int kIdColumn = 1;
constexpr int kStateColumn = 2;

} // namespace

CLinesFormView::CLinesFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                               QWidget* parent)
    : CEditorPageView(core, host, parent, QStringLiteral("linesFormView"), ESaving::AtOnce),
      m_grid(new QTableWidget(this)), m_new(new QPushButton(tr("New Line"), this)),
      m_delete(new QPushButton(tr("Delete"), this)),
      m_recover(new QPushButton(tr("Recover"), this)),
      m_rename(new QPushButton(tr("Rename"), this)) {
    m_grid->setObjectName(QStringLiteral("linesGrid"));
    m_new->setObjectName(QStringLiteral("newButton"));
    m_delete->setObjectName(QStringLiteral("deleteButton"));
    m_recover->setObjectName(QStringLiteral("recoverButton"));
    m_rename->setObjectName(QStringLiteral("renameButton"));

    SetUpGrid(m_grid, {tr("Line"), tr("Id"), tr("State")},
              QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed, true,
              kNameColumn);

    auto* note = new QLabel(tr("Each change to the lines is saved at once."), this);
    note->setObjectName(QStringLiteral("savedAtOnceNote"));
    QPalette hint = note->palette();
    hint.setColor(QPalette::WindowText, SubduedText(hint, QPalette::WindowText, QPalette::Window));
    note->setPalette(hint);

    LayOutGrid(m_grid, MakeButtons({note}, {m_new, m_delete, m_recover, m_rename}));

    connect(m_new, &QPushButton::clicked, this, [this] {
        const std::int32_t lineId = m_editor.CreateLine();
        Fill(lineId);
        // A new line is named "Line n": let its name be typed straight away.
        if (lineId != 0 && m_grid->currentItem())
            m_grid->editItem(m_grid->item(m_grid->currentRow(), kNameColumn));
    });
    connect(m_delete, &QPushButton::clicked, this, [this] {
        const std::int32_t lineId = CurrentLine();
        if (lineId != 0)
            m_editor.DeleteLine(lineId);
        Fill(lineId);
    });
    connect(m_recover, &QPushButton::clicked, this, [this] {
        const std::int32_t lineId = CurrentLine();
        if (lineId != 0)
            m_editor.RecoverLine(lineId);
        Fill(lineId);
    });
    connect(m_rename, &QPushButton::clicked, this, [this] {
        if (QTableWidgetItem* item = m_grid->item(m_grid->currentRow(), kNameColumn))
            m_grid->editItem(item);
    });
    connect(m_grid, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (!m_filling && item->column() == kNameColumn)
            Rename(item);
    });
    connect(m_grid, &QTableWidget::currentCellChanged, this, [this] { UpdateButtons(); });

    m_editor.Open(standardId);
    Fill();
}

std::int32_t CLinesFormView::CurrentLine() const {
    const QTableWidgetItem* item = m_grid->item(m_grid->currentRow(), kNameColumn);
    return item ? item->data(Qt::UserRole).toInt() : 0;
}

void CLinesFormView::SelectLine(std::int32_t lineId) {
    const int row = m_editor.Find(lineId);
    if (row >= 0)
        m_grid->setCurrentCell(row, kNameColumn);
    UpdateButtons();
}

void CLinesFormView::Fill(std::int32_t select) {
    const int count = BeginFill(m_grid);
    for (int row = 0; row < count; ++row) {
        const SLineRow& line = m_editor.Rows()[static_cast<std::size_t>(row)];
        auto* name = new QTableWidgetItem(Q(line.name));
        name->setData(Qt::UserRole, line.id);
        name->setFlags(line.deleted
                           ? Qt::ItemIsEnabled | Qt::ItemIsSelectable
                           : Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
        auto* id = NumberItem(line.id);
        auto* state = ReadOnlyItem(Q(LineStateText(line.deleted)));
        if (line.deleted)
            GreyOut(m_grid, {name, id, state});
        m_grid->setItem(row, kNameColumn, name);
        m_grid->setItem(row, kIdColumn, id);
        m_grid->setItem(row, kStateColumn, state);
    }
    EndFill();
    if (select != 0 && m_editor.Find(select) >= 0)
        SelectLine(select);
    else if (count > 0)
        m_grid->setCurrentCell(0, kNameColumn);
    UpdateButtons();
}

void CLinesFormView::UpdateButtons() {
    const int row = m_editor.Find(CurrentLine());
    const bool chosen = row >= 0;
    const bool deleted = chosen && m_editor.Rows()[static_cast<std::size_t>(row)].deleted;
    m_delete->setEnabled(chosen && !deleted);
    m_rename->setEnabled(chosen && !deleted);
    m_recover->setEnabled(chosen && deleted);
}

void CLinesFormView::Rename(QTableWidgetItem* item) {
    const std::int32_t lineId = item->data(Qt::UserRole).toInt();
    m_editor.RenameLine(lineId, W(item->text()));
    // The row shows what the file holds: the new name, or the old one when
    // the rename was refused.
    const int row = m_editor.Find(lineId);
    if (row != item->row() || m_grid->rowCount() != static_cast<int>(m_editor.Rows().size())) {
        // Another workstation changed the list meanwhile: show it afresh,
        // once the item being edited is no longer in use.
        QTimer::singleShot(0, this, [this, lineId] { Fill(lineId); });
        return;
    }
    m_filling = true;
    item->setText(Q(m_editor.Rows()[static_cast<std::size_t>(row)].name));
    m_filling = false;
}
