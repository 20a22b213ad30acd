#include "consoledifference.h"

#include "downdescription.h"
#include "statetext.h"

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

bool looksLike(const KeyState* one, const KeyState* other)
{
    const bool isLit = one && one->isLit;
    if (isLit != (other && other->isLit))
        return false;
    // A dark key is dark, whatever color it was closed with.
    return !isLit || one->looksLike(*other);
}

bool looksLike(const LabelState* one, const LabelState* other)
{
    return (one ? one->text : QByteArray()) == (other ? other->text : QByteArray());
}

bool looksLike(const LightState* one, const LightState* other)
{
    const bool isOn = one && one->isOn;
    return isOn == (other && other->isOn) && (!isOn || one->brightness == other->brightness);
}

/// Collects what differs.
class Comparison {
public:
    explicit Comparison(Knowledge knowledge)
        : m_bComplete(knowledge == Knowledge::Complete)
    {
    }

    /// Entries of one kind, by their numbers.
    template <typename Map, typename Name> void compare(const Map& expected, const Map& shown, Name name)
    {
        for (const auto& [number, part] : expected)
            compare(name(number), &part, find(shown, number));
        if (!m_bComplete)
            return;
        for (const auto& [number, part] : shown)
            if (!find(expected, number))
                compare(name(number), static_cast<const typename Map::mapped_type*>(nullptr), &part);
    }

    void compareLock(const QString& name, bool expected, bool shown)
    {
        // That nobody locked it is known of a complete state only.
        if (expected != shown && (expected || m_bComplete))
            m_found.push_back({name, onOffText(expected), onOffText(shown)});
    }

    template <typename Value, typename Text>
    void compare(
        const QString& name, const std::optional<Value>& expected, const std::optional<Value>& shown,
        Text text)
    {
        const QString expectedText = text(expected ? &*expected : nullptr);
        const QString shownText = text(shown ? &*shown : nullptr);
        if ((expected || m_bComplete) && expectedText != shownText)
            m_found.push_back({name, expectedText, shownText});
    }

    std::vector<ConsoleDifference> take() { return std::move(m_found); }

private:
    template <typename Part> void compare(const QString& name, const Part* expected, const Part* shown)
    {
        if (!looksLike(expected, shown))
            m_found.push_back({name, lookText(expected), lookText(shown)});
    }

    bool m_bComplete;
    std::vector<ConsoleDifference> m_found;
};

} // namespace

QString ConsoleDifference::text() const
{
    return QStringLiteral("%1: expected %2, shown %3").arg(what, expected, shown);
}

std::vector<ConsoleDifference> differences(
    const ConsoleState& expected, Knowledge knowledge, const ConsoleState& shown)
{
    Comparison comparison(knowledge);
    comparison.compare(
        expected.keys, shown.keys, [](quint16 number) { return QStringLiteral("key %1").arg(number); });
    comparison.compare(
        expected.labels, shown.labels, [](quint16 number) { return QStringLiteral("label %1").arg(number); });
    comparison.compare(expected.lights, shown.lights, [](quint8 type) {
        return QStringLiteral("light ") + lightName(type);
    });
    comparison.compareLock(QStringLiteral("T-Bar lock"), expected.isTBarLocked, shown.isTBarLocked);
    comparison.compareLock(QStringLiteral("keypad lock"), expected.isKeypadLocked, shown.isKeypadLocked);
    comparison.compare(
        QStringLiteral("T-Bar level"), expected.tbarLevel, shown.tbarLevel,
        [](const ECTBarValue* level) { return lookText(level); });
    comparison.compare(
        QStringLiteral("luminance"), expected.luminance, shown.luminance,
        [](const quint8* percent) { return percent ? QString::number(*percent) : nothingYet(); });
    return comparison.take();
}

} // namespace Orvane::ConsolePanel
