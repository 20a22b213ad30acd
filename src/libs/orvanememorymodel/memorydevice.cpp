#include "memorydevice.h"

#include "operationtext.h"

#include <algorithm>
#include <utility>

namespace Orvane::MemoryModel {

using BizModel::DeviceList;
using BizModel::SceneType;
using ScreenState = BizModel::Screen::State;

MemoryDevice::MemoryDevice(std::shared_ptr<ModelHub> hub, const DeviceRecord& record)
    : m_pHub(std::move(hub))
    , m_nMaxPresetCount(record.maxPresetCount)
    , m_limits(record.limits)
{
    for (const SubcardRecord& card : record.subcards)
        m_subcards += std::make_shared<MemorySubcard>(m_pHub, card);
    for (const OutputRecord& output : record.outputs)
        m_outputs += std::make_shared<MemoryOutput>(m_pHub, output, subcard(output.subcardId));
    Data data;
    static_cast<DeviceSettings&>(data) = record;
    data.preIPMacSn = record.ipMacSn;
    m_data = Guarded<Data>(std::move(data));
}

BizModel::s_DeviceConfig MemoryDevice::deviceConfig() const
{
    const Guard guard(*m_pHub);
    return {data(guard).consolePlugin, data(guard).loadToPGMEnabled};
}

QList<std::weak_ptr<BizModel::Screen>> MemoryDevice::screens(int screenTypeMask) const
{
    return weakList<BizModel::Screen>(data(Guard(*m_pHub)).screens, [screenTypeMask](const auto& screen) {
        return screen.screenType() & screenTypeMask;
    });
}

QList<std::weak_ptr<BizModel::Screen>> MemoryDevice::selectedScreen(int screenTypeMask) const
{
    const Guard guard(*m_pHub);
    return weakList<BizModel::Screen>(data(guard).screens, [&](const auto& screen) {
        return (screen.screenType() & screenTypeMask) && screen.data(guard).selected;
    });
}

bool MemoryDevice::isScreenSelected(const std::weak_ptr<BizModel::Screen>& screen) const
{
    const Guard guard(*m_pHub);
    const std::shared_ptr<MemoryScreen> present = own(guard, screen);
    return present && present->data(guard).selected;
}

bool MemoryDevice::isScreenLimited(ScreenType type) const
{
    const Guard guard(*m_pHub);
    const int limit = type == ScreenType::AUXScreen ? m_limits.auxScreens
        : type == ScreenType::RegularScreen         ? m_limits.regularScreens
                                                    : 0;
    return screenCount(guard, type) >= limit;
}

std::shared_ptr<BizModel::Screen> MemoryDevice::createDefaultScreen(ScreenType type)
{
    const QString arguments =
        deviceText(weak_from_this()) + QStringLiteral(" type=%1").arg(screenTypeText(type));
    if (m_pHub->operations.perform(Operation::CreateDefaultScreen, arguments) || isScreenLimited(type))
        return nullptr;
    Change change(*m_pHub);
    return createScreen(change, type);
}

std::weak_ptr<BizModel::Output> MemoryDevice::firstUnsedOutput() const
{
    const Guard guard(*m_pHub);
    return findIn(m_outputs, [&](const auto& output) { return !isOutputUsed(guard, output); });
}

void MemoryDevice::appendViewingScreen(const std::weak_ptr<BizModel::Screen>& screen)
{
    const QString arguments = deviceText(weak_from_this()) + QLatin1Char(' ') + screenText(screen);
    if (m_pHub->operations.perform(Operation::AppendViewingScreen, arguments))
        return;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryScreen> present = own(change, screen);
    if (!present)
        return;
    auto& viewing = data(change).viewingScreens;
    const bool shown = std::any_of(
        viewing.cbegin(), viewing.cend(), [&present](const auto& each) { return each.lock() == present; });
    if (shown)
        return;
    viewing += present;
    change.markChanged();
}

bool MemoryDevice::isLayerLimited(SceneType scene) const
{
    return layerCount(Guard(*m_pHub), scene) >= m_limits.layers;
}

QList<std::weak_ptr<BizModel::Input>> MemoryDevice::validInputs() const
{
    return weakList<BizModel::Input>(data(Guard(*m_pHub)).inputs);
}

std::weak_ptr<BizModel::Input> MemoryDevice::findInput(quint32 interfaceId) const
{
    return data(Guard(*m_pHub)).inputs.value(interfaceId);
}

std::weak_ptr<BizModel::Connector> MemoryDevice::getConnector(
    const BizModel::s_InterfaceFullId& interfaceFullId) const
{
    const Guard guard(*m_pHub);
    const std::shared_ptr<MemoryInput> input = data(guard).inputs.value(interfaceFullId.interfaceId);
    if (!input || input->interfaceFullId() != interfaceFullId)
        return {};
    return connector(*input);
}

void MemoryDevice::populate(Change& change, const DeviceRecord& record)
{
    Data& device = data(change);
    for (const InputRecord& input : record.inputs)
        device.inputs.insert(input.id, std::make_shared<MemoryInput>(m_pHub, input));
    for (const ScreenRecord& stored : record.screens) {
        const std::shared_ptr<MemoryScreen> screen = makeScreen(stored);
        MemoryScreen::Data& state = screen->data(change);
        state.registered = true;
        for (const LayerRecord& layer : stored.pgm)
            state.pgm += screen->makeLayer(SceneType::PGM, layer);
        for (const LayerRecord& layer : stored.pvw)
            state.pvw += screen->makeLayer(SceneType::PVW, layer);
        device.screens += screen;
    }
    device.activeScreen = screen(change, record.activeScreen);
    for (const PresetRecord& stored : record.presets) {
        const auto preset = std::make_shared<MemoryPreset>(m_pHub, weak_from_this(), stored);
        insertPreset(change, preset);
        if (stored.id == record.activePreset && !device.activePreset)
            device.activePreset = preset;
    }
    if (record.hasKeypad)
        device.keypad = std::make_shared<BizModel::Keypad>(record.keypad);
}

DeviceRecord MemoryDevice::record(const Guard& guard) const
{
    const Data& device = data(guard);
    DeviceRecord record;
    static_cast<DeviceSettings&>(record) = device;
    record.maxPresetCount = m_nMaxPresetCount;
    record.limits = m_limits;
    for (const std::shared_ptr<MemorySubcard>& card : m_subcards) {
        SubcardRecord stored{card->subcardId(), card->layerCapacity(), {}};
        for (const std::shared_ptr<MemoryConnector>& connector : card->connectors())
            stored.connectors += ConnectorRecord{connector->connectorId(), connector->data(guard)};
        record.subcards += stored;
    }
    for (const std::shared_ptr<MemoryInput>& input : device.inputs)
        record.inputs += std::as_const(*input).data(guard);
    for (const std::shared_ptr<MemoryOutput>& output : m_outputs)
        record.outputs += output->record(guard);
    for (const std::shared_ptr<MemoryScreen>& screen : device.screens)
        record.screens += screen->record(guard);
    if (device.activeScreen)
        record.activeScreen = device.activeScreen->key();
    for (const std::shared_ptr<MemoryPreset>& preset : device.presets)
        record.presets += std::as_const(*preset).data(guard);
    record.activePreset =
        device.presets.contains(device.activePreset) ? device.activePreset->fileId() : quint16(0);
    record.hasKeypad = device.keypad != nullptr;
    if (device.keypad)
        record.keypad = device.keypad->keypadInfo();
    return record;
}

std::shared_ptr<MemorySubcard> MemoryDevice::subcard(quint32 subcardId) const
{
    return findIn(m_subcards, [subcardId](const auto& card) { return card->subcardId() == subcardId; });
}

std::shared_ptr<MemoryOutput> MemoryDevice::output(quint32 outputId) const
{
    return findIn(m_outputs, [outputId](const auto& output) { return output->outputId() == outputId; });
}

std::shared_ptr<MemoryConnector> MemoryDevice::connector(const MemoryInput& input) const
{
    const std::shared_ptr<MemorySubcard> card = subcard(input.interfaceFullId().subcardId);
    return card ? card->connector(input.connectorId()) : nullptr;
}

std::shared_ptr<MemoryScreen> MemoryDevice::screen(const Guard& guard, ScreenKey key) const
{
    return findIn(data(guard).screens, [key](const auto& screen) { return screen->key() == key; });
}

std::shared_ptr<MemoryScreen> MemoryDevice::own(
    const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen) const
{
    return findIn(data(guard).screens, [wanted = screen.lock()](const auto& each) { return each == wanted; });
}

std::shared_ptr<MemoryPreset> MemoryDevice::own(
    const Guard& guard, const std::weak_ptr<BizModel::Preset>& preset) const
{
    return findIn(data(guard).presets, [wanted = preset.lock()](const auto& each) { return each == wanted; });
}

std::shared_ptr<MemoryPreset> MemoryDevice::preset(const Guard& guard, FileType type, quint16 fileId) const
{
    return findIn(data(guard).presets, [type, fileId](const auto& preset) {
        return preset->fileType() == type && preset->fileId() == fileId;
    });
}

int MemoryDevice::screenCount(const Guard& guard, ScreenType type) const
{
    const Screens& all = data(guard).screens;
    return int(std::count_if(
        all.cbegin(), all.cend(), [type](const auto& screen) { return screen->screenType() == type; }));
}

int MemoryDevice::layerCount(const Guard& guard, SceneType scene) const
{
    int count = 0;
    for (const std::shared_ptr<MemoryScreen>& screen : data(guard).screens)
        count += screen->data(guard).layers(scene).size();
    return count;
}

MemoryDevice::Screens MemoryDevice::takeScreens(
    const Guard& guard, int screenTypeMask, bool onlySelected) const
{
    Screens list;
    for (const std::shared_ptr<MemoryScreen>& screen : data(guard).screens) {
        const MemoryScreen::Data& state = screen->data(guard);
        if ((screen->screenType() & screenTypeMask) && (state.selected || !onlySelected)
            && !state.outputs.isEmpty())
            list += screen;
    }
    return list;
}

bool MemoryDevice::isOutputShown(const Guard& guard, const std::shared_ptr<MemoryOutput>& output) const
{
    const Screens& all = data(guard).screens;
    return std::any_of(all.cbegin(), all.cend(), [&](const auto& screen) {
        return std::as_const(*screen).shows(guard, output);
    });
}

bool MemoryDevice::isOutputUsed(const Guard& guard, const std::shared_ptr<MemoryOutput>& output) const
{
    const auto& pending = data(guard).pendingScreens;
    return isOutputShown(guard, output)
        || std::any_of(pending.cbegin(), pending.cend(), [&](const auto& each) {
               const std::shared_ptr<const MemoryScreen> screen = each.lock();
               return screen && screen->shows(guard, output);
           });
}

std::shared_ptr<MemoryScreen> MemoryDevice::createScreen(Change& change, ScreenType type)
{
    Data& device = data(change);
    auto& pending = device.pendingScreens;
    pending.erase(
        std::remove_if(
            pending.begin(), pending.end(),
            [&change](const auto& each) {
                const std::shared_ptr<MemoryScreen> screen = each.lock();
                return !screen || screen->data(change).registered;
            }),
        pending.end());
    ScreenKey key{type, 1};
    const auto taken = [&] {
        return screen(change, key) || std::any_of(pending.cbegin(), pending.cend(), [&key](const auto& each) {
                   const std::shared_ptr<MemoryScreen> other = each.lock();
                   return other && other->key() == key;
               });
    };
    while (taken())
        ++key.id;
    ScreenRecord defaults;
    defaults.key = key;
    defaults.name = type == ScreenType::AUXScreen ? QStringLiteral("AUX %1").arg(key.id)
                                                  : QStringLiteral("Screen %1").arg(key.id);
    std::shared_ptr<MemoryScreen> created = makeScreen(defaults);
    pending += created;
    return created;
}

bool MemoryDevice::canAddScreen(
    const Guard& guard, const std::shared_ptr<MemoryScreen>& screen, const Screens& accepted,
    QString& error) const
{
    const MemoryScreen& added = *screen;
    const ScreenType type = added.screenType();
    const auto sameType = std::count_if(
        accepted.cbegin(), accepted.cend(), [type](const auto& each) { return each->screenType() == type; });
    const int limit = type == ScreenType::AUXScreen ? m_limits.auxScreens : m_limits.regularScreens;
    const auto& places = added.data(guard).outputs;
    if (added.data(guard).registered || added.device().lock().get() != this || accepted.contains(screen)
        || this->screen(guard, added.key()))
        error = QStringLiteral("The screen is not a new screen of this device.");
    else if (screenCount(guard, type) + int(sameType) >= limit)
        error = QStringLiteral("The number of screens exceeds the limit.");
    else if (std::any_of(places.cbegin(), places.cend(), [&](const auto& place) {
                 return isOutputShown(guard, place.output)
                     || std::any_of(accepted.cbegin(), accepted.cend(), [&](const auto& other) {
                            return std::as_const(*other).shows(guard, place.output);
                        });
             }))
        error = QStringLiteral("An output of the screen is in use.");
    else
        return true;
    return false;
}

void MemoryDevice::addScreen(Change& change, const std::shared_ptr<MemoryScreen>& added)
{
    added->data(change).registered = true;
    data(change).screens += added;
    change.announce(&DeviceList::signalScreenAdded, weak_from_this(), added);
}

bool MemoryDevice::removeScreen(Change& change, const std::shared_ptr<MemoryScreen>& removed)
{
    Data& device = data(change);
    if (!device.screens.removeOne(removed))
        return false;
    MemoryScreen::Data& state = removed->data(change);
    const bool wasSelected = std::exchange(state.selected, false);
    state.registered = false;
    state.state = ScreenState::Normal;
    change.announce(&DeviceList::signalScreenRemoved, weak_from_this(), removed);
    if (wasSelected)
        change.announce(&DeviceList::signalSelectedRegularScreensChanged, weak_from_this());
    if (device.activeScreen == removed)
        setActiveScreen(change, device.screens.isEmpty() ? nullptr : device.screens.first());
    return true;
}

void MemoryDevice::selectScreens(
    Change& change, const std::function<bool(const std::shared_ptr<MemoryScreen>&, bool)>& select,
    bool notify)
{
    bool changed = false;
    for (const std::shared_ptr<MemoryScreen>& screen : std::as_const(data(change).screens)) {
        bool& selected = screen->data(change).selected;
        const bool now = select(screen, selected);
        changed |= std::exchange(selected, now) != now;
    }
    if (changed)
        change.markChanged();
    if (changed && notify)
        change.announce(&DeviceList::signalSelectedRegularScreensChanged, weak_from_this());
}

void MemoryDevice::setActiveScreen(Change& change, const std::shared_ptr<MemoryScreen>& screen)
{
    change.set(
        data(change).activeScreen, screen, &DeviceList::signalActivedScreenChanged, weak_from_this(), screen);
}

std::shared_ptr<MemoryScreen> MemoryDevice::makeScreen(const ScreenRecord& record)
{
    MemoryScreen::Data state;
    static_cast<ScreenSettings&>(state) = record;
    for (const ScreenOutputRecord& place : record.outputs) {
        if (const std::shared_ptr<MemoryOutput> found = output(place.outputId))
            state.outputs += MemoryScreen::OutputPlace{found, place.rect};
    }
    return std::make_shared<MemoryScreen>(m_pHub, weak_from_this(), record.key, std::move(state));
}

} // namespace Orvane::MemoryModel
