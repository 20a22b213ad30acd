#include "secondaryscreen_p.h"

#include "consolerequests_p.h"
#include "hoststate_p.h"
#include "log_p.h"
#include "showclock_p.h"

#include <thread>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// The sources by their names on the console.
constexpr DVISource InputSource = dvi1;
constexpr DVISource ApplicationSource = arm_left;

void switchSource(DVISource source)
{
    if (const auto console = ConsoleRequests::installed())
        console->switchSource(source);
}

void showPropertyPopup(bool visible)
{
    if (const auto console = ConsoleRequests::installed())
        console->showPropertyPopup(visible);
}

/// The source switched to last; without a manager there is nothing to be switched.
DVISource currentSource()
{
    const auto console = ConsoleRequests::installed();
    return console ? console->currentSource() : DVISource(0xFF);
}

void waitForSource()
{
    std::this_thread::sleep_for(ShowClock::realTime(SecondaryScreen::SwitchDuration));
}

} // namespace

SecondaryScreen::SecondaryScreen(Painter& painter, Light light)
    : m_painter(painter)
    , m_light(std::move(light))
    , m_worker([this] { makeWaiting(); })
{
}

SecondaryScreen::~SecondaryScreen()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_nExchanges = 0;
    m_bFollow = false;
}

void SecondaryScreen::exchange()
{
    ask(Change::Exchange);
}

void SecondaryScreen::follow(bool hasSignal)
{
    m_bSignalLost = !hasSignal;
    ask(Change::Follow);
}

void SecondaryScreen::showLight()
{
    m_painter.paint("MVR key", [this] { m_light(m_lit); });
}

void SecondaryScreen::ask(Change change)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (change == Change::Exchange)
        ++m_nExchanges;
    else
        m_bFollow = true;
    if (m_bChanging)
        return; // the thread that makes that change, or the worker after it, makes this one
    if (!HostState::isGuiThread())
        make(change, lock);
    const bool leaveToWorker = isAnyWaiting();
    lock.unlock();
    if (leaveToWorker)
        m_worker.restart(std::chrono::milliseconds(0));
}

void SecondaryScreen::makeWaiting()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    // The signal comes last: a key that was pressed before its loss must not bring a dark picture back.
    while (!m_bChanging && isAnyWaiting())
        make(m_nExchanges > 0 ? Change::Exchange : Change::Follow, lock);
}

void SecondaryScreen::make(Change change, std::unique_lock<std::mutex>& lock)
{
    if (change == Change::Exchange)
        --m_nExchanges;
    else
        m_bFollow = false;
    m_bChanging = true;
    lock.unlock();
    if (change == Change::Exchange)
        exchangeSource();
    else
        followSignal();
    lock.lock();
    m_bChanging = false;
}

void SecondaryScreen::exchangeSource()
{
    if (m_bSignalLost) {
        ecWarning(lcKeys, "[locate key no response] MVR key: the signal of DVI input 0 was lost meanwhile.");
        return;
    }
    switch (currentSource()) {
    case ApplicationSource:
        ecDebug(lcKeys, "mvr pressed: switch source dvi1");
        switchSource(InputSource);
        waitForSource();
        setLight(ECLEDColor::Green);
        showPropertyPopup(false);
        // The source that it was switched away from.
        ecDebug(lcKeys, "functionkeyboard MVR key clicked end. current is arm_left");
        break;
    case InputSource:
        ecDebug(lcKeys, "mvr pressed: switch source arm_left");
        setLight(ECLEDColor::Yellow);
        showPropertyPopup(true);
        waitForSource();
        switchSource(ApplicationSource);
        ecDebug(lcKeys, "functionkeyboard MVR key clicked end. current is dvi1");
        break;
    }
}

void SecondaryScreen::followSignal()
{
    const bool hasSignal = !m_bSignalLost;
    const DVISource source = currentSource();
    if (!hasSignal || source == ApplicationSource) {
        showPropertyPopup(true);
        waitForSource();
        switchSource(ApplicationSource);
        setLight(hasSignal ? ECLEDColor::Yellow : ECLEDColor::Off);
    } else if (source == InputSource) {
        switchSource(InputSource);
        waitForSource();
        showPropertyPopup(false);
        setLight(ECLEDColor::Green);
    }
}

void SecondaryScreen::setLight(ECLEDColor color)
{
    m_lit = color;
    m_painter.sendAtOnce(
        "MVR key", [&] { m_light(color); }, [this] { m_light(m_lit); });
}

} // namespace Orvane::ECProxy::Client::Internal
