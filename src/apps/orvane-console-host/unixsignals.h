#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace Orvane::ConsoleHost {

/// Turns an interrupt or a termination request into an orderly end, and keeps a reader that has gone away
/// from ending the process. Exists at most once.
class UnixSignals : public QObject {
    Q_OBJECT

public:
    explicit UnixSignals(QObject* parent = nullptr);
    ~UnixSignals() override;

Q_SIGNALS:
    void signalTerminate();

private:
    int m_pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> m_pNotifier;
};

} // namespace Orvane::ConsoleHost
