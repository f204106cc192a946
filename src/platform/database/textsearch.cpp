#include "database/textsearch.h"

#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kovanix {

#ifdef __SSE2__

namespace {

constexpr std::size_t step = sizeof(__m128i);

// A longer text that nearly occurs everywhere would be compared again and again; the library's search
// doesn't.
constexpr std::size_t longest = 64;

__m128i bytesAt(const char* place) {
    __m128i bytes;
    std::memcpy(&bytes, place, step);
    return bytes;
}

}  // namespace

/// A place is compared in full only where both the first and the last byte are the wanted ones.
std::size_t findText(std::string_view text, std::string_view wanted, std::size_t from) {
    if (wanted.size() > longest) {
        const void* const found =
            from < text.size() ? memmem(text.data() + from, text.size() - from, wanted.data(), wanted.size())
                               : nullptr;
        return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data())
                     : std::string_view::npos;
    }
    const __m128i first = _mm_set1_epi8(wanted.front());
    const __m128i last = _mm_set1_epi8(wanted.back());
    const std::size_t toLast = wanted.size() - 1;
    std::size_t place = from;
    for (; place + toLast + step <= text.size(); place += step) {
        const char* const bytes = text.data() + place;
        const __m128i both = _mm_and_si128(_mm_cmpeq_epi8(bytesAt(bytes), first),
                                           _mm_cmpeq_epi8(bytesAt(bytes + toLast), last));
        for (auto candidates = static_cast<std::uint32_t>(_mm_movemask_epi8(both)); candidates != 0;
             candidates &= candidates - 1) {
            const auto candidate = static_cast<std::size_t>(std::countr_zero(candidates));
            if (std::memcmp(bytes + candidate, wanted.data(), wanted.size()) == 0)
                return place + candidate;
        }
    }
    return text.find(wanted, place);
}

#else

std::size_t findText(std::string_view text, std::string_view wanted, std::size_t from) {
    return text.find(wanted, from);
}

#endif

}  // namespace kovanix
