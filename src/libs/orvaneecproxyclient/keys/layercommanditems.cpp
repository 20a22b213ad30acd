// The layer keys' items, labels and pages: what the console shows of the active screen's preview.
#include "layercommand_p.h"

#include "ecconsolemanager.h"
#include "layerplacement_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/layer.h"
#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"

#include <algorithm>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

namespace Translate = BizModel::Translate;

namespace {

/// The layer that an item of the screen is bound to.
quint32 boundLayerId(const ECCommandItem& item, quint32 serverId)
{
    const ECObjectIdList ids = item.getObjectIdList();
    for (const ECObjectId& id : ids) {
        if (id.first == serverId)
            return id.second;
    }
    return Constants::UnboundLayerIndex;
}

/// Those that can have a key, by ascending id.
QList<LayerPtr> selectedPreviewLayers(const BizModel::Screen& screen)
{
    QList<LayerPtr> layers;
    const auto selected = screen.selectedLayers(BizModel::SceneType::PVW);
    for (const auto& weakLayer : selected) {
        const auto layer = weakLayer.lock();
        if (layer && isKeyLayer(*layer))
            layers.append(layer);
    }
    std::sort(layers.begin(), layers.end(), [](const LayerPtr& left, const LayerPtr& right) {
        return left->layerId() < right->layerId();
    });
    return layers;
}

/// The page of the first key that shows a selected layer, preferably on `page`; -1 when none does.
int pageOfSelection(const ECCommandItemList& items, int page)
{
    int first = -1;
    for (const auto& item : items) {
        if (item->ecButtonColor() != ECLEDColor::Green)
            continue;
        if (item->ecButtonPageIndex() == page)
            return page;
        if (first < 0)
            first = item->ecButtonPageIndex();
    }
    return first;
}

const char* capacityLabel(BizModel::CapacityMode capacity)
{
    switch (capacity) {
    case BizModel::CapacityMode::_DL:
        return Translate::TR_THE_DL;
    case BizModel::CapacityMode::_4K:
        return Translate::TR_THE_4K;
    case BizModel::CapacityMode::_SL:
        break;
    }
    return Translate::TR_THE_SL;
}

} // namespace

quint32 layerServerId(const BizModel::Screen& screen)
{
    constexpr int TypeShift = 24;
    const auto type = screen.screenType();
    return type == BizModel::Enum::Screen::RegularScreen ? screen.screenId()
                                                         : screen.screenId() | quint32(type) << TypeShift;
}

std::optional<LayerScreen> activedLayerScreen()
{
    const auto device = activedDevice();
    const auto screen = device ? device->activedScreen().lock() : nullptr;
    if (!screen || !Command::checkScreenType(screen->screenType()))
        return std::nullopt;
    return LayerScreen{device, screen, device->ipMacSn(), layerServerId(*screen)};
}

QList<LayerPtr> previewLayers(const BizModel::Screen& screen)
{
    QList<LayerPtr> layers;
    const auto weakLayers =
        screen.layers(BizModel::SceneType::PVW, BizModel::Enum::Layer::RegularAndAUXLayers);
    for (const auto& weakLayer : weakLayers) {
        if (const auto layer = weakLayer.lock())
            layers.append(layer);
    }
    return layers;
}

bool isKeyLayer(const BizModel::Layer& layer)
{
    return layer.sceneType() == BizModel::SceneType::PVW
        && (layer.layerType() & BizModel::Enum::Layer::RegularAndAUXLayers) != 0;
}

LayerCommandPrivate::LayerCommandPrivate(LayerCommand* command)
    : m_pCommand(command)
    , m_pUpdateTakeTimer(UpdateTakeDelay, [this] { m_pCommand->slotUpdateTakeScreenTimeout(); })
    , m_pFullScreenTimer([this] { fullnSelectedLayer(); })
    , m_pScreenStateTimer([this] { slotScreenStateTimeOut(); })
    , m_pClearAllLayerTimer(
          "Clear layers", [this](const LayerTarget& target) { clearHeld(target); },
          [this] { darkenFunction(LayerCallbackType::eClearLayersCB); })
    , m_pLayerTopZValueTimer(
          "Layers to the front",
          [this](const LayerTarget& target) { changeZOrder(target, &ModelControl::Screen::topZOrder); },
          [this] { darkenFunction(LayerCallbackType::eSetSelectedLayerTopZValueCB); })
    , m_pLayerBottomZValueTimer(
          "Layers to the back",
          [this](const LayerTarget& target) { changeZOrder(target, &ModelControl::Screen::bottomZOrder); },
          [this] { darkenFunction(LayerCallbackType::eSetSelectedLayerBottomZValueCB); })
{
}

// ---- Page and labels ------------------------------------------------------------------------------------

void LayerCommandPrivate::updateLayerKeyboard()
{
    const auto pageOled = m_pCommand->findPageOled(quint16(LayerCallbackType::ePageUp));
    if (pageOled)
        m_pCommand->showCurrentPage([&](quint32 page) { m_pCommand->updatePageOled(pageOled->ECKey, page); });
    else
        refreshKeys();
    initLayerCapacity();
    updateFullScreenLabel();
}

void LayerCommandPrivate::showPageLabel()
{
    if (const auto oled = m_pCommand->findPageOled(quint16(LayerCallbackType::ePageUp)))
        m_pCommand->showCurrentPage(
            [&](quint32 page) { m_pCommand->Command::updatePageOled(oled->ECKey, page); });
}

void LayerCommandPrivate::turnToActivedDevice()
{
    endHoldsOfOtherScreens();
    rememberSelection();
    if (m_activedDevice.isAnother())
        m_pCommand->updateCurrentPageIndex(0);
}

void LayerCommandPrivate::initLayerCapacity()
{
    if (!m_pCommand->ecCommandConfig()) {
        qWarning("Button config error");
        return;
    }
    const auto buttons = functionButtons(LayerCallbackType::eChangeNewLayerDefaultCapacityCB);
    if (buttons.isEmpty())
        qWarning("%s command has invalid page button", qUtf8Printable(m_pCommand->name()));
    for (const auto& button : buttons) {
        if (!button->pECOledCfg) {
            qWarning(
                "%s command has invalid page button, button has no oled config",
                qUtf8Printable(m_pCommand->name()));
            continue;
        }
        // The key of the other console may choose the next one meanwhile: the last label is the present
        // choice.
        BizModel::CapacityMode shown;
        do {
            shown = m_currentLayerTemplate;
            m_pCommand->updateECOledText(
                button->pECOledCfg->OrvaneECKey, button->pECOledCfg->ECKey,
                Translate::tr(capacityLabel(shown)));
        } while (shown != m_currentLayerTemplate);
    }
}

QList<std::shared_ptr<EC::s_ECButtonConfig>> LayerCommandPrivate::functionButtons(
    LayerCallbackType type) const
{
    const auto config = m_pCommand->ecCommandConfig();
    return config ? config->findECButtonConfigsByOrvaneKey(quint16(type))
                  : QList<std::shared_ptr<EC::s_ECButtonConfig>>();
}

void LayerCommandPrivate::updateFullScreenLabel()
{
    const auto buttons = functionButtons(LayerCallbackType::eSetSelectedLayerFullScreenCB);
    for (const auto& button : buttons)
        m_pCommand->updateECOledTextByBtnECKey(button->ECKey, Translate::tr(Translate::TR_THE_FULL_SCREEN));
}

// ---- Items ----------------------------------------------------------------------------------------------

LayerCommandPrivate::TakenLayers LayerCommandPrivate::readTakenLayers(
    const QList<std::weak_ptr<BizModel::Screen>>& screens)
{
    TakenLayers taken;
    const auto device = activedDevice();
    if (!device)
        return taken;
    taken.ip = device->ipMacSn();
    const auto ownScreens = device->screens(BizModel::Enum::Screen::RegularAndAUXScreens);
    for (const auto& weakScreen : ownScreens) {
        const auto screen = weakScreen.lock();
        const bool isTaken = screen && std::any_of(screens.begin(), screens.end(), [&](const auto& other) {
                                 return other.lock() == screen;
                             });
        if (!isTaken)
            continue;
        const auto layers = previewLayers(*screen);
        for (const auto& layer : layers)
            taken.ids.append({layerServerId(*screen), layer->layerId()});
    }
    return taken;
}

std::optional<LayerCommandPrivate::ScreenLayers> LayerCommandPrivate::readActivedScreen()
{
    const auto target = activedLayerScreen();
    if (!target)
        return std::nullopt;
    ECConsoleManager::instance()->initLayerECCommand(target->ip, KeyboardType::Layer, target->serverId);
    ScreenLayers read;
    read.ip = target->ip;
    read.serverId = target->serverId;
    const auto selected = selectedPreviewLayers(*target->screen);
    const auto layers = previewLayers(*target->screen);
    for (const auto& layer : layers) {
        const auto color = selected.contains(layer) ? ECLEDColor::Green : ECLEDColor::Yellow;
        read.layers.push_back({layer->layerId(), layer->name(), color});
    }
    std::sort(read.layers.begin(), read.layers.end(), [](const KeyLayer& left, const KeyLayer& right) {
        return left.id < right.id;
    });
    for (const KeyLayer& layer : read.layers)
        read.layerIds.push_back(layer.id);
    return read;
}

void LayerCommandPrivate::updateECCommandItems()
{
    if (!m_pCommand->ecCommandConfig()) // the items are another command's
        return;
    m_itemUpdates.update(readActivedScreen, [this](const std::optional<ScreenLayers>& screen) {
        if (screen)
            bindLayers(*screen);
    });
}

ECCommandItemList LayerCommandPrivate::layerItems(const ScreenLayers& screen)
{
    ECCommandItemList items;
    ECConsoleManager::instance()->layerECCommandItems(screen.ip, screen.serverId, items);
    return items;
}

void LayerCommandPrivate::bindLayers(const ScreenLayers& screen)
{
    ECConsoleManager* store = ECConsoleManager::instance();
    const ECCommandItemList items = layerItems(screen);
    std::vector<quint32> keys;
    for (const auto& item : qAsConst(items))
        keys.push_back(boundLayerId(*item, screen.serverId));

    const std::vector<quint32> assigned = assignLayerKeys(keys, screen.layerIds);
    const int pageSize = m_pCommand->pageSize();
    for (std::size_t i = 0; i < assigned.size(); ++i) {
        const auto& item = items.at(int(i));
        if (assigned[i] != keys[i])
            item->resetECCommandItem(KeyboardType::Layer);
        if (assigned[i] == Constants::UnboundLayerIndex)
            continue;
        const auto found = std::lower_bound(screen.layerIds.begin(), screen.layerIds.end(), assigned[i]);
        const KeyLayer& layer = screen.layers[std::size_t(found - screen.layerIds.begin())];
        const int pageIndex = item->ecButtonPageIndex();
        const int orderIndex = item->ecButtonOrderIndex();
        store->updateECButtonData(
            screen.ip, KeyboardType::Layer, orderIndex, pageIndex * pageSize + orderIndex, pageIndex,
            {{screen.serverId, layer.id}}, layer.color, layer.name, false);
    }
}

void LayerCommandPrivate::refreshKeys()
{
    updateECCommandItems();
    m_pCommand->updateCommandKeypad(Enum::UpdateConsoleType::All);
}

bool LayerCommandPrivate::isShown(const QString& ip, quint32 serverId, const ECCommandItem& item) const
{
    const auto target = activedLayerScreen();
    return target && target->ip == ip && target->serverId == serverId
        && item.ecButtonPageIndex() == m_pCommand->currentPageIndex();
}

LayerCommandPrivate::Selection LayerCommandPrivate::rememberSelection()
{
    Selection now;
    if (const auto target = activedLayerScreen()) {
        now.screen = target->screen;
        const auto selected = selectedPreviewLayers(*target->screen);
        now.layers.insert(selected.begin(), selected.end());
    }
    const std::lock_guard<std::mutex> lock(m_notificationMtx);
    std::swap(now, m_selection);
    return now;
}

void LayerCommandPrivate::showNewlySelectedLayer(const LayerScreen& target)
{
    Selection before = rememberSelection();
    if (before.screen.lock() != target.screen)
        before.layers.clear();
    const auto selected = selectedPreviewLayers(*target.screen);
    for (const LayerPtr& layer : selected) {
        if (before.layers.count(layer) != 0)
            continue;
        const auto item = ECConsoleManager::instance()->findBindingECItem(
            target.ip, KeyboardType::Layer, {target.serverId, layer->layerId()});
        if (!item)
            continue;
        m_pCommand->updateCurrentPageIndex(item->ecButtonPageIndex());
        return;
    }
}

void LayerCommandPrivate::updateLayerName(
    const BizModel::Device& device, const BizModel::Screen& screen, const BizModel::Layer& layer)
{
    const ECObjectId id{layerServerId(screen), layer.layerId()};
    const QString name = layer.name();
    const QString ip = device.ipMacSn();
    const auto item = m_itemUpdates.write([&] {
        auto found = ECConsoleManager::instance()->findBindingECItem(ip, KeyboardType::Layer, id);
        if (found)
            found->setECOledText(name);
        return found;
    });
    if (!item)
        return;
    m_pCommand->sendWhileShown(
        [&] { return isShown(ip, quint32(id.first), *item) && item->ecOledText() == name; },
        [&] { m_pCommand->updateECOledTextByBtnECKey(quint32(item->ecButtonKey()), name); });
}

// ---- What the keys do comes back as notifications -------------------------------------------------------

LayerCommandPrivate::OperationRun::OperationRun(LayerCommandPrivate* owner, LayerOperation::Kind kind)
    : m_pOwner(owner)
    , m_excluding(owner->m_operation.begin(kind))
{
}

LayerCommandPrivate::OperationRun::~OperationRun()
{
    if (*this && m_pOwner->m_operation.end())
        m_pOwner->refreshKeys();
}

bool LayerCommandPrivate::takeKeyRemoval(const BizModel::s_ScreenLayerId& id)
{
    const std::lock_guard<std::mutex> lock(m_keyLayerRemoveListMtx);
    return m_keyLayerRemoveList.removeOne(id);
}

std::shared_ptr<ECCommandItem> LayerCommandPrivate::freeKeyOf(
    const QString& ip, const BizModel::Screen& screen, const BizModel::Layer& layer)
{
    const auto isIdInUse = [&] {
        const auto present = previewLayers(screen);
        return std::any_of(present.begin(), present.end(), [&](const LayerPtr& other) {
            return other->layerId() == layer.layerId() && other.get() != &layer;
        });
    };
    const ECObjectId id{layerServerId(screen), layer.layerId()};
    return m_itemUpdates.update(isIdInUse, [&](bool isInUse) {
        return isInUse ? nullptr
                       : ECConsoleManager::instance()->resetECButtonData(ip, KeyboardType::Layer, id);
    });
}

int LayerCommandPrivate::freedKey(const std::shared_ptr<ECCommandItem>& item)
{
    return item ? item->ecButtonKey() : -1;
}

void LayerCommandPrivate::unbindRemovedLayer(
    const BizModel::Device& device, const BizModel::Screen& screen, const LayerPtr& layer)
{
    const auto item = freeKeyOf(device.ipMacSn(), screen, *layer);
    qInfo(
        "layer is removed ...  ECKey: %d layerId :%u nScreenId :%u layer name:%s", freedKey(item),
        layer->layerId(), screen.screenId(), qUtf8Printable(layer->name()));
}

void LayerCommandPrivate::forgetScreen(const BizModel::Device& device, const BizModel::Screen& screen)
{
    const auto present = device.screens(screen.screenType());
    const bool isIdInUse = std::any_of(present.begin(), present.end(), [&](const auto& weakScreen) {
        const auto other = weakScreen.lock();
        return other && other.get() != &screen && other->screenId() == screen.screenId();
    });
    const quint32 serverId = layerServerId(screen);
    m_itemUpdates.write([&, ip = device.ipMacSn()] {
        // The removal is told late: a new screen may have taken the id.
        if (isIdInUse)
            ECConsoleManager::instance()->resetECCommandLayerItems(ip, serverId);
        else
            ECConsoleManager::instance()->removeECCommandLayerItems(ip, serverId);
    });
    const std::lock_guard<std::mutex> lock(m_keyLayerRemoveListMtx);
    const auto ofScreen = [&](const BizModel::s_ScreenLayerId& id) {
        return id.screenId == screen.screenId();
    };
    m_keyLayerRemoveList.erase(
        std::remove_if(m_keyLayerRemoveList.begin(), m_keyLayerRemoveList.end(), ofScreen),
        m_keyLayerRemoveList.end());
}

void LayerCommandPrivate::forgetDevice(const BizModel::Device& device)
{
    m_itemUpdates.write([ip = device.ipMacSn()] {
        ECConsoleManager::instance()->resetECCommandItems(ip, KeyboardType::Layer);
    });
    // The ids do not say whose they are. Without its entry, the removal of another device's layer is merely
    // handled twice.
    const std::lock_guard<std::mutex> lock(m_keyLayerRemoveListMtx);
    m_keyLayerRemoveList.clear();
}

void LayerCommandPrivate::makeItems()
{
    m_itemUpdates.write([this] {
        m_layerButtonCfgs.collect(m_pCommand->ecCommandConfig(), quint16(LayerCallbackType::eSelectLayerCB));
        const auto items = m_layerButtonCfgs.makeItems(m_pCommand->maxPage());
        ECConsoleManager* const store = ECConsoleManager::instance();
        store->clearECCommandItems(KeyboardType::Layer);
        for (const auto& item : items)
            store->appendECCommandItem(KeyboardType::Layer, item);
    });
}

// ---- A burst of layer notifications ---------------------------------------------------------------------

void LayerCommandPrivate::rememberUpdate(const QList<std::weak_ptr<BizModel::Screen>>& screens, int type)
{
    {
        const std::lock_guard<std::mutex> lock(m_notificationMtx);
        m_updateTakeScreens += screens;
        m_iUpdateTakeType = type;
    }
    m_pUpdateTakeTimer.trigger();
}

void LayerCommandPrivate::updateAfterTake()
{
    qInfo("Start updating the layer interface button color");
    QList<std::weak_ptr<BizModel::Screen>> screens;
    {
        const std::lock_guard<std::mutex> lock(m_notificationMtx);
        screens.swap(m_updateTakeScreens);
    }
    if (!m_pCommand->ecCommandConfig())
        return; // registered behind the command that has the keys: the items are not this one's
    // Freed and given anew in one step, so that a key pressed meanwhile does not find itself without a layer.
    const bool isTurned = m_itemUpdates.update(
        [&] { return std::pair(readTakenLayers(screens), readActivedScreen()); },
        [this](const auto& model) {
            const auto& [taken, actived] = model;
            const int pageBefore = m_pCommand->currentPageIndex();
            const bool isFollowing =
                actived && pageOfSelection(layerItems(*actived), pageBefore) == pageBefore;
            for (const ECObjectId& id : taken.ids)
                ECConsoleManager::instance()->resetECButtonData(taken.ip, KeyboardType::Layer, id);
            if (!actived)
                return false;
            bindLayers(*actived);
            const int page = isFollowing ? pageOfSelection(layerItems(*actived), pageBefore) : -1;
            if (page < 0 || page == pageBefore)
                return false;
            m_pCommand->updateCurrentPageIndex(page);
            return true;
        });
    if (isTurned)
        showPageLabel();
    m_pCommand->updateCommandKeypad(Enum::UpdateConsoleType::All);
}

} // namespace Orvane::ECProxy::Client::Internal
