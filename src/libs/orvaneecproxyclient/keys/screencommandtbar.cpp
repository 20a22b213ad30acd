#include "screencommand_p.h"

#include "consolerequests_p.h"
#include "hoststate_p.h"
#include "log_p.h"
#include "modelaccess_p.h"

#include "modelcontrol/device.h"
#include "tasksampling/samplingthread.h"

#include "bizmodel/device.h"

#include <cmath>

namespace Orvane::ECProxy::Client::Internal {

namespace {

constexpr quint32 LowestPosition = 1;
constexpr quint32 HighestPosition = 64;
constexpr qreal PercentPerPosition = 0.015625; // 1 / 64
constexpr qreal PercentTolerance = 0.000001;
/// LEDs of the bar beside the lever.
constexpr qreal LedCount = 12;

/// The transition that the model is asked about; the T-Bar has no use for its time and direction.
constexpr ModelControl::s_SwitchEffectBody TBarEffect{5, 0, BizModel::EffectType::fade};

constexpr int TBarScreens = BizModel::Enum::Screen::RegularAndAUXScreens;

bool isEnd(quint32 position)
{
    return position == LowestPosition || position == HighestPosition;
}

bool isFinal(qreal percent)
{
    return std::abs(percent - 1.0) < PercentTolerance || std::abs(percent) < PercentTolerance;
}

const char* boolText(bool value)
{
    return value ? "true" : "false";
}

bool hasTakeScreens(const DevicePtr& device)
{
    const auto controller = ModelControl::Device::create(device);
    return controller && !controller->getTakeScreens(TBarScreens, TBarEffect, true).isEmpty();
}

} // namespace

void ScreenCommandPrivate::updateTBarValue(const ECTBarValue& value)
{
    ECTBarValue echo = value;
    echo.Value = value.Value <= LowestPosition ? 0 : quint32(qreal(value.Value) / HighestPosition * LedCount);
    m_pCommand->updateTBarValue(echo);
}

void ScreenCommandPrivate::tbarTake(const ECTBarValue& value)
{
    const quint32 position = value.Value;
    if (!isPositionAccepted(position))
        return;

    qreal percent = position <= LowestPosition ? 0.0 : position * PercentPerPosition;
    qreal prePercent = m_iPreValue * PercentPerPosition;
    if (value.IsBottomToTop == TopToBottom) {
        percent = 1 - percent;
        prePercent = 1 - prePercent;
    }
    ecDebug(
        lcTBar,
        "receive T-Bar value pre Value:%u Cur value:%u pre Percent:%f Cur Percent:%f T-Bar locked:%s "
        "Panel locked:%s T-Bar Started:%s",
        m_iPreValue, position, prePercent, percent, boolText(m_bLockTbar), boolText(m_bLockPanel),
        boolText(m_tbarStart));

    m_bLockPanel = isKeypadLocked();
    m_bLockTbar = isTBarLocked();
    if (m_bLockPanel || m_bLockTbar) {
        const QString line =
            QStringLiteral("T-Bar Error: : T-Bar is started %1, T-Bar is locked %2, Panel is locked %3.");
        ecWarning(lcLock, "%s", qUtf8Printable(line.arg(m_tbarStart).arg(m_bLockTbar).arg(m_bLockPanel)));
        m_iPreValue = position;
        return;
    }

    if (!m_tbarStart)
        tbarStart();
    if (m_tbarStart) {
        takeTBarProcess(percent);
        if (isFinal(percent))
            tbarStop(percent);
    }
    m_iPreValue = position;
}

/// False, with a line in the log, for a position that does not move the transition.
bool ScreenCommandPrivate::isPositionAccepted(quint32 position)
{
    if (position > HighestPosition || position == m_iPreValue) {
        ecWarning(
            lcTBar, "T-Bar Error: T-Bar value out of range, cur value is %u Pre Value is %u", position,
            m_iPreValue);
        return false;
    }
    if (m_bLockTbarEnable)
        return true;
    if (!isEnd(position)) {
        ecWarning(lcTBar, "T-Bar Error: Current T-Bar available status is %s", boolText(m_bLockTbarEnable));
        return false;
    }
    ecWarning(lcTBar, "(value == 1 || value == 64) && !m_bLockTbarEnable)%s", boolText(m_bLockTbarEnable));
    m_iPreValue = position;
    m_bLockTbarEnable = true;
    return false;
}

void ScreenCommandPrivate::tbarStart()
{
    if (const auto window = HostState::modalWindow()) {
        ecWarning(
            lcTBar, "T-Bar Error: There is a active widget, can not start T-Bar.%s",
            qUtf8Printable(window->objectName));
        return;
    }
    if (m_tbarStart) {
        ecWarning(lcTBar, "T-Bar Error: There is no need to restart T-Bar, as T-Bar is already started.");
        return;
    }
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcTBar, "T-Bar Error: current actived device is nullptr.");
        return;
    }
    if (!hasTakeScreens(device)) {
        ecWarning(lcTBar, "T-Bar Error: there is no screens can execute T-Bar task.");
        return;
    }
    ecDebug(lcTBar, "T-Bar status: started.");
    m_tbarStart = true;
}

void ScreenCommandPrivate::takeTBarProcess(qreal percent)
{
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcTBar, "T-Bar Error: Device is nullptr.");
        return;
    }
    if (device->isTaking()) {
        ecWarning(lcTBar, "T-Bar Error: Please wait for last take finished.");
        return;
    }
    const auto sampling = std::make_shared<TaskSampling::s_TBarSampling>(
        TaskSampling::s_TBarSampling{TBarScreens, percent, device});
    ecDebug(lcTBar, "T-Bar: set progress.%f", percent);
    auto* const thread = TaskSampling::SamplingThread::instance();
    if (thread && thread->setSamplingType(TaskSampling::TBar))
        thread->appendData(sampling);
    else
        ecWarning(lcTBar, "T-Bar Error: sampling failed.");
}

void ScreenCommandPrivate::tbarStop(qreal)
{
    if (m_bLockPanel) {
        ecDebug(lcLock, "The panel is lock.");
        return;
    }
    ecDebug(lcTBar, "T-Bar status: stopped.");
    const auto device = activedDevice();
    if (device && !hasTakeScreens(device))
        ecWarning(lcTBar, "T-Bar Error: there is no screens can stop T-Bar task.");
    m_tbarStart = false;
    m_offTbarLed = true;
}

} // namespace Orvane::ECProxy::Client::Internal
