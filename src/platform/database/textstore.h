#pragma once

#include <cstdint>
#include <string_view>

#include "database/plainarray.h"

namespace kovanix {

/// The texts of a column in one piece of memory, a zero byte behind each: a search runs over all of them at
/// once.
class TextStore {
public:
    TextStore() { m_starts.append(0); }

    /// A place among the bytes of texts. @throws RuntimeError (overflow) beyond 4 GB of text
    static std::uint32_t checkedPlace(std::size_t place);

    /// @throws RuntimeError (overflow) as checkedPlace
    void append(std::string_view text);
    /// Puts another text in the place of one. The texts behind it move. @throws RuntimeError (overflow) as
    /// checkedPlace
    void replace(std::size_t row, std::string_view text);
    /// Gives back the memory that was put by for more texts.
    void finish();

    std::size_t count() const { return m_starts.size() - 1; }
    std::string_view operator[](std::size_t row) const {
        return {m_bytes.data() + m_starts[row], m_starts[row + 1] - m_starts[row] - 1};
    }
    /// All texts with their zero bytes.
    std::string_view bytes() const { return {m_bytes.data(), m_bytes.size()}; }
    /// Where a text begins in them; of the number of texts, where they end.
    std::size_t start(std::size_t row) const { return m_starts[row]; }

    /// The texts as they are compared (see foldedText).
    TextStore folded() const;
    /// Whether every text is its own folded form.
    bool isFolded() const;

private:
    PlainArray<char> m_bytes;
    PlainArray<std::uint32_t> m_starts;
};

}  // namespace kovanix
