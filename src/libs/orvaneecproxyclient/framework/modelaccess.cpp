#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/screen.h"

namespace Orvane::ECProxy::Client::Internal {

DevicePtr activedDevice()
{
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    return devices ? devices->activedDevice().lock() : nullptr;
}

ScreenPtr activedScreen()
{
    const auto device = activedDevice();
    return device ? device->activedScreen().lock() : nullptr;
}

void showStatusBarMsg(BizModel::StatusBarMsgType type, const QString& text)
{
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        Q_EMIT devices->signalShowStatusBarMsg(type, text, int(StatusBarMsgDuration.count()));
}

void showWaitingDialog(const QString& text)
{
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        Q_EMIT devices->signalShowWaitingDialog(text);
}

void hideWaitingDialog()
{
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        Q_EMIT devices->signalHideWaitingDialog();
}

void showFramelessMessageBox(BizModel::FramelessMessageBoxMsgType type, const QString& text)
{
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        Q_EMIT devices->signalShowFramelessMessageBoxMsg(type, text);
}

bool isUpgrading()
{
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    if (!devices)
        return false;
    if (devices->isCompatibleUpgrading())
        return true;
    const auto device = devices->activedDevice().lock();
    return device && device->isDeviceUpgrading();
}

} // namespace Orvane::ECProxy::Client::Internal
