// Tools > Check Datafiles Folder...: the doctor's findings in a table that
// filters by severity, opens the standard and page a row points to, and
// offers the safe repairs after showing what they would change.
#pragma once

#include "app/DatafilesDoctor.h"
#include "app/StandardsCore.h"
#include "gui/PageHost.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <functional>
#include <vector>

class CDoctorDlg : public QDialog {
    Q_OBJECT
public:
    using COpenFinding = std::function<void(const SDoctorFinding&)>;

    CDoctorDlg(CStandardsCore& core, IPageHost& host, COpenFinding open, QWidget* parent = nullptr);

    // Reads the whole folder again, with progress, and shows what it found.
    void Check();
    const std::vector<SDoctorFinding>& Findings() const { return m_findings; }
    QTableWidget* Table() const { return m_table; }

    // The filter's choices, in its order.
    enum EFilter { eAll, eErrors, eWarnings };

signals:
    // A repair changed the folder: the navigator shows it anew.
    void Repaired();

private:
    void Fill();
    void ApplyFilter();
    void UpdateButtons();
    // The finding of the current row; nullptr when none is chosen.
    const SDoctorFinding* Current() const;
    void OpenCurrent();
    void Repair();

    CStandardsCore& m_core;
    IPageHost& m_host;
    COpenFinding m_open;
    CDatafilesDoctor m_doctor;
    std::vector<SDoctorFinding> m_findings;
    bool m_complete = true;
    QLabel* m_summary;
    QComboBox* m_filter;
    QTableWidget* m_table;
    QPushButton* m_openButton;
    QPushButton* m_repairButton;
};
