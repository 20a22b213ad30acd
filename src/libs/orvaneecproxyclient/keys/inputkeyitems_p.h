#pragma once

#include "keygroup_p.h"
#include "modelpointers.h"

#include <QString>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

/// Inputs by ascending id, with the id.
using InputsById = std::vector<std::pair<quint32, InputPtr>>;

/// The device's valid inputs.
InputsById sortedInputs(const BizModel::Device& device);

/// Which input is on which key, and how the key looks: the items of the input keys, in line with the inputs
/// of the active device. Any thread.
class InputKeyItems : public KeyGroup {
public:
    explicit InputKeyItems(quint16 selectKeyCode)
        : KeyGroup(KeyboardType::Input, selectKeyCode)
    {
    }

    /// Binds the active device's inputs to the keys, by ascending id, and gives the keys their looks.
    void update();
    /// The input on the key with that button index; empty when there is none.
    InputPtr findBindingInput(const BizModel::Device& device, int buttonIndex) const;
    /// The item of an input's key; empty when it has none.
    ECCommandItemPtr findItem(const BizModel::Device& device, const BizModel::Interface& input) const;
    /// Writes the input's name to its item; empty when it has none.
    ECCommandItemPtr rename(const BizModel::Device& device, const BizModel::Interface& input);

private:
    /// An input as its key shows it.
    struct KeyInput {
        quint32 id = 0;
        QString name;
        ECLEDColor color = ECLEDColor::Off;
    };
    /// The inputs of the active device that get a key, by ascending id.
    struct DeviceInputs {
        QString ip;
        std::vector<KeyInput> inputs;
        int withoutKey = 0; ///< how many others there are
    };

    std::optional<DeviceInputs> readActivedDevice() const;
    void bindInputs(const DeviceInputs& device) const;
};

} // namespace Orvane::ECProxy::Client::Internal
