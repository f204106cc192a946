#pragma once

#include <QByteArray>
#include <QString>

namespace kovanix::yedek {

/// The length of a member's head in an archive; members are padded to whole ones.
inline constexpr qsizetype tarBlock = 512;

struct TarMember {
    QString name;
    qint64 size = 0;

    bool operator==(const TarMember&) const = default;
};

/// The head of a plain file that only its owner reads. @param name  at most 99 characters of ASCII
/// @param seconds  since 1970, when the file was written
QByteArray tarHead(const TarMember& member, qint64 seconds);
/// The member of such a head. @throws Refusal where it is none
TarMember readTarHead(const QByteArray& head);
/// How many bytes stand behind a member of that size.
qsizetype tarPadding(qint64 size);
/// What ends an archive.
QByteArray tarEnd();

}  // namespace kovanix::yedek
