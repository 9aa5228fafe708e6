#include "gui/DoctorDlg.h"

#include "gui/BackgroundWork.h"
#include "gui/Layout.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QStyle>
#include <QVBoxLayout>

namespace {

enum EColumn { eSeverity, eKind, eStandard, eFile, eMessage, eTodo, eColumns };

} // namespace

CDoctorDlg::CDoctorDlg(CStandardsCore& core, IPageHost& host, COpenFinding open, QWidget* parent)
    : QDialog(parent), m_core(core), m_host(host), m_open(std::move(open)), m_doctor(core.projects),
      m_summary(new QLabel(this)), m_filter(new QComboBox(this)),
      m_table(new QTableWidget(0, eColumns, this)) {
    setObjectName(QStringLiteral("doctorDialog"));
    setWindowTitle(tr("Check Datafiles Folder"));
    resize(1100, 560);

    m_summary->setObjectName(QStringLiteral("summary"));
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* folder =
        new QLabel(tr("Datafiles folder: %1").arg(Q(core.installation.DatafilesPath())), this);
    folder->setTextFormat(Qt::PlainText);
    folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_filter->setObjectName(QStringLiteral("severityFilter"));
    m_filter->addItems({tr("All problems"), tr("Errors"), tr("Warnings")});
    auto* show = new QLabel(tr("&Show:"), this);
    show->setBuddy(m_filter);

    m_table->setObjectName(QStringLiteral("findingsTable"));
    m_table->setHorizontalHeaderLabels(
        {tr("Severity"), tr("Kind"), tr("Standard"), tr("File"), tr("Message"), tr("What to do")});
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setWordWrap(true);
    m_table->verticalHeader()->hide();
    const std::pair<int, int> widths[] = {
        {eSeverity, 90}, {eKind, 150}, {eStandard, 150}, {eFile, 170}};
    for (const auto& [column, width] : widths)
        m_table->setColumnWidth(column, width);
    // The two texts share what is left.
    m_table->horizontalHeader()->setSectionResizeMode(eMessage, QHeaderView::Stretch);
    m_table->horizontalHeader()->setSectionResizeMode(eTodo, QHeaderView::Stretch);
    // The column widths the user gave them last time.
    const QString columnsKey = QStringLiteral("doctor/columns");
    if (const QByteArray state = layout::Value(columnsKey); !state.isEmpty())
        m_table->horizontalHeader()->restoreState(state);
    connect(this, &QDialog::finished, this, [this, columnsKey] {
        layout::SetValue(columnsKey, m_table->horizontalHeader()->saveState());
    });

    auto* buttons = new QDialogButtonBox(this);
    m_openButton = buttons->addButton(tr("&Open"), QDialogButtonBox::ActionRole);
    m_openButton->setObjectName(QStringLiteral("openButton"));
    m_openButton->setIcon(style()->standardIcon(QStyle::SP_DialogOpenButton));
    m_repairButton = buttons->addButton(tr("&Repair..."), QDialogButtonBox::ActionRole);
    m_repairButton->setObjectName(QStringLiteral("repairButton"));
    QPushButton* again = buttons->addButton(tr("Check &Again"), QDialogButtonBox::ActionRole);
    again->setObjectName(QStringLiteral("checkAgainButton"));
    again->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));
    QPushButton* help = buttons->addButton(QDialogButtonBox::Help);
    buttons->addButton(QDialogButtonBox::Close)->setObjectName(QStringLiteral("closeButton"));

    connect(m_filter, &QComboBox::currentIndexChanged, this, [this] { ApplyFilter(); });
    connect(m_table, &QTableWidget::itemSelectionChanged, this, [this] { UpdateButtons(); });
    connect(m_table, &QTableWidget::cellDoubleClicked, this, [this] { OpenCurrent(); });
    connect(m_openButton, &QPushButton::clicked, this, [this] { OpenCurrent(); });
    connect(m_repairButton, &QPushButton::clicked, this, [this] { Repair(); });
    connect(again, &QPushButton::clicked, this, [this] { Check(); });
    connect(help, &QPushButton::clicked, this,
            [this] { m_host.ShowHelp(CDatafilesDoctor::kHelpTopic); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* top = new QHBoxLayout;
    top->addWidget(m_summary, 1);
    top->addWidget(show);
    top->addWidget(m_filter);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(folder);
    layout->addLayout(top);
    layout->addWidget(m_table, 1);
    layout->addWidget(buttons);
    UpdateButtons();
}

void CDoctorDlg::Check() {
    std::vector<SDoctorFinding> findings;
    bool complete = true;
    CBackgroundWork::Run(
        this, tr("Checking the datafiles folder..."), true,
        [&](const CProgress& progress) { complete = m_doctor.Examine(findings, progress); });
    m_findings = std::move(findings);
    m_complete = complete;
    Fill();
}

void CDoctorDlg::Fill() {
    m_summary->setText(Q(CDatafilesDoctor::Summary(m_findings, m_complete)));
    m_table->setRowCount(0);
    m_table->setRowCount(static_cast<int>(m_findings.size()));
    QStyle* style = QApplication::style();
    const QIcon error = style->standardIcon(QStyle::SP_MessageBoxCritical);
    const QIcon warning = style->standardIcon(QStyle::SP_MessageBoxWarning);
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const SDoctorFinding& f = m_findings[static_cast<std::size_t>(row)];
        const bool isError = f.severity == EDoctorSeverity::eError;
        auto* severity =
            new QTableWidgetItem(isError ? error : warning, isError ? tr("Error") : tr("Warning"));
        m_table->setItem(row, eSeverity, severity);
        m_table->setItem(row, eKind, new QTableWidgetItem(Q(f.kind)));
        QString standard;
        if (f.standardId != 0)
            standard = f.folder.empty() ? QString::number(f.standardId) : Q(f.folder);
        m_table->setItem(row, eStandard, new QTableWidgetItem(standard));
        m_table->setItem(row, eFile, new QTableWidgetItem(Q(f.file)));
        m_table->setItem(row, eMessage, new QTableWidgetItem(Q(f.message)));
        m_table->setItem(row, eTodo, new QTableWidgetItem(Q(f.todo)));
        for (int column = 0; column < eColumns; ++column)
            m_table->item(row, column)->setToolTip(m_table->item(row, column)->text());
    }
    m_table->resizeRowsToContents();
    ApplyFilter();
}

void CDoctorDlg::ApplyFilter() {
    const int filter = m_filter->currentIndex();
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const bool isError =
            m_findings[static_cast<std::size_t>(row)].severity == EDoctorSeverity::eError;
        m_table->setRowHidden(row,
                              (filter == eErrors && !isError) || (filter == eWarnings && isError));
    }
    UpdateButtons();
}

const SDoctorFinding* CDoctorDlg::Current() const {
    const QList<QTableWidgetItem*> selected = m_table->selectedItems();
    if (selected.isEmpty())
        return nullptr;
    const int row = selected.front()->row();
    if (row < 0 || row >= static_cast<int>(m_findings.size()) || m_table->isRowHidden(row))
        return nullptr;
    return &m_findings[static_cast<std::size_t>(row)];
}

void CDoctorDlg::UpdateButtons() {
    const SDoctorFinding* current = Current();
    // Only a standard that has a folder can be opened.
    m_openButton->setEnabled(current && current->standardId > 0 && !current->folder.empty());
    m_repairButton->setEnabled(CDatafilesDoctor::HasRepairs(m_findings));
}

void CDoctorDlg::OpenCurrent() {
    const SDoctorFinding* current = Current();
    if (!current || current->standardId <= 0 || current->folder.empty())
        return;
    m_open(*current);
}

void CDoctorDlg::Repair() {
    bool repaired = false;
    CBackgroundWork::Run(this, tr("Repairing the datafiles folder..."), false,
                         [&](const CProgress&) {
                             std::vector<SDoctorRepairStep> done;
                             repaired = m_doctor.AskAndRepair(m_core.prompter, m_findings, done);
                         });
    if (!repaired)
        return;
    emit Repaired();
    Check();
}
