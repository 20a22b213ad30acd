#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace Orvane::ConsolePanel {

/// Turns any number of changes into one signal a frame, 60 times a second at most, so that a burst of
/// datagrams costs no more than a few. On the thread that made it.
class FrameCoalescer : public QObject {
    Q_OBJECT

public:
    explicit FrameCoalescer(QObject* parent = nullptr);

    /// Something has changed: a frame will come.
    void noteChange();
    /// Longest time from the first change to its frame so far.
    std::chrono::milliseconds longestWait() const { return m_longestWait; }

Q_SIGNALS:
    void signalFrame();

private:
    void finishFrame();

    QTimer m_timer;
    QElapsedTimer m_sinceChange;
    std::chrono::milliseconds m_longestWait{0};
};

} // namespace Orvane::ConsolePanel
