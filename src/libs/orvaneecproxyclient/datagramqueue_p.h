#pragma once

#include <cstddef>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

/// Datagrams in the order of their arrival, one behind the other in memory that is kept from batch to batch:
/// neither filling nor emptying it allocates once it has grown to the size of the usual burst.
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

    Datagram at(std::size_t index) const
    {
        const std::size_t begin = index == 0 ? 0 : m_ends[index - 1];
        return {m_bytes.data() + begin, m_ends[index] - begin};
    }

    /// Forgets all datagrams, and gives back the memory that a burst out of the ordinary took.
    void clear()
    {
        constexpr std::size_t usualBurst = 4u << 20;
        if (m_bytes.capacity() > usualBurst)
            *this = DatagramQueue();
        m_bytes.clear();
        m_ends.clear();
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
