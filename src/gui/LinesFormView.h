// The "Lines" page of a standard: its live and deleted lines in a grid with
// New, Delete, Recover and Rename. Each command is saved at once, so the page
// has no Apply and never asks on closing.
#pragma once

#include "editors/LinesEditor.h"
#include "gui/DeskCore.h"
#include "gui/PageView.h"

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

class CMainFrame;

class CLinesFormView : public CPageView {
    Q_OBJECT
public:
    CLinesFormView(CDeskCore& core, CMainFrame& frame, std::int32_t standardId,
                   QWidget* parent = nullptr);

    CLinesEditor& Editor() { return m_editor; }
    QTableWidget* Grid() const { return m_grid; }
    // The line of the current row; 0 when none is chosen.
    std::int32_t CurrentLine() const;
    void SelectLine(std::int32_t lineId);

private:
    void Fill(std::int32_t select = 0);
    void UpdateButtons();
    void Rename(QTableWidgetItem* item);

    CDeskCore& m_core;
    CMainFrame& m_frame;
    CLinesEditor m_editor;
    QLabel* m_header;
    QTableWidget* m_grid;
    QPushButton* m_new;
    QPushButton* m_delete;
    QPushButton* m_recover;
    QPushButton* m_rename;
    QPushButton* m_help;
    bool m_filling = false;
};
