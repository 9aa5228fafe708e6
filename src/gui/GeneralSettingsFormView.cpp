#include "gui/GeneralSettingsFormView.h"

#include "editors/StandardMerge.h"

#include "gui/QtText.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

QString FieldName(EGeneralField field) {
    switch (field) {
    case EGeneralField::WorkingUnits:
        return QStringLiteral("workingUnitsCombo");
    case EGeneralField::DisplayedUnits:
        return QStringLiteral("displayedUnitsCombo");
    case EGeneralField::RatingFormat:
        return QStringLiteral("ratingFormatCombo");
    case EGeneralField::Version:
        return QStringLiteral("versionEdit");
    case EGeneralField::Guid:
        return QStringLiteral("guidEdit");
    }
    return {};
}

} // namespace

CGeneralSettingsFormView::CGeneralSettingsFormView(CStandardsCore& core, IPageHost& host,
                                                   std::int32_t standardId, QWidget* parent)
    : CEditorPageView(core, host, parent, QStringLiteral("generalSettingsFormView")) {
    m_editor.Open(standardId);

    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (const SGeneralRow& row : m_editor.Rows()) {
        QWidget* field = nullptr;
        if (row.readOnly) {
            auto* edit = new QLineEdit(this);
            edit->setReadOnly(true);
            // Room for a whole GUID.
            edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(QString(40, u'0')));
            field = edit;
        } else {
            auto* combo = new QComboBox(this);
            for (const auto& choice : row.choices)
                combo->addItem(Q(choice));
            combo->setMinimumWidth(combo->fontMetrics().horizontalAdvance(QString(28, u'M')));
            const EGeneralField which = row.field;
            connect(combo, &QComboBox::currentIndexChanged, this, [this, which](int index) {
                m_editor.Choose(which, index);
                Refresh();
                Edited();
            });
            field = combo;
        }
        field->setObjectName(FieldName(row.field));
        form->addRow(Q(row.label) + QLatin1Char(':'), field);
        m_fields.push_back(field);
    }

    m_header->setText(tr("General Settings"));
    // The three lists; the one being changed comes ticked.
    QPushButton* push =
        MakePushButton([this](std::vector<std::wstring>& all, std::vector<std::wstring>& chosen) {
            const std::pair<EGeneralField, const wchar_t*> ids[] = {
                {EGeneralField::WorkingUnits, L"WorkingUnits"},
                {EGeneralField::DisplayedUnits, L"DisplayedUnits"},
                {EGeneralField::RatingFormat, L"RatingFormat"}};
            for (const auto& [field, id] : ids) {
                all.push_back(GeneralRowId(id));
                const QWidget* widget = findChild<QWidget*>(FieldName(field));
                if (widget && widget->hasFocus())
                    chosen.push_back(GeneralRowId(id));
            }
        });
    LayOutForm(form, {push});
    Refresh();
}

void CGeneralSettingsFormView::Refresh() {
    const auto& rows = m_editor.Rows();
    for (std::size_t i = 0; i < rows.size() && i < m_fields.size(); ++i) {
        if (auto* combo = qobject_cast<QComboBox*>(m_fields[i])) {
            const QSignalBlocker blocker(combo);
            combo->setCurrentIndex(rows[i].current);
        } else if (auto* edit = qobject_cast<QLineEdit*>(m_fields[i])) {
            edit->setText(Q(rows[i].text));
        }
    }
}
