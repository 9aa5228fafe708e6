// The new standard wizard: name and client, units and where the standard
// comes from, then its folders.
#pragma once

#include "app/NewStandardWizard.h"
#include "app/StandardsCore.h"
#include "gui/FileDialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QWizard>

class CNewStandardWizardDlg : public QWizard {
    Q_OBJECT
public:
    CNewStandardWizardDlg(CStandardsCore& core, IFileDialogs& dialogs, std::int32_t clientId,
                          QWidget* parent = nullptr);

    std::int32_t CreatedId() const { return m_id; }
    std::wstring CreatedName() const { return m_name; }
    // What the pages hold now.
    CNewStandardWizard::SChoice Choice() const;

    bool validateCurrentPage() override;
    void initializePage(int id) override;

private:
    QWizardPage* NamePage();
    QWizardPage* UnitsPage();
    QWizardPage* FoldersPage();
    QLineEdit* FolderRow(class QFormLayout* form, const QString& label, const QString& name);

    CStandardsCore& m_core;
    IFileDialogs& m_dialogs;
    CNewStandardWizard m_wizard;
    CNewStandardWizard::SChoice m_proposal;
    QLineEdit* m_nameEdit = nullptr;
    QComboBox* m_client = nullptr;
    QComboBox* m_working = nullptr;
    QComboBox* m_displayed = nullptr;
    QRadioButton* m_metric = nullptr;
    QRadioButton* m_imperial = nullptr;
    QRadioButton* m_copy = nullptr;
    QComboBox* m_copyOf = nullptr;
    QCheckBox* m_oldFormat = nullptr;
    QLineEdit* m_drawings[4] = {};
    QLineEdit* m_borders = nullptr;
    QLineEdit* m_templates = nullptr;
    QLineEdit* m_libraries = nullptr;
    std::wstring m_foldersName; // the name the drawings folders were proposed for
    std::int32_t m_id = 0;
    std::wstring m_name;
};
