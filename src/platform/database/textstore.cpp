#include "database/textstore.h"

#include <QString>
#include <algorithm>
#include <array>
#include <limits>
#include <string>

#include "runtime/runtimeerror.h"
#include "values/lettercase.h"
#include "values/utf8.h"

namespace kovanix {

namespace {

/// The folded forms of the characters that take one or two bytes in UTF-8, worked out once.
class FoldedForms {
public:
    static constexpr char32_t count = 0x800;

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
        for (char32_t character = 0; character < count; ++character) {
            std::string bytes;
            utf8::append(bytes, lowerTurkish(character));
            m_forms[character].size = static_cast<std::uint8_t>(bytes.size());
            std::ranges::copy(bytes, m_forms[character].bytes.begin());
        }
    }

    std::array<Form, count> m_forms;
};

void appendFolded(std::string& folded, std::string_view text, const FoldedForms& forms) {
    for (std::size_t place = 0; place < text.size();) {
        const char32_t character = utf8::next(text, place);
        if (character < FoldedForms::count)
            folded.append(forms[character].bytes.data(), forms[character].size);
        else
            utf8::append(folded, character < utf8::strayBytes ? lowerTurkish(character) : character);
    }
}

}  // namespace

void TextStore::append(std::string_view text) {
    if (m_bytes.size() + text.size() >= std::numeric_limits<std::uint32_t>::max())
        throw RuntimeError(RuntimeError::overflow, QStringLiteral("Overflow"));
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
    m_bytes.push_back('\0');
    m_starts.push_back(static_cast<std::uint32_t>(m_bytes.size()));
}

void TextStore::finish() {
    m_bytes.shrink_to_fit();
    m_starts.shrink_to_fit();
}

bool TextStore::isFolded() const {
    return std::ranges::none_of(m_bytes, [](char byte) {
        return static_cast<signed char>(byte) < 0 || (byte >= 'A' && byte <= 'Z');
    });
}

TextStore TextStore::folded() const {
    const FoldedForms& forms = FoldedForms::all();
    TextStore result;
    result.m_bytes.reserve(m_bytes.size());
    result.m_starts.reserve(m_starts.size());
    std::string folded;
    for (std::size_t row = 0; row < count(); ++row) {
        folded.clear();
        appendFolded(folded, (*this)[row], forms);
        result.append(folded);
    }
    result.finish();
    return result;
}

}  // namespace kovanix
