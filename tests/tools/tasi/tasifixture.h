#pragma once

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "databasefile.h"
#include "servercluster.h"
#include "tasi/failure.h"
#include "tasi/tofile.h"
#include "tasi/toserver.h"

namespace kovanix::tasi {

/// The server that all cases of a test program share; nothing where none is installed or starts.
ServerCluster* sharedCluster();

/// What all tests of moves begin with. They are skipped where no server is installed.
class TasiTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
};

/// Does something once a move has come to a step, and where rows go over or are compared in it, to the midst
/// of a table of many.
class AtStep {
public:
    AtStep(Progress::Step step, std::function<void()> action) : m_step(step), m_action(std::move(action)) {}

    void operator()(const Progress& progress);
    bool hasHappened() const { return *m_happened; }

private:
    Progress::Step m_step;
    std::function<void()> m_action;
    std::shared_ptr<bool> m_happened = std::make_shared<bool>(false);  ///< of all copies
};

/// A shop's folder with a file, a database for it on the shared server, and the pointer between them.
class MovingShop {
public:
    /// Makes the till's tables in the file, and a pointer with the server's address.
    explicit MovingShop(const QString& password = {});
    ~MovingShop();
    MovingShop(const MovingShop&) = delete;
    MovingShop& operator=(const MovingShop&) = delete;

    QString folder() const { return m_folder.path(); }
    QString path(const QString& name) const { return m_folder.filePath(name); }
    QString file() const { return path(QStringLiteral("kovanix.data")); }
    QString movedFile() const { return file() + QStringLiteral(".tasindi"); }
    const QString& pointer() const { return m_pointer; }
    const QString& database() const { return m_database; }
    const QString& password() const { return m_password; }

    /// Has the file hold 30,001 rows, one of them odd: enough to break off among them.
    void fill() const;
    /// Runs statements of the engine's own on the file, past the till.
    void run(const QStringList& statements) const;
    /// Every cell of every table of a file with the kind that it is stored as, row by row.
    QMap<QString, QStringList> cells(const QString& path) const;
    /// What the server gives, through a program of its own.
    QList<QStringList> serverRows(const QString& sql) const;
    /// The names of the shop's tables on the server.
    QStringList serverTables() const;

    ToServer toServer() const;
    ToFile toFile(const QString& path) const;

private:
    QTemporaryDir m_folder;
    QString m_password;
    QString m_database;
    QString m_pointer;
};

/// The code that a move ends with; done where it throws nothing. Its words are told where the code isn't
/// the wanted one.
ExitCode codeOf(const std::function<void()>& move);

QString contents(const QString& path);

}  // namespace kovanix::tasi
