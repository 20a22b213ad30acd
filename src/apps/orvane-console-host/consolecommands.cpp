#include "consolecommands.h"

#include "commandtable.h"
#include "ecconstants.h"
#include "ecmanager.h"
#include "lockcontrol.h"

#include <QDateTime>

namespace Orvane::ConsoleHost {

using namespace ECProxy::Client;

namespace {

constexpr qint64 MaxByte = 255;
constexpr qint64 MaxPercent = 100;
constexpr qint64 MaxPackSize = 0xFFFF;

using Action = void (*)(const QJsonObject&);

QString text(const QJsonObject& arguments, const char* name)
{
    return arguments[QLatin1String(name)].toString();
}

int number(const QJsonObject& arguments, const char* name)
{
    return arguments[QLatin1String(name)].toInt();
}

bool flag(const QJsonObject& arguments, const char* name)
{
    return arguments[QLatin1String(name)].toBool();
}

/// A command that cannot fail once its arguments are right.
void addAction(
    CommandTable& table, const char* name, const char* purpose, std::vector<Parameter> parameters,
    Action action)
{
    table.add(
        {QLatin1String(name), QLatin1String(purpose), std::move(parameters),
         [action](const QJsonObject& arguments) {
             action(arguments);
             return Answer::done();
         }});
}

const QStringList& lightNames() // in the order of eY2LightType
{
    static const QStringList names = {
        QStringLiteral("gooseneck"), QStringLiteral("front"), QStringLiteral("logo")};
    return names;
}

const QStringList& fileTypeNames() // in the order of eFlieType
{
    static const QStringList names = {QStringLiteral("all"), QStringLiteral("mcu"), QStringLiteral("fpga")};
    return names;
}

void setLight(const QJsonObject& arguments)
{
    auto light = std::make_shared<LightControl>();
    light->LightType = quint8(lightNames().indexOf(text(arguments, "light")));
    light->IsEnabled = flag(arguments, "on") ? 1 : 0;
    light->Brightness = quint8(number(arguments, "brightness"));
    ECManager::instance()->updateLightControlState(light);
}

void setLuminance(const QJsonObject& arguments)
{
    auto luminance = std::make_shared<ScreenLuminance>();
    luminance->Brightness = quint8(number(arguments, "percent"));
    ECManager::instance()->updatepScreenLuminance(luminance);
}

void sendSystemTime(const QJsonObject& arguments)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString date = text(arguments, "date");
    const QString time = text(arguments, "time");
    ECManager::instance()->updateSystemTime(
        date.isEmpty() ? now.toString(QStringLiteral("yyyy-MM-dd")) : date,
        time.isEmpty() ? now.toString(QStringLiteral("hh:mm:ss")) : time);
}

Answer askDVISignal(const QJsonObject& arguments)
{
    const bool hasSignal = ECManager::instance()->dviInSignal(number(arguments, "index"));
    return Answer::done({{QStringLiteral("signal"), hasSignal}});
}

Answer sendFile(const QJsonObject& arguments)
{
    const auto type = eFlieType(fileTypeNames().indexOf(text(arguments, "type")));
    const auto operation = text(arguments, "operation") == QLatin1String("read") ? OpeReadFile : OpeWriteFile;
    const bool sent = ECManager::instance()->sendFile(
        text(arguments, "file"), operation, type, quint16(number(arguments, "packSize")), true);
    return sent ? Answer::done() : Answer::refused(QStringLiteral("the file cannot be read"));
}

/// A key of an on-screen console goes the way of the console's own keys, on the GUI thread.
template <eECUpMessageTag tag> void reportVirtualKey(const QJsonObject& arguments)
{
    const quint32 key = Constants::VirtualKeyOffset + quint32(number(arguments, "key"));
    QByteArray value(sizeof(ECButtonOperState), '\0');
    Wire::store<quint32>(key, value.data() + offsetof(ECButtonOperState, ButtonKey));
    value[int(offsetof(ECButtonOperState, ButtonPressed))] = tag == ReportECButtonPressed ? Pressed : Release;
    ECManager::instance()->upTLVDecodeFinished(tag, value);
}

void addLockCommands(CommandTable& table)
{
    addAction(table, "lockKeypad", "locks the keys", {}, [](const QJsonObject&) { setKeypadLocked(true); });
    addAction(
        table, "unlockKeypad", "frees the keys", {}, [](const QJsonObject&) { setKeypadLocked(false); });
    addAction(table, "lockTBar", "locks the T-Bar", {}, [](const QJsonObject&) { setTBarLocked(true); });
    addAction(table, "unlockTBar", "frees the T-Bar", {}, [](const QJsonObject&) { setTBarLocked(false); });
}

void addLightCommands(CommandTable& table)
{
    addAction(
        table, "setLight", "switches one of the console's lights",
        {Parameter::choice("light", lightNames()), Parameter::flag("on"),
         Parameter::integer("brightness", 0, MaxByte).orElse(10)},
        &setLight);
    addAction(
        table, "setLuminance", "sets the brightness of the console's display",
        {Parameter::integer("percent", 0, MaxPercent)}, &setLuminance);
    addAction(table, "closeAllLights", "darkens every key", {}, [](const QJsonObject&) {
        ECManager::instance()->closeAllButtonLED();
    });
    addAction(table, "repaint", "lights every key anew", {}, [](const QJsonObject&) {
        ECManager::instance()->slotOrvanePluginModeChanged();
    });
    addAction(
        table, "showPeripheral", "shows or hides the plug-in display", {Parameter::flag("visible")},
        [](const QJsonObject& arguments) {
            ECManager::instance()->controlPeripheralState(flag(arguments, "visible"));
        });
}

void addSystemCommands(CommandTable& table)
{
    addAction(
        table, "sendSystemTime", "sets the console's clock, to this machine's time where none is given",
        {Parameter::text("date").orElse(QString()), Parameter::text("time").orElse(QString())},
        &sendSystemTime);
    addAction(
        table, "sendSystemIP", "tells the console the application's network settings",
        {Parameter::text("first"), Parameter::text("second"), Parameter::text("third"),
         Parameter::text("fourth")},
        [](const QJsonObject& arguments) {
            ECManager::instance()->updateSystemIP(
                text(arguments, "first"), text(arguments, "second"), text(arguments, "third"),
                text(arguments, "fourth"));
        });
    addAction(
        table, "requestConsoleIP", "asks for a console's network settings",
        {Parameter::integer("index", 0, MaxByte)}, [](const QJsonObject& arguments) {
            ECManager::instance()->reqECDeviceIP(quint8(number(arguments, "index")));
        });
    addAction(
        table, "setIPMode", "sets how a console gets its address",
        {Parameter::integer("index", 0, MaxByte), Parameter::integer("mode", 0, MaxByte)},
        [](const QJsonObject& arguments) {
            ECManager::instance()->setIPMode(
                quint8(number(arguments, "index")), quint8(number(arguments, "mode")));
        });
    addAction(
        table, "restartConsole", "restarts the console's service",
        {Parameter::integer("value", 0, MaxByte).orElse(1)}, [](const QJsonObject& arguments) {
            ECManager::instance()->restartEventController(quint8(number(arguments, "value")));
        });
    addAction(
        table, "resetMCU", "resets the console's microcontroller",
        {Parameter::integer("value", 0, MaxByte).orElse(1)}, [](const QJsonObject& arguments) {
            ECManager::instance()->resetMCU(quint8(number(arguments, "value")));
        });
    addAction(
        table, "listenKeyboardMouse", "starts or stops the console's keyboard and mouse",
        {Parameter::flag("on")}, [](const QJsonObject& arguments) {
            if (flag(arguments, "on"))
                ECManager::instance()->startKeyboardMouseEventListen();
            else
                ECManager::instance()->stopKeyboardMouseEventListen();
        });
    table.add(
        {QStringLiteral("sendFile"),
         QStringLiteral("sends a file to the console"),
         {Parameter::text("file"), Parameter::choice("type", fileTypeNames()),
          Parameter::choice("operation", {QStringLiteral("write"), QStringLiteral("read")})
              .orElse(QStringLiteral("write")),
          Parameter::integer("packSize", 1, MaxPackSize).orElse(1024)},
         &sendFile});
}

void addSourceCommands(CommandTable& table)
{
    addAction(
        table, "switchSource", "switches the monitor's source",
        {Parameter::integer("source", dvi1, arm_left)}, [](const QJsonObject& arguments) {
            ECManager::instance()->switchSource(DVISource(number(arguments, "source")));
        });
    table.add(
        {QStringLiteral("askDVISignal"),
         QStringLiteral("asks for a DVI input's signal and tells what was last reported"),
         {Parameter::integer("index", 0, MaxByte)},
         &askDVISignal});
    addAction(
        table, "setTimeType", "changes the format of the time", {Parameter::integer("type", 0, MaxByte)},
        [](const QJsonObject& arguments) {
            ECManager::instance()->modifyTimeType(number(arguments, "type"));
        });
    addAction(
        table, "openPGMPrompt", "tells that the prompt for loading to program opens", {},
        [](const QJsonObject&) { ECManager::instance()->setOpenPGMPrompt(); });
    addAction(
        table, "answerPGMPrompt", "answers that prompt", {Parameter::flag("loadToPGM")},
        [](const QJsonObject& arguments) {
            ECManager::instance()->getOpenPGMPrompt(flag(arguments, "loadToPGM"));
        });
}

void addVirtualKeyCommands(CommandTable& table)
{
    const Parameter key = Parameter::integer("key", 0, 0xFFFF);
    addAction(
        table, "pressVirtualKey", "presses a key of the on-screen console", {key},
        &reportVirtualKey<ReportECButtonPressed>);
    addAction(table, "releaseVirtualKey", "releases it", {key}, &reportVirtualKey<ReportECButtonRelease>);
}

} // namespace

void addConsoleCommands(CommandTable& table)
{
    addLockCommands(table);
    addLightCommands(table);
    addSystemCommands(table);
    addSourceCommands(table);
    addVirtualKeyCommands(table);
}

} // namespace Orvane::ConsoleHost
