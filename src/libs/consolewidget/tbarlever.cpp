#include "tbarlever.h"

#include <algorithm>

namespace Orvane::ConsolePanel {

namespace {
constexpr int Bottom = 1;
constexpr int Top = 64;
constexpr int WheelStep = 4;
} // namespace

TBarLever::TBarLever(QWidget* parent)
    : QSlider(Qt::Vertical, parent)
    , m_nReported(Bottom)
{
    setObjectName(QStringLiteral("tbar"));
    setRange(Bottom, Top);
    setPageStep(WheelStep);
    setFocusPolicy(Qt::NoFocus); // the keyboard is the console's keys'
    setToolTip(QStringLiteral("T-Bar: drag it, or turn the wheel"));
    connect(this, &QSlider::valueChanged, this, &TBarLever::reportTo);
}

void TBarLever::setHandleSize(int size)
{
    setFixedWidth(size * 2);
    setStyleSheet(QStringLiteral("QSlider::groove:vertical { background: #101114; width: %1px; }"
                                 "QSlider::handle:vertical { background: #b9bec7; height: %2px;"
                                 " margin: 0 -%1px; border-radius: 2px; }")
                      .arg(size / 2)
                      .arg(size));
}

void TBarLever::reportTo(int position)
{
    const int step = position > m_nReported ? 1 : -1;
    while (m_nReported != position) {
        m_nReported += step;
        Q_EMIT signalMoved(quint32(m_nReported), m_nDirection);
        arrive(m_nReported);
    }
}

/// From an end on, the lever moves towards the other.
void TBarLever::arrive(int position)
{
    if (position == Bottom)
        m_nDirection = Protocol::BottomToTop;
    else if (position == Top)
        m_nDirection = Protocol::TopToBottom;
}

void TBarLever::showPosition(quint32 position)
{
    if (isSliderDown())
        return; // a hand is on it
    m_nReported = int(std::clamp<quint32>(position, Bottom, Top));
    arrive(m_nReported);
    setValue(m_nReported); // reports nothing: it is there already
}

} // namespace Orvane::ConsolePanel
