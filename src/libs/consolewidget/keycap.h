#pragma once

#include "consolelayout.h"

#include <QColor>
#include <QFont>
#include <QWidget>

namespace Orvane::ConsolePanel {

/// A key of the console with the label above it. It is down while a hand is on it: the mouse, a finger, or a
/// key of the keyboard.
class KeyCap : public QWidget {
    Q_OBJECT

public:
    enum Hand { Mouse = 1, Finger = 2, Keyboard = 4 };

    /// @param caption engraved on the key
    KeyCap(const ConsoleLayout::Key& key, const QString& caption, QWidget* parent = nullptr);

    const ConsoleLayout::Key& key() const { return m_key; }
    bool isDown() const { return m_nHands != 0; }
    void setHand(Hand hand, bool isOn);
    /// Takes every hand off the key.
    void letGo();

    /// What the light shows; `isFlashingOn` is the present half of the flashing.
    void setLight(const KeyState& state, bool isFlashingOn);
    void setLabel(const QByteArray& text);
    /// Brightness of the label's display, in per cent.
    void setLuminance(int percent);

    QColor shownColor() const { return m_light; }
    QString shownLabel() const { return m_strLabel; }

    QSize sizeHint() const override { return {72, 64}; }
    QSize minimumSizeHint() const override { return {30, 24}; }

Q_SIGNALS:
    /// The first hand was put on the key, or the last one taken off.
    void signalMoved(bool isDown);

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintLabel(QPainter& painter, const QRectF& area) const;
    void paintCap(QPainter& painter, const QRectF& area) const;

    const ConsoleLayout::Key m_key;
    const QString m_strCaption;
    int m_nHands = 0;
    QColor m_light; ///< invalid: dark
    QString m_strLabel;
    int m_nLuminance = 100;
};

} // namespace Orvane::ConsolePanel
