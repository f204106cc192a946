#include "kit/backgroundwork.h"

#include <QElapsedTimer>
#include <QRunnable>
#include <chrono>
#include <exception>

#include "runtime/runtimeerror.h"

namespace kovanix {

namespace {

constexpr std::chrono::milliseconds betweenSigns{50};

}  // namespace

BackgroundWork::BackgroundWork(QObject* parent) : QObject(parent) {
    m_thread.setMaxThreadCount(1);
}

BackgroundWork::~BackgroundWork() {
    cancel();
    m_thread.waitForDone();
}

void BackgroundWork::cancel() {
    if (m_cancel)
        *m_cancel = true;
}

void BackgroundWork::end(void (BackgroundWork::*how)()) {
    // Behind whatever the work has sent before.
    QMetaObject::invokeMethod(
        this,
        [this, how] {
            m_running = false;
            (this->*how)();
        },
        Qt::QueuedConnection);
}

void BackgroundWork::start(std::function<void(WorkProgress&)> work) {
    Q_ASSERT(!m_running);
    m_running = true;
    m_cancel = std::make_shared<std::atomic<bool>>(false);
    m_thread.start([this, work = std::move(work), cancel = m_cancel] {
        QElapsedTimer sinceSign;
        WorkProgress progress(
            [&](const QString& what, qint64 done, qint64 total) {
                if (sinceSign.isValid() && !sinceSign.hasExpired(betweenSigns.count()))
                    return;
                sinceSign.start();
                Q_EMIT progressed(what, done, total);
            },
            cancel);
        const auto fail = [this](const QString& words) {
            QMetaObject::invokeMethod(
                this,
                [this, words] {
                    m_running = false;
                    Q_EMIT failed(words);
                },
                Qt::QueuedConnection);
        };
        try {
            work(progress);
            end(&BackgroundWork::finished);
        } catch (const WorkProgress::Cancelled&) {
            end(&BackgroundWork::cancelled);
        } catch (const RuntimeError& error) {
            fail(error.description());
        } catch (const std::exception& error) {
            fail(QString::fromUtf8(error.what()));
        }
    });
}

}  // namespace kovanix
