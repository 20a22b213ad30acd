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

Answer answerOf(bool isDone)
{
    return isDone ? Answer::done()
                  : Answer::refused(QStringLiteral("there is no such thing, or it cannot be changed so now"));
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
             const ScreenKey screen = screenOfName(arguments.text("screen"));
             return action(model->control(), deviceOf(arguments, *model), screen, arguments);
         }});
}

} // namespace Orvane::ConsoleHost
