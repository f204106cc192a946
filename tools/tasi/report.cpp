#include "report.h"

#include <unistd.h>

#include <QFileInfo>
#include <QStringList>
#include <array>
#include <charconv>
#include <numeric>

#include "failure.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

/// A text on one line between tabs.
QString escaped(QString text) {
    return text.replace(u'\\', u"\\\\"_s)
        .replace(u'\t', u"\\t"_s)
        .replace(u'\n', u"\\n"_s)
        .replace(u'\r', u"\\r"_s)
        .replace(QChar(), u"\\0"_s);
}

QString shown(const engine::Cell& cell) {
    using Type = engine::Cell::Type;
    switch (cell.type) {
        case Type::null:
            return u"NULL"_s;
        case Type::whole:
            return QString::number(cell.whole);
        case Type::real: {
            std::array<char, 32> digits{};
            const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), cell.real);
            return QString::fromLatin1(digits.data(), end - digits.data());
        }
        case Type::text:
            if (isServerText(cell.bytes))
                return u'\'' +
                       escaped(
                           QString::fromUtf8(cell.bytes.data(), static_cast<qsizetype>(cell.bytes.size()))) +
                       u'\'';
            break;
        case Type::bytes:
            break;
    }
    // By its bytes: whatever it was meant for can be made of them.
    return u"x'"_s +
           QString::fromLatin1(
               QByteArray(cell.bytes.data(), static_cast<qsizetype>(cell.bytes.size())).toHex()) +
           u'\'';
}

}  // namespace

Report::Report(const QString& path) : m_path(path) {}

Report::~Report() {
    if (!m_kept && m_file.isOpen())
        m_file.remove();
}

void Report::note(const Notice& notice) {
    ++m_notices;
    write({notice.table, {}, {}, {}, {}, notice.words});
}

void Report::cell(const Table& table, qint64 row, const Column& column, const engine::Cell& before,
                  const SettledCell& after) {
    ++m_counts[after.odd];
    write({table.name, QString::number(row), column.name, shown(before), shown(after.cell),
           oddWords(after.odd)});
}

qint64 Report::cells() const {
    return std::accumulate(m_counts.begin(), m_counts.end(), qint64{0});
}

void Report::write(const QStringList& fields) {
    if (m_path.isEmpty())
        return;
    const auto line = [this](const QStringList& texts) {
        const QByteArray bytes = texts.join(u'\t').toUtf8() + '\n';
        if (m_file.write(bytes) != bytes.size())
            throw Failure(ExitCode::failed,
                          u"Rapor yazılamadı (%1): %2"_s.arg(m_file.errorString(), m_file.fileName()));
    };
    if (!m_file.isOpen()) {
        const QFileInfo wanted(m_path);
        QString path = m_path;
        for (int number = 2; QFileInfo::exists(path); ++number)
            path = wanted.path() +
                   u"/%1-%2.%3"_s.arg(wanted.completeBaseName(), QString::number(number), wanted.suffix());
        m_file.setFileName(path);
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly,
                         QFileDevice::ReadOwner | QFileDevice::WriteOwner))
            throw Failure(ExitCode::failed, u"Rapor yazılamadı (%1): %2"_s.arg(m_file.errorString(), path));
        line({u"tablo"_s, u"satır"_s, u"sütun"_s, u"önce"_s, u"sonra"_s, u"açıklama"_s});
    }
    line(fields);
}

void Report::flush() {
    if (m_file.isOpen() && (!m_file.flush() || ::fsync(m_file.handle()) != 0))
        throw Failure(ExitCode::failed, u"Rapor yazılamadı: "_s + m_file.fileName());
}

}  // namespace kovanix::tasi
