// The comparison of two standards: the selector pane with two stacked
// client/standard trees, and the result pane with the three-column grid,
// its differences-only switch and the number of differences.
#pragma once

#include "app/StandardsCore.h"
#include "editors/StandardComparison.h"
#include "editors/StandardMerge.h"
#include "gui/PageHost.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTableWidget>
#include <QToolBar>
#include <QTreeWidget>

class CCompareProjectsFormView : public QWidget {
    Q_OBJECT
public:
    CCompareProjectsFormView(CStandardsCore& core, QWidget* parent = nullptr);
    QTreeWidget* Upper() const { return m_upper; }
    QTreeWidget* Lower() const { return m_lower; }
    // Selects a standard in a tree (false when it is not there).
    static bool SelectStandard(QTreeWidget* tree, std::int32_t id);
    // The standard of a tree item; -1 for a client or none.
    static std::int32_t IdOf(const QTreeWidgetItem* item);
    // Lists the clients and standards afresh, keeping each tree's choice
    // where its standard is still there, without announcing it again.
    void Refill();

signals:
    void Standard1Chosen(std::int32_t id);
    void Standard2Chosen(std::int32_t id);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Fill(QTreeWidget* tree);
    CStandardsCore& m_core;
    QTreeWidget* m_upper;
    QTreeWidget* m_lower;
};

class CCompareSettingsFormView : public QWidget {
    Q_OBJECT
public:
    CCompareSettingsFormView(CStandardsCore& core, IPageHost& host, QWidget* parent = nullptr);
    CVX2D_StandardComparison& Comparison() { return m_comparison; }
    QTableWidget* Grid() const { return m_grid; }
    // Compares the chosen standards afresh from their files.
    void Rebuild();
    // The label column as wide as its texts, up to two fifths of the grid;
    // the two standards share the rest.
    void FitColumns();

    // "Copy to <standard 1>" and "Copy to <standard 2>": the values of the
    // chosen rows (a heading stands for the rows under it) from the other
    // standard, in the toolbar and the grid's pop-up.
    QAction* CopyToLeft() const { return m_copyToLeft; }
    QAction* CopyToRight() const { return m_copyToRight; }
    // Copies the chosen rows into standard 1 (`intoSide` 1) or 2 and
    // compares again; what could not be copied is told.
    void CopySelected(int intoSide);
    // Edit > Undo: puts back what the last copy overwrote.
    bool CanUndo() const { return !m_undo.changes.empty(); }
    QString UndoText() const;
    void Undo();

signals:
    // A copy or its undo changed a standard's files.
    void StandardChanged(std::int32_t id);
    void UndoChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // Shows the last result: rows, marks from the palette, counts.
    void Fill();
    // Hides the equal values while only the differences are wanted.
    void ShowRows();
    void SaveReport();
    // The copy buttons follow the chosen rows and the standards' names.
    void UpdateCopyActions();
    // The ids of the chosen rows, in the grid's order.
    std::vector<std::wstring> SelectedRowIds() const;
    // Tells what a copy or an undo could not write.
    void TellFailures(const SMergeOutcome& outcome, const std::wstring& target);
    void SetUndo(SMergePlan undo);
    CStandardsCore& m_core;
    IPageHost& m_host;
    CVX2D_StandardComparison m_comparison;
    QTableWidget* m_grid;
    int m_nLabelWidth = 0;  // the widest label in pixels
    bool m_fitting = false; // the program, not the user, sizes the label column
    static constexpr const char* kLabelColumnKey = "compare/labelColumn";
    QCheckBox* m_differencesOnly;
    QLabel* m_count;
    QPushButton* m_help;
    QPushButton* m_report;
    QToolBar* m_tools;
    QAction* m_copyToLeft;
    QAction* m_copyToRight;
    SMergePlan m_undo;
};

class CCompareWindow : public QSplitter {
    Q_OBJECT
public:
    CCompareWindow(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                   QWidget* parent = nullptr);
    CCompareProjectsFormView* Selector() const { return m_selector; }
    CCompareSettingsFormView* Result() const { return m_result; }

public slots:
    // Follows the standards as the navigator changed them: new ones to
    // choose from, new names, a chosen one gone.
    void Refresh();

private:
    CCompareProjectsFormView* m_selector;
    CCompareSettingsFormView* m_result;
};
