#include "modelcommandadder.h"

#include "bizmodel/device.h"
#include "memorydevicelist.h"
#include "memorymodel.h"

namespace Orvane::ConsoleHost {

Parameter deviceParameter()
{
    return Parameter::text("device").orElse(QString());
}

QString deviceOf(const Arguments& arguments, MemoryModel::MemoryModel& model)
{
    QString named = arguments.text("device");
    if (!named.isEmpty())
        return named;
    const auto active = model.deviceList().activedDevice().lock();
    return active ? active->ipMacSn() : QString();
}

Answer answerOf(const MemoryModel::ControlResult& result)
{
    return Answer::of(result.reason());
}

std::vector<Parameter> withWindow(std::vector<Parameter> parameters)
{
    constexpr qint64 farthest = 1000000;
    for (const char* name : {"x", "y"})
        parameters.push_back(Parameter::integer(name, -farthest, farthest));
    for (const char* name : {"width", "height"})
        parameters.push_back(Parameter::integer(name, 1, farthest));
    return parameters;
}

QRect windowOf(const Arguments& arguments)
{
    return {
        arguments.integer("x"), arguments.integer("y"), arguments.integer("width"),
        arguments.integer("height")};
}

Parameter presetTypeParameter()
{
    return Parameter::choice("type", {QStringLiteral("PVW"), QStringLiteral("PGM")})
        .orElse(QStringLiteral("PVW"));
}

QList<MemoryModel::ScreenKey> screensOf(const QStringList& names)
{
    QList<MemoryModel::ScreenKey> screens;
    for (const QString& name : names)
        screens.append(screenOfName(name));
    return screens;
}

void ModelCommandAdder::device(
    const char* name, const char* purpose, std::vector<Parameter> parameters, DeviceAction action) const
{
    parameters.push_back(deviceParameter());
    m_table.add(
        name, purpose, std::move(parameters),
        [action = std::move(action), model = &m_model](const Arguments& arguments) {
            return action(model->control(), deviceOf(arguments, *model), arguments);
        });
}

void ModelCommandAdder::screen(
    const char* name, const char* purpose, std::vector<Parameter> parameters, ScreenAction action) const
{
    parameters.insert(parameters.begin(), Parameter::text("screen"));
    parameters.push_back(deviceParameter());
    m_table.add(
        name, purpose, std::move(parameters),
        [action = std::move(action), model = &m_model](const Arguments& arguments) {
            const QString named = arguments.text("screen");
            const ScreenKey screen = screenOfName(named);
            if (screen.id == 0)
                return Answer::refused(QStringLiteral("there is no screen ") + named);
            return action(model->control(), deviceOf(arguments, *model), screen, arguments);
        });
}

} // namespace Orvane::ConsoleHost
