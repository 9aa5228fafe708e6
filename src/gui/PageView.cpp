#include "gui/PageView.h"

#include "datafile/DatafileProblem.h"
#include "gui/PushDialog.h"

CPageView::CPageView(CStandardsCore& core, IPageHost& host, QWidget* parent)
    : QWidget(parent), m_core(core), m_host(host) {}

void CPageView::FilesChanged() {
    if (m_editor && m_editor->Revert())
        Refresh();
}

bool CPageView::CanClose() {
    if (!m_editor)
        return true;
    const bool closed = m_editor->Close();
    Refresh();
    UpdateApply();
    return closed;
}

QLabel* CPageView::MakeHeader(const QString& text) {
    auto* header = new QLabel(text, this);
    QFont bold = header->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    header->setFont(bold);
    return header;
}

QPushButton* CPageView::MakeRestoreButton(std::function<void()> restore) {
    auto* button = new QPushButton(tr("Restore Defaults"), this);
    button->setObjectName(QStringLiteral("restoreDefaultsButton"));
    connect(button, &QPushButton::clicked, this, [this, restore = std::move(restore)] {
        restore();
        Refresh();
        Edited();
    });
    return button;
}

QPushButton* CPageView::MakePushButton(CRowChoice rows) {
    auto* button = new QPushButton(tr("Apply to &Other Standards..."), this);
    button->setObjectName(QStringLiteral("pushButton"));
    button->setToolTip(tr("Set values of this page in other standards"));
    connect(button, &QPushButton::clicked, this, [this, rows = std::move(rows)] {
        if (!m_editor)
            return;
        // Before a save shows the rows afresh and forgets what was chosen.
        std::vector<std::wstring> all, chosen;
        rows(all, chosen);
        if (m_editor->ApplyEnabled()) {
            // The other standards get what the files hold.
            const SPrompt question{
                L"This page has changes that are not saved.\n\nSave them before they are "
                L"applied to other standards?",
                L"", EPromptButtons::YesNoCancel, EPromptIcon::Question, EPromptAnswer::Yes};
            const EPromptAnswer answer = m_core.prompter.Ask(question);
            if (answer == EPromptAnswer::Cancel)
                return;
            if (answer == EPromptAnswer::Yes) {
                ClearDatafileProblem();
                const bool saved = m_editor->Apply();
                Refresh();
                UpdateApply();
                if (!saved)
                    return;
            }
        }
        CPushDialog dialog(m_core, m_host, m_editor->ProjectId(), all, chosen, this);
        dialog.exec();
    });
    return button;
}

QHBoxLayout* CPageView::MakeButtons(const QList<QWidget*>& left, const QList<QWidget*>& right) {
    auto* buttons = new QHBoxLayout;
    for (QWidget* widget : left)
        buttons->addWidget(widget);
    buttons->addStretch(1);
    for (QWidget* widget : right)
        buttons->addWidget(widget);
    if (m_editor) {
        m_apply = new QPushButton(tr("Apply"), this);
        m_apply->setObjectName(QStringLiteral("applyButton"));
        connect(m_apply, &QPushButton::clicked, this, [this] {
            ClearDatafileProblem();
            m_editor->Apply();
            Refresh();
            UpdateApply();
        });
        buttons->addWidget(m_apply);
        UpdateApply();
    }
    auto* help = new QPushButton(tr("Help..."), this);
    help->setObjectName(QStringLiteral("helpButton"));
    connect(help, &QPushButton::clicked, this, [this] { m_host.ShowHelp(HelpTopic()); });
    buttons->addWidget(help);
    return buttons;
}

void CPageView::Edited() {
    UpdateApply();
    emit Modified();
}

void CPageView::UpdateApply() {
    if (m_apply && m_editor)
        m_apply->setEnabled(m_editor->ApplyEnabled());
}
