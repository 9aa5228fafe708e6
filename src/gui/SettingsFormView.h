// One settings section of one application of a standard: the two-column
// grid of label and value, "Restore Defaults", "Apply" and "Help...".
#pragma once

#include "editors/SettingsEditor.h"
#include "gui/PageView.h"

#include <QTableWidget>

class CSettingsGridCtrl : public QTableWidget {
    Q_OBJECT
public:
    explicit CSettingsGridCtrl(QWidget* parent = nullptr);
    // Column 0 sized to its labels, the last column to the rest of the width.
    void FitColumns();

protected:
    void resizeEvent(QResizeEvent* event) override;
};

class CSettingsFormView : public CEditorPageView<CSettingsEditor> {
    Q_OBJECT
public:
    CSettingsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                      int application, int section, QWidget* parent = nullptr);

    CSettingsGridCtrl* Grid() const { return m_grid; }
    // Puts a typed or picked text into a row, as the cell would.
    void SetCellText(int row, const QString& text);

protected:
    void Refresh() override;

private:
    void UpdateRow(int row);
    void PickFont(int row);
    void PickFolder(int row);

    CSettingsGridCtrl* m_grid;
    QPushButton* m_restore;
};
