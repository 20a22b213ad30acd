#pragma once

#include <cstddef>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

/// Empties a vector that will be filled again. Keeps its memory, unless an unusual burst made it very large.
template <typename Element> void clearForReuse(std::vector<Element>& elements)
{
    constexpr std::size_t usualBytes = 4u << 20;
    if (elements.capacity() > usualBytes / sizeof(Element))
        elements = std::vector<Element>();
    else
        elements.clear();
}

/// Datagrams in the order of their arrival, stored one behind the other. The memory is kept from batch to
/// batch: once it has grown to the size of the usual burst, neither filling nor emptying it allocates.
class DatagramQueue {
public:
    struct Datagram {
        const char* bytes;
        std::size_t size;
    };

    void append(const char* bytes, std::size_t size)
    {
        m_bytes.insert(m_bytes.end(), bytes, bytes + size);
        m_ends.push_back(m_bytes.size());
    }

    bool isEmpty() const { return m_ends.empty(); }
    std::size_t count() const { return m_ends.size(); }
    std::size_t byteCount() const { return m_bytes.size(); }

    Datagram at(std::size_t index) const
    {
        const std::size_t begin = index == 0 ? 0 : m_ends[index - 1];
        return {m_bytes.data() + begin, m_ends[index] - begin};
    }

    void clear()
    {
        clearForReuse(m_bytes);
        clearForReuse(m_ends);
    }

    void swap(DatagramQueue& other) noexcept
    {
        m_bytes.swap(other.m_bytes);
        m_ends.swap(other.m_ends);
    }

private:
    std::vector<char> m_bytes;
    std::vector<std::size_t> m_ends; ///< where each datagram ends in m_bytes
};

} // namespace Orvane::ECProxy::Client::Internal
