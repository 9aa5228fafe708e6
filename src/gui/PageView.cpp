#include "gui/PageView.h"

#include "datafile/DatafileProblem.h"

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
