#pragma once

#include <bit>
#include <cstdint>
#include <vector>

namespace kovanix {

/// One bit for each row of a table.
class RowBits {
public:
    RowBits() = default;
    explicit RowBits(std::size_t rows, bool on = false)
        : m_rows(rows), m_words((rows + bitsAWord - 1) / bitsAWord, on ? ~std::uint64_t{0} : 0) {
        if (on && rows % bitsAWord > 0)
            m_words.back() >>= bitsAWord - rows % bitsAWord;
    }

    std::size_t rows() const { return m_rows; }
    bool test(std::size_t row) const { return (m_words[row / bitsAWord] >> (row % bitsAWord) & 1U) != 0; }
    void set(std::size_t row) { m_words[row / bitsAWord] |= std::uint64_t{1} << (row % bitsAWord); }

    /// Leaves on what is on in both.
    RowBits& operator&=(const RowBits& other) {
        for (std::size_t word = 0; word < m_words.size(); ++word)
            m_words[word] &= other.m_words[word];
        return *this;
    }

    std::size_t count() const {
        std::size_t count = 0;
        for (const std::uint64_t word : m_words)
            count += static_cast<std::size_t>(std::popcount(word));
        return count;
    }

    /// Calls a function with every row whose bit is on, in their order.
    template <class OnRow>
    void forEach(OnRow&& onRow) const {
        for (std::size_t word = 0; word < m_words.size(); ++word) {
            for (std::uint64_t bits = m_words[word]; bits != 0; bits &= bits - 1)
                onRow(word * bitsAWord + static_cast<std::size_t>(std::countr_zero(bits)));
        }
    }

private:
    static constexpr std::size_t bitsAWord = 64;

    std::size_t m_rows = 0;
    std::vector<std::uint64_t> m_words;
};

}  // namespace kovanix
