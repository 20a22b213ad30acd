#pragma once

#include "modelrig.h"

#include "ec/eckeyboardconfig.h"

#include <QList>
#include <QString>

#include <memory>

/// The console that the storm is played on: the example's, with fewer select keys, so that every group has
/// more than one page.
namespace Storm {

using namespace Orvane;
using namespace Orvane::ECProxy::Client;

constexpr auto ScreenGroup = "ScreenCommand";
constexpr auto LayerGroup = "LayerCommand";
constexpr auto InputGroup = "InputCommand";
constexpr auto PresetGroup = "PresetCommand";
constexpr auto NumberGroup = "NumberCommand";
constexpr auto FunctionGroup = "FunctionCommand";

class Keyboard {
public:
    /// Empty when the file cannot be read.
    explicit Keyboard(const QString& path);

    std::shared_ptr<EC::s_ECKeyboardConfig> config() const { return m_pConfig; }
    const EC::s_ECCommandConfig& group(const char* name) const;
    /// The first key of the group with that function.
    template <typename CallbackType>
    const EC::s_ECButtonConfig& key(const char* name, CallbackType type) const
    {
        return *group(name).findECButtonConfigByOrvaneKey(quint16(type));
    }

private:
    std::shared_ptr<EC::s_ECKeyboardConfig> m_pConfig;
};

/// How the console differs from what it should show of the model; empty when it does not. All keys are up and
/// nothing is under way.
QString difference(TestSupport::ModelRig& rig, const Keyboard& keyboard);

} // namespace Storm
