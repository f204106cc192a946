#include "aktar/xlsxreader.h"

#include <QDateTime>
#include <QXmlStreamReader>
#include <cmath>
#include <map>

#include "aktar/failure.h"
#include "values/dates.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostSharedTexts = 4'000'000;
constexpr qsizetype stepRows = 1000;
constexpr int secondsADay = 24 * 60 * 60;
constexpr int deepest = 64;

/// A part of the workbook, read tag by tag. A document type is no part of a workbook: what it could define is
/// never read.
class Part {
public:
    Part(ZipArchive& archive, const QString& name) : m_file(archive.open(name)), xml(m_file.get()) {}

    bool next() {
        if (xml.atEnd())
            return false;
        xml.readNext();
        if (xml.hasError())
            m_file->check();
        m_depth += xml.isStartElement() ? 1 : xml.isEndElement() ? -1 : 0;
        if (xml.hasError() || xml.isDTD() || m_depth > deepest)
            fail(u"Dosya bozuk: içindeki bir sayfa okunamadı"_s);
        return true;
    }
    bool begins(QStringView name) const { return xml.isStartElement() && xml.name() == name; }
    bool ends(QStringView name) const { return xml.isEndElement() && xml.name() == name; }

private:
    std::unique_ptr<ZipFile> m_file;
    int m_depth = 0;

public:
    QXmlStreamReader xml;
};

/// Texts that cells refer to by their number, packed closely.
class SharedTexts {
public:
    void add(const QString& text) {
        m_text += text.toStdString();
        m_ends.push_back(m_text.size());
    }
    size_t size() const { return m_ends.size(); }
    QString at(size_t place) const {
        const size_t begin = place == 0 ? 0 : m_ends[place - 1];
        return QString::fromUtf8(m_text.data() + begin, static_cast<qsizetype>(m_ends[place] - begin));
    }

private:
    std::string m_text;
    std::vector<size_t> m_ends;
};

/// A text with its runs joined; the readings that some languages write above their words are left out.
QString readText(Part& part, QStringView element) {
    QString text;
    bool within = false;
    int phonetic = 0;
    while (part.next() && !part.ends(element)) {
        if (part.begins(u"rPh"))
            ++phonetic;
        else if (part.ends(u"rPh"))
            --phonetic;
        else if (part.begins(u"t"))
            within = phonetic == 0;
        else if (part.ends(u"t"))
            within = false;
        else if (within && part.xml.isCharacters())
            text += part.xml.text();
        if (text.size() > CellTable::longestCell)
            fail(u"Dosyada aşırı uzun bir hücre var"_s);
    }
    return text;
}

SharedTexts readSharedTexts(ZipArchive& archive) {
    SharedTexts texts;
    const QString name = u"xl/sharedStrings.xml"_s;
    if (!archive.contains(name))
        return texts;
    Part part(archive, name);
    while (part.next()) {
        if (!part.begins(u"si"))
            continue;
        if (texts.size() >= mostSharedTexts)
            fail(u"Dosyada aşırı çok yazı var"_s);
        texts.add(readText(part, u"si"));
    }
    return texts;
}

enum class MomentKind { none, date, time, both };

MomentKind momentKind(const QString& pattern) {
    bool day = false;
    bool hour = false;
    bool quoted = false;
    bool bracketed = false;
    for (qsizetype place = 0; place < pattern.size(); ++place) {
        const QChar letter = pattern[place].toLower();
        if (letter == u'"')
            quoted = !quoted;
        else if (letter == u'\\' || letter == u'_' || letter == u'*')
            ++place;
        else if (!quoted && letter == u'[')
            bracketed = true;
        else if (!quoted && letter == u']')
            bracketed = false;
        else if (quoted || bracketed)
            continue;
        else if (letter == u';')
            break;
        else if (letter == u'd' || letter == u'y')
            day = true;
        else if (letter == u'h' || letter == u's')
            hour = true;
    }
    return day && hour ? MomentKind::both
           : day       ? MomentKind::date
           : hour      ? MomentKind::time
                       : MomentKind::none;
}

/// The patterns that a workbook needn't spell out.
MomentKind builtInKind(int format) {
    if ((format >= 14 && format <= 17) || (format >= 27 && format <= 31) || (format >= 50 && format <= 58))
        return MomentKind::date;
    if ((format >= 18 && format <= 21) || (format >= 32 && format <= 36) || (format >= 45 && format <= 47))
        return MomentKind::time;
    return format == 22 ? MomentKind::both : MomentKind::none;
}

/// What each cell style makes of a number.
std::vector<MomentKind> readStyles(ZipArchive& archive) {
    std::vector<MomentKind> styles;
    const QString name = u"xl/styles.xml"_s;
    if (!archive.contains(name))
        return styles;
    std::map<int, MomentKind> formats;
    Part part(archive, name);
    bool within = false;
    while (part.next()) {
        const auto attributes = part.xml.attributes();
        if (part.begins(u"numFmt"))
            formats[attributes.value("numFmtId"_L1).toInt()] =
                momentKind(attributes.value("formatCode"_L1).toString());
        else if (part.begins(u"cellXfs"))
            within = true;
        else if (part.ends(u"cellXfs"))
            within = false;
        else if (within && part.begins(u"xf")) {
            const int format = attributes.value("numFmtId"_L1).toInt();
            const auto own = formats.find(format);
            styles.push_back(own != formats.end() ? own->second : builtInKind(format));
        }
    }
    return styles;
}

struct Workbook {
    QString sheet;  // the first one's part
    bool from1904 = false;
};

QString partPath(const QString& target) {
    return target.startsWith(u'/') ? target.mid(1) : u"xl/"_s + target;
}

Workbook readWorkbook(ZipArchive& archive) {
    Workbook workbook;
    QString relation;
    Part part(archive, u"xl/workbook.xml"_s);
    while (part.next()) {
        const auto attributes = part.xml.attributes();
        if (part.begins(u"workbookPr")) {
            const auto answer = attributes.value("date1904"_L1);
            workbook.from1904 = answer == u"1" || answer == u"true";
        } else if (part.begins(u"sheet") && relation.isEmpty() &&
                   (!attributes.hasAttribute("state"_L1) || attributes.value("state"_L1) == u"visible")) {
            for (const QXmlStreamAttribute& attribute : attributes) {
                if (attribute.name() == u"id")
                    relation = attribute.value().toString();
            }
        }
    }
    Part relations(archive, u"xl/_rels/workbook.xml.rels"_s);
    while (relations.next()) {
        const auto attributes = relations.xml.attributes();
        if (relations.begins(u"Relationship") && attributes.value("Id"_L1) == relation)
            workbook.sheet = partPath(attributes.value("Target"_L1).toString());
    }
    if (workbook.sheet.isEmpty())
        fail(u"Dosyada okunacak sayfa yok"_s);
    return workbook;
}

QString momentText(double serial, MomentKind kind, bool from1904) {
    const double day = std::floor(serial);
    const int seconds =
        std::min(secondsADay - 1, static_cast<int>(std::lround((serial - day) * secondsADay)));
    const QDate date = (from1904 ? QDate(1904, 1, 1) : QDate(1899, 12, 30)).addDays(static_cast<qint64>(day));
    const QString time = timeText(QTime::fromMSecsSinceStartOfDay(seconds * 1000));
    if (kind == MomentKind::time)
        return time;
    return kind == MomentKind::date ? dateText(date) : dateText(date) + u' ' + time;
}

/// The column of a place like "BC12", counted from 0; -1 for what is none.
qsizetype columnOf(QStringView place) {
    constexpr int letters = 26;
    qsizetype column = 0;
    for (const QChar letter : place) {
        if (letter < u'A' || letter > u'Z')
            break;
        column = column * letters + (letter.unicode() - u'A' + 1);
        if (column > CellTable::mostColumns)
            break;
    }
    return column - 1;
}

class SheetReader {
public:
    SheetReader(ZipArchive& archive, const Workbook& workbook)
        : m_texts(readSharedTexts(archive)),
          m_styles(readStyles(archive)),
          m_from1904(workbook.from1904),
          m_part(archive, workbook.sheet) {}

    CellTable read(const std::function<void(qint64 rows)>& rows) {
        while (m_part.next()) {
            if (m_part.begins(u"row"))
                beginRow();
            else if (m_part.begins(u"c"))
                readCell();
            else if (m_part.ends(u"row"))
                m_table.endRow(m_line);
            else
                continue;
            if (rows && m_part.ends(u"row") && m_table.rowCount() % stepRows == 0)
                rows(m_table.rowCount());
        }
        return std::move(m_table);
    }

private:
    void beginRow() {
        bool told = false;
        const qint64 line = m_part.xml.attributes().value("r"_L1).toLongLong(&told);
        m_line = told ? line : m_line + 1;
        m_column = 0;
    }

    void readCell() {
        const auto attributes = m_part.xml.attributes();
        const QString type = attributes.value("t"_L1).toString();
        const auto style = static_cast<size_t>(attributes.value("s"_L1).toUInt());
        const qsizetype told = columnOf(attributes.value("r"_L1));
        // A row is no wider than what is looked at: cells beyond aren't read.
        const qsizetype column = told >= 0 ? told : m_column;
        QString text;
        bool within = false;
        while (m_part.next() && !m_part.ends(u"c")) {
            if (m_part.begins(u"v"))
                within = true;
            else if (m_part.ends(u"v"))
                within = false;
            else if (within && m_part.xml.isCharacters())
                text += m_part.xml.text();
            else if (m_part.begins(u"is"))
                text = readText(m_part, u"is");
        }
        if (column < m_column || column >= CellTable::mostColumns)
            return;
        for (; m_column < column; ++m_column)
            m_table.addCell({});
        add(type, style, text);
        ++m_column;
    }

    void add(const QString& type, size_t style, const QString& text) {
        if (type == u"s") {
            bool ok = false;
            const size_t place = text.toULongLong(&ok);
            if (!ok || place >= m_texts.size())
                fail(u"Dosya bozuk: olmayan bir yazıya gönderme var"_s);
            m_table.addCell(m_texts.at(place));
        } else if (type == u"inlineStr" || type == u"str") {
            m_table.addCell(text);
        } else if (type == u"e") {
            m_table.addCell(text, CellKind::error);
        } else if (type == u"b") {
            m_table.addCell(text == u"1" ? u"DOĞRU" : u"YANLIŞ");
        } else if (type == u"d") {
            m_table.addCell(text, CellKind::moment);
        } else if (text.isEmpty()) {
            m_table.addCell({});
        } else {
            addNumber(style, text);
        }
    }

    void addNumber(size_t style, const QString& text) {
        constexpr double lastSerial = 2'958'465;  // the last day of the year 9999
        bool ok = false;
        const double number = text.toDouble(&ok);
        if (!ok)
            fail(u"Dosya bozuk: sayı hücresinde sayı yok"_s);
        const MomentKind kind = style < m_styles.size() ? m_styles[style] : MomentKind::none;
        if (kind != MomentKind::none && number >= 0 && number <= lastSerial) {
            m_table.addCell(momentText(number, kind, m_from1904), CellKind::moment);
            return;
        }
        // Whole ones as they are shown: a barcode may stand as a number.
        const bool whole = number == std::floor(number) && std::abs(number) < 1e18;
        m_table.addCell(whole ? QString::number(number, 'f', 0) : text, CellKind::number);
    }

    SharedTexts m_texts;
    std::vector<MomentKind> m_styles;
    bool m_from1904;
    Part m_part;
    CellTable m_table{true};
    qint64 m_line = 0;
    qsizetype m_column = 0;
};

}  // namespace

CellTable readXlsx(ZipArchive& archive, const std::function<void(qint64 rows)>& rows) {
    return SheetReader(archive, readWorkbook(archive)).read(rows);
}

}  // namespace kovanix::aktar
