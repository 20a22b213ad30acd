#pragma once

#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/bizmodel/input.h"
#include "orvaneplatform/bridge/sharedvalue.h"

#include <atomic>
#include <memory>

namespace Orvane::Bridge {

/// An input that keeps what your model says of it, and announces what changes. Any thread.
class ORVANEPLATFORM_EXPORT InputItem : public BizModel::Input {
public:
    /// @p id is not 0 and unique within the device.
    InputItem(quint32 id, const QString& name);
    ~InputItem() override;

    quint32 interfaceId() const override { return m_nId; }
    QString name() const override { return m_name.get(); }
    bool isActive() const override { return m_bActive; }
    bool isOverLoad() const override { return m_bOverLoad; }

    /// @name What your model says
    /// @{

    /// Another name.
    void setName(const QString& name);
    /// Whether a signal is present; at first it is.
    void setActive(bool active);
    /// Whether the signal is more than the input can take; at first it is not.
    void setOverLoad(bool overLoad);
    /// @}

private:
    friend class DeviceItem;

    const quint32 m_nId;
    SharedValue<QString> m_name;
    std::atomic<bool> m_bActive{true};
    std::atomic<bool> m_bOverLoad{false};
    /// Set before the input is part of the device.
    std::weak_ptr<BizModel::Device> m_pDevice;
    std::weak_ptr<BizModel::Input> m_pSelf;
};

} // namespace Orvane::Bridge
