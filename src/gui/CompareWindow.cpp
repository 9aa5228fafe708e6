#include "gui/CompareWindow.h"

#include "editors/CompareReport.h"
#include "gui/Grid.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <map>

namespace {

constexpr int kIdRole = Qt::UserRole + 1;

QColor ColourOf(const SCompareColour& colour) {
    return QColor(colour.red, colour.green, colour.blue);
}

} // namespace

CCompareProjectsFormView::CCompareProjectsFormView(CStandardsCore& core, QWidget* parent)
    : QWidget(parent), m_core(core), m_upper(new QTreeWidget(this)),
      m_lower(new QTreeWidget(this)) {
    setObjectName(QStringLiteral("compareProjects"));
    m_upper->setObjectName(QStringLiteral("standard1Tree"));
    m_lower->setObjectName(QStringLiteral("standard2Tree"));
    for (QTreeWidget* tree : {m_upper, m_lower})
        Fill(tree);
    m_upper->setHeaderLabel(tr("Standard 1"));
    m_lower->setHeaderLabel(tr("Standard 2"));
    const auto idOf = [](QTreeWidgetItem* item) {
        return item ? item->data(0, kIdRole).toInt() : -1;
    };
    connect(m_upper, &QTreeWidget::currentItemChanged, this,
            [this, idOf](QTreeWidgetItem* item) { emit Standard1Chosen(idOf(item)); });
    connect(m_lower, &QTreeWidget::currentItemChanged, this,
            [this, idOf](QTreeWidgetItem* item) { emit Standard2Chosen(idOf(item)); });
    setMinimumWidth(200);
}

void CCompareProjectsFormView::Fill(QTreeWidget* tree) {
    QStyle* style = QApplication::style();
    std::vector<SProjectInfo> projects;
    // An unreadable registry offers nothing to compare.
    static_cast<void>(m_core.projects.ListProjects(true, false, projects));
    std::map<std::int32_t, QTreeWidgetItem*> clientOf;
    for (const auto& client : m_core.clients.ListClients()) {
        auto* item = new QTreeWidgetItem(tree, {Q(client.name)});
        item->setIcon(0, style->standardIcon(QStyle::SP_DirIcon));
        item->setData(0, kIdRole, -1);
        for (std::int32_t id : client.projectIds)
            clientOf.try_emplace(id, item);
    }
    for (const auto& project : projects) {
        const auto parent = clientOf.find(project.id);
        auto* item = parent == clientOf.end()
                         ? new QTreeWidgetItem(tree, {Q(project.name)})
                         : new QTreeWidgetItem(parent->second, {Q(project.name)});
        item->setIcon(0, style->standardIcon(QStyle::SP_FileIcon));
        item->setData(0, kIdRole, project.id);
    }
    tree->sortItems(0, Qt::AscendingOrder);
    tree->expandAll();
}

bool CCompareProjectsFormView::SelectStandard(QTreeWidget* tree, std::int32_t id) {
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        if ((*it)->data(0, kIdRole).toInt() == id) {
            tree->setCurrentItem(*it);
            return true;
        }
    }
    return false;
}

void CCompareProjectsFormView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // Two trees stacked, each half the height, with small margins.
    const int w = width(), h = height();
    m_upper->setGeometry(3, 3, w - 6, (h - 9) / 2);
    m_lower->setGeometry(3, (h - 9) / 2 + 6, w - 6, (h - 9) / 2);
}

CCompareSettingsFormView::CCompareSettingsFormView(CStandardsCore& core, IPageHost& host,
                                                   QWidget* parent)
    : QWidget(parent), m_core(core), m_host(host), m_comparison(core.projects),
      m_grid(new QTableWidget(this)), m_help(new QPushButton(tr("Help..."), this)),
      m_report(new QPushButton(tr("Save Report..."), this)) {
    setObjectName(QStringLiteral("compareSettings"));
    m_grid->setObjectName(QStringLiteral("compareGrid"));
    m_report->setObjectName(QStringLiteral("reportButton"));
    SetUpGrid(m_grid, {tr("Setting"), tr("Standard 1"), tr("Standard 2")},
              QAbstractItemView::NoEditTriggers);
    m_grid->setWordWrap(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_grid, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_report);
    buttons->addWidget(m_help);
    layout->addLayout(buttons);
    connect(m_help, &QPushButton::clicked, this,
            [this] { m_host.ShowHelp(L"::/Compare_Standards.htm"); });
    connect(m_report, &QPushButton::clicked, this, &CCompareSettingsFormView::SaveReport);
    Rebuild();
}

void CCompareSettingsFormView::Rebuild() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool built = m_comparison.Rebuild();
    QApplication::restoreOverrideCursor();
    const SComparison& result = m_comparison.Result();
    m_grid->setHorizontalHeaderLabels({Q(result.header0), Q(result.header1), Q(result.header2)});
    m_grid->setRowCount(static_cast<int>(result.rows.size()));
    for (int row = 0; row < static_cast<int>(result.rows.size()); ++row) {
        const SCompareRow& data = result.rows[static_cast<std::size_t>(row)];
        auto* label = new QTableWidgetItem(Q(data.label));
        if (data.centred) {
            label->setTextAlignment(Qt::AlignCenter);
            QFont font = label->font();
            font.setBold(data.kind == ECompareRowKind::eHeading);
            label->setFont(font);
        }
        m_grid->setItem(row, 0, label);
        const std::optional<SCompareColour> backgrounds[] = {data.background1, data.background2};
        const std::wstring* texts[] = {&data.text1, &data.text2};
        for (int side = 0; side < 2; ++side) {
            auto* cell = new QTableWidgetItem(Q(*texts[side]));
            if (backgrounds[side]) {
                cell->setBackground(ColourOf(*backgrounds[side]));
                cell->setForeground(Qt::black);
            }
            m_grid->setItem(row, side + 1, cell);
        }
    }
    m_report->setEnabled(!result.rows.empty());
    FitColumns();
    // Once more when the grid has decided about its scroll bars.
    QTimer::singleShot(0, this, &CCompareSettingsFormView::FitColumns);
    if (!built)
        m_core.prompter.Show(CompareErrorText(result.reason), EPromptIcon::Stop);
}

void CCompareSettingsFormView::FitColumns() {
    m_grid->resizeColumnsToContents();
    const int client = m_grid->viewport()->width();
    if (m_grid->columnWidth(0) > client / 4)
        m_grid->setColumnWidth(0, client / 4);
    const int rest = client - m_grid->columnWidth(0);
    m_grid->setColumnWidth(1, rest / 2);
    m_grid->setColumnWidth(2, rest / 2);
}

void CCompareSettingsFormView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FitColumns();
}

void CCompareSettingsFormView::SaveReport() {
    const SComparison& result = m_comparison.Result();
    const QString proposed =
        QStringLiteral("%1 - %2.html").arg(Q(result.header1), Q(result.header2));
    const QString file = m_host.FileDialogs().SaveFile(
        this, tr("Save Comparison As"), QStringLiteral("Comparison Reports (*.html)|*.html|"),
        proposed);
    if (file.isEmpty())
        return;
    if (!SaveCompareReport(W(file), CompareReportHtml(result, CompareReportDate())))
        m_core.prompter.Show(L"Error saving the comparison report:\n" + W(file), EPromptIcon::Stop);
}

CCompareWindow::CCompareWindow(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                               QWidget* parent)
    : QSplitter(parent), m_selector(new CCompareProjectsFormView(core, this)),
      m_result(new CCompareSettingsFormView(core, host, this)) {
    setObjectName(QStringLiteral("compareWindow"));
    setWindowTitle(tr("Compare Standards"));
    setStretchFactor(1, 1);
    setSizes({260, 900});
    connect(m_selector, &CCompareProjectsFormView::Standard1Chosen, this, [this](std::int32_t id) {
        m_result->Comparison().SetStandard1(id);
        m_result->Rebuild();
    });
    connect(m_selector, &CCompareProjectsFormView::Standard2Chosen, this, [this](std::int32_t id) {
        m_result->Comparison().SetStandard2(id);
        m_result->Rebuild();
    });
    if (standardId > 0)
        CCompareProjectsFormView::SelectStandard(m_selector->Upper(), standardId);
}
