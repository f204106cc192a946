#pragma once

#include <QString>

namespace kovanix {

/// What a till that opens a file over a network asks of the tills on the file's own machine: to leave the
/// write-ahead log, which can't be shared between machines. The request is a small file beside the database.
/// It counts for a few seconds only, so that one that was left behind by a till that died asks nothing.
class LogRequest {
public:
    /// Asks nothing yet. @param file  the database's path
    explicit LogRequest(const QString& file);
    /// Withdraws the request.
    ~LogRequest();
    LogRequest(const LogRequest&) = delete;
    LogRequest& operator=(const LogRequest&) = delete;

    /// Asks, or asks once more; to be called again as long as the asker waits, at least once a second.
    /// A folder that can't be written takes no request.
    void renew();

    /// Whether somebody waits for this file's log to be left. Takes one look at the folder where nobody does;
    /// clears away what was left behind.
    static bool isPending(const QString& file);

private:
    QString m_path;
    bool m_asked = false;
};

}  // namespace kovanix
