#include "gui/SettingsFormView.h"

#include "gui/Grid.h"
#include "gui/QtText.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFontDialog>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// "Face; Style; file" for a picked font, keeping the font file the setting
// had when the face stays the same.
QString FontText(const QFont& font, const QString& old) {
    const QStringList parts = old.split(QStringLiteral("; "));
    QString file = parts.size() == 3 ? parts[2] : QString();
    if (parts.value(0).compare(font.family(), Qt::CaseInsensitive) != 0)
        file = font.family().toLower().remove(QLatin1Char(' ')) + QStringLiteral(".ttf");
    const QString style = font.styleName().isEmpty() ? QStringLiteral("Regular") : font.styleName();
    return QStringLiteral("%1; %2; %3").arg(font.family(), style, file);
}

} // namespace

CSettingsGridCtrl::CSettingsGridCtrl(QWidget* parent) : QTableWidget(parent) {
    setObjectName(QStringLiteral("settingsGrid"));
    SetUpGrid(this, {tr("Setting"), tr("Value")},
              QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                  QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
}

void CSettingsGridCtrl::FitColumns() {
    resizeColumnToContents(0);
    const int rest = viewport()->width() - columnWidth(0);
    setColumnWidth(1, std::max(rest, 120));
}

void CSettingsGridCtrl::resizeEvent(QResizeEvent* event) {
    QTableWidget::resizeEvent(event);
    FitColumns();
}

CSettingsFormView::CSettingsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                                     int application, int section, QWidget* parent)
    : CEditorPageView(core, host, parent, QStringLiteral("settingsFormView")),
      m_grid(new CSettingsGridCtrl(this)), m_restore(MakeRestoreButton()) {
    LayOutGrid(m_grid, MakeButtons({m_restore}));

    connect(m_grid, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (!m_filling && item->column() == 1)
            SetCellText(item->row(), item->text());
    });

    m_editor.Open(standardId, application, section);
    Refresh();
    UpdateApply();
}

void CSettingsFormView::Refresh() {
    const int count = BeginFill(m_grid);
    for (int row = 0; row < count; ++row)
        UpdateRow(row);
    EndFill();
    m_grid->FitColumns();
    m_restore->setEnabled(count > 0);
}

void CSettingsFormView::UpdateRow(int row) {
    const SSettingsRow& data = m_editor.Rows()[static_cast<std::size_t>(row)];
    const bool filling = m_filling;
    m_filling = true;
    auto* label = new QTableWidgetItem(Q(data.label));
    label->setFlags(Qt::ItemIsEnabled);
    m_grid->setItem(row, 0, label);
    m_grid->removeCellWidget(row, 1);
    auto* value = new QTableWidgetItem(Q(data.text));
    if (data.subHeading) {
        label->setTextAlignment(Qt::AlignCenter);
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
    }
    if (data.background)
        Mark({label, value}, m_grid->palette(), EGridMark::eSubHeading);
    if (data.readOnly || data.subHeading || data.cell == ESettingsCell::List ||
        data.cell == ESettingsCell::Font || data.cell == ESettingsCell::Path)
        value->setFlags(Qt::ItemIsEnabled);
    m_grid->setItem(row, 1, value);

    if (!data.subHeading && !data.readOnly) {
        if (data.cell == ESettingsCell::List) {
            auto* combo = new QComboBox(m_grid);
            combo->setObjectName(QStringLiteral("cell%1").arg(row));
            for (const auto& choice : data.choices)
                combo->addItem(Q(choice));
            if (combo->findText(Q(data.text)) < 0)
                combo->addItem(Q(data.text));
            combo->setCurrentText(Q(data.text));
            connect(combo, &QComboBox::textActivated, this,
                    [this, row](const QString& text) { SetCellText(row, text); });
            m_grid->setCellWidget(row, 1, combo);
        } else if (data.cell == ESettingsCell::Font || data.cell == ESettingsCell::Path) {
            auto* button = new QPushButton(Q(data.text), m_grid);
            button->setObjectName(QStringLiteral("cell%1").arg(row));
            button->setStyleSheet(QStringLiteral("text-align: left; padding-left: 4px;"));
            const bool font = data.cell == ESettingsCell::Font;
            connect(button, &QPushButton::clicked, this,
                    [this, row, font] { font ? PickFont(row) : PickFolder(row); });
            m_grid->setCellWidget(row, 1, button);
        }
    }
    m_filling = filling;
}

void CSettingsFormView::SetCellText(int row, const QString& text) {
    if (row < 0 || row >= m_grid->rowCount())
        return;
    m_editor.SetCellText(static_cast<std::size_t>(row), W(text));
    UpdateRow(row);
    Edited();
}

void CSettingsFormView::PickFont(int row) {
    const QString old = Q(m_editor.Rows()[static_cast<std::size_t>(row)].text);
    QFont current(old.section(QStringLiteral("; "), 0, 0));
    bool ok = false;
    const QFont font = QFontDialog::getFont(&ok, current, this, tr("Text Font"));
    if (ok)
        SetCellText(row, FontText(font, old));
}

void CSettingsFormView::PickFolder(int row) {
    const QString old = Q(m_editor.Rows()[static_cast<std::size_t>(row)].text);
    const QString folder = m_host.FileDialogs().Folder(this, tr("Choose a folder"), old);
    if (!folder.isEmpty())
        SetCellText(row, folder);
}
