#include "commandparser.h"

#include "capturefile.h"
#include "faultywire.h"
#include "words.h"

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds DefaultTapDuration{50};
/// An expectation without a time of its own waits this long.
constexpr milliseconds DefaultExpectation{1000};

SimulatorCommand report(UpMessage message)
{
    SendReport command;
    command.message = std::move(message);
    return command;
}

/// `tap KEY [MS]`, `hold KEY MS`
template <bool isHeld> SimulatorCommand parseTap(WordReader& in)
{
    TapKey tap{quint32(in.number("KEY")), DefaultTapDuration};
    if (isHeld || !in.atEnd())
        tap.duration = in.milliseconds("MS");
    return tap;
}

quint8 parseDirection(WordReader& in)
{
    const int choice = in.choice("DIRECTION", {QStringLiteral("up"), QStringLiteral("down")});
    return choice == 1 ? TopToBottom : BottomToTop;
}

SimulatorCommand parseTBar(WordReader& in)
{
    ECTBarValue position;
    position.Value = quint32(in.number("POSITION"));
    position.IsBottomToTop = parseDirection(in);
    return report(position);
}

SimulatorCommand parseSweep(WordReader& in)
{
    constexpr quint64 HighestPosition = 0xFFFF; // each position between is one report
    SweepTBar sweep;
    sweep.from = quint32(in.number("FROM", HighestPosition));
    sweep.to = quint32(in.number("TO", HighestPosition));
    sweep.direction = parseDirection(in);
    sweep.duration = in.milliseconds("MS");
    return sweep;
}

SimulatorCommand parseDvi(WordReader& in)
{
    constexpr std::size_t MostRecords = 1000; // far below what fits a datagram
    DviReport inputs;
    while (!in.atEnd() && !in.hasFailed()) {
        const auto input = quint8(in.number("INPUT", 255));
        inputs.signalStates.push_back({input, quint8(in.number("SIGNAL", 255))});
        if (inputs.signalStates.size() > MostRecords)
            in.fail(QStringLiteral("too many inputs"));
    }
    return report(inputs);
}

SimulatorCommand parseConsoleIP(WordReader& in)
{
    ECDeviceIPData record;
    record.Index = quint8(in.number("INDEX", 255));
    record.Status = quint8(in.number("STATUS", 255));
    record.IP = in.address("ADDRESS");
    record.Mask = in.address("MASK");
    record.Gateway = in.address("GATEWAY");
    return report(record);
}

SimulatorCommand parseSend(WordReader& in)
{
    QString digits = in.text("HEX");
    while (!in.atEnd())
        digits += in.text("HEX");
    const QByteArray latin = digits.toLatin1();
    const QByteArray bytes = QByteArray::fromHex(latin);
    // fromHex skips what is no digit, so a fault shows when the bytes are turned back.
    if (bytes.toHex() != latin.toLower())
        in.fail(QStringLiteral("HEX must be pairs of hexadecimal digits, not \"%1\"").arg(digits));
    else if (bytes.size() > LargestDatagram)
        in.fail(QStringLiteral("%1 bytes do not fit a datagram").arg(bytes.size()));
    return SendRaw{bytes};
}

/// `fault drop|duplicate|delay|reorder RATE [MS]`, `fault lose-release`, `fault seed N`, `fault none`
SimulatorCommand parseFault(WordReader& in)
{
    constexpr quint64 highestRate = 100;
    const int choice = in.choice(
        "FAULT",
        {QStringLiteral("drop"), QStringLiteral("duplicate"), QStringLiteral("delay"),
         QStringLiteral("reorder"), QStringLiteral("lose-release"), QStringLiteral("seed"),
         QStringLiteral("none")});
    if (choice == 5)
        return SeedFaults{quint32(in.number("SEED"))};
    if (choice == 6)
        return ClearFaults{};
    SetFault fault;
    fault.kind = SetFault::Kind(std::max(choice, 0));
    if (fault.kind != SetFault::LoseRelease)
        fault.rate = int(in.number("RATE", highestRate));
    fault.delay = WireFaults().delay;
    if (fault.kind == SetFault::Delay && !in.atEnd())
        fault.delay = in.milliseconds("MS");
    return fault;
}

/// `capture start FILE`, `capture stop`
SimulatorCommand parseCapture(WordReader& in)
{
    if (in.choice("WHAT", {QStringLiteral("start"), QStringLiteral("stop")}) == 1)
        return StopCapture{};
    return StartCapture{in.text("FILE")};
}

SimulatorCommand parseReplay(WordReader& in)
{
    PlayCapture play;
    play.file = in.text("FILE");
    play.isStepped = in.take("step");
    if (!play.isStepped && in.take("speed"))
        play.speed = in.decimal("SPEED", PlayCapture::SlowestSpeed, PlayCapture::HighestSpeed);
    return play;
}

SimulatorCommand parseStep(WordReader& in)
{
    constexpr quint64 highestCount = 1000000;
    StepCapture step;
    if (!in.atEnd())
        step.count = in.number("COUNT", highestCount);
    if (step.count == 0)
        in.fail(QStringLiteral("COUNT must not be 0"));
    return step;
}

SimulatorCommand parseStorm(WordReader& in)
{
    constexpr quint64 HighestCount = 1000000000;
    constexpr quint64 HighestRate = 10000000;
    StormKeys storm;
    do
        storm.keys.push_back(quint32(in.number("KEY")));
    while (!in.atEnd() && !in.hasFailed() && in.peek() != QLatin1String("count"));
    if (in.take("count"))
        storm.count = in.number("COUNT", HighestCount);
    else
        in.fail(QStringLiteral("count is missing"));
    if (in.take("rate"))
        storm.perSecond = in.number("RATE", HighestRate);
    if (in.take("window"))
        storm.window = in.number("WINDOW", HighestCount);
    return storm;
}

/// Splits "within MS" or "for MS" off the end.
void takeExpectationTime(QStringList& words, Expect& expect, QString& problem)
{
    expect.duration = DefaultExpectation;
    if (words.size() < 2)
        return;
    const QString keyword = words.at(words.size() - 2);
    if (keyword != QLatin1String("within") && keyword != QLatin1String("for"))
        return;
    expect.kind = keyword == QLatin1String("for") ? Expect::For : Expect::Within;
    WordReader time({words.last()});
    expect.duration = time.milliseconds("MS");
    problem = time.problem();
    words = words.mid(0, words.size() - 2);
}

SimulatorCommand parseExpect(WordReader& in)
{
    Expect expect;
    QStringList words;
    while (!in.atEnd())
        words.append(in.text("CONDITION"));
    QString problem;
    takeExpectationTime(words, expect, problem);
    if (!words.isEmpty() && words.first().startsWith(QLatin1String("no-"))) {
        expect.isNegated = true;
        words.first().remove(0, 3);
    }
    if (problem.isEmpty()) {
        if (auto condition = parseCondition(words, problem))
            expect.condition = std::move(*condition);
    }
    if (!problem.isEmpty())
        in.fail(problem);
    return expect;
}

template <bool isPressed> SimulatorCommand parseKey(WordReader& in)
{
    return report(KeyReport{isPressed, quint32(in.number("KEY"))});
}

template <LockTarget target> SimulatorCommand parseLockReport(WordReader& in)
{
    return report(LockReport{target, in.onOff("STATE")});
}

template <typename Command> SimulatorCommand parsePlain(WordReader&)
{
    return Command{};
}

SimulatorCommand parseMalformed(WordReader& in)
{
    return SendRaw{malformedDatagram(in.choice("KIND", malformedKinds()))};
}

struct CommandKind {
    const char* name;
    SimulatorCommand (*parse)(WordReader&);
    const char* usage;
    const char* meaning;
};

constexpr CommandKind CommandKinds[] = {
    {"press", parseKey<true>, "press KEY", "reports the key pressed"},
    {"release", parseKey<false>, "release KEY", "reports the key released"},
    {"tap", parseTap<false>, "tap KEY [MS]", "presses, waits 50 ms or MS, releases"},
    {"hold", parseTap<true>, "hold KEY MS", "presses, waits, releases"},
    {"storm", parseStorm, "storm KEY... count N [rate PER_SECOND] [window N]",
     "presses and releases the keys in turn, N times"},
    {"tbar", parseTBar, "tbar POSITION up|down", "reports a T-Bar position"},
    {"tbar-sweep", parseSweep, "tbar-sweep FROM TO up|down MS", "moves the T-Bar evenly"},
    {"report-tbar-lock", parseLockReport<LockTarget::TBar>, "report-tbar-lock on|off",
     "reports the T-Bar's lock"},
    {"report-keypad-lock", parseLockReport<LockTarget::Keypad>, "report-keypad-lock on|off",
     "reports the keypad's lock"},
    {"dvi", parseDvi, "dvi [INPUT SIGNAL]...", "reports which inputs carry a signal"},
    {"console-ip", parseConsoleIP, "console-ip INDEX STATUS ADDRESS MASK GATEWAY",
     "reports the console's network settings"},
    {"send", parseSend, "send HEX", "sends these bytes"},
    {"malformed", parseMalformed, "malformed short|magic|tag|length|value", "sends a malformed key report"},
    {"fault", parseFault, "fault drop|duplicate|delay|reorder RATE [MS] | lose-release | seed N | none",
     "lets so many per cent of the reports fail"},
    {"restart-console", parsePlain<RestartConsole>, "restart-console",
     "darkens every light, as a restart does"},
    {"capture", parseCapture, "capture start FILE | stop", "writes every datagram to a pcap file"},
    {"replay", parseReplay, "replay FILE [speed N | step]",
     "reports what a capture has, and compares the console with it"},
    {"step", parseStep, "step [N]", "plays the next report of the capture, or the next N"},
    {"wait", [](WordReader& in) -> SimulatorCommand { return Pause{in.milliseconds("MS")}; }, "wait MS",
     "waits"},
    {"expect", parseExpect, "expect [no-]CONDITION [within MS | for MS]",
     "waits until the condition holds, or watches that it does"},
    {"show", parsePlain<ShowConsole>, "show", "draws the console"},
    {"screenshot", [](WordReader& in) -> SimulatorCommand { return TakePicture{in.text("FILE")}; },
     "screenshot FILE", "writes a picture of the window"},
    {"help", parsePlain<ShowHelp>, "help", "lists the commands"},
    {"quit", parsePlain<Quit>, "quit", "ends the program"},
};

} // namespace

std::variant<SimulatorCommand, NoCommand, CommandFault> parseCommand(const QString& line)
{
    QString problem;
    const QStringList words = splitWords(line, problem);
    if (!problem.isEmpty())
        return CommandFault{problem};
    if (words.isEmpty())
        return NoCommand{};
    for (const CommandKind& kind : CommandKinds) {
        if (words.first() != QLatin1String(kind.name))
            continue;
        WordReader in(words.mid(1));
        SimulatorCommand command = kind.parse(in);
        problem = in.problem();
        if (!problem.isEmpty())
            return CommandFault{QStringLiteral("%1 (%2)").arg(problem, QLatin1String(kind.usage))};
        return command;
    }
    return CommandFault{QStringLiteral("there is no command \"%1\"").arg(words.first())};
}

QStringList commandHelp()
{
    constexpr int UsageWidth = 82;
    QStringList lines;
    for (const CommandKind& kind : CommandKinds)
        lines.append(
            QString(QLatin1String(kind.usage)).leftJustified(UsageWidth) + QLatin1Char(' ')
            + QLatin1String(kind.meaning));
    lines.append(QStringLiteral("Conditions:"));
    for (const QString& usage : conditionUsages())
        lines.append(QStringLiteral("  ") + usage);
    return lines;
}

} // namespace Orvane::ConsolePanel
