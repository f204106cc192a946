#include "database/textstore.h"

#include <QString>
#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string>

#include "runtime/runtimeerror.h"
#include "values/lettercase.h"
#include "values/utf8.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

/// The folded forms of the characters that take one or two bytes in UTF-8, worked out once.
class FoldedForms {
public:
    struct Form {
        std::uint8_t size = 0;
        std::array<char, 3> bytes{};
    };

    static const FoldedForms& all() {
        static const FoldedForms forms;
        return forms;
    }

    const Form& operator[](char32_t character) const { return m_forms[character]; }

private:
    FoldedForms() {
        for (char32_t character = 0; character < utf8::behindTwoBytes; ++character) {
            std::string bytes;
            utf8::append(bytes, lowerTurkish(character));
            m_forms[character].size = static_cast<std::uint8_t>(bytes.size());
            std::ranges::copy(bytes, m_forms[character].bytes.begin());
        }
    }

    std::array<Form, utf8::behindTwoBytes> m_forms;
};

// No character's folded form is longer: I and Ⱥ take a byte more than they did.
constexpr std::size_t longestForAByte = 2;

/// Writes the folded form of a text. @return the place behind it
char* writeFolded(char* out, std::string_view text, const FoldedForms& forms) {
    std::string rare;
    for (std::size_t place = 0; place < text.size();) {
        if (const auto character = utf8::nextShort(text, place)) {
            const FoldedForms::Form& form = forms[*character];
            std::memcpy(out, form.bytes.data(), form.bytes.size());
            out += form.size;
            continue;
        }
        const char32_t character = utf8::next(text, place);
        rare.clear();
        utf8::append(rare, character < utf8::strayBytes ? lowerTurkish(character) : character);
        out = std::ranges::copy(rare, out).out;
    }
    return out;
}

}  // namespace

std::uint32_t TextStore::checkedPlace(std::size_t place) {
    if (place > std::numeric_limits<std::uint32_t>::max())
        throw RuntimeError(RuntimeError::overflow, u"Overflow"_s);
    return static_cast<std::uint32_t>(place);
}

void TextStore::append(std::string_view text) {
    const std::uint32_t behind = checkedPlace(m_bytes.size() + text.size() + 1);
    char* const place = m_bytes.appendPlaces(text.size() + 1);
    if (!text.empty())
        std::memcpy(place, text.data(), text.size());
    place[text.size()] = '\0';
    m_starts.append(behind);
}

void TextStore::replace(std::size_t row, std::string_view text) {
    const std::size_t former = (*this)[row].size();
    checkedPlace(m_bytes.size() - former + text.size());
    m_bytes.replace(m_starts[row], former, text.data(), text.size());
    const auto shift = static_cast<std::uint32_t>(text.size() - former);  // counts down by wrapping round
    for (std::size_t next = row + 1; next < m_starts.size(); ++next)
        m_starts.set(next, m_starts[next] + shift);
}

void TextStore::finish() {
    m_bytes.squeeze();
    m_starts.squeeze();
}

bool TextStore::isFolded() const {
    return std::ranges::none_of(m_bytes, [](char byte) {
        return static_cast<signed char>(byte) < 0 || (byte >= 'A' && byte <= 'Z');
    });
}

TextStore TextStore::folded() const {
    const FoldedForms& forms = FoldedForms::all();
    TextStore result;
    for (std::size_t row = 0; row < count(); ++row) {
        const std::string_view text = (*this)[row];
        // A form is written in one go with what may stand behind it.
        const std::size_t before = result.m_bytes.size();
        char* const place =
            result.m_bytes.appendPlaces(longestForAByte * text.size() + sizeof(FoldedForms::Form));
        const auto size = static_cast<std::size_t>(writeFolded(place, text, forms) - place);
        place[size] = '\0';
        result.m_bytes.truncate(before + size + 1);
        result.m_starts.append(checkedPlace(result.m_bytes.size()));
    }
    result.finish();
    return result;
}

}  // namespace kovanix
