#include "gui/NewStandardDialog.h"

#include "gui/QtText.h"
#include "store/Templates.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <fmt/xchar.h>

CNewStandardDialog::CNewStandardDialog(CDeskCore& core, std::int32_t clientId, QWidget* parent)
    : QDialog(parent), m_core(core), m_clientId(clientId), m_nameEdit(new QLineEdit(this)),
      m_units(new QComboBox(this)), m_template(new QComboBox(this)) {
    setObjectName(QStringLiteral("newStandardDialog"));
    setWindowTitle(tr("New Standard"));
    m_nameEdit->setObjectName(QStringLiteral("nameEdit"));
    m_nameEdit->setText(Q(core.projects.GetDefaultProjectName()));
    m_nameEdit->selectAll();
    m_units->setObjectName(QStringLiteral("unitsCombo"));
    m_units->addItems({tr("Metric"), tr("English")});
    m_template->setObjectName(QStringLiteral("formatCombo"));
    m_template->addItems({tr("Current layout"), tr("2015 layout")});

    auto* form = new QFormLayout(this);
    form->addRow(tr("&Name:"), m_nameEdit);
    form->addRow(tr("&Working units:"), m_units);
    form->addRow(tr("&Layout:"), m_template);
    const std::wstring client = core.clients.GetClientName(clientId);
    form->addRow(tr("Client:"), new QLabel(client.empty() ? tr("(none)") : Q(client), this));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void CNewStandardDialog::accept() {
    SNewProject project;
    project.name = W(m_nameEdit->text());
    project.units = m_units->currentIndex();
    project.templateNumber = m_units->currentIndex() == 0 ? 1 : 2;
    project.clientId = m_clientId;
    project.oldFormat = m_template->currentIndex() == 1;
    const EProjectResult result = m_core.projects.CreateProject(project, m_id);
    if (result != eProjectOk) {
        m_core.prompter.Show(fmt::format(L"Error creating new standard '{}'\n\n{}", project.name,
                                         ProjectResultText(result)),
                             EPromptIcon::Stop);
        m_id = 0;
        return;
    }
    m_name = m_core.projects.GetProjectName(m_id, true, false);
    QDialog::accept();
}
