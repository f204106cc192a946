#pragma once

#include <QTest>
#include <initializer_list>
#include <utility>

namespace kovanix {

/// Gives a test function its rows: each a name and a struct, in the one column "row". The function takes its
/// own by QFETCH(const Row, row).
template <class Row>
void addRows(std::initializer_list<std::pair<const char*, Row>> rows) {
    QTest::addColumn<Row>("row");
    for (const auto& [name, row] : rows)
        QTest::newRow(name) << row;
}

}  // namespace kovanix
