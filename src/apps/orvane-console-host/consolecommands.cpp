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

using Action = void (*)(const Arguments&);

/// A command that cannot fail once its arguments are right.
void addAction(
    CommandTable& table, const char* name, const char* purpose, std::vector<Parameter> parameters,
    Action action)
{
    table.add(
        {QLatin1String(name), QLatin1String(purpose), std::move(parameters),
         [action](const Arguments& arguments) {
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

void setLight(const Arguments& arguments)
{
    auto light = std::make_shared<LightControl>();
    light->LightType = quint8(arguments.choice("light", lightNames()));
    light->IsEnabled = arguments.flag("on") ? 1 : 0;
    light->Brightness = quint8(arguments.integer("brightness"));
    ECManager::instance()->updateLightControlState(light);
}

void setLuminance(const Arguments& arguments)
{
    auto luminance = std::make_shared<ScreenLuminance>();
    luminance->Brightness = quint8(arguments.integer("percent"));
    ECManager::instance()->updatepScreenLuminance(luminance);
}

void sendSystemTime(const Arguments& arguments)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString date = arguments.text("date");
    const QString time = arguments.text("time");
    ECManager::instance()->updateSystemTime(
        date.isEmpty() ? now.toString(QStringLiteral("yyyy-MM-dd")) : date,
        time.isEmpty() ? now.toString(QStringLiteral("hh:mm:ss")) : time);
}

Answer askDVISignal(const Arguments& arguments)
{
    const bool hasSignal = ECManager::instance()->dviInSignal(arguments.integer("index"));
    return Answer::done({{QStringLiteral("signal"), hasSignal}});
}

Answer sendFile(const Arguments& arguments)
{
    const auto type = eFlieType(arguments.choice("type", fileTypeNames()));
    const auto operation = arguments.text("operation") == QLatin1String("read") ? OpeReadFile : OpeWriteFile;
    const bool sent = ECManager::instance()->sendFile(
        arguments.text("file"), operation, type, quint16(arguments.integer("packSize")), true);
    return sent ? Answer::done() : Answer::refused(QStringLiteral("the file cannot be read"));
}

/// A key of an on-screen console goes the way of the console's own keys, on the GUI thread.
template <eECUpMessageTag tag> void reportVirtualKey(const Arguments& arguments)
{
    const quint32 key = Constants::VirtualKeyOffset + quint32(arguments.integer("key"));
    QByteArray value(sizeof(ECButtonOperState), '\0');
    Wire::store<quint32>(key, value.data() + offsetof(ECButtonOperState, ButtonKey));
    value[int(offsetof(ECButtonOperState, ButtonPressed))] = tag == ReportECButtonPressed ? Pressed : Release;
    ECManager::instance()->upTLVDecodeFinished(tag, value);
}

/// The application may learn of its monitor inputs before the console does.
void reportDVISignal(const Arguments& arguments)
{
    QByteArray value(sizeof(DVIInSignal), '\0');
    value[int(offsetof(DVIInSignal, Index))] = char(arguments.integer("index"));
    value[int(offsetof(DVIInSignal, Signal))] = arguments.flag("on") ? 1 : 0;
    ECManager::instance()->upTLVDecodeFinished(ReportDVIInSignal, value);
}

void addLockCommands(CommandTable& table)
{
    addAction(table, "lockKeypad", "locks the keys", {}, [](const Arguments&) { setKeypadLocked(true); });
    addAction(table, "unlockKeypad", "frees the keys", {}, [](const Arguments&) { setKeypadLocked(false); });
    addAction(table, "lockTBar", "locks the T-Bar", {}, [](const Arguments&) { setTBarLocked(true); });
    addAction(table, "unlockTBar", "frees the T-Bar", {}, [](const Arguments&) { setTBarLocked(false); });
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
    addAction(table, "closeAllLights", "darkens every key", {}, [](const Arguments&) {
        ECManager::instance()->closeAllButtonLED();
    });
    addAction(table, "repaint", "lights every key anew", {}, [](const Arguments&) {
        ECManager::instance()->slotOrvanePluginModeChanged();
        ECManager::instance()->showFunctionKeyLights();
    });
    addAction(
        table, "showPeripheral", "shows or hides the plug-in display", {Parameter::flag("visible")},
        [](const Arguments& arguments) {
            ECManager::instance()->controlPeripheralState(arguments.flag("visible"));
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
        [](const Arguments& arguments) {
            ECManager::instance()->updateSystemIP(
                arguments.text("first"), arguments.text("second"), arguments.text("third"),
                arguments.text("fourth"));
        });
    addAction(
        table, "requestConsoleIP", "asks for a console's network settings",
        {Parameter::integer("index", 0, MaxByte)}, [](const Arguments& arguments) {
            ECManager::instance()->reqECDeviceIP(quint8(arguments.integer("index")));
        });
    addAction(
        table, "setIPMode", "sets how a console gets its address",
        {Parameter::integer("index", 0, MaxByte), Parameter::integer("mode", 0, MaxByte)},
        [](const Arguments& arguments) {
            ECManager::instance()->setIPMode(
                quint8(arguments.integer("index")), quint8(arguments.integer("mode")));
        });
    addAction(
        table, "restartConsole", "restarts the console's service",
        {Parameter::integer("value", 0, MaxByte).orElse(1)}, [](const Arguments& arguments) {
            ECManager::instance()->restartEventController(quint8(arguments.integer("value")));
        });
    addAction(
        table, "resetMCU", "resets the console's microcontroller",
        {Parameter::integer("value", 0, MaxByte).orElse(1)}, [](const Arguments& arguments) {
            ECManager::instance()->resetMCU(quint8(arguments.integer("value")));
        });
    addAction(
        table, "listenKeyboardMouse", "starts or stops the console's keyboard and mouse",
        {Parameter::flag("on")}, [](const Arguments& arguments) {
            if (arguments.flag("on"))
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
        {Parameter::integer("source", dvi1, arm_left)}, [](const Arguments& arguments) {
            ECManager::instance()->switchSource(DVISource(arguments.integer("source")));
        });
    table.add(
        {QStringLiteral("askDVISignal"),
         QStringLiteral("asks for a DVI input's signal and tells what was last reported"),
         {Parameter::integer("index", 0, MaxByte)},
         &askDVISignal});
    addAction(
        table, "reportDVISignal", "reports a DVI input's signal on the GUI thread",
        {Parameter::integer("index", 0, MaxByte), Parameter::flag("on")}, &reportDVISignal);
    addAction(
        table, "setTimeType", "changes the format of the time", {Parameter::integer("type", 0, MaxByte)},
        [](const Arguments& arguments) { ECManager::instance()->modifyTimeType(arguments.integer("type")); });
    addAction(
        table, "openPGMPrompt", "tells that the prompt for loading to program opens", {},
        [](const Arguments&) { ECManager::instance()->setOpenPGMPrompt(); });
    addAction(
        table, "answerPGMPrompt", "answers that prompt", {Parameter::flag("loadToPGM")},
        [](const Arguments& arguments) {
            ECManager::instance()->getOpenPGMPrompt(arguments.flag("loadToPGM"));
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
