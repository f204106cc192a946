#include "toserver.h"

#include <QDateTime>
#include <QFileInfo>
#include <algorithm>
#include <vector>

#include "copyrows.h"
#include "digest.h"
#include "handover.h"
#include "server.h"
#include "servershop.h"
#include "shopfile.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;
using Step = Progress::Step;

namespace {

constexpr qint64 rowsAPortion = 4096;
constexpr std::size_t bytesAPortion = 1U << 18U;

class Move {
public:
    Move(const ToServer& order, const Observer& observer)
        : m_order(order),
          m_observer(observer),
          m_address(addressOf(order.pointer, order.address)),
          m_report(reportPath(order.pointer)) {}

    MoveResult run() {
        tell({Step::checking});
        Handover handover(m_order.pointer, m_address, m_order.serverPassword, m_order.folders);
        handover.check(m_order.file);
        // A file that bears its new name already belongs to a move that was all but done.
        const bool away = !QFileInfo::exists(m_order.file);
        m_file.emplace(away ? movedName(m_order.file) : m_order.file, m_order.filePassword);
        m_server.emplace(m_address, m_order.serverPassword, m_order.deadline);
        checkDatabase(*m_server);
        const std::optional<MoveMark> mark = findMark(*m_server);
        if (mark)
            recognise(*mark);
        else if (away)
            throw Failure(ExitCode::fileUnfit, u"Dosya bulunamadı: "_s + m_order.file);
        else
            moveRows();
        tell({Step::committed});
        finish(handover, away);
        m_result.finishedEarlier = mark.has_value();
        tell({Step::done});
        return m_result;
    }

private:
    void tell(const Progress& progress) const {
        if (m_observer)
            m_observer(progress);
    }

    void tellRows(Step step, const Table& table, qint64 row) const {
        if (row % rowsAPortion == 0)
            tell({step, table.name, row, table.rows});
    }

    /// Ends where the server doesn't hold what the file holds.
    void recognise(const MoveMark& mark) {
        Digest digest;
        for (const Table& table : m_file->tables()) {
            digest.add(table);
            qint64 row = 0;
            m_file->forEachRow(table, [&](const engine::RowCursor& cells) {
                for (int i = 0; i < table.columns.size(); ++i)
                    digest.add(cells.cell(i));
                tellRows(Step::recognising, table, ++row);
            });
            count(table);
        }
        if (digest.result() != mark.digest)
            throw Failure(
                ExitCode::serverUnfit,
                u"Sunucudaki veritabanında başka bir dükkân var ya da dosya taşındıktan sonra "
                u"değişti (%1 taşınmış, %2). Boş bir veritabanına taşıyın."_s.arg(mark.file, mark.moment));
    }

    void count(const Table& table) {
        ++m_result.tables;
        m_result.rows += table.rows;
    }

    void moveRows() {
        m_server->execute(u"BEGIN"_s);
        lockSchema(*m_server);
        refuseTables();
        m_server->execute(u"SET LOCAL synchronous_commit = on"_s);
        prepareTypes(*m_server, m_file->tables());
        for (const Notice& notice : m_file->notices())
            m_report.note(notice);
        Digest sent;
        for (const Table& table : m_file->tables()) {
            sent.add(table);
            makeTable(*m_server, table);
            fill(table, sent);
            setCounter(*m_server, table);
            count(table);
        }
        tell({Step::indexing});
        makeIndexes(*m_server, m_file->tables());
        analyse(*m_server, m_file->tables());
        Digest seen;
        for (const Table& table : m_file->tables()) {
            seen.add(table);
            compare(table, seen);
        }
        const QString digest = sent.result();
        if (digest != seen.result())
            throw Failure(ExitCode::fileUnfit, u"Dosya taşınırken değişti: "_s + m_order.file);
        writeMark(*m_server, {digest, m_file->path(), QDateTime::currentDateTime().toString(Qt::ISODate)});
        m_report.flush();
        tell({Step::committing});
        commit();
        m_report.keep();
        m_result.settledCells = m_report.cells();
        m_result.settled = m_report.counts();
        m_result.notices = m_report.notices();
        m_result.report = m_report.path();
    }

    void refuseTables() {
        const QStringList found = findTables(*m_server, m_file->tables());
        if (!found.isEmpty())
            throw Failure(ExitCode::serverUnfit,
                          u"Veritabanında bu tablolar zaten var: %1. Boş bir veritabanına taşıyın."_s.arg(
                              found.join(u", ")));
    }

    void fill(const Table& table, Digest& digest) {
        beginFill(*m_server, table);
        CopyWriter rows;
        m_server->send(copyHeader());
        const int columns = static_cast<int>(table.columns.size());
        const bool placed = table.counter < 0;
        qint64 row = 0;
        m_file->forEachRow(table, [&](const engine::RowCursor& cells) {
            ++row;
            rows.beginRow(columns + (placed ? 1 : 0));
            if (placed)
                rows.add({.type = engine::Cell::Type::whole, .whole = row, .bytes = {}});
            for (int i = 0; i < columns; ++i) {
                const engine::Cell cell = cells.cell(i);
                digest.add(cell);
                const SettledCell settled = settle(cell, table.columns[i].form, m_storage);
                if (settled.odd != Odd::none)
                    m_report.cell(table, numberOf(cells, columns, row), table.columns[i], cells.cell(i),
                                  settled);
                rows.add(settled.cell);
            }
            if (rows.bytes().size() >= bytesAPortion) {
                m_server->send(rows.bytes());
                rows.clear();
            }
            tellRows(Step::copying, table, row);
        });
        m_server->send(rows.bytes());
        m_server->send(copyTrailer());
        const qint64 taken = m_server->endCopyIn();
        if (taken != table.rows)
            throw Failure(ExitCode::differs,
                          u"Sunucu %1 tablosundan %2 yerine %3 satır aldı."_s.arg(
                              table.name, QString::number(table.rows), QString::number(taken)));
    }

    /// The number by which the report calls a row: its counter's, or its place.
    static qint64 numberOf(const engine::RowCursor& cells, int identity, qint64 row) {
        const engine::Cell cell = cells.cell(identity);
        return cell.type == engine::Cell::Type::whole ? cell.whole : row;
    }

    void compare(const Table& table, Digest& digest) {
        Table onServer = table;
        onServer.order.clear();
        beginRead(*m_server, onServer);
        std::vector<Form> forms;
        for (const Column& column : table.columns)
            forms.push_back(column.form);
        const int columns = static_cast<int>(table.columns.size());
        CopyWriter expected;
        qint64 row = 0;
        std::optional<std::string_view> message = firstRow();
        m_file->forEachRow(table, [&](const engine::RowCursor& cells) {
            ++row;
            expected.clear();
            expected.beginRow(columns);
            for (int i = 0; i < columns; ++i) {
                const engine::Cell cell = cells.cell(i);
                digest.add(cell);
                expected.add(settle(cell, forms[static_cast<std::size_t>(i)], m_storage).cell);
            }
            if (message != expected.bytes())
                failComparison(table, numberOf(cells, columns, row), expected.bytes(), message, forms);
            message = m_server->receive();
            tellRows(Step::comparing, table, row);
        });
        if (message != copyTrailer())
            throw Failure(ExitCode::differs,
                          u"Sunucudaki %1 tablosunda fazladan satır var."_s.arg(table.name));
        if (m_server->receive())
            throw Failure(ExitCode::differs, u"Sunucunun yanıtı anlaşılmadı."_s);
    }

    /// The first row that the server sends, or what stands behind the last.
    std::optional<std::string_view> firstRow() {
        std::optional<std::string_view> message = m_server->receive();
        if (!message || !dropCopyHeader(*message))
            throw Failure(ExitCode::differs, u"Sunucunun yanıtı anlaşılmadı."_s);
        return message->empty() ? m_server->receive() : message;
    }

    [[noreturn]] static void failComparison(const Table& table, qint64 number, std::string_view expected,
                                            std::optional<std::string_view> found,
                                            const std::vector<Form>& forms) {
        std::vector<engine::Cell> wanted;
        std::vector<engine::Cell> there;
        readCopyRow(expected, forms, wanted);
        readCopyRow(found.value_or(std::string_view()), forms, there);
        QString column = u"?"_s;
        for (std::size_t i = 0; i < there.size() && i < wanted.size(); ++i) {
            CopyWriter one;
            CopyWriter other;
            one.add(wanted[i]);
            other.add(there[i]);
            if (one.bytes() != other.bytes()) {
                column = table.columns[static_cast<qsizetype>(i)].name;
                break;
            }
        }
        throw Failure(
            ExitCode::differs,
            u"Geri okunan değer dosyadakinden farklı: %1 tablosu, %2 numaralı satır, %3 sütunu"_s.arg(
                table.name, QString::number(number), column));
    }

    void commit() {
        try {
            m_server->commit();
        } catch (const ServerFailure& failure) {
            if (!failure.state().isEmpty())
                throw;
            m_report.keep();
            throw Failure(
                ExitCode::uncertain,
                u"Bağlantı tam kaydedilirken koptu; sunucunun kaydedip kaydetmediği belli değil. Aynı "
                u"komutu yeniden çalıştırın."_s);
        }
    }

    void finish(Handover& handover, bool away) {
        try {
            handover.writePointer();
            tell({Step::pointerWritten});
            handover.bringFoldersIntoStep(m_order.file);
            tell({Step::folderDone});
            // Last: as long as the file has its name, the move isn't done and a second run finishes it.
            if (!away) {
                const QString name = freeName(movedName(m_file->path()));
                m_file->rename(name);
                handover.addRenamed(name);
            }
        } catch (const Failure& failure) {
            throw Failure(ExitCode::unfinished,
                          u"Dükkân sunucuya taşındı, ama iş bitmedi: %1 "_s.arg(failure.description()) +
                              u"Nedeni giderip aynı komutu yeniden çalıştırın."_s);
        }
        m_result.renamed = handover.renamed();
        m_result.settings = handover.settings();
    }

    const ToServer& m_order;
    const Observer& m_observer;
    ServerAddress m_address;
    Report m_report;
    std::optional<ShopFile> m_file;
    std::optional<Server> m_server;
    std::string m_storage;
    MoveResult m_result;
};

}  // namespace

MoveResult moveToServer(const ToServer& order, const Observer& observer) {
    return Move(order, observer).run();
}

}  // namespace kovanix::tasi
