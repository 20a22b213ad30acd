#pragma once

#include "keygroup_p.h"
#include "modelpointers.h"

#include <memory>

namespace Orvane::ECProxy::Client::Internal {

/// Color of a select key that has a screen.
inline ECLEDColor screenKeyColor(bool selected)
{
    return selected ? ECLEDColor::Green : ECLEDColor::Yellow;
}

/// What the item store knows a screen by. Regular screen 1 is not AUX screen 1.
ECObjectId screenObjectId(const BizModel::Screen& screen);

/// Which screen sits on which select key.
///
/// A screen's own console position decides; where it has none, or another screen has that key already, it
/// keeps the key that it has or gets the lowest free one. The bindings themselves are the item store's; this
/// class changes them so that nobody finds a key without its screen in the middle of a change, and that the
/// key of a screen that is still being created is not given to another.
///
/// Any thread may call any member. Held by shared pointer: a screen's creation ends on a thread of the model,
/// perhaps after the command is gone.
class ScreenBindings : public KeyGroup {
public:
    explicit ScreenBindings(quint16 selectKeyCode)
        : KeyGroup(KeyboardType::Screen, selectKeyCode)
    {
    }

    /// Brings the keys of the device in line with its screens: place, color, label.
    void rebuild(const DevicePtr& device);

    /// The device's screen on the key with that button index; empty when it has none.
    ScreenPtr find(const DevicePtr& device, int buttonIndex) const;

    /// Keeps a free key for a screen that is about to be created. One at a time. False when the key has been
    /// taken.
    bool reserve(const DevicePtr& device, const ScreenPtr& screen, const KeyPlace& place);
    /// The screen has been created: binds the reserved key to it.
    void bindReserved();
    /// The creation has failed. False when the key was not bound to the screen any more.
    bool unbindReserved();

    /// Unbinds the key of a screen that is gone.
    void forgetScreen(const BizModel::Device& device, const BizModel::Screen& screen);

private:
    struct Reservation {
        QString deviceIp;
        ScreenPtr screen;
        /// At the time of the reservation: the final one may come with the creation.
        ECObjectId id;
        KeyPlace place;
    };

    /// False when the key is not bound to the screen any more. Call it within `writeItems()`.
    bool unbindKey(const Reservation& reservation) const;

    // Touched only while items are read or written, which guards it.
    Reservation m_reservation;
};

} // namespace Orvane::ECProxy::Client::Internal
