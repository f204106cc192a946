#pragma once

#include <QCryptographicHash>
#include <QString>
#include <string>

#include "database/driver/rowcursor.h"
#include "tables.h"

namespace kovanix::tasi {

/// By what a file's content is known again: over every cell of every table, as stored.
class Digest {
public:
    void add(const Table& table);
    void add(const engine::Cell& cell);
    /// In hexadecimal digits; ends the reckoning.
    QString result();

private:
    void flush();

    QCryptographicHash m_hash{QCryptographicHash::Blake2b_256};
    std::string m_bytes;
};

}  // namespace kovanix::tasi
