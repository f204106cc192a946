#include "serverlink.h"

#include <poll.h>

#include <QByteArrayList>
#include <QRegularExpression>
#include <algorithm>
#include <cerrno>

#include "hostlookup.h"
#include "serverwords.h"

namespace kovanix::engine {

namespace {

using namespace Qt::StringLiterals;
using std::chrono::milliseconds;

// From here on somebody who watches asks himself what the till does.
constexpr milliseconds longWait{100};

/// Waits for a socket. @param events  POLLIN, POLLOUT. @param interrupted  called when a signal has come
bool isReadyBy(std::chrono::steady_clock::time_point end, int socket, short events,
               const std::function<void()>& interrupted = {}) {
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now()).count();
        pollfd entry{.fd = socket, .events = events, .revents = 0};
        const int count = ::poll(&entry, 1, left > 0 ? static_cast<int>(left) : 0);
        // An error of the socket's shows when it is read.
        if (count > 0 || (count < 0 && errno != EINTR))
            return true;
        if (count < 0 && interrupted)
            interrupted();
        if (left <= 0)
            return false;
    }
}

/// The error in what the library says of an attempt to connect. Its words come in the user's language; only
/// the code behind the severity tells a server's refusal.
/// @param step  at which it failed
QSqlError connectError(const PGconn* handle, ConnStatusType step) {
    static const QRegularExpression refusal(u":  ([0-9A-Z]{5}): (.*)"_s);
    const QString words = QString::fromUtf8(PQerrorMessage(handle));
    const QRegularExpressionMatch found = refusal.match(words);
    const QString ownState = step == CONNECTION_SSL_STARTUP ? u"08T01"_s : u"08001"_s;
    return {u"Unable to connect"_s,
            found.hasMatch() ? found.captured(2) : firstLineOf(PQerrorMessage(handle)),
            QSqlError::ConnectionError, found.hasMatch() ? found.captured(1) : ownState};
}

}  // namespace

QString firstLineOf(const char* words) {
    return QString::fromUtf8(words).section(u'\n', 0, 0).trimmed();
}

bool ServerSettings::addOptions(const QString& text) {
    QString rest = text;
    rest.replace(u"\\;"_s, QChar(u'\0'));
    for (const QString& part : rest.split(u';', Qt::SkipEmptyParts)) {
        if (part.trimmed().isEmpty())
            continue;
        const qsizetype sign = part.indexOf(u'=');
        if (sign < 0)
            return false;
        const QString key = part.left(sign).trimmed();
        const QString value = part.mid(sign + 1).replace(QChar(u'\0'), u';');
        bool valid = true;
        // The library heeds its own only where the caller stands still.
        if (key == "connect_timeout"_L1)
            connectTimeout = milliseconds(qRound(value.toDouble(&valid) * 1000));
        else if (key == "KOVANIX_DEADLINE"_L1)
            deadline = milliseconds(value.toInt(&valid));
        else
            words.emplace_back(key.toUtf8(), value.toUtf8());
        if (!valid || deadline <= milliseconds::zero() || connectTimeout <= milliseconds::zero())
            return false;
    }
    return true;
}

QSqlError ServerLink::lost() {
    return lossError(lostServer.toString());
}

QSqlError ServerLink::lossError(const QString& words, const QString& state) {
    return {u"Unable to execute statement"_s, words, QSqlError::ConnectionError, state};
}

/// Waits for a socket, and has the sign given when that takes long.
ServerLink::Waited ServerLink::wait(int socket, short events, Clock::time_point end) const {
    const Clock::time_point shortEnd = Clock::now() + longWait;
    bool ready = isReadyBy(std::min(end, shortEnd), socket, events);
    if (!ready && shortEnd < end) {
        if (m_waitBegins)
            m_waitBegins();
        ready = isReadyBy(end, socket, events, m_waitBegins);
    }
    return ready ? Waited::ready : Waited::timeout;
}

std::optional<ServerLink::Host> ServerLink::find(const QByteArray& name, Clock::time_point end) const {
    // A name server that is away isn't waited for where the name has led somewhere before.
    constexpr milliseconds knownEnough{1000};
    const HostLookup lookup(name);
    const Clock::time_point now = Clock::now();
    if (!lookup.waitUntil(std::min(end, now + longWait))) {
        if (m_waitBegins)
            m_waitBegins();
        lookup.waitUntil(lookup.isKnown() ? std::min(end, now + knownEnough) : end);
    }
    Host host{name, lookup.addresses()};
    return lookup.isNeeded() && host.addresses.isEmpty() ? std::nullopt : std::optional(std::move(host));
}

ServerLink::Attempt ServerLink::connect(const Host& host, Clock::time_point end) const {
    // The library looks a name up by itself where it isn't given the address, without an end of the wait. The
    // name is what the certificate is checked against.
    const QByteArray names =
        QByteArrayList(std::max<qsizetype>(host.addresses.size(), 1), host.name).join(',');
    const QByteArray addresses = host.addresses.join(',');
    std::vector<const char*> keys{"host"};
    std::vector<const char*> values{names.constData()};
    if (!addresses.isEmpty()) {
        keys.push_back("hostaddr");
        values.push_back(addresses.constData());
    }
    for (const auto& [key, value] : m_settings.words) {
        keys.push_back(key.constData());
        values.push_back(value.constData());
    }
    keys.push_back(nullptr);
    values.push_back(nullptr);
    Attempt attempt;
    ServerHandle handle(PQconnectStartParams(keys.data(), values.data(), 0));
    PQsetErrorVerbosity(handle.get(), PQERRORS_VERBOSE);
    PQsetNoticeProcessor(
        handle.get(), [](void*, const char*) {}, nullptr);
    PostgresPollingStatusType status =
        PQstatus(handle.get()) == CONNECTION_BAD ? PGRES_POLLING_FAILED : PGRES_POLLING_WRITING;
    ConnStatusType step = CONNECTION_STARTED;
    while (status != PGRES_POLLING_OK && status != PGRES_POLLING_FAILED) {
        const short events = status == PGRES_POLLING_READING ? POLLIN : POLLOUT;
        if (wait(PQsocket(handle.get()), events, end) == Waited::timeout) {
            attempt.error = {u"Unable to connect"_s, silentServer.toString(), QSqlError::ConnectionError,
                             u"08001"_s};
            return attempt;
        }
        step = PQstatus(handle.get());
        status = PQconnectPoll(handle.get());
    }
    if (status == PGRES_POLLING_FAILED)
        attempt.error = connectError(handle.get(), step);
    else
        attempt.handle = std::move(handle);
    attempt.answered = attempt.handle || attempt.error.nativeErrorCode() != "08001"_L1;
    return attempt;
}

QSqlError ServerLink::open(const ServerSettings& settings) {
    close();
    m_settings = settings;
    QSqlError refusal;
    // Several hosts that are away cost no more than a server that stands still does.
    const Clock::time_point lastEnd = Clock::now() + std::max(settings.connectTimeout, settings.deadline);
    qsizetype left = settings.hosts.size();
    for (const QByteArray& host : settings.hosts) {
        const Clock::time_point now = Clock::now();
        const Clock::duration share = (lastEnd - now) / static_cast<int>(left--);
        const Clock::time_point end = now + std::min<Clock::duration>(settings.connectTimeout, share);
        std::optional<Host> found = find(host, end);
        Attempt attempt;
        if (found)
            attempt = connect(*found, end);
        else
            attempt.error = {u"Unable to connect"_s, unknownHost.toString().arg(QString::fromUtf8(host)),
                             QSqlError::ConnectionError, u"08001"_s};
        if (attempt.handle) {
            m_handle = std::move(attempt.handle);
            m_host = *std::move(found);
            PQsetnonblocking(m_handle.get(), 1);
            return {};
        }
        // What a server says is more than that another one is away.
        if (!refusal.isValid() || (attempt.answered && refusal.nativeErrorCode() == "08001"_L1))
            refusal = attempt.error;
    }
    return refusal;
}

QSqlError ServerLink::lose(const QSqlError& error) {
    close();
    return error;
}

QSqlError ServerLink::lose() {
    return lose(m_isSilent ? lossError(silentServer.toString(), u"08007"_s) : lost());
}

/// Whether the server gives any answer to another connection in what is left of the deadline.
bool ServerLink::isAlive() const {
    return connect(m_host, Clock::now() + m_settings.deadline - m_settings.silence()).answered;
}

/// Waits until the socket is ready. A server that works on a long report says nothing until it is done, and
/// neither does one that stands still.
QSqlError ServerLink::waitFor(short events) {
    const int socket = PQsocket(m_handle.get());
    while (wait(socket, events, Clock::now() + m_settings.silence()) == Waited::timeout) {
        m_isSilent = !isAlive();
        if (m_isSilent && wait(socket, events, Clock::now()) == Waited::timeout)
            return lose();
    }
    return {};
}

QSqlError ServerLink::receive() {
    return PQconsumeInput(m_handle.get()) == 1 ? QSqlError() : lose();
}

/// Sends what the library holds ready. A server whose own answers aren't read may stop reading.
QSqlError ServerLink::flush() {
    m_isSilent = false;
    for (;;) {
        const int left = PQflush(m_handle.get());
        if (left < 0)
            return lose();
        if (left == 0)
            return {};
        if (const QSqlError error = waitFor(POLLIN | POLLOUT); error.isValid())
            return error;
        if (const QSqlError error = receive(); error.isValid())
            return error;
    }
}

QSqlError ServerLink::waitForResult() {
    while (PQisBusy(handle()) == 1) {
        if (const QSqlError error = waitFor(POLLIN); error.isValid())
            return error;
        if (const QSqlError error = receive(); error.isValid())
            return error;
    }
    return {};
}

}  // namespace kovanix::engine
