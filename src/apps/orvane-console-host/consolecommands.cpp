#include "consolecommands.h"

#include "commandtable.h"
#include "ecconstants.h"
#include "ecmanager.h"
#include "keylist.h"
#include "lockcontrol.h"
#include "reportinjector.h"

#include <QDateTime>
#include <QJsonArray>

#include <algorithm>

namespace Orvane::ConsoleHost {

using namespace ECProxy::Client;
using ConsolePanel::DviReport;
using ConsolePanel::KeyReport;
using ConsolePanel::LockReport;
using ConsolePanel::LockTarget;

namespace {

constexpr qint64 MaxByte = 255;
constexpr qint64 MaxPercent = 100;
constexpr qint64 MaxPackSize = 0xFFFF;
constexpr qint64 MaxPosition = 0xFFFFFFFF;

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

QJsonObject askDVISignal(const Arguments& arguments)
{
    return {{QStringLiteral("signal"), ECManager::instance()->dviInSignal(arguments.integer("index"))}};
}

Answer sendFile(const Arguments& arguments)
{
    const auto type = eFlieType(arguments.choice("type", fileTypeNames()));
    const auto operation = arguments.text("operation") == QLatin1String("read") ? OpeReadFile : OpeWriteFile;
    const bool sent = ECManager::instance()->sendFile(
        arguments.text("file"), operation, type, quint16(arguments.integer("packSize")), true);
    return sent ? Answer::done() : Answer::refused(QStringLiteral("the file cannot be read"));
}

Answer answerOfInjection(bool isTaken)
{
    return isTaken ? Answer::done() : Answer::refused(QStringLiteral("the console's link is not open"));
}

/// A command that reports something in the console's place.
template <typename MakeReport>
void addReport(
    CommandTable& table, const char* name, const char* purpose, std::vector<Parameter> parameters,
    MakeReport makeReport)
{
    table.add(name, purpose, std::move(parameters), [makeReport](const Arguments& arguments) {
        return answerOfInjection(injectReport(makeReport(arguments)));
    });
}

void setPeripheral(const Arguments& arguments)
{
    auto peripheral = std::make_shared<PeripheralControl>();
    peripheral->ScreenNum = quint8(arguments.integer("screens"));
    peripheral->TargetScreenIndex = quint8(arguments.integer("target"));
    const QList<quint32> resolution = arguments.numbers("resolution");
    const int places = int(std::size(peripheral->resolution));
    for (int i = 0; i < std::min(resolution.size(), places); ++i)
        peripheral->resolution[i] = quint16(resolution.at(i));
    ECManager::instance()->updateSetPeripheralDataChange(peripheral);
}

void addLockCommands(CommandTable& table)
{
    table.add("lockKeypad", "locks the keys", {}, [] { setKeypadLocked(true); });
    table.add("unlockKeypad", "frees the keys", {}, [] { setKeypadLocked(false); });
    table.add("lockTBar", "locks the T-Bar", {}, [] { setTBarLocked(true); });
    table.add("unlockTBar", "frees the T-Bar", {}, [] { setTBarLocked(false); });
}

void addLightCommands(CommandTable& table, ECManager& manager)
{
    table.add(
        "setLight", "switches one of the console's lights",
        {Parameter::choice("light", lightNames()), Parameter::flag("on"),
         Parameter::integer("brightness", 0, MaxByte).orElse(10)},
        &setLight);
    table.add(
        "setLuminance", "sets the brightness of the console's display",
        {Parameter::integer("percent", 0, MaxPercent)}, &setLuminance);
    table.add("closeAllLights", "darkens every key", {}, manager, &ECManager::closeAllButtonLED);
    table.add("repaint", "lights every key anew", {}, [&manager] {
        manager.slotOrvanePluginModeChanged();
        manager.showFunctionKeyLights();
    });
    table.add(
        "showPeripheral", "shows or hides the plug-in display", {Parameter::flag("visible")}, manager,
        &ECManager::controlPeripheralState);
    table.add(
        "setPeripheral", "tells the plug-in display the screens and their resolutions",
        {Parameter::integer("screens", 0, MaxByte), Parameter::integer("target", 0, MaxByte),
         Parameter::numbers("resolution").orElse(QJsonArray())},
        &setPeripheral);
}

void addSystemCommands(CommandTable& table, ECManager& manager)
{
    const Parameter index = Parameter::integer("index", 0, MaxByte);
    const Parameter value = Parameter::integer("value", 0, MaxByte).orElse(1);
    table.add(
        "sendSystemTime", "sets the console's clock, to this machine's time where none is given",
        {Parameter::text("date").orElse(QString()), Parameter::text("time").orElse(QString())},
        &sendSystemTime);
    table.add(
        "sendSystemIP", "tells the console the application's network settings",
        {Parameter::text("first"), Parameter::text("second"), Parameter::text("third"),
         Parameter::text("fourth")},
        manager, &ECManager::updateSystemIP);
    table.add(
        "requestConsoleIP", "asks for a console's network settings", {index}, manager,
        &ECManager::reqECDeviceIP);
    table.add(
        "setIPMode", "sets how a console gets its address", {index, Parameter::integer("mode", 0, MaxByte)},
        manager, &ECManager::setIPMode);
    table.add(
        "restartConsole", "restarts the console's service", {value}, manager,
        &ECManager::restartEventController);
    table.add("resetMCU", "resets the console's microcontroller", {value}, manager, &ECManager::resetMCU);
    table.add(
        "listenKeyboardMouse", "starts or stops the console's keyboard and mouse", {Parameter::flag("on")},
        [&manager](const Arguments& arguments) {
            if (arguments.flag("on"))
                manager.startKeyboardMouseEventListen();
            else
                manager.stopKeyboardMouseEventListen();
        });
    table.add(
        "sendFile", "sends a file to the console",
        {Parameter::text("file"), Parameter::choice("type", fileTypeNames()),
         Parameter::choice("operation", {QStringLiteral("write"), QStringLiteral("read")})
             .orElse(QStringLiteral("write")),
         Parameter::integer("packSize", 0, MaxPackSize).orElse(1024)},
        &sendFile);
}

void addSourceCommands(CommandTable& table, ECManager& manager)
{
    table.add(
        "switchSource", "switches the monitor's source", {Parameter::integer("source", dvi1, arm_left)},
        [&manager](const Arguments& arguments) {
            manager.switchSource(DVISource(arguments.integer("source")));
        });
    table.add(
        "askDVISignal", "asks for a DVI input's signal and tells what was last reported",
        {Parameter::integer("index", 0, MaxByte)}, &askDVISignal);
    table.add(
        "setTimeType", "changes the format of the time", {Parameter::integer("type", 0, MaxByte)}, manager,
        &ECManager::modifyTimeType);
    table.add(
        "openPGMPrompt", "tells that the prompt for loading to program opens", {}, manager,
        &ECManager::setOpenPGMPrompt);
    table.add(
        "answerPGMPrompt", "answers that prompt", {Parameter::flag("loadToPGM")}, manager,
        &ECManager::getOpenPGMPrompt);
}

const QStringList& directionNames() // in the order of the two values that the T-Bar reports
{
    static const QStringList names = {QStringLiteral("up"), QStringLiteral("down")};
    return names;
}

Answer injectHex(const Arguments& arguments)
{
    const QByteArray digits = arguments.text("hex").toLatin1();
    const QByteArray bytes = QByteArray::fromHex(digits);
    // fromHex skips what is no digit, so a fault shows when the bytes are turned back.
    if (bytes.toHex() != digits.toLower())
        return Answer::refused(QStringLiteral("\"hex\" must be pairs of hexadecimal digits"));
    return answerOfInjection(injectBytes(bytes));
}

/// What the console would report, on the decoder's thread as the console's own reports.
void addReportCommands(CommandTable& table)
{
    addReport(
        table, "reportDVISignal", "reports a DVI input's signal in the console's place",
        {Parameter::integer("index", 0, MaxByte), Parameter::flag("on")}, [](const Arguments& arguments) {
            const DVIInSignal input{quint8(arguments.integer("index")), quint8(arguments.flag("on"))};
            return DviReport{{input}};
        });
    addReport(
        table, "reportTBar", "reports a position of the T-Bar in the console's place",
        {Parameter::integer("position", 0, MaxPosition), Parameter::choice("direction", directionNames())},
        [](const Arguments& arguments) {
            ECTBarValue position;
            position.Value = arguments.id("position");
            position.IsBottomToTop =
                arguments.choice("direction", directionNames()) == 0 ? BottomToTop : TopToBottom;
            return position;
        });
    addReport(
        table, "reportTBarLock", "reports the T-Bar's lock in the console's place",
        {Parameter::flag("locked")}, [](const Arguments& arguments) {
            return LockReport{LockTarget::TBar, arguments.flag("locked")};
        });
    addReport(
        table, "reportKeypadLock", "reports the keypad's lock in the console's place",
        {Parameter::flag("locked")}, [](const Arguments& arguments) {
            return LockReport{LockTarget::Keypad, arguments.flag("locked")};
        });
    table.add(
        "injectBytes", "hands the bytes to the decoder as a datagram of the console",
        {Parameter::text("hex")}, &injectHex);
}

void addKeyCommands(CommandTable& table, const EC::s_ECKeyboardConfig& keyboard)
{
    const Parameter key = Parameter::integer("key", 0, 0xFFFF);
    const auto report = [&keyboard](bool pressed) {
        return [&keyboard, pressed](const Arguments& arguments) {
            const quint32 appKey = arguments.id("key");
            if (!hasAppKey(keyboard, appKey))
                return Answer::refused(
                    QStringLiteral("no key has the number %1 in the application").arg(appKey));
            return answerOfInjection(injectReport(KeyReport{pressed, Constants::VirtualKeyOffset + appKey}));
        };
    };
    table.add("pressVirtualKey", "presses a key of the on-screen console", {key}, report(true));
    table.add("releaseVirtualKey", "releases it", {key}, report(false));
    table.add("keys", "tells every key with its function and what it is bound to", {}, [&keyboard] {
        return QJsonObject{{QStringLiteral("keys"), keysToJson(keyboard)}};
    });
}

} // namespace

void addConsoleCommands(CommandTable& table, const EC::s_ECKeyboardConfig& keyboard)
{
    ECManager& manager = *ECManager::instance();
    addLockCommands(table);
    addLightCommands(table, manager);
    addSystemCommands(table, manager);
    addSourceCommands(table, manager);
    addReportCommands(table);
    addKeyCommands(table, keyboard);
}

} // namespace Orvane::ConsoleHost
