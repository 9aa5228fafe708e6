#include "gui/FileLocationsFormView.h"

#include "gui/MainFrame.h"
#include "gui/QtText.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

CFileLocationsFormView::CFileLocationsFormView(CDeskCore& core, CMainFrame& frame,
                                               std::int32_t standardId, QWidget* parent)
    : CPageView(parent), m_core(core), m_frame(frame), m_editor(core.projects, core.prompter),
      m_apply(new QPushButton(tr("Apply"), this)), m_help(new QPushButton(tr("Help..."), this)) {
    setObjectName(QStringLiteral("fileLocationsFormView"));
    m_apply->setObjectName(QStringLiteral("applyButton"));
    m_help->setObjectName(QStringLiteral("helpButton"));
    m_editor.Open(standardId);

    auto* header = new QLabel(tr("File Locations"), this);
    QFont bold = header->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    header->setFont(bold);

    auto* grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    grid->setRowMinimumHeight(4, 10);
    const auto& rows = m_editor.Rows();
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
        const QString label = Q(rows[static_cast<std::size_t>(row)].label);
        auto* edit = new QLineEdit(this);
        edit->setObjectName(QStringLiteral("folder%1").arg(row));
        edit->setPlaceholderText(tr("(none)"));
        auto* browse = new QPushButton(tr("Browse..."), this);
        browse->setObjectName(QStringLiteral("browse%1").arg(row));
        browse->setToolTip(tr("Choose the %1").arg(label));
        // The drawings folders, a gap, then the standard's shared folders.
        const int line = row < 4 ? row : row + 1;
        grid->addWidget(new QLabel(label + QLatin1Char(':'), this), line, 0);
        grid->addWidget(edit, line, 1);
        grid->addWidget(browse, line, 2);
        connect(edit, &QLineEdit::editingFinished, this,
                [this, row, edit] { Commit(row, edit->text()); });
        connect(browse, &QPushButton::clicked, this, [this, row] { Browse(row); });
        m_edits.push_back(edit);
    }

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(header);
    layout->addSpacing(8);
    layout->addLayout(grid);
    layout->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_apply);
    buttons->addWidget(m_help);
    layout->addLayout(buttons);

    connect(m_apply, &QPushButton::clicked, this, [this] {
        m_editor.Apply();
        Update();
    });
    connect(m_help, &QPushButton::clicked, this,
            [this] { m_frame.ShowHelp(CFileLocationsEditor::kHelpTopic); });
    Update();
}

void CFileLocationsFormView::Commit(int row, const QString& text) {
    if (m_committing || row < 0 || row >= static_cast<int>(m_edits.size()))
        return;
    m_committing = true;
    const auto& shown = m_editor.Rows()[static_cast<std::size_t>(row)].folder;
    if (W(text) != shown) {
        m_editor.SetFolder(static_cast<std::size_t>(row), W(text));
        emit Modified();
    }
    Update();
    m_committing = false;
}

void CFileLocationsFormView::Browse(int row) {
    const SLocationRow& location = m_editor.Rows()[static_cast<std::size_t>(row)];
    const QString folder = m_frame.FileDialogs().Folder(
        this, tr("Choose the %1").arg(Q(location.label)), Q(location.folder));
    if (!folder.isEmpty())
        Commit(row, folder);
}

void CFileLocationsFormView::Update() {
    const auto& rows = m_editor.Rows();
    for (std::size_t i = 0; i < rows.size() && i < m_edits.size(); ++i) {
        m_edits[i]->setText(Q(rows[i].folder));
        m_edits[i]->setCursorPosition(0);
        // A changed folder stands out until it is saved.
        QFont font = m_edits[i]->font();
        font.setBold(rows[i].changed);
        m_edits[i]->setFont(font);
    }
    m_apply->setEnabled(m_editor.ApplyEnabled());
}

bool CFileLocationsFormView::CanClose() {
    const bool closed = m_editor.Close();
    Update();
    return closed;
}
