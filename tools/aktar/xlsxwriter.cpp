#include <xlsxwriter.h>

#include <QDate>
#include <QFile>
#include <QTime>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <utility>

#include "aktar/sheetwriter.h"
#include "aktar/xlsxtext.h"
#include "aktar/ziparchive.h"
#include "runtime/runtimeerror.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestText = 32'767;
constexpr double secondsADay = 24 * 60 * 60;
constexpr int chunkSize = 1 << 18;

QByteArray utf8(const QString& text) {
    return text.toUtf8();
}

/// A moment as the database keeps it, in days since a spreadsheet's beginning; nothing for what is none.
std::optional<double> serialOf(std::string_view stored) {
    const QString text = QString::fromUtf8(stored.data(), static_cast<qsizetype>(stored.size()));
    const QDate date = QDate::fromString(text.left(10), Qt::ISODate);
    const QTime time = text.size() > 10 ? QTime::fromString(text.mid(11), Qt::ISODate) : QTime(0, 0);
    if (!date.isValid() || !time.isValid() || date.year() < 1900 || date.year() > 9999)
        return std::nullopt;
    return static_cast<double>(QDate(1899, 12, 30).daysTo(date)) +
           time.msecsSinceStartOfDay() / 1000 / secondsADay;
}

/// A text that a workbook may hold: without the letters that no XML has, and not too long.
QByteArray fitting(std::string_view text) {
    QString letters = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    letters.removeIf([](QChar letter) {
        return (letter < u' ' && letter != u'\n' && letter != u'\t') || letter.unicode() >= 0xFFFE;
    });
    return letters.left(longestText).toUtf8();
}

bool isPlain(std::string_view text) {
    return text.size() < static_cast<size_t>(longestText) &&
           std::all_of(text.begin(), text.end(), [](char letter) { return letter >= ' ' && letter < 0x7F; });
}

/// How often a sheet's part begins a row. The library doesn't tell when its own temporary files have found no
/// room.
qint64 countRows(ZipArchive& archive, const QString& part) {
    const std::unique_ptr<ZipFile> sheet = archive.open(part);
    const QByteArray mark = "<row ";
    QByteArray chunk;
    qint64 rows = 0;
    while (true) {
        const QByteArray more = sheet->read(chunkSize);
        if (more.isEmpty()) {
            sheet->check();
            return rows;
        }
        chunk += more;
        qsizetype place = 0;
        for (qsizetype found = chunk.indexOf(mark); found >= 0; found = chunk.indexOf(mark, place)) {
            ++rows;
            place = found + mark.size();
        }
        chunk = chunk.mid(std::max(place, chunk.size() - mark.size() + 1));
    }
}

class XlsxWriter : public SheetWriter {
public:
    XlsxWriter(NewFile& file, const std::vector<Field>& fields, const QString& sheetName, quint32 rowsASheet)
        : m_target(file), m_fields(fields), m_sheetName(sheetName), m_rowsASheet(rowsASheet) {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        options.use_zip64 = LXW_TRUE;
        m_path = QFile::encodeName(file.path());
        m_book = ::workbook_new_opt(m_path.constData(), &options);
        if (!m_book)
            m_target.fail(ENOMEM);
        m_bold = ::workbook_add_format(m_book);
        ::format_set_bold(m_bold);
        for (const Field& field : fields)
            m_formats.push_back(makeFormat(field.type));
        addSheet();
    }

    ~XlsxWriter() override {
        // What was begun has to be ended for its memory to be given back; the file is thrown away.
        if (m_book)
            ::workbook_close(m_book);
    }

    void addRow(const std::vector<OutCell>& cells) override {
        if (m_row >= m_rowsASheet)
            addSheet();
        for (size_t column = 0; column < cells.size(); ++column)
            write(static_cast<lxw_col_t>(column), cells[column]);
        ++m_row;
        ++m_rowsWritten;
    }

    void finish() override {
        errno = 0;
        const lxw_error error = ::workbook_close(std::exchange(m_book, nullptr));
        if (error != LXW_NO_ERROR)
            m_target.fail(errno == 0 ? ENOSPC : errno);
        try {
            ZipArchive archive(m_target.path(), ownLimits());
            qint64 rows = 0;
            for (int sheet = 1; sheet <= m_sheets; ++sheet)
                rows += countRows(archive, u"xl/worksheets/sheet%1.xml"_s.arg(sheet));
            if (rows == m_rowsWritten + m_sheets)
                return;
        } catch (const RuntimeError&) {
            m_target.fail(ENOSPC);
        }
        m_target.fail(ENOSPC);
    }

private:
    /// What we have written ourselves may be as large as it is.
    static ZipLimits ownLimits() { return {100'000, qint64(1) << 50, 1'000'000, qint64(1) << 50}; }

    lxw_format* makeFormat(FieldType type) {
        lxw_format* const format = ::workbook_add_format(m_book);
        switch (type) {
            case FieldType::key:
            case FieldType::text:
                ::format_set_num_format(format, "@");
                break;
            case FieldType::price:
                ::format_set_num_format(format, "#,##0.00");
                break;
            case FieldType::quantity:
                ::format_set_num_format(format, "General");
                break;
            case FieldType::moment:
                ::format_set_num_format(format, "dd.mm.yyyy hh:mm:ss");
                break;
        }
        return format;
    }

    void addSheet() {
        ++m_sheets;
        const QString name = m_sheets == 1 ? m_sheetName : u"%1 %2"_s.arg(m_sheetName).arg(m_sheets);
        m_sheet = ::workbook_add_worksheet(m_book, utf8(name).constData());
        if (!m_sheet)
            m_target.fail(ENOMEM);
        for (size_t column = 0; column < m_fields.size(); ++column) {
            const auto place = static_cast<lxw_col_t>(column);
            const bool wide = m_fields[column].column == u"urun"_s || m_fields[column].column == u"adres"_s;
            constexpr double wideLetters = 40;
            constexpr double letters = 19;
            ::worksheet_set_column(m_sheet, place, place, wide ? wideLetters : letters, m_formats[column]);
            ::worksheet_write_string(m_sheet, 0, place, utf8(m_fields[column].heading).constData(), m_bold);
        }
        ::worksheet_freeze_panes(m_sheet, 1, 0);
        m_row = 1;
    }

    void write(lxw_col_t column, const OutCell& cell) {
        lxw_error error = LXW_NO_ERROR;
        std::optional<double> number = cell.number;
        if (!number && m_fields[column].type == FieldType::moment)
            number = serialOf(cell.text);
        if (number && std::isfinite(*number)) {
            error = ::worksheet_write_number(m_sheet, m_row, column, *number, m_formats[column]);
        } else if (!cell.text.empty()) {
            if (isPlain(cell.text))
                m_text.assign(cell.text);
            else
                m_text = fitting(cell.text).toStdString();
            if (m_text.find("_x") != std::string::npos)
                m_text = withNumbers(m_text);
            error = ::worksheet_write_string(m_sheet, m_row, column, m_text.c_str(), m_formats[column]);
        }
        if (error != LXW_NO_ERROR)
            m_target.fail(ENOSPC);
    }

    NewFile& m_target;
    const std::vector<Field>& m_fields;
    QString m_sheetName;
    quint32 m_rowsASheet;
    QByteArray m_path;
    lxw_workbook* m_book = nullptr;
    lxw_worksheet* m_sheet = nullptr;
    lxw_format* m_bold = nullptr;
    std::vector<lxw_format*> m_formats;
    std::string m_text;
    lxw_row_t m_row = 0;
    int m_sheets = 0;
    qint64 m_rowsWritten = 0;
};

}  // namespace

std::unique_ptr<SheetWriter> makeXlsxWriter(NewFile& file, const std::vector<Field>& fields,
                                            const QString& sheetName, quint32 rowsASheet) {
    return std::make_unique<XlsxWriter>(file, fields, sheetName, rowsASheet);
}

}  // namespace kovanix::aktar
