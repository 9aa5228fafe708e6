// The comparison of two standards: the selector pane with two stacked
// client/standard trees, and the result pane with the three-column grid.
#pragma once

#include "app/StandardsCore.h"
#include "editors/StandardComparison.h"
#include "gui/PageHost.h"

#include <QPushButton>
#include <QSplitter>
#include <QTableWidget>
#include <QTreeWidget>

class CCompareProjectsFormView : public QWidget {
    Q_OBJECT
public:
    CCompareProjectsFormView(CStandardsCore& core, QWidget* parent = nullptr);
    QTreeWidget* Upper() const { return m_upper; }
    QTreeWidget* Lower() const { return m_lower; }
    // Selects a standard in a tree (false when it is not there).
    static bool SelectStandard(QTreeWidget* tree, std::int32_t id);

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
    void Rebuild();
    void FitColumns();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void SaveReport();
    CStandardsCore& m_core;
    IPageHost& m_host;
    CVX2D_StandardComparison m_comparison;
    QTableWidget* m_grid;
    QPushButton* m_help;
    QPushButton* m_report;
};

class CCompareWindow : public QSplitter {
    Q_OBJECT
public:
    CCompareWindow(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                   QWidget* parent = nullptr);
    CCompareProjectsFormView* Selector() const { return m_selector; }
    CCompareSettingsFormView* Result() const { return m_result; }

private:
    CCompareProjectsFormView* m_selector;
    CCompareSettingsFormView* m_result;
};
