#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace kovanix {

/// A CUPS server of the test's own on a local socket, with a default queue ("Kasa") whose printer keeps what
/// it is given, and one ("Kapali") that takes no jobs. Ends with the object.
class CupsServer {
public:
    CupsServer() = default;
    ~CupsServer();
    CupsServer(const CupsServer&) = delete;
    CupsServer& operator=(const CupsServer&) = delete;

    /// What this machine lacks for it; empty when all is there.
    static QString missing();

    bool start();

    /// The path of the server's socket, the value of CUPS_SERVER.
    QString socket() const { return path("cups.sock"); }

    /// The jobs that reached the printer, oldest first: PDF files, the job's title in a ".title" beside each.
    QStringList jobs() const;

    /// What the server wrote about itself, for a failed test.
    QByteArray log() const;

private:
    QString path(const char* name) const { return m_dir.filePath(QString::fromLatin1(name)); }
    QString configuration() const;
    QString files() const;
    QString queues() const;
    bool run();

    QTemporaryDir m_dir;
    QProcess m_process;
};

/// The text of a PDF file as it stands on its pages.
QString pageText(const QString& file);

/// The lines that carry text, with single blanks.
QStringList textLines(QString text);

}  // namespace kovanix
