// Step 1: a wall with two screens that can be selected, taken, cut and frozen. The items keep what the wall
// is like and announce what changes; the manager is told what the keys ask for.
#pragma once

#include <orvaneplatform/bridge/itemcontrollerfactory.h>
#include <orvaneplatform/bridge/itemdevicelist.h>
#include <orvaneplatform/bridge/itemparallelmanager.h>

#include <QTimer>

namespace Own {

using namespace Orvane;

/// Requests that take their time. They arrive on the GUI thread, and the screens are busy until they end.
struct ParallelManager : Bridge::ItemParallelManager {
    void take(const ScreenList&, OpenRequest end) override
    {
        QTimer::singleShot(800, [end] { end.succeed(); });
    }
    void cut(const ScreenList&, OpenRequest end) override { end.succeed(); }
    void freeze(const ScreenList&, bool, OpenRequest end) override { end.succeed(); }
};

inline void addScreens(Bridge::DeviceItem& wall)
{
    wall.setMultiScreens(true);
    wall.addScreen(std::make_shared<Bridge::ScreenItem>(1, "Left"));
    wall.addScreen(std::make_shared<Bridge::ScreenItem>(2, "Right"));
}

} // namespace Own
