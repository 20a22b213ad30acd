#include "consolepicture.h"

#include "downdescription.h"
#include "networkaddress.h"
#include "printabletext.h"

#include <algorithm>
#include <set>

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

constexpr int CellWidth = 10;
constexpr int CellGap = 1;
/// Segments of the LED bar beside the T-Bar.
constexpr quint32 TBarLevels = 12;

QString reset()
{
    return QStringLiteral("\x1b[0m");
}

QString centred(const QString& text, int width)
{
    const QString cut = text.left(width);
    const int left = (width - cut.size()) / 2;
    return (QString(left, QLatin1Char(' ')) + cut).leftJustified(width);
}

QString withoutTrailingBlanks(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

KeyColour dimmed(const KeyColour& colour, int brightness)
{
    const int percent = std::min(brightness, 100);
    return {
        quint8(colour.red * percent / 100), quint8(colour.green * percent / 100),
        quint8(colour.blue * percent / 100)};
}

/// Black or white, whichever can be read on the colour.
const char* readableOn(const KeyColour& colour)
{
    const int luma = (colour.red * 299 + colour.green * 587 + colour.blue * 114) / 1000;
    return luma > 128 ? "\x1b[38;2;0;0;0m" : "\x1b[38;2;255;255;255m";
}

QString lockText(bool isLocked)
{
    return isLocked ? QStringLiteral("locked") : QStringLiteral("unlocked");
}

} // namespace

ConsolePicture::ConsolePicture(
    const ConsoleLayout& layout, const ConsoleRecorder& console, const Options& options)
    : m_layout(layout)
    , m_console(console)
    , m_options(options)
{
}

QStringList ConsolePicture::lines() const
{
    QStringList out;
    if (!m_layout.name.isEmpty())
        out.append(heading(m_layout.name));
    for (const ConsoleLayout::Group& group : m_layout.groups)
        drawGroup(group, out);
    drawGroup(m_layout.keysOutside(m_console.state()), out);
    if (const QString labels = labelsOutsideLayout(); !labels.isEmpty())
        out.append(labels);
    out.append(tbarLine());
    out.append(lightsLine());
    out += factLines();
    out.append(counterText(m_console));
    return out;
}

void ConsolePicture::drawGroup(const ConsoleLayout::Group& group, QStringList& out) const
{
    if (group.keys.empty())
        return;
    out.append(heading(group.name));
    const int perRow = std::max(1, (m_options.columns + CellGap) / (CellWidth + CellGap));
    const QString gap(CellGap, QLatin1Char(' '));
    for (auto row = group.keys.begin(); row != group.keys.end();) {
        const auto rowEnd = row + std::min<std::ptrdiff_t>(perRow, group.keys.end() - row);
        QStringList labels;
        QStringList keys;
        for (auto key = row; key != rowEnd; ++key) {
            labels.append(labelCell(*key));
            keys.append(keyCell(key->number));
        }
        if (std::any_of(row, rowEnd, [](const auto& key) { return key.label.has_value(); }))
            out.append(withoutTrailingBlanks(labels.join(gap)));
        out.append(withoutTrailingBlanks(keys.join(gap)));
        row = rowEnd;
    }
}

QString ConsolePicture::labelsOutsideLayout() const
{
    std::set<quint16> known;
    for (const ConsoleLayout::Group& group : m_layout.groups)
        for (const ConsoleLayout::Key& key : group.keys)
            if (key.label)
                known.insert(*key.label);
    QStringList others;
    for (const auto& [number, label] : m_console.state().labels)
        if (known.count(number) == 0)
            others.append(QStringLiteral("%1 \"%2\"")
                              .arg(QString::number(number), printable(QString::fromUtf8(label.text))));
    return others.isEmpty() ? QString()
                            : QStringLiteral("Other labels: ") + others.join(QStringLiteral(", "));
}

QString ConsolePicture::labelCell(const ConsoleLayout::Key& key) const
{
    if (!key.label)
        return QString(CellWidth, QLatin1Char(' '));
    const auto found = m_console.state().labels.find(*key.label);
    const QString text =
        found == m_console.state().labels.end() ? QString() : QString::fromUtf8(found->second.text);
    const QString cell = centred(printable(text), CellWidth);
    return m_options.colour ? QStringLiteral("\x1b[48;2;0;0;0m\x1b[38;2;255;255;255m") + cell + reset()
                            : cell;
}

QString ConsolePicture::keyCell(quint16 number) const
{
    const auto found = m_console.state().keys.find(number);
    const KeyState key = found == m_console.state().keys.end() ? KeyState() : found->second;
    const bool isFlashing = key.isLit && key.buttonState == Flashing;
    if (m_options.colour) {
        const KeyColour colour = key.isLit ? dimmed(key.colour, key.brightness) : KeyColour();
        return QStringLiteral("%1%2\x1b[48;2;%3;%4;%5m%6%7")
            .arg(isFlashing ? QStringLiteral("\x1b[5m") : QString(), QLatin1String(readableOn(colour)))
            .arg(colour.red)
            .arg(colour.green)
            .arg(colour.blue)
            .arg(centred(QString::number(number), CellWidth), reset());
    }
    QString look;
    if (key.isLit) {
        const QString name = colourName(key.colour);
        look = name.isEmpty() ? QStringLiteral("%1%2%3")
                                    .arg(key.colour.red, 2, 16, QLatin1Char('0'))
                                    .arg(key.colour.green, 2, 16, QLatin1Char('0'))
                                    .arg(key.colour.blue, 2, 16, QLatin1Char('0'))
                              : name;
    }
    const QString text = QString::number(number) + QLatin1Char(isFlashing ? '*' : ' ') + look;
    return QLatin1Char('[') + text.left(CellWidth - 2).leftJustified(CellWidth - 2) + QLatin1Char(']');
}

QString ConsolePicture::tbarLine() const
{
    const ConsoleState& state = m_console.state();
    const quint32 level = state.tbarLevel ? quint32(state.tbarLevel->Value) : 0;
    const int segments = int(std::min(level, TBarLevels));
    QString direction;
    if (state.tbarLevel)
        direction =
            state.tbarLevel->IsBottomToTop == BottomToTop ? QStringLiteral(" up") : QStringLiteral(" down");
    return QStringLiteral("T-Bar [%1] %2%3, T-Bar %4, keypad %5")
        .arg(
            QString(segments, QLatin1Char('#')).leftJustified(TBarLevels, QLatin1Char('-')),
            QString::number(level), direction, lockText(state.isTBarLocked), lockText(state.isKeypadLocked));
}

QString ConsolePicture::lightsLine() const
{
    const ConsoleState& state = m_console.state();
    QStringList parts;
    for (const auto& [type, light] : state.lights)
        parts.append(QStringLiteral("%1 %2").arg(
            lightName(type),
            light.isOn ? QStringLiteral("on %1").arg(light.brightness) : QStringLiteral("off")));
    if (state.luminance)
        parts.append(QStringLiteral("luminance %1").arg(*state.luminance));
    return QStringLiteral("Lights: ")
        + (parts.isEmpty() ? QStringLiteral("-") : parts.join(QStringLiteral(", ")));
}

QStringList ConsolePicture::factLines() const
{
    const ConsoleState& state = m_console.state();
    QStringList facts;
    if (state.source)
        facts.append(QStringLiteral("source %1").arg(*state.source));
    if (state.isPeripheralVisible)
        facts.append(
            *state.isPeripheralVisible ? QStringLiteral("peripheral visible")
                                       : QStringLiteral("peripheral hidden"));
    if (state.isListening)
        facts.append(
            *state.isListening ? QStringLiteral("reports keyboard and mouse")
                               : QStringLiteral("ignores keyboard and mouse"));
    for (const auto& [input, present] : state.dviStatus)
        facts.append(
            QStringLiteral("dvi %1 %2").arg(input).arg(present ? QLatin1String("on") : QLatin1String("off")));
    for (const auto& [index, record] : state.deviceIPs)
        facts.append(QStringLiteral("console-ip %1 %2").arg(QString::number(index), addressText(record.IP)));

    QStringList out;
    if (!facts.isEmpty())
        out.append(QStringLiteral("Console: ") + facts.join(QStringLiteral(", ")));
    if (state.systemTime)
        out.append(QStringLiteral("Time: ") + printable(*state.systemTime));
    if (state.networkInfo)
        out.append(QStringLiteral("Network: ") + printable(*state.networkInfo));
    for (const auto& [name, file] : m_console.files())
        out.append(QStringLiteral("File: \"%1\" %2 bytes")
                       .arg(printable(name), QString::number(file.content.size())));
    return out;
}

QString ConsolePicture::heading(const QString& text) const
{
    return m_options.colour ? QStringLiteral("\x1b[1m") + text + reset() : text;
}

QString counterText(const ConsoleRecorder& console)
{
    const SequenceWatch& sequences = console.sequences();
    return QStringLiteral(
               "Datagrams: %1 received, %2 unreadable, %3 missing, %4 late, %5 repeated, %6 restarts")
        .arg(console.received())
        .arg(console.unreadable())
        .arg(sequences.missing())
        .arg(sequences.late())
        .arg(sequences.repeated())
        .arg(sequences.restarts());
}

} // namespace Orvane::ConsolePanel
