// The "General Settings" page of a standard: the units and rating format
// lists, the version year and GUID read-only, "Apply" and "Help...".
#pragma once

#include "editors/GeneralSettingsEditor.h"
#include "gui/PageView.h"

#include <vector>

class CGeneralSettingsFormView : public CEditorPageView<CGeneralSettingsEditor> {
    Q_OBJECT
public:
    CGeneralSettingsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                             QWidget* parent = nullptr);

protected:
    void Refresh() override;

private:
    // One per editor row: a combo box for a list, a read-only edit otherwise.
    std::vector<QWidget*> m_fields;
};
