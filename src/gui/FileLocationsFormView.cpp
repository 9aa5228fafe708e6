#include "gui/FileLocationsFormView.h"

#include "gui/QtText.h"

#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>

CFileLocationsFormView::CFileLocationsFormView(CStandardsCore& core, IPageHost& host,
                                               std::int32_t standardId, QWidget* parent)
    : CEditorPageView(core, host, parent, QStringLiteral("fileLocationsFormView")) {
    m_editor.Open(standardId);

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

    m_header->setText(tr("File Locations"));
    LayOutForm(grid);
    Refresh();
}

void CFileLocationsFormView::Commit(int row, const QString& text) {
    if (m_committing || row < 0 || row >= static_cast<int>(m_edits.size()))
        return;
    m_committing = true;
    const auto& shown = m_editor.Rows()[static_cast<std::size_t>(row)].folder;
    const bool changed =
        W(text) != shown && m_editor.SetFolder(static_cast<std::size_t>(row), W(text));
    Refresh();
    if (changed)
        Edited();
    m_committing = false;
}

void CFileLocationsFormView::Browse(int row) {
    const SLocationRow& location = m_editor.Rows()[static_cast<std::size_t>(row)];
    const QString folder = m_host.FileDialogs().Folder(
        this, tr("Choose the %1").arg(Q(location.label)), Q(location.folder));
    if (!folder.isEmpty())
        Commit(row, folder);
}

void CFileLocationsFormView::Refresh() {
    const auto& rows = m_editor.Rows();
    for (std::size_t i = 0; i < rows.size() && i < m_edits.size(); ++i) {
        m_edits[i]->setText(Q(rows[i].folder));
        m_edits[i]->setCursorPosition(0);
        // A changed folder stands out until it is saved.
        QFont font = m_edits[i]->font();
        font.setBold(rows[i].changed);
        m_edits[i]->setFont(font);
    }
}
