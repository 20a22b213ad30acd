#pragma once

#include <QByteArray>

#include <functional>
#include <memory>

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}

namespace Orvane::TestSupport {

/// What joins the library to the console of a test, in both directions. Made and ended on the GUI thread.
class ConsoleWire {
public:
    /// Gets a request of the library, on any thread.
    using Receive = std::function<void(const char* bytes, int size)>;

    virtual ~ConsoleWire() = default;
    /// Gives the manager the keyboard, and the console its requests from now on.
    virtual void join(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, Receive receive) = 0;
    /// Brings the library a datagram of the console. Any thread.
    virtual void report(const QByteArray& datagram) = 0;
    /// No report is worked afterwards and no request comes; the manager goes.
    virtual void end() = 0;
};

/// Without sockets: straight into a decoder, and back by a send route.
std::unique_ptr<ConsoleWire> makeDirectWire();

} // namespace Orvane::TestSupport
