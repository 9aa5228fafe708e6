// The "Border Settings" page of a standard: a grid of the ten sheet sizes
// with their border drawing, drawing limits and revision drawing, the
// drawings of the borders folder to pick from, "Restore Defaults", "Apply"
// and "Help...".
#pragma once

#include "editors/BordersEditor.h"
#include "gui/DeskCore.h"
#include "gui/PageView.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

class CMainFrame;

class CBordersFormView : public CPageView {
    Q_OBJECT
public:
    CBordersFormView(CDeskCore& core, CMainFrame& frame, std::int32_t standardId,
                     QWidget* parent = nullptr);

    CBordersEditor& Editor() { return m_editor; }
    QTableWidget* Grid() const { return m_grid; }
    // The drop-down of a drawing cell (column 1 border, 4 revision).
    QComboBox* DrawingCombo(int row, int column) const;
    // The view is closing: asks about unsaved changes. False keeps it open.
    bool CanClose() override;

signals:
    void Modified();

protected:
    // The borders folder may have changed on the file locations page.
    void showEvent(QShowEvent* event) override;

private:
    void Build();
    void FillDrawingLists();
    void Update();
    // Hands a typed or picked text to the editor and shows what it kept.
    void Commit(int row, EBorderColumn column, const QString& text);

    CDeskCore& m_core;
    CMainFrame& m_frame;
    CBordersEditor m_editor;
    QTableWidget* m_grid;
    QLabel* m_folder;
    QPushButton* m_restore;
    QPushButton* m_apply;
    QPushButton* m_help;
    // Grid updates and question boxes must not feed back as new input.
    bool m_busy = false;
};
