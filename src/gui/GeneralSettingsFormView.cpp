#include "gui/GeneralSettingsFormView.h"

#include "gui/MainFrame.h"
#include "gui/QtText.h"

#include <QFormLayout>
#include <QHBoxLayout>
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

CGeneralSettingsFormView::CGeneralSettingsFormView(CDeskCore& core, CMainFrame& frame,
                                                   std::int32_t standardId, QWidget* parent)
    : CPageView(parent), m_core(core), m_frame(frame), m_editor(core.projects, core.prompter),
      m_apply(new QPushButton(tr("Apply"), this)), m_help(new QPushButton(tr("Help..."), this)) {
    setObjectName(QStringLiteral("generalSettingsFormView"));
    m_apply->setObjectName(QStringLiteral("applyButton"));
    m_help->setObjectName(QStringLiteral("helpButton"));
    m_editor.Open(standardId);

    auto* header = new QLabel(tr("General Settings"), this);
    QFont bold = header->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    header->setFont(bold);

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
                Update();
                emit Modified();
            });
            field = combo;
        }
        field->setObjectName(FieldName(row.field));
        form->addRow(Q(row.label) + QLatin1Char(':'), field);
        m_fields.push_back(field);
    }

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(header);
    layout->addSpacing(8);
    layout->addLayout(form);
    layout->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_apply);
    buttons->addWidget(m_help);
    layout->addLayout(buttons);

    connect(m_apply, &QPushButton::clicked, this, [this] {
        m_editor.Apply();
        Update();
    });
    connect(m_help, &QPushButton::clicked, this,
            [this] { m_frame.ShowHelp(CGeneralSettingsEditor::kHelpTopic); });
    Update();
}

void CGeneralSettingsFormView::Update() {
    const auto& rows = m_editor.Rows();
    for (std::size_t i = 0; i < rows.size() && i < m_fields.size(); ++i) {
        if (auto* combo = qobject_cast<QComboBox*>(m_fields[i])) {
            const QSignalBlocker blocker(combo);
            combo->setCurrentIndex(rows[i].current);
        } else if (auto* edit = qobject_cast<QLineEdit*>(m_fields[i])) {
            edit->setText(Q(rows[i].text));
        }
    }
    m_apply->setEnabled(m_editor.ApplyEnabled());
}

bool CGeneralSettingsFormView::CanClose() {
    const bool closed = m_editor.Close();
    Update();
    return closed;
}
