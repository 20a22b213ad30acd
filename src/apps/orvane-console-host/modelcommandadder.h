#pragma once

#include "commandtable.h"
#include "control.h"

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

/// Adds commands that change something of a device, or of one of its screens.
class ModelCommandAdder {
public:
    using Control = MemoryModel::Control;
    using ScreenKey = MemoryModel::ScreenKey;
    using DeviceAction = Answer (*)(Control&, const QString& device, const Arguments&);
    using ScreenAction = Answer (*)(Control&, const QString& device, const ScreenKey&, const Arguments&);

    ModelCommandAdder(CommandTable& table, MemoryModel::MemoryModel& model)
        : m_table(table)
        , m_model(model)
    {
    }

    void device(
        const char* name, const char* purpose, std::vector<Parameter> parameters, DeviceAction action) const;
    void screen(
        const char* name, const char* purpose, std::vector<Parameter> parameters, ScreenAction action) const;

private:
    CommandTable& m_table;
    MemoryModel::MemoryModel& m_model;
};

} // namespace Orvane::ConsoleHost
