#include "database/logrequest.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <chrono>
#include <cstdlib>

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr std::chrono::milliseconds lifetime = 10s;

QString requestPath(const QString& file) {
    return file + u"-network"_s;
}

}  // namespace

LogRequest::LogRequest(const QString& file) : m_path(requestPath(file)) {}

LogRequest::~LogRequest() {
    if (m_asked)
        QFile::remove(m_path);
}

void LogRequest::renew() {
    QFile request(m_path);
    if (!request.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    // Written, not touched: the moment is then that of the machine which the file lies on.
    m_asked = request.write("kovanix\n") > 0 || m_asked;
}

bool LogRequest::isPending(const QString& file) {
    const QFileInfo request(requestPath(file));
    if (!request.exists())
        return false;
    const std::chrono::milliseconds age(request.lastModified().msecsTo(QDateTime::currentDateTime()));
    if (std::chrono::abs(age) <= lifetime)
        return true;
    QFile::remove(request.filePath());
    return false;
}

}  // namespace kovanix
