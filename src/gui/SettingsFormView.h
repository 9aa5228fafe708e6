// One settings section of one application of a standard: the two-column
// grid of label and value, "Restore Defaults", "Apply" and "Help...".
#pragma once

#include "editors/SettingsEditor.h"
#include "gui/DeskCore.h"
#include "gui/PageView.h"

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

class CMainFrame;

class CSettingsGridCtrl : public QTableWidget {
    Q_OBJECT
public:
    explicit CSettingsGridCtrl(QWidget* parent = nullptr);
    // Column 0 sized to its labels, the last column to the rest of the width.
    void FitColumns();

protected:
    void resizeEvent(QResizeEvent* event) override;
};

class CSettingsFormView : public CPageView {
    Q_OBJECT
public:
    CSettingsFormView(CDeskCore& core, CMainFrame& frame, std::int32_t standardId, int application,
                      int section, QWidget* parent = nullptr);

    CSettingsEditor& Editor() { return m_editor; }
    CSettingsGridCtrl* Grid() const { return m_grid; }
    // The view is closing: asks about unsaved changes. False keeps it open.
    bool CanClose() override;
    // Puts a typed or picked text into a row, as the cell would.
    void SetCellText(int row, const QString& text);

signals:
    void Modified();

private:
    void Fill();
    void UpdateRow(int row);
    void UpdateApply();
    void PickFont(int row);
    void PickFolder(int row);

    CDeskCore& m_core;
    CMainFrame& m_frame;
    CSettingsEditor m_editor;
    QLabel* m_header;
    CSettingsGridCtrl* m_grid;
    QPushButton* m_restore;
    QPushButton* m_apply;
    QPushButton* m_help;
    bool m_filling = false;
};
