#include "database/serveraddress.h"

#include <QFileInfo>

#include "database/databaseerror.h"
#include "database/dialect.h"
#include "profile/profilefile.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

constexpr int lastPort = 65535;

class PointerReader {
public:
    explicit PointerReader(const QString& file) : m_file(file) {}

    QString value(const QString& key) const { return ProfileFile::value(m_file, u"sunucu"_s, key).trimmed(); }

    QString required(const QString& key) const {
        QString text = value(key);
        if (text.isEmpty())
            throw DatabaseError(Kind::other, u"Sunucu dosyasında \"%1\" yazılı değil: %2"_s.arg(key, m_file));
        return text;
    }

    [[noreturn]] void refuse(const QString& key, const QString& text) const {
        throw DatabaseError(Kind::other,
                            u"Sunucu dosyasında \"%1\" anlaşılmıyor (%2): %3"_s.arg(key, text, m_file));
    }

    QStringList hosts() const {
        const QString key = u"adres"_s;
        const QString text = required(key);
        QStringList hosts;
        for (const QString& host : text.split(u',')) {
            const QString trimmed = host.trimmed();
            // A blank or a path is a slip; what is left may be a name or a number of the network's.
            if (trimmed.isEmpty() || trimmed.contains(u' ') || trimmed.contains(u'/') ||
                trimmed.contains(u'\\'))
                refuse(key, text);
            hosts.append(trimmed);
        }
        return hosts;
    }

    int port() const {
        const QString key = u"port"_s;
        const QString text = value(key);
        bool valid = true;
        const int port = text.isEmpty() ? ServerAddress::usualPort : text.toInt(&valid);
        if (!valid || port < 1 || port > lastPort)
            refuse(key, text);
        return port;
    }

    ServerAddress::Tls tls() const {
        const QString key = u"tls"_s;
        const QString text = dialect::foldedName(value(key));
        if (text.isEmpty() || text == u"tam"_s)
            return ServerAddress::Tls::full;
        if (text != u"var"_s && text != u"yok"_s)
            refuse(key, text);
        return text == u"var"_s ? ServerAddress::Tls::on : ServerAddress::Tls::off;
    }

    QString rootCertificate() const {
        const QString key = u"kok"_s;
        QString text = value(key);
        if (!text.isEmpty() && !QFileInfo(text).isFile())
            refuse(key, text);
        return text;
    }

private:
    const QString& m_file;
};

}  // namespace

bool ServerAddress::isPointer(const QString& path) {
    return dialect::foldedName(path).endsWith(".sunucu"_L1);
}

ServerAddress ServerAddress::read(const QString& pointerFile) {
    const QFileInfo file(pointerFile);
    if (!file.isFile() || !file.isReadable())
        throw DatabaseError(Kind::missing, u"Sunucu dosyası bulunamadı ya da okunamıyor: "_s + pointerFile);
    const PointerReader pointer(pointerFile);
    return {pointer.hosts(),
            pointer.port(),
            pointer.required(u"veritabani"_s),
            pointer.required(u"kullanici"_s),
            pointer.tls(),
            pointer.rootCertificate()};
}

}  // namespace kovanix
