#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <map>
#include <mutex>

namespace Orvane::ConsoleHost {

/// Which of the console's monitor inputs carry a signal, as the console reported last. The library tells it
/// for one input at a time, and asks the console for it then. Any thread may call it.
class DviSignals {
public:
    /// Looks at every report from now on, on its way from the decoder to the manager. Once, when the link is
    /// open; the object outlives the link.
    void watch();

    /// `"0": true` for each input.
    QJsonObject toJson() const;

private:
    void takeReport(const QByteArray& value);

    // Guards m_signals: reports come on the decoder's thread, commands ask on the GUI thread.
    mutable std::mutex m_mutex;
    std::map<quint8, bool> m_signals;
};

} // namespace Orvane::ConsoleHost
