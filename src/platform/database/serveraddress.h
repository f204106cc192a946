#pragma once

#include <QString>
#include <QStringList>

namespace kovanix {

/// Where a shop's database server is, and how a till reaches it: what a pointer file tells, which stands in
/// for the database file. It is a profile file in Windows-1254 with the section "sunucu":
///
///   adres       one address or more, by comma: the first that takes writes is used
///   port        5432 where it is missing
///   veritabani  the database's name
///   kullanici   the till's role
///   tls         "tam" (the default): the line is encrypted and the server's certificate is checked;
///               "var": encrypted; "yok": neither
///   kok         the certificate that the server's is checked against; the machine's own where it is missing
struct ServerAddress {
    enum class Tls {
        full,
        on,
        off,
    };

    static constexpr int usualPort = 5432;

    QStringList hosts;
    int port = usualPort;
    QString database;
    QString user;
    Tls tls = Tls::full;
    QString rootCertificate;  ///< a file's path; empty where the machine's own certificates count

    /// Whether a path is that of a pointer file: its name ends in ".sunucu", in any case. Nothing is opened:
    /// a database file that is looked into loses the locks that this process holds on it.
    static bool isPointer(const QString& path);

    /// @throws DatabaseError in Turkish words, (missing) for a file that isn't there, (other) for a value
    /// that is missing or none of those above
    static ServerAddress read(const QString& pointerFile);
};

}  // namespace kovanix
