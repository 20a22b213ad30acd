#pragma once

#include <QtGlobal>

#include <atomic>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

/// Orders what several threads write to the key items of one group.
///
/// An update reads the model, with no lock held, and then writes items. Of two of them side by side, the one
/// that read first could write last and leave the items behind the model. So an update that another writer
/// has overtaken reads the model once more. Every change of the model is announced and every announcement
/// brings an update: the items end up as the model does.
class ItemUpdates {
public:
    /// Passes what `readModel` returns to `writeItems` and returns the latter's result. `writeItems` runs
    /// under the lock: it changes items and calls nothing else.
    template <typename Read, typename Write> auto update(Read readModel, Write writeItems)
    {
        for (;;) {
            const quint64 seen = m_nVersion;
            const auto model = readModel();
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (seen != m_nVersion)
                continue;
            ++m_nVersion;
            return writeItems(model);
        }
    }

    /// Writes items without asking the model; an update that is under way starts over.
    template <typename Write> auto write(Write writeItems)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_nVersion;
        return writeItems();
    }

    /// Reads items while nobody is in the middle of writing them.
    template <typename Read> auto read(Read readItems) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return readItems();
    }

private:
    // m_mutex guards the writing of the group's items, and of m_nVersion, the number of writers so far.
    mutable std::mutex m_mutex;
    std::atomic<quint64> m_nVersion{0};
};

} // namespace Orvane::ECProxy::Client::Internal
