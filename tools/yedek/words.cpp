#include "yedek/words.h"

#include <QLocale>

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

QString momentWords(const QDateTime& moment, const QDateTime& now) {
    const qint64 days = moment.date().daysTo(now.date());
    const QString time = moment.toString(u"HH:mm"_s);
    if (days == 0)
        return u"bugün "_s + time;
    if (days == 1)
        return u"dün "_s + time;
    const QString whole = moment.toString(u"dd.MM.yyyy HH:mm"_s);
    return days < 0 ? whole : u"%1 gün önce, %2"_s.arg(days).arg(whole);
}

CopyAge ageOf(const QDateTime& moment, const QDateTime& now) {
    constexpr qint64 twoDays = qint64{2} * 24 * 60 * 60;
    // Of several copies within one second each is told as a second later.
    constexpr qint64 aMinute = 60;
    if (!moment.isValid() || moment.secsTo(now) > twoDays)
        return CopyAge::overdue;
    return moment.secsTo(now) < -aMinute ? CopyAge::ahead : CopyAge::fresh;
}

QString detailWords(const QStringList& said) {
    constexpr qsizetype longest = 120;
    for (const QString& line : said.join(u'\n').split(u'\n')) {
        // The engine heads its findings with the database's name.
        const QString words = line.simplified();
        if (words.isEmpty() || words.startsWith("***"_L1))
            continue;
        return u" ("_s + (words.size() > longest ? words.first(longest) + u'…' : words) + u')';
    }
    return {};
}

QString sizeWords(qint64 bytes) {
    constexpr double step = 1024;
    const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
    const double kilobytes = static_cast<double>(bytes) / step;
    if (kilobytes < step)
        return turkish.toString(kilobytes, 'f', 0) + u" KB";
    if (kilobytes < step * step)
        return turkish.toString(kilobytes / step, 'f', 1) + u" MB";
    return turkish.toString(kilobytes / step / step, 'f', 1) + u" GB";
}

}  // namespace kovanix::yedek
