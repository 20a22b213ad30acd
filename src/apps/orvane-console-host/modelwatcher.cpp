#include "modelwatcher.h"

#include "memorydevicelist.h"
#include "memorymodel.h"

#include <algorithm>
#include <chrono>

namespace Orvane::ConsoleHost {

using MemoryModel::ModelSignals;

namespace {
constexpr std::chrono::milliseconds RefreshInterval(40);
}

ModelWatcher::ModelWatcher(MemoryModel::MemoryModel& model, QObject* parent)
    : QObject(parent)
    , m_model(model)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(RefreshInterval);
    connect(&m_timer, &QTimer::timeout, this, &ModelWatcher::refresh);
    connect(&model.deviceList(), &ModelSignals::signalModelChanged, this, &ModelWatcher::refreshSoon);
}

void ModelWatcher::refreshSoon()
{
    if (!m_timer.isActive())
        m_timer.start();
}

void ModelWatcher::refresh()
{
    const DevicePicture device = picture();
    Q_EMIT signalChanged(device);
    // A transition moves on without a change of the model.
    const bool isMoving =
        std::any_of(device.screens.begin(), device.screens.end(), [](const ScreenPicture& screen) {
            return screen.state == BizModel::Screen::State::Taking
                || screen.state == BizModel::Screen::State::Tbar_taking;
        });
    if (isMoving)
        refreshSoon();
}

} // namespace Orvane::ConsoleHost
