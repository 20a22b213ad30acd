#include "tileboard.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace Orvane::ConsoleHost {

namespace {

constexpr int Gap = 3;
constexpr int Padding = 4;
/// So much of a name can be read at least.
constexpr int NameCharacters = 13;
constexpr double CaptionSize = 0.75; // of the name's
const QColor CaptionColour(255, 255, 255, 150);

QFont captionFont(const QFont& nameFont)
{
    QFont caption = nameFont;
    caption.setPointSizeF(nameFont.pointSizeF() * CaptionSize);
    return caption;
}

} // namespace

TileBoard::TileBoard(QWidget* parent)
    : QWidget(parent)
{
    updateHeight();
}

void TileBoard::setTiles(const QVector<Tile>& tiles)
{
    m_tiles = tiles;
    updateHeight();
    update();
}

QSize TileBoard::smallestTile() const
{
    const QFontMetrics name(font());
    return {
        name.averageCharWidth() * NameCharacters + 2 * Padding,
        QFontMetrics(captionFont(font())).height() + name.height() + Padding};
}

int TileBoard::columns() const
{
    return std::max(1, (width() + Gap) / (smallestTile().width() + Gap));
}

QRect TileBoard::place(int index) const
{
    const int tileWidth = (width() + Gap) / columns() - Gap;
    const int tileHeight = smallestTile().height();
    return {
        index % columns() * (tileWidth + Gap), index / columns() * (tileHeight + Gap), tileWidth, tileHeight};
}

void TileBoard::updateHeight()
{
    const int rows = std::max(1, (m_tiles.size() + columns() - 1) / columns());
    setMinimumHeight(rows * (smallestTile().height() + Gap) - Gap);
}

void TileBoard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QFont caption = captionFont(font());
    for (int i = 0; i < m_tiles.size(); ++i) {
        const Tile& tile = m_tiles.at(i);
        const QRect area = place(i);
        painter.fillRect(area, tile.ground);
        if (tile.frame.isValid()) {
            painter.setPen(QPen(tile.frame, 2));
            painter.drawRect(area.adjusted(1, 1, -1, -1));
        }
        const QRect text = area.adjusted(Padding, Padding / 2, -Padding, -Padding / 2);
        painter.setFont(caption);
        painter.setPen(CaptionColour);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignTop, tile.caption);
        painter.setPen(tile.frame.isValid() ? tile.frame : CaptionColour);
        painter.drawText(text, Qt::AlignRight | Qt::AlignTop, tile.mark);
        painter.setFont(font());
        painter.setPen(Qt::white);
        const QString name = painter.fontMetrics().elidedText(tile.name, Qt::ElideRight, text.width());
        painter.drawText(text, Qt::AlignLeft | Qt::AlignBottom, name);
    }
}

void TileBoard::mousePressEvent(QMouseEvent* event)
{
    for (int i = 0; i < m_tiles.size(); ++i) {
        if (place(i).contains(event->pos()))
            Q_EMIT signalPressed(i, event->button());
    }
}

void TileBoard::resizeEvent(QResizeEvent*)
{
    updateHeight();
}

} // namespace Orvane::ConsoleHost
