#pragma once

#include "showclock_p.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <functional>

namespace Orvane::ECProxy::Client::Internal {

/// Turns a burst of notifications into one call on the GUI thread, a fixed time after the first of them.
/// `trigger()` may be called on any thread. Destroy it on the GUI thread.
class Coalescer : public QObject {
public:
    Coalescer(std::chrono::milliseconds delay, std::function<void()> callback)
    {
        m_timer.setSingleShot(true);
        m_timer.setInterval(std::chrono::ceil<std::chrono::milliseconds>(ShowClock::realTime(delay)));
        connect(&m_timer, &QTimer::timeout, this, std::move(callback));
        if (QCoreApplication* app = QCoreApplication::instance())
            moveToThread(app->thread());
    }

    void trigger()
    {
        // A timer can be started only on its own thread.
        QMetaObject::invokeMethod(this, [this] {
            if (!m_timer.isActive())
                m_timer.start();
        });
    }

private:
    QTimer m_timer{this}; // a child, so that it moves along
};

} // namespace Orvane::ECProxy::Client::Internal
