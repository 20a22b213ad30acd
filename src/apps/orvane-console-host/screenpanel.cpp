#include "screenpanel.h"

#include "mosaicpainter.h"

#include <QPainter>

namespace Orvane::ConsoleHost {

using State = BizModel::Screen::State;

namespace {

constexpr int Margin = 8;
constexpr int HeaderHeight = 22;
constexpr QSize PreferredSize(480, 180);
constexpr QSize SmallestSize(280, 110);

const QColor PanelColour(0x2a, 0x2d, 0x33);
const QColor ActiveColour(0x3c, 0x43, 0x50);
const QColor TextColour(0xe6, 0xe6, 0xe6);
const QColor FaintColour(0x9a, 0xa0, 0xa9);
const QColor UnselectedColour(0x55, 0x55, 0x55);
const QColor PreviewColour(0x35, 0xb0, 0x5c);
const QColor ProgramColour(0xe0, 0x4f, 0x4f);
const QColor FreezeColour(0x5a, 0xb4, 0xe8);
const QColor TransitionColour(0xf2, 0x9b, 0x3d);

/// A short word on a coloured ground at the right end of a row; answers where the next one ends.
qreal paintBadge(QPainter& painter, const QRectF& row, qreal right, const QString& text, const QColor& colour)
{
    constexpr qreal padding = 6;
    constexpr qreal gap = 5;
    const qreal width = painter.fontMetrics().horizontalAdvance(text) + 2 * padding;
    const QRectF badge(right - width, row.y() + 2, width, row.height() - 4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(badge, 3, 3);
    painter.setPen(Qt::black);
    painter.drawText(badge, Qt::AlignCenter, text);
    return badge.left() - gap;
}

QString stateWord(State state)
{
    switch (state) {
    case State::Normal:
        return {};
    case State::Taking:
        return QStringLiteral("TAKE");
    case State::Resource_out:
        return QStringLiteral("NO RESOURCES");
    case State::Tbar_taking:
        return QStringLiteral("T-BAR");
    case State::Cut:
        return QStringLiteral("CUT");
    case State::MatchingPGM:
        return QStringLiteral("MATCH");
    }
    return {};
}

} // namespace

ScreenPanel::ScreenPanel(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ScreenPanel::setPicture(const ScreenPicture& picture)
{
    m_picture = picture;
    update();
}

QSize ScreenPanel::sizeHint() const
{
    return PreferredSize;
}

QSize ScreenPanel::minimumSizeHint() const
{
    return SmallestSize;
}

void ScreenPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), m_picture.isActive ? ActiveColour : PanelColour);

    const QRectF inner = QRectF(rect()).adjusted(Margin, Margin / 2.0, -Margin, -Margin);
    paintHeader(painter, QRectF(inner.topLeft(), QSizeF(inner.width(), HeaderHeight)));
    const QRectF room = inner.adjusted(0, HeaderHeight + 2, 0, 0);
    const QSizeF half((room.width() - Margin) / 2, room.height());
    const QSizeF flat(room.width(), (room.height() - Margin) / 2);
    const bool isWide = MosaicPainter::fittingSize(m_picture, flat).width()
        > MosaicPainter::fittingSize(m_picture, half).width();
    const QRectF first(room.topLeft(), isWide ? flat : half);
    paintPreview(painter, first);
    paintProgram(
        painter,
        isWide ? first.translated(0, flat.height() + Margin) : first.translated(half.width() + Margin, 0));
}

void ScreenPanel::paintHeader(QPainter& painter, const QRectF& row) const
{
    qreal right = row.right();
    const QString state = stateWord(m_picture.state);
    if (!state.isEmpty())
        right = paintBadge(painter, row, right, state, TransitionColour);
    if (m_picture.isFrozen)
        right = paintBadge(painter, row, right, QStringLiteral("FREEZE"), FreezeColour);
    if (m_picture.isProgramEdited)
        right = paintBadge(painter, row, right, QStringLiteral("PGM EDIT"), ProgramColour);

    const qreal radius = row.height() / 4;
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_picture.isSelected ? PreviewColour : UnselectedColour);
    painter.drawEllipse(QPointF(row.x() + radius, row.center().y()), radius, radius);

    QRectF text = row;
    text.setLeft(row.x() + 4 * radius);
    text.setRight(right);
    painter.setPen(TextColour);
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft, m_picture.name);
    text.setLeft(text.left() + painter.fontMetrics().horizontalAdvance(m_picture.name) + 12);
    painter.setPen(FaintColour);
    painter.drawText(
        text, Qt::AlignVCenter | Qt::AlignLeft,
        QStringLiteral("%1   %2 s").arg(screenName(m_picture.key)).arg(m_picture.effectSeconds, 0, 'f', 1));
}

void ScreenPanel::paintPreview(QPainter& painter, const QRectF& area) const
{
    MosaicPainter scene(painter, m_picture, area);
    scene.paintGround();
    scene.paintLayers(m_picture.preview);
    scene.paintOutputs(m_picture.outputs);
    scene.paintFrame(PreviewColour, QStringLiteral("PVW"));
}

void ScreenPanel::paintProgram(QPainter& painter, const QRectF& area) const
{
    MosaicPainter scene(painter, m_picture, area);
    scene.paintGround();
    scene.paintLayers(m_picture.program, 1.0 - m_picture.progress);
    if (m_picture.progress > 0)
        scene.paintLayers(m_picture.preview, m_picture.progress);
    scene.paintOutputs(m_picture.outputs);
    if (m_picture.isFadedToBlack)
        scene.paintCurtain(QStringLiteral("FTB"));
    scene.paintFrame(m_picture.isFrozen ? FreezeColour : ProgramColour, QStringLiteral("PGM"));
    scene.paintProgress(m_picture.progress, TransitionColour);
}

} // namespace Orvane::ConsoleHost
