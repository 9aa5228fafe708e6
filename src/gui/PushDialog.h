// "Apply to Other Standards...": values of one standard set in the standards
// the user ticks. The page's values to choose from (those chosen on the page
// ticked), a tree of clients and their standards (a client's box ticks all
// of its standards), Preview (what changes where), Apply (with progress) and
// the outcome per standard in the same table.
#pragma once

#include "app/StandardsCore.h"
#include "editors/StandardMerge.h"
#include "gui/PageHost.h"

#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QTreeWidget>
#include <string>
#include <vector>

class CPushDialog : public QDialog {
    Q_OBJECT
public:
    // `rowIds`: the comparison row ids the page shows; `chosen`: those
    // ticked at first. Ids the comparison of the standard does not have
    // (sheets of the other units) are left out.
    CPushDialog(CStandardsCore& core, IPageHost& host, std::int32_t sourceId,
                const std::vector<std::wstring>& rowIds, const std::vector<std::wstring>& chosen,
                QWidget* parent = nullptr);

    QListWidget* Values() const { return m_values; }
    QTreeWidget* Standards() const { return m_standards; }
    QTableWidget* Outcome() const { return m_outcome; }
    QPushButton* PreviewButton() const { return m_preview; }
    QPushButton* ApplyButton() const { return m_apply; }

    // Ticks or unticks a standard of the tree; false when it is not there.
    bool Tick(std::int32_t standardId, bool ticked = true);
    // The ticked values and standards.
    std::vector<std::wstring> TickedRows() const;
    std::vector<std::int32_t> TickedStandards() const;

    // Fills the table with what Apply would change where.
    void Preview();
    // Sets the values in the ticked standards, as long work, once their
    // preview has been shown; the table then shows what was changed,
    // skipped or failed.
    void Apply();

private:
    void Show(const std::vector<SPushResult>& results, bool done);
    void UpdateButtons();

    CStandardsCore& m_core;
    IPageHost& m_host;
    std::int32_t m_nSource;
    QLabel* m_intro;
    QListWidget* m_values;
    QTreeWidget* m_standards;
    QTableWidget* m_outcome;
    QLabel* m_summary;
    QPushButton* m_preview;
    QPushButton* m_apply;
    bool m_previewed = false; // the table shows the present choice's preview
};
