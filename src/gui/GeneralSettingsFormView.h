// The "General Settings" page of a standard: the units and rating format
// lists, the version year and GUID read-only, "Apply" and "Help...".
#pragma once

#include "editors/GeneralSettingsEditor.h"
#include "gui/DeskCore.h"
#include "gui/PageView.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <vector>

class CMainFrame;

class CGeneralSettingsFormView : public CPageView {
    Q_OBJECT
public:
    CGeneralSettingsFormView(CDeskCore& core, CMainFrame& frame, std::int32_t standardId,
                             QWidget* parent = nullptr);

    CGeneralSettingsEditor& Editor() { return m_editor; }
    // The view is closing: asks about unsaved changes. False keeps it open.
    bool CanClose() override;

signals:
    void Modified();

private:
    void Update();

    CDeskCore& m_core;
    CMainFrame& m_frame;
    CGeneralSettingsEditor m_editor;
    // One per editor row: a combo box for a list, a read-only edit otherwise.
    std::vector<QWidget*> m_fields;
    QPushButton* m_apply;
    QPushButton* m_help;
};
