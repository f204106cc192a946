#include "settle.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include "data/baglanmamodulu.h"
#include "values/codepage.h"
#include "values/utf8.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

using Type = engine::Cell::Type;

engine::Cell realCell(double value) {
    return {.type = Type::real, .real = value, .bytes = {}};
}

engine::Cell textCell(std::string_view text) {
    return {.type = Type::text, .bytes = text};
}

template <class Number>
std::string numberAsText(Number value) {
    std::array<char, 32> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), error == std::errc() ? end : digits.data()};
}

/// Whether eight bytes hold nothing but ASCII characters other than NUL.
bool isPlainAscii(quint64 word) {
    constexpr quint64 ones = 0x0101010101010101;
    constexpr quint64 tops = 0x8080808080808080;
    return ((word | (word - ones)) & tops) == 0;
}

bool isUtf8(std::string_view text) {
    std::size_t place = 0;
    while (place < text.size()) {
        if (utf8::next(text, place) >= utf8::strayBytes)
            return false;
    }
    return true;
}

/// A text of a file as the server takes it; rewritten into the storage where it has to be.
SettledCell settleText(std::string_view text, Odd odd, std::string& storage) {
    if (isServerText(text))
        return {textCell(text), odd};
    if (isUtf8(text)) {
        storage.assign(text);
    } else {
        const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
        storage = fromWindows1254(bytes).toStdString();
        odd = odd == Odd::none ? Odd::notUtf8 : odd;
    }
    if (std::erase(storage, '\0') > 0 && odd == Odd::none)
        odd = Odd::nulDropped;
    return {textCell(storage), odd};
}

/// Whether a text that the till reads as 0 says nothing else: it is empty, or zeros.
bool saysZero(const QString& text) {
    static const QRegularExpression zeros(u"^\\s*[+-]?[0.,]*0[0.,]*[+-]?\\s*$"_s);
    return text.isEmpty() || zeros.match(text).hasMatch();
}

SettledCell settleNumber(const engine::Cell& cell, std::string& storage) {
    switch (cell.type) {
        case Type::null:
        case Type::real:
            return {cell};
        case Type::whole: {
            const auto real = static_cast<double>(cell.whole);
            // A double that stands for 2^63 would overflow on the way back.
            constexpr double edge = 9223372036854775808.0;
            const bool exact = real < edge && static_cast<qint64>(real) == cell.whole;
            return {realCell(real), exact ? Odd::none : Odd::roundedWhole};
        }
        case Type::text:
        case Type::bytes:
            break;
    }
    const std::string_view text = settleText(cell.bytes, Odd::none, storage).cell.bytes;
    const QString read = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    const double value = sayicevir(read);
    const bool lost = value == 0 && !cell.bytes.empty() && !saysZero(read);
    return {realCell(value), lost ? Odd::textAsZero : Odd::textAsNumber};
}

SettledCell settleWordCell(const engine::Cell& cell, std::string& storage) {
    switch (cell.type) {
        case Type::null:
            return {cell};
        case Type::whole:
            storage = numberAsText(cell.whole);
            return {textCell(storage), Odd::numberAsText};
        case Type::real:
            storage = numberAsText(cell.real);
            return {textCell(storage), Odd::numberAsText};
        case Type::text:
            return settleText(cell.bytes, Odd::none, storage);
        case Type::bytes:
            break;
    }
    return settleText(cell.bytes, Odd::bytesAsText, storage);
}

int twoDigits(std::string_view text, std::size_t place) {
    const int tens = text[place] - '0';
    const int ones = text[place + 1] - '0';
    return tens < 0 || tens > 9 || ones < 0 || ones > 9 ? -1 : tens * 10 + ones;
}

/// Whether a text is a moment as the till writes it.
bool isMoment(std::string_view text) {
    constexpr std::string_view form = "0000-00-00 00:00:00";
    if (text.size() != form.size() || text[4] != '-' || text[7] != '-' || text[10] != ' ' ||
        text[13] != ':' || text[16] != ':')
        return false;
    const int century = twoDigits(text, 0);
    const int year = twoDigits(text, 2);
    const auto within = [&](std::size_t place, int last) {
        const int value = twoDigits(text, place);
        return value >= 0 && value <= last;
    };
    return century >= 0 && year >= 0 && within(11, 23) && within(14, 59) && within(17, 59) &&
           QDate::isValid(century * 100 + year, twoDigits(text, 5), twoDigits(text, 8));
}

/// The moment that a text of another form means beyond doubt; empty where there is none.
QString readMoment(const QString& text) {
    static const QString time = u"(?:[ T]+(\\d{1,2}):(\\d{2})(?::(\\d{2})(?:[.,]\\d+)?)?)?$"_s;
    static const QRegularExpression yearFirst(u"^(\\d{4})-(\\d{1,2})-(\\d{1,2})"_s + time);
    static const QRegularExpression dayFirst(u"^(\\d{1,2})\\.(\\d{1,2})\\.(\\d{4})"_s + time);
    const QString trimmed = text.trimmed();
    const bool dots = trimmed.contains(u'.') && !trimmed.contains(u'-');
    const QRegularExpressionMatch match = (dots ? dayFirst : yearFirst).match(trimmed);
    if (!match.hasMatch())
        return {};
    const auto part = [&match](int group) { return match.captured(group).toInt(); };
    const QDate date = dots ? QDate(part(3), part(2), part(1)) : QDate(part(1), part(2), part(3));
    const QTime moment(part(4), part(5), part(6));
    if (!date.isValid() || !moment.isValid())
        return {};
    return date.toString(u"yyyy-MM-dd") + u' ' + moment.toString(u"HH:mm:ss");
}

SettledCell settleMoment(const engine::Cell& cell, std::string& storage) {
    if (cell.type == Type::null || (cell.type == Type::text && isMoment(cell.bytes)))
        return {cell};
    SettledCell settled = settleWordCell(cell, storage);
    const std::string_view text = settled.cell.bytes;
    const QString moment = readMoment(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    if (moment.isEmpty()) {
        settled.odd = Odd::momentKept;
        return settled;
    }
    storage = moment.toStdString();
    return {textCell(storage), Odd::momentRewritten};
}

}  // namespace

QString oddWords(Odd odd) {
    switch (odd) {
        case Odd::none:
            return {};
        case Odd::textAsNumber:
            return u"sayı sütununda yazı, sayıya çevrildi"_s;
        case Odd::textAsZero:
            return u"sayı sütununda sayı olmayan yazı, yerine 0 yazıldı"_s;
        case Odd::roundedWhole:
            return u"çok büyük tam sayı, yuvarlandı"_s;
        case Odd::numberAsText:
            return u"yazı sütununda sayı, yazıya çevrildi"_s;
        case Odd::bytesAsText:
            return u"yazı sütununda ikili veri, yazıya çevrildi"_s;
        case Odd::notUtf8:
            return u"eski kod sayfasındaki yazı, UTF-8'e çevrildi"_s;
        case Odd::nulDropped:
            return u"yazının içindeki NUL karakterleri atıldı"_s;
        case Odd::momentRewritten:
            return u"başka biçimde tarih, kasanın biçiminde yazıldı"_s;
        case Odd::momentKept:
            return u"tarih olarak okunamıyor, olduğu gibi bırakıldı"_s;
        case Odd::notANumber:
            return u"sayı olmayan sayı (NaN), dosyada boş bırakıldı"_s;
    }
    return {};
}

bool isServerText(std::string_view text) {
    std::size_t place = 0;
    for (; text.size() - place >= sizeof(quint64); place += sizeof(quint64)) {
        quint64 word = 0;
        std::memcpy(&word, text.data() + place, sizeof(word));
        if (!isPlainAscii(word))
            break;
    }
    while (place < text.size()) {
        const char32_t character = utf8::next(text, place);
        if (character == 0 || character >= utf8::strayBytes)
            return false;
    }
    return true;
}

SettledCell settle(const engine::Cell& cell, Form form, std::string& storage) {
    switch (form) {
        case Form::number:
            return settleNumber(cell, storage);
        case Form::text:
            return settleWordCell(cell, storage);
        case Form::moment:
            return settleMoment(cell, storage);
        case Form::whole:
        case Form::bytes:
            break;  // columns that hold nothing else
    }
    return {cell};
}

}  // namespace kovanix::tasi
