#include "modelcommandadder.h"

#include "bizmodel/device.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "modelpicture.h"

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
    return result ? Answer::done() : Answer::refused(result.reason());
}

void ModelCommandAdder::device(
    const char* name, const char* purpose, std::vector<Parameter> parameters, DeviceAction action) const
{
    parameters.push_back(deviceParameter());
    m_table.add(
        {QLatin1String(name), QLatin1String(purpose), std::move(parameters),
         [action, model = &m_model](const Arguments& arguments) {
             return action(model->control(), deviceOf(arguments, *model), arguments);
         }});
}

void ModelCommandAdder::screen(
    const char* name, const char* purpose, std::vector<Parameter> parameters, ScreenAction action) const
{
    parameters.insert(parameters.begin(), Parameter::text("screen"));
    parameters.push_back(deviceParameter());
    m_table.add(
        {QLatin1String(name), QLatin1String(purpose), std::move(parameters),
         [action, model = &m_model](const Arguments& arguments) {
             const QString named = arguments.text("screen");
             const ScreenKey screen = screenOfName(named);
             if (screen.id == 0)
                 return Answer::refused(QStringLiteral("there is no screen ") + named);
             return action(model->control(), deviceOf(arguments, *model), screen, arguments);
         }});
}

} // namespace Orvane::ConsoleHost
