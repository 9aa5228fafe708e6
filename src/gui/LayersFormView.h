// The layers of one application of a standard: a grid of layer name, colour,
// linetype and lineweight per role, "Restore Defaults", "Apply" and "Help...";
// and the picker over the 256-colour index palette its colour cells open.
#pragma once

#include "editors/LayersEditor.h"
#include "gui/PageView.h"

#include <QDialog>
#include <QTableWidget>

class QButtonGroup;

// The AutoCAD Color Index as a grid of swatches: the 240 hues and shades,
// then the named colours 1-9 and the greys 250-255.
class CColorIndexDialog : public QDialog {
    Q_OBJECT
public:
    explicit CColorIndexDialog(int index, QWidget* parent = nullptr);

    // The chosen palette position, 1-255.
    int Index() const { return m_index; }
    void Choose(int index);
    // The position picked with OK; -1 when cancelled.
    static int Pick(QWidget* parent, int index);

private:
    int m_index = 7;
    QButtonGroup* m_swatches;
    QLabel* m_preview;
    QLabel* m_text;
};

class CLayersFormView : public CEditorPageView<CLayersEditor> {
    Q_OBJECT
public:
    CLayersFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId, int application,
                    QWidget* parent = nullptr);

    QTableWidget* Grid() const { return m_grid; }
    // Puts a typed or picked text into a cell, as the cell would.
    void SetCellText(int row, ELayerColumn column, const QString& text);
    // What the colour picker answered for a row.
    void SetColorIndex(int row, int index);

protected:
    void Refresh() override;

private:
    void UpdateRow(int row);
    void Changed(int row);
    void PickColor(int row);

    QTableWidget* m_grid;
    QPushButton* m_restore;
};
