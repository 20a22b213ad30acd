#pragma once

#include "condition.h"
#include "upmessage.h"

#include <chrono>

namespace Orvane::ConsolePanel {

/// Sends one report.
struct SendReport {
    UpMessage message;
};

/// Sends these bytes as they are.
struct SendRaw {
    QByteArray bytes;
};

/// Presses a key, waits and releases it.
struct TapKey {
    quint32 key = 0;
    std::chrono::milliseconds duration{};
};

/// Moves the T-Bar at even speed, one report a position, both ends included.
struct SweepTBar {
    quint32 from = 0;
    quint32 to = 0;
    quint8 direction = Protocol::BottomToTop;
    std::chrono::milliseconds duration{};
};

/// Presses and releases the keys in turn, `count` times in all.
struct StormKeys {
    std::vector<quint32> keys;
    quint64 count = 0;
    quint64 perSecond = 0; ///< presses; 0: as fast as the machine sends
    quint64 window = 0; ///< most reports without an LED datagram in answer; 0: waits for no answer
};

struct Pause {
    std::chrono::milliseconds duration{};
};

/// Waits for a condition, or watches that it stays.
struct Expect {
    enum Kind { Within, For };
    Condition condition;
    bool isNegated = false;
    Kind kind = Within;
    std::chrono::milliseconds duration{};
};

/// Sets how often one fault of the wire happens, or lets it happen once.
struct SetFault {
    enum Kind { Drop, Duplicate, Delay, Reorder, LoseRelease };
    Kind kind = Drop;
    int rate = 0; ///< per cent
    std::chrono::milliseconds delay{};
};
struct ClearFaults { };
struct SeedFaults {
    quint32 seed = 1;
};

/// The console starts anew: all lights dark, all labels empty.
struct RestartConsole { };

/// Writes every datagram of both directions to a file from now on.
struct StartCapture {
    QString file;
};
struct StopCapture { };

/// Plays the console's side of a capture and compares the console with what was recorded.
struct PlayCapture {
    static constexpr double SlowestSpeed = 0.01;
    static constexpr double HighestSpeed = 1000;

    QString file;
    double speed = 1; ///< so many times as fast as it was recorded
    bool isStepped = false; ///< opened only; `StepCapture` plays it
};
/// Plays the next reports of the capture that was opened for it.
struct StepCapture {
    quint64 count = 1;
};

/// Writes a picture of the window.
struct TakePicture {
    QString file;
};

struct ShowConsole { };
struct ShowHelp { };
struct Quit { };

using SimulatorCommand = std::variant<
    SendReport, SendRaw, TapKey, SweepTBar, StormKeys, Pause, Expect, SetFault, ClearFaults, SeedFaults,
    RestartConsole, StartCapture, StopCapture, PlayCapture, StepCapture, TakePicture, ShowConsole, ShowHelp,
    Quit>;

} // namespace Orvane::ConsolePanel
