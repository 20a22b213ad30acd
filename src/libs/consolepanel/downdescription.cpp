#include "downdescription.h"

#include "networkaddress.h"
#include "printabletext.h"

#include <QJsonArray>
#include <QTextCodec>
#include <QVector>

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

struct Field {
    const char* name;
    QJsonValue value;
};
using Fields = QVector<Field>;

QJsonValue number(quint32 value)
{
    return QJsonValue(qint64(value));
}

/// The name of a value, or its number when it has none.
QString nameOf(quint8 value, std::initializer_list<std::pair<quint8, const char*>> names)
{
    for (const auto& [known, name] : names) {
        if (known == value)
            return QLatin1String(name);
    }
    return QString::number(value);
}

QString stateName(quint8 state)
{
    return nameOf(
        state,
        {{LightUp, "LightUp"},
         {Flashing, "Flashing"},
         {CloseAllLight, "CloseAllLight"},
         {ClosedNormalLight, "ClosedNormalLight"}});
}

Fields resolutionFields(const PeripheralControl& record)
{
    QJsonArray resolutions;
    for (std::size_t i = 0; i < std::size(record.resolution); ++i) // NOLINT(modernize-loop-convert)
        resolutions.append(int(record.resolution[i]));
    return {{"screens", record.ScreenNum}, {"target", record.TargetScreenIndex}, {"resolution", resolutions}};
}

Fields fieldsOf(const DownMessage& message)
{
    return std::visit(
        Overloaded{
            [](const ECButtonColor& r) {
                return Fields{
                    {"key", int(r.ECKey)},
                    {"app", number(r.ButtonKey)},
                    {"state", stateName(r.ButtonState)},
                    {"color", QStringLiteral("%1,%2,%3").arg(r.R).arg(r.G).arg(r.B)},
                    {"brightness", r.brightness}};
            },
            [](const ECOLEDText& r) {
                return Fields{{"label", int(r.ECKey)}, {"app", number(r.OledKey)}, {"text", labelText(r)}};
            },
            [](const ECTBarValue& r) {
                return Fields{
                    {"level", number(r.Value)},
                    {"direction", nameOf(r.IsBottomToTop, {{BottomToTop, "up"}, {TopToBottom, "down"}})}};
            },
            [](const LockRequest&) { return Fields{}; },
            [](const DVIInSignalRead& r) {
                return Fields{{"input", r.Index}};
            },
            [](const LightControl& r) {
                return Fields{
                    {"light", lightName(r.LightType)},
                    {"on", r.IsEnabled != 0},
                    {"brightness", r.Brightness}};
            },
            [](const ScreenLuminance& r) {
                return Fields{{"brightness", r.Brightness}};
            },
            [](const PeripheralControl& r) { return resolutionFields(r); },
            [](const MVRSignalControl& r) {
                return Fields{{"source", nameOf(r.SignalIndex, {{dvi1, "dvi1"}, {arm_left, "arm_left"}})}};
            },
            [](const SystemTime& r) {
                return Fields{{"text", r.text}};
            },
            [](const NetworkInfo& r) {
                return Fields{{"text", r.text}};
            },
            [](const FileFirstPack& r) {
                return Fields{{"pack", 0},          {"packs", r.packCount},       {"file", r.name},
                              {"type", r.fileType}, {"size", number(r.fileSize)}, {"bytes", r.chunk.size()}};
            },
            [](const FileDataPack& r) {
                return Fields{{"pack", r.packIndex}, {"packs", r.packCount}, {"bytes", r.chunk.size()}};
            },
            [](const ConsoleIPRequest& r) {
                return Fields{{"index", r.index}};
            },
            [](const ECDeviceIPData& r) {
                return Fields{
                    {"index", r.Index},
                    {"status", r.Status},
                    {"address", addressText(r.IP)},
                    {"mask", addressText(r.Mask)},
                    {"gateway", addressText(r.Gateway)}};
            },
            [](const ConsoleRestart& r) {
                return Fields{{"value", r.value}};
            },
            [](const KeyboardListening& r) {
                return Fields{{"on", r.on}};
            },
            [](const DVIInSignal& r) {
                return Fields{{"input", r.Index}, {"signal", r.Signal != 0}};
            },
            [](const McuReset& r) {
                return Fields{{"value", r.value}};
            },
            [](const ECDeviceIPModeData& r) {
                return Fields{{"index", r.Index}, {"mode", r.Mode}};
            },
            [](const PeripheralControlVisibleState& r) {
                return Fields{{"visible", r.visible != 0}};
            },
        },
        message);
}

QString fieldText(const Field& field)
{
    if (qstrcmp(field.name, "text") == 0 || qstrcmp(field.name, "file") == 0)
        return QLatin1Char('"') + printable(field.value.toString()) + QLatin1Char('"');
    if (field.value.isArray()) {
        QStringList items;
        for (const QJsonValue item : field.value.toArray())
            items.append(QString::number(item.toInt()));
        return items.join(QLatin1Char(','));
    }
    return field.value.toVariant().toString();
}

} // namespace

QString tagName(eECDownMessageTag tag)
{
    static const QStringList names = // in the order of the tags
        QStringLiteral(
            "UpdateECButtonColor UpdateECOledText UpdateTBarValue LockTBar UnlockTBar ReadLockedTBar "
            "LockKeyboard UnlockKeyboard ReadLockedKeyboard ReadDVIInSignal ControlLight "
            "UpdateScreenLuminance ControlPeripheral ControlMVRSignal UpdateSystemTime "
            "UpdateNetworkInfo ReadFile WriteFile ReadECDeviceIPData UpdateECDeviceIPData "
            "RestartConsole ControlKeyboard UpdateDVISignalStatus ResetMCU ChangeIPMode "
            "ControlPeripheralState")
            .split(QLatin1Char(' '));
    return names.value(tag - UpdateECButtonColor);
}

QString describe(const DownDatagram& datagram)
{
    QString line = QStringLiteral("#%1 %2").arg(datagram.sequence).arg(tagName(datagram.tag));
    for (const Field& field : fieldsOf(datagram.message)) {
        line += QLatin1Char(' ');
        line += QLatin1String(field.name);
        line += QLatin1Char('=');
        line += fieldText(field);
    }
    return line;
}

QJsonObject toJson(const DownDatagram& datagram)
{
    QJsonObject object{
        {QStringLiteral("seq"), datagram.sequence},
        {QStringLiteral("tag"), int(datagram.tag)},
        {QStringLiteral("name"), tagName(datagram.tag)}};
    for (const Field& field : fieldsOf(datagram.message))
        object.insert(QLatin1String(field.name), field.value);
    return object;
}

QString labelText(const ECOLEDText& record)
{
    const int length = int(qstrnlen(record.OledText, sizeof(record.OledText)));
    // The converter keeps an incomplete last character back instead of showing a replacement for it.
    QTextCodec::ConverterState state;
    constexpr int Utf8Mib = 106;
    return QTextCodec::codecForMib(Utf8Mib)->toUnicode(record.OledText, length, &state);
}

QString lightName(quint8 lightType)
{
    return nameOf(lightType, {{Gooseneck, "gooseneck"}, {Front, "front"}, {Logo, "logo"}, {Other, "other"}});
}

} // namespace Orvane::ConsolePanel
