#include "gui/NewStandardWizard.h"

#include "datafile/Application.h"
#include "datafile/Units.h"
#include "gui/QtText.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
enum { kNamePage, kUnitsPage, kFoldersPage };
}

CNewStandardWizardDlg::CNewStandardWizardDlg(CStandardsCore& core, IFileDialogs& dialogs,
                                             std::int32_t clientId, QWidget* parent)
    : QWizard(parent), m_core(core), m_dialogs(dialogs),
      m_wizard(core.projects, core.clients, core.profile), m_proposal(m_wizard.Proposal(clientId)) {
    setObjectName(QStringLiteral("newStandardWizard"));
    setWindowTitle(tr("New Standard"));
    setWizardStyle(QWizard::ClassicStyle);
    setPage(kNamePage, NamePage());
    setPage(kUnitsPage, UnitsPage());
    setPage(kFoldersPage, FoldersPage());
    resize(640, 460);
}

QWizardPage* CNewStandardWizardDlg::NamePage() {
    auto* page = new QWizardPage(this);
    page->setTitle(tr("Name and client"));
    page->setSubTitle(tr("The name becomes the standard's folder name, so it cannot hold "
                         "characters such as / \\ : * ? \" < > |."));
    auto* form = new QFormLayout(page);
    m_nameEdit = new QLineEdit(Q(m_proposal.name), page);
    m_nameEdit->setObjectName(QStringLiteral("nameEdit"));
    form->addRow(tr("&Name:"), m_nameEdit);
    m_client = new QComboBox(page);
    m_client->setObjectName(QStringLiteral("clientCombo"));
    m_client->addItem(tr("(no client)"), 0);
    for (const auto& client : m_core.clients.ListClients()) {
        m_client->addItem(Q(client.name), client.id);
        if (client.id == m_proposal.clientId)
            m_client->setCurrentIndex(m_client->count() - 1);
    }
    form->addRow(tr("&Client:"), m_client);
    return page;
}

QWizardPage* CNewStandardWizardDlg::UnitsPage() {
    auto* page = new QWizardPage(this);
    page->setTitle(tr("Units and template"));
    page->setSubTitle(tr("The template gives the standard its first settings."));
    auto* layout = new QVBoxLayout(page);
    auto* form = new QFormLayout;
    m_working = new QComboBox(page);
    m_working->setObjectName(QStringLiteral("workingUnits"));
    for (const auto& name : WorkingUnitsNames())
        m_working->addItem(Q(name));
    m_displayed = new QComboBox(page);
    m_displayed->setObjectName(QStringLiteral("displayedUnits"));
    for (const auto& name : DisplayedUnitsNames())
        m_displayed->addItem(Q(name));
    form->addRow(tr("&Working units:"), m_working);
    form->addRow(tr("&Displayed units:"), m_displayed);
    layout->addLayout(form);
    m_metric = new QRadioButton(tr("From the &metric template"), page);
    m_imperial = new QRadioButton(tr("From the &imperial template"), page);
    m_copy = new QRadioButton(tr("As a c&opy of:"), page);
    m_metric->setObjectName(QStringLiteral("metricTemplate"));
    m_imperial->setObjectName(QStringLiteral("imperialTemplate"));
    m_copy->setObjectName(QStringLiteral("copyOfStandard"));
    m_metric->setChecked(true);
    m_copyOf = new QComboBox(page);
    m_copyOf->setObjectName(QStringLiteral("copyOfCombo"));
    std::vector<SProjectInfo> projects;
    // An unreadable registry offers no standard to copy.
    static_cast<void>(m_core.projects.ListProjects(true, false, projects));
    for (const auto& project : projects)
        m_copyOf->addItem(Q(project.name), project.id);
    m_copy->setEnabled(m_copyOf->count() > 0);
    m_copyOf->setEnabled(false);
    m_oldFormat = new QCheckBox(tr("Use the &2015 layout"), page);
    m_oldFormat->setObjectName(QStringLiteral("oldFormat"));
    layout->addWidget(m_metric);
    layout->addWidget(m_imperial);
    auto* copyRow = new QHBoxLayout;
    copyRow->addWidget(m_copy);
    copyRow->addWidget(m_copyOf, 1);
    layout->addLayout(copyRow);
    layout->addWidget(m_oldFormat);
    layout->addStretch(1);
    connect(m_copy, &QRadioButton::toggled, m_copyOf, &QWidget::setEnabled);
    connect(m_copy, &QRadioButton::toggled, m_oldFormat,
            [this](bool copy) { m_oldFormat->setEnabled(!copy); });
    // The template follows the working units until the user picks one.
    connect(m_working, &QComboBox::currentIndexChanged, this, [this](int units) {
        if (!m_copy->isChecked())
            (units == 0 ? m_metric : m_imperial)->setChecked(true);
        m_displayed->setCurrentIndex(units == 0 ? 0 : 2);
    });
    return page;
}

QLineEdit* CNewStandardWizardDlg::FolderRow(QFormLayout* form, const QString& label,
                                            const QString& name) {
    auto* row = new QHBoxLayout;
    auto* edit = new QLineEdit(form->parentWidget());
    edit->setObjectName(name);
    auto* browse = new QPushButton(tr("..."), form->parentWidget());
    browse->setFixedWidth(32);
    row->addWidget(edit, 1);
    row->addWidget(browse);
    form->addRow(label, row);
    connect(browse, &QPushButton::clicked, this, [this, edit, label] {
        const QString folder = m_dialogs.Folder(this, label, edit->text());
        if (!folder.isEmpty())
            edit->setText(folder);
    });
    return edit;
}

QWizardPage* CNewStandardWizardDlg::FoldersPage() {
    auto* page = new QWizardPage(this);
    page->setTitle(tr("Folders"));
    page->setSubTitle(tr("Where the drafting applications keep this standard's drawings, borders, "
                         "templates and libraries."));
    auto* form = new QFormLayout(page);
    for (const int application : kApplications)
        m_drawings[application - 1] =
            FolderRow(form, tr("%1 drawings:").arg(Q(ApplicationSettingsName(application))),
                      QStringLiteral("drawings%1").arg(application));
    m_borders = FolderRow(form, tr("Borders:"), QStringLiteral("bordersFolder"));
    m_templates = FolderRow(form, tr("Templates:"), QStringLiteral("templatesFolder"));
    m_libraries = FolderRow(form, tr("Libraries:"), QStringLiteral("librariesFolder"));
    m_borders->setText(Q(m_proposal.borders));
    m_templates->setText(Q(m_proposal.templates));
    m_libraries->setText(Q(m_proposal.libraries));
    return page;
}

void CNewStandardWizardDlg::initializePage(int id) {
    if (id == kFoldersPage && m_foldersName != W(m_nameEdit->text())) {
        // Proposed anew for a changed name, as long as the user has not typed their own.
        const auto old = m_wizard.DrawingsFoldersFor(m_foldersName);
        const auto proposal = m_wizard.DrawingsFoldersFor(W(m_nameEdit->text()));
        for (int i = 0; i < 4; ++i) {
            if (m_foldersName.empty() ||
                W(m_drawings[i]->text()) == old[static_cast<std::size_t>(i)])
                m_drawings[i]->setText(Q(proposal[static_cast<std::size_t>(i)]));
        }
        m_foldersName = W(m_nameEdit->text());
    }
    QWizard::initializePage(id);
}

CNewStandardWizard::SChoice CNewStandardWizardDlg::Choice() const {
    CNewStandardWizard::SChoice choice;
    choice.name = W(m_nameEdit->text());
    choice.clientId = m_client->currentData().toInt();
    choice.workingUnits = m_working->currentIndex();
    choice.displayedUnits = m_displayed->currentIndex();
    choice.source = m_copy->isChecked()       ? CNewStandardWizard::eCopyOfStandard
                    : m_imperial->isChecked() ? CNewStandardWizard::eImperialTemplate
                                              : CNewStandardWizard::eMetricTemplate;
    choice.copyOf = m_copyOf->currentData().toInt();
    choice.oldFormat = m_oldFormat->isChecked();
    for (int i = 0; i < 4; ++i)
        choice.drawings[static_cast<std::size_t>(i)] = W(m_drawings[i]->text());
    choice.borders = W(m_borders->text());
    choice.templates = W(m_templates->text());
    choice.libraries = W(m_libraries->text());
    return choice;
}

bool CNewStandardWizardDlg::validateCurrentPage() {
    if (currentId() == kNamePage) {
        const std::wstring problem = m_wizard.CheckName(W(m_nameEdit->text()));
        if (!problem.empty()) {
            m_core.prompter.Show(problem, EPromptIcon::Exclamation);
            return false;
        }
    }
    if (currentId() == kFoldersPage) {
        if (m_foldersName.empty())
            initializePage(kFoldersPage);
        std::wstring message;
        m_id = m_wizard.Finish(Choice(), message);
        if (!message.empty())
            m_core.prompter.Show(message, EPromptIcon::Stop);
        if (m_id == 0)
            return false;
        m_name = m_core.projects.GetProjectName(m_id, true, false);
    }
    return QWizard::validateCurrentPage();
}
