// The select keys of the layers: a lit one selects its layer, a dark one makes a layer and keeps it.
#include "layercommand_p.h"

#include "inputkeyitems_p.h"
#include "layerplacement_p.h"
#include "log_p.h"
#include "modelaccess_p.h"

#include "bizmodel/connector.h"
#include "bizmodel/device.h"
#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/resourcecheck.h"
#include "bizmodel/screen.h"
#include "bizmodel/subcard.h"
#include "bizmodel/translations.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"

#include <algorithm>

namespace Orvane::ECProxy::Client::Internal {

namespace Translate = BizModel::Translate;
using BizModel::LayerType;
using BizModel::SceneType;
using BizModel::StatusBarMsgType;
using ScreenState = BizModel::Enum::Screen::State;
using ScreenType = BizModel::Enum::Screen::ScreenType;

namespace {

int layerCapacity(const BizModel::Screen& screen)
{
    int capacity = 0;
    const auto subcards = screen.subCards();
    for (const auto& weakSubcard : subcards) {
        if (const auto subcard = weakSubcard.lock())
            capacity += subcard->layerCapacity();
    }
    return capacity;
}

} // namespace

// ---- A select key is pressed ----------------------------------------------------------------------------

bool LayerCommandPrivate::selectLayerPressed(const quint32& ecKey)
{
    if (m_operation.running() == LayerOperation::Kind::Removing) {
        ecWarning(lcKeys, "Layer is removing ... Can not add layer ...");
        return false;
    }
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Create layer failed: device is nullptr.");
        return false;
    }
    const auto screen = device->activedScreen().lock();
    if (!screen) {
        ecWarning(lcKeys, "Create layer failed:screen is nullptr.");
        return false;
    }
    if (!screen->isComplete()) {
        ecWarning(lcKeys, "Create layer failed:layer key [%u] pressed but screen is not Complete.", ecKey);
        return false;
    }
    const LayerScreen target{device, screen, device->ipMacSn(), layerServerId(*screen)};
    const KeyPlace place = keyPlace(ecKey);
    if (const auto layer = m_items.findBindingLayer(target, place))
        return selectLayer(target, layer);

    ecInfo(lcKeys, "layer key [%u] pressed to create layer.", ecKey);
    const OperationRun creation(this, LayerOperation::Kind::Creating);
    if (!creation) {
        // The other console was quicker.
        ecWarning(
            lcKeys,
            creation.excluding() == LayerOperation::Kind::Removing
                ? "Layer is removing ... Can not add layer ..."
                : "Layer is created by key. Can not add layer ...");
        return false;
    }
    if (!createLayer(ecKey, place)) {
        ecWarning(lcModel, "Create layer failed.");
        return false;
    }
    return true;
}

bool LayerCommandPrivate::selectLayer(const LayerScreen& target, const LayerPtr& layer)
{
    const auto control = ModelControl::Screen::layerModelControl(layer->layerType(), target.device);
    if (!control) {
        ecWarning(lcModel, "Select layer failed: layer model control is nullptr.");
        return false;
    }
    if (control->setSelected(target.screen, {layer}, BizModel::SelectedType::Cover, true))
        return true;
    ecWarning(lcModel, "Select layer failed: the model refused layer %u.", layer->layerId());
    return false;
}

bool LayerCommandPrivate::selectLayerRelease(const quint32&)
{
    return true;
}

// ---- A layer for a free key -----------------------------------------------------------------------------

LayerPtr LayerCommandPrivate::createLayer(const quint32& ecKey, const KeyPlace& place)
{
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "can not add layer, pDevice is nullptr.");
        return nullptr;
    }
    const auto screen = device->activedScreen().lock();
    if (!screen) {
        ecWarning(lcKeys, "can not add layer, actived screen is nullptr.");
        return nullptr;
    }
    if (!isReadyForNewLayer(*device, *screen))
        return nullptr;
    const auto input = getMachingInput(*device);
    const auto probe = input ? makeProbeLayer(*device, *screen, input) : nullptr;
    if (!probe) {
        ecWarning(lcKeys, "can not add layer, Unable to find matching input source!");
        showStatusBarMsg(StatusBarMsgType::Error, Translate::tr(Translate::TR_THE_LAYER_NO_MATCHING_INPUT));
        return nullptr;
    }
    const LayerScreen target{device, screen, device->ipMacSn(), layerServerId(*screen)};
    const QSize size = probe->defulatSize(input);
    const QPoint position = getNextPostition(target, input, probe);
    if (position == NoLayerPosition) {
        if (screen->state() == ScreenState::Normal)
            holdResourceOut(screen);
        ecWarning(lcKeys, "Layer pos is (-1,-1). ");
        return nullptr;
    }
    const auto control = ModelControl::Device::screenModelControl(ScreenType::RegularScreen, device);
    if (!control) {
        ecWarning(lcModel, "screen model control is nullptr . ");
        return nullptr;
    }
    logBinding(ecKey, place, target);
    auto layer = control->addLayer(
        screen, LayerType::Regular, SceneType::PVW, int(input->interfaceId()), BizModel::SourceType::Input,
        QRect(position, size));
    if (!layer) {
        ecWarning(lcModel, "Create layer by drag failed: new layer is nullptr.");
        return nullptr;
    }
    showNewLayer(target, ecKey, place, layer);
    device->appendViewingScreen(screen);
    return layer;
}

bool LayerCommandPrivate::isReadyForNewLayer(const BizModel::Device& device, const BizModel::Screen& screen)
{
    if (screen.screenType() != ScreenType::RegularScreen) {
        ecWarning(lcKeys, "can not add layer, current Screen type is: %d", int(screen.screenType()));
        return false;
    }
    if (screen.outputs().isEmpty()) {
        ecWarning(lcKeys, "can not add layer, current Screen output count is 0.");
        return false;
    }
    const ScreenState state = screen.state();
    if (state != ScreenState::Normal && state != ScreenState::Resource_out) {
        ecWarning(lcKeys, "can not add layer, Screen state is %d", int(state));
        showStatusBarMsg(StatusBarMsgType::Error, Translate::tr(Translate::TR_THE_LAYER_SCREEN_TAKING));
        return false;
    }
    if (device.isLayerLimited(SceneType::PVW)
        || layerCapacity(screen) <= screen.layerCount(SceneType::PVW, LayerType::NotImageType)) {
        ecWarning(lcKeys, "can not add layer, layer number is bigger than the max.");
        showStatusBarMsg(StatusBarMsgType::Error, Translate::tr(Translate::TR_THE_LAYER_LIMIT));
        return false;
    }
    return true;
}

void LayerCommandPrivate::logBinding(const quint32& ecKey, const KeyPlace& place, const LayerScreen& target)
{
    const quint32 screenId = target.screen->screenId();
    const quint32 layerId = target.screen->nextLayerId(SceneType::PVW, LayerType::Regular);
    const QString name = target.screen->nextLayerName(SceneType::PVW, LayerType::Regular);
    ecInfo(
        lcPaint,
        "layer is binding ...  ECKey: %u layerId :%u nScreenId :%u layerIdentId :%u.%d.%u layer name :%s"
        " key button index: %d key orderIndex index: %d",
        ecKey, layerId, screenId, screenId, int(SceneType::PVW), layerId, qUtf8Printable(name),
        place.buttonIndex, place.orderIndex);
}

KeyPlace LayerCommandPrivate::keyPlace(const quint32& ecKey) const
{
    KeyPlace place;
    place.pageIndex = m_pCommand->currentPageIndex();
    place.orderIndex = m_pCommand->findECButtonOrderIndex(ecKey);
    if (place.orderIndex >= 0)
        place.buttonIndex = place.pageIndex * m_pCommand->pageSize() + place.orderIndex;
    return place;
}

void LayerCommandPrivate::showNewLayer(
    const LayerScreen& target, const quint32& ecKey, const KeyPlace& place, const LayerPtr& layer)
{
    const QString name = layer->name();
    const auto item = m_items.bindNew(target, place, *layer);
    if (!item) {
        ecWarning(lcPaint, "Key %u has another layer by now, the new layer gets the next free one.", ecKey);
        refreshKeys();
        return;
    }
    const auto send = [&] {
        if (!isShown(target.ip, target.serverId, *item) || item->ecOledText() != name
            || item->ecButtonColor() != ECLEDColor::Yellow)
            return;
        m_pCommand->updateECOledTextByBtnECKey(ecKey, name);
        m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Yellow);
    };
    m_pCommand->painter().sendAtOnce(LateKey, send, [this] { repaintPage(); });
}

// ---- Source and place of a new layer --------------------------------------------------------------------

InputPtr LayerCommandPrivate::getMachingInput(const BizModel::Device& device) const
{
    const auto inputs = sortedInputs(device);
    const BizModel::CapacityMode wanted = m_currentLayerTemplate;
    for (const auto& [id, input] : inputs) {
        const auto connector = device.getConnector(input->interfaceFullId()).lock();
        if (input->isActive() && connector && connector->capacity() == wanted)
            return input;
    }
    return nullptr;
}

LayerPtr LayerCommandPrivate::makeProbeLayer(
    const BizModel::Device& device, const BizModel::Screen& screen, const InputPtr& input)
{
    const auto connector = device.getConnector(input->interfaceFullId()).lock();
    return screen.createProbeLayer(input, connector ? connector->capacity() : input->capacity());
}

QPoint LayerCommandPrivate::getNextPostition(
    const LayerScreen& target, const InputPtr& input, const LayerPtr& probe)
{
    if (target.screen->screenType() != ScreenType::RegularScreen)
        return NoLayerPosition;
    LayerPlacement placement;
    placement.outputs = outputRects(*target.screen);
    if (placement.outputs.isEmpty())
        return NoLayerPosition;
    placement.size = probe->defulatSize(input);
    const auto layers = previewLayers(*target.screen);
    for (const auto& layer : layers)
        placement.layerOrigins.append(layer->windowRect().topLeft());

    const QPoint position = findLayerPosition(placement, [&](const QRect& window) {
        const bool hasResources =
            BizModel::ResourceCheck::CheckOperationResources(target.screen, {{probe, window}});
        if (!hasResources)
            ecWarning(lcKeys, "Layer resource out, failed to full screen layer.");
        return hasResources;
    });
    if (position == NoLayerPosition) {
        ecWarning(lcKeys, "Layer resource out, failed to get next layer position.");
        showStatusBarMsg(StatusBarMsgType::Warning, Translate::tr(Translate::TR_THE_LAYER_NO_RESOURCES));
    }
    return position;
}

void LayerCommandPrivate::holdResourceOut(const ScreenPtr& screen)
{
    screen->setState(ScreenState::Resource_out);
    {
        const std::lock_guard<std::mutex> lock(m_notificationMtx);
        m_resourceOutScreens.append(screen);
    }
    m_pScreenStateTimer.restart(ResourceOutDuration);
}

void LayerCommandPrivate::slotScreenStateTimeOut()
{
    // The operator may have gone to another device since.
    QList<WeakScreen> screens;
    {
        const std::lock_guard<std::mutex> lock(m_notificationMtx);
        screens.swap(m_resourceOutScreens);
    }
    if (const auto device = activedDevice())
        screens += device->screens(ScreenType::RegularScreen);
    else
        ecWarning(lcModel, "current Device is nullptr.");
    for (const auto& weakScreen : qAsConst(screens)) {
        const auto screen = weakScreen.lock();
        if (screen && screen->state() == ScreenState::Resource_out)
            screen->setState(ScreenState::Normal);
    }
}

} // namespace Orvane::ECProxy::Client::Internal
