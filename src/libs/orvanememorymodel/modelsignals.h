#pragma once

#include "orvaneplatform/bizmodel/devicelist.h"

namespace Orvane::MemoryModel {

/// The signals of the model, for who announces changes and needs to know nothing of what has changed.
class ModelSignals : public BizModel::DeviceList {
    Q_OBJECT

Q_SIGNALS:
    /// Something of the model changed, with or without a signal of its own. Any thread.
    void signalModelChanged();
};

} // namespace Orvane::MemoryModel
