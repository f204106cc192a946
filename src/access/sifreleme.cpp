#include "access/sifreleme.h"

#include <QCryptographicHash>
#include <cmath>

#include "data/baglanmamodulu.h"
#include "runtime/attempt.h"
#include "values/codepage.h"
#include "values/lettercase.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype digestDigits = 64;

const QString& prefix() {
    static const QString text = u"sha256:"_s;
    return text;
}

/// The ordinary way or the Turkish one: the rows come from machines that knew both.
bool sameButForCase(const QString& one, const QString& other) {
    return lowerOrdinary(one) == lowerOrdinary(other) || lowerTurkish(one) == lowerTurkish(other);
}

/// The prefix reader ends at a comma, so 12,5 and 12 are one password here, as required.
bool sameNumber(const QString& one, const QString& other) {
    return isNumeric(one) && isNumeric(other) && numericPrefix(one) == numericPrefix(other);
}

QString realText(double value) {
    if (!std::isfinite(value) || value != std::trunc(value))
        return numberText(value).trimmed();
    return value == 0 ? u"0"_s : QString::number(value, 'f', 0);
}

}  // namespace

QString sha256hex(const QString& text) {
    // The shops' older machines hashed a letter that the code page lacks as its base letter.
    const QByteArray bytes = toWindows1254(text, Lacking::baseLetter);
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

QString sifreozet(const QString& text) {
    return prefix() + sha256hex(text);
}

bool sifreozetmi(const QString& stored) {
    return lowerOrdinary(stored.trimmed()).startsWith(prefix());
}

QString sifremetni(const QVariant& value) {
    if (value.isNull())
        return {};
    switch (value.typeId()) {
        case QMetaType::Bool:
            return value.toBool() ? u"-1"_s : u"0"_s;  // all bits set
        case QMetaType::Float:
        case QMetaType::Double:
            return realText(value.toDouble());
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::UChar:
            return QString::number(value.toInt());  // the toolkit takes a byte for a character
        default:
            return value.toString().trimmed();
    }
}

bool sifredogrula(const QString& entered, const QString& stored) {
    const QString typed = entered.trimmed();
    const QString kept = stored.trimmed();
    if (kept.isEmpty())
        return typed.isEmpty();
    if (sifreozetmi(kept)) {
        // A row whose column was too narrow for the hash opens without a password: its user could never come
        // in otherwise.
        if (typed.isEmpty() && kept.size() - prefix().size() < digestDigits)
            return true;
        return lowerOrdinary(sifreozet(typed)) == lowerOrdinary(kept);
    }
    return typed == kept || sameButForCase(typed, kept) || sameNumber(typed, kept);
}

bool yoneticisifresimi(const QString& entered) {
    if (!baglantihazir())
        return false;
    bool found = false;
    attempt([&] {
        Recordset managers;
        managers.open(u"SELECT sifre FROM kullanici WHERE yetki='" + sqlmetin(yoneticiyetkisi()) + u'\'',
                      baglanti());
        for (; !found && !managers.atEnd(); managers.moveNext())
            found = sifredogrula(entered, sifremetni(managers.field(u"sifre"_s)));
    });
    return found;
}

void sifreguncelle(const QString& id, const QString& entered) {
    const QString user = id.trimmed();
    if (!baglantihazir() || user.isEmpty())
        return;
    const QString stored = entered.trimmed().isEmpty() ? QString() : sifreozet(entered);
    // The first row of that id: an older file may bear an id twice.
    attempt([&] {
        storeTogether([&] {
            Recordset users;
            users.open(u"SELECT * FROM kullanici WHERE id='" + sqlmetin(user) + u'\'', baglanti());
            if (users.atEnd())
                return;
            users.setField(u"sifre"_s, stored);
            users.update();
        });
    });
}

}  // namespace kovanix
