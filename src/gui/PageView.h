// A page of a standard's window. The pages whose editor keeps changes until
// "Apply" share their header, the "Apply" and "Help..." buttons and the
// question on closing; the window asks every page it has made before it
// closes.
#pragma once

#include "app/StandardsCore.h"
#include "editors/PageEditor.h"
#include "gui/PageHost.h"
#include "gui/QtText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QList>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

class CPageView : public QWidget {
    Q_OBJECT
public:
    CPageView(CStandardsCore& core, IPageHost& host, QWidget* parent = nullptr);

    // The window is closing: a modified page asks whether to save (Yes saves,
    // No discards). False keeps the window open, with the changes.
    virtual bool CanClose();
    // The standard's files changed behind the page: an unmodified page shows
    // them afresh.
    virtual void FilesChanged();

signals:
    // The user changed something on the page.
    void Modified();

protected:
    // The editor behind "Apply" and the question on closing; a page without
    // one saves each change at once and never asks.
    void SetEditor(CPageEditor& editor) { m_editor = &editor; }
    // The page's bold title.
    QLabel* MakeHeader(const QString& text = {});
    // "Restore Defaults": runs `restore`, shows the rows again and marks the
    // page changed.
    QPushButton* MakeRestoreButton(std::function<void()> restore);
    // The row under the page: `left`, a gap, `right`, then "Apply" (on a page
    // with an editor) and "Help...".
    QHBoxLayout* MakeButtons(const QList<QWidget*>& left = {}, const QList<QWidget*>& right = {});
    // "Apply to Other Standards...": `rows` gives the comparison row ids of
    // the page's values and those chosen on it. A modified page is saved
    // first, when the user agrees.
    using CRowChoice =
        std::function<void(std::vector<std::wstring>& all, std::vector<std::wstring>& chosen)>;
    QPushButton* MakePushButton(CRowChoice rows);
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

// A page whose rows an editor of the core keeps: the editor is made from the
// core's registries and prompter, names the help topic, and (unless it saves
// each change at once) drives "Apply" and the question on closing.
template <class TEditor> class CEditorPageView : public CPageView {
public:
    TEditor& Editor() { return m_editor; }

protected:
    enum class ESaving { OnApply, AtOnce };

    // `name`: the page's object name, by which tests and style sheets find it.
    CEditorPageView(CStandardsCore& core, IPageHost& host, QWidget* parent, const QString& name,
                    ESaving saving = ESaving::OnApply)
        : CPageView(core, host, parent), m_editor(core.projects, core.prompter),
          m_header(MakeHeader()) {
        setObjectName(name);
        if (saving == ESaving::OnApply)
            SetEditor(m_editor);
    }

    // The same for an editor that also needs `extra`, one of the core's
    // objects; it saves on Apply.
    template <class TExtra>
    CEditorPageView(CStandardsCore& core, IPageHost& host, QWidget* parent, const QString& name,
                    TExtra& extra)
        : CPageView(core, host, parent), m_editor(core.projects, core.prompter, extra),
          m_header(MakeHeader()) {
        setObjectName(name);
        SetEditor(m_editor);
    }

    std::wstring HelpTopic() const override { return m_editor.HelpTopic(); }
    QPushButton* MakeRestoreButton() {
        return CPageView::MakeRestoreButton([this] { m_editor.RestoreDefaults(); });
    }

    // The header, the fields at their natural height, then the buttons.
    void LayOutForm(QLayout* fields, const QList<QWidget*>& left = {}) {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(m_header);
        layout->addSpacing(8);
        layout->addLayout(fields);
        layout->addStretch(1);
        layout->addLayout(MakeButtons(left));
    }
    // The header, `above`, the grid taking the spare height, `below`, then
    // the buttons.
    void LayOutGrid(QWidget* grid, QHBoxLayout* buttons, QWidget* above = nullptr,
                    QWidget* below = nullptr) {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(m_header);
        if (above)
            layout->addWidget(above);
        layout->addWidget(grid, 1);
        if (below)
            layout->addWidget(below);
        layout->addLayout(buttons);
    }

    // Shows the editor's rows afresh: the header, then an empty grid of as
    // many rows, whose changes are not taken as input until EndFill.
    int BeginFill(QTableWidget* grid) {
        m_filling = true;
        m_header->setText(Q(m_editor.Header()));
        const int count = static_cast<int>(m_editor.Rows().size());
        grid->clearContents();
        grid->setRowCount(count);
        return count;
    }
    void EndFill() { m_filling = false; }

    TEditor m_editor;
    QLabel* m_header;
    // The grid is being filled: its change signals are not the user's.
    bool m_filling = false;
};
