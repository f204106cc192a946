#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace kovanix {

/// A growing array of plain values. A large one grows and shrinks where it lies: the machine maps its memory
/// anew where a vector would copy it, and holds both meanwhile.
template <class T>
class PlainArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    PlainArray() = default;
    PlainArray(const PlainArray& other) { append(other.data(), other.size()); }
    PlainArray& operator=(const PlainArray& other) { return *this = PlainArray(other); }
    PlainArray(PlainArray&& other) noexcept
        : m_values(std::move(other.m_values)),
          m_size(std::exchange(other.m_size, 0)),
          m_capacity(std::exchange(other.m_capacity, 0)) {}
    PlainArray& operator=(PlainArray&& other) noexcept {
        m_values = std::move(other.m_values);
        m_size = std::exchange(other.m_size, 0);
        m_capacity = std::exchange(other.m_capacity, 0);
        return *this;
    }
    ~PlainArray() = default;

    std::size_t size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }
    const T* data() const { return m_values.get(); }
    const T* begin() const { return data(); }
    const T* end() const { return data() + m_size; }
    const T& operator[](std::size_t place) const { return m_values[place]; }
    const T& back() const { return m_values[m_size - 1]; }

    void append(const T& value) { *appendPlaces(1) = value; }
    void append(const T* values, std::size_t count) {
        if (count > 0)
            std::memcpy(appendPlaces(count), values, count * sizeof(T));
    }

    /// Makes the array longer. @return the first of the new places, to be written to
    T* appendPlaces(std::size_t count) {
        if (m_capacity - m_size < count)
            allocate(m_size + count > 2 * m_capacity ? m_size + count : 2 * m_capacity);
        m_size += count;
        return m_values.get() + m_size - count;
    }

    void set(std::size_t place, const T& value) { m_values[place] = value; }
    /// Puts other values in the place of some. Puts no memory by: an array that is edited isn't built up any
    /// more.
    void replace(std::size_t place, std::size_t count, const T* values, std::size_t newCount) {
        const std::size_t behind = m_size - place - count;
        const std::size_t size = place + newCount + behind;
        if (size > m_capacity)
            allocate(size);
        T* const at = m_values.get() + place;
        std::memmove(at + newCount, at + count, behind * sizeof(T));
        if (newCount > 0)
            std::memcpy(at, values, newCount * sizeof(T));
        m_size = size;
    }

    /// Takes values from the end.
    void truncate(std::size_t size) { m_size = size; }

    /// Gives back the memory that was put by for more values.
    void squeeze() {
        if (m_size < m_capacity)
            allocate(m_size);
    }

private:
    struct Free {
        void operator()(T* values) const { std::free(values); }
    };

    void allocate(std::size_t capacity) {
        if (capacity == 0) {
            m_values.reset();
        } else {
            void* const moved = std::realloc(m_values.get(), capacity * sizeof(T));
            if (!moved)
                throw std::bad_alloc();
            static_cast<void>(m_values.release());  // NOLINT: it has been moved
            m_values.reset(static_cast<T*>(moved));
        }
        m_capacity = capacity;
    }

    std::unique_ptr<T[], Free> m_values;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

}  // namespace kovanix
