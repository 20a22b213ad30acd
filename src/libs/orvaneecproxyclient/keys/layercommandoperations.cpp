// The keys that change the layers which are selected, or all of them.
#include "layercommand_p.h"

#include "layerplacement_p.h"
#include "log_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/layer.h"
#include "bizmodel/resourcecheck.h"
#include "bizmodel/screen.h"
#include "bizmodel/translations.h"
#include "ec/eckeyboardconfig.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"

#include <algorithm>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

namespace Translate = BizModel::Translate;
using BizModel::SceneType;
using BizModel::StatusBarMsgType;
using ScreenState = BizModel::Enum::Screen::State;
using ScreenType = BizModel::Enum::Screen::ScreenType;

namespace {

/// The selected layers of both scenes that may be changed now.
QList<LayerPtr> changeableSelection(const BizModel::Screen& screen)
{
    QList<LayerPtr> layers;
    const auto selected = screen.selectedLayers(BizModel::Enum::Scene::BothScenes);
    for (const auto& weakLayer : selected) {
        const auto layer = weakLayer.lock();
        if (layer && layer->getLayerOperationAllowed())
            layers.append(layer);
    }
    return layers;
}

QList<WeakLayer> weakened(const QList<LayerPtr>& layers)
{
    QList<WeakLayer> weak;
    for (const LayerPtr& layer : layers)
        weak.append(layer);
    return weak;
}

/// True when the screen has the resources for the new windows, those of each scene together.
bool hasResourcesFor(const ScreenPtr& screen, const QList<std::pair<LayerPtr, QRect>>& windows)
{
    for (const SceneType scene : {SceneType::PVW, SceneType::PGM}) {
        BizModel::ResourceCheck::LayerRects rects;
        for (const auto& [layer, window] : windows) {
            if (layer->sceneType() == scene)
                rects.append({layer, window});
        }
        if (!rects.isEmpty()
            && !BizModel::ResourceCheck::CheckOperationResources(screen, rects, screen->outputs(), scene, {}))
            return false;
    }
    return true;
}

/// Clears the layers of a scene; `failureLine` is logged when that fails.
void startClearing(const DevicePtr& device, const ScreenPtr& screen, SceneType scene, const char* failureLine)
{
    auto* requests = ModelControl::AsyncManager::instance();
    if (!requests) {
        ecWarning(lcModel, "%s There is no manager for asynchronous requests.", failureLine);
        return;
    }
    if (device->onlineFlag())
        showWaitingDialog(Translate::tr(Translate::TR_THE_LAYER_CLEAR_WAIT));
    else
        ecWarning(lcModel, "Clear layers: the device is offline and may not carry it out.");
    // The request may end after the command: the completion uses nothing of it.
    const auto completion = [failureLine](bool ok, const QString& text) {
        if (!ok)
            ecWarning(lcModel, "%s %s", failureLine, qUtf8Printable(text));
        hideWaitingDialog();
    };
    requests->startAsyncRequest(
        ModelControl::AsyncRemoveLayer{device, screen, scene, BizModel::LayerType::AllLayerType, completion});
}

} // namespace

void LayerCommandPrivate::endHoldsOfOtherScreens()
{
    for (LayerHold* hold : {&m_pClearAllLayerTimer, &m_pLayerTopZValueTimer, &m_pLayerBottomZValueTimer})
        hold->endUnlessActived();
}

void LayerCommandPrivate::endHolds(const char* reason)
{
    for (LayerHold* hold : {&m_pClearAllLayerTimer, &m_pLayerTopZValueTimer, &m_pLayerBottomZValueTimer})
        hold->cancel(reason);
}

void LayerCommandPrivate::cancelFullScreen(const quint32&)
{
    if (m_pFullScreenTimer.stop())
        m_fullScreenPressCnt = 0;
}

bool LayerCommandPrivate::darkenReleasedKey(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
    return true;
}

void LayerCommandPrivate::darkenFunction(LayerCallbackType type)
{
    m_pCommand->darkenKeys([type](quint16 orvaneKey) { return orvaneKey == quint16(type); });
}

// ---- Remove the selected layers -------------------------------------------------------------------------

bool LayerCommandPrivate::removeSelectedLayerPressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    const OperationRun removal(this, LayerOperation::Kind::Removing);
    if (!removal) {
        ecWarning(
            lcKeys,
            removal.excluding() == LayerOperation::Kind::Creating
                ? "Layer is created by key. Can not remove layer."
                : "Layer is removing by key. Can not remove layer.");
        return false;
    }
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "active device is nullptr.");
        return false;
    }
    const auto screen = device->activedScreen().lock();
    if (!screen || screen->screenType() != ScreenType::RegularScreen) {
        ecWarning(lcKeys, "active reguler screen is nullptr.");
        return false;
    }
    const ScreenState state = screen->state();
    if (state == ScreenState::Taking || state == ScreenState::Cut || state == ScreenState::Tbar_taking
        || state == ScreenState::MatchingPGM) {
        ecWarning(lcKeys, "remove layer failed, Screen state is %d", int(state));
        return false;
    }
    const auto layers = changeableSelection(*screen);
    if (layers.isEmpty()) {
        ecWarning(lcKeys, "remove layer failed, no layer that may be removed is selected.");
        return false;
    }
    removeLayers({device, screen, device->ipMacSn(), layerServerId(*screen)}, layers);
    return true;
}

void LayerCommandPrivate::removeLayers(const LayerScreen& target, const QList<LayerPtr>& layers)
{
    const auto control = ModelControl::Device::screenModelControl(ScreenType::RegularScreen, target.device);
    if (!control) {
        ecWarning(lcModel, "screen model control is nullptr . ");
        return;
    }
    // Listed before the removal begins, because its notifications come at once, on the GUI thread.
    QList<BizModel::s_ScreenLayerId> ids;
    for (const LayerPtr& layer : layers)
        ids.append(layer->screenLayerId());
    {
        const std::lock_guard<std::mutex> lock(m_keyLayerRemoveListMtx);
        m_keyLayerRemoveList += ids;
    }
    ecInfo(lcModel, "Add layer id list size:%d", ids.size());
    for (const auto& id : qAsConst(ids))
        ecInfo(lcModel, " ScreenId:%u layerId :%u", id.screenId, id.layerId);

    QList<std::pair<BizModel::s_ScreenLayerId, QString>> failed;
    control->removeLayers(target.screen, weakened(layers), failed);
    ecInfo(lcModel, "Remove layer id list size:%d", ids.size() - failed.size());
    for (const auto& [id, error] : qAsConst(failed)) {
        ecWarning(lcModel, " Remove layer failed: layer id:%u errMsg:%s", id.layerId, qUtf8Printable(error));
        takeKeyRemoval(id);
    }
    for (int i = 0; i < layers.size(); ++i) {
        const bool isRemoved = std::none_of(
            failed.begin(), failed.end(), [&](const auto& failure) { return failure.first == ids.at(i); });
        if (!isRemoved || ids.at(i).sceneType != SceneType::PVW)
            continue;
        const BizModel::Layer& layer = *layers.at(i);
        const auto item = m_items.release(target.ip, *target.screen, layer);
        ecInfo(
            lcPaint, "layer is removing ...  ECKey: %d layerId :%u layer name:%s", freedKey(item),
            layer.layerId(), qUtf8Printable(layer.name()));
    }
    repaintPage();
}

// ---- Clear all layers -----------------------------------------------------------------------------------

bool LayerCommandPrivate::clearLayersPressed(const quint32& ecKey)
{
    ecInfo(lcKeys, "Clear all layers pressed.");
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    if (!m_pCommand->getVirtualConsoleMode()) {
        m_pClearAllLayerTimer.press();
        return true;
    }
    // On the on-screen console a question takes the place of the hold.
    const LayerTarget target = LayerTarget::actived();
    const auto screen = target.screen.lock();
    if (!screen) {
        ecWarning(lcKeys, "Clear layers failed: screen is nullptr.");
        return false;
    }
    const SceneType scene = screen->operationTarget();
    if (scene != SceneType::PGM && scene != SceneType::PVW) {
        ecWarning(lcKeys, "Error screen operation target: %d", int(scene));
        return false;
    }
    {
        const std::lock_guard<std::mutex> lock(m_notificationMtx);
        m_currentModule = ClearQuestion{target, scene};
    }
    showFramelessMessageBox(
        BizModel::FramelessMessageBoxMsgType::Question,
        Translate::tr(
            scene == SceneType::PGM ? Translate::TR_THE_LAYER_CLEAR_PGM : Translate::TR_THE_LAYER_CLEAR_PVW));
    return true;
}

bool LayerCommandPrivate::clearLayersRelease(const quint32& ecKey)
{
    m_pClearAllLayerTimer.cancel();
    return darkenReleasedKey(ecKey);
}

void LayerCommandPrivate::messageBoxClosed(bool confirmed)
{
    // Every answer darkens the clear key, and a dark key must not clear.
    m_pClearAllLayerTimer.cancel("a question was answered while the key was held.");
    std::optional<ClearQuestion> question;
    if (confirmed) {
        // A No leaves the question open: the next Yes, to whatever question, is taken for its answer.
        const std::lock_guard<std::mutex> lock(m_notificationMtx);
        question.swap(m_currentModule);
    }
    if (question && question->target.isPresent())
        clearAllLayer(question->target, question->scene);
    else if (question)
        ecWarning(lcModel, "Clear layers failed: the screen that the question was about is gone.");
    darkenFunction(LayerCallbackType::eClearLayersCB);
}

void LayerCommandPrivate::clearAllLayer(const LayerTarget& target, std::optional<SceneType> asked)
{
    ecInfo(lcKeys, "Clear all layers timeout.");
    const auto device = target.device.lock();
    const auto screen = target.screen.lock();
    if (!device || !screen) {
        ecWarning(lcKeys, "Clear layers failed: screen is nullptr.");
        return;
    }
    if (screen->state() != ScreenState::Normal) {
        ecWarning(lcKeys, "Clear layers failed, Screen state is %d", int(screen->state()));
        return;
    }
    const SceneType scene = asked.value_or(screen->operationTarget());
    if (scene == SceneType::PGM)
        startClearing(device, screen, scene, "Clear PGM Layers failed.");
    else if (scene == SceneType::PVW)
        startClearing(device, screen, scene, "Clear PVW Layers failed.");
    else
        ecWarning(lcKeys, "Error screen operation target: %d", int(scene));
}

// ---- To the front, to the back --------------------------------------------------------------------------

bool LayerCommandPrivate::setSelectedLayerTopZValuePressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    m_pLayerTopZValueTimer.press();
    return true;
}

bool LayerCommandPrivate::setSelectedLayerTopZValueRelease(const quint32& ecKey)
{
    if (const auto target = m_pLayerTopZValueTimer.release())
        changeZOrder(*target, &ModelControl::Screen::incrZOrder);
    return darkenReleasedKey(ecKey);
}

bool LayerCommandPrivate::setSelectedLayerBottomZValuePressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    m_pLayerBottomZValueTimer.press();
    return true;
}

bool LayerCommandPrivate::setSelectedLayerBottomZValueRelease(const quint32& ecKey)
{
    if (const auto target = m_pLayerBottomZValueTimer.release())
        changeZOrder(*target, &ModelControl::Screen::decrZOrder);
    return darkenReleasedKey(ecKey);
}

void LayerCommandPrivate::changeZOrder(const LayerTarget& target, ZOrderOperation operation)
{
    const auto device = target.device.lock();
    const auto screen = target.screen.lock();
    if (!device || !screen) {
        ecWarning(lcKeys, "Layer order failed: screen is nullptr.");
        return;
    }
    const auto layers = changeableSelection(*screen);
    if (layers.isEmpty()) {
        ecWarning(lcKeys, "Layer order failed: no layer that may be moved is selected.");
        return;
    }
    const auto control = ModelControl::Device::screenModelControl(screen->screenType(), device);
    if (!control) {
        ecWarning(lcModel, "screen model control is nullptr . ");
        return;
    }
    if (!(control.get()->*operation)(screen, weakened(layers)))
        ecWarning(lcModel, "Layer order failed: the model refused it.");
}

// ---- Capacity of new layers -----------------------------------------------------------------------------

bool LayerCommandPrivate::changeNewLayerDefaultCapacityPressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    BizModel::CapacityMode current = m_currentLayerTemplate;
    const auto next = [](BizModel::CapacityMode capacity) {
        return capacity == BizModel::CapacityMode::_4K ? BizModel::CapacityMode::_SL
                                                       : BizModel::CapacityMode(int(capacity) + 1);
    };
    while (!m_currentLayerTemplate.compare_exchange_weak(current, next(current))) { }
    initLayerCapacity();
    return true;
}

// ---- Full screen ----------------------------------------------------------------------------------------

bool LayerCommandPrivate::setSelectedLayerFullScreenPressed(const quint32& ecKey)
{
    m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
    ++m_fullScreenPressCnt;
    m_pFullScreenTimer.restart(FullScreenPressWindow);
    return true;
}

void LayerCommandPrivate::fullnSelectedLayer()
{
    const int presses = m_fullScreenPressCnt.exchange(0);
    const auto device = activedDevice();
    const auto screen = device ? device->activedScreen().lock() : nullptr;
    if (!screen || screen->screenType() != ScreenType::RegularScreen) {
        ecWarning(lcKeys, "full layer failed, there is no active regular screen.");
        return;
    }
    if (presses < 1) {
        ecWarning(lcKeys, "full layer failed, fullScreenPressCnt is %d", presses);
        return;
    }
    const QRect mosaic = screen->mosaicWindowRect();
    const QList<QRect> outputs = outputRects(*screen);
    QList<std::pair<LayerPtr, QRect>> windows;
    const auto layers = changeableSelection(*screen);
    for (const LayerPtr& layer : layers) {
        const QRect window =
            presses > 1 ? mosaic : windowOverTouchedOutputs(layer->windowRect(), outputs, mosaic);
        windows.append({layer, window});
    }
    if (windows.isEmpty()) {
        ecWarning(lcKeys, "full layer failed, no layer that may be resized is selected.");
        return;
    }
    if (!hasResourcesFor(screen, windows)) {
        ecWarning(lcKeys, "Layer resource out, failed to full screen layer.");
        showStatusBarMsg(StatusBarMsgType::Warning, Translate::tr(Translate::TR_THE_LAYER_NO_RESOURCES));
        return;
    }
    for (const auto& [layer, window] : qAsConst(windows)) {
        const auto control = ModelControl::Screen::layerModelControl(layer->layerType(), device);
        if (!control || !control->updateWindow(layer, window))
            ecWarning(lcModel, "Send command to device failed, failed to expand layers.");
    }
}

} // namespace Orvane::ECProxy::Client::Internal
