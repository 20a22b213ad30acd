#pragma once

#include "orvaneecclientchannelmanager.h"

#include <QString>

#include <memory>

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}

namespace Orvane::ConsoleHost {

/// The console at work, from the constructor to the destructor. Its source is the order in which an
/// application starts the library and ends it; everything else of this program is the application.
///
/// Before it, on the GUI thread: the application object, the model (a `BizModel::DeviceList` that has to
/// outlive the session), and connections to the signals of `ECManager::instance()`.
class ConsoleSession {
public:
    explicit ConsoleSession(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard);
    ~ConsoleSession();

private:
    Q_DISABLE_COPY_MOVE(ConsoleSession)

    ECProxy::Client::ECClientChannelManager m_channel;
};

/// Why the console's reports would not reach this process, in words for the user; empty when they would.
/// The library shares its port, so it does not notice another owner itself.
QString reportPortProblem();

} // namespace Orvane::ConsoleHost
