#pragma once

#include <QColor>
#include <QString>
#include <QVector>
#include <QWidget>

namespace Orvane::ConsoleHost {

/// Something small with a name on a coloured ground.
struct Tile {
    QString caption; ///< small, above the name
    QString name;
    QString mark; ///< beside the caption
    QColor ground;
    QColor frame; ///< none when it is not valid
};

/// Tiles in rows, as many in a row as fit.
class TileBoard : public QWidget {
    Q_OBJECT

public:
    explicit TileBoard(QWidget* parent = nullptr);

    void setTiles(const QVector<Tile>& tiles);

Q_SIGNALS:
    void signalPressed(int index, Qt::MouseButton button);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QSize smallestTile() const;
    int columns() const;
    QRect place(int index) const;
    void updateHeight();

    QVector<Tile> m_tiles;
};

} // namespace Orvane::ConsoleHost
