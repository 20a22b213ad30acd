#include "condition.h"

#include "downdescription.h"
#include "networkaddress.h"
#include "printabletext.h"
#include "statetext.h"
#include "words.h"

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

using Actual = std::function<QString(const ConsoleRecorder&)>;

Condition steady(Condition::Check check, Actual actual)
{
    return {[check = std::move(check)](const ConsoleRecorder&) { return check; }, std::move(actual)};
}

// --- keys and labels ---

Actual keyLook(quint16 number)
{
    return [number](const ConsoleRecorder& console) { return lookText(find(console.state().keys, number)); };
}

/// `led KEY`: any visible change since the beginning.
Condition keyChanges(quint16 number)
{
    const auto changes = [number](const ConsoleRecorder& console) {
        const KeyState* key = find(console.state().keys, number);
        return key ? key->changes : 0;
    };
    return {
        [changes](const ConsoleRecorder& console) {
            return [changes, before = changes(console)](const ConsoleRecorder& later) {
                return changes(later) != before;
            };
        },
        keyLook(number)};
}

Condition parseLed(WordReader& in)
{
    const auto number = quint16(in.number("KEY", 0xFFFF));
    if (in.atEnd())
        return keyChanges(number);
    if (in.take("dark"))
        return steady(
            [number](const ConsoleRecorder& console) {
                const KeyState* key = find(console.state().keys, number);
                return !key || !key->isLit;
            },
            keyLook(number));
    const QString word = in.text("COLOUR");
    const auto colour = colourFromText(word);
    if (!colour)
        in.fail(QStringLiteral("COLOUR must be R,G,B or a colour's name, not \"%1\"").arg(word));
    std::optional<quint8> state;
    if (in.take("steady"))
        state = LightUp;
    else if (in.take("flashing"))
        state = Flashing;
    return steady(
        [number, colour, state](const ConsoleRecorder& console) {
            const KeyState* key = find(console.state().keys, number);
            return key && key->isLit && key->colour == colour && (!state || key->buttonState == *state);
        },
        keyLook(number));
}

Condition parseOled(WordReader& in)
{
    const auto number = quint16(in.number("LABEL", 0xFFFF));
    const Actual actual = [number](const ConsoleRecorder& console) {
        return lookText(find(console.state().labels, number));
    };
    if (in.atEnd()) {
        const auto changes = [number](const ConsoleRecorder& console) {
            const LabelState* label = find(console.state().labels, number);
            return label ? label->changes : 0;
        };
        return {
            [changes](const ConsoleRecorder& console) {
                return [changes, before = changes(console)](const ConsoleRecorder& later) {
                    return changes(later) != before;
                };
            },
            actual};
    }
    // What does not fit a label is cut off, wherever a character ends.
    const QByteArray text = in.text("TEXT").toUtf8().left(sizeof(ECOLEDText::OledText));
    return steady(
        [number, text](const ConsoleRecorder& console) {
            const LabelState* label = find(console.state().labels, number);
            return label ? label->text == text : text.isEmpty();
        },
        actual);
}

// --- T-Bar, locks, lights ---

Condition parseTBarLevel(WordReader& in)
{
    const auto level = quint32(in.number("LEVEL"));
    std::optional<quint8> direction;
    if (!in.atEnd())
        direction = in.choice("DIRECTION", {QStringLiteral("up"), QStringLiteral("down")}) == 0 ? BottomToTop
                                                                                                : TopToBottom;
    return steady(
        [level, direction](const ConsoleRecorder& console) {
            const auto& shown = console.state().tbarLevel;
            return shown && shown->Value == level && (!direction || shown->IsBottomToTop == *direction);
        },
        [](const ConsoleRecorder& console) {
            const auto& shown = console.state().tbarLevel;
            return lookText(shown ? &*shown : nullptr);
        });
}

Condition parseLock(WordReader& in)
{
    const bool isTBar = in.choice("LOCK", {QStringLiteral("tbar"), QStringLiteral("keypad")}) == 0;
    const bool on = in.onOff("STATE");
    const auto isLocked = [isTBar](const ConsoleRecorder& console) {
        return isTBar ? console.state().isTBarLocked : console.state().isKeypadLocked;
    };
    return steady(
        [isLocked, on](const ConsoleRecorder& console) { return isLocked(console) == on; },
        [isLocked](const ConsoleRecorder& console) { return onOffText(isLocked(console)); });
}

Condition parseLight(WordReader& in)
{
    constexpr quint8 types[] = {Gooseneck, Front, Logo, Other};
    QStringList names;
    for (const quint8 type : types)
        names.append(lightName(type));
    const int choice = in.choice("LIGHT", names);
    const quint8 type = types[choice < 0 ? 0 : choice];
    const bool on = in.onOff("STATE");
    std::optional<quint8> brightness;
    if (!in.atEnd())
        brightness = quint8(in.number("BRIGHTNESS", 255));
    return steady(
        [=](const ConsoleRecorder& console) {
            const LightState* light = find(console.state().lights, type);
            return light && light->isOn == on && (!brightness || light->brightness == *brightness);
        },
        [type](const ConsoleRecorder& console) { return lookText(find(console.state().lights, type)); });
}

// --- values that were sent once or never ---

/// Conditions on an optional number of the state.
template <std::optional<quint8> ConsoleState::*member> Condition parseNumber(WordReader& in)
{
    const auto expected = quint8(in.number("VALUE", 255));
    return steady(
        [expected](const ConsoleRecorder& console) { return console.state().*member == expected; },
        [](const ConsoleRecorder& console) {
            const auto& value = console.state().*member;
            return value ? QString::number(*value) : nothingYet();
        });
}

template <std::optional<bool> ConsoleState::*member> Condition parseFlag(WordReader& in)
{
    const bool expected = in.onOff("STATE");
    return steady(
        [expected](const ConsoleRecorder& console) { return console.state().*member == expected; },
        [](const ConsoleRecorder& console) {
            const auto& value = console.state().*member;
            return value ? onOffText(*value) : nothingYet();
        });
}

template <std::optional<QString> ConsoleState::*member> Condition parseString(WordReader& in)
{
    const QString expected = in.text("TEXT");
    return steady(
        [expected](const ConsoleRecorder& console) { return console.state().*member == expected; },
        [](const ConsoleRecorder& console) {
            const auto& value = console.state().*member;
            return value ? QLatin1Char('"') + printable(*value) + QLatin1Char('"') : nothingYet();
        });
}

Condition parseDviStatus(WordReader& in)
{
    const auto input = quint8(in.number("INPUT", 255));
    const bool on = in.onOff("STATE");
    return steady(
        [input, on](const ConsoleRecorder& console) {
            const bool* present = find(console.state().dviStatus, input);
            return present && *present == on;
        },
        [input](const ConsoleRecorder& console) {
            const bool* present = find(console.state().dviStatus, input);
            return present ? onOffText(*present) : nothingYet();
        });
}

Condition parseConsoleIP(WordReader& in)
{
    const auto index = quint8(in.number("INDEX", 255));
    const QString word = in.text("ADDRESS");
    const auto address = addressFromText(word);
    if (!address)
        in.fail(QStringLiteral("ADDRESS must be a network address, not \"%1\"").arg(word));
    return steady(
        [index, address](const ConsoleRecorder& console) {
            const ECDeviceIPData* record = find(console.state().deviceIPs, index);
            return record && address == quint32(record->IP);
        },
        [index](const ConsoleRecorder& console) {
            const ECDeviceIPData* record = find(console.state().deviceIPs, index);
            return record ? addressText(record->IP) : nothingYet();
        });
}

Condition parseIPMode(WordReader& in)
{
    const auto index = quint8(in.number("INDEX", 255));
    const auto mode = quint8(in.number("MODE", 255));
    return steady(
        [index, mode](const ConsoleRecorder& console) {
            const quint8* is = find(console.state().ipModes, index);
            return is && *is == mode;
        },
        [index](const ConsoleRecorder& console) {
            const quint8* is = find(console.state().ipModes, index);
            return is ? QString::number(*is) : nothingYet();
        });
}

Condition parseFile(WordReader& in)
{
    const QString name = in.text("NAME");
    std::optional<quint64> size;
    if (!in.atEnd())
        size = in.number("SIZE");
    return steady(
        [name, size](const ConsoleRecorder& console) {
            const ReceivedFile* file = find(console.files(), name);
            return file && (!size || quint64(file->content.size()) == *size);
        },
        [name](const ConsoleRecorder& console) {
            const ReceivedFile* file = find(console.files(), name);
            return file ? QStringLiteral("%1 bytes").arg(file->content.size()) : nothingYet();
        });
}

// --- counters ---

Condition parseReceived(WordReader& in)
{
    const quint64 least = in.number("COUNT");
    return steady(
        [least](const ConsoleRecorder& console) { return console.received() >= least; },
        [](const ConsoleRecorder& console) { return QString::number(console.received()); });
}

Condition parseUnreadable(WordReader& in)
{
    const quint64 expected = in.number("COUNT");
    return steady(
        [expected](const ConsoleRecorder& console) { return console.unreadable() == expected; },
        [](const ConsoleRecorder& console) { return QString::number(console.unreadable()); });
}

Condition parseMissing(WordReader& in)
{
    const quint64 expected = in.number("COUNT");
    return steady(
        [expected](const ConsoleRecorder& console) { return console.sequences().missing() == expected; },
        [](const ConsoleRecorder& console) { return QString::number(console.sequences().missing()); });
}

struct ConditionKind {
    const char* name;
    Condition (*parse)(WordReader&);
    const char* usage;
};

constexpr ConditionKind ConditionKinds[] = {
    {"led", parseLed, "led KEY [R,G,B | colour name | dark] [steady | flashing]"},
    {"oled", parseOled, "oled LABEL [\"TEXT\"]"},
    {"tbar-level", parseTBarLevel, "tbar-level LEVEL [up | down]"},
    {"lock", parseLock, "lock tbar|keypad on|off"},
    {"light", parseLight, "light gooseneck|front|logo|other on|off [BRIGHTNESS]"},
    {"luminance", parseNumber<&ConsoleState::luminance>, "luminance VALUE"},
    {"source", parseNumber<&ConsoleState::source>, "source VALUE"},
    {"peripheral", parseFlag<&ConsoleState::isPeripheralVisible>, "peripheral on|off"},
    {"listening", parseFlag<&ConsoleState::isListening>, "listening on|off"},
    {"time", parseString<&ConsoleState::systemTime>, "time \"TEXT\""},
    {"network", parseString<&ConsoleState::networkInfo>, "network \"TEXT\""},
    {"dvi-status", parseDviStatus, "dvi-status INPUT on|off"},
    {"console-ip", parseConsoleIP, "console-ip INDEX ADDRESS"},
    {"ip-mode", parseIPMode, "ip-mode INDEX MODE"},
    {"restart", parseNumber<&ConsoleState::restart>, "restart VALUE"},
    {"mcu-reset", parseNumber<&ConsoleState::mcuReset>, "mcu-reset VALUE"},
    {"file", parseFile, "file NAME [SIZE]"},
    {"received", parseReceived, "received COUNT (or more)"},
    {"unreadable", parseUnreadable, "unreadable COUNT"},
    {"missing", parseMissing, "missing COUNT"},
};

} // namespace

std::optional<Condition> parseCondition(const QStringList& words, QString& problem)
{
    const QString name = words.value(0);
    for (const ConditionKind& kind : ConditionKinds) {
        if (name != QLatin1String(kind.name))
            continue;
        WordReader in(words.mid(1));
        Condition condition = kind.parse(in);
        problem = in.problem();
        if (!problem.isEmpty())
            return std::nullopt;
        return condition;
    }
    problem = name.isEmpty() ? QStringLiteral("a condition is missing")
                             : QStringLiteral("there is no condition \"%1\"").arg(name);
    return std::nullopt;
}

QStringList conditionUsages()
{
    QStringList usages;
    for (const ConditionKind& kind : ConditionKinds)
        usages.append(QLatin1String(kind.usage));
    return usages;
}

} // namespace Orvane::ConsolePanel
