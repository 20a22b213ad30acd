#pragma once

#include "modelpointers.h"

#include "bizmodel/enums.h"

#include <QString>

#include <chrono>
#include <memory>

/// The few steps into the application's model that every command takes: none of them fails when the
/// application has no device list (yet), and all may be called on any thread.
namespace Orvane::ECProxy::Client::Internal {

/// The active device, empty when there is none.
DevicePtr activedDevice();

/// The active device's active screen, empty when there is none.
ScreenPtr activedScreen();

// What the user must see. Dropped when the application has no device list.

/// A status-bar message, shown for `StatusBarMsgDuration`.
void showStatusBarMsg(BizModel::StatusBarMsgType type, const QString& text);
void showWaitingDialog(const QString& text);
void hideWaitingDialog();
void showFramelessMessageBox(BizModel::FramelessMessageBoxMsgType type, const QString& text);

constexpr std::chrono::milliseconds StatusBarMsgDuration{3000};

/// True while the active device or the whole system is being upgraded, when the console must not act.
bool isUpgrading();

} // namespace Orvane::ECProxy::Client::Internal
