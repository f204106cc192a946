#include "database/roworder.h"

#include <QtEndian>
#include <algorithm>
#include <bit>
#include <cmath>
#include <compare>
#include <limits>
#include <span>
#include <string>

#include "values/sortkey.h"

namespace kovanix {

namespace {

struct Entry {
    std::uint64_t key = 0;
    std::uint32_t row = 0;
    std::uint32_t textKey = 0;  ///< where the key of a text begins

    friend auto operator<=>(const Entry& a, const Entry& b) = default;
};

constexpr std::size_t keyBytes = sizeof(Entry::key);

// Keys that put apart what has no value, the numbers in a column of texts and the texts in a column of
// numbers. Every text's key is larger than the first two, as its first byte isn't zero; every number's lies
// between first and last.
constexpr std::uint64_t noValue = 0;
constexpr std::uint64_t mixedNumber = 1;
constexpr std::uint64_t mixedText = std::numeric_limits<std::uint64_t>::max();

/// A whole number that stands to others as a number does.
std::uint64_t numberKey(double number) {
    constexpr std::uint64_t sign = std::uint64_t{1} << 63U;
    const auto bits = std::bit_cast<std::uint64_t>(number + 0.0);  // one zero, not two
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

std::uint64_t counterKey(qint64 counter) {
    return static_cast<std::uint64_t>(counter) ^ (std::uint64_t{1} << 63U);
}

class Sorting {
public:
    Sorting(const RowColumn& column, RowBits& groupStarts) : m_column(column), m_groupStarts(groupStarts) {}

    std::vector<std::uint32_t> run() {
        if (standsInOrder())
            return asEntered();
        m_entries.resize(m_column.count());
        for (std::size_t row = 0; row < m_entries.size(); ++row)
            m_entries[row].row = static_cast<std::uint32_t>(row);
        switch (m_column.type()) {
            case ColumnType::counter:
                giveKeys([this](std::size_t row) { return counterKey(m_column.counter(row)); });
                break;
            case ColumnType::number:
                giveKeys([this](std::size_t row) {
                    const double number = m_column.number(row);
                    return std::isnan(number) ? noValue : numberKey(number);
                });
                break;
            default:
                makeTextKeys();
                for (Entry& entry : m_entries)
                    entry.key = textKey(entry, 0);
        }
        giveOddKeys();
        m_open.push_back({0, m_entries.size(), 0});
        while (!m_open.empty()) {
            const Range range = m_open.back();
            m_open.pop_back();
            sort(range);
        }
        std::vector<std::uint32_t> rows(m_entries.size());
        std::ranges::transform(m_entries, rows.begin(), &Entry::row);
        return rows;
    }

private:
    /// Entries that are alike up to a number of bytes of their texts' keys, with what follows as their key.
    struct Range {
        std::size_t begin;
        std::size_t end;
        std::size_t depth;
    };

    /// A moment as the till stores it. Among such, the order of the bytes is that of the keys.
    static bool isPlainMoment(std::string_view text) {
        constexpr std::string_view form = "0000-00-00 00:00:00";
        return std::ranges::equal(text, form, [](char sign, char wanted) {
            return wanted == '0' ? sign >= '0' && sign <= '9' : sign == wanted;
        });
    }

    /// Whether the rows were entered in the order of their moments, as sales are.
    bool standsInOrder() const {
        if (m_column.type() != ColumnType::moment || !m_column.oddCells().empty())
            return false;
        std::string_view before;
        for (std::size_t row = 0; row < m_column.count(); ++row) {
            const std::string_view text = m_column.storedText(row);
            if (!isPlainMoment(text) || text < before)
                return false;
            before = text;
        }
        return true;
    }

    std::vector<std::uint32_t> asEntered() {
        std::vector<std::uint32_t> rows(m_column.count());
        for (std::size_t row = 0; row < rows.size(); ++row) {
            rows[row] = static_cast<std::uint32_t>(row);
            if (row == 0 || m_column.storedText(row) != m_column.storedText(row - 1))
                m_groupStarts.set(row);
        }
        return rows;
    }

    bool isText() const {
        return m_column.type() == ColumnType::text || m_column.type() == ColumnType::moment;
    }

    template <class KeyOf>
    void giveKeys(KeyOf&& keyOf) {
        for (std::size_t row = 0; row < m_entries.size(); ++row)
            m_entries[row].key = keyOf(row);
    }

    void giveOddKeys() {
        for (const auto& [row, cell] : m_column.oddCells()) {
            const double number = m_column.number(row);
            std::uint64_t& key = m_entries[row].key;
            if (cell.isNull())
                key = noValue;
            else if (std::isnan(number))
                key = mixedText;
            else if (isText())
                key = mixedNumber;
            else
                key = m_column.type() == ColumnType::number ? numberKey(number)
                                                            : counterKey(static_cast<qint64>(number));
        }
    }

    /// Writes the keys of all texts one behind the other, zeros behind each: enough for the last of its bytes
    /// to be taken with what follows.
    void makeTextKeys() {
        std::string key;
        for (Entry& entry : m_entries) {
            key.clear();
            appendSortKey(key, m_column.storedText(entry.row));
            key.append(keyBytes, '\0');
            entry.textKey = TextStore::checkedPlace(m_textKeys.size());
            m_textKeys.append(key.data(), key.size());
        }
    }

    /// The bytes of a text's key from a place on; zeros behind its end, which are in no key.
    std::uint64_t textKey(const Entry& entry, std::size_t from) const {
        return qFromBigEndian<quint64>(m_textKeys.data() + entry.textKey + from);
    }

    void sort(const Range& range) {
        const std::span entries = std::span(m_entries).subspan(range.begin, range.end - range.begin);
        std::ranges::sort(entries);
        for (std::size_t begin = 0; begin < entries.size();) {
            std::size_t end = begin + 1;
            while (end < entries.size() && entries[end].key == entries[begin].key)
                ++end;
            closeGroup({range.begin + begin, range.begin + end, range.depth});
            begin = end;
        }
    }

    /// Entries of one key: equals, or to be told apart by what follows.
    void closeGroup(const Range& group) {
        m_groupStarts.set(group.begin);
        const std::uint64_t key = m_entries[group.begin].key;
        if (group.end - group.begin < 2)
            return;
        const bool first = group.depth == 0;
        if (first && !isText() && key == mixedText) {
            sortApart(group, [this](std::uint32_t row) { return sortKey(m_column.text(row)); });
        } else if (first && isText() && key == mixedNumber) {
            sortApart(group, [this](std::uint32_t row) { return m_column.number(row); });
        } else if (isText() && (key & 0xFFU) != 0) {
            const std::size_t depth = group.depth + keyBytes;
            for (Entry& entry : std::span(m_entries).subspan(group.begin, group.end - group.begin))
                entry.key = textKey(entry, depth);
            m_open.push_back({group.begin, group.end, depth});
        }
    }

    /// Sorts the few cells of another type than the column's.
    template <class KeyOf>
    void sortApart(const Range& group, KeyOf&& keyOf) {
        const std::span entries = std::span(m_entries).subspan(group.begin, group.end - group.begin);
        std::ranges::stable_sort(entries, {}, [&keyOf](const Entry& entry) { return keyOf(entry.row); });
        for (std::size_t i = 1; i < entries.size(); ++i) {
            if (keyOf(entries[i].row) != keyOf(entries[i - 1].row))
                m_groupStarts.set(group.begin + i);
        }
    }

    const RowColumn& m_column;
    RowBits& m_groupStarts;
    PlainArray<char> m_textKeys;
    std::vector<Entry> m_entries;
    std::vector<Range> m_open;
};

}  // namespace

RowOrder::RowOrder(const RowColumn& column)
    : m_groupStarts(column.count()), m_rows(Sorting(column, m_groupStarts).run()) {}

std::vector<std::uint32_t> RowOrder::rows(bool descending) const {
    if (!descending)
        return m_rows;
    std::vector<std::uint32_t> rows;
    rows.reserve(m_rows.size());
    for (std::size_t end = m_rows.size(); end > 0;) {
        std::size_t begin = end - 1;
        while (!m_groupStarts.test(begin))
            --begin;
        rows.insert(rows.end(), m_rows.begin() + static_cast<std::ptrdiff_t>(begin),
                    m_rows.begin() + static_cast<std::ptrdiff_t>(end));
        end = begin;
    }
    return rows;
}

}  // namespace kovanix
