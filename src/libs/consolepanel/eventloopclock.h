#pragma once

#include "panelclock.h"

#include <QElapsedTimer>
#include <QTimer>

namespace Orvane::ConsolePanel {

/// Real time; the alarm rings from the event loop of the thread that made the clock.
class EventLoopClock : public PanelClock {
public:
    EventLoopClock();

    Duration now() const override;
    void setAlarm(Duration when) override;
    void clearAlarm() override;

private:
    QElapsedTimer m_elapsed;
    QTimer m_timer;
};

} // namespace Orvane::ConsolePanel
