// Step 1: two screens that can be selected, taken, cut and frozen. Queries come on any thread, so what they
// read is atomic or does not change after the start.
#pragma once

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/screen.h"
#include "bridge/guiparallelmanager.h"
#include "bridge/sharedvalue.h"
#include "modelcontrol/controllerfactory.h"
#include "modelcontrol/device.h"
#include "modelcontrol/screen.h"

#include <QTimer>

#include <atomic>

namespace Own {

using namespace Orvane;
using ScreenPtr = std::weak_ptr<BizModel::Screen>;
using DevicePtr = std::weak_ptr<BizModel::Device>;
constexpr int RegularScreens = BizModel::Enum::Screen::RegularScreen;

struct Screen : BizModel::Screen {
    Screen(quint32 screenId, const QString& screenName)
        : id(screenId)
        , title(screenName)
    {
    }
    quint32 screenId() const override { return id; }
    QString name() const override { return title; }
    State state() const override { return doing; }
    bool selected() const override { return isSelected; }
    bool freeze() const override { return isFrozen; }

    const quint32 id;
    const QString title;
    std::atomic<State> doing{State::Normal};
    std::atomic<bool> isSelected{false};
    std::atomic<bool> isFrozen{false};
};

struct Device : BizModel::Device {
    QString ipMacSn() const override { return "wall"; }
    bool isMultiScreens() const override { return true; }
    ScreenPtr activedScreen() const override { return active.get(); }
    QList<ScreenPtr> screens(int typeMask) const override
    {
        const bool regular = typeMask & RegularScreens;
        return regular ? QList<ScreenPtr>(all.begin(), all.end()) : QList<ScreenPtr>();
    }

    QList<std::shared_ptr<Screen>> all; // filled before the start
    Bridge::SharedValue<std::shared_ptr<BizModel::Screen>> active;
};

struct DeviceList : BizModel::DeviceList {
    DevicePtr activedDevice() const override { return device; }

    std::shared_ptr<Device> device = std::make_shared<Device>();
};

/// The requests of the keys that change the device at once.
struct DeviceControl : ModelControl::Device {
    explicit DeviceControl(const DevicePtr& owner)
        : ModelControl::Device(owner)
    {
    }
    void setActivedScreen(const ScreenPtr& screen) override
    {
        if (std::static_pointer_cast<Own::Device>(device())->active.set(screen.lock()))
            Q_EMIT BizModel::DeviceList::instance()->signalActivedScreenChanged(device(), screen);
    }
};

struct ScreenControl : ModelControl::Screen {
    explicit ScreenControl(const DevicePtr& owner)
        : device(owner)
    {
    }
    bool setSelected(const Screens& screens, BizModel::SelectedType mode, bool notify, bool) override
    {
        if (mode == BizModel::SelectedType::Cover)
            select(device.lock()->selectedScreen(RegularScreens), false, false);
        return select(screens, true, notify);
    }
    bool cancelSelected(const Screens& screens, bool notify) override
    {
        return select(screens, false, notify);
    }
    bool select(const Screens& screens, bool on, bool notify)
    {
        for (const ScreenPtr& each : screens) {
            if (const auto screen = std::static_pointer_cast<Own::Screen>(each.lock()))
                screen->isSelected = on;
        }
        if (notify)
            Q_EMIT BizModel::DeviceList::instance()->signalSelectedRegularScreensChanged(device);
        return true;
    }

    const DevicePtr device;
};

struct ControllerFactory : ModelControl::ControllerFactory {
    std::shared_ptr<ModelControl::Device> createDevice(const DevicePtr& device) override
    {
        return std::make_shared<DeviceControl>(device);
    }
    std::shared_ptr<ModelControl::Screen> createScreen(Screen::ScreenType, const DevicePtr& device) override
    {
        return std::make_shared<ScreenControl>(device);
    }
};

/// The requests that take their time. They arrive on the GUI thread, one after another.
struct ParallelManager : Bridge::GuiParallelManager {
    explicit ParallelManager(DeviceList& devices)
        : list(devices)
    {
    }
    void begin(const ParallelControl::ParallelTask& task) override
    {
        if (!isTransition(task))
            return;
        for (const auto& screen : selected())
            screen->doing = Screen::State::Taking;
    }
    void perform(const ParallelControl::ParallelTask& task, OpenRequest end) override
    {
        if (isTransition(task)) {
            const bool takes = std::holds_alternative<ParallelControl::ParallelTakeScreen>(task);
            QTimer::singleShot(takes ? 800 : 0, &list, [this, end] { finishTransition(end); });
        } else if (const auto* request = std::get_if<ParallelControl::ParallelFreezeScreen>(&task)) {
            for (const auto& screen : selected()) {
                screen->isFrozen = request->freeze;
                Q_EMIT list.signalScreenPGMFreezeChanged(list.device, screen);
            }
            end.succeed();
        } else {
            end.fail("The wall cannot do this.");
        }
    }

private:
    static bool isTransition(const ParallelControl::ParallelTask& task)
    {
        return std::holds_alternative<ParallelControl::ParallelTakeScreen>(task)
            || std::holds_alternative<ParallelControl::ParallelCutScreen>(task);
    }
    QList<std::shared_ptr<Screen>> selected() const
    {
        QList<std::shared_ptr<Screen>> found;
        for (const auto& screen : list.device->all) {
            if (screen->isSelected)
                found.append(screen);
        }
        return found;
    }
    /// Looks at the states, not at the selection: no screen may stay busy because it was deselected
    /// meanwhile.
    void finishTransition(const OpenRequest& end)
    {
        QList<ScreenPtr> changed;
        for (const auto& screen : list.device->all) {
            if (screen->doing.exchange(Screen::State::Normal) != Screen::State::Normal)
                changed.append(screen);
        }
        Q_EMIT list.signalDeviceScreenLayersChanged(changed, 0);
        end.succeed();
    }

    DeviceList& list;
};

} // namespace Own
