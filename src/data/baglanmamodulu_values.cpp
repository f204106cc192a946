#include <cmath>

#include "app/modTurkce.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "runtime/clock.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString dateTimeLiteral(const QDate& day, double hours, double minutes, double seconds) {
    const auto twoDigits = [](double value) { return format(value, u"00"); };
    return u'#' + QString::number(day.month()) + u'/' + QString::number(day.day()) + u'/' +
           QString::number(day.year()) + u' ' + twoDigits(hours) + u':' + twoDigits(minutes) + u':' +
           twoDigits(seconds) + u'#';
}

}  // namespace

QString sqlmetin(const QString& text) {
    QString doubled = text;
    return doubled.replace(u'\'', u"''"_s);
}

QString sqllike(const QString& text) {
    // The opening bracket first, so that the brackets added after it aren't escaped again.
    QString pattern = sqlmetin(text);
    pattern.replace(u'[', u"[[]"_s);
    pattern.replace(u'%', u"[%]"_s);
    pattern.replace(u'_', u"[_]"_s);
    return pattern;
}

QString sqltarih(const QDateTime& moment) {
    const QDateTime given = moment.isValid() ? moment : Clock::now();
    const QTime time = given.time();
    return dateTimeLiteral(given.date(), time.hour(), time.minute(), time.second());
}

QString sqltarihsaat(const QDate& day, const QString& time) {
    const QDate givenDay = day.isValid() ? day : Clock::now().date();
    QString text = time.trimmed();
    if (text.isEmpty())
        text = u"00:00:00"_s;
    const double hours = std::nearbyint(numericPrefix(text));
    double minutes = 0;
    double seconds = 0;
    const qsizetype first = text.indexOf(u':');
    if (first >= 0) {
        minutes = numericPrefix(QStringView(text).mid(first + 1));
        const qsizetype second = text.indexOf(u':', first + 1);
        if (second >= 0)
            seconds = numericPrefix(QStringView(text).mid(second + 1));
    }
    return dateTimeLiteral(givenDay, hours, minutes, seconds);
}

QString sqltarihbetween(const QDate& day1, const QString& time1, const QDate& day2, const QString& time2) {
    return sqltarihsaat(day1, time1) + u" and " + sqltarihsaat(day2, time2);
}

QString sqlsayi(double value) {
    return numberText(value).replace(u',', u'.');
}

double sayicevir(const QString& text) {
    if (const std::optional<double> regional = toNumber(text))
        return *regional;
    QString digits = text.trimmed();
    if (digits.isEmpty())
        return 0;
    const qsizetype dot = digits.lastIndexOf(u'.');
    const qsizetype comma = digits.lastIndexOf(u',');
    if (dot < comma) {
        digits.remove(u'.');
        digits.replace(u',', u'.');
    } else if (comma < dot) {
        digits.remove(u',');
    }
    return toNumberWithDot(digits).value_or(0);
}

double sayicevir(const QVariant& value) {
    if (value.isNull())
        return 0;
    switch (value.typeId()) {
        case QMetaType::Double:
        case QMetaType::Float:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Bool:
            return value.toDouble();  // a number stays one: its text would lose its decimal sign on the way
        default:
            return sayicevir(value.toString());
    }
}

double sayicevir(const RowWalk::Row& row, int field) {
    // As the rule in a table: no value has to be made of a cell.
    if (const std::optional<double> number = row.number(field))
        return *number;
    return sayicevir(row.value(field));
}

QString nullmetin(const QVariant& value) {
    if (value.isNull())
        return {};
    if (value.typeId() == QMetaType::Double)
        return numberText(value.toDouble());
    return value.toString().trimmed();
}

QString yoneticiyetkisi() {
    return harfcevir(u"Y&netici"_s);
}

bool yoneticimi() {
    return girisyetki == 1;
}

}  // namespace kovanix
