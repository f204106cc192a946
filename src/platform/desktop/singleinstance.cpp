#include "desktop/singleinstance.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QScopeGuard>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>

#include "desktop/focus.h"

namespace kovanix {

namespace {

// Any program of any user can connect: what one connection may cost is bounded.
constexpr int longestRequest = 1024;  // bytes
constexpr int longestSilence = 2000;  // milliseconds
constexpr int mostClients = 16;
constexpr int longestToken = 512;

const QByteArray raiseWord = QByteArrayLiteral("raise");
const QByteArray takenLine = QByteArrayLiteral("taken\n");
constexpr const char* tokenVariable = "XDG_ACTIVATION_TOKEN";

QPointer<QWindow>& lastActiveWindow() {
    static QPointer<QWindow> window;
    return window;
}

bool isPlausibleToken(const QByteArray& token) {
    return !token.isEmpty() && token.size() <= longestToken &&
           std::all_of(token.begin(), token.end(), [](char c) { return c > ' ' && c < '\x7f'; });
}

QByteArray ownActivationToken() {
    for (const char* variable : {tokenVariable, "DESKTOP_STARTUP_ID"}) {
        if (const QByteArray token = qgetenv(variable); isPlausibleToken(token))
            return token;
    }
    return {};
}

bool isScreenLike(const QWidget* widget) {
    if (!widget || !widget->isWindow() || !widget->isVisible())
        return false;
    const Qt::WindowType type = widget->windowType();
    return type == Qt::Window || type == Qt::Dialog || type == Qt::Widget;
}

QWidget* widgetOf(const QWindow* window) {
    const QWidgetList widgets = QApplication::topLevelWidgets();
    const auto found = std::find_if(widgets.begin(), widgets.end(), [window](const QWidget* widget) {
        return isScreenLike(widget) && widget->windowHandle() == window;
    });
    return found == widgets.end() ? nullptr : *found;
}

QWidget* topmostWindow() {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget* active = QApplication::activeWindow())
        return active;
    if (lastActiveWindow()) {
        if (QWidget* last = widgetOf(lastActiveWindow()))
            return last;
    }
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (qsizetype i = windows.size() - 1; i >= 0; --i) {
        if (QWidget* widget = widgetOf(windows[i]))
            return widget;
    }
    return nullptr;
}

}  // namespace

SingleInstance::SingleInstance(const QString& name, QObject* parent)
    : QObject(parent), m_name(name), m_server(std::make_unique<QLocalServer>()) {
    m_server->setSocketOptions(QLocalServer::AbstractNamespaceOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleInstance::acceptClients);
    if (!m_server->listen(m_name)) {
        m_server.reset();
        return;
    }
    // A program in the background has no active window: remember which one it was.
    if (auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        connect(application, &QGuiApplication::focusWindowChanged, this, [](QWindow* window) {
            if (window)
                lastActiveWindow() = window;
        });
    }
}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::isFirst() const {
    return m_server != nullptr;
}

bool SingleInstance::raiseFirst(int timeoutMilliseconds) const {
    const QDeadlineTimer deadline(timeoutMilliseconds);
    const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket socket;
    socket.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(left()))
        return false;
    QByteArray request = raiseWord;
    if (const QByteArray token = ownActivationToken(); !token.isEmpty())
        request += ' ' + token;
    socket.write(request + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(left()))
            return false;
    }
    return socket.readLine() == takenLine;
}

void SingleInstance::acceptClients() {
    while (QLocalSocket* client = m_server->nextPendingConnection()) {
        if (m_server->findChildren<QLocalSocket*>(QString(), Qt::FindDirectChildrenOnly).size() >
            mostClients) {
            delete client;
            continue;
        }
        client->setReadBufferSize(longestRequest);
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        connect(client, &QLocalSocket::readyRead, this, [this, client] { readFrom(*client); });
        QTimer::singleShot(longestSilence, client, [client] {
            client->abort();
            client->deleteLater();
        });
        // What came along with the connection announces itself no second time.
        if (client->bytesAvailable() > 0)
            readFrom(*client);
    }
}

void SingleInstance::readFrom(QLocalSocket& client) {
    if (!client.canReadLine()) {
        if (client.bytesAvailable() >= longestRequest)
            client.abort();
        return;
    }
    const QByteArray request = client.readLine(longestRequest + 1).trimmed();
    // One request a connection; whatever else arrives on it is not read.
    client.disconnect(this);
    const bool isRaise = request == raiseWord || request.startsWith(QByteArray(raiseWord + ' '));
    if (!isRaise) {
        client.abort();
        return;
    }
    client.write(takenLine);
    client.disconnectFromServer();

    const QByteArray token = request.mid(raiseWord.size() + 1);
    const bool carriesToken = isPlausibleToken(token);
    if (carriesToken)
        qputenv(tokenVariable, token);
    // Programs that the till starts later must not inherit it.
    const auto forget = qScopeGuard([carriesToken] {
        if (carriesToken)
            qunsetenv(tokenVariable);
    });
    Q_EMIT raiseRequested();
}

void raiseApplication() {
    QWidget* const topmost = topmostWindow();
    if (!topmost)
        return;
    // A box over a minimised screen comes back only together with that screen.
    for (QWidget* window = topmost; window;
         window = window->parentWidget() ? window->parentWidget()->window() : nullptr) {
        if (window->isMinimized())
            restore(*window);
    }
    topmost->show();
    topmost->raise();
    topmost->activateWindow();
}

}  // namespace kovanix
