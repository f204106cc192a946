#pragma once

#include <QList>
#include <QStringList>
#include <functional>

#include "aktar/celltable.h"
#include "runtime/runtimeerror.h"

namespace kovanix::aktar {

/// Every cell of a table, row by row.
inline QList<QStringList> cellsOf(const CellTable& table) {
    QList<QStringList> rows;
    for (qsizetype row = 0; row < table.rowCount(); ++row) {
        QStringList cells;
        for (qsizetype column = 0; column < table.cellCount(row); ++column)
            cells << table.text(row, column);
        rows << cells;
    }
    return rows;
}

/// The words in which a step fails; none where it doesn't.
inline QString failureOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeError& error) {
        return error.description();
    }
    return {};
}

}  // namespace kovanix::aktar
