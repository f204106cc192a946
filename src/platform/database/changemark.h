#pragma once

#include <QByteArray>
#include <QtGlobal>
#include <utility>

namespace kovanix {

/// What a connection knows of the state of its database at a moment. Taken before a read, it proves later
/// that what was read still holds: two equal marks prove equal content. Unequal ones prove nothing; what
/// can't be proved compares unequal, so a mark that was never taken is unequal to every mark, itself too.
class ChangeMark {
public:
    ChangeMark() = default;

    friend bool operator==(const ChangeMark& a, const ChangeMark& b) {
        return a.m_opening != 0 && a.m_opening == b.m_opening && a.m_others == b.m_others &&
               a.m_ours == b.m_ours;
    }

private:
    friend class DatabaseEngine;
    ChangeMark(quint64 opening, QByteArray others, quint64 ours)
        : m_opening(opening), m_others(std::move(others)), m_ours(ours) {}

    quint64 m_opening = 0;  // which opening of a handle in this process
    QByteArray m_others;    // the engine's sign of what other connections have changed
    quint64 m_ours = 0;     // statements of this process that may have written
};

}  // namespace kovanix
