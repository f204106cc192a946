#pragma once

#include <QMetaType>
#include <QtGlobal>
#include <string_view>
#include <vector>

namespace kovanix::engine {

/// A cell of the row that a statement stands on. Its bytes lie in the engine: they are gone with the next
/// step.
struct Cell {
    enum class Type { null, whole, real, text, bytes };

    Type type = Type::null;
    qint64 whole = 0;
    double real = 0;
    std::string_view bytes;  ///< of a text (in UTF-8) and of bytes
};

/// The rows of a statement without a QVariant for each cell: what a driver of the till gives as the handle()
/// of a forward-only query's result, as a pointer to this.
class RowCursor {
public:
    /// Goes to the next row. @return false at the end, or at an error, which the query then tells
    virtual bool nextRow() = 0;
    /// A cell of the current row, counted from 0.
    virtual Cell cell(int field) const = 0;
    /// Has the next prepare() of the query leave its statement to the execution: a server is asked once then
    /// instead of twice, and tells what is wrong with the statement at that time. Where the engine is asked
    /// at no cost, this does nothing.
    virtual void prepareLate() {}
    /// Has the query's next statement, one that changes nothing, give its rows in the form that is cheapest
    /// for many of them.
    virtual void expectManyRows() {}
    /// Runs the query's prepared statement with these values for its places; the bytes of a text need to live
    /// for the length of this call only. Of the file's drivers: to a server many rows go another way.
    /// @return false at an error, which the query then tells
    virtual bool runWith(const std::vector<Cell>& /*values*/) { return false; }

protected:
    ~RowCursor() = default;
};

}  // namespace kovanix::engine

Q_DECLARE_METATYPE(kovanix::engine::RowCursor*)
