#include "app/modTrace.h"

#include <QFile>

#include "desktop/folders.h"
#include "runtime/clock.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

[[maybe_unused]] void appendLine(const QString& folder, const QString& line) {
    QFile log(joinStored(folder, u"\\kovanix_trace.log"_s));
    // A log that can't be opened or written loses the line: the caller never knows.
    if (log.open(QIODevice::Append))
        log.write(line.toUtf8());
}

}  // namespace

void izyaz(const QString& text) {
    if constexpr (!izkapali) {
        const QString line = Clock::now().toString(u"yyyy-MM-dd HH:mm:ss") + u"  " + text + u'\n';
        appendLine(applicationFolder(), line);
        appendLine(qEnvironmentVariable("TEMP"), line);
    } else {
        Q_UNUSED(text);
    }
}

}  // namespace kovanix
