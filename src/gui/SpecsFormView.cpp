#include "gui/SpecsFormView.h"

#include "gui/QtText.h"

#include <QHeaderView>
#include <QVBoxLayout>

namespace {

constexpr int kSpecColumn = 0;
constexpr int kIdColumn = 1;
constexpr int kScopeColumn = 2;

} // namespace

CSpecsFormView::CSpecsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                               QWidget* parent)
    : CPageView(core, host, parent), m_editor(core.projects, core.prompter), m_header(MakeHeader()),
      m_empty(new QLabel(tr("The register holds no spec that this standard may use: common "
                            "specs, specs of its client and its own."),
                         this)),
      m_grid(new QTableWidget(this)) {
    setObjectName(QStringLiteral("specsFormView"));
    m_grid->setObjectName(QStringLiteral("specsGrid"));
    SetEditor(m_editor);

    m_grid->setColumnCount(3);
    m_grid->setHorizontalHeaderLabels({tr("Spec"), tr("Id"), tr("Scope")});
    m_grid->verticalHeader()->hide();
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->horizontalHeader()->setSectionResizeMode(kSpecColumn, QHeaderView::Stretch);
    m_grid->horizontalHeader()->setSectionResizeMode(kIdColumn, QHeaderView::ResizeToContents);
    m_grid->horizontalHeader()->setSectionResizeMode(kScopeColumn, QHeaderView::ResizeToContents);

    m_empty->setObjectName(QStringLiteral("noSpecsNote"));
    m_empty->setWordWrap(true);
    m_empty->hide();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_header);
    layout->addWidget(m_empty);
    layout->addWidget(m_grid, 1);
    layout->addLayout(MakeButtons());

    connect(m_grid, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (m_filling || item->column() != kSpecColumn)
            return;
        m_editor.SetChecked(static_cast<std::size_t>(item->row()),
                            item->checkState() == Qt::Checked);
        Edited();
    });

    m_editor.Open(standardId);
    Refresh();
    UpdateApply();
}

void CSpecsFormView::Refresh() {
    m_filling = true;
    m_header->setText(Q(m_editor.Header()));
    const auto& rows = m_editor.Rows();
    m_grid->clearContents();
    m_grid->setRowCount(static_cast<int>(rows.size()));
    const QBrush greyed(QColor(110, 110, 110));
    QFont slanted = m_grid->font();
    slanted.setItalic(true);
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
        const SSpecRow& spec = rows[static_cast<std::size_t>(row)];
        auto* name = new QTableWidgetItem(Q(spec.name));
        name->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        name->setCheckState(spec.checked ? Qt::Checked : Qt::Unchecked);
        auto* id = new QTableWidgetItem(QString::number(spec.id));
        id->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        id->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto* scope = new QTableWidgetItem(Q(spec.scope));
        scope->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        if (!spec.available) {
            for (QTableWidgetItem* item : {name, id, scope}) {
                item->setForeground(greyed);
                item->setFont(slanted);
                item->setToolTip(tr("This spec is no longer offered to the standard: once "
                                    "unchecked and applied, it cannot be checked again."));
            }
        }
        m_grid->setItem(row, kSpecColumn, name);
        m_grid->setItem(row, kIdColumn, id);
        m_grid->setItem(row, kScopeColumn, scope);
    }
    m_filling = false;
    m_empty->setVisible(rows.empty());
}
