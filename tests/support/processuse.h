#pragma once

#include <QString>

namespace Orvane::TestSupport {

/// What the process holds of the machine.
struct ProcessUse {
    qint64 memoryKb = 0;
    int threads = 0;
    int descriptors = 0;

    static ProcessUse present();
    /// Empty when the process has not grown since.
    QString growthSince(const ProcessUse& before) const;
};

} // namespace Orvane::TestSupport
