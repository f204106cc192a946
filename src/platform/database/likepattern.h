#pragma once

#include <QStringView>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kovanix {

/// A sign of a LIKE pattern.
struct PatternSign {
    enum class Kind {
        character,  ///< stands for itself
        anyOne,     ///< "_"
        anyMany     ///< "%"
    };
    Kind kind;
    char16_t character;

    /// Reads the sign at a place and goes behind it; a bracketed sign is one. The place isn't behind the end.
    static PatternSign next(QStringView pattern, qsizetype& place);
};

/// A text as it is compared: UTF-8 of its Turkish small letters. Half a surrogate pair is a question mark.
std::string foldedText(QStringView text);

/// A LIKE pattern made ready to be compared with many folded texts.
class LikePattern {
public:
    explicit LikePattern(QStringView pattern);

    /// Whether a folded text matches from end to end.
    bool matches(std::string_view folded) const;

    /// The folded text that every match holds somewhere, where that is all that the pattern asks ("%text%").
    std::optional<std::string_view> containedText() const;

private:
    /// What stands between two "%". `bytes` has `anyOne` where any one character may stand.
    struct Piece {
        std::string bytes;
        std::size_t leading = 0;   ///< how many of them stand at its start
        std::size_t plainEnd = 0;  ///< where the plain run behind those ends

        void measure();
        std::string_view plain() const { return {bytes.data() + leading, plainEnd - leading}; }
    };

    static std::optional<std::size_t> matchAt(std::string_view bytes, std::string_view text, std::size_t at);
    static std::optional<std::size_t> matchEndingAtEnd(const Piece& piece, std::string_view text);
    static std::optional<std::size_t> find(const Piece& piece, std::string_view text, std::size_t from);

    std::vector<Piece> m_pieces;  // one more than there are "%"
    std::size_t m_shortest = 0;   // bytes that every match has at least
};

}  // namespace kovanix
