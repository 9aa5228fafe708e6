// The "File Locations" page of a standard: one folder per line, typed or
// picked with a folder browser, "Apply" and "Help...".
#pragma once

#include "editors/FileLocationsEditor.h"
#include "gui/DeskCore.h"
#include "gui/PageView.h"

#include <QLineEdit>
#include <QPushButton>
#include <vector>

class CMainFrame;

class CFileLocationsFormView : public CPageView {
    Q_OBJECT
public:
    CFileLocationsFormView(CDeskCore& core, CMainFrame& frame, std::int32_t standardId,
                           QWidget* parent = nullptr);

    CFileLocationsEditor& Editor() { return m_editor; }
    // The view is closing: asks about unsaved changes. False keeps it open.
    bool CanClose() override;

signals:
    void Modified();

private:
    // Hands a typed or browsed folder to the editor and shows what it kept.
    void Commit(int row, const QString& text);
    void Browse(int row);
    void Update();

    CDeskCore& m_core;
    CMainFrame& m_frame;
    CFileLocationsEditor m_editor;
    std::vector<QLineEdit*> m_edits;
    QPushButton* m_apply;
    QPushButton* m_help;
    // A question box takes the focus and would end the edit a second time.
    bool m_committing = false;
};
