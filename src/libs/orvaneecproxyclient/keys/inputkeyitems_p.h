#pragma once

#include "ecconstants.h"
#include "itemupdates_p.h"
#include "selectkeys_p.h"

#include "bizmodel/fwd.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

/// The device's valid inputs, by ascending id.
QList<std::shared_ptr<BizModel::Input>> sortedInputs(const BizModel::Device& device);

/// Which input is on which key, and how the key looks: the items of the input keys, in line with the inputs
/// of the active device. Any thread.
class InputKeyItems {
public:
    /// The group's select keys, by their place on a page.
    const SelectKeys& keys() const { return m_keys; }

    /// Makes the items of all pages anew, for the keys of `config` with that function code.
    void make(const std::shared_ptr<EC::s_ECCommandConfig>& config, quint16 selectKeyCode, int pageCount);
    /// Binds the active device's inputs to the keys, by ascending id, and gives the keys their looks.
    void update();
    /// Frees the keys of a device that is gone.
    void forgetDevice(const BizModel::Device& device);

    /// The input on the key with that button index; empty when there is none.
    std::shared_ptr<BizModel::Input> findBindingInput(const BizModel::Device& device, int buttonIndex) const;
    /// The item of an input's key; empty when it has none.
    static std::shared_ptr<ECCommandItem> findItem(
        const BizModel::Device& device, const BizModel::Interface& input);
    /// Writes the input's name to its item; empty when it has none.
    std::shared_ptr<ECCommandItem> rename(const BizModel::Device& device, const BizModel::Interface& input);

private:
    /// An input as its key shows it.
    struct KeyInput {
        quint32 id = 0;
        QString name;
        ECLEDColor color = ECLEDColor::Off;
    };
    /// The inputs of the active device, by ascending id.
    struct DeviceInputs {
        QString ip;
        std::vector<KeyInput> inputs;
    };

    static std::optional<DeviceInputs> readActivedDevice();
    int bindInputs(const DeviceInputs& device) const;

    SelectKeys m_keys;
    /// Orders what key presses (decoder thread) and notifications (GUI thread) write to the items.
    ItemUpdates m_updates;
};

} // namespace Orvane::ECProxy::Client::Internal
