#pragma once

#include "modelpicture.h"

#include <QWidget>

namespace Orvane::ConsoleHost {

/// One screen: its preview and its program, side by side or one above the other, with the outputs as frames
/// and the layers as labelled rectangles, and above them what the screen is doing. A running transition is
/// shown in the program as it mixes.
class ScreenPanel : public QWidget {
    Q_OBJECT

public:
    explicit ScreenPanel(QWidget* parent = nullptr);

    void setPicture(const ScreenPicture& picture);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintHeader(QPainter& painter, const QRectF& row) const;
    void paintPreview(QPainter& painter, const QRectF& area) const;
    void paintProgram(QPainter& painter, const QRectF& area) const;

    ScreenPicture m_picture;
};

} // namespace Orvane::ConsoleHost
