#pragma once

#include <QPoint>
#include <QString>

#include <optional>

namespace Orvane::ECProxy::Client::Internal {

/// A modal window as the console's diagnostic lines describe it.
struct ModalWindowInfo {
    QString objectName;
    QPoint pos; ///< position of the window, in pixels
    std::optional<QString> childName; ///< of the child at that position, if there is one
    std::optional<QString> childParentName;
};

/// What the key handlers must know of the application's windows.
///
/// Widgets belong to the GUI thread, keys arrive on the decoder thread, and a handler may not wait for the
/// GUI. So a watcher on the GUI thread publishes what the guards ask, at every window or property event
/// that can change it; on the GUI thread itself the state is read directly. A modal window counts as open
/// from its show event on. All functions may be called on any thread. Without a QApplication there is no
/// modal window.
namespace HostState {

/// Starts watching the application object. Called at every creation of a command manager; further calls do
/// nothing. Off the GUI thread the watching starts with the GUI thread's next turn.
void watch();

/// Whether the caller runs on the application object's thread; false without one.
bool isGuiThread();

/// True while `QApplication::activeModalWidget()` returns a widget.
bool hasModalWindow();

/// The application object's property "Quenor".
bool isQuenor();

/// True when a key must be ignored that its command does not let through: a modal window is open or "Quenor"
/// is set.
bool isInputBlocked();

/// The window that makes `hasModalWindow` true; empty when none is open.
std::optional<ModalWindowInfo> modalWindow();

} // namespace HostState

} // namespace Orvane::ECProxy::Client::Internal
