#include "mosaicpainter.h"

#include <QPainter>

#include <algorithm>

namespace Orvane::ConsoleHost {

namespace {

/// What a screen without outputs is drawn as, in pixels.
constexpr QRectF EmptyMosaic(0, 0, 1920, 1080);
constexpr qreal ProgressHeight = 5;
const QColor SelectedLayerColour(0xf2, 0xc5, 0x3d);
const QColor OutputColour(255, 255, 255, 110);

/// What of a screen's mosaic is drawn.
QRectF mosaicOf(const ScreenPicture& screen)
{
    return screen.mosaic.isEmpty() ? EmptyMosaic : screen.mosaic;
}

} // namespace

QColor colourOfSource(quint32 sourceId)
{
    constexpr quint32 hueStep = 137; // far apart for neighbours
    constexpr quint32 hues = 360;
    return sourceId == 0 ? QColor(0x55, 0x55, 0x55)
                         : QColor::fromHsv(int(sourceId % hues * hueStep % hues), 130, 150);
}

QSizeF MosaicPainter::fittingSize(const ScreenPicture& screen, const QSizeF& room)
{
    return mosaicOf(screen).size().scaled(room, Qt::KeepAspectRatio);
}

MosaicPainter::MosaicPainter(QPainter& painter, const ScreenPicture& screen, const QRectF& area)
    : m_painter(painter)
    , m_picture(area.topLeft(), fittingSize(screen, area.size()))
{
    const QRectF mosaic = mosaicOf(screen);
    const qreal scale = m_picture.width() / mosaic.width();
    m_toPicture.translate(m_picture.x(), m_picture.y());
    m_toPicture.scale(scale, scale);
    m_toPicture.translate(-mosaic.x(), -mosaic.y());
}

void MosaicPainter::paintGround()
{
    m_painter.fillRect(m_picture, Qt::black);
}

void MosaicPainter::paintLayers(const QList<LayerPicture>& layers, double strength)
{
    m_painter.save();
    m_painter.setClipRect(m_picture);
    m_painter.setOpacity(strength);
    for (const LayerPicture& layer : layers)
        paintLayer(layer);
    m_painter.restore();
}

void MosaicPainter::paintLayer(const LayerPicture& layer)
{
    const QRectF window = m_toPicture.mapRect(layer.window);
    m_painter.fillRect(window, colourOfSource(layer.sourceId));
    m_painter.setBrush(Qt::NoBrush);
    m_painter.setPen(layer.isSelected ? QPen(SelectedLayerColour, 2) : QPen(QColor(0, 0, 0, 120), 1));
    m_painter.drawRect(window.adjusted(1, 1, -1, -1));

    const QRectF text = window.adjusted(6, 4, -6, -4);
    const QFontMetricsF metrics(m_painter.font());
    const auto elided = [&](const QString& line) {
        return metrics.elidedText(line, Qt::ElideRight, std::max(0.0, text.width()));
    };
    m_painter.setPen(Qt::white);
    m_painter.drawText(
        text, Qt::AlignLeft | Qt::AlignTop,
        elided(layer.sourceName.isEmpty() ? QStringLiteral("no source") : layer.sourceName));
    m_painter.setPen(QColor(255, 255, 255, 160));
    if (text.height() >= 2 * metrics.height())
        m_painter.drawText(text, Qt::AlignRight | Qt::AlignBottom, elided(layer.name));
}

void MosaicPainter::paintOutputs(const QList<QRectF>& outputs)
{
    m_painter.setBrush(Qt::NoBrush);
    m_painter.setPen(QPen(OutputColour, 1, Qt::DashLine));
    for (const QRectF& output : outputs)
        m_painter.drawRect(m_toPicture.mapRect(output));
    if (!outputs.isEmpty())
        return;
    m_painter.setPen(OutputColour);
    m_painter.drawText(m_picture, Qt::AlignCenter, QStringLiteral("no output"));
}

void MosaicPainter::paintCurtain(const QString& word)
{
    m_painter.fillRect(m_picture, QColor(0, 0, 0, 215));
    m_painter.setPen(Qt::white);
    m_painter.drawText(m_picture, Qt::AlignCenter, word);
}

void MosaicPainter::paintFrame(const QColor& colour, const QString& caption)
{
    m_painter.setBrush(Qt::NoBrush);
    m_painter.setPen(QPen(colour, 2));
    m_painter.drawRect(m_picture);
    const qreal width = m_painter.fontMetrics().horizontalAdvance(caption) + 10;
    const qreal height = m_painter.fontMetrics().height() + 2;
    const QRectF tag(m_picture.left(), m_picture.bottom() - height, width, height);
    m_painter.fillRect(tag, colour);
    m_painter.setPen(Qt::black);
    m_painter.drawText(tag, Qt::AlignCenter, caption);
}

void MosaicPainter::paintProgress(double progress, const QColor& colour)
{
    const QRectF bar(
        m_picture.left(), m_picture.bottom() - ProgressHeight, m_picture.width() * progress, ProgressHeight);
    m_painter.fillRect(bar, colour);
}

} // namespace Orvane::ConsoleHost
