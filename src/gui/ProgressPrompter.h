// The core's questions and messages while an export or import shows its
// progress. A progress dialog shows itself once its minimum duration has
// passed, even inside a message box's own event loop, and being modal it
// would then sit over the box and take its clicks: so the dialog steps aside
// before every box and comes back with the next step.
#pragma once

#include "store/Prompter.h"

#include <QProgressDialog>
#include <QString>
#include <memory>

class CProgressPrompter : public IPrompter {
public:
    explicit CProgressPrompter(IPrompter& next) : m_next(next) {}
    ~CProgressPrompter() override;

    // Starts the progress of an operation in `parent`'s window.
    void Begin(QWidget* parent, const QString& text);
    // One step: `done` of `total`. False once the user has cancelled.
    bool Step(std::size_t done, std::size_t total, const QString& text);
    // The operation is over: the dialog goes.
    void End();

    EPromptAnswer Ask(const SPrompt& prompt) override;

private:
    IPrompter& m_next;
    std::unique_ptr<QProgressDialog> m_progress;
    bool m_canceled = false;
};
