#pragma once

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "database/connection.h"
#include "ordinaryuser.h"
#include "rows.h"
#include "shopfixture.h"

namespace kovanix {

/// Why and how a shop can only be read.
struct ReadOnlyRow {
    bool wholeDisk;  ///< its disk is mounted to be read; else its folder and files are for this user
    bool hasLog;     ///< a till that died has left its last work in a log, without the memory beside it
    QString password;
};

inline void addReadOnlyRows(const QString& password) {
    addRows<ReadOnlyRow>({
        {"folder", {false, false, {}}},
        {"folder, log", {false, true, {}}},
        {"folder, password", {false, false, password}},
        {"folder, log, password", {false, true, password}},
        {"disk", {true, false, {}}},
        {"disk, log", {true, true, {}}},
        {"disk, password", {true, false, password}},
        {"disk, log, password", {true, true, password}},
    });
}

/// A copy of a shop that nothing can be written into, and a folder for temporary files of its own.
class ReadOnlyShop {
public:
    /// @param last  the statement that was done last
    ReadOnlyShop(const ShopFixture& shop, const ReadOnlyRow& row, const QString& last) : m_row(row) {
        const QTemporaryDir made;
        const QString data = made.filePath(QStringLiteral("kovanix.data"));
        copy(shop.databaseFile(), data);
        copy(shop.databaseFile() + QStringLiteral("-wal"), data + QStringLiteral("-wal"));
        Connection till;
        till.open(QStringLiteral("Data Source=%1;Jet OLEDB:Database Password=%2").arg(data, row.password));
        till.idle();
        till.execute(last);
        if (!row.hasLog)
            till.close();
        if (QFile::exists(data + QStringLiteral("-wal")) != row.hasLog)
            qFatal("the log isn't as the test wants it");
        ::chmod(qPrintable(m_temporary.path()), 01777);
        qputenv("TMPDIR", QFile::encodeName(m_temporary.path()));
        if (row.wholeDisk &&
            (::geteuid() != 0 || ::mount("tmpfs", qPrintable(folder()), "tmpfs", 0, "size=64m") != 0)) {
            m_trouble = QStringLiteral("only the administrator may make a disk");
            return;
        }
        copy(data, path(QStringLiteral("kovanix.data")));
        copy(data + QStringLiteral("-wal"), path(QStringLiteral("kovanix.data-wal")));
        writeConfig();
        if (row.wholeDisk) {
            if (::mount("tmpfs", qPrintable(folder()), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64m") != 0)
                qFatal("the disk can't be closed");
            return;
        }
        for (const QString& name : QDir(folder()).entryList(QDir::Files))
            ::chmod(qPrintable(path(name)), 0444);
        ::chmod(qPrintable(folder()), 0555);
    }
    ~ReadOnlyShop() {
        qunsetenv("TMPDIR");
        ::umount2(qPrintable(folder()), MNT_DETACH);
        ::chmod(qPrintable(folder()), 0755);
    }
    ReadOnlyShop(const ReadOnlyShop&) = delete;
    ReadOnlyShop& operator=(const ReadOnlyShop&) = delete;

    /// Why there is none; empty where there is.
    const QString& trouble() const { return m_trouble; }
    QString folder() const { return m_folder.path(); }
    /// Goes on as a user who can't write it, while it lives.
    std::unique_ptr<OrdinaryUser> enter() const {
        auto user = m_row.wholeDisk ? nullptr : std::make_unique<OrdinaryUser>();
        if (user && user->failed())
            qFatal("an ordinary user can't be had here");
        return user;
    }
    /// Whether no temporary file is left.
    bool leftNothing() const {
        return QDir(m_temporary.path())
            .entryList({QStringLiteral("kovanix-*")}, QDir::AllEntries | QDir::Hidden | QDir::CaseSensitive)
            .isEmpty();
    }

private:
    QString path(const QString& name) const { return m_folder.filePath(name); }
    void writeConfig() const {
        QFile config(path(QStringLiteral("Kovanix.config")));
        if (!config.open(QIODevice::WriteOnly) ||
            config.write("[ayar]\r\ndbpass=" + m_row.password.toLatin1() + "\r\n") < 0)
            qFatal("can't write the configuration");
    }
    static void copy(const QString& from, const QString& to) {
        if (QFile::exists(from) && !QFile::copy(from, to))
            qFatal("can't copy %s", qPrintable(from));
    }

    ReadOnlyRow m_row;
    QTemporaryDir m_folder;
    QTemporaryDir m_temporary;
    QString m_trouble;
};

}  // namespace kovanix

Q_DECLARE_METATYPE(kovanix::ReadOnlyRow)
