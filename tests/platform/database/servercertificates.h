#pragma once

#include <unistd.h>

#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace kovanix {

/// A certificate authority of the test's own, a server's certificate for 127.0.0.1 by it, and a second
/// authority that has signed nothing.
class ServerCertificates {
public:
    /// What this machine lacks for it; empty when all is there.
    static QString missing() {
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"), {QStringLiteral("version")});
        return openssl.waitForFinished() ? QString()
                                         : QStringLiteral("no openssl on this machine (package openssl)");
    }

    /// @param owner  the user that runs the server: it takes no key that others can read
    bool make(uid_t owner) const {
        const QStringList key{QStringLiteral("req"),      QStringLiteral("-x509"),
                              QStringLiteral("-newkey"),  QStringLiteral("ec"),
                              QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"),
                              QStringLiteral("-nodes"),   QStringLiteral("-days"),
                              QStringLiteral("2")};
        const auto named = [&](const QString& name, const QString& file) {
            return key + QStringList{QStringLiteral("-subj"),   QStringLiteral("/CN=") + name,
                                     QStringLiteral("-keyout"), path(file + QStringLiteral(".key")),
                                     QStringLiteral("-out"),    path(file + QStringLiteral(".crt"))};
        };
        QFile::setPermissions(m_folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                   QFile::ExeGroup | QFile::ExeOther);
        const QByteArray keyFile = QFile::encodeName(path(QStringLiteral("server.key")));
        return run(named(QStringLiteral("Dukkan CA"), QStringLiteral("ca"))) &&
               run(named(QStringLiteral("Baska CA"), QStringLiteral("baska"))) &&
               run(named(QStringLiteral("kasa-sunucu"), QStringLiteral("server")) +
                   QStringList{QStringLiteral("-CA"), path(QStringLiteral("ca.crt")),
                               QStringLiteral("-CAkey"), path(QStringLiteral("ca.key")),
                               QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1"),
                               QStringLiteral("-addext"),
                               QStringLiteral("basicConstraints=critical,CA:FALSE")}) &&
               (::geteuid() != 0 || ::chown(keyFile.constData(), owner, owner) == 0);
    }

    /// The settings of a server that shows the certificate.
    QStringList settings() const {
        return {QStringLiteral("ssl=on"),
                QStringLiteral("ssl_cert_file=") + path(QStringLiteral("server.crt")),
                QStringLiteral("ssl_key_file=") + path(QStringLiteral("server.key"))};
    }
    QString authority() const { return path(QStringLiteral("ca.crt")); }
    QString otherAuthority() const { return path(QStringLiteral("baska.crt")); }

private:
    QString path(const QString& name) const { return m_folder.filePath(name); }
    static bool run(const QStringList& arguments) {
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"), arguments);
        const bool done = openssl.waitForFinished() && openssl.exitCode() == 0;
        if (!done)
            qWarning().noquote() << openssl.readAllStandardError();
        return done;
    }

    QTemporaryDir m_folder;
};

}  // namespace kovanix
