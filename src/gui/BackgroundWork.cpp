#include "gui/BackgroundWork.h"

#include "gui/QtText.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <climits>
#include <exception>
#include <mutex>
#include <thread>

namespace {

// Questions being asked through CGuiThreadPrompter now.
std::atomic<int> g_questionsUp{0};

// What the worker last reported, read by the GUI thread's clock.
struct SReported {
    std::mutex mutex;
    std::size_t done = 0;
    std::size_t total = 0;
    std::wstring item;
};

// A progress dialog counts in int: large totals (bytes) are scaled down.
std::pair<int, int> Scaled(std::size_t done, std::size_t total) {
    int shift = 0;
    while ((total >> shift) > static_cast<std::size_t>(INT_MAX))
        ++shift;
    return {static_cast<int>(done >> shift), static_cast<int>(total >> shift)};
}

} // namespace

void CBackgroundWork::Run(QWidget* parent, const QString& text, bool canStop,
                          const std::function<void(const CProgress&)>& work) {
    QProgressDialog dialog(text, canStop ? QObject::tr("Cancel") : QString(), 0, 0, parent);
    dialog.setObjectName(QStringLiteral("workProgress"));
    dialog.setWindowTitle(QApplication::applicationDisplayName());
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setAutoReset(false);
    dialog.setAutoClose(false);
    // Shown by the clock below only, never on its own.
    dialog.setMinimumDuration(INT_MAX);
    if (!canStop)
        dialog.setCancelButton(nullptr);

    SReported reported;
    std::atomic<bool> stop{false};
    std::atomic<bool> finished{false};
    const CProgress progress = [&](std::size_t done, std::size_t total, const std::wstring& item) {
        {
            const std::lock_guard lock(reported.mutex);
            reported.done = done;
            reported.total = total;
            reported.item = item;
        }
        return !stop;
    };

    QElapsedTimer clock;
    clock.start();
    QTimer tick;
    tick.setInterval(50);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        if (dialog.wasCanceled())
            stop = true;
        QWidget* modal = QApplication::activeModalWidget();
        if (g_questionsUp > 0 || (modal && modal != &dialog)) {
            // A question of the work is up: out of its way until it is answered.
            dialog.hide();
            return;
        }
        if (!dialog.isVisible() && !stop && clock.elapsed() >= showAfterMs)
            dialog.show();
        if (!dialog.isVisible())
            return;
        const std::lock_guard lock(reported.mutex);
        if (reported.total > 0) {
            const auto [done, total] = Scaled(reported.done, reported.total);
            dialog.setMaximum(total);
            dialog.setValue(done);
        }
        dialog.setLabelText(reported.item.empty() ? text
                                                  : text + QLatin1Char('\n') + Q(reported.item));
    });
    tick.start();

    QApplication::setOverrideCursor(Qt::BusyCursor);
    std::exception_ptr failure;
    std::thread worker([&] {
        try {
            work(progress);
        } catch (...) {
            failure = std::current_exception();
        }
        finished = true;
        // Wakes the loop below at once.
        QMetaObject::invokeMethod(
            qApp, [] {}, Qt::QueuedConnection);
    });
    QEventLoop loop;
    while (!finished) {
        // Until the dialog is up, clicks and keys wait: the window must not
        // start other work on what this work is changing.
        const QEventLoop::ProcessEventsFlags flags =
            dialog.isVisible() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents;
        loop.processEvents(flags | QEventLoop::WaitForMoreEvents);
    }
    worker.join();
    tick.stop();
    QApplication::restoreOverrideCursor();
    dialog.hide();
    if (failure)
        std::rethrow_exception(failure);
}

EPromptAnswer CGuiThreadPrompter::Ask(const SPrompt& prompt) {
    EPromptAnswer answer = prompt.defaultAnswer;
    const auto ask = [&] {
        ++g_questionsUp;
        answer = m_next.Ask(prompt);
        --g_questionsUp;
    };
    if (QThread::currentThread() == qApp->thread())
        ask();
    else
        QMetaObject::invokeMethod(qApp, ask, Qt::BlockingQueuedConnection);
    return answer;
}
