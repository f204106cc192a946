#include "database/likepattern.h"

#include <algorithm>
#include <cstring>

#include "values/lettercase.h"

namespace kovanix {

namespace {

// No byte of any character in UTF-8.
constexpr char anyOne = '\xFF';

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The place behind the character at a place; nothing at the end.
std::optional<std::size_t> behindCharacter(std::string_view text, std::size_t at) {
    if (at >= text.size())
        return std::nullopt;
    do {
        ++at;
    } while (at < text.size() && continuesCharacter(text[at]));
    return at;
}

}  // namespace

PatternSign PatternSign::next(QStringView pattern, qsizetype& place) {
    const char16_t character = pattern[place++].unicode();
    if (character == u'%')
        return {Kind::anyMany, character};
    if (character == u'_')
        return {Kind::anyOne, character};
    if (character == u'[' && place + 1 < pattern.size() && pattern[place + 1] == u']') {
        const char16_t sign = pattern[place].unicode();
        if (sign == u'%' || sign == u'_' || sign == u'[') {
            place += 2;
            return {Kind::character, sign};
        }
    }
    return {Kind::character, character};
}

std::string foldedText(QStringView text) {
    return lowerTurkish(text).toStdString();
}

LikePattern::LikePattern(QStringView pattern) : m_pieces(1) {
    QString run;
    const auto endRun = [&] {
        m_pieces.back().bytes += foldedText(run);
        run.clear();
    };
    for (qsizetype place = 0; place < pattern.size();) {
        const PatternSign sign = PatternSign::next(pattern, place);
        if (sign.kind == PatternSign::Kind::character) {
            run += QChar(sign.character);
            continue;
        }
        endRun();
        if (sign.kind == PatternSign::Kind::anyOne)
            m_pieces.back().bytes += anyOne;
        else if (m_pieces.size() < 2 || !m_pieces.back().bytes.empty())
            m_pieces.emplace_back();
    }
    endRun();
    for (Piece& piece : m_pieces) {
        piece.measure();
        m_shortest += piece.bytes.size();
    }
}

void LikePattern::Piece::measure() {
    leading = std::min(bytes.find_first_not_of(anyOne), bytes.size());
    plainEnd = std::min(bytes.find(anyOne, leading), bytes.size());
}

/// The place behind what matches at a place.
std::optional<std::size_t> LikePattern::matchAt(std::string_view bytes, std::string_view text,
                                                std::size_t at) {
    for (const char byte : bytes) {
        if (byte == anyOne) {
            const auto behind = behindCharacter(text, at);
            if (!behind)
                return std::nullopt;
            at = *behind;
        } else if (at < text.size() && text[at] == byte) {
            ++at;
        } else {
            return std::nullopt;
        }
    }
    return at;
}

/// The place where a match begins that runs to the end of the text.
std::optional<std::size_t> LikePattern::matchEndingAtEnd(const Piece& piece, std::string_view text) {
    std::size_t at = text.size();
    for (auto byte = piece.bytes.crbegin(); byte != piece.bytes.crend(); ++byte) {
        if (at == 0)
            return std::nullopt;
        --at;
        if (*byte == anyOne) {
            while (at > 0 && continuesCharacter(text[at]))
                --at;
        } else if (text[at] != *byte) {
            return std::nullopt;
        }
    }
    return at;
}

/// The place behind the first match that begins at a place or behind it.
std::optional<std::size_t> LikePattern::find(const Piece& piece, std::string_view text, std::size_t from) {
    for (std::size_t skipped = 0; skipped < piece.leading; ++skipped) {
        const auto behind = behindCharacter(text, from);
        if (!behind)
            return std::nullopt;
        from = *behind;
    }
    const std::string_view plain = piece.plain();
    const std::string_view rest = std::string_view(piece.bytes).substr(piece.plainEnd);
    if (plain.empty())
        return from;
    while (from < text.size()) {
        const void* const hit = memmem(text.data() + from, text.size() - from, plain.data(), plain.size());
        if (!hit)
            return std::nullopt;
        from = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
        if (const auto behind = matchAt(rest, text, from + plain.size()))
            return behind;
        ++from;
    }
    return std::nullopt;
}

bool LikePattern::matches(std::string_view folded) const {
    if (folded.size() < m_shortest)
        return false;
    std::optional<std::size_t> at = matchAt(m_pieces.front().bytes, folded, 0);
    if (!at || m_pieces.size() == 1)
        return at == folded.size();
    const std::optional<std::size_t> end = matchEndingAtEnd(m_pieces.back(), folded);
    if (!end)
        return false;
    // The first hit of every piece leaves the most room for those behind it.
    for (std::size_t i = 1; i + 1 < m_pieces.size(); ++i) {
        at = find(m_pieces[i], folded.substr(0, *end), *at);
        if (!at)
            return false;
    }
    return *at <= *end;
}

std::optional<std::string_view> LikePattern::containedText() const {
    if (m_pieces.size() == 2 && m_pieces.front().bytes.empty() && m_pieces.back().bytes.empty())
        return std::string_view();
    if (m_pieces.size() != 3 || !m_pieces.front().bytes.empty() || !m_pieces.back().bytes.empty() ||
        m_pieces[1].plain().size() != m_pieces[1].bytes.size())
        return std::nullopt;
    return m_pieces[1].bytes;
}

}  // namespace kovanix
