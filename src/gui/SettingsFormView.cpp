#include "gui/SettingsFormView.h"

#include "editors/StandardMerge.h"

#include "gui/QtText.h"

#include <QApplication>
#include <QComboBox>
#include <QFontDatabase>
#include <QFontDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

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

bool IsKind(int kind, ESettingsCell cell) {
    return kind == static_cast<int>(cell);
}

// The drop-down of a choice cell. A choice made in its open list ends the
// edit at once; one made with the arrow keys waits for Enter.
class CChoiceEditor : public QComboBox {
public:
    explicit CChoiceEditor(QWidget* parent) : QComboBox(parent) {}
    bool ChosenInList() const { return m_bListShown; }
    void showPopup() override {
        m_bListShown = true;
        QComboBox::showPopup();
    }

private:
    bool m_bListShown = false;
};

} // namespace

CSettingsCellDelegate::CSettingsCellDelegate(QObject* parent, std::function<void(int)> pick)
    : CCellFrameDelegate(parent), m_pick(std::move(pick)) {}

int CSettingsCellDelegate::Kind(const QModelIndex& index) {
    const QVariant kind = index.column() == 1 ? index.data(Qt::UserRole) : QVariant();
    return kind.isValid() ? kind.toInt() : -1;
}

QRect CSettingsCellDelegate::ButtonRect(const QStyleOptionViewItem& option,
                                        const QModelIndex& index) {
    const int kind = Kind(index);
    if (!IsKind(kind, ESettingsCell::Font) && !IsKind(kind, ESettingsCell::Path) &&
        !IsKind(kind, ESettingsCell::List))
        return {};
    const int width = std::min(option.rect.height() + 6, option.rect.width() / 2);
    return QRect(option.rect.right() - width + 1, option.rect.top() + 1, width - 1,
                 option.rect.height() - 2);
}

QWidget* CSettingsCellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                             const QModelIndex& index) const {
    auto* self = const_cast<CSettingsCellDelegate*>(this);
    const int kind = Kind(index);
    if (IsKind(kind, ESettingsCell::List)) {
        auto* combo = new CChoiceEditor(parent);
        combo->setObjectName(QStringLiteral("cellEditor"));
        combo->addItems(index.data(kChoicesRole).toStringList());
        connect(combo, &QComboBox::activated, self, [self, combo] {
            if (!combo->ChosenInList())
                return;
            emit self->commitData(combo);
            emit self->closeEditor(combo, QAbstractItemDelegate::NoHint);
        });
        return combo;
    }
    if (IsKind(kind, ESettingsCell::Path)) {
        auto* line = new QLineEdit(parent);
        line->setObjectName(QStringLiteral("cellEditor"));
        QAction* browse =
            line->addAction(QApplication::style()->standardIcon(QStyle::SP_DirOpenIcon),
                            QLineEdit::TrailingPosition);
        browse->setObjectName(QStringLiteral("browse"));
        browse->setToolTip(QObject::tr("Browse..."));
        // The typed text is kept, then the folder dialog starts from it once
        // the editor has gone.
        const int row = index.row();
        connect(browse, &QAction::triggered, self, [self, line, row] {
            emit self->commitData(line);
            emit self->closeEditor(line, QAbstractItemDelegate::NoHint);
            QMetaObject::invokeMethod(
                self, [self, row] { self->m_pick(row); }, Qt::QueuedConnection);
        });
        return line;
    }
    QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
    editor->setObjectName(QStringLiteral("cellEditor"));
    return editor;
}

void CSettingsCellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        const QString text = index.data().toString();
        if (combo->findText(text) < 0)
            combo->addItem(text);
        combo->setCurrentText(text);
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void CSettingsCellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                         const QModelIndex& index) const {
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        if (combo->currentText() != index.data().toString())
            model->setData(index, combo->currentText());
        return;
    }
    auto* line = qobject_cast<QLineEdit*>(editor);
    if (line && line->text() == index.data().toString())
        return; // an edit that changed nothing is no change
    QStyledItemDelegate::setModelData(editor, model, index);
}

void CSettingsCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    const QRect button = ButtonRect(option, index);
    if (button.isNull()) {
        CCellFrameDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem text = option;
    text.state &= ~QStyle::State_HasFocus;
    text.rect.setRight(button.left() - 1);
    QStyledItemDelegate::paint(painter, text, index);
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    if (IsKind(Kind(index), ESettingsCell::List)) {
        QStyleOption arrow;
        arrow.initFrom(widget);
        arrow.rect = button.adjusted(button.width() / 4, button.height() / 4, -button.width() / 4,
                                     -button.height() / 4);
        style->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, painter, widget);
    } else {
        QStyleOptionButton push;
        push.initFrom(widget);
        push.rect = button;
        push.text = QStringLiteral("...");
        push.state = QStyle::State_Enabled | QStyle::State_Raised;
        style->drawControl(QStyle::CE_PushButton, &push, painter, widget);
    }
    PaintFrame(painter, option);
}

bool CSettingsCellDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                        const QStyleOptionViewItem& option,
                                        const QModelIndex& index) {
    const bool press = event->type() == QEvent::MouseButtonPress;
    if (!press && event->type() != QEvent::MouseButtonRelease)
        return CCellFrameDelegate::editorEvent(event, model, option, index);
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() != Qt::LeftButton || !ButtonRect(option, index).contains(mouse->pos()))
        return CCellFrameDelegate::editorEvent(event, model, option, index);
    auto* view = qobject_cast<QAbstractItemView*>(const_cast<QWidget*>(option.widget));
    if (press) {
        if (view)
            view->setCurrentIndex(index);
        return true;
    }
    // The button: the drop-down opens, the picker starts.
    if (IsKind(Kind(index), ESettingsCell::List)) {
        if (view)
            view->edit(index);
    } else {
        m_pick(index.row());
    }
    return true;
}

CSettingsGridCtrl::CSettingsGridCtrl(QWidget* parent) : QTableWidget(parent) {
    setObjectName(QStringLiteral("settingsGrid"));
    SetUpGrid(this, {tr("Setting"), tr("Value")},
              QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                  QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    setTabKeyNavigation(true);
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

QModelIndex CSettingsGridCtrl::ValueCell(int row) const {
    if (rowCount() == 0)
        return {};
    return model()->index(std::clamp(row, 0, rowCount() - 1), 1);
}

QModelIndex CSettingsGridCtrl::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const int row = currentIndex().isValid() ? currentIndex().row() : -1;
    switch (action) {
    case MoveNext:
        return row < 0 ? ValueCell(0) : ValueCell(row + 1);
    case MovePrevious:
        return ValueCell(row - 1);
    case MoveLeft:
    case MoveRight:
        return ValueCell(row);
    default: {
        // Up, down, pages, home and end, always onto the value.
        const QModelIndex moved = QTableWidget::moveCursor(action, modifiers);
        return ValueCell(moved.isValid() ? moved.row() : row);
    }
    }
}

void CSettingsGridCtrl::focusInEvent(QFocusEvent* event) {
    if (!currentIndex().isValid() || currentIndex().column() != 1)
        setCurrentIndex(ValueCell(currentIndex().isValid() ? currentIndex().row() : 0));
    QTableWidget::focusInEvent(event);
}

void CSettingsGridCtrl::mousePressEvent(QMouseEvent* event) {
    // A click on a label chooses its value.
    const QModelIndex at = indexAt(event->pos());
    if (at.isValid() && at.column() == 0) {
        setCurrentIndex(ValueCell(at.row()));
        return;
    }
    QTableWidget::mousePressEvent(event);
}

bool CSettingsGridCtrl::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    // A font is only ever picked.
    if (IsKind(CSettingsCellDelegate::Kind(index), ESettingsCell::Font) &&
        (trigger & (DoubleClicked | EditKeyPressed))) {
        emit PickRequested(index.row());
        return true;
    }
    return QTableWidget::edit(index, trigger, event);
}

void CSettingsGridCtrl::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && state() != EditingState &&
        !(event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier))) {
        // Enter edits the cell; on a cell that cannot be changed it moves on.
        const QModelIndex cell = currentIndex();
        if (cell.isValid() && !edit(cell, EditKeyPressed, event))
            setCurrentIndex(ValueCell(cell.row() + 1));
        event->accept();
        return;
    }
    QTableWidget::keyPressEvent(event);
}

void CSettingsGridCtrl::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    const int row = currentIndex().row();
    QTableWidget::closeEditor(editor, hint);
    // Enter ends the edit and goes down, as in a spreadsheet.
    if (hint == QAbstractItemDelegate::SubmitModelCache)
        setCurrentIndex(ValueCell(row + 1));
}

CSettingsFormView::CSettingsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                                     int application, int section, QWidget* parent)
    : CEditorPageView(core, host, parent, QStringLiteral("settingsFormView")),
      m_grid(new CSettingsGridCtrl(this)), m_restore(MakeRestoreButton()) {
    QPushButton* push =
        MakePushButton([this](std::vector<std::wstring>& all, std::vector<std::wstring>& chosen) {
            const auto& rows = m_editor.Rows();
            for (const auto& row : rows) {
                if (!row.subHeading)
                    all.push_back(SettingsRowId(m_editor.Application(), row.variableId));
            }
            for (const QModelIndex& cell : ChosenCells(m_grid)) {
                const auto at = static_cast<std::size_t>(cell.row());
                if (at < rows.size() && !rows[at].subHeading)
                    chosen.push_back(SettingsRowId(m_editor.Application(), rows[at].variableId));
            }
        });
    LayOutGrid(m_grid, MakeButtons({m_restore, push}));
    m_grid->setItemDelegate(new CSettingsCellDelegate(m_grid, [this](int row) { Pick(row); }));

    connect(m_grid, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (!m_filling && item->column() == 1)
            SetCellText(item->row(), item->text());
    });
    connect(m_grid, &CSettingsGridCtrl::PickRequested, this, [this](int row) { Pick(row); });

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
    // The items stay while their texts change: an edit may be ending on one.
    QTableWidgetItem* label = m_grid->item(row, 0);
    if (!label) {
        label = new QTableWidgetItem;
        m_grid->setItem(row, 0, label);
    }
    QTableWidgetItem* value = m_grid->item(row, 1);
    if (!value) {
        value = new QTableWidgetItem;
        m_grid->setItem(row, 1, value);
    }
    label->setText(Q(data.label));
    label->setFlags(Qt::ItemIsEnabled);
    value->setText(Q(data.text));
    if (data.subHeading) {
        label->setTextAlignment(Qt::AlignCenter);
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
    }
    if (data.background)
        Mark({label, value}, m_grid->palette(), EGridMark::eSubHeading);
    const bool fixed = data.readOnly || data.subHeading;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (!fixed && data.cell != ESettingsCell::Font)
        flags |= Qt::ItemIsEditable;
    value->setFlags(flags);
    value->setData(Qt::UserRole, fixed ? -1 : static_cast<int>(data.cell));
    QStringList choices;
    for (const auto& choice : data.choices)
        choices << Q(choice);
    value->setData(CSettingsCellDelegate::kChoicesRole, choices);
    m_filling = filling;
}

void CSettingsFormView::SetCellText(int row, const QString& text) {
    if (row < 0 || row >= m_grid->rowCount())
        return;
    m_editor.SetCellText(static_cast<std::size_t>(row), W(text));
    UpdateRow(row);
    Edited();
}

void CSettingsFormView::Pick(int row) {
    if (row < 0 || row >= m_grid->rowCount())
        return;
    const SSettingsRow& data = m_editor.Rows()[static_cast<std::size_t>(row)];
    if (data.readOnly || data.subHeading)
        return;
    if (data.cell == ESettingsCell::Font) {
        PickFont(row);
    } else if (data.cell == ESettingsCell::Path) {
        const QString folder =
            m_host.FileDialogs().Folder(this, tr("Choose a folder"), Q(data.text));
        if (!folder.isEmpty())
            SetCellText(row, folder);
    }
}

void CSettingsFormView::PickFont(int row) {
    const QString old = Q(m_editor.Rows()[static_cast<std::size_t>(row)].text);
    QFont current(old.section(QStringLiteral("; "), 0, 0));
    bool ok = false;
    const QFont font = QFontDialog::getFont(&ok, current, this, tr("Text Font"));
    if (ok)
        SetCellText(row, FontText(font, old));
}
