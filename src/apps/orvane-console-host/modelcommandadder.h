#pragma once

#include "commandtable.h"
#include "control.h"
#include "modelpicture.h"

#include <QRect>

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

/// @name The arguments that calls of `Control` take besides
/// @{
template <>
inline MemoryModel::FileType argumentAs<MemoryModel::FileType>(const Arguments& arguments, const char* name)
{
    return arguments.text(name) == QLatin1String("PGM") ? MemoryModel::FileType::PresetPGM
                                                        : MemoryModel::FileType::PresetPVW;
}
template <>
inline MemoryModel::ScreenKey argumentAs<MemoryModel::ScreenKey>(const Arguments& arguments, const char* name)
{
    return screenOfName(arguments.text(name));
}
template <>
inline QList<MemoryModel::ScreenKey> argumentAs<QList<MemoryModel::ScreenKey>>(
    const Arguments& arguments, const char* name)
{
    return screensOf(arguments.texts(name));
}
template <> inline QRect argumentAs<QRect>(const Arguments& arguments, const char*)
{
    return windowOf(arguments);
}
/// @}

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
                return answerOf(callWith<Values...>(parameters, arguments, [&](const auto&... values) {
                    return (control.*change)(device, values...);
                }));
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
            return answerOf(callWith<Values...>(parameters, arguments, [&](const auto&... values) {
                return (control.*change)(device, screen, values...);
            }));
        };
        this->screen(name, purpose, parameters, action);
    }

private:
    CommandTable& m_table;
    MemoryModel::MemoryModel& m_model;
};

} // namespace Orvane::ConsoleHost
