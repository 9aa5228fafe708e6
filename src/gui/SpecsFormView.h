// The "Specs" page of a standard: the specs of the register with a check box
// each, "Apply" and "Help...".
#pragma once

#include "editors/SpecsEditor.h"
#include "gui/DeskCore.h"
#include "gui/PageView.h"

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

class CMainFrame;

class CSpecsFormView : public CPageView {
    Q_OBJECT
public:
    CSpecsFormView(CDeskCore& core, CMainFrame& frame, std::int32_t standardId,
                   QWidget* parent = nullptr);

    CSpecsEditor& Editor() { return m_editor; }
    QTableWidget* Grid() const { return m_grid; }
    // The view is closing: asks about unsaved checks. False keeps it open.
    bool CanClose() override;

signals:
    void Modified();

private:
    void Fill();
    void UpdateApply();

    CDeskCore& m_core;
    CMainFrame& m_frame;
    CSpecsEditor m_editor;
    QLabel* m_header;
    QLabel* m_empty; // says why the grid is empty
    QTableWidget* m_grid;
    QPushButton* m_apply;
    QPushButton* m_help;
    bool m_filling = false;
};
