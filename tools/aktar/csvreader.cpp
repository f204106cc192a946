#include "aktar/csvreader.h"

#include <QIODevice>
#include <array>
#include <map>

#include "aktar/csvguard.h"
#include "aktar/failure.h"
#include "aktar/fields.h"
#include "values/codepage.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 chunkSize = 1 << 16;
constexpr qsizetype rowsLookedAt = 50;

/// Goes through bytes and says whether they may be UTF-8.
class Utf8Test {
public:
    void feed(const QByteArray& bytes) {
        for (const char byte : bytes)
            take(static_cast<unsigned char>(byte));
    }
    bool passed() const { return m_good && m_wanted == 0; }

private:
    void take(unsigned char byte) {
        if (m_wanted > 0) {
            m_good = m_good && (byte & 0xC0U) == 0x80U;
            --m_wanted;
        } else if (byte >= 0x80) {
            m_good = m_good && byte >= 0xC2 && byte < 0xF5;
            m_wanted = byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
        }
    }

    bool m_good = true;
    int m_wanted = 0;
};

QByteArray beginning(QIODevice& file) {
    file.seek(0);
    return file.read(chunkSize);
}

/// Spreadsheets put it ahead of the rows to tell their likes the separator.
std::optional<QChar> toldSeparator(QStringView text) {
    if (text.startsWith(u"sep=", Qt::CaseInsensitive) && text.size() > 4 &&
        (text.size() == 5 || text[5] == u'\r' || text[5] == u'\n'))
        return text[4];
    return std::nullopt;
}

/// How well a separator takes the beginning of a file apart: known headings first, then how many rows are as
/// wide as most are.
std::pair<int, double> merit(QStringView text, QChar separator) {
    CellTable table;
    CsvParser parser(table, separator);
    try {
        for (qsizetype place = 0; place < text.size() && table.rowCount() < rowsLookedAt; place += 1024)
            parser.feed(text.mid(place, 1024));
        parser.finish();
    } catch (const RuntimeError&) {
        if (table.rowCount() == 0)
            return {0, 0};
    }
    int headings = 0;
    for (const Kind kind : {Kind::products, Kind::customers})
        headings = std::max(headings, knownHeadings(table, kind));
    std::map<qsizetype, int> widths;
    for (qsizetype row = 0; row < table.rowCount(); ++row)
        ++widths[table.cellCount(row)];
    double best = 0;
    for (const auto& [width, rows] : widths) {
        if (width > 1)
            best = std::max(best, static_cast<double>(rows) / static_cast<double>(table.rowCount()));
    }
    return {headings, best};
}

}  // namespace

TextEncoding findEncoding(QIODevice& file) {
    const QByteArray start = beginning(file);
    if (start.startsWith("\xFF\xFE") || start.startsWith("\xFE\xFF"))
        return TextEncoding::utf16;
    Utf8Test test;
    test.feed(start);
    while (test.passed() || !file.atEnd()) {
        const QByteArray chunk = file.read(chunkSize);
        if (chunk.isEmpty())
            break;
        test.feed(chunk);
    }
    return test.passed() ? TextEncoding::utf8 : TextEncoding::windows1254;
}

TextDecoder::TextDecoder(TextEncoding encoding)
    : m_isCodePage(encoding == TextEncoding::windows1254),
      m_decoder(encoding == TextEncoding::utf16 ? QStringDecoder::Utf16 : QStringDecoder::Utf8) {}

QString TextDecoder::decode(const QByteArray& bytes) {
    return m_isCodePage ? fromWindows1254(bytes) : QString(m_decoder.decode(bytes));
}

void CsvParser::feed(QStringView text) {
    for (const QChar letter : text)
        take(letter);
}

void CsvParser::take(QChar letter) {
    const bool secondOfTwo = m_afterReturn && letter == u'\n';
    m_afterReturn = letter == u'\r';
    const bool lineEnd = letter == u'\n' || letter == u'\r';
    if (lineEnd && !secondOfTwo)
        ++m_line;
    if (m_place == Place::quoted) {
        if (letter == u'"')
            m_place = Place::quoteInQuoted;
        else if (!secondOfTwo)
            m_cell += letter == u'\r' ? u'\n' : letter;
        if (m_cell.size() > CellTable::longestCell)
            fail(u"%1. satırda açılan tırnak kapanmıyor"_s.arg(m_quoteLine));
        return;
    }
    if (secondOfTwo)
        return;
    if (lineEnd) {
        endRow();
    } else if (letter == m_separator) {
        endCell();
    } else if (letter == u'"' && m_place == Place::cellStart) {
        m_place = Place::quoted;
        m_wasQuoted = true;
        m_quoteLine = m_line;
    } else if (letter == u'"' && m_place == Place::quoteInQuoted) {
        m_cell += letter;
        m_place = Place::quoted;
    } else {
        m_cell += letter;
        m_place = Place::plain;
    }
}

void CsvParser::endCell() {
    m_table.addCell(unguarded(m_cell));
    m_cell.clear();
    m_place = Place::cellStart;
    m_wasQuoted = false;
    m_hasCells = true;
}

void CsvParser::endRow() {
    if (m_hasCells || m_wasQuoted || !m_cell.isEmpty()) {
        endCell();
        m_table.endRow(m_rowLine);
    }
    m_hasCells = false;
    m_rowLine = m_line;
}

void CsvParser::finish() {
    if (m_place == Place::quoted)
        fail(u"%1. satırda açılan tırnak kapanmıyor"_s.arg(m_quoteLine));
    endRow();
}

CsvFormat findCsvFormat(QIODevice& file) {
    CsvFormat format;
    format.encoding = findEncoding(file);
    QByteArray bytes = beginning(file);
    if (file.atEnd() && !bytes.endsWith('\n'))
        bytes += '\n';
    // The row that the beginning breaks off in isn't looked at.
    QString text = TextDecoder(format.encoding).decode(bytes);
    text.truncate(text.lastIndexOf(u'\n') + 1);
    if (const auto told = toldSeparator(text)) {
        format.separator = *told;
        return format;
    }
    std::pair<int, double> best{0, 0};
    for (const QChar separator : {u';', u'\t', u',', u'|'}) {
        if (const auto found = merit(text, separator); found > best) {
            best = found;
            format.separator = separator;
        }
    }
    return format;
}

CellTable readCsv(QIODevice& file, const CsvFormat& format, const BytesRead& progress) {
    CellTable table;
    CsvParser parser(table, format.separator);
    TextDecoder decoder(format.encoding);
    file.seek(0);
    bool first = true;
    while (true) {
        const QByteArray bytes = file.read(chunkSize);
        if (bytes.isEmpty())
            break;
        const QString text = decoder.decode(bytes);
        QStringView rest = text;
        if (first && toldSeparator(rest)) {
            // Its own row stays as an empty one, so that lines count as in the file.
            rest = rest.mid(5);
        }
        first = false;
        parser.feed(rest);
        if (progress)
            progress(file.pos());
    }
    parser.finish();
    table.setWritesDots(format.separator == u',');
    return table;
}

}  // namespace kovanix::aktar
