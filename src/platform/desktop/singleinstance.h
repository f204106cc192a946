#pragma once

#include <QObject>
#include <QString>
#include <memory>

class QLocalServer;
class QLocalSocket;

namespace kovanix {

/// A name that one process of the whole machine holds, whichever user runs it, and a way to bring that
/// process to the front.
///
/// The name is an abstract Unix socket: the kernel gives it to one process and takes it back when that
/// process ends in whatever way, and it has no owner and no file permissions. A request is one line, "raise"
/// with the desktop's activation token behind it where there is one; the holder answers with the line
/// "taken".
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// Tries to take the name. Needs the application object.
    explicit SingleInstance(const QString& name, QObject* parent = nullptr);
    ~SingleInstance() override;

    /// Whether this process holds the name. False also when the machine refused the attempt.
    bool isFirst() const;

    /// Asks the process that holds the name to come to the front; waits at most the given time for it to take
    /// the request. @return whether it was taken.
    bool raiseFirst(int timeoutMilliseconds = 1000) const;

Q_SIGNALS:
    /// Another process asked the holder to come to the front. While this runs, the environment's
    /// XDG_ACTIVATION_TOKEN is the requester's, where it has one: the window system asks for it there.
    void raiseRequested();

private:
    void acceptClients();
    void readFrom(QLocalSocket& client);

    QString m_name;
    std::unique_ptr<QLocalServer> m_server;
};

/// Brings the program's topmost visible window to the front: a message box that stands open, else the active
/// window, else (while a SingleInstance is held) the one that was active last, else the newest. A minimised
/// window comes back.
void raiseApplication();

}  // namespace kovanix
