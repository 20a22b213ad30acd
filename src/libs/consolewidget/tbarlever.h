#pragma once

#include "upmessage.h"

#include <QSlider>

namespace Orvane::ConsolePanel {

/// The T-Bar's lever. It reports every position that it passes, as a hand moves it; the direction is that of
/// the end where the movement began.
class TBarLever : public QSlider {
    Q_OBJECT

public:
    explicit TBarLever(QWidget* parent = nullptr);

    /// How tall the handle is, in pixels.
    void setHandleSize(int size);
    /// Somebody else has moved the lever.
    void showPosition(quint32 position);

Q_SIGNALS:
    /// @param position 1 at the bottom, 64 at the top
    /// @param direction `BottomToTop` or `TopToBottom`
    void signalMoved(quint32 position, quint8 direction);

private:
    void reportTo(int position);
    void arrive(int position);

    int m_nReported;
    quint8 m_nDirection = Protocol::BottomToTop;
};

} // namespace Orvane::ConsolePanel
