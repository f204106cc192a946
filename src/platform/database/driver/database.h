#pragma once

#include <QByteArray>
#include <QSqlError>
#include <QString>
#include <chrono>
#include <functional>
#include <utility>
#include <vector>

#include "engine.h"
#include "filecopier.h"

namespace kovanix::engine {

class Result;

struct OpenOptions {
    bool uri = false;
    bool readOnly = false;
    bool exclusive = false;  ///< from the first read on: a log is read without memory that others share
    std::chrono::milliseconds busyTimeout{5000};
};

/// A handle of the engine, and the statements that run on it.
class Database {
public:
    Database() = default;
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Opens a file. One with a password has its catalogue read, so that a wrong password fails here.
    ///
    /// The encrypting library's default format is tried first. When the file doesn't decrypt, the formats of
    /// the older releases that the library can still read are tried, newest first; the file stays in the
    /// format that it has. A file of no bytes, or one that the open itself makes, gets the default format
    /// with its first write.
    /// @return an error of type NoError when the file is open
    QSqlError open(const QString& name, const QString& password, const OpenOptions& options);
    void close();

    bool isOpen() const { return m_handle != nullptr; }
    sqlite3* handle() const { return m_handle; }

    /// Has a step run, in the middle of the statement, whenever one begins to wait for a file that is locked.
    void setWaitBegins(std::function<void()> step) { m_waitBegins = std::move(step); }

    /// See FileCopier.
    QSqlError copyTo(const QString& target, const std::function<int(const CopyState&)>& next);

    /// The library's last error on this handle.
    QSqlError error(const QString& what, QSqlError::ErrorType type) const;

    void add(Result* result) { m_results.push_back(result); }
    void remove(Result* result) { std::erase(m_results, result); }

private:
    int openOnce(const QByteArray& name, const QByteArray& password, const OpenOptions& options,
                 const QByteArray& format);
    static int onLocked(void* database, int times);

    sqlite3* m_handle = nullptr;
    QByteArray m_key;     ///< with which it is open
    QByteArray m_format;  ///< likewise
    std::function<void()> m_waitBegins;
    std::chrono::milliseconds m_busyTimeout{};
    std::chrono::steady_clock::time_point m_waitEnd;
    std::vector<Result*> m_results;
};

}  // namespace kovanix::engine
