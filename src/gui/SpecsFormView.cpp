#include "gui/SpecsFormView.h"

#include "gui/Grid.h"
#include "gui/QtText.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int kSpecColumn = 0;
constexpr int kIdColumn = 1;
constexpr int kFolderColumn = 2;

} // namespace

CSpecPlaceDialog::CSpecPlaceDialog(const QString& title, const QString& prompt,
                                   const std::optional<QString>& name,
                                   const std::vector<SSpecPlaceChoice>& places,
                                   const SSpecPlace& current, QWidget* parent)
    : QDialog(parent), m_places(places), m_place(new QComboBox(this)) {
    setObjectName(QStringLiteral("specPlaceDialog"));
    setWindowTitle(title);
    auto* layout = new QVBoxLayout(this);
    auto* text = new QLabel(prompt, this);
    text->setWordWrap(true);
    layout->addWidget(text);
    auto* form = new QFormLayout;
    if (name) {
        m_name = new QLineEdit(*name, this);
        m_name->setObjectName(QStringLiteral("specName"));
        m_name->selectAll();
        form->addRow(tr("&Name:"), m_name);
    }
    m_place->setObjectName(QStringLiteral("specPlace"));
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        m_place->addItem(Q(m_places[i].text));
        if (m_places[i].place == current)
            m_place->setCurrentIndex(static_cast<int>(i));
    }
    form->addRow(tr("&Belongs to:"), m_place);
    layout->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    const auto allowOk = [this, buttons] {
        buttons->button(QDialogButtonBox::Ok)
            ->setEnabled(!m_name || !m_name->text().trimmed().isEmpty());
    };
    if (m_name)
        connect(m_name, &QLineEdit::textChanged, this, allowOk);
    allowOk();
    setMinimumWidth(360);
}

QString CSpecPlaceDialog::Name() const {
    return m_name ? m_name->text() : QString();
}

SSpecPlace CSpecPlaceDialog::Place() const {
    const int index = m_place->currentIndex();
    return index < 0 ? SSpecPlace{} : m_places[static_cast<std::size_t>(index)].place;
}

CSpecsFormView::CSpecsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                               QWidget* parent)
    : CEditorPageView(core, host, parent, QStringLiteral("specsFormView"), core.specs),
      m_empty(new QLabel(tr("No spec is offered to this standard yet: common specs, specs of "
                            "its client and its own. New... makes one."),
                         this)),
      m_grid(new QTableWidget(this)), m_new(new QPushButton(tr("New..."), this)),
      m_rename(new QPushButton(tr("Rename"), this)), m_move(new QPushButton(tr("Move..."), this)),
      m_copy(new QPushButton(tr("Copy..."), this)), m_delete(new QPushButton(tr("Delete"), this)),
      m_openFolder(new QPushButton(tr("Open Folder"), this)) {
    m_grid->setObjectName(QStringLiteral("specsGrid"));
    m_grid->setItemDelegate(new CCellFrameDelegate(m_grid));
    SetUpGrid(m_grid, {tr("Spec"), tr("Id"), tr("Folder")}, QAbstractItemView::EditKeyPressed, true,
              kFolderColumn);
    m_empty->setObjectName(QStringLiteral("noSpecsNote"));
    m_empty->setWordWrap(true);
    m_empty->hide();

    const std::pair<QPushButton*, const char*> named[] = {
        {m_new, "newSpecButton"},       {m_rename, "renameSpecButton"},
        {m_move, "moveSpecButton"},     {m_copy, "copySpecButton"},
        {m_delete, "deleteSpecButton"}, {m_openFolder, "openSpecFolderButton"}};
    auto* above = new QWidget(this);
    auto* aboveLayout = new QVBoxLayout(above);
    aboveLayout->setContentsMargins(0, 0, 0, 0);
    auto* tools = new QHBoxLayout;
    for (const auto& [button, name] : named) {
        button->setObjectName(QLatin1String(name));
        tools->addWidget(button);
    }
    tools->addStretch(1);
    aboveLayout->addLayout(tools);
    aboveLayout->addWidget(m_empty);
    m_new->setToolTip(tr("Make a new spec with an empty folder"));
    m_rename->setToolTip(tr("Rename the pipe spec everywhere it is checked (F2)"));
    m_move->setToolTip(
        tr("Give the pipe spec to all standards, to the client or to this standard"));
    m_copy->setToolTip(tr("Make a new spec from a copy of this one's folder"));
    m_delete->setToolTip(tr("Delete the pipe spec and its folder for good"));
    m_openFolder->setToolTip(tr("Open the pipe spec's folder in the file manager"));

    auto* note = new QLabel(tr("Checks are saved by Apply; the buttons above change the "
                               "specs at once."),
                            this);
    note->setObjectName(QStringLiteral("specsNote"));
    QPalette hint = note->palette();
    hint.setColor(QPalette::WindowText, SubduedText(hint, QPalette::WindowText, QPalette::Window));
    note->setPalette(hint);
    LayOutGrid(m_grid, MakeButtons({note}), above);

    connect(m_grid, &QTableWidget::itemChanged, this,
            [this](QTableWidgetItem* item) { ItemEdited(item); });
    connect(m_grid, &QTableWidget::currentCellChanged, this, [this] { UpdateButtons(); });
    connect(m_new, &QPushButton::clicked, this, [this] { NewSpec(); });
    connect(m_rename, &QPushButton::clicked, this, [this] {
        if (QTableWidgetItem* item = m_grid->item(m_grid->currentRow(), kSpecColumn))
            m_grid->editItem(item);
    });
    connect(m_move, &QPushButton::clicked, this, [this] { MoveSpec(); });
    connect(m_copy, &QPushButton::clicked, this, [this] { CopySpec(); });
    connect(m_delete, &QPushButton::clicked, this, [this] {
        if (const auto row = CurrentRow()) {
            m_editor.DeleteSpec(*row);
            Fill();
        }
    });
    connect(m_openFolder, &QPushButton::clicked, this, [this] {
        if (const auto row = CurrentRow())
            m_editor.OpenFolder(*row);
    });

    m_editor.Open(standardId);
    Fill();
    UpdateApply();
}

std::optional<std::size_t> CSpecsFormView::EditorRow(int gridRow) const {
    const QTableWidgetItem* item = m_grid->item(gridRow, kSpecColumn);
    if (!item || !item->data(Qt::UserRole).isValid())
        return std::nullopt;
    return static_cast<std::size_t>(item->data(Qt::UserRole).toInt());
}

std::optional<std::size_t> CSpecsFormView::CurrentRow() const {
    return EditorRow(m_grid->currentRow());
}

void CSpecsFormView::Refresh() {
    Fill(CurrentRow());
}

void CSpecsFormView::Fill(std::optional<std::size_t> select) {
    const std::int32_t selectId =
        select && *select < m_editor.Rows().size() ? m_editor.Rows()[*select].id : 0;
    const int count = BeginFill(m_grid);
    // A heading row before each group.
    int rows = count;
    for (int i = 0; i < count; ++i) {
        const auto& spec = m_editor.Rows()[static_cast<std::size_t>(i)];
        if (i == 0 || spec.group != m_editor.Rows()[static_cast<std::size_t>(i - 1)].group)
            ++rows;
    }
    m_grid->clearSpans();
    m_grid->setRowCount(rows);
    int gridRow = 0;
    int chosen = -1;
    for (int i = 0; i < count; ++i) {
        const SSpecRow& spec = m_editor.Rows()[static_cast<std::size_t>(i)];
        if (i == 0 || spec.group != m_editor.Rows()[static_cast<std::size_t>(i - 1)].group) {
            auto* heading = new QTableWidgetItem(Q(spec.group));
            heading->setFlags(Qt::ItemIsEnabled);
            QFont bold = heading->font();
            bold.setBold(true);
            heading->setFont(bold);
            Mark({heading}, m_grid->palette(), EGridMark::eHeading);
            m_grid->setItem(gridRow, kSpecColumn, heading);
            m_grid->setSpan(gridRow, kSpecColumn, 1, 3);
            ++gridRow;
        }
        auto* name = new QTableWidgetItem(Q(spec.name));
        name->setData(Qt::UserRole, i);
        Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
        if (spec.available)
            flags |= Qt::ItemIsEditable;
        name->setFlags(flags);
        name->setCheckState(spec.checked ? Qt::Checked : Qt::Unchecked);
        auto* id = NumberItem(spec.id);
        auto* folder = ReadOnlyItem(Q(spec.folder));
        if (!spec.available) {
            GreyOut(m_grid, {name, id, folder},
                    tr("This spec is no longer offered to the standard: once unchecked and "
                       "applied, it cannot be checked again."));
        }
        m_grid->setItem(gridRow, kSpecColumn, name);
        m_grid->setItem(gridRow, kIdColumn, id);
        m_grid->setItem(gridRow, kFolderColumn, folder);
        if (spec.id == selectId || (chosen < 0 && selectId == 0))
            chosen = gridRow;
        ++gridRow;
    }
    EndFill();
    if (chosen >= 0)
        m_grid->setCurrentCell(chosen, kSpecColumn);
    m_empty->setVisible(count == 0);
    UpdateButtons();
}

void CSpecsFormView::UpdateButtons() {
    const auto row = CurrentRow();
    const bool manageable = row && m_editor.CanManage(*row);
    for (QPushButton* button : {m_rename, m_move, m_copy, m_delete, m_openFolder})
        button->setEnabled(manageable);
}

void CSpecsFormView::ItemEdited(QTableWidgetItem* item) {
    if (m_filling || item->column() != kSpecColumn || !item->data(Qt::UserRole).isValid())
        return;
    const auto row = static_cast<std::size_t>(item->data(Qt::UserRole).toInt());
    if (row >= m_editor.Rows().size())
        return;
    const SSpecRow& spec = m_editor.Rows()[row];
    const bool checked = item->checkState() == Qt::Checked;
    if (checked != spec.checked) {
        m_editor.SetChecked(row, checked);
        Edited();
    }
    if (W(item->text()) != spec.name) {
        const std::wstring typed = W(item->text());
        // The grid is filled again, once the item being edited is no longer
        // in use; it shows the new name, or the old one when it was refused.
        QTimer::singleShot(0, this, [this, row, typed] {
            m_editor.RenameSpec(row, typed);
            Fill(row);
        });
    }
}

void CSpecsFormView::NewSpec() {
    const auto places = m_editor.Places();
    const auto row = CurrentRow();
    const SSpecPlace current = row ? m_editor.Rows()[*row].place : places.front().place;
    CSpecPlaceDialog dialog(tr("New Spec"),
                            tr("A new spec gets an empty folder. Common specs are offered to "
                               "every standard, a client's to the client's standards."),
                            QString(), places, current, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const auto made = m_editor.NewSpec(W(dialog.Name()), dialog.Place());
    Fill(made ? made : row);
}

void CSpecsFormView::MoveSpec() {
    const auto row = CurrentRow();
    if (!row)
        return;
    const SSpecRow& spec = m_editor.Rows()[*row];
    CSpecPlaceDialog dialog(tr("Move Spec"),
                            tr("Move spec '%1' and its folder to:").arg(Q(spec.name)), std::nullopt,
                            m_editor.Places(), spec.place, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const std::int32_t id = spec.id;
    m_editor.MoveSpec(*row, dialog.Place());
    std::optional<std::size_t> select;
    for (std::size_t i = 0; i < m_editor.Rows().size(); ++i) {
        if (m_editor.Rows()[i].id == id)
            select = i;
    }
    Fill(select);
}

void CSpecsFormView::CopySpec() {
    const auto row = CurrentRow();
    if (!row)
        return;
    const SSpecRow& spec = m_editor.Rows()[*row];
    CSpecPlaceDialog dialog(
        tr("Copy Spec"), tr("Copy spec '%1' with the files of its folder:").arg(Q(spec.name)),
        Q(m_editor.ProposedCopyName(*row)), m_editor.Places(), spec.place, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const auto made = m_editor.CopySpec(*row, W(dialog.Name()), dialog.Place());
    Fill(made ? made : row);
}
