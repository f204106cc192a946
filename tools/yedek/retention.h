#pragma once

#include <QDateTime>
#include <QList>

namespace kovanix::yedek {

/// How many days, weeks and months have a copy kept, each its newest one. Only those count of which there is
/// a copy, so that a shop that was closed for a while loses none.
struct Retention {
    int days = 7;
    int weeks = 4;
    int months = 12;
};

/// Which of a shop's copies may go. The newest never does, and neither does one from ahead of now: a clock
/// that was wrong says nothing of its age.
/// @param moments  of the copies, in any order. @return those that may go, oldest first
QList<QDateTime> surplusCopies(QList<QDateTime> moments, const QDateTime& now, const Retention& kept = {});

}  // namespace kovanix::yedek
