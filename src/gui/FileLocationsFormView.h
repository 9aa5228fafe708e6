// The "File Locations" page of a standard: one folder per line, typed or
// picked with a folder browser, "Apply" and "Help...".
#pragma once

#include "editors/FileLocationsEditor.h"
#include "gui/PageView.h"

#include <QLineEdit>
#include <vector>

class CFileLocationsFormView : public CEditorPageView<CFileLocationsEditor> {
    Q_OBJECT
public:
    CFileLocationsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                           QWidget* parent = nullptr);

protected:
    void Refresh() override;

private:
    // Hands a typed or browsed folder to the editor and shows what it kept.
    void Commit(int row, const QString& text);
    void Browse(int row);

    std::vector<QLineEdit*> m_edits;
    // A question box takes the focus and would end the edit a second time.
    bool m_committing = false;
};
