// One application's drawings folder of a standard: the list of drawings (or
// their backups) with its toolbar, pop-up menu and in-place rename.
#pragma once

#include "editors/DrawingsManager.h"
#include "gui/PageView.h"

#include <QAction>
#include <QStyledItemDelegate>
#include <QTreeWidget>

class CDrawingsListCtrl : public QTreeWidget {
    Q_OBJECT
public:
    explicit CDrawingsListCtrl(QWidget* parent = nullptr);
    QStringList SelectedNames() const;
};

class CDrawingsFormView : public CPageView {
    Q_OBJECT
public:
    CDrawingsFormView(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                      int application, QWidget* parent = nullptr);

    CDrawingsManager& Manager() { return m_manager; }
    CDrawingsListCtrl* List() const { return m_list; }
    QAction* Action(const QString& name) const;
    // Refills the list from the manager and starts editing where it asks.
    // Lists the drawings again, choosing the one named `select`.
    void Render(const QString& select = {});
    // A label edit ended (nullopt: cancelled).
    void Renamed(const QString& item, const std::optional<QString>& text);

private:
    void Copy();
    void Delete();
    void NewDrawing();
    void OpenSelected();
    // Actions on drawings need a chosen one, the folder's a folder.
    void UpdateActions();
    bool Progress(int number, int count, const std::wstring& source, const std::wstring& target);

    CDrawingsManager m_manager;
    CDrawingsListCtrl* m_list;
    std::map<QString, QAction*> m_actions;
    class QProgressDialog* m_progress = nullptr;
};
