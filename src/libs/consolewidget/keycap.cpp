#include "keycap.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTouchEvent>

#include <algorithm>
#include <cmath>

namespace Orvane::ConsolePanel {

namespace {

constexpr double LabelShare = 0.52; // of a key's height
constexpr double Corner = 4;
constexpr double TextMargin = 2;
constexpr double SmallestText = 7; // pixels
const QColor UnlitCap(0x15, 0x16, 0x18);
const QColor CapEdge(0x50, 0x54, 0x5c);
const QColor DisplayGround(0x03, 0x05, 0x08);
const QColor DisplayText(0xd6, 0xec, 0xff);
const QColor UnlitCaption(0x9a, 0xa0, 0xa8);

/// A light of twice the power does not look twice as bright: an eye sees the dim grey of `Off` well.
int seen(int value, int percent)
{
    constexpr double gamma = 1 / 2.2;
    return qRound(255 * std::pow(value * percent / 25500.0, gamma));
}

/// Writes the text as large as it fits, in several lines where that helps.
void drawFitting(QPainter& painter, const QRectF& area, double largest, const QString& text)
{
    constexpr int flags = Qt::AlignCenter | Qt::TextWrapAnywhere;
    constexpr int wordFlags = Qt::AlignCenter | Qt::TextWordWrap;
    QFont font = painter.font();
    for (double size = largest; size >= SmallestText; size -= 1) {
        font.setPixelSize(int(size));
        const QRectF needed = QFontMetricsF(font).boundingRect(area, wordFlags, text);
        if (needed.width() > area.width() || needed.height() > area.height())
            continue;
        painter.setFont(font);
        painter.drawText(area, wordFlags, text);
        return;
    }
    font.setPixelSize(int(SmallestText));
    painter.setFont(font);
    painter.drawText(area, flags, text);
}

} // namespace

KeyCap::KeyCap(const ConsoleLayout::Key& key, const QString& caption, QWidget* parent)
    : QWidget(parent)
    , m_key(key)
    , m_strCaption(caption)
{
    setObjectName(QStringLiteral("key%1").arg(key.number));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_AcceptTouchEvents); // several fingers: each key gets its own
}

void KeyCap::setHand(Hand hand, bool isOn)
{
    const bool wasDown = isDown();
    m_nHands = isOn ? m_nHands | hand : m_nHands & ~hand;
    if (wasDown == isDown())
        return;
    update();
    Q_EMIT signalMoved(isDown());
}

void KeyCap::letGo()
{
    for (const Hand hand : {Mouse, Finger, Keyboard})
        setHand(hand, false);
}

void KeyCap::setLight(const KeyState& state, bool isFlashingOn)
{
    const bool isOn = state.isLit && (state.buttonState != Protocol::Flashing || isFlashingOn);
    const int percent = std::min<int>(state.brightness, 100);
    const QColor light = isOn ? QColor(
                             seen(state.colour.red, percent), seen(state.colour.green, percent),
                             seen(state.colour.blue, percent))
                              : QColor();
    if (light == m_light)
        return;
    m_light = light;
    update();
}

void KeyCap::setLabel(const QByteArray& text)
{
    // A character that was cut in half at the end of the 32 bytes is shown as such, as on the console.
    const QString shown = QString::fromUtf8(text);
    if (shown == m_strLabel)
        return;
    m_strLabel = shown;
    update();
}

void KeyCap::setLuminance(int percent)
{
    if (percent == m_nLuminance)
        return;
    m_nLuminance = percent;
    update();
}

bool KeyCap::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
        setHand(Finger, true);
        return true;
    case QEvent::TouchUpdate:
        return true;
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        setHand(Finger, false);
        return true;
    default:
        return QWidget::event(event);
    }
}

void KeyCap::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setHand(Mouse, true);
}

void KeyCap::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setHand(Mouse, false);
}

void KeyCap::hideEvent(QHideEvent*)
{
    letGo(); // no release would come any more
}

void KeyCap::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF area = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (m_key.label) {
        QRectF display = area;
        display.setHeight(area.height() * LabelShare);
        paintLabel(painter, display);
        area.setTop(display.bottom() + 1);
    }
    paintCap(painter, area);
}

void KeyCap::paintLabel(QPainter& painter, const QRectF& area) const
{
    painter.fillRect(area, DisplayGround);
    QColor text = DisplayText;
    constexpr double faintest = 0.25; // so that it can be read whatever the luminance
    text.setAlphaF(faintest + (1 - faintest) * std::min(m_nLuminance, 100) / 100.0);
    painter.setPen(text);
    drawFitting(
        painter, area.adjusted(TextMargin, 0, -TextMargin, 0), std::max(SmallestText, area.height() * 0.52),
        m_strLabel);
}

void KeyCap::paintCap(QPainter& painter, const QRectF& area) const
{
    QRadialGradient glow(area.center(), std::max(area.width(), area.height()) * 0.7);
    glow.setColorAt(0, m_light.isValid() ? m_light : UnlitCap);
    glow.setColorAt(1, m_light.isValid() ? m_light.darker(150) : UnlitCap);
    painter.setBrush(glow);
    painter.setPen(QPen(isDown() ? QColor(Qt::white) : CapEdge, isDown() ? 2.5 : 1));
    painter.drawRoundedRect(area.adjusted(1, 1, -1, -1), Corner, Corner);
    const bool isBright = m_light.isValid() && qGray(m_light.rgb()) > 120;
    painter.setPen(m_light.isValid() ? QColor(isBright ? Qt::black : Qt::white) : UnlitCaption);
    drawFitting(
        painter, area.adjusted(TextMargin + 1, 0, -TextMargin - 1, 0),
        std::min(area.height() * 0.62, std::max(10.0, area.height() * 0.3 + 4)), m_strCaption);
}

} // namespace Orvane::ConsolePanel
