// The "Specs" page of a standard: the specs of the register with a check box
// each, "Apply" and "Help...".
#pragma once

#include "editors/SpecsEditor.h"
#include "gui/PageView.h"

#include <QTableWidget>

class CSpecsFormView : public CPageView {
    Q_OBJECT
public:
    CSpecsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                   QWidget* parent = nullptr);

    CSpecsEditor& Editor() { return m_editor; }
    QTableWidget* Grid() const { return m_grid; }

protected:
    std::wstring HelpTopic() const override { return m_editor.HelpTopic(); }
    void Refresh() override;

private:
    CSpecsEditor m_editor;
    QLabel* m_header;
    QLabel* m_empty; // says why the grid is empty
    QTableWidget* m_grid;
    bool m_filling = false;
};
