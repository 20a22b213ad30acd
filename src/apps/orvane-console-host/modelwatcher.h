#pragma once

#include "modelpicture.h"

#include <QObject>
#include <QTimer>

namespace Orvane::ConsoleHost {

/// Follows the model for the window: tells what the active device shows, 25 times a second at most, however
/// often the model changes.
class ModelWatcher : public QObject {
    Q_OBJECT

public:
    explicit ModelWatcher(MemoryModel::MemoryModel& model, QObject* parent = nullptr);

    DevicePicture picture() const { return pictureActiveDevice(m_model); }

Q_SIGNALS:
    void signalChanged(const Orvane::ConsoleHost::DevicePicture& device);

private:
    void refreshSoon();
    void refresh();

    MemoryModel::MemoryModel& m_model;
    QTimer m_timer;
};

} // namespace Orvane::ConsoleHost
