// The "Specs" page of a standard: the specs of the register with a check box
// each, "Apply" and "Help...".
#pragma once

#include "editors/SpecsEditor.h"
#include "gui/PageView.h"

#include <QTableWidget>

class CSpecsFormView : public CEditorPageView<CSpecsEditor> {
    Q_OBJECT
public:
    CSpecsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                   QWidget* parent = nullptr);

    QTableWidget* Grid() const { return m_grid; }

protected:
    void Refresh() override;

private:
    QLabel* m_empty; // says why the grid is empty
    QTableWidget* m_grid;
};
