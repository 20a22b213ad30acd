#include "screencommandbindings_p.h"

#include "ecconsolemanager.h"
#include "log_p.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"

#include <QMap>
#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// What a key shows of a screen: a snapshot of the model.
struct ScreenState {
    ScreenPtr screen;
    ECObjectId id;
    int uiScreenIndex = -1;
    ECLEDColor color = ECLEDColor::Off;
    QString name;
};

ScreenState stateOf(const ScreenPtr& screen)
{
    return {
        screen, screenObjectId(*screen), screen->uiScreenIndex(), screenKeyColor(screen->selected()),
        screen->name()};
}

std::vector<ScreenState> screensOf(const BizModel::Device& device)
{
    std::vector<ScreenState> states;
    const auto screens = device.screens(BizModel::Enum::Screen::RegularAndAUXScreens);
    for (const auto& weakScreen : screens) {
        if (const auto screen = weakScreen.lock())
            states.push_back(stateOf(screen));
    }
    return states;
}

/// One select key on one page, and the screen that belongs there.
struct Place {
    ECCommandItemPtr item;
    ECObjectIdList bound; ///< as it is before the change
    const ScreenState* screen = nullptr;
    /// Kept for a screen that is being created.
    bool reserved = false;
};
using Places = QMap<int, Place>; // by button index

Places placesOf(const KeyGroup& keys, const QString& ip)
{
    Places places;
    const auto items = keys.items(ip);
    for (const auto& item : items) {
        Place& place = places[keys.placeOf(*item).buttonIndex];
        if (!place.item)
            place = {item, item->getObjectIdList()};
    }
    return places;
}

bool settle(Place& place, const ScreenState& screen)
{
    if (place.screen || place.reserved)
        return false;
    place.screen = &screen;
    return true;
}

bool settleAt(Places& places, int buttonIndex, const ScreenState& screen)
{
    const auto place = places.find(buttonIndex);
    return place != places.end() && settle(*place, screen);
}

using Screens = std::vector<const ScreenState*>; // those without a place so far

template <typename SettleOne> void settleEach(Screens& screens, SettleOne settleOne)
{
    screens.erase(std::remove_if(screens.begin(), screens.end(), settleOne), screens.end());
}

/// Before all rules: the reserved key, if there is one, is its screen's alone. Returns the other screens.
Screens settleReserved(
    const std::vector<ScreenState>& states, Places::iterator reserved, const ScreenPtr& screen,
    Places& places)
{
    if (reserved != places.end())
        reserved->reserved = true;
    Screens others;
    for (const ScreenState& state : states) {
        if (reserved != places.end() && state.screen == screen)
            reserved->screen = &state;
        else
            others.push_back(&state);
    }
    return others;
}

/// First rule: the console position that the screen itself names.
void settleOnOwnPosition(Screens& screens, Places& places)
{
    settleEach(
        screens, [&](const ScreenState* screen) { return settleAt(places, screen->uiScreenIndex, *screen); });
}

/// Second rule: the key that the screen has now.
void settleOnPresentKey(Screens& screens, Places& places)
{
    settleEach(screens, [&](const ScreenState* screen) {
        const auto present = std::find_if(places.begin(), places.end(), [&](const Place& place) {
            return place.bound.contains(screen->id);
        });
        return present != places.end() && settle(*present, *screen);
    });
}

/// Third rule: the lowest free key.
void settleOnLowestFreeKey(Screens& screens, Places& places)
{
    settleEach(screens, [&](const ScreenState* screen) {
        return std::any_of(
            places.begin(), places.end(), [&](Place& place) { return settle(place, *screen); });
    });
}

void apply(const KeyGroup& keys, const Places& places)
{
    // Every key is unbound from its old screen before any is bound to a new one: no screen is on two keys.
    for (const Place& place : places) {
        const bool keeps = place.screen ? place.bound == ECObjectIdList{place.screen->id} : place.reserved;
        const bool isUnbound = place.bound.isEmpty() && !place.item->isBindKeyPad();
        if (!keeps && !isUnbound)
            place.item->resetECCommandItem();
    }
    for (const Place& place : places) {
        if (const ScreenState* screen = place.screen)
            keys.bind(place.item, {screen->id}, screen->color, screen->name);
    }
}

} // namespace

ECObjectId screenObjectId(const BizModel::Screen& screen)
{
    return {screen.screenId(), quint32(screen.screenType())};
}

void ScreenBindings::rebuild(const DevicePtr& device)
{
    const QString ip = device->ipMacSn();
    // A device that has just become the active one may not have its keys yet.
    initDevice(ip);
    const auto readModel = [&] { return screensOf(*device); };
    const QStringList homeless = updateItems(readModel, [&](const std::vector<ScreenState>& states) {
        Places places = placesOf(*this, ip);
        const bool isReserved = m_reservation.screen && m_reservation.deviceIp == ip;
        const auto reserved = isReserved ? places.find(m_reservation.place.buttonIndex) : places.end();
        Screens screens = settleReserved(states, reserved, m_reservation.screen, places);
        settleOnOwnPosition(screens, places);
        settleOnPresentKey(screens, places);
        settleOnLowestFreeKey(screens, places);
        apply(*this, places);
        QStringList names;
        for (const ScreenState* screen : screens)
            names.append(screen->name);
        return names;
    });
    for (const QString& name : homeless)
        ecWarning(
            lcPaint, " Binding screen data error... No key is left for the screen %s.", qUtf8Printable(name));
}

ScreenPtr ScreenBindings::find(const DevicePtr& device, int buttonIndex) const
{
    if (buttonIndex < 0)
        return nullptr; // would be that of every screen without a key
    const ECObjectIdList ids = objectsOn(device->ipMacSn(), buttonIndex);
    const auto screens = device->screens(BizModel::Enum::Screen::RegularAndAUXScreens);
    for (const auto& weakScreen : screens) {
        auto screen = weakScreen.lock();
        if (screen && ids.contains(screenObjectId(*screen)))
            return screen;
    }
    return nullptr;
}

bool ScreenBindings::reserve(const DevicePtr& device, const ScreenPtr& screen, const KeyPlace& place)
{
    const Reservation reservation{device->ipMacSn(), screen, screenObjectId(*screen), place};
    return writeItems([&] {
        const auto key = itemAt(reservation.deviceIp, place);
        if (!key || key->isBindKeyPad() || !key->getObjectIdList().isEmpty())
            return false;
        // The id may have been another screen's, whose removal has not come through yet.
        unbind(reservation.deviceIp, reservation.id);
        bind(key, {reservation.id}, ECLEDColor::Off, {});
        m_reservation = reservation;
        return true;
    });
}

void ScreenBindings::bindReserved()
{
    const Reservation reservation = readItems([this] { return m_reservation; });
    if (!reservation.screen)
        return;
    const ScreenState screen = stateOf(reservation.screen);
    writeItems([&] {
        if (const auto key = itemAt(reservation.deviceIp, reservation.place))
            bind(key, {screen.id}, screen.color, screen.name);
        m_reservation = {};
    });
}

bool ScreenBindings::unbindReserved()
{
    Reservation dropped; // outlives the lock: the screen may be destroyed with it, which is the model's code
    return writeItems([&]() -> bool {
        std::swap(dropped, m_reservation);
        return dropped.screen && unbindKey(dropped);
    });
}

/// Finds the key by its place: meanwhile the model may have given the id to another screen.
bool ScreenBindings::unbindKey(const Reservation& reservation) const
{
    const auto key = itemAt(reservation.deviceIp, reservation.place);
    if (!key || !key->isContainsObjectId(reservation.id))
        return false;
    key->resetECCommandItem();
    return true;
}

void ScreenBindings::forgetScreen(const BizModel::Device& device, const BizModel::Screen& screen)
{
    const QString ip = device.ipMacSn();
    const ECObjectId id = screenObjectId(screen);
    for (const ScreenState& present : screensOf(device)) {
        if (present.id == id)
            return; // the notification comes late: a new screen has got the id
    }
    writeItems([&] { unbind(ip, id); });
    store().resetECCommandItems(ip, KeyboardType::Screen, quint32(id.first));
}

} // namespace Orvane::ECProxy::Client::Internal
