// The "Lines" page of a standard: its live and deleted lines in a grid with
// New, Delete, Recover and Rename. Each command is saved at once, so the page
// has no Apply and never asks on closing.
#pragma once

#include "editors/LinesEditor.h"
#include "gui/PageView.h"

#include <QTableWidget>

class CLinesFormView : public CEditorPageView<CLinesEditor> {
    Q_OBJECT
public:
    CLinesFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                   QWidget* parent = nullptr);

    QTableWidget* Grid() const { return m_grid; }
    // The line of the current row; 0 when none is chosen.
    std::int32_t CurrentLine() const;
    void SelectLine(std::int32_t lineId);
    // Lines made or deleted elsewhere (a merge) show at once.
    void FilesChanged() override {
        if (m_editor.Revert())
            Fill(CurrentLine());
    }

private:
    void Fill(std::int32_t select = 0);
    void UpdateButtons();
    void Rename(QTableWidgetItem* item);

    QTableWidget* m_grid;
    QPushButton* m_new;
    QPushButton* m_delete;
    QPushButton* m_recover;
    QPushButton* m_rename;
};
