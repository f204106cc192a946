#include "tofile.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QVariantList>
#include <cmath>
#include <vector>

#include "copyrows.h"
#include "data/baglanmamodulu.h"
#include "database/bulkwriter.h"
#include "database/connection.h"
#include "handover.h"
#include "server.h"
#include "servershop.h"
#include "shopfile.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;
using Step = Progress::Step;
using Type = engine::Cell::Type;

namespace {

constexpr qint64 rowsAPortion = 4096;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

QString textOf(std::string_view bytes) {
    QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return text.isNull() ? u""_s : text;  // the drivers take a null text for a null value
}

QVariant valueOf(const engine::Cell& cell) {
    switch (cell.type) {
        case Type::null:
            return {};
        case Type::whole:
            return cell.whole;
        case Type::real:
            return cell.real;
        case Type::text:
            return textOf(cell.bytes);
        case Type::bytes:
            break;
    }
    return QByteArray(cell.bytes.data(), static_cast<qsizetype>(cell.bytes.size()));
}

bool isSame(const engine::Cell& one, const engine::Cell& other) {
    if (one.type != other.type)
        return false;
    switch (one.type) {
        case Type::null:
            return true;
        case Type::whole:
            return one.whole == other.whole;
        case Type::real:
            return one.real == other.real;  // a file knows one zero
        case Type::text:
        case Type::bytes:
            break;
    }
    return one.bytes == other.bytes;
}

/// What a file's engine makes of a cell that it can't hold; none where it has no excuse.
Odd changeInFile(const engine::Cell& server, const engine::Cell& file, Form form) {
    if (server.type == Type::real && std::isnan(server.real) && file.type == Type::null)
        return Odd::notANumber;
    // A column of moments takes a text that is a number for one.
    if (form == Form::moment && server.type == Type::text &&
        (file.type == Type::whole || file.type == Type::real))
        return Odd::momentKept;
    if (server.type == Type::text && file.type == Type::text && server.bytes.starts_with(byteOrderMark) &&
        server.bytes.substr(byteOrderMark.size()) == file.bytes)
        return Odd::textChanged;
    return Odd::none;
}

/// A file that goes again unless it is kept.
class NewFile {
public:
    explicit NewFile(const QString& path) : m_path(path), m_made(path + u".yarim"_s) {
        if (QFileInfo::exists(path))
            throw Failure(ExitCode::fileUnfit, u"Bu dosya zaten var: "_s + path);
        if (ServerAddress::isPointer(path))
            throw Failure(ExitCode::usage, u"Bir veritabanı dosyasının adı .sunucu ile bitemez: "_s + path);
        if (isDatabaseInUse(m_made))
            throw Failure(ExitCode::fileUnfit, u"Bu dosyaya şu anda yazılıyor: "_s + path);
        remove();  // of a run that was killed
        QFile file(m_made);
        // The till's engine takes an empty file for a new database.
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly,
                       QFileDevice::ReadOwner | QFileDevice::WriteOwner))
            throw Failure(ExitCode::failed, u"Dosya açılamadı (%1): %2"_s.arg(file.errorString(), m_made));
    }
    ~NewFile() { remove(); }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    const QString& path() const { return m_made; }

    void keep() {
        const int file = ::open(QFile::encodeName(m_made).constData(), O_RDONLY | O_CLOEXEC);
        const bool synced = file >= 0 && ::fsync(file) == 0;
        if (file >= 0)
            ::close(file);
        if (!synced)
            throw Failure(ExitCode::failed, u"Dosya diske yazılamadı: "_s + m_made);
        giveToFolderOwner(m_made);
        renameFile(m_made, m_path);
    }

private:
    void remove() const {
        for (const QString& ending : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
            QFile::remove(m_made + ending);
    }

    QString m_path;
    QString m_made;
};

class Copy {
public:
    Copy(const ToFile& order, const Observer& observer)
        : m_order(order),
          m_observer(observer),
          m_address(addressOf(order.pointer, {})),
          m_file(order.file),
          m_report(order.listsOddities ? reportPath(order.file) : QString()) {}

    MoveResult run() {
        tell({Step::checking});
        m_server.emplace(m_address, m_order.serverPassword);
        m_server->execute(u"BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"_s);
        m_catalogue = readCatalogue(*m_server);
        refuseOther();
        for (const Table& table : m_catalogue.tables)
            m_toPass += 2 * table.rows;
        for (const Notice& notice : m_catalogue.notices)
            m_report.note(notice);
        try {
            writeFile();
        } catch (const Failure&) {
            throw;
        } catch (const RuntimeError& error) {
            throw Failure(ExitCode::failed, u"Dosya yazılamadı: "_s + error.description());
        }
        compareFile();
        m_server->execute(u"COMMIT"_s);
        m_report.flush();
        tell({Step::committing});
        m_file.keep();
        m_report.keep();
        tell({Step::committed});
        for (const QString& folder : m_order.folders) {
            const QString path = QDir::cleanPath(QFileInfo(m_order.file).absoluteFilePath());
            const QString written = nameDatabase(folder, path, m_order.filePassword);
            if (!written.isEmpty())
                m_result.settings.append(written);
        }
        m_result.settledCells = m_report.cells();
        m_result.settled = m_report.counts();
        m_result.notices = m_report.notices();
        m_result.report = m_report.path();
        tell({Step::done});
        return m_result;
    }

private:
    void tell(const Progress& progress) const {
        if (m_observer)
            m_observer(progress);
    }

    void tellRows(Step step, const Table& table, qint64 row) {
        ++m_passed;
        if (row % rowsAPortion == 0)
            tell({step, table.name, row, table.rows, m_passed, m_toPass});
    }

    void refuseOther() const {
        for (const Table& table : m_catalogue.tables) {
            if (tillTables().contains(table.name))
                return;
        }
        throw Failure(ExitCode::serverUnfit, u"Bu veritabanında bir dükkânın tabloları yok."_s);
    }

    static std::vector<Form> formsOf(const Table& table) {
        std::vector<Form> forms;
        for (const Column& column : table.columns)
            forms.push_back(column.form);
        return forms;
    }

    std::vector<engine::Cell> cellsOf(const Table& table, std::string_view message,
                                      const std::vector<Form>& forms) const {
        std::vector<engine::Cell> cells = readCopyRow(message, forms);
        if (cells.empty())
            throw Failure(ExitCode::failed, u"Sunucunun yanıtı anlaşılmadı: "_s + table.name);
        return cells;
    }

    /// The next row of a table that is read; nothing behind the last.
    std::optional<std::string_view> nextRow(bool first) {
        std::optional<std::string_view> message = m_server->receive();
        if (message && first && !dropCopyHeader(*message))
            throw Failure(ExitCode::failed, u"Sunucunun yanıtı anlaşılmadı."_s);
        if (message && message->empty())
            message = m_server->receive();
        if (message != copyTrailer())
            return message;
        m_server->receive();
        return std::nullopt;
    }

    void writeFile() {
        Connection connection;
        QString text = u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=%1;Persist Security Info=False"_s.arg(
            m_file.path());
        if (!m_order.filePassword.isEmpty())
            text += u";Jet OLEDB:Database Password="_s + m_order.filePassword;
        connection.open(text);
        for (const Table& table : m_catalogue.tables)
            connection.execute(createStatement(table, dialect::Target::file));
        {
            BulkWriter rows(connection);
            for (const Table& table : m_catalogue.tables) {
                fill(rows, table);
                ++m_result.tables;
                m_result.rows += table.rows;
            }
            rows.finish();
        }
        for (const Table& table : m_catalogue.tables)
            setCounter(connection, table);
        tell({Step::indexing});
        keepAccessPaths(connection);
        connection.close();
    }

    void fill(BulkWriter& rows, const Table& table) {
        QStringList columns;
        for (const Column& column : table.columns)
            columns.append(column.name);
        rows.into(table.name, columns);
        const std::vector<Form> forms = formsOf(table);
        beginRead(*m_server, table);
        qint64 row = 0;
        for (auto message = nextRow(true); message; message = nextRow(false)) {
            QVariantList values;
            values.reserve(columns.size());
            for (const engine::Cell& cell : cellsOf(table, *message, forms))
                values.append(valueOf(cell));
            rows.add(values);
            tellRows(Step::copying, table, ++row);
        }
    }

    /// The engine counts on from the last row; numbers whose rows were deleted aren't given again either.
    static void setCounter(Connection& connection, const Table& table) {
        if (table.counter < 0 || table.lastNumber < 1)
            return;
        const QString name = u'\'' + QString(table.name).replace(u'\'', u"''"_s) + u'\'';
        connection.execute(u"DELETE FROM sqlite_sequence WHERE name = %1"_s.arg(name));
        connection.execute(u"INSERT INTO sqlite_sequence (name, seq) VALUES (%1, %2)"_s.arg(
            name, QString::number(table.lastNumber)));
    }

    void compareFile() {
        ShopFile file(m_file.path(), m_order.filePassword);
        if (file.tables().size() != m_catalogue.tables.size())
            throw Failure(ExitCode::differs, u"Dosyada eksik tablo var."_s);
        for (qsizetype i = 0; i < m_catalogue.tables.size(); ++i)
            compare(m_catalogue.tables[i], file, file.tables()[i]);
    }

    void compare(const Table& table, ShopFile& file, const Table& written) {
        const auto differs = [&](const QString& what) {
            return Failure(ExitCode::differs,
                           u"Dosyadan geri okunan %1 tablosu farklı: %2"_s.arg(table.name, what));
        };
        if (written.name != table.name || written.columns.size() != table.columns.size() ||
            written.rows != table.rows || written.lastNumber != table.lastNumber)
            throw differs(u"sütun, satır ya da son numara"_s);
        const std::vector<Form> forms = formsOf(table);
        beginRead(*m_server, table);
        std::optional<std::string_view> message = nextRow(true);
        qint64 row = 0;
        file.forEachRow(written, [&](const engine::RowCursor& cursor) {
            ++row;
            if (!message)
                throw differs(u"fazladan satır"_s);
            const std::vector<engine::Cell> cells = cellsOf(table, *message, forms);
            for (std::size_t i = 0; i < cells.size(); ++i) {
                const engine::Cell found = cursor.cell(static_cast<int>(i));
                if (isSame(cells[i], found))
                    continue;
                const Odd odd = changeInFile(cells[i], found, forms[i]);
                const Column& column = table.columns[static_cast<qsizetype>(i)];
                const engine::Cell number = cursor.cell(static_cast<int>(cells.size()));
                const qint64 place = number.type == Type::whole ? number.whole : row;
                if (odd == Odd::none)
                    throw differs(u"%1 numaralı satır, %2 sütunu"_s.arg(QString::number(place), column.name));
                m_report.cell(table, place, column, cells[i], {found, odd});
            }
            message = nextRow(false);
            tellRows(Step::comparing, table, row);
        });
        if (message)
            throw differs(u"eksik satır"_s);
    }

    const ToFile& m_order;
    const Observer& m_observer;
    ServerAddress m_address;
    NewFile m_file;
    Report m_report;
    std::optional<Server> m_server;
    ServerCatalogue m_catalogue;
    MoveResult m_result;
    qint64 m_passed = 0;
    qint64 m_toPass = 0;
};

}  // namespace

MoveResult copyToFile(const ToFile& order, const Observer& observer) {
    return Copy(order, observer).run();
}

}  // namespace kovanix::tasi
