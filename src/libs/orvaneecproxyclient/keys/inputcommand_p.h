#pragma once

#include "inputcommand.h"
#include "inputkeyitems_p.h"
#include "keytable_p.h"

#include <atomic>
#include <memory>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

class InputCommandPrivate {
public:
    static constexpr int PageCount = 2;

    explicit InputCommandPrivate(InputCommand* command)
        : m_pCommand(command)
    {
    }

    static const std::vector<KeyRow<InputCommandPrivate>>& keys();

    // Key handlers.

    bool selectInputPressed(const quint32& ecKey);
    bool selectInputRelease(const quint32& ecKey);

    // Keys, labels and items.

    /// Binds the active device's inputs to its keys and gives the keys their looks.
    void updateECCommandItems();
    /// The same and a repaint.
    void refreshKeys(Enum::UpdateConsoleType type);
    /// Turns to the page of the input that the only selected layer shows; nothing else when not exactly one
    /// layer is selected.
    void followSelectedLayer(const BizModel::Device& device, const BizModel::Screen& screen);
    void updateInputName(const BizModel::Device& device, const BizModel::Interface& input);

    InputCommand* const m_pCommand;
    InputKeyItems m_items{quint16(InputCallbackType::eSelecInputCB)};

private:
    static void bindSource(const DevicePtr& device, const QList<WeakLayer>& selected, quint32 inputId);

    /// A press is being checked: see `InputTrial`.
    std::atomic<bool> m_bChecking{false};
};

} // namespace Orvane::ECProxy::Client::Internal
