#pragma once

#include <QString>

namespace kovanix::yedek {

/// What is done to the names of files and to make them last: each of it one step that either happens or
/// doesn't, whenever the power goes. Every step throws a Failure that says what the disk lacks.
class Storage {
public:
    Storage() = default;
    virtual ~Storage() = default;
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;

    /// Has a file keep what it holds.
    virtual void sync(const QString& file);
    /// Has a folder keep the names that it holds.
    virtual void syncFolder(const QString& folder);
    /// Renames, over another file too.
    virtual void rename(const QString& from, const QString& to);
    /// Gives a file a second name, which nothing has yet.
    virtual void link(const QString& from, const QString& to);
    /// Removes a name; one that isn't there is no failure.
    virtual void remove(const QString& file);
};

/// Makes sure that a folder's disk takes so many bytes more and keeps some room for the shop, which has to go
/// on selling. @throws Failure
void requireRoom(const QString& folder, qint64 bytes);

/// Copies a file with its permissions; the copy isn't synced, and none is left where that fails.
/// @param to  there is none yet. @throws Failure
void copyFile(const QString& from, const QString& to);

/// Has a file that is being written reach the disk bit by bit. Left to the system, much would gather in
/// memory and then go at once, and a till's few bytes behind it.
class SteadyWrites {
public:
    explicit SteadyWrites(const QString& path);
    ~SteadyWrites();
    SteadyWrites(const SteadyWrites&) = delete;
    SteadyWrites& operator=(const SteadyWrites&) = delete;

    /// So many bytes have been written by now, from the file's beginning.
    void upTo(qint64 bytes);
    /// What the file holds has.
    void upToEnd();

private:
    int m_handle;
    qint64 m_done = 0;
};

/// Words for the system's last error about a file.
QString systemWords(const QString& path, int error);

}  // namespace kovanix::yedek
