#pragma once

#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace kovanix {

/// A PostgreSQL server of the test's own, on the loopback and a socket in a folder of its own. It runs as an
/// ordinary user, for it refuses the administrator, and ends with the object or with the test's process.
class ServerCluster {
public:
    ServerCluster() = default;
    ~ServerCluster();
    ServerCluster(const ServerCluster&) = delete;
    ServerCluster& operator=(const ServerCluster&) = delete;

    /// What this machine lacks for it; empty when all is there.
    static QString missing();

    /// A folder in which the clusters that are started from now on lie; empty for the usual one.
    static inline QString disk;

    /// Makes the cluster and starts its server: in memory where there is plenty, unless its syncs count.
    /// @param settings  further ones, as "fsync=on"
    bool start(const QStringList& settings = {});

    static QString host() { return QStringLiteral("127.0.0.1"); }
    int port() const { return m_port; }
    /// The role that owns the databases made here, and its password; connections over the loopback need it.
    static QString role() { return QStringLiteral("kasa"); }
    static QString password() { return QStringLiteral("kasa;parola=1"); }

    /// Makes a database for a shop: locale C, UTF-8, with citext, owned by the role.
    /// @param original  a database of this server that nobody uses, to be copied; empty for an empty one
    /// @return its name; empty on failure
    QString createDatabase(const QString& original = {});
    void dropDatabase(const QString& name) const;
    /// The same with the next database that is made, which saves a program and its connection.
    void dropLater(const QString& name) { m_unused.append(name); }

    /// Writes a pointer file to a database of this server. @return its path
    QString writePointer(const QString& folder, const QString& database) const;

    /// Runs statements as the server's administrator through a program of the server's own, which nothing of
    /// the till has a part in. @return the rows, a text for each field; null fields are empty texts
    QList<QStringList> rows(const QString& database, const QString& sql) const;

    /// Kills every process of the server at once, as the machine's end would.
    void kill();
    /// Ends the server after its connections have been cut.
    void stop();
    /// Starts the server again on the same port.
    bool restart();
    /// Has every process of the server stand still, connections and all, or go on.
    void pause();
    void resume();
    bool isRunning() const { return m_server.state() == QProcess::Running; }

    /// What the server wrote about itself, for a failed test.
    QByteArray log() const;

private:
    QString path(const char* name) const { return m_dir->filePath(QString::fromLatin1(name)); }
    bool ask(QProcess& psql, const QString& database, const QStringList& statements) const;
    bool runServer();
    void signalAll(int signal) const;

    std::unique_ptr<QTemporaryDir> m_dir;
    QProcess m_server;
    int m_port = 0;
    int m_databases = 0;
    QStringList m_unused;  ///< databases that are to be dropped
    QStringList m_settings;
};

/// The server of the test program, which starts with the first question for it.
ServerCluster& testServer();

}  // namespace kovanix
