#pragma once

#include <sys/mount.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <optional>
#include <utility>

#include "data/baglanmamodulu.h"
#include "shopfixture.h"
#include "yedek/failure.h"
#include "yedek/restore.h"
#include "yedek/storage.h"
#include "yedek/takecopy.h"

namespace kovanix::yedek {

/// What a power cut is to what runs: the end, without a word. No handler of failures takes it.
struct PowerCut {};

/// A disk whose power goes at one of the steps, or that fails at one.
class CutStorage : public Storage {
public:
    enum class End { never, cutBefore, cutBehind, fails };

    /// @param step  counted from 1 on
    CutStorage(End end, int step) : m_end(end), m_step(step) {}

    void sync(const QString& file) override {
        at(u"sync " + QFileInfo(file).fileName(), [&] { Storage::sync(file); });
    }
    void syncFolder(const QString& folder) override {
        at(QStringLiteral("folder"), [&] { Storage::syncFolder(folder); });
    }
    void rename(const QString& from, const QString& to) override {
        at(QStringLiteral("name"), [&] { Storage::rename(from, to); });
    }
    void link(const QString& from, const QString& to) override {
        at(QStringLiteral("name"), [&] { Storage::link(from, to); });
    }
    void remove(const QString& file) override {
        const bool isThere = QFileInfo::exists(file);
        at(isThere ? QStringLiteral("name") : QStringLiteral("nothing"), [&] { Storage::remove(file); });
    }

    bool hasStruck() const { return m_struck; }
    const QStringList& steps() const { return m_steps; }

private:
    void at(const QString& what, const std::function<void()>& step) {
        m_steps << what;
        const bool now = m_steps.size() == m_step;
        m_struck = m_struck || (now && m_end != End::never);
        if (now && m_end == End::fails)
            throw Failure(QStringLiteral("disk"));
        if (m_struck && m_end == End::cutBefore)
            throw PowerCut();
        step();
        if (m_struck && m_end == End::cutBehind)
            throw PowerCut();
    }

    End m_end;
    int m_step;
    bool m_struck = false;
    QStringList m_steps;
};

/// A small disk of its own for a test, where this user may have one.
class SmallDisk {
public:
    explicit SmallDisk(const char* options) {
        m_mounted = ::geteuid() == 0 &&
                    ::mount("tmpfs", m_folder.path().toUtf8().constData(), "tmpfs", 0, options) == 0;
    }
    ~SmallDisk() { pullOut(); }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isThere() const { return m_mounted; }
    QString path() const { return m_folder.path(); }
    /// As a stick goes: an empty folder is left in its place.
    void pullOut() {
        if (std::exchange(m_mounted, false))
            ::umount2(m_folder.path().toUtf8().constData(), MNT_DETACH);
    }

private:
    QTemporaryDir m_folder;
    bool m_mounted = false;
};

inline QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("can't write %s", qPrintable(path));
}

/// The files of a folder and what they hold, without those that a database's engine keeps beside it.
inline QMap<QString, QByteArray> filesOf(const QString& folder) {
    QMap<QString, QByteArray> files;
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    for (const QString& name : names) {
        if (!name.endsWith(QStringLiteral("-shm")) && !name.endsWith(QStringLiteral("-wal")))
            files.insert(name, bytesOf(QDir(folder).filePath(name)));
    }
    return files;
}

/// Leaves a folder with these files and no others.
inline void putBack(const QString& folder, const QMap<QString, QByteArray>& files) {
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden))
        QFile::remove(QDir(folder).filePath(name));
    for (const auto& [name, bytes] : files.asKeyValueRange())
        writeBytes(QDir(folder).filePath(name), bytes);
}

/// A key that a file takes in place of a password: working one out of a password takes long.
inline const QString quickPassword =
    QStringLiteral("x'2dd29ca851e7b56e4697b0e1f08507293d761a05ce4d1b628663f411a8086d99'");

/// What is told of a step's refusal or failure; empty where it went through.
inline QString wordsOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeError& error) {
        return error.description();
    }
    return {};
}

/// What a case has of its own: a shop, and a folder for its copies.
class BackupCase {
protected:
    std::optional<ShopFixture> m_shop;
    std::optional<QTemporaryDir> m_place;
    Storage m_storage;

    void begin() {
        m_shop.emplace();
        m_place.emplace();
    }
    void end() {
        m_place.reset();
        m_shop.reset();
    }
    Copy take(Storage& storage) {
        return takeCopy(Shop::current(), m_place->path(), storage, WorkProgress());
    }
    Copy take() { return take(m_storage); }
    /// What is found wrong with a copy; empty where it is sound.
    static QString check(const QString& packed) {
        const QTemporaryDir work;
        return wordsOf([&] { checkCopy(packed, work.path(), WorkProgress()); });
    }
    QMap<QString, QByteArray> shopFiles() const { return filesOf(m_shop->folder()); }
};

}  // namespace kovanix::yedek
