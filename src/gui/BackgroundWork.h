// Long work off the GUI thread: a copy with its drawings, a purge, an export
// or import. The work runs on a worker thread while the window goes on
// painting; it takes no input meanwhile but the answers to the work's own
// questions. A busy cursor shows at once and, when the work takes longer
// than a moment, a progress dialog with Cancel where the work can stop. The
// dialog steps aside while a question is up, so that it never covers it.
#pragma once

#include "store/Progress.h"
#include "store/Prompter.h"

#include <QString>
#include <QWidget>
#include <functional>

class CBackgroundWork {
public:
    // How long work runs before its progress dialog appears.
    static inline int showAfterMs = 400;

    // Runs `work` and returns once it is over; an exception from the work is
    // thrown again here.
    static void Run(QWidget* parent, const QString& text, bool canStop,
                    const std::function<void(const CProgress&)>& work);
};

// Questions from any thread: one asked on a worker thread is shown on the
// GUI thread, and the worker waits for the answer.
class CGuiThreadPrompter : public IPrompter {
public:
    explicit CGuiThreadPrompter(IPrompter& next) : m_next(next) {}
    EPromptAnswer Ask(const SPrompt& prompt) override;

private:
    IPrompter& m_next;
};
