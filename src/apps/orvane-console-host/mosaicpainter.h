#pragma once

#include "modelpicture.h"

#include <QColor>
#include <QTransform>

class QPainter;

namespace Orvane::ConsoleHost {

/// One source has one colour, wherever it is shown.
QColor colourOfSource(quint32 sourceId);

/// Paints one scene of a screen: its mosaic, scaled to fit into the upper left of an area.
class MosaicPainter {
public:
    /// How large the mosaic is drawn in an area of that size.
    static QSizeF fittingSize(const ScreenPicture& screen, const QSizeF& room);

    MosaicPainter(QPainter& painter, const ScreenPicture& screen, const QRectF& area);

    void paintGround();
    /// @param strength 0.0 leaves out, 1.0 covers what is there
    void paintLayers(const QList<LayerPicture>& layers, double strength = 1.0);
    void paintOutputs(const QList<QRectF>& outputs);
    /// Darkens everything and writes a word over it.
    void paintCurtain(const QString& word);
    void paintFrame(const QColor& colour, const QString& caption);
    /// How far a transition has come, along the lower edge.
    void paintProgress(double progress, const QColor& colour);

private:
    void paintLayer(const LayerPicture& layer);

    QPainter& m_painter;
    const QRectF m_picture;
    QTransform m_toPicture;
};

} // namespace Orvane::ConsoleHost
