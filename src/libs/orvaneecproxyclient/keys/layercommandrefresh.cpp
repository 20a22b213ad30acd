// What the console shows of the active screen's preview: pages, labels, and what the model announces.
#include "layercommand_p.h"

#include "log_p.h"
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

LayerCommandPrivate::LayerCommandPrivate(LayerCommand* command)
    : m_pCommand(command)
    , m_pUpdateTakeTimer(UpdateTakeDelay, [this] { m_pCommand->slotUpdateTakeScreenTimeout(); })
    , m_pFullScreenTimer([this] { fullnSelectedLayer(); })
    , m_pScreenStateTimer([this] { slotScreenStateTimeOut(); })
    , m_pClearAllLayerTimer(
          "Clear layers",
          [this](const LayerTarget& target) {
              clearAllLayer(target);
              darkenFunction(LayerCallbackType::eClearLayersCB);
          },
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
    showPage();
    showLabels();
}

void LayerCommandPrivate::showPage()
{
    updateECCommandItems();
    showPageLabel();
    repaintPage();
}

void LayerCommandPrivate::showPageLabel()
{
    m_pCommand->painter().paint("page label", [this] {
        if (const auto oled = m_pCommand->findPageOled(quint16(LayerCallbackType::ePageUp)))
            m_pCommand->Command::updatePageOled(oled->ECKey, quint32(m_pCommand->currentPageIndex()));
    });
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
        ecWarning(lcPaint, "Button config error");
        return;
    }
    const auto buttons = functionButtons(LayerCallbackType::eChangeNewLayerDefaultCapacityCB);
    if (buttons.isEmpty())
        ecWarning(lcPaint, "%s command has invalid page button", qUtf8Printable(m_pCommand->name()));
    for (const auto& button : buttons)
        showCapacity(button->ECKey);
}

void LayerCommandPrivate::showLabels()
{
    initLayerCapacity();
    const auto buttons = functionButtons(LayerCallbackType::eSetSelectedLayerFullScreenCB);
    for (const auto& button : buttons)
        showFullScreen(button->ECKey);
}

void LayerCommandPrivate::showCapacity(const quint32& ecKey)
{
    m_pCommand->painter().paint({"capacity", ecKey}, [this, ecKey] {
        const auto config = m_pCommand->ecCommandConfig();
        const auto button = config ? config->findECButtonConfigByECKey(ecKey) : nullptr;
        if (!button)
            return;
        if (const auto& oled = button->pECOledCfg)
            m_pCommand->updateECOledText(
                oled->OrvaneECKey, oled->ECKey, Translate::tr(capacityLabel(m_currentLayerTemplate)));
        else
            ecWarning(
                lcPaint, "%s command has invalid page button, button has no oled config",
                qUtf8Printable(m_pCommand->name()));
    });
}

void LayerCommandPrivate::showFullScreen(const quint32& ecKey)
{
    m_pCommand->painter().paint({"full screen", ecKey}, [this, ecKey] {
        m_pCommand->updateECOledTextByBtnECKey(ecKey, Translate::tr(Translate::TR_THE_FULL_SCREEN));
    });
}

QList<std::shared_ptr<EC::s_ECButtonConfig>> LayerCommandPrivate::functionButtons(
    LayerCallbackType type) const
{
    const auto config = m_pCommand->ecCommandConfig();
    return config ? config->findECButtonConfigsByOrvaneKey(quint16(type))
                  : QList<std::shared_ptr<EC::s_ECButtonConfig>>();
}

// ---- Items ----------------------------------------------------------------------------------------------

void LayerCommandPrivate::updateECCommandItems()
{
    // A further command of this name gets no keys; the items are the first one's.
    if (m_pCommand->ecCommandConfig())
        m_items.update();
}

void LayerCommandPrivate::refreshKeys()
{
    updateECCommandItems();
    repaintPage();
}

void LayerCommandPrivate::repaintPage()
{
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
        const auto item = m_items.findItem(target, *layer);
        if (!item)
            continue;
        m_pCommand->updateCurrentPageIndex(item->ecButtonPageIndex());
        return;
    }
}

void LayerCommandPrivate::updateLayerName(
    const BizModel::Device& device, const BizModel::Screen& screen, const BizModel::Layer& layer)
{
    const QString ip = device.ipMacSn();
    const quint32 serverId = layerServerId(screen);
    const auto item = m_items.rename(ip, screen, layer);
    if (!item)
        return;
    const QString name = item->ecOledText();
    const auto send = [&] {
        if (isShown(ip, serverId, *item) && item->ecOledText() == name)
            m_pCommand->updateECOledTextByBtnECKey(quint32(item->ecButtonKey()), name);
    };
    m_pCommand->painter().sendAtOnce(LateKey, send, [this] { repaintPage(); });
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

int LayerCommandPrivate::freedKey(const std::shared_ptr<ECCommandItem>& item)
{
    return item ? item->ecButtonKey() : -1;
}

void LayerCommandPrivate::unbindRemovedLayer(
    const BizModel::Device& device, const BizModel::Screen& screen, const LayerPtr& layer)
{
    const auto item = m_items.release(device.ipMacSn(), screen, *layer);
    ecInfo(
        lcPaint, "layer is removed ...  ECKey: %d layerId :%u nScreenId :%u layer name:%s", freedKey(item),
        layer->layerId(), screen.screenId(), qUtf8Printable(layer->name()));
}

void LayerCommandPrivate::forgetScreen(const BizModel::Device& device, const BizModel::Screen& screen)
{
    m_items.forgetScreen(device, screen);
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
    m_items.forgetDevice(device.ipMacSn());
    // The ids name no device, so those of other devices go as well. The removal of such a layer is handled
    // twice then, which changes nothing.
    const std::lock_guard<std::mutex> lock(m_keyLayerRemoveListMtx);
    m_keyLayerRemoveList.clear();
}

// ---- A burst of layer notifications ---------------------------------------------------------------------

void LayerCommandPrivate::rememberUpdate(const QList<WeakScreen>& screens, int type)
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
    ecInfo(lcPaint, "Start updating the layer interface button color");
    QList<WeakScreen> screens;
    {
        const std::lock_guard<std::mutex> lock(m_notificationMtx);
        screens.swap(m_updateTakeScreens);
    }
    if (!m_pCommand->ecCommandConfig())
        return; // as in updateECCommandItems()
    if (const auto page = m_items.giveAnew(screens, m_pCommand->currentPageIndex())) {
        m_pCommand->updateCurrentPageIndex(*page);
        showPageLabel();
    }
    repaintPage();
}

} // namespace Orvane::ECProxy::Client::Internal
