#include "condition.h"

#include "downdescription.h"
#include "networkaddress.h"
#include "printabletext.h"
#include "statetext.h"
#include "words.h"

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

/// About a part of the console, which `find` gives; null for one that no datagram has set.
/// @param holds whether it is as expected, null or not
/// @param text how it looks
template <typename Find, typename Holds, typename Text>
Condition about(const Find& find, const Holds& holds, const Text& text)
{
    const Condition::Check check = [find, holds](const ConsoleRecorder& console) {
        return holds(find(console));
    };
    return {
        [check](const ConsoleRecorder&) { return check; },
        [find, text](const ConsoleRecorder& console) { return text(find(console)); }};
}

/// About one that is there.
template <typename Find, typename Holds, typename Text>
Condition aboutPresent(const Find& find, const Holds& holds, const Text& text)
{
    return about(
        find, [holds](const auto* part) { return part && holds(*part); },
        [text](const auto* part) { return part ? text(*part) : nothingYet(); });
}

QString numberText(quint64 value)
{
    return QString::number(value);
}

/// That a value is this one.
template <typename Get> Condition numberIs(quint64 expected, const Get& get)
{
    return about(
        get, [expected](quint64 value) { return value == expected; }, numberText);
}

/// Any visible change of a key or label since the beginning.
template <typename Find> Condition changes(const Find& find)
{
    const auto count = [find](const ConsoleRecorder& console) {
        const auto* const part = find(console);
        return part ? part->changes : 0;
    };
    return {
        [count](const ConsoleRecorder& console) {
            return [count, before = count(console)](const ConsoleRecorder& later) {
                return count(later) != before;
            };
        },
        [find](const ConsoleRecorder& console) { return lookText(find(console)); }};
}

const auto look = [](const auto* part) { return lookText(part); };

/// The entry of a map of the state.
template <typename Map> auto entry(Map ConsoleState::*map, typename Map::key_type key)
{
    return [map, key](const ConsoleRecorder& console) { return find(console.state().*map, key); };
}

/// An optional member of the state.
template <typename Value> auto pointer(std::optional<Value> ConsoleState::*member)
{
    return [member](const ConsoleRecorder& console) -> const Value* {
        const auto& value = console.state().*member;
        return value ? &*value : nullptr;
    };
}

std::optional<quint8> takeDirection(WordReader& in)
{
    if (in.atEnd())
        return std::nullopt;
    return in.choice("DIRECTION", {QStringLiteral("up"), QStringLiteral("down")}) == 0 ? BottomToTop
                                                                                       : TopToBottom;
}

// --- keys and labels ---

Condition parseLed(WordReader& in)
{
    const auto key = entry(&ConsoleState::keys, quint16(in.number("KEY", 0xFFFF)));
    if (in.atEnd())
        return changes(key);
    if (in.take("dark"))
        return about(
            key, [](const KeyState* state) { return !state || !state->isLit; }, look);
    const QString word = in.text("COLOUR");
    const auto colour = colourFromText(word);
    if (!colour)
        in.fail(QStringLiteral("COLOUR must be R,G,B or a colour's name, not \"%1\"").arg(word));
    std::optional<quint8> state;
    if (in.take("steady"))
        state = LightUp;
    else if (in.take("flashing"))
        state = Flashing;
    return about(
        key,
        [colour, state](const KeyState* is) {
            return is && is->isLit && is->colour == colour && (!state || is->buttonState == *state);
        },
        look);
}

Condition parseOled(WordReader& in)
{
    const auto label = entry(&ConsoleState::labels, quint16(in.number("LABEL", 0xFFFF)));
    if (in.atEnd())
        return changes(label);
    // What does not fit a label is cut off, wherever a character ends.
    const QByteArray text = in.text("TEXT").toUtf8().left(sizeof(ECOLEDText::OledText));
    return about(
        label, [text](const LabelState* is) { return is ? is->text == text : text.isEmpty(); }, look);
}

// --- T-Bar, locks, lights ---

Condition parseTBarLevel(WordReader& in)
{
    const auto level = quint32(in.number("LEVEL"));
    const auto direction = takeDirection(in);
    return about(
        pointer(&ConsoleState::tbarLevel),
        [level, direction](const ECTBarValue* shown) {
            return shown && shown->Value == level && (!direction || shown->IsBottomToTop == *direction);
        },
        look);
}

Condition parseLock(WordReader& in)
{
    const bool isTBar = in.choice("LOCK", {QStringLiteral("tbar"), QStringLiteral("keypad")}) == 0;
    const bool on = in.onOff("STATE");
    return about(
        [isTBar](const ConsoleRecorder& console) {
            return isTBar ? console.state().isTBarLocked : console.state().isKeypadLocked;
        },
        [on](bool isLocked) { return isLocked == on; }, onOffText);
}

Condition parseLight(WordReader& in)
{
    constexpr quint8 types[] = {Gooseneck, Front, Logo, Other};
    QStringList names;
    for (const quint8 type : types)
        names.append(lightName(type));
    const int choice = in.choice("LIGHT", names);
    const bool on = in.onOff("STATE");
    std::optional<quint8> brightness;
    if (!in.atEnd())
        brightness = quint8(in.number("BRIGHTNESS", 255));
    return about(
        entry(&ConsoleState::lights, types[choice < 0 ? 0 : choice]),
        [on, brightness](const LightState* light) {
            return light && light->isOn == on && (!brightness || light->brightness == *brightness);
        },
        look);
}

// --- values that were sent once or never ---

/// Conditions on an optional number of the state.
template <std::optional<quint8> ConsoleState::*member> Condition parseNumber(WordReader& in)
{
    const auto expected = quint8(in.number("VALUE", 255));
    return aboutPresent(
        pointer(member), [expected](quint8 value) { return value == expected; }, numberText);
}

template <std::optional<bool> ConsoleState::*member> Condition parseFlag(WordReader& in)
{
    const bool expected = in.onOff("STATE");
    return aboutPresent(
        pointer(member), [expected](bool value) { return value == expected; }, onOffText);
}

template <std::optional<QString> ConsoleState::*member> Condition parseString(WordReader& in)
{
    const QString expected = in.text("TEXT");
    return aboutPresent(
        pointer(member), [expected](const QString& value) { return value == expected; },
        [](const QString& value) { return QLatin1Char('"') + printable(value) + QLatin1Char('"'); });
}

Condition parseDviStatus(WordReader& in)
{
    const auto input = entry(&ConsoleState::dviStatus, quint8(in.number("INPUT", 255)));
    const bool on = in.onOff("STATE");
    return aboutPresent(
        input, [on](bool isPresent) { return isPresent == on; }, onOffText);
}

Condition parseConsoleIP(WordReader& in)
{
    const auto record = entry(&ConsoleState::deviceIPs, quint8(in.number("INDEX", 255)));
    const quint32 address = in.address("ADDRESS");
    return aboutPresent(
        record, [address](const ECDeviceIPData& is) { return address == quint32(is.IP); },
        [](const ECDeviceIPData& is) { return addressText(is.IP); });
}

Condition parseIPMode(WordReader& in)
{
    const auto mode = entry(&ConsoleState::ipModes, quint8(in.number("INDEX", 255)));
    const auto expected = quint8(in.number("MODE", 255));
    return aboutPresent(
        mode, [expected](quint8 is) { return is == expected; }, numberText);
}

Condition parseFile(WordReader& in)
{
    const QString name = in.text("NAME");
    std::optional<quint64> size;
    if (!in.atEnd())
        size = in.number("SIZE");
    return aboutPresent(
        [name](const ConsoleRecorder& console) { return find(console.files(), name); },
        [size](const ReceivedFile& file) { return !size || quint64(file.content.size()) == *size; },
        [](const ReceivedFile& file) { return QStringLiteral("%1 bytes").arg(file.content.size()); });
}

// --- counters ---

Condition parseReceived(WordReader& in)
{
    const quint64 least = in.number("COUNT");
    return about(
        [](const ConsoleRecorder& console) { return console.received(); },
        [least](quint64 received) { return received >= least; }, numberText);
}

Condition parseUnreadable(WordReader& in)
{
    return numberIs(in.number("COUNT"), [](const ConsoleRecorder& console) { return console.unreadable(); });
}

Condition parseMissing(WordReader& in)
{
    return numberIs(
        in.number("COUNT"), [](const ConsoleRecorder& console) { return console.sequences().missing(); });
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
