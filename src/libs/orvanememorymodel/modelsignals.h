#pragma once

#include "orvaneplatform/bizmodel/devicelist.h"

namespace Orvane::MemoryModel {

/// The model's device list as its users know it: its devices, its signals, and one for any change.
class ModelSignals : public BizModel::DeviceList {
    Q_OBJECT

public:
    /// All devices, in the order of the show. Any thread.
    virtual QList<std::weak_ptr<BizModel::Device>> devices() const = 0;

Q_SIGNALS:
    /// Something of the model changed, with or without a signal of its own. Any thread.
    void signalModelChanged();
};

} // namespace Orvane::MemoryModel
