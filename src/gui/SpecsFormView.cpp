#include "gui/SpecsFormView.h"

#include "gui/Grid.h"
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
    : CEditorPageView(core, host, parent, QStringLiteral("specsFormView")),
      m_empty(new QLabel(tr("The register holds no spec that this standard may use: common "
                            "specs, specs of its client and its own."),
                         this)),
      m_grid(new QTableWidget(this)) {
    m_grid->setObjectName(QStringLiteral("specsGrid"));
    SetUpGrid(m_grid, {tr("Spec"), tr("Id"), tr("Scope")}, QAbstractItemView::NoEditTriggers, true,
              kSpecColumn);

    m_empty->setObjectName(QStringLiteral("noSpecsNote"));
    m_empty->setWordWrap(true);
    m_empty->hide();

    LayOutGrid(m_grid, MakeButtons(), m_empty);

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
    const int count = BeginFill(m_grid);
    for (int row = 0; row < count; ++row) {
        const SSpecRow& spec = m_editor.Rows()[static_cast<std::size_t>(row)];
        auto* name = new QTableWidgetItem(Q(spec.name));
        name->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        name->setCheckState(spec.checked ? Qt::Checked : Qt::Unchecked);
        auto* id = NumberItem(spec.id);
        auto* scope = ReadOnlyItem(Q(spec.scope));
        if (!spec.available) {
            GreyOut(m_grid, {name, id, scope},
                    tr("This spec is no longer offered to the standard: once unchecked and "
                       "applied, it cannot be checked again."));
        }
        m_grid->setItem(row, kSpecColumn, name);
        m_grid->setItem(row, kIdColumn, id);
        m_grid->setItem(row, kScopeColumn, scope);
    }
    EndFill();
    m_empty->setVisible(count == 0);
}
