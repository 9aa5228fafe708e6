#include "gui/LayersFormView.h"

#include "editors/StandardMerge.h"

#include "gui/Grid.h"
#include "gui/QtText.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int kColumns = 5;

QColor ColorOf(const SAciRgb& rgb) {
    return QColor(rgb.red, rgb.green, rgb.blue);
}

QColor PaletteColor(int index) {
    return ColorOf(AciPalette()[static_cast<std::size_t>(index)]);
}

// A filled square with a grey frame, so that white and black both show.
QIcon SwatchIcon(const QColor& color, int size = 14) {
    QPixmap pixmap(size, size);
    pixmap.fill(color);
    QPainter painter(&pixmap);
    painter.setPen(QColor(96, 96, 96));
    painter.drawRect(0, 0, size - 1, size - 1);
    return QIcon(pixmap);
}

QComboBox* MakeCombo(QWidget* parent, const QString& name, const QStringList& items) {
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->addItems(items);
    combo->setFrame(false);
    return combo;
}

// Shows `text` in a list-only combo, adding it when the list lacks it (a
// linetype of the standard's own, an odd lineweight from an old file).
void ShowInCombo(QComboBox* combo, const QString& text) {
    const QSignalBlocker block(combo);
    int at = combo->findText(text);
    if (at < 0) {
        combo->addItem(text);
        at = combo->count() - 1;
    }
    combo->setCurrentIndex(at);
}

} // namespace

// ------------------------------------------------------------ colour picker

CColorIndexDialog::CColorIndexDialog(int index, QWidget* parent)
    : QDialog(parent), m_swatches(new QButtonGroup(this)), m_preview(new QLabel(this)),
      m_text(new QLabel(this)) {
    setObjectName(QStringLiteral("colorIndexDialog"));
    setWindowTitle(tr("Select Color"));
    m_swatches->setExclusive(true);

    auto swatch = [this](int at) {
        auto* button = new QToolButton(this);
        button->setObjectName(QStringLiteral("swatch%1").arg(at));
        button->setCheckable(true);
        button->setFixedSize(18, 18);
        button->setToolTip(Q(AciColorName(at)));
        const QColor color = PaletteColor(at);
        const QColor mark = color.lightness() < 128 ? Qt::white : Qt::black;
        button->setStyleSheet(
            QStringLiteral("QToolButton { background: %1; border: 1px solid #707070; }"
                           "QToolButton:checked { border: 3px solid %2; }")
                .arg(color.name(), mark.name()));
        m_swatches->addButton(button, at);
        return button;
    };

    // Hues across; down, the five shades of each hue at full strength, then
    // the same five pale.
    auto* hues = new QGridLayout;
    hues->setSpacing(1);
    for (int at = 10; at <= 249; ++at) {
        const int shade = (at - 10) % 10;
        hues->addWidget(swatch(at), shade / 2 + (shade % 2) * 5, (at - 10) / 10);
    }
    auto* named = new QHBoxLayout;
    named->setSpacing(1);
    for (int at = 1; at <= 9; ++at)
        named->addWidget(swatch(at));
    named->addSpacing(24);
    for (int at = 250; at <= 255; ++at)
        named->addWidget(swatch(at));
    named->addStretch(1);

    m_preview->setFixedSize(48, 24);
    m_text->setObjectName(QStringLiteral("colorText"));
    auto* chosen = new QHBoxLayout;
    chosen->addWidget(m_text, 1);
    chosen->addWidget(m_preview);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_swatches, &QButtonGroup::idClicked, this, &CColorIndexDialog::Choose);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("AutoCAD Color Index (ACI):"), this));
    layout->addLayout(hues);
    layout->addSpacing(6);
    layout->addLayout(named);
    layout->addSpacing(6);
    layout->addLayout(chosen);
    layout->addWidget(buttons);
    Choose(index >= 1 && index < kAciColorCount ? index : 7);
}

void CColorIndexDialog::Choose(int index) {
    if (index < 1 || index >= kAciColorCount)
        return;
    m_index = index;
    if (QAbstractButton* button = m_swatches->button(index))
        button->setChecked(true);
    const SAciRgb& rgb = AciPalette()[static_cast<std::size_t>(index)];
    m_text->setText(tr("%1   (Red, Green, Blue: %2, %3, %4)")
                        .arg(Q(AciColorName(index)))
                        .arg(rgb.red)
                        .arg(rgb.green)
                        .arg(rgb.blue));
    m_preview->setStyleSheet(QStringLiteral("background: %1; border: 1px solid #707070;")
                                 .arg(PaletteColor(index).name()));
}

int CColorIndexDialog::Pick(QWidget* parent, int index) {
    CColorIndexDialog dialog(index, parent);
    return dialog.exec() == QDialog::Accepted ? dialog.Index() : -1;
}

// ------------------------------------------------------------- layers page

CLayersFormView::CLayersFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                                 int application, QWidget* parent)
    : CEditorPageView(core, host, parent, QStringLiteral("layersFormView")),
      m_grid(new QTableWidget(this)), m_restore(MakeRestoreButton()) {
    m_grid->setObjectName(QStringLiteral("layersGrid"));
    SetUpGrid(m_grid,
              {tr("Description"), tr("Layer Name"), tr("Color"), tr("Linetype"), tr("Lineweight")},
              QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                  QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    // Names take the spare width; the drop-downs keep a readable size.
    m_grid->horizontalHeader()->setSectionResizeMode(static_cast<int>(ELayerColumn::Name),
                                                     QHeaderView::Stretch);
    QPushButton* push =
        MakePushButton([this](std::vector<std::wstring>& all, std::vector<std::wstring>& chosen) {
            const auto& rows = m_editor.Rows();
            for (const auto& row : rows)
                all.push_back(LayerRowId(m_editor.Application(), row.key));
            for (const QModelIndex& cell : ChosenCells(m_grid)) {
                if (static_cast<std::size_t>(cell.row()) < rows.size())
                    chosen.push_back(LayerRowId(m_editor.Application(),
                                                rows[static_cast<std::size_t>(cell.row())].key));
            }
        });
    LayOutGrid(m_grid, MakeButtons({m_restore, push}));

    connect(m_grid, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (!m_filling && item->column() == static_cast<int>(ELayerColumn::Name))
            SetCellText(item->row(), ELayerColumn::Name, item->text());
    });

    m_editor.Open(standardId, application);
    Refresh();
    UpdateApply();
}

void CLayersFormView::Refresh() {
    m_filling = true;
    m_header->setText(Q(m_editor.Header()));
    const int count = static_cast<int>(m_editor.Rows().size());
    if (m_grid->rowCount() != count) {
        m_grid->clearContents();
        m_grid->setRowCount(count);
        QStringList linetypes;
        for (const auto& linetype : StandardLinetypes())
            linetypes << Q(linetype);
        QStringList lineweights;
        for (const std::int32_t lineweight : StandardLineweights())
            lineweights << Q(LineweightText(lineweight));
        for (int row = 0; row < count; ++row) {
            auto* description = new QTableWidgetItem;
            description->setFlags(Qt::ItemIsEnabled);
            m_grid->setItem(row, static_cast<int>(ELayerColumn::Description), description);
            m_grid->setItem(row, static_cast<int>(ELayerColumn::Name), new QTableWidgetItem);

            auto* color = new QPushButton(m_grid);
            color->setObjectName(QStringLiteral("color%1").arg(row));
            color->setFlat(true);
            color->setStyleSheet(QStringLiteral("text-align: left; padding-left: 4px;"));
            connect(color, &QPushButton::clicked, this, [this, row] { PickColor(row); });
            m_grid->setCellWidget(row, static_cast<int>(ELayerColumn::Color), color);

            auto* linetype = MakeCombo(m_grid, QStringLiteral("linetype%1").arg(row), linetypes);
            connect(linetype, &QComboBox::textActivated, this, [this, row](const QString& text) {
                SetCellText(row, ELayerColumn::Linetype, text);
            });
            m_grid->setCellWidget(row, static_cast<int>(ELayerColumn::Linetype), linetype);

            auto* lineweight =
                MakeCombo(m_grid, QStringLiteral("lineweight%1").arg(row), lineweights);
            connect(lineweight, &QComboBox::textActivated, this, [this, row](const QString& text) {
                SetCellText(row, ELayerColumn::Lineweight, text);
            });
            m_grid->setCellWidget(row, static_cast<int>(ELayerColumn::Lineweight), lineweight);
        }
    }
    for (int row = 0; row < count; ++row)
        UpdateRow(row);
    m_filling = false;
    m_grid->resizeColumnToContents(static_cast<int>(ELayerColumn::Description));
    for (int column = static_cast<int>(ELayerColumn::Color); column < kColumns; ++column)
        m_grid->setColumnWidth(column, 160);
    m_restore->setEnabled(count > 0);
}

void CLayersFormView::UpdateRow(int row) {
    const SLayerRow& data = m_editor.Rows()[static_cast<std::size_t>(row)];
    const bool filling = m_filling;
    m_filling = true;
    m_grid->item(row, static_cast<int>(ELayerColumn::Description))->setText(Q(data.description));
    m_grid->item(row, static_cast<int>(ELayerColumn::Name))->setText(Q(data.name));
    if (auto* color = qobject_cast<QPushButton*>(
            m_grid->cellWidget(row, static_cast<int>(ELayerColumn::Color)))) {
        color->setIcon(SwatchIcon(ColorOf(data.color.rgb)));
        color->setText(Q(data.colorText));
    }
    if (auto* linetype = qobject_cast<QComboBox*>(
            m_grid->cellWidget(row, static_cast<int>(ELayerColumn::Linetype))))
        ShowInCombo(linetype, Q(data.linetype));
    if (auto* lineweight = qobject_cast<QComboBox*>(
            m_grid->cellWidget(row, static_cast<int>(ELayerColumn::Lineweight))))
        ShowInCombo(lineweight, Q(data.lineweightText));
    m_filling = filling;
}

void CLayersFormView::Changed(int row) {
    UpdateRow(row);
    Edited();
}

void CLayersFormView::SetCellText(int row, ELayerColumn column, const QString& text) {
    if (row < 0 || row >= m_grid->rowCount())
        return;
    m_editor.SetCellText(static_cast<std::size_t>(row), column, W(text));
    // A refused text goes back to what is kept.
    Changed(row);
}

void CLayersFormView::SetColorIndex(int row, int index) {
    if (row < 0 || row >= m_grid->rowCount())
        return;
    m_editor.SetColorIndex(static_cast<std::size_t>(row), index);
    Changed(row);
}

void CLayersFormView::PickColor(int row) {
    const int index =
        CColorIndexDialog::Pick(this, m_editor.Rows()[static_cast<std::size_t>(row)].color.index);
    if (index > 0)
        SetColorIndex(row, index);
}
