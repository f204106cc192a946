#include <QFile>
#include <cerrno>

#include "aktar/csvguard.h"
#include "aktar/sheetwriter.h"
#include "values/dates.h"
#include "values/numbers.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype chunkSize = 1 << 16;

/// A price has its kuruş, and whatever else it has.
QString priceText(double value) {
    const QString text = numberText(value);
    const qsizetype comma = text.indexOf(u',');
    if (text.contains(u'E'))
        return text;
    if (comma < 0)
        return text + u",00"_s;
    return comma == text.size() - 2 ? text + u'0' : text;
}

class CsvWriter : public SheetWriter {
public:
    CsvWriter(NewFile& file, const std::vector<Field>& fields, bool plain)
        : m_target(file), m_fields(fields), m_plain(plain), m_file(file.path()) {
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            m_target.fail(EACCES);
        m_pending = "\xEF\xBB\xBF";
        for (const Field& field : fields)
            appendText(field.heading, &field == &fields.back());
    }

    void addRow(const std::vector<OutCell>& cells) override {
        for (size_t column = 0; column < cells.size(); ++column)
            appendText(shown(m_fields[column], cells[column]), column + 1 == cells.size());
        if (m_pending.size() >= chunkSize)
            flush();
    }

    void finish() override {
        flush();
        m_file.close();
        if (m_file.error() != QFileDevice::NoError)
            m_target.fail(EIO);
    }

private:
    QString shown(const Field& field, const OutCell& cell) const {
        if (cell.number) {
            if (field.type == FieldType::price)
                return priceText(*cell.number);
            return numberText(*cell.number);
        }
        const QString text = QString::fromUtf8(cell.text.data(), static_cast<qsizetype>(cell.text.size()));
        if (field.type == FieldType::moment)
            return shownMoment(text).value_or(text);
        return m_plain ? text : guarded(text);
    }

    void appendText(const QString& text, bool last) {
        const bool quotes = text.contains(u';') || text.contains(u'"') || text.contains(u'\n') ||
                            text.contains(u'\r') || text.contains(u'\t') || text.startsWith(u' ');
        if (quotes)
            m_pending += '"' + QString(text).replace(u'"', u"\"\""_s).toUtf8() + '"';
        else
            m_pending += text.toUtf8();
        m_pending += last ? "\r\n" : ";";
    }

    void flush() {
        errno = 0;
        if (m_file.write(m_pending) != m_pending.size())
            m_target.fail(errno == 0 ? ENOSPC : errno);
        m_pending.clear();
    }

    NewFile& m_target;
    const std::vector<Field>& m_fields;
    bool m_plain;
    QFile m_file;
    QByteArray m_pending;
};

}  // namespace

std::unique_ptr<SheetWriter> makeCsvWriter(NewFile& file, const std::vector<Field>& fields, bool plain) {
    return std::make_unique<CsvWriter>(file, fields, plain);
}

}  // namespace kovanix::aktar
