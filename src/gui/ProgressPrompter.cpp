#include "gui/ProgressPrompter.h"

CProgressPrompter::~CProgressPrompter() = default;

void CProgressPrompter::Begin(QWidget* parent, const QString& text) {
    m_progress = std::make_unique<QProgressDialog>(text, QObject::tr("Cancel"), 0, 0, parent);
    m_progress->setWindowModality(Qt::WindowModal);
    m_progress->setMinimumDuration(500);
    m_canceled = false;
}

bool CProgressPrompter::Step(std::size_t done, std::size_t total, const QString& text) {
    if (!m_progress)
        return true;
    m_progress->setMaximum(static_cast<int>(total));
    m_progress->setValue(static_cast<int>(done));
    m_progress->setLabelText(text);
    m_canceled = m_canceled || m_progress->wasCanceled();
    return !m_canceled;
}

void CProgressPrompter::End() {
    m_progress.reset();
}

EPromptAnswer CProgressPrompter::Ask(const SPrompt& prompt) {
    if (m_progress) {
        m_canceled = m_canceled || m_progress->wasCanceled();
        // Hides the dialog and stops its clock; the next step starts both
        // again. A cancel is kept above, as reset() forgets it.
        m_progress->reset();
    }
    return m_next.Ask(prompt);
}
