#include "gui/PushDialog.h"

#include "gui/BackgroundWork.h"
#include "gui/Grid.h"
#include "gui/QtText.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QSplitter>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <map>

namespace {

constexpr int kIdRole = Qt::UserRole + 1;
constexpr int kNoStandard = -1;

} // namespace

CPushDialog::CPushDialog(CStandardsCore& core, IPageHost& host, std::int32_t sourceId,
                         const std::vector<std::wstring>& rowIds,
                         const std::vector<std::wstring>& chosen, QWidget* parent)
    : QDialog(parent), m_core(core), m_host(host), m_nSource(sourceId), m_intro(new QLabel(this)),
      m_values(new QListWidget(this)), m_standards(new QTreeWidget(this)),
      m_outcome(new QTableWidget(this)), m_summary(new QLabel(this)),
      m_preview(new QPushButton(tr("&Preview"), this)),
      m_apply(new QPushButton(tr("&Apply"), this)) {
    setObjectName(QStringLiteral("pushDialog"));
    setWindowTitle(tr("Apply to Other Standards"));
    m_values->setObjectName(QStringLiteral("pushValues"));
    m_standards->setObjectName(QStringLiteral("pushStandards"));
    m_outcome->setObjectName(QStringLiteral("pushOutcome"));
    m_preview->setObjectName(QStringLiteral("previewButton"));
    m_apply->setObjectName(QStringLiteral("applyButton"));

    // The values as the comparison of the standard with itself shows them.
    CVX2D_StandardComparison comparison(core.projects);
    comparison.SetStandard1(sourceId);
    comparison.SetStandard2(sourceId);
    comparison.Rebuild();
    const SComparison& self = comparison.Result();
    m_intro->setText(
        tr("Set these values of '%1' in the standards ticked below:").arg(Q(self.header1)));
    std::wstring heading;
    for (const auto& row : self.rows) {
        if (row.kind == ECompareRowKind::eHeading)
            heading = row.label;
        if (row.kind != ECompareRowKind::eValue ||
            std::find(rowIds.begin(), rowIds.end(), row.id) == rowIds.end())
            continue;
        auto* item = new QListWidgetItem(Q(row.label) + QStringLiteral(": ") +
                                             (row.text1.empty() ? tr("(empty)") : Q(row.text1)),
                                         m_values);
        item->setToolTip(Q(heading + L" - " + row.label + L"\n" + row.id));
        item->setData(kIdRole, Q(row.id));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable);
        const bool ticked = std::find(chosen.begin(), chosen.end(), row.id) != chosen.end();
        item->setCheckState(ticked ? Qt::Checked : Qt::Unchecked);
    }

    // Clients with their standards, then the standards of no client; a
    // client's box ticks or unticks all of its standards.
    m_standards->setHeaderLabel(tr("Standards"));
    QStyle* style = QApplication::style();
    std::vector<SProjectInfo> projects;
    static_cast<void>(core.projects.ListProjects(true, false, projects));
    std::map<std::int32_t, QTreeWidgetItem*> clientOf;
    for (const auto& client : core.clients.ListClients()) {
        auto* item = new QTreeWidgetItem(m_standards, {Q(client.name)});
        item->setIcon(0, style->standardIcon(QStyle::SP_DirIcon));
        item->setData(0, kIdRole, kNoStandard);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsAutoTristate);
        item->setCheckState(0, Qt::Unchecked);
        for (const std::int32_t id : client.projectIds)
            clientOf.try_emplace(id, item);
    }
    for (const auto& project : projects) {
        if (project.id == sourceId)
            continue;
        const auto parentItem = clientOf.find(project.id);
        auto* item = parentItem == clientOf.end()
                         ? new QTreeWidgetItem(m_standards, {Q(project.name)})
                         : new QTreeWidgetItem(parentItem->second, {Q(project.name)});
        item->setIcon(0, style->standardIcon(QStyle::SP_FileIcon));
        item->setData(0, kIdRole, project.id);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable);
        item->setCheckState(0, Qt::Unchecked);
    }
    // A client without standards to tick has nothing to offer.
    for (int i = m_standards->topLevelItemCount() - 1; i >= 0; --i) {
        QTreeWidgetItem* item = m_standards->topLevelItem(i);
        if (item->data(0, kIdRole).toInt() == kNoStandard && item->childCount() == 0)
            delete item;
    }
    m_standards->sortItems(0, Qt::AscendingOrder);
    m_standards->expandAll();

    SetUpGrid(m_outcome, {tr("Standard"), tr("Setting"), tr("Now"), tr("New"), tr("Result")},
              QAbstractItemView::NoEditTriggers, true, 4);
    m_outcome->setWordWrap(false);
    m_outcome->setTextElideMode(Qt::ElideMiddle);

    auto* choices = new QSplitter(Qt::Horizontal, this);
    choices->addWidget(m_values);
    choices->addWidget(m_standards);
    auto* all = new QSplitter(Qt::Vertical, this);
    all->addWidget(choices);
    all->addWidget(m_outcome);
    all->setStretchFactor(1, 1);

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(m_preview, QDialogButtonBox::ActionRole);
    buttons->addButton(m_apply, QDialogButtonBox::ApplyRole);
    QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
    QPushButton* help = buttons->addButton(QDialogButtonBox::Help);
    help->setText(tr("Help..."));
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    connect(help, &QPushButton::clicked, this, [this] { m_host.ShowHelp(kPushHelpTopic); });
    connect(m_preview, &QPushButton::clicked, this, &CPushDialog::Preview);
    connect(m_apply, &QPushButton::clicked, this, &CPushDialog::Apply);
    auto changed = [this] {
        m_previewed = false;
        UpdateButtons();
    };
    connect(m_values, &QListWidget::itemChanged, this, changed);
    connect(m_standards, &QTreeWidget::itemChanged, this, changed);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_intro);
    layout->addWidget(all, 1);
    layout->addWidget(m_summary);
    layout->addWidget(buttons);
    resize(860, 620);
    UpdateButtons();
}

bool CPushDialog::Tick(std::int32_t standardId, bool ticked) {
    for (QTreeWidgetItemIterator it(m_standards); *it; ++it) {
        if ((*it)->data(0, kIdRole).toInt() == standardId) {
            (*it)->setCheckState(0, ticked ? Qt::Checked : Qt::Unchecked);
            return true;
        }
    }
    return false;
}

std::vector<std::wstring> CPushDialog::TickedRows() const {
    std::vector<std::wstring> rows;
    for (int i = 0; i < m_values->count(); ++i) {
        const QListWidgetItem* item = m_values->item(i);
        if (item->checkState() == Qt::Checked)
            rows.push_back(W(item->data(kIdRole).toString()));
    }
    return rows;
}

std::vector<std::int32_t> CPushDialog::TickedStandards() const {
    std::vector<std::int32_t> ids;
    for (QTreeWidgetItemIterator it(m_standards); *it; ++it) {
        const int id = (*it)->data(0, kIdRole).toInt();
        if (id != kNoStandard && (*it)->checkState(0) == Qt::Checked)
            ids.push_back(id);
    }
    return ids;
}

void CPushDialog::UpdateButtons() {
    // Apply follows a look at what it would do.
    const bool some = !TickedRows().empty() && !TickedStandards().empty();
    m_preview->setEnabled(some);
    m_apply->setEnabled(some && m_previewed);
}

void CPushDialog::Preview() {
    std::vector<SPushResult> results;
    std::wstring error;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool planned = PushRows(m_core.specs, m_nSource, TickedRows(), TickedStandards(),
                                  {true, false}, results, error);
    QApplication::restoreOverrideCursor();
    if (!planned) {
        m_core.prompter.Show(error, EPromptIcon::Stop);
        return;
    }
    Show(results, false);
    m_previewed = true;
    UpdateButtons();
}

void CPushDialog::Apply() {
    const std::vector<std::wstring> rows = TickedRows();
    const std::vector<std::int32_t> targets = TickedStandards();
    if (rows.empty() || targets.empty())
        return;
    std::vector<SPushResult> results;
    std::wstring error;
    bool pushed = false;
    CBackgroundWork::Run(this, tr("Applying values to %n standard(s)...", "", targets.size()), true,
                         [&](const CProgress& progress) {
                             pushed = PushRows(m_core.specs, m_nSource, rows, targets, {}, results,
                                               error, progress);
                         });
    if (!pushed) {
        m_core.prompter.Show(error, EPromptIcon::Stop);
        return;
    }
    for (const auto& result : results) {
        if (!result.changes.empty())
            m_host.StandardFilesChanged(result.id, nullptr);
    }
    Show(results, true);
    m_previewed = false;
    UpdateButtons();
}

void CPushDialog::Show(const std::vector<SPushResult>& results, bool done) {
    m_outcome->setRowCount(0);
    auto add = [this](const SPushResult& result, const SMergeChange* change, const QString& outcome,
                      bool failed) {
        const int row = m_outcome->rowCount();
        m_outcome->insertRow(row);
        const QString texts[] = {Q(result.name),
                                 change ? Q(change->heading + L" - " + change->label) : QString(),
                                 change ? Q(change->oldText) : QString(),
                                 change ? Q(change->newText) : QString(), outcome};
        for (int column = 0; column < 5; ++column) {
            auto* item = ReadOnlyItem(texts[column]);
            item->setToolTip(texts[column]);
            m_outcome->setItem(row, column, item);
        }
        if (failed)
            Mark({m_outcome->item(row, 4)}, m_outcome->palette(), EGridMark::eDifference);
    };
    std::size_t changed = 0, failed = 0;
    for (const auto& result : results) {
        if (!result.error.empty()) {
            ++failed;
            add(result, nullptr, tr("Failed: %1").arg(Q(result.error)), true);
            continue;
        }
        if (result.skipped) {
            add(result, nullptr, tr("Skipped: %1").arg(Q(result.skipReason)), false);
            continue;
        }
        if (result.changes.empty() && result.failed.empty())
            add(result, nullptr, tr("Nothing to change"), false);
        for (const auto& change : result.changes)
            add(result, &change, done ? tr("Changed") : tr("Will change"), false);
        for (const auto& failure : result.failed)
            add(result, &failure.change, tr("Failed: %1").arg(Q(failure.reason)), true);
        changed += result.changes.empty() ? 0 : 1;
        failed += result.failed.empty() ? 0 : 1;
    }
    m_outcome->resizeColumnsToContents();
    m_summary->setText(
        done ? tr("%1 of %2 standards changed, %3 failed.")
                   .arg(changed)
                   .arg(results.size())
                   .arg(failed)
             : tr("%1 of %2 standards would change.").arg(changed).arg(results.size()));
}
