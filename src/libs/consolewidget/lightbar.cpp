#include "lightbar.h"

#include <QPainter>

namespace Orvane::ConsolePanel {

namespace {
constexpr int Segments = 12;
const QColor LitColor(0x4c, 0xe0, 0x7a);
const QColor DarkColor(0x2b, 0x2e, 0x33);
} // namespace

LightBar::LightBar(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

void LightBar::setLevel(int level, bool fromBottom)
{
    if (level == m_nLevel && fromBottom == m_bFromBottom)
        return;
    m_nLevel = level;
    m_bFromBottom = fromBottom;
    update();
}

void LightBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const double step = double(height()) / Segments;
    for (int i = 0; i < Segments; ++i) {
        const int fromTop = m_bFromBottom ? Segments - 1 - i : i;
        const QRectF segment(0, fromTop * step + 1, width(), step - 2);
        painter.fillRect(segment, i < m_nLevel ? LitColor : DarkColor);
    }
}

} // namespace Orvane::ConsolePanel
