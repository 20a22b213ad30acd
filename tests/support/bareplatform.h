#pragma once

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/screen.h"

#include <atomic>

namespace Orvane::TestSupport {

/// An application without any device: enough for what does not touch the model.
class BareDeviceList : public BizModel::DeviceList {
public:
    std::weak_ptr<BizModel::Device> activedDevice() const override { return {}; }
    bool isCompatibleUpgrading() const override { return m_bUpgrading; }

    std::atomic<bool> m_bUpgrading{false};
};

/// The least that a screen must say of itself.
class BareScreen : public BizModel::Screen {
public:
    explicit BareScreen(quint32 id)
        : m_nId(id)
    {
    }

    quint32 screenId() const override { return m_nId; }
    QString name() const override { return QStringLiteral("Screen %1").arg(m_nId); }
    State state() const override { return m_state; }
    bool selected() const override { return m_bSelected; }

    const quint32 m_nId;
    std::atomic<State> m_state{State::Normal};
    std::atomic<bool> m_bSelected{false};
};

/// The least that a device must say of itself.
class BareDevice : public BizModel::Device {
public:
    QString ipMacSn() const override { return QStringLiteral("bare"); }
    std::weak_ptr<BizModel::Screen> activedScreen() const override { return {}; }
    QList<std::weak_ptr<BizModel::Screen>> screens(int screenTypeMask) const override
    {
        QList<std::weak_ptr<BizModel::Screen>> list;
        for (const auto& screen : m_screens) {
            if (screen->screenType() & screenTypeMask)
                list += screen;
        }
        return list;
    }

    QList<std::shared_ptr<BareScreen>> m_screens;
};

} // namespace Orvane::TestSupport
