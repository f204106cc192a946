#include "database/failedopens.h"

#include <QElapsedTimer>
#include <QHash>

namespace kovanix {

namespace {

// Of the calling thread, as its connections are.
thread_local int holds = 0;  // boxes may stand one above the other
thread_local QElapsedTimer heldSince;
thread_local qint64 heldBefore = 0;  // milliseconds

/// For how long, in milliseconds, somebody has read boxes in all.
qint64 held() {
    return heldBefore + (holds > 0 ? heldSince.elapsed() : 0);
}

struct FailedOpen {
    QElapsedTimer since;
    qint64 heldThen;
    bool wasSlow;
    DatabaseError error;

    bool isRecent() const {
        const qint64 passed = since.elapsed() - (wasSlow ? held() - heldThen : 0);
        return passed < FailedOpens::moment.count();
    }
};

/// By key.
QHash<QString, FailedOpen>& failedOpens() {
    thread_local QHash<QString, FailedOpen> failed;
    return failed;
}

}  // namespace

void FailedOpens::remember(const QString& key, const DatabaseError& error, std::chrono::milliseconds took) {
    constexpr std::chrono::milliseconds slow{500};
    FailedOpen open{{}, held(), took >= slow, error};
    open.since.start();
    failedOpens().insert(key, open);
}

void FailedOpens::forget(const QString& key) {
    failedOpens().remove(key);
}

std::optional<DatabaseError> FailedOpens::recent(const QString& key) {
    const auto failed = failedOpens().constFind(key);
    if (failed == failedOpens().cend() || !failed->isRecent())
        return std::nullopt;
    return failed->error;
}

FailedOpens::Hold::Hold() {
    if (holds++ == 0)
        heldSince.start();
}

FailedOpens::Hold::~Hold() {
    if (holds == 1)
        heldBefore += heldSince.elapsed();
    --holds;
}

}  // namespace kovanix
