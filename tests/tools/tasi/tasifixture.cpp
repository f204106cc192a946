#include "tasifixture.h"

#include <QFile>
#include <QSqlQuery>
#include <QSqlResult>
#include <QTest>
#include <memory>

#include "data/schema.h"
#include "database/driver/rowcursor.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

QString shown(const engine::Cell& cell) {
    using Type = engine::Cell::Type;
    const QByteArray bytes(cell.bytes.data(), static_cast<qsizetype>(cell.bytes.size()));
    switch (cell.type) {
        case Type::null:
            return u"null"_s;
        case Type::whole:
            return u"whole "_s + QString::number(cell.whole);
        case Type::real:
            return u"real "_s + QString::number(cell.real, 'g', 17);
        case Type::text:
            return u"text "_s + QString::fromLatin1(bytes.toHex());
        case Type::bytes:
            break;
    }
    return u"bytes "_s + QString::fromLatin1(bytes.toHex());
}

}  // namespace

ServerCluster* sharedCluster() {
    static const auto cluster = []() -> std::unique_ptr<ServerCluster> {
        if (!ServerCluster::missing().isEmpty())
            return nullptr;
        auto started = std::make_unique<ServerCluster>();
        return started->start() ? std::move(started) : nullptr;
    }();
    return cluster.get();
}

void TasiTest::initTestCase() {
    if (!ServerCluster::missing().isEmpty())
        QSKIP(qPrintable(ServerCluster::missing()));
    QVERIFY(sharedCluster());
}

void AtStep::operator()(const Progress& progress) {
    constexpr qint64 midst = 20000;
    if (*m_happened || progress.step != m_step || (!progress.table.isEmpty() && progress.rows < midst))
        return;
    *m_happened = true;
    m_action();
}

MovingShop::MovingShop(const QString& password)
    : m_password(password), m_database(sharedCluster()->createDatabase()) {
    m_pointer = sharedCluster()->writePointer(m_folder.path(), m_database);
    QFile empty(file());
    if (m_pointer.isEmpty() || !empty.open(QIODevice::WriteOnly))
        qFatal("no shop can be made");
    empty.close();
    Connection connection;
    connection.open(DatabaseFile::connectionString(file(), password));
    tablolariolustur(connection);
}

MovingShop::~MovingShop() {
    if (sharedCluster()->isRunning())
        sharedCluster()->rows(u"postgres"_s, u"DROP DATABASE IF EXISTS %1 WITH (FORCE)"_s.arg(m_database));
}

void MovingShop::fill() const {
    run(
        {u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) "
         "INSERT INTO satislar (tarih, barkod, urun, adet) SELECT '2026-05-03 10:00:00', i, "
         "'ürün ' || i, i / 4.0 FROM n"_s,
         u"INSERT INTO urunler (urun, satis) VALUES ('a', '1,5')"_s});
}

void MovingShop::run(const QStringList& statements) const {
    RawDatabase raw(file(), m_password, DatabaseFile::driver(m_password));
    for (const QString& statement : statements) {
        if (!raw.run(statement))
            qFatal("%s", qUtf8Printable(statement));
    }
}

QMap<QString, QStringList> MovingShop::cells(const QString& path) const {
    RawDatabase raw(path, m_password, DatabaseFile::driver(m_password));
    QMap<QString, QStringList> tables;
    const QStringList names =
        raw.rows(u"SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name"_s);
    for (const QString& name : names) {
        QSqlQuery query(raw.database());
        query.setForwardOnly(true);
        if (!query.exec(u"SELECT * FROM \"%1\""_s.arg(name)))
            qFatal("%s", qUtf8Printable(name));
        auto* const cursor = query.result()->handle().value<engine::RowCursor*>();
        const int fields = query.record().count();
        QStringList& rows = tables[name];
        while (cursor->nextRow()) {
            QStringList row;
            for (int field = 0; field < fields; ++field)
                row.append(shown(cursor->cell(field)));
            rows.append(row.join(u", "));
        }
    }
    return tables;
}

QList<QStringList> MovingShop::serverRows(const QString& sql) const {
    return sharedCluster()->rows(m_database, sql);
}

QStringList MovingShop::serverTables() const {
    QStringList names;
    const QString sql =
        u"SELECT relname FROM pg_class WHERE relkind = 'r' AND relnamespace = 'public'::regnamespace ORDER BY 1"_s;
    for (const QStringList& row : serverRows(sql))
        names.append(row.constFirst());
    return names;
}

ToServer MovingShop::toServer() const {
    return {file(), m_pointer, {}, m_password, ServerCluster::password(), {}};
}

ToFile MovingShop::toFile(const QString& path) const {
    return {m_pointer, path, ServerCluster::password(), m_password, {}};
}

ExitCode codeOf(const std::function<void()>& move) {
    try {
        move();
    } catch (const Failure& failure) {
        qInfo().noquote() << failure.description();
        return failure.code();
    }
    return ExitCode::done;
}

QString contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace kovanix::tasi
