// The window of an opened standard: its page tree on the left and the chosen
// page on the right.
#pragma once

#include "app/StandardsCore.h"
#include "editors/SettingsEditor.h"
#include "gui/PageHost.h"
#include "gui/PageView.h"

#include <QSplitter>
#include <QStackedWidget>
#include <QTreeWidget>
#include <map>

class CSettingsTreeCtrl : public QTreeWidget {
    Q_OBJECT
public:
    explicit CSettingsTreeCtrl(QWidget* parent = nullptr);
    void Fill(const std::vector<SSettingsPage>& pages);
    const SSettingsPage* PageOf(const QTreeWidgetItem* item) const;
    QTreeWidgetItem* FindPage(const QString& title, const QString& parentTitle = {}) const;

private:
    void Add(QTreeWidgetItem* parent, const std::vector<SSettingsPage>& pages);
    std::vector<SSettingsPage> m_pages;
    std::map<const QTreeWidgetItem*, const SSettingsPage*> m_pageOf;
};

class CStandardDocument : public QSplitter {
    Q_OBJECT
public:
    CStandardDocument(CStandardsCore& core, IPageHost& host, std::int32_t standardId,
                      QWidget* parent = nullptr);
    std::int32_t StandardId() const { return m_standardId; }
    CSettingsTreeCtrl* Pages() const { return m_tree; }
    // The page shown for a tree item, made when first chosen.
    CPageView* ShowPage(QTreeWidgetItem* item);
    CPageView* CurrentPage() const { return qobject_cast<CPageView*>(m_view->currentWidget()); }
    // The standard's files changed behind the window: every page made so far
    // that holds no changes shows them afresh.
    void FilesChanged();

protected:
    // Every page made so far answers the close question, in the tree's order;
    // the first that keeps the window open is shown.
    void closeEvent(QCloseEvent* event) override;

private:
    CPageView* MakePage(const SSettingsPage& page);

    CStandardsCore& m_core;
    IPageHost& m_host;
    std::int32_t m_standardId;
    CSettingsTreeCtrl* m_tree;
    QStackedWidget* m_view;
    std::map<const QTreeWidgetItem*, CPageView*> m_made;
};
