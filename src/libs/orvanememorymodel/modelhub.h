#pragma once

#include "modelsignals.h"
#include "operations.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace Orvane::MemoryModel {

/// What all objects of one model share: its lock, its journal, and the way to announce changes. Objects that
/// were removed from the model keep it, so it outlives the model as long as somebody holds one of them.
class ModelHub final {
public:
    Operations operations;

    /// Where changes are announced; null once the model is gone.
    void setSignals(ModelSignals* signalsOfModel);

private:
    friend class Guard;
    friend class Change;

    /// Guards every `Guarded` value of the model and m_pSignals.
    std::mutex m_mutex;
    ModelSignals* m_pSignals = nullptr;
};

/// Holds the model's lock for reading.
class Guard {
public:
    explicit Guard(ModelHub& hub)
        : m_lock(hub.m_mutex)
    {
    }

protected:
    std::unique_lock<std::mutex> m_lock;

private:
    Q_DISABLE_COPY_MOVE(Guard)
};

/// Holds the model's lock for a change. When it ends, it lets go of the lock and then announces what was
/// changed, so that no signal is ever emitted under the lock.
class Change final : public Guard {
public:
    explicit Change(ModelHub& hub)
        : Guard(hub)
        , m_hub(hub)
    {
    }
    ~Change();

    /// Has the device list emit the signal; objects that it names stay until then.
    template <typename Signal, typename... Arguments> void announce(Signal signal, Arguments... arguments)
    {
        m_announcements.push_back([=](ModelSignals& list) { Q_EMIT(list.*signal)(arguments...); });
        m_bChanged = true;
    }
    /// Sets the value and announces it, unless it is so already.
    template <typename T, typename Signal, typename... Arguments>
    void set(T& value, const std::decay_t<T>& wanted, Signal signal, const Arguments&... arguments)
    {
        if (std::exchange(value, wanted) != wanted)
            announce(signal, arguments...);
    }
    /// For a change that no signal of its own tells.
    void markChanged() { m_bChanged = true; }
    /// Announces nothing: the change was undone.
    void forgetAnnouncements();

private:
    ModelHub& m_hub;
    std::vector<std::function<void(ModelSignals&)>> m_announcements;
    bool m_bChanged = false;
};

/// A value that can be reached only by who holds the model's lock.
template <typename T> class Guarded final {
public:
    Guarded() = default;
    explicit Guarded(T value)
        : m_value(std::move(value))
    {
    }

    const T& get(const Guard&) const { return m_value; }
    T& get(Change&) { return m_value; }

private:
    T m_value{};
};

/// The first of the objects that the predicate accepts; empty when there is none.
template <typename List, typename Predicate> auto findIn(const List& list, Predicate predicate)
{
    const auto found = std::find_if(list.cbegin(), list.cend(), predicate);
    return found == list.cend() ? typename List::value_type() : *found;
}

/// Those of the objects that the predicate, called with each, accepts, as the platform's interfaces hand them
/// out.
template <typename Interface, typename Objects, typename Accepts>
QList<std::weak_ptr<Interface>> weakList(const Objects& objects, Accepts accepts)
{
    QList<std::weak_ptr<Interface>> list;
    for (const auto& object : objects) {
        if (accepts(std::as_const(*object)))
            list += object;
    }
    return list;
}

template <typename Interface, typename Objects>
QList<std::weak_ptr<Interface>> weakList(const Objects& objects)
{
    return QList<std::weak_ptr<Interface>>(objects.begin(), objects.end());
}

} // namespace Orvane::MemoryModel
