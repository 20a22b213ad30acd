#include "boards.h"

#include "enumwords_p.h"
#include "modelpicture.h"
#include "mosaicpainter.h"
#include "tileboard.h"

#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace Orvane::ConsoleHost {

namespace {

const QColor EmptyColour(0x24, 0x26, 0x2b);
const QColor OverloadColour(0xff, 0x8c, 0x1a);
const QColor MarkedColour(0xe6, 0xe6, 0xe6);
const QColor StoredColour(0x77, 0x66, 0x1c);
const QColor ActiveColour(0x2c, 0x80, 0x48);
/// So many slots are shown at least.
constexpr int FewestSlots = 24;

Tile tileOf(const InputPicture& input)
{
    Tile tile;
    tile.caption = QStringLiteral("%1  %2").arg(input.id).arg(Internal::wordOf(input.capacity));
    tile.name = input.name;
    tile.mark = input.isOverloaded ? QStringLiteral("OVER")
        : input.hasSignal          ? QString()
                                   : QStringLiteral("no signal");
    tile.ground = input.hasSignal ? colourOfSource(input.id) : EmptyColour;
    if (input.isOverloaded)
        tile.frame = OverloadColour;
    else if (input.isMarked)
        tile.frame = MarkedColour;
    return tile;
}

} // namespace

TitledBoard::TitledBoard(QWidget* parent)
    : QWidget(parent)
    , m_pTitle(new QLabel)
    , m_pBoard(new TileBoard)
{
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(m_pBoard);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->addWidget(m_pTitle);
    rows->addWidget(scroll, 1);
}

InputBoard::InputBoard(QWidget* parent)
    : TitledBoard(parent)
{
    title().setText(QStringLiteral("Inputs"));
    setToolTip(QStringLiteral("Click: signal on or off. Right click: overload."));
    connect(&board(), &TileBoard::signalPressed, this, &InputBoard::press);
}

void InputBoard::showDevice(const DevicePicture& device)
{
    QVector<Tile> tiles;
    m_inputs.clear();
    for (const InputPicture& input : device.inputs) {
        tiles.append(tileOf(input));
        m_inputs.append({input.id, input.hasSignal, input.isOverloaded});
    }
    board().setTiles(tiles);
}

void InputBoard::press(int index, Qt::MouseButton button)
{
    const Input input = m_inputs.value(index);
    if (button == Qt::LeftButton)
        Q_EMIT signalSetSignal(input.id, !input.hasSignal);
    else if (button == Qt::RightButton)
        Q_EMIT signalSetOverload(input.id, !input.isOverloaded);
}

PresetBoard::PresetBoard(QWidget* parent)
    : TitledBoard(parent)
{
}

void PresetBoard::showDevice(const DevicePicture& device)
{
    title().setText(QStringLiteral("Presets   load to %1   mode: %2")
                        .arg(
                            device.loadsToProgram ? QStringLiteral("PGM") : QStringLiteral("PVW"),
                            presetModeNames().value(device.presetMode)));
    const int highest = device.presets.isEmpty() ? 0 : device.presets.last().id;
    QVector<Tile> tiles(std::max(highest, FewestSlots));
    for (int i = 0; i < tiles.size(); ++i) {
        tiles[i].caption = QString::number(i + 1);
        tiles[i].ground = EmptyColour;
    }
    for (const PresetPicture& preset : device.presets) {
        Tile& tile = tiles[preset.id - 1];
        tile.name += (tile.name.isEmpty() ? QString() : QStringLiteral("/")) + preset.name;
        // A slot may hold a preset of each type.
        if (preset.isActive || tile.ground != ActiveColour)
            tile.ground = preset.isActive ? ActiveColour : StoredColour;
        if (preset.type == BizModel::File::FileType::PresetPGM)
            tile.mark = QStringLiteral("PGM");
    }
    board().setTiles(tiles);
}

} // namespace Orvane::ConsoleHost
