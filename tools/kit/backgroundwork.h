#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <memory>

namespace kovanix {

/// What a piece of work says of itself while it runs, and how it learns that nobody wants it any more. May be
/// used from the thread that works.
class WorkProgress {
public:
    /// Thrown by tell, so that the work ends by cleaning up behind itself.
    struct Cancelled {};

    /// Says how far the work is. @param total  0 where that can't be known
    /// @throws Cancelled once the work has been cancelled
    void tell(const QString& what, qint64 done, qint64 total) const {
        if (m_cancelled && *m_cancelled)
            throw Cancelled();
        if (m_listener)
            m_listener(what, done, total);
    }

    /// For the command line and tests. @param listener  called by the thread that works
    explicit WorkProgress(std::function<void(const QString&, qint64, qint64)> listener = {},
                          std::shared_ptr<const std::atomic<bool>> cancelled = {})
        : m_listener(std::move(listener)), m_cancelled(std::move(cancelled)) {}

private:
    std::function<void(const QString&, qint64, qint64)> m_listener;
    std::shared_ptr<const std::atomic<bool>> m_cancelled;
};

/// Does one piece of work at a time beside the window, so that the window answers meanwhile. What the work
/// opens (connections above all), it opens, uses and closes within itself: nothing of it is the window's.
class BackgroundWork : public QObject {
    Q_OBJECT

public:
    explicit BackgroundWork(QObject* parent = nullptr);
    /// Cancels, and waits for the end.
    ~BackgroundWork() override;

    /// Starts the work; nothing may be running. The signals come in the window's thread.
    void start(std::function<void(WorkProgress&)> work);
    void cancel();
    bool isRunning() const { return m_running; }

Q_SIGNALS:
    /// At most some 20 times a second.
    void progressed(const QString& what, qint64 done, qint64 total);
    void finished();
    void cancelled();
    /// The work threw a RuntimeError; its words.
    void failed(const QString& description);

private:
    void end(void (BackgroundWork::*how)());

    QThreadPool m_thread;
    std::shared_ptr<std::atomic<bool>> m_cancel;
    bool m_running = false;
};

}  // namespace kovanix
