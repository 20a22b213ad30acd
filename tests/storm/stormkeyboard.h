#pragma once

#include "ec/eckeyboardconfig.h"

#include <memory>

/// The console that storm, operator and soak are played on: the example's, with fewer select keys, so that
/// every group has more than one page.
namespace Storm {

using namespace Orvane;

inline constexpr char ScreenGroup[] = "ScreenCommand";
inline constexpr char LayerGroup[] = "LayerCommand";
inline constexpr char InputGroup[] = "InputCommand";
inline constexpr char PresetGroup[] = "PresetCommand";
inline constexpr char NumberGroup[] = "NumberCommand";
inline constexpr char FunctionGroup[] = "FunctionCommand";

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

} // namespace Storm
