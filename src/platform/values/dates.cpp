#include "values/dates.h"

#include <QStringView>
#include <array>

namespace kovanix {

namespace {

constexpr std::array<QStringView, 12> months = {u"Ocak",  u"Şubat",   u"Mart",   u"Nisan",
                                                u"Mayıs", u"Haziran", u"Temmuz", u"Ağustos",
                                                u"Eylül", u"Ekim",    u"Kasım",  u"Aralık"};
constexpr std::array<QStringView, 7> days = {u"Pazartesi", u"Salı",      u"Çarşamba", u"Perşembe",
                                             u"Cuma",      u"Cumartesi", u"Pazar"};

void appendPadded(QString& text, int number, int width) {
    const QString digits = QString::number(number);
    for (qsizetype missing = width - digits.size(); missing > 0; --missing)
        text += u'0';
    text += digits;
}

}  // namespace

QString dateText(QDate date) {
    QString text;
    if (!date.isValid())
        return text;
    text.reserve(10);
    appendPadded(text, date.day(), 2);
    text += u'.';
    appendPadded(text, date.month(), 2);
    text += u'.';
    appendPadded(text, date.year(), 4);
    return text;
}

QString timeText(QTime time) {
    QString text;
    if (!time.isValid())
        return text;
    text.reserve(8);
    appendPadded(text, time.hour(), 2);
    text += u':';
    appendPadded(text, time.minute(), 2);
    text += u':';
    appendPadded(text, time.second(), 2);
    return text;
}

QString longDateText(QDate date) {
    if (!date.isValid())
        return {};
    const QStringView month = months[static_cast<std::size_t>(date.month() - 1)];
    const QStringView day = days[static_cast<std::size_t>(date.dayOfWeek() - 1)];
    return QStringLiteral("%1 %2 %3 %4").arg(date.day()).arg(month).arg(date.year()).arg(day);
}

}  // namespace kovanix
