// A page of a standard's window. The pages whose editor keeps changes until
// "Apply" share their header, the "Apply" and "Help..." buttons and the
// question on closing; the window asks every page it has made before it
// closes.
#pragma once

#include "app/StandardsCore.h"
#include "editors/PageEditor.h"
#include "gui/PageHost.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QList>
#include <QPushButton>
#include <QWidget>

class CPageView : public QWidget {
    Q_OBJECT
public:
    CPageView(CStandardsCore& core, IPageHost& host, QWidget* parent = nullptr);

    // The window is closing: a modified page asks whether to save (Yes saves,
    // No discards). False keeps the window open, with the changes.
    virtual bool CanClose();

signals:
    // The user changed something on the page.
    void Modified();

protected:
    // The editor behind "Apply" and the question on closing; a page without
    // one saves each change at once and never asks.
    void SetEditor(CPageEditor& editor) { m_editor = &editor; }
    // The page's bold title.
    QLabel* MakeHeader(const QString& text = {});
    // The row under the page: `left`, a gap, `right`, then "Apply" (on a page
    // with an editor) and "Help...".
    QHBoxLayout* MakeButtons(const QList<QWidget*>& left = {}, const QList<QWidget*>& right = {});
    // The topic "Help..." opens.
    virtual std::wstring HelpTopic() const { return {}; }
    // Shows the editor's rows again: after Apply, after the question on
    // closing (the window may stay open because of another page).
    virtual void Refresh() {}
    // An edit was stored: "Apply" follows the editor and the window hears of it.
    void Edited();
    void UpdateApply();

    CStandardsCore& m_core;
    IPageHost& m_host;

private:
    CPageEditor* m_editor = nullptr;
    QPushButton* m_apply = nullptr;
};
