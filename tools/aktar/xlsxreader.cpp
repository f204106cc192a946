#include "aktar/xlsxreader.h"

#include <QDateTime>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <string>

#include "aktar/failure.h"
#include "aktar/xlsxtext.h"
#include "aktar/xmlpart.h"
#include "values/dates.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostSharedTexts = 4'000'000;
constexpr qsizetype stepRows = 1000;
constexpr int secondsADay = 24 * 60 * 60;
constexpr size_t mostSheets = 1000;
constexpr qsizetype longestName = 100;
constexpr qsizetype widestNumber = 50;
constexpr size_t mostBytesACell = 4 * static_cast<size_t>(CellTable::longestCell);

/// A text with its runs joined; the readings that some languages write above their words are left out.
class TextReader {
public:
    void begin(std::string_view name) {
        if (name == "rPh")
            ++m_phonetic;
        else if (name == "t") {
            m_within = m_phonetic == 0;
            m_begin = m_text.size();
        }
    }
    void end(std::string_view name) {
        if (name == "rPh")
            --m_phonetic;
        else if (name == "t") {
            m_within = false;
            if (m_text.find("_x", m_begin) != std::string::npos)
                m_text.replace(m_begin, std::string::npos,
                               withLetters(std::string_view(m_text).substr(m_begin)));
        }
    }
    void add(std::string_view piece) {
        if (m_within)
            m_text += piece;
        if (m_text.size() > mostBytesACell)
            fail(u"Dosyada aşırı uzun bir hücre var"_s);
    }
    const std::string& text() const { return m_text; }
    void clear() {
        m_text.clear();
        m_begin = 0;
        m_within = false;
        m_phonetic = 0;
    }

private:
    std::string m_text;
    size_t m_begin = 0;  // of the run that is being read
    bool m_within = false;
    int m_phonetic = 0;
};

/// Texts that cells refer to by their number, packed closely.
class SharedTexts : public XmlListener {
public:
    explicit SharedTexts(ZipArchive& archive) {
        if (const QString name = u"xl/sharedStrings.xml"_s; archive.contains(name))
            readXmlPart(archive, name, *this);
    }
    size_t size() const { return m_ends.size(); }
    std::string_view at(size_t place) const {
        const size_t begin = place == 0 ? 0 : m_ends[place - 1];
        return std::string_view(m_text).substr(begin, m_ends[place] - begin);
    }

    void begin(std::string_view name, const XmlAttributes& /*attributes*/) override {
        if (name == "si")
            m_reader.clear();
        else
            m_reader.begin(name);
    }
    void end(std::string_view name) override {
        if (name != "si") {
            m_reader.end(name);
            return;
        }
        if (m_ends.size() >= mostSharedTexts)
            fail(u"Dosyada aşırı çok yazı var"_s);
        m_text += m_reader.text();
        m_ends.push_back(m_text.size());
    }
    void text(std::string_view piece) override { m_reader.add(piece); }

private:
    TextReader m_reader;
    std::string m_text;
    std::vector<size_t> m_ends;
};

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

/// How many digits a pattern of nothing but zeros shows at least, as one of barcodes does; 0 for any other.
qsizetype zerosOf(QStringView pattern) {
    QStringView positive = pattern.left(pattern.indexOf(u';'));
    // The language that the pattern is of.
    if (positive.startsWith(u"[$"))
        positive = positive.mid(positive.indexOf(u']') + 1);
    const bool zeros =
        std::all_of(positive.begin(), positive.end(), [](QChar letter) { return letter == u'0'; });
    return zeros ? std::min(positive.size(), widestNumber) : 0;
}

/// What a cell style makes of a number.
struct NumberStyle {
    MomentKind moment = MomentKind::none;
    qsizetype digits = 0;  // at least
};

/// The cell styles of a workbook.
class Styles : public XmlListener {
public:
    explicit Styles(ZipArchive& archive) {
        if (const QString name = u"xl/styles.xml"_s; archive.contains(name))
            readXmlPart(archive, name, *this);
    }
    NumberStyle at(size_t style) const { return style < m_styles.size() ? m_styles[style] : NumberStyle(); }

    void begin(std::string_view name, const XmlAttributes& attributes) override {
        if (name == "numFmt") {
            const std::string_view code = attributes.value("formatCode");
            const QString pattern = QString::fromUtf8(code.data(), static_cast<qsizetype>(code.size()));
            m_formats[attributes.number("numFmtId")] = {momentKind(pattern), zerosOf(pattern)};
        } else if (name == "cellXfs") {
            m_within = true;
        } else if (m_within && name == "xf") {
            const int format = attributes.number("numFmtId");
            const auto own = m_formats.find(format);
            m_styles.push_back(own != m_formats.end() ? own->second : NumberStyle{builtInKind(format)});
        }
    }
    void end(std::string_view name) override { m_within = m_within && name != "cellXfs"; }

private:
    std::map<int, NumberStyle> m_formats;
    std::vector<NumberStyle> m_styles;
    bool m_within = false;
};

struct Sheet {
    QString name;
    std::string relation;
    QString part = {};
};

/// The sheets that can be seen.
class Workbook : public XmlListener {
public:
    explicit Workbook(ZipArchive& archive) {
        readXmlPart(archive, u"xl/workbook.xml"_s, *this);
        readXmlPart(archive, u"xl/_rels/workbook.xml.rels"_s, *this);
        std::erase_if(m_sheets, [](const Sheet& sheet) { return sheet.part.isEmpty(); });
        if (m_sheets.empty())
            fail(u"Dosyada okunacak sayfa yok"_s);
    }
    const std::vector<Sheet>& sheets() const { return m_sheets; }
    bool isFrom1904() const { return m_from1904; }

    void begin(std::string_view name, const XmlAttributes& attributes) override {
        if (name == "workbookPr") {
            const std::string_view answer = attributes.value("date1904");
            m_from1904 = answer == "1" || answer == "true";
        } else if (name == "sheet") {
            const std::string_view state = attributes.value("state");
            if (!state.empty() && state != "visible")
                return;
            if (m_sheets.size() >= mostSheets)
                fail(u"Dosyada aşırı çok sayfa var"_s);
            m_sheets.push_back({toText(attributes.value("name")).simplified().left(longestName),
                                std::string(attributes.value("id"))});
        } else if (name == "Relationship") {
            for (Sheet& sheet : m_sheets) {
                if (sheet.relation == attributes.value("Id"))
                    sheet.part = partPath(attributes.value("Target"));
            }
        }
    }

private:
    static QString toText(std::string_view utf8) {
        return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    }
    static QString partPath(std::string_view target) {
        const QString path = toText(target);
        return path.startsWith(u'/') ? path.mid(1) : u"xl/"_s + path;
    }

    std::vector<Sheet> m_sheets;
    bool m_from1904 = false;
};

/// Looks for the first cell of a sheet that holds something.
class CellSeeker : public XmlListener {
public:
    /// Whether it was found, or may stand beyond what is looked at.
    bool isDone() const override { return m_found || m_tags > mostTags; }

    void begin(std::string_view name, const XmlAttributes& /*attributes*/) override {
        ++m_tags;
        m_within = name == "v" || name == "t";
    }
    void end(std::string_view /*name*/) override { m_within = false; }
    void text(std::string_view piece) override {
        m_found = m_found || (m_within && piece.find_first_not_of(" \t\n\r") != std::string_view::npos);
    }

private:
    static constexpr int mostTags = 200'000;

    int m_tags = 0;
    bool m_within = false;
    bool m_found = false;
};

/// Whether a sheet beside the one that was read holds something. One that can't be read counts, so that it
/// is told of.
bool holdsSomething(ZipArchive& archive, const QString& part) {
    if (!archive.contains(part))
        return false;
    try {
        CellSeeker seeker;
        readXmlPart(archive, part, seeker);
        return seeker.isDone();
    } catch (const RuntimeError&) {
        return true;
    }
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
qsizetype columnOf(std::string_view place) {
    constexpr int letters = 26;
    qsizetype column = 0;
    for (const char letter : place) {
        if (letter < 'A' || letter > 'Z')
            break;
        column = column * letters + (letter - 'A' + 1);
        if (column > CellTable::mostColumns)
            break;
    }
    return column - 1;
}

/// The number of a row or of a shared text; nothing for what is none.
std::optional<qint64> wholeNumber(std::string_view digits) {
    qint64 number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
    return whole ? std::optional(number) : std::nullopt;
}

/// What the cells of every sheet refer to.
struct Parts {
    explicit Parts(ZipArchive& archive) : workbook(archive), texts(archive), styles(archive) {}

    Workbook workbook;
    SharedTexts texts;
    Styles styles;
};

class SheetReader : public XmlListener {
public:
    SheetReader(const Parts& parts, const std::function<void(qint64 rows)>& rows)
        : m_parts(parts), m_rows(rows) {}
    CellTable takeTable() { return std::move(m_table); }

    void begin(std::string_view name, const XmlAttributes& attributes) override {
        if (m_inline) {
            m_reader.begin(name);
        } else if (m_cell && name == "v") {
            m_value = true;
        } else if (m_cell && name == "is") {
            m_inline = true;
            m_reader.clear();
        } else if (name == "c") {
            beginCell(attributes);
        } else if (name == "row") {
            m_line = wholeNumber(attributes.value("r")).value_or(m_line + 1);
            m_column = 0;
        }
    }
    void end(std::string_view name) override {
        if (m_inline && name == "is") {
            m_inline = false;
            m_text = m_reader.text();
        } else if (m_inline) {
            m_reader.end(name);
        } else if (name == "v") {
            m_value = false;
        } else if (name == "c") {
            endCell();
        } else if (name == "row") {
            m_table.endRow(m_line);
            if (m_rows && m_table.rowCount() % stepRows == 0)
                m_rows(m_table.rowCount());
        }
    }
    void text(std::string_view piece) override {
        if (m_inline)
            m_reader.add(piece);
        else if (m_value)
            m_text += piece;
    }

private:
    void beginCell(const XmlAttributes& attributes) {
        m_cell = true;
        m_type = attributes.value("t");
        m_style = static_cast<size_t>(std::max(0, attributes.number("s")));
        m_place = columnOf(attributes.value("r"));
        m_text.clear();
    }

    void endCell() {
        m_cell = false;
        m_value = false;
        const qsizetype column = m_place >= 0 ? m_place : m_column;
        // A row is no wider than what is looked at: cells beyond aren't read.
        if (column < m_column || column >= CellTable::mostColumns)
            return;
        for (; m_column < column; ++m_column)
            m_table.addUtf8({});
        add();
        ++m_column;
    }

    void add() {
        if (m_type == "s") {
            const auto place = wholeNumber(m_text);
            if (!place || *place < 0 || static_cast<size_t>(*place) >= m_parts.texts.size())
                fail(u"Dosya bozuk: olmayan bir yazıya gönderme var"_s);
            m_table.addUtf8(m_parts.texts.at(static_cast<size_t>(*place)));
        } else if (m_type == "inlineStr") {
            m_table.addUtf8(m_text);
        } else if (m_type == "str") {
            m_table.addUtf8(withLetters(m_text));
        } else if (m_type == "e") {
            m_table.addUtf8(m_text, CellKind::error);
        } else if (m_type == "b") {
            m_table.addCell(m_text == "1" ? u"DOĞRU" : u"YANLIŞ");
        } else if (m_type == "d") {
            m_table.addUtf8(m_text, CellKind::moment);
        } else if (m_text.empty()) {
            m_table.addUtf8({});
        } else {
            addNumber();
        }
    }

    void addNumber() {
        constexpr double lastSerial = 2'958'465;  // the last day of the year 9999
        bool ok = false;
        const double number = QByteArrayView(m_text).toDouble(&ok);
        if (!ok)
            fail(u"Dosya bozuk: sayı hücresinde sayı yok"_s);
        const NumberStyle style = m_parts.styles.at(m_style);
        if (style.moment != MomentKind::none && number >= 0 && number <= lastSerial) {
            m_table.addCell(momentText(number, style.moment, m_parts.workbook.isFrom1904()),
                            CellKind::moment);
            return;
        }
        // Whole ones as they are shown: a barcode may stand as a number.
        if (number == std::floor(number) && std::abs(number) < 1e18)
            m_table.addCell(
                QString::number(number, 'f', 0).rightJustified(number < 0 ? 0 : style.digits, u'0'),
                CellKind::number);
        else
            m_table.addUtf8(m_text, CellKind::number);
    }

    const Parts& m_parts;
    const std::function<void(qint64 rows)>& m_rows;
    CellTable m_table{true};
    qint64 m_line = 0;
    qsizetype m_column = 0;

    // Of the cell that is being read.
    bool m_cell = false;
    bool m_value = false;   // within <v>
    bool m_inline = false;  // within <is>
    std::string m_type;
    size_t m_style = 0;
    qsizetype m_place = -1;
    std::string m_text;
    TextReader m_reader;
};

}  // namespace

QString listOfSheets(const QStringList& sheets) {
    constexpr qsizetype most = 6;
    QStringList names;
    for (const QString& sheet : sheets.first(std::min(sheets.size(), most)))
        names.append(u'“' + sheet + u'”');
    const QString list = names.join(u", "_s);
    return sheets.size() > most ? u"%1 ve %2 sayfa daha"_s.arg(list).arg(sheets.size() - most) : list;
}

WorkbookRows readXlsx(ZipArchive& archive, const QString& sheet,
                      const std::function<void(qint64 rows)>& rows) {
    const Parts parts(archive);
    const std::vector<Sheet>& sheets = parts.workbook.sheets();
    WorkbookRows read;
    const Sheet* chosen = nullptr;
    for (auto next = sheets.begin(); next != sheets.end() && read.table.rowCount() == 0; ++next) {
        if (!sheet.isEmpty() && next->name.compare(sheet, Qt::CaseInsensitive) != 0)
            continue;
        SheetReader reader(parts, rows);
        readXmlPart(archive, next->part, reader);
        read.table = reader.takeTable();
        chosen = &*next;
    }
    if (!chosen) {
        QStringList names;
        for (const Sheet& one : sheets)
            names.append(one.name);
        fail(u"“%1” adlı sayfa yok; dosyadaki sayfalar: %2"_s.arg(sheet, listOfSheets(names)));
    }
    read.sheet = chosen->name;
    for (const Sheet& one : sheets) {
        if (&one == chosen || holdsSomething(archive, one.part))
            read.sheets.append(one.name);
    }
    return read;
}

}  // namespace kovanix::aktar
