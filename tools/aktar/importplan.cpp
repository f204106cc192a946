#include "aktar/importplan.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>

#include "aktar/barcodetext.h"
#include "data/baglanmamodulu.h"
#include "values/fieldtext.h"
#include "values/numbers.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr double dearest = 1e9;
constexpr double largestStock = 1e12;
constexpr qsizetype progressStep = 1000;
constexpr qsizetype longestWholeNumber = 15;  // that a spreadsheet keeps
// Places among the fields of products.
constexpr qsizetype nameField = 1;
constexpr qsizetype saleField = 3;

bool isNumberField(const Field& field) {
    return field.type == FieldType::price || field.type == FieldType::quantity;
}

bool hasControls(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar letter) {
        return letter.category() == QChar::Other_Control || letter == QChar::ReplacementCharacter;
    });
}

/// A text as a field of the screens could hold it: line ends within are blanks.
QString oneLine(QString text) {
    const auto isOdd = [](QChar letter) { return letter == u'\n' || letter == u'\r' || letter == u'\t'; };
    if (std::none_of(text.cbegin(), text.cend(), isOdd))
        return text.trimmed();
    text.replace(u"\r\n"_s, u"\n"_s);
    for (QChar& letter : text) {
        if (isOdd(letter))
            letter = u' ';
    }
    return text.trimmed();
}

/// "8,69E+12" is what a spreadsheet leaves of a barcode that it took for a number.
bool isSpoiltBarcode(const QString& text) {
    static const QRegularExpression exponent(u"^[0-9]([.,][0-9]+)?E\\+?[0-9]+$"_s,
                                             QRegularExpression::CaseInsensitiveOption);
    return text.contains(u'E', Qt::CaseInsensitive) && exponent.match(text).hasMatch();
}

/// How many digits a whole number has behind its zeros.
qsizetype digitsOf(QStringView number) {
    const auto first =
        std::find_if(number.begin(), number.end(), [](QChar letter) { return letter != u'0'; });
    return number.end() - first;
}

QString keyOf(const QString& text) {
    return identityKey(cutToField(text));
}

bool sameNumber(const QVariant& stored, double wanted) {
    const double value = sayicevir(stored);
    return value == wanted || numberText(value) == numberText(wanted);
}

/// The first row of the shop that has a key; none where no row has it.
const StoredRow* firstOf(const StoredRows& stored, const QString& key) {
    const auto rows = stored.constFind(key);
    return rows == stored.constEnd() ? nullptr : &rows->front();
}

/// Which sign each number column writes; a column that says nothing follows the others of its file.
std::vector<std::optional<DecimalSign>> findSigns(const CellTable& table, const std::vector<Field>& fields,
                                                  const std::vector<qsizetype>& columns, qsizetype first) {
    std::vector<DecimalVote> votes(fields.size());
    DecimalVote all;
    for (size_t field = 0; field < fields.size(); ++field) {
        if (!isNumberField(fields[field]) || columns[field] < 0)
            continue;
        for (qsizetype row = first; row < table.rowCount(); ++row) {
            if (table.kind(row, columns[field]) == CellKind::text)
                votes[field].add(table.text(row, columns[field]));
        }
        all.add(votes[field]);
    }
    const DecimalSign usual = all.sign().value_or(table.writesDots() ? DecimalSign::dot : DecimalSign::comma);
    std::vector<std::optional<DecimalSign>> signs(fields.size());
    for (size_t field = 0; field < fields.size(); ++field) {
        signs[field] = votes[field].isSilent() ? std::optional(usual) : votes[field].sign();
    }
    return signs;
}

}  // namespace

QString identityKey(const QString& key) {
    QString folded = key;
    for (QChar& letter : folded) {
        if (letter >= u'A' && letter <= u'Z')
            letter = QChar(letter.unicode() + (u'a' - u'A'));
    }
    return folded;
}

ImportRecords::ImportRecords(const CellTable& table, Kind kind, const Mapping& mapping,
                             const Progress& progress)
    : m_kind(kind) {
    const std::vector<Field>& fields = fieldsOf(kind);
    for (size_t field = 0; field < fields.size(); ++field)
        m_columns.push_back(mapping.columnOf(static_cast<int>(field)));
    const qsizetype first = mapping.headingRow + 1;
    m_signs = findSigns(table, fields, m_columns, first);
    m_records.reserve(static_cast<size_t>(table.rowCount() - first));
    for (qsizetype row = first; row < table.rowCount(); ++row) {
        m_records.push_back(read(table, mapping, row));
        if (progress && row % progressStep == 0)
            progress(row);
    }
    findDoubles();
}

ImportRecords::Record ImportRecords::read(const CellTable& table, const Mapping& mapping,
                                          qsizetype row) const {
    Record record;
    record.line = table.line(row);
    const auto refuse = [&record](const QString& why) {
        if (record.fault.isEmpty())
            record.fault = why;
    };
    const qsizetype wanted = mapping.headingRow >= 0 ? table.cellCount(mapping.headingRow)
                                                     : static_cast<qsizetype>(mapping.fields.size());
    const qsizetype found = table.cellCount(row);
    bool fits = found >= wanted || table.hasPaddedRows();
    for (qsizetype column = wanted; fits && column < found; ++column)
        fits = table.isBlank(row, column);
    if (!fits)
        refuse(u"%1 sütun var, %2 olmalı"_s.arg(found).arg(wanted));

    const std::vector<Field>& fields = fieldsOf(m_kind);
    for (size_t field = 0; field < fields.size(); ++field)
        record.values.append(readCell(table, row, static_cast<int>(field), record));
    const QString key = record.values.front().toString();
    record.key = keyOf(key);
    if (key.isEmpty())
        refuse(u"%1 boş"_s.arg(fields.front().heading));
    else if (m_kind == Kind::products && isSpoiltBarcode(key))
        refuse(u"Barkod bozulmuş (%1): tabloda sayıya çevrilmiş"_s.arg(key));
    if (m_kind == Kind::products && m_columns[nameField] >= 0 &&
        record.values[nameField].toString().isEmpty())
        refuse(u"Ürün adı boş"_s);
    return record;
}

QVariant ImportRecords::readCell(const CellTable& table, qsizetype row, int field, Record& record) const {
    const Field& description = fieldsOf(m_kind)[static_cast<size_t>(field)];
    const qsizetype column = m_columns[static_cast<size_t>(field)];
    const auto refuse = [&](const QString& why) {
        if (record.fault.isEmpty())
            record.fault = description.heading + u": " + why;
        return QVariant();
    };
    if (column < 0)
        return {};
    const QString whole = table.text(row, column);
    const QString text = oneLine(whole);
    const CellKind kind = table.kind(row, column);
    if (kind == CellKind::error)
        return refuse(u"hücrede hata var (%1)"_s.arg(text));
    if (!isNumberField(description)) {
        if (hasControls(text))
            return refuse(u"okunamayan harf var"_s);
        if (kind == CellKind::moment)
            return refuse(u"tabloda tarihe çevrilmiş (%1)"_s.arg(text));
        if (kind == CellKind::number && description.type == FieldType::key &&
            digitsOf(text) > longestWholeNumber)
            return refuse(u"tabloda sayı olarak durduğu için son haneleri silinmiş"_s);
        if (m_kind != Kind::products || description.type != FieldType::key)
            return text;
        const BarcodeReading reading = readBarcode(whole);
        if (reading.several)
            return refuse(u"arada boşluk var, birden çok barkod olabilir (%1)"_s.arg(text));
        if (reading.settled)
            record.written = text;
        return oneLine(reading.barcode);
    }
    if (text.isEmpty())
        return {};
    if (kind == CellKind::moment)
        return refuse(u"sayı yerine tarih var (%1)"_s.arg(text));
    NumberReading reading;
    if (kind == CellKind::number) {
        const std::optional<double> number = readSpreadsheetNumber(text);
        reading = {number.value_or(0), number ? NumberFault::none : NumberFault::noNumber};
    } else {
        // As it is: a line end within parts two numbers.
        reading = readNumber(whole, m_signs[static_cast<size_t>(field)]);
    }
    if (reading.fault == NumberFault::noNumber)
        return refuse(u"sayı değil (%1)"_s.arg(text.left(40)));
    if (reading.fault == NumberFault::ambiguous)
        return refuse(u"%1 binlik mi, ondalık mı belli değil"_s.arg(text));
    if (description.type == FieldType::price && (reading.value < 0 || reading.value >= dearest))
        return refuse(u"fiyat olamaz (%1)"_s.arg(text));
    if (std::abs(reading.value) >= largestStock)
        return refuse(u"stok olamaz (%1)"_s.arg(text));
    return reading.value;
}

/// A key that comes twice with the same values counts once; one that comes with others is refused wherever
/// it stands, since nobody can say which line is right.
void ImportRecords::findDoubles() {
    std::vector<bool> disputed(m_records.size());
    m_byKey.reserve(static_cast<qsizetype>(m_records.size()));
    for (size_t place = 0; place < m_records.size(); ++place) {
        Record& record = m_records[place];
        if (!record.fault.isEmpty())
            continue;
        if (!record.written.isEmpty())
            m_written.insert(keyOf(record.written));
        const auto known = m_byKey.constFind(record.key);
        if (known == m_byKey.constEnd()) {
            m_byKey.insert(record.key, place);
            continue;
        }
        const Record& first = m_records[*known];
        if (record.values.mid(1) == first.values.mid(1)) {
            record.doubled = u"%1. satırın aynısı"_s.arg(first.line);
        } else {
            record.doubled = u"%1. satırda da var, değerleri başka"_s.arg(first.line);
            disputed[*known] = true;
        }
    }
    for (size_t place = 0; place < m_records.size(); ++place) {
        if (disputed[place])
            m_records[place].doubled = u"Aşağıda başka değerlerle bir daha var"_s;
    }
}

/// A record against the row that it would change, or against none. A text that fits the row's when it is cut
/// as the screens cut says the same.
ImportRecords::Comparison ImportRecords::compare(const Record& record, const StoredRow* stored) const {
    const std::vector<Field>& fields = fieldsOf(m_kind);
    Comparison result;
    if (stored) {
        result.row.identity = stored->identity;
        result.row.key = stored->values.front().toString();
    }
    for (qsizetype field = 0; field < static_cast<qsizetype>(fields.size()); ++field) {
        const Field& description = fields[static_cast<size_t>(field)];
        const QVariant& value = record.values[field];
        bool other = !stored;
        QVariant written;
        if (isNumberField(description)) {
            // An empty cell leaves what is there.
            other = other || (value.isValid() && !sameNumber(stored->values[field], value.toDouble()));
            written = value.isValid() ? value : QVariant(0.0);
        } else {
            const QString text = value.toString();
            const QString fitting = cutToField(text);
            const QString before = stored ? stored->values[field].toString().trimmed() : QString();
            // A key that was found says the same, whatever its letter case.
            other = other || (field > 0 && !text.isEmpty() && text != before && fitting != before);
            written = fitting.isNull() ? u""_s : fitting;
            if (other && fitting != text)
                result.cut.push_back({record.line, record.values.front().toString(),
                                      u"%1 %2 harfe kısaltıldı: %3"_s.arg(description.heading)
                                          .arg(fitting.size())
                                          .arg(fitting)});
        }
        result.row.values.append(other ? written : QVariant());
        result.differs = result.differs || other;
    }
    return result;
}

/// The keys that several rows of the shop have, where every line of the file says what one of them says: two
/// customers of one name.
QSet<QString> ImportRecords::keysAsOftenInTheShop(const StoredRows& stored) const {
    QSet<QString> keys;
    for (auto rows = stored.cbegin(); rows != stored.cend(); ++rows) {
        if (rows->size() > 1)
            keys.insert(rows.key());
    }
    for (const Record& record : m_records) {
        if (!record.fault.isEmpty() || !keys.contains(record.key))
            continue;
        const QList<StoredRow> rows = stored.value(record.key);
        if (std::all_of(rows.begin(), rows.end(),
                        [&](const StoredRow& row) { return compare(record, &row).differs; }))
            keys.remove(record.key);
    }
    return keys;
}

QString ImportRecords::faultOfNew(const Record& record) const {
    if (m_kind != Kind::products)
        return {};
    if (record.values[nameField].toString().isEmpty())
        return u"Yeni ürünün adı yok"_s;
    return record.values[saleField].isValid() ? QString() : u"Yeni ürünün satış fiyatı yok"_s;
}

ImportPlan ImportRecords::plan(const StoredRows& stored) const {
    ImportPlan plan;
    plan.kind = m_kind;
    const QSet<QString> asOften = keysAsOftenInTheShop(stored);
    for (const Record& record : m_records) {
        // The shop may have a barcode just as the file writes it, odd as it is: then that one is meant.
        const StoredRow* row = record.written.isEmpty() ? nullptr : firstOf(stored, keyOf(record.written));
        const bool settled = !record.written.isEmpty() && !row;
        if (!row)
            row = firstOf(stored, record.key);
        const QString key = record.values.front().toString();
        const bool again = record.fault.isEmpty() && asOften.contains(record.key);
        QString fault = record.fault;
        if (fault.isEmpty() && !again)
            fault = record.doubled;
        if (fault.isEmpty() && !row)
            fault = faultOfNew(record);
        if (!fault.isEmpty()) {
            plan.refused.push_back({record.line, key, fault});
            continue;
        }
        if (settled)
            plan.settled.push_back(
                {record.line, key, u"Barkod düzeltildi, dosyada yazan: %1"_s.arg(record.written)});
        Comparison result = again ? Comparison() : compare(record, row);
        if (!result.differs) {
            ++plan.unchanged;
            continue;
        }
        plan.cut.insert(plan.cut.end(), result.cut.begin(), result.cut.end());
        (row ? plan.changed : plan.added).push_back(std::move(result.row));
    }
    return plan;
}

}  // namespace kovanix::aktar
