// A new standard: its name (the proposed default or the user's), its units
// and the client it goes to.
#pragma once

#include "gui/DeskCore.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>

class CNewStandardDialog : public QDialog {
    Q_OBJECT
public:
    CNewStandardDialog(CDeskCore& core, std::int32_t clientId, QWidget* parent = nullptr);

    std::int32_t CreatedId() const { return m_id; }
    std::wstring CreatedName() const { return m_name; }

    void accept() override;

private:
    CDeskCore& m_core;
    std::int32_t m_clientId;
    QLineEdit* m_nameEdit;
    QComboBox* m_units;
    QComboBox* m_template;
    std::int32_t m_id = 0;
    std::wstring m_name;
};
