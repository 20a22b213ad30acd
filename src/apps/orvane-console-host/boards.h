#pragma once

#include <QWidget>

class QLabel;

namespace Orvane::ConsoleHost {

class TileBoard;
struct DevicePicture;

/// Tiles under a title; scrolls when there is no room for all.
class TitledBoard : public QWidget {
    Q_OBJECT

protected:
    explicit TitledBoard(QWidget* parent);

    QLabel& title() { return *m_pTitle; }
    TileBoard& board() { return *m_pBoard; }

private:
    QLabel* const m_pTitle;
    TileBoard* const m_pBoard;
};

/// The inputs with their signal and overload. A click switches an input's signal, a right click its overload.
class InputBoard : public TitledBoard {
    Q_OBJECT

public:
    explicit InputBoard(QWidget* parent = nullptr);

    void showDevice(const DevicePicture& device);

Q_SIGNALS:
    void signalSetSignal(quint32 input, bool on);
    void signalSetOverload(quint32 input, bool on);

private:
    struct Input {
        quint32 id = 0;
        bool hasSignal = false;
        bool isOverloaded = false;
    };

    void press(int index, Qt::MouseButton button);

    QVector<Input> m_inputs;
};

/// The presets by slot, with the active one.
class PresetBoard : public TitledBoard {
    Q_OBJECT

public:
    explicit PresetBoard(QWidget* parent = nullptr);

    void showDevice(const DevicePicture& device);
};

} // namespace Orvane::ConsoleHost
