#include "ec/eckeyfunctions.h"

#include <QHash>

namespace Orvane::EC {

namespace {

const QString NoFunction = QStringLiteral("no function");

QHash<QString, QStringList> functionTable()
{
    const auto names = [](std::initializer_list<const char*> texts) {
        QStringList list{NoFunction};
        for (const char* text : texts)
            list += QLatin1String(text);
        return list;
    };
    return {
        {QStringLiteral("ScreenCommand"),
         names(
             {"select", "page up", "page down", "freeze PGM", "match PGM", "fade to black", "cut", "take",
              "mix type", "transition time up", "swap", "no function", "no function", "PGM edit",
              "transition time down"})},
        {QStringLiteral("LayerCommand"),
         names(
             {"select", "page up", "page down", "remove selected", "clear all (hold)", "to the front",
              "to the back", "capacity", "full screen"})},
        {QStringLiteral("InputCommand"), names({"select", "page up", "page down"})},
        {QStringLiteral("PresetCommand"),
         names(
             {"select", "page up", "page down", "remove", "clear all (hold)", "save", "no function",
              "no function", "load to PGM or PVW"})},
        {QStringLiteral("NumberCommand"), names({"digit", "Enter", "Back", "Plus", "Minus"})},
        {QStringLiteral("FunctionCommand"),
         names(
             {"save device data", "lock T-Bar (hold)", "lock keypad (hold)", "switch source", "copy layers",
              "copy and mirror layers", "DVI input light"})}};
}

} // namespace

QStringList keyFunctionNames(const QString& groupName)
{
    static const QHash<QString, QStringList> table = functionTable();
    return table.value(groupName);
}

QString keyFunctionName(const QString& groupName, quint16 code)
{
    return keyFunctionNames(groupName).value(code);
}

} // namespace Orvane::EC
