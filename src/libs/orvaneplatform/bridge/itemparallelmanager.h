#pragma once

#include "orvaneplatform/bridge/deviceitem.h"
#include "orvaneplatform/bridge/guiparallelmanager.h"

#include <list>
#include <mutex>

namespace Orvane::Bridge {

/// The requests of a model that is made of items. Screens are busy from the key press until your model ends
/// the request; then the flags change, or the scenes are announced, and the request completes.
///
/// The hooks are what your model does. They are called on the GUI thread with the selected screens, for a
/// transition those of them that are idle, never with none; end @p end when it is done, at once or later, on
/// any thread. A failure leaves all as it was. What is not overridden fails.
class ORVANEPLATFORM_EXPORT ItemParallelManager : public GuiParallelManager {
public:
    /// Those that a hook works on.
    using ScreenList = DeviceItem::ScreenList;

    ItemParallelManager();
    ~ItemParallelManager() override;

protected:
    /// @name Transitions
    /// Whoever keeps layers in the items changes the scenes before the end, by `ScreenItem::setLayerList`.
    /// @{

    /// Runs the screens' transition to program.
    virtual void take(const ScreenList& screens, OpenRequest end);
    /// Takes the screens to program at once.
    virtual void cut(const ScreenList& screens, OpenRequest end);
    /// Copies the screens' program to their preview.
    virtual void match(const ScreenList& screens, OpenRequest end);
    /// @}

    /// @name Flags
    /// @{

    /// Freezes the screens' program, or lets it go on.
    virtual void freeze(const ScreenList& screens, bool frozen, OpenRequest end);
    /// Fades the screens' program to black, or back.
    virtual void fadeToBlack(const ScreenList& screens, bool black, OpenRequest end);
    /// Whether takes exchange program and preview.
    virtual void setSwap(DeviceItem& device, bool swap, OpenRequest end);
    /// Whether presets load to program.
    virtual void setLoadToProgram(DeviceItem& device, bool toProgram, OpenRequest end);
    /// @}

private:
    /// The idle ones among the selected screens, from the press until the task is carried out.
    struct Begun {
        size_t kind;
        std::shared_ptr<DeviceItem> device;
        ScreenList screens;
    };

    void begin(const ParallelControl::ParallelTask& task) final;
    void perform(const ParallelControl::ParallelTask& task, OpenRequest end) final;
    void performTransition(
        const ParallelControl::ParallelTask& task, const ScreenList& screens, const OpenRequest& end);
    void performFlag(
        const ParallelControl::ParallelTask& task, const std::shared_ptr<DeviceItem>& device,
        const ScreenList& screens, const OpenRequest& end);
    ScreenList takeBegun(
        const ParallelControl::ParallelTask& task, const std::shared_ptr<DeviceItem>& device);

    /// Guards m_begun, which callers fill and the GUI thread empties.
    std::mutex m_mutex;
    std::list<Begun> m_begun;
};

} // namespace Orvane::Bridge
