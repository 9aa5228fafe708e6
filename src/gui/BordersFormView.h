// The "Border Settings" page of a standard: a grid of the ten sheet sizes
// with their border drawing, drawing limits and revision drawing, the
// drawings of the borders folder to pick from, "Restore Defaults", "Apply"
// and "Help...".
#pragma once

#include "editors/BordersEditor.h"
#include "gui/PageView.h"

#include <QComboBox>
#include <QTableWidget>

class CBordersFormView : public CEditorPageView<CBordersEditor> {
    Q_OBJECT
public:
    CBordersFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                     QWidget* parent = nullptr);

    QTableWidget* Grid() const { return m_grid; }
    // The drop-down of a drawing cell (column 1 border, 4 revision).
    QComboBox* DrawingCombo(int row, int column) const;

protected:
    // The borders folder may have changed on the file locations page.
    void showEvent(QShowEvent* event) override;
    void Refresh() override;

private:
    void Build();
    void FillDrawingLists();
    // Hands a typed or picked text to the editor and shows what it kept.
    void Commit(int row, EBorderColumn column, const QString& text);

    QTableWidget* m_grid;
    QLabel* m_folder;
    // Grid updates and question boxes must not feed back as new input.
    bool m_busy = false;
};
