#include "yedek/tar.h"

#include <algorithm>
#include <numeric>

#include "yedek/failure.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype sizePlace = 124;
constexpr qsizetype sizeWidth = 12;
constexpr qsizetype timePlace = 136;
constexpr qsizetype sumPlace = 148;
constexpr qsizetype sumWidth = 8;
constexpr qsizetype magicPlace = 257;
constexpr qint64 mostInDigits = (qint64{1} << 33) - 1;
const QByteArray magic("ustar\00000", 8);

void put(QByteArray& head, qsizetype place, const QByteArray& bytes) {
    std::ranges::copy(bytes, head.begin() + place);
}

QByteArray octal(qint64 number, int digits) {
    return QByteArray::number(number, 8).rightJustified(digits, '0');
}

/// Eleven octal digits, or from 8 GB on a binary number whose first bit is set.
QByteArray sizeField(qint64 size) {
    if (size <= mostInDigits)
        return octal(size, sizeWidth - 1) + '\0';
    QByteArray field(sizeWidth, '\0');
    for (qsizetype i = sizeWidth - 1; i > 0; --i, size >>= 8)
        field[i] = static_cast<char>(size & 0xFF);
    field[0] = '\x80';
    return field;
}

qint64 readSize(const QByteArray& field) {
    if (field[0] != '\x80')
        return field.first(sizeWidth - 1).toLongLong(nullptr, 8);
    qint64 size = 0;
    for (const char byte : field.sliced(sizeWidth - 8))
        size = (size << 8) | static_cast<unsigned char>(byte);
    return size;
}

/// The sum of the head's bytes, its own place counted as blanks.
QByteArray sumField(QByteArray head) {
    put(head, sumPlace, QByteArray(sumWidth, ' '));
    const int sum = std::accumulate(head.begin(), head.end(), 0, [](int before, char byte) {
        return before + static_cast<unsigned char>(byte);
    });
    return octal(sum, 6) + QByteArray("\0 ", 2);
}

}  // namespace

QByteArray tarHead(const TarMember& member, qint64 seconds) {
    QByteArray head(tarBlock, '\0');
    put(head, 0, member.name.toLatin1());
    put(head, 100, QByteArray("0000600\0000000000\0000000000\0", 24));  // mode, owner, group
    put(head, sizePlace, sizeField(member.size));
    put(head, timePlace, octal(seconds, sizeWidth - 1));
    put(head, sumPlace + sumWidth, "0");  // a plain file
    put(head, magicPlace, magic);
    put(head, sumPlace, sumField(head));
    return head;
}

TarMember readTarHead(const QByteArray& head) {
    const TarMember member{QString::fromLatin1(head.constData()),
                           readSize(head.sliced(sizePlace, sizeWidth))};
    const bool sound = head.sliced(sumPlace, sumWidth) == sumField(head) &&
                       head.sliced(magicPlace, magic.size()) == magic && head[sumPlace + sumWidth] == '0' &&
                       member.size >= 0;
    if (!sound)
        throw Refusal(u"Bu dosya bir Kovanix yedeği değil"_s);
    return member;
}

qsizetype tarPadding(qint64 size) {
    return static_cast<qsizetype>((tarBlock - size % tarBlock) % tarBlock);
}

QByteArray tarEnd() {
    return QByteArray(2 * tarBlock, '\0');
}

}  // namespace kovanix::yedek
