#pragma once

#include "ecconstants.h"
#include "holdtimer_p.h"
#include "painter_p.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

/// The source of the secondary screen (the picture of DVI input 0, or the application's own), with its pop-up
/// and the light of the MVR key.
///
/// A change takes 300 ms, and one is made at a time. A console thread makes its change itself and waits for
/// it; when another change is under way it leaves its own to the thread that makes that one, and goes on. On
/// the GUI thread nothing waits: a worker makes those changes. What waits does not pile up: however many
/// reports came, the source is brought in line once, with the last of them.
///
/// Any thread may call any member. Destruction drops what waits, and waits for the worker.
class SecondaryScreen {
public:
    /// What the screen needs to change its source.
    static constexpr std::chrono::milliseconds SwitchDuration{300};

    /// Sends the light of the MVR key.
    using Light = std::function<void(ECLEDColor color)>;

    /// The painter must be stopped before the destruction.
    SecondaryScreen(Painter& painter, Light light);
    ~SecondaryScreen();
    SecondaryScreen(const SecondaryScreen&) = delete;
    SecondaryScreen& operator=(const SecondaryScreen&) = delete;

    /// Switches from the one source to the other, as the MVR key asks for.
    void exchange();
    /// Brings source, pop-up and light in line with the signal that was reported for DVI input 0.
    void follow(bool hasSignal);
    /// Lights the MVR key as it was lit last.
    void showLight();

private:
    enum class Change { Exchange, Follow };

    void ask(Change change);
    /// Makes a change that waits. Called with the lock, when none is under way; returns with it.
    void make(Change change, std::unique_lock<std::mutex>& lock);
    void makeWaiting();
    bool isAnyWaiting() const { return m_nExchanges > 0 || m_bFollow; }

    void exchangeSource();
    void followSignal();
    void setLight(ECLEDColor color);

    Painter& m_painter;
    const Light m_light;
    std::atomic<ECLEDColor> m_lit{ECLEDColor::Off};
    /// The last report has no signal. A change that had to wait finds here what came meanwhile.
    std::atomic<bool> m_bSignalLost{false};

    // m_mutex guards what follows. Not held while a change is made: routes and signals are the host's code.
    std::mutex m_mutex;
    int m_nExchanges = 0; ///< that wait
    bool m_bFollow = false; ///< waits
    bool m_bChanging = false;

    /// Makes the waiting changes on its own thread, at once. Last, so that it ends first.
    HoldTimer m_worker;
};

} // namespace Orvane::ECProxy::Client::Internal
