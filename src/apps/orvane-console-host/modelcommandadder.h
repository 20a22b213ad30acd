#pragma once

#include "commandtable.h"
#include "control.h"
#include "modelpicture.h"

#include <QRect>

#include <tuple>
#include <type_traits>

namespace Orvane::MemoryModel {
class MemoryModel;
}

namespace Orvane::ConsoleHost {

/// Highest number of a layer, an input, an output, ...
constexpr qint64 MaxId = 0xFFFFFFFF;

/// Every command on a device may name another one than the active.
Parameter deviceParameter();
QString deviceOf(const Arguments& arguments, MemoryModel::MemoryModel& model);

/// What a change that the model carries out, or refuses, comes to.
Answer answerOf(const MemoryModel::ControlResult& result);

/// The four parameters of a window in pixels of the mosaic, after others.
std::vector<Parameter> withWindow(std::vector<Parameter> parameters);
QRect windowOf(const Arguments& arguments);

/// The kind of preset that is called "type".
Parameter presetTypeParameter();

/// Screens by their names; those that are none have the id 0.
QList<MemoryModel::ScreenKey> screensOf(const QStringList& names);

/// The argument as a call takes it.
template <typename Value> Value argumentAs(const Arguments& arguments, const Parameter& parameter)
{
    const QByteArray latin1 = parameter.name().toLatin1();
    const char* const name = latin1.constData();
    if constexpr (std::is_same_v<Value, bool>)
        return arguments.flag(name);
    else if constexpr (std::is_same_v<Value, MemoryModel::FileType>)
        return arguments.text(name) == QLatin1String("PGM") ? Value::PresetPGM : Value::PresetPVW;
    else if constexpr (std::is_enum_v<Value>)
        return arguments.choice<Value>(name);
    else if constexpr (std::is_arithmetic_v<Value>)
        return Value(arguments.number(name));
    else if constexpr (std::is_same_v<Value, MemoryModel::ScreenKey>)
        return screenOfName(arguments.text(name));
    else if constexpr (std::is_same_v<Value, QList<MemoryModel::ScreenKey>>)
        return screensOf(arguments.texts(name));
    else if constexpr (std::is_same_v<Value, QList<quint32>>)
        return arguments.numbers(name);
    else if constexpr (std::is_same_v<Value, QRect>)
        return windowOf(arguments);
    else
        return arguments.text(name);
}

/// Adds commands that change something of a device, or of one of its screens. A change is a call of
/// `Control`; the parameters are those of the call, in its order.
class ModelCommandAdder {
public:
    using Control = MemoryModel::Control;
    using ScreenKey = MemoryModel::ScreenKey;
    using ControlResult = MemoryModel::ControlResult;
    using DeviceAction = std::function<Answer(Control&, const QString& device, const Arguments&)>;
    using ScreenAction =
        std::function<Answer(Control&, const QString& device, const ScreenKey&, const Arguments&)>;
    template <typename... Values> using DeviceChange = ControlResult (Control::*)(const QString&, Values...);
    template <typename... Values>
    using ScreenChange = ControlResult (Control::*)(const QString&, ScreenKey, Values...);

    ModelCommandAdder(CommandTable& table, MemoryModel::MemoryModel& model)
        : m_table(table)
        , m_model(model)
    {
    }

    void device(
        const char* name, const char* purpose, std::vector<Parameter> parameters, DeviceAction action) const;
    void screen(
        const char* name, const char* purpose, std::vector<Parameter> parameters, ScreenAction action) const;

    template <typename... Values>
    void device(
        const char* name, const char* purpose, const std::vector<Parameter>& parameters,
        DeviceChange<Values...> change) const
    {
        const DeviceAction action =
            [change, parameters](Control& control, const QString& device, const Arguments& arguments) {
                return call<Values...>(parameters, arguments, [&](const auto&... values) {
                    return (control.*change)(device, values...);
                });
            };
        this->device(name, purpose, parameters, action);
    }

    template <typename... Values>
    void screen(
        const char* name, const char* purpose, const std::vector<Parameter>& parameters,
        ScreenChange<Values...> change) const
    {
        const ScreenAction action = [change, parameters](
                                        Control& control, const QString& device, const ScreenKey& screen,
                                        const Arguments& arguments) {
            return call<Values...>(parameters, arguments, [&](const auto&... values) {
                return (control.*change)(device, screen, values...);
            });
        };
        this->screen(name, purpose, parameters, action);
    }

private:
    template <typename... Values, typename Change>
    static Answer call(const std::vector<Parameter>& parameters, const Arguments& arguments, Change change)
    {
        [[maybe_unused]] auto next = parameters.cbegin(); // a call may take nothing more
        const std::tuple<std::decay_t<Values>...> values{
            argumentAs<std::decay_t<Values>>(arguments, *next++)...};
        return answerOf(std::apply(change, values));
    }

    CommandTable& m_table;
    MemoryModel::MemoryModel& m_model;
};

} // namespace Orvane::ConsoleHost
