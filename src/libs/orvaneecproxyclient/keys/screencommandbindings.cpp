#include "screencommandbindings_p.h"

#include "ecconsolemanager.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"

#include <QMap>
#include <QStringList>
#include <QtDebug>

#include <algorithm>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// What a key shows of a screen: a snapshot of the model.
struct ScreenState {
    std::shared_ptr<BizModel::Screen> screen;
    ECObjectId id;
    int uiScreenIndex = -1;
    ECLEDColor color = ECLEDColor::Off;
    QString name;
};

ScreenState stateOf(const std::shared_ptr<BizModel::Screen>& screen)
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
    const ScreenState* screen = nullptr;
    /// Kept for a screen that is being created.
    bool reserved = false;
};
using Places = QMap<int, Place>; // by button index

Places placesOf(const QString& ip, int pageSize)
{
    Places places;
    const auto items = ECConsoleManager::instance()->screenECCommandItems(ip);
    for (const auto& item : items) {
        Place& place = places[item->ecButtonPageIndex() * pageSize + item->ecButtonOrderIndex()];
        if (!place.item)
            place.item = item;
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
    const std::vector<ScreenState>& states, Places::iterator reserved,
    const std::shared_ptr<BizModel::Screen>& screen, Places& places)
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
void settleOnPresentKey(Screens& screens, const QString& ip, Places& places)
{
    settleEach(screens, [&](const ScreenState* screen) {
        const int present =
            ECConsoleManager::instance()->findBindingButtonIndex(ip, KeyboardType::Screen, screen->id);
        return settleAt(places, present, *screen);
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

void apply(const QString& ip, const Places& places)
{
    // Every key is unbound from its old screen before any is bound to a new one: no screen is on two keys.
    for (const Place& place : places) {
        const ECObjectIdList bound = place.item->getObjectIdList();
        const bool keeps = place.screen ? bound == ECObjectIdList{place.screen->id} : place.reserved;
        const bool isUnbound = bound.isEmpty() && !place.item->isBindKeyPad();
        if (!keeps && !isUnbound)
            place.item->resetECCommandItem();
    }
    for (auto place = places.begin(); place != places.end(); ++place) {
        if (!place->screen)
            continue;
        const ScreenState& screen = *place->screen;
        ECConsoleManager::instance()->updateECButtonData(
            ip, KeyboardType::Screen, place->item->ecButtonOrderIndex(), place.key(),
            place->item->ecButtonPageIndex(), {screen.id}, screen.color, screen.name, false);
    }
}

} // namespace

ECObjectId screenObjectId(const BizModel::Screen& screen)
{
    return {screen.screenId(), quint32(screen.screenType())};
}

void ScreenBindings::rebuild(const std::shared_ptr<BizModel::Device>& device, int pageSize)
{
    const QString ip = device->ipMacSn();
    // A device that has just become the active one may not have its keys yet.
    ECConsoleManager::instance()->initDeviceECCommandItems(ip);
    const auto readModel = [&] { return screensOf(*device); };
    const QStringList homeless = m_updates.update(readModel, [&](const std::vector<ScreenState>& states) {
        Places places = placesOf(ip, pageSize);
        const bool isReserved = m_reservation.screen && m_reservation.deviceIp == ip;
        const auto reserved = isReserved ? places.find(m_reservation.buttonIndex) : places.end();
        Screens screens = settleReserved(states, reserved, m_reservation.screen, places);
        settleOnOwnPosition(screens, places);
        settleOnPresentKey(screens, ip, places);
        settleOnLowestFreeKey(screens, places);
        apply(ip, places);
        QStringList names;
        for (const ScreenState* screen : screens)
            names.append(screen->name);
        return names;
    });
    for (const QString& name : homeless)
        qWarning(" Binding screen data error... No key is left for the screen %s.", qUtf8Printable(name));
}

std::shared_ptr<BizModel::Screen> ScreenBindings::find(
    const std::shared_ptr<BizModel::Device>& device, int buttonIndex) const
{
    if (buttonIndex < 0)
        return nullptr; // would be that of every screen without a key
    const QString ip = device->ipMacSn();
    std::vector<std::pair<ECObjectId, std::shared_ptr<BizModel::Screen>>> screens;
    const auto weakScreens = device->screens(BizModel::Enum::Screen::RegularAndAUXScreens);
    for (const auto& weakScreen : weakScreens) {
        if (const auto screen = weakScreen.lock())
            screens.emplace_back(screenObjectId(*screen), screen);
    }
    return m_updates.read([&]() -> std::shared_ptr<BizModel::Screen> {
        const auto* const store = ECConsoleManager::instance();
        for (const auto& [id, screen] : screens) {
            if (store->findBindingButtonIndex(ip, KeyboardType::Screen, id) == buttonIndex)
                return screen;
        }
        return nullptr;
    });
}

bool ScreenBindings::reserve(
    const std::shared_ptr<BizModel::Device>& device, const std::shared_ptr<BizModel::Screen>& screen,
    const ECCommandItem& key, int buttonIndex)
{
    Reservation reservation;
    reservation.deviceIp = device->ipMacSn();
    reservation.screen = screen;
    reservation.id = screenObjectId(*screen);
    reservation.pageIndex = key.ecButtonPageIndex();
    reservation.orderIndex = key.ecButtonOrderIndex();
    reservation.buttonIndex = buttonIndex;

    return m_updates.write([&] {
        if (key.isBindKeyPad() || !key.getObjectIdList().isEmpty())
            return false;
        // The id may have been another screen's, whose removal has not come through yet.
        ECConsoleManager::instance()->resetECButtonData(
            reservation.deviceIp, KeyboardType::Screen, reservation.id);
        ECConsoleManager::instance()->updateECButtonData(
            reservation.deviceIp, KeyboardType::Screen, reservation.orderIndex, buttonIndex,
            reservation.pageIndex, {reservation.id});
        m_reservation = reservation;
        return true;
    });
}

void ScreenBindings::bindReserved()
{
    const Reservation reservation = m_updates.read([this] { return m_reservation; });
    if (!reservation.screen)
        return;
    const ScreenState screen = stateOf(reservation.screen);
    m_updates.write([&] {
        if (screen.id != reservation.id)
            reservation.unbindKey();
        ECConsoleManager::instance()->updateECButtonData(
            reservation.deviceIp, KeyboardType::Screen, reservation.orderIndex, reservation.buttonIndex,
            reservation.pageIndex, {screen.id}, screen.color, screen.name, false);
        m_reservation = {};
    });
}

bool ScreenBindings::unbindReserved()
{
    Reservation dropped; // outlives the lock: the screen may be destroyed with it, which is the model's code
    return m_updates.write([&]() -> bool {
        std::swap(dropped, m_reservation);
        return dropped.screen && dropped.unbindKey();
    });
}

/// Finds the key by its place: meanwhile the model may have given the id to another screen.
bool ScreenBindings::Reservation::unbindKey() const
{
    const auto key = ECConsoleManager::instance()->findEcCommandItem(
        deviceIp, KeyboardType::Screen, orderIndex, pageIndex);
    if (!key || !key->isContainsObjectId(id))
        return false;
    key->resetECCommandItem();
    return true;
}

void ScreenBindings::unbind(const BizModel::Device& device, const BizModel::Screen& screen)
{
    const QString ip = device.ipMacSn();
    const ECObjectId id = screenObjectId(screen);
    for (const ScreenState& present : screensOf(device)) {
        if (present.id == id)
            return; // the notification comes late: a new screen has got the id
    }
    m_updates.write([&] {
        ECConsoleManager::instance()->resetECButtonData(ip, KeyboardType::Screen, id, ECLEDColor::Off);
    });
    ECConsoleManager::instance()->resetECCommandItems(ip, KeyboardType::Screen, quint32(id.first));
}

void ScreenBindings::unbindAll(const BizModel::Device& device)
{
    const QString ip = device.ipMacSn();
    m_updates.write([&] { ECConsoleManager::instance()->resetECCommandItems(ip, KeyboardType::Screen); });
}

} // namespace Orvane::ECProxy::Client::Internal
