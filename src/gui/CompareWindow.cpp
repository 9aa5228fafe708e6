#include "gui/CompareWindow.h"

#include "gui/Layout.h"

#include "editors/CompareReport.h"
#include "gui/Grid.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <fmt/xchar.h>
#include <map>
#include <set>
#include <utility>

namespace {

constexpr int kIdRole = Qt::UserRole + 1;

EGridMark MarkOf(const SCompareRow& row) {
    switch (row.kind) {
    case ECompareRowKind::eHeading:
        return EGridMark::eHeading;
    case ECompareRowKind::eSubHeading:
        return EGridMark::eSubHeading;
    default:
        return EGridMark::eDifference;
    }
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
    connect(m_upper, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* item) { emit Standard1Chosen(IdOf(item)); });
    connect(m_lower, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* item) { emit Standard2Chosen(IdOf(item)); });
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

std::int32_t CCompareProjectsFormView::IdOf(const QTreeWidgetItem* item) {
    return item ? item->data(0, kIdRole).toInt() : -1;
}

void CCompareProjectsFormView::Refill() {
    for (QTreeWidget* tree : {m_upper, m_lower}) {
        const QSignalBlocker quiet(tree);
        const std::int32_t chosen = IdOf(tree->currentItem());
        tree->clear();
        Fill(tree);
        if (chosen <= 0 || !SelectStandard(tree, chosen))
            tree->setCurrentItem(nullptr);
    }
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
      m_grid(new QTableWidget(this)),
      m_differencesOnly(new QCheckBox(tr("Show &differences only"), this)),
      m_count(new QLabel(this)), m_help(new QPushButton(tr("Help..."), this)),
      m_report(new QPushButton(tr("Save Report..."), this)), m_tools(new QToolBar(this)),
      m_copyToLeft(new QAction(QIcon::fromTheme(QStringLiteral("go-previous"),
                                                style()->standardIcon(QStyle::SP_ArrowLeft)),
                               tr("Copy to Standard 1"), this)),
      m_copyToRight(new QAction(
          QIcon::fromTheme(QStringLiteral("go-next"), style()->standardIcon(QStyle::SP_ArrowRight)),
          tr("Copy to Standard 2"), this)) {
    setObjectName(QStringLiteral("compareSettings"));
    m_grid->setObjectName(QStringLiteral("compareGrid"));
    m_differencesOnly->setObjectName(QStringLiteral("differencesOnly"));
    m_count->setObjectName(QStringLiteral("differenceCount"));
    m_report->setObjectName(QStringLiteral("reportButton"));
    SetUpGrid(m_grid, {tr("Setting"), tr("Standard 1"), tr("Standard 2")},
              QAbstractItemView::NoEditTriggers);
    // Cells, rows or whole sections may be chosen for a copy.
    m_grid->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tools->setObjectName(QStringLiteral("compareTools"));
    m_tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_copyToLeft->setObjectName(QStringLiteral("copyToLeft"));
    m_copyToRight->setObjectName(QStringLiteral("copyToRight"));
    m_tools->addAction(m_copyToLeft);
    m_tools->addAction(m_copyToRight);
    m_grid->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_grid->addAction(m_copyToLeft);
    m_grid->addAction(m_copyToRight);
    connect(m_copyToLeft, &QAction::triggered, this, [this] { CopySelected(1); });
    connect(m_copyToRight, &QAction::triggered, this, [this] { CopySelected(2); });
    connect(m_grid->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CCompareSettingsFormView::UpdateCopyActions);
    m_grid->setWordWrap(false);
    // Paths keep their start and their file name when they do not fit.
    m_grid->setTextElideMode(Qt::ElideMiddle);
    QHeaderView* header = m_grid->horizontalHeader();
    header->setSectionResizeMode(0, QHeaderView::Interactive);
    header->setSectionResizeMode(1, QHeaderView::Stretch);
    header->setSectionResizeMode(2, QHeaderView::Stretch);
    // A label column the user sizes keeps that size, in later comparisons too.
    connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (column == 0 && !m_fitting)
            layout::SetColumnWidth(kLabelColumnKey, width);
    });
    m_differencesOnly->setToolTip(tr("Hide the settings both standards share"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tools);
    layout->addWidget(m_grid, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_differencesOnly);
    buttons->addSpacing(12);
    buttons->addWidget(m_count);
    buttons->addStretch(1);
    buttons->addWidget(m_report);
    buttons->addWidget(m_help);
    layout->addLayout(buttons);
    connect(m_help, &QPushButton::clicked, this,
            [this] { m_host.ShowHelp(CVX2D_StandardComparison::kHelpTopic); });
    connect(m_report, &QPushButton::clicked, this, &CCompareSettingsFormView::SaveReport);
    connect(m_differencesOnly, &QCheckBox::toggled, this, &CCompareSettingsFormView::ShowRows);
    Rebuild();
}

void CCompareSettingsFormView::Rebuild() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool built = m_comparison.Rebuild();
    QApplication::restoreOverrideCursor();
    Fill();
    // Once more when the grid has decided about its scroll bars.
    QTimer::singleShot(0, this, &CCompareSettingsFormView::FitColumns);
    if (!built)
        m_core.prompter.Show(CompareErrorText(m_comparison.Result().reason), EPromptIcon::Stop);
}

void CCompareSettingsFormView::Fill() {
    const SComparison& result = m_comparison.Result();
    const SCompareCounts counts = CountCompareDifferences(result);
    const QPalette palette = m_grid->palette();
    const QString headers[] = {Q(result.header0), Q(result.header1), Q(result.header2)};
    for (int column = 0; column < 3; ++column) {
        auto* header = new QTableWidgetItem(headers[column]);
        header->setToolTip(headers[column]);
        m_grid->setHorizontalHeaderItem(column, header);
    }
    m_grid->clearSpans();
    m_grid->setRowCount(static_cast<int>(result.rows.size()));
    for (int row = 0; row < static_cast<int>(result.rows.size()); ++row) {
        const auto at = static_cast<std::size_t>(row);
        const SCompareRow& data = result.rows[at];
        const bool heading = data.kind != ECompareRowKind::eValue;
        auto* label = new QTableWidgetItem(
            heading ? Q(CompareHeadingText(data.label, counts.underHeading[at])) : Q(data.label));
        auto* cell1 = new QTableWidgetItem(Q(data.text1));
        auto* cell2 = new QTableWidgetItem(Q(data.text2));
        if (data.centred)
            label->setTextAlignment(Qt::AlignCenter);
        if (data.kind == ECompareRowKind::eHeading) {
            QFont font = label->font();
            font.setBold(true);
            label->setFont(font);
        }
        if (heading)
            Mark({label, cell1, cell2}, palette, MarkOf(data));
        else if (data.differ)
            Mark({cell1, cell2}, palette, MarkOf(data));
        if (!heading) {
            // Cut short in a narrow column, whole in the tooltip.
            for (QTableWidgetItem* item : {label, cell1, cell2})
                item->setToolTip(item->text());
        }
        m_grid->setItem(row, 0, label);
        m_grid->setItem(row, 1, cell1);
        m_grid->setItem(row, 2, cell2);
        // A heading has the whole width to itself.
        if (heading)
            m_grid->setSpan(row, 0, 1, 3);
    }
    // The labels' width, measured once for every resize to come.
    m_nLabelWidth = m_grid->horizontalHeader()->sectionSizeHint(0);
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        if (m_grid->columnSpan(row, 0) == 1)
            m_nLabelWidth = std::max(
                m_nLabelWidth, m_grid->sizeHintForIndex(m_grid->model()->index(row, 0)).width());
    }
    m_count->setText(result.rows.empty() ? QString() : Q(CompareDifferencesText(counts.total)));
    m_report->setEnabled(!result.rows.empty());
    ShowRows();
    FitColumns();
    UpdateCopyActions();
}

void CCompareSettingsFormView::UpdateCopyActions() {
    const SComparison& result = m_comparison.Result();
    const bool two = m_comparison.GetStandard1() > 0 && m_comparison.GetStandard2() > 0 &&
                     m_comparison.GetStandard1() != m_comparison.GetStandard2() &&
                     !result.rows.empty();
    m_copyToLeft->setText(two ? tr("Copy to '%1'").arg(Q(result.header1))
                              : tr("Copy to Standard 1"));
    m_copyToRight->setText(two ? tr("Copy to '%1'").arg(Q(result.header2))
                               : tr("Copy to Standard 2"));
    const bool chosen = two && !SelectedRowIds().empty();
    m_copyToLeft->setEnabled(chosen);
    m_copyToRight->setEnabled(chosen);
    m_copyToLeft->setToolTip(tr("Copy the chosen values of the right standard into the left"));
    m_copyToRight->setToolTip(tr("Copy the chosen values of the left standard into the right"));
}

std::vector<std::wstring> CCompareSettingsFormView::SelectedRowIds() const {
    const SComparison& result = m_comparison.Result();
    std::set<int> rows;
    for (const QModelIndex& index : m_grid->selectionModel()->selectedIndexes()) {
        if (!m_grid->isRowHidden(index.row()))
            rows.insert(index.row());
    }
    std::vector<std::wstring> ids;
    for (const int row : rows) {
        if (row < static_cast<int>(result.rows.size()) &&
            !result.rows[static_cast<std::size_t>(row)].id.empty())
            ids.push_back(result.rows[static_cast<std::size_t>(row)].id);
    }
    return ids;
}

void CCompareSettingsFormView::CopySelected(int intoSide) {
    const std::vector<std::wstring> ids = SelectedRowIds();
    const std::int32_t one = m_comparison.GetStandard1(), two = m_comparison.GetStandard2();
    if (ids.empty() || one <= 0 || two <= 0 || one == two)
        return;
    const std::int32_t target = intoSide == 1 ? one : two;
    const std::int32_t source = intoSide == 1 ? two : one;
    const std::wstring targetName =
        intoSide == 1 ? m_comparison.Result().header1 : m_comparison.Result().header2;
    SMergeOutcome outcome;
    std::wstring error;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool merged =
        CStandardMerge(m_core.specs).Merge(source, target, {ids, false, {}, false}, outcome, error);
    QApplication::restoreOverrideCursor();
    if (!merged) {
        m_core.prompter.Show(
            fmt::format(L"Error copying values to standard '{}'.\n\n{}", targetName, error),
            EPromptIcon::Stop);
        return;
    }
    if (!outcome.applied.empty()) {
        SetUndo(outcome.undo);
        emit StandardChanged(target);
    }
    Rebuild();
    TellFailures(outcome, targetName);
}

QString CCompareSettingsFormView::UndoText() const {
    return CanUndo() ? tr("&Undo Copy to '%1'").arg(Q(m_undo.targetName)) : tr("&Undo");
}

void CCompareSettingsFormView::Undo() {
    if (!CanUndo())
        return;
    const SMergePlan undo = std::exchange(m_undo, SMergePlan{});
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const SMergeOutcome outcome = CStandardMerge(m_core.specs).Apply(undo);
    QApplication::restoreOverrideCursor();
    emit UndoChanged();
    emit StandardChanged(undo.targetId);
    Rebuild();
    TellFailures(outcome, undo.targetName);
}

void CCompareSettingsFormView::SetUndo(SMergePlan undo) {
    m_undo = std::move(undo);
    emit UndoChanged();
}

void CCompareSettingsFormView::TellFailures(const SMergeOutcome& outcome,
                                            const std::wstring& target) {
    if (outcome.Ok())
        return;
    std::wstring text = fmt::format(L"Some values could not be written to standard '{}'.", target);
    for (const auto& failure : outcome.failed)
        text += fmt::format(L"\n\n{} ({}): {}", failure.change.label, failure.change.id,
                            failure.reason);
    m_core.prompter.Show(text, EPromptIcon::Exclamation);
}

void CCompareSettingsFormView::ShowRows() {
    const SComparison& result = m_comparison.Result();
    const bool differencesOnly = m_differencesOnly->isChecked();
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        const SCompareRow& data = result.rows[static_cast<std::size_t>(row)];
        m_grid->setRowHidden(row, !CompareRowShown(data, differencesOnly));
    }
}

void CCompareSettingsFormView::FitColumns() {
    const int chosen = layout::ColumnWidth(kLabelColumnKey);
    m_fitting = true;
    m_grid->setColumnWidth(
        0, chosen > 0 ? chosen : std::min(m_nLabelWidth, m_grid->viewport()->width() * 2 / 5));
    m_fitting = false;
}

void CCompareSettingsFormView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FitColumns();
}

void CCompareSettingsFormView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // The marks follow a change of theme.
    if (event->type() == QEvent::PaletteChange)
        Fill();
}

void CCompareSettingsFormView::SaveReport() {
    const SComparison& result = m_differencesOnly->isChecked()
                                    ? CompareDifferencesOnly(m_comparison.Result())
                                    : m_comparison.Result();
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
    layout::KeepSizes(this, QStringLiteral("compare/split"));
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

void CCompareWindow::Refresh() {
    m_selector->Refill();
    const QTreeWidgetItem* chosen[] = {m_selector->Upper()->currentItem(),
                                       m_selector->Lower()->currentItem()};
    const std::int32_t ids[] = {CCompareProjectsFormView::IdOf(chosen[0]),
                                CCompareProjectsFormView::IdOf(chosen[1])};
    CVX2D_StandardComparison& comparison = m_result->Comparison();
    const SComparison& shown = comparison.Result();
    // Compared again only when a side is gone or renamed (its folder moves
    // with its name).
    const bool same = ids[0] == comparison.GetStandard1() && ids[1] == comparison.GetStandard2() &&
                      (shown.rows.empty() || (Q(shown.header1) == chosen[0]->text(0) &&
                                              Q(shown.header2) == chosen[1]->text(0)));
    if (same)
        return;
    comparison.SetStandard1(ids[0]);
    comparison.SetStandard2(ids[1]);
    m_result->Rebuild();
}
