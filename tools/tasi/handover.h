#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "database/serveraddress.h"

namespace kovanix::tasi {

/// The address that a pointer file gives, where there is one, or the one that was told.
/// @throws Failure where there is neither, where the two differ, or where the file's name is no pointer's
ServerAddress addressOf(const QString& pointer, const std::optional<ServerAddress>& told);

/// Where the report of a move goes: beside the pointer.
QString reportPath(const QString& pointer);

/// The name that a file bears once its shop has been moved.
QString movedName(const QString& file);
/// That name, or the first of those behind it with a number that no file bears.
QString freeName(const QString& path);

/// Brings what tills look at into step with a shop that has been moved: the pointer file, the settings in
/// their application folders, and the local files that a till would take without a word when it can't find
/// the one that it was told. Every step may be done twice. All of it throws Failure.
class Handover {
public:
    /// @param folders  application folders whose settings are to name the pointer
    Handover(QString pointer, ServerAddress address, QString password, const QStringList& folders);

    /// What can be known ahead to go wrong: local files in use, settings that can't hold the password.
    /// @param file  of the shop
    void check(const QString& file) const;

    /// Writes the pointer unless it is there: readable by its owner only, and its folder's owner's.
    void writePointer() const;
    /// Has the settings name the pointer and the password, with a copy of the old ones beside them; renames
    /// the local files but the shop's own.
    void bringFoldersIntoStep(const QString& file);

    void addRenamed(const QString& path) { m_renamed.append(path); }
    const QStringList& renamed() const { return m_renamed; }
    const QStringList& settings() const { return m_settings; }

private:
    QStringList localFiles(const QString& file) const;

    QString m_pointer;
    ServerAddress m_address;
    QString m_password;
    QStringList m_folders;
    QStringList m_renamed;
    QStringList m_settings;
};

/// Has the settings of an application folder name a database file and its password, with a copy of the old
/// ones beside them; no other key holds the old password then. @return the settings file's path; empty where
/// it said so already
QString nameDatabase(const QString& folder, const QString& file, const QString& password);

/// Gives a file that the administrator has made to the owner of its folder.
void giveToFolderOwner(const QString& path);

}  // namespace kovanix::tasi
