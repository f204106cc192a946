#include "database/failuretext.h"

#include <QStringList>

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

struct FailureText {
    Kind kind;
    QStringView file;
    QStringView server;  ///< empty where it is the file's
};

// None of the signs that stand for Turkish letters in stored texts.
constexpr FailureText texts[] = {
    {Kind::busy, u"Veritabanı şu anda başka bir kasa ya da program tarafından kullanılıyor", {}},
    {Kind::readOnly, u"Veritabanına yazılamıyor: dosyaya ve bulunduğu klasöre yazma izni verin",
     u"Veritabanına yazılamıyor: sunucudaki yetkileri denetleyin"},
    {Kind::full, u"Diskte yer kalmadı: yer açın", u"Veritabanı sunucusunun diskinde yer kalmadı: yer açın"},
    {Kind::damaged, u"Veritabanı dosyası bozuk", u"Veritabanı sunucusunda bozukluk var"},
    {Kind::notADatabase, u"Dosya bir veritabanı değil ya da parolalı",
     u"Veritabanı sunucuda yok ya da kasaya uygun değil"},
    {Kind::wrongPassword, u"Veritabanı parolası yanlış ya da dosya bozuk",
     u"Veritabanı sunucusu kullanıcıyı ya da parolayı kabul etmiyor"},
    {Kind::missing,
     u"Veritabanı dosyası bulunamadı ya da açılamıyor: yerini, dosyaya ve klasöre yazma iznini denetleyin",
     u"Veritabanı sunucusuna ulaşılamıyor: sunucuyu ve ağ bağlantısını denetleyin"},
    // Files don't.
    {Kind::untrusted,
     {},
     u"Veritabanı sunucusuyla güvenli bağlantı (TLS) kurulamadı: kök sertifikayı (kok), sunucunun adresini "
     u"ve bilgisayarın saatini denetleyin"},
    {Kind::noSuchTable, u"Veritabanında gereken bir tablo yok", {}},
    {Kind::noSuchColumn, u"Veritabanında gereken bir sütun yok", {}},
    {Kind::value, u"Veritabanı bu kaydı kabul etmiyor", {}},
    {Kind::lost, u"Veritabanı dosyası okunamıyor ya da yazılamıyor: diski ve ağ bağlantısını denetleyin",
     u"Veritabanı sunucusuyla bağlantı koptu: sunucuyu ve ağ bağlantısını denetleyin"},
    {Kind::noRow, u"Kayıt bulunamadı: başka bir kasa ya da program silmiş olabilir", {}},
    {Kind::closed, u"Veritabanı dosyası değişti ya da bağlantısı kapandı: pencereyi kapatıp yeniden açın",
     u"Veritabanı sunucusuyla bağlantı kapandı: pencereyi kapatıp yeniden açın"},
};

/// Whether a locale is the one of plain bytes.
bool isPlain(const QString& locale) {
    return locale == u"C"_s || locale == u"POSIX"_s;
}

bool isOfTheSystem(const ServerLocale& locale) {
    return locale.provider.isEmpty() || locale.provider == u"c"_s;
}

}  // namespace

QString failureText(Kind kind, dialect::Target target) {
    for (const FailureText& text : texts) {
        if (text.kind == kind)
            return (target == dialect::Target::file || text.server.isEmpty() ? text.file : text.server)
                .toString();
    }
    return {};
}

QString missingDriverText(const QString& driver) {
    const QString text =
        driver == u"KOVANIXPSQL"_s
            ? u"Veritabanı sunucusunun sürücüsü kurulu değil: kovanix-sunucu paketini kurun (%1)"_s
        : driver == u"QSQLCIPHER"_s
            ? u"Parolalı veritabanı dosyalarının sürücüsü kurulu değil: kovanix paketini yeniden kurun (%1)"_s
            : u"Veritabanı dosyalarının sürücüsü kurulu değil: kovanix paketini yeniden kurun (%1)"_s;
    return text.arg(driver);
}

bool isSuitable(const ServerLocale& locale) {
    return locale.encoding == u"UTF8"_s && isOfTheSystem(locale) && isPlain(locale.order) &&
           isPlain(locale.letters);
}

QString localeText(const ServerLocale& locale) {
    QStringList parts{locale.encoding, locale.order};
    if (locale.letters != locale.order)
        parts.append(locale.letters);
    if (!isOfTheSystem(locale))
        parts.append(locale.provider == u"i"_s ? u"ICU"_s : u"sağlayıcı "_s + locale.provider);
    return parts.join(u", "_s);
}

}  // namespace kovanix
