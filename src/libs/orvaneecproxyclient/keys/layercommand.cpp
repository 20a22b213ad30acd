#include "layercommand.h"

#include "consumetime_p.h"
#include "layercommand_p.h"
#include "log_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/layer.h"
#include "bizmodel/screen.h"
#include "ec/eckeyboardconfig.h"

namespace Orvane::ECProxy::Client {

namespace Internal {

const std::vector<KeyRow<LayerCommandPrivate>>& LayerCommandPrivate::keys()
{
    using Type = LayerCallbackType;
    using Key = LayerCommandPrivate;
    constexpr auto Momentary = KeyLight::Momentary;
    // A dialog that opens while a key is held must not keep its release away.
    constexpr auto Passes = ReleasePassesDialog;
    static const std::vector<KeyRow<Key>> s_keys{
        {Type::eNothing, nullptr, nullptr, NoTraits, Momentary},
        {Type::eSelectLayerCB, &Key::selectLayerPressed, &Key::selectLayerRelease, NoTraits,
         KeyLight::Lasting},
        {Type::ePageUp, &Command::pageUpPressed, &Command::pageUpRelease, Passes | HasPageLabel, Momentary},
        {Type::ePageDown, &Command::pageDownPressed, &Command::pageDownRelease, Passes, Momentary},
        {Type::eRemoveSelectedLayerCB, &Key::removeSelectedLayerPressed, &Key::darkenReleasedKey, Passes,
         Momentary},
        {Type::eClearLayersCB, &Key::clearLayersPressed, &Key::clearLayersRelease, Passes, Momentary, nullptr,
         &Key::cancelHold<&Key::m_pClearAllLayerTimer>},
        {Type::eSetSelectedLayerTopZValueCB, &Key::setSelectedLayerTopZValuePressed,
         &Key::setSelectedLayerTopZValueRelease, Passes, Momentary, nullptr,
         &Key::cancelHold<&Key::m_pLayerTopZValueTimer>},
        {Type::eSetSelectedLayerBottomZValueCB, &Key::setSelectedLayerBottomZValuePressed,
         &Key::setSelectedLayerBottomZValueRelease, Passes, Momentary, nullptr,
         &Key::cancelHold<&Key::m_pLayerBottomZValueTimer>},
        {Type::eChangeNewLayerDefaultCapacityCB, &Key::changeNewLayerDefaultCapacityPressed,
         &Key::darkenReleasedKey, Passes, Momentary, &Key::showCapacity},
        {Type::eSetSelectedLayerFullScreenCB, &Key::setSelectedLayerFullScreenPressed,
         &Key::darkenReleasedKey, Passes, Momentary, &Key::showFullScreen, &Key::cancelFullScreen},
    };
    return s_keys;
}

} // namespace Internal

using Internal::LayerCommandPrivate;
using Internal::LayerOperation;

LayerCommand::LayerCommand(QObject* parent)
    : Command(parent)
    , d(std::make_unique<LayerCommandPrivate>(this))
{
    setKeyTable({this, d.get(), LayerCommandPrivate::keys()});
}

LayerCommand::~LayerCommand()
{
    stopPainting();
}

// ---- The group of keys ----------------------------------------------------------------------------------

QString LayerCommand::name() const
{
    return Constants::LAYERCOMMANDNAME;
}

int LayerCommand::maxPage()
{
    return LayerCommandPrivate::PageCount;
}

int LayerCommand::pageSize() const
{
    return d->m_items.pageSize();
}

void LayerCommand::retranslateUi()
{
    d->showPageLabel();
    d->showLabels();
}

QList<std::shared_ptr<ECCommandItem>> LayerCommand::commandItems() const
{
    return Internal::LayerKeyItems::itemsOf(Internal::activedLayerScreen());
}

bool LayerCommand::updatePageOled(const quint32& oledECKey, const quint32& pageIndex)
{
    const bool isShown = Command::updatePageOled(oledECKey, pageIndex);
    d->refreshKeys();
    return isShown;
}

void LayerCommand::updateSelectModeButtonConfig()
{
    d->m_items.make(ecCommandConfig(), maxPage());
}

int LayerCommand::getMinUnusedECButtonIndex(int& orderIndex) const
{
    return d->m_items.minUnusedButtonIndex(commandItems(), orderIndex);
}

std::shared_ptr<EC::s_ECButtonConfig> LayerCommand::findSelectModeButtonByIndex(const int& index) const
{
    return d->m_items.button(index);
}

void LayerCommand::updateKeyboard()
{
    darkenMomentaryKeys();
    d->endHolds("a repaint has set the key dark.");
    d->updateLayerKeyboard();
}

bool LayerCommand::isAllowedKeyReleased(const quint16& ecKey)
{
    return Command::isAllowedKeyReleased(ecKey);
}

bool LayerCommand::containsSelectedECButtonConfigByECKey(const quint32& ecKey) const
{
    return d->m_items.contains(ecKey);
}

void LayerCommand::slotECButtonPressed(const quint32& ecKey)
{
    dispatchPressed(ecKey);
}

void LayerCommand::slotECButtonRelease(const quint32& ecKey)
{
    dispatchReleased(ecKey);
}

void LayerCommand::slotFramelessMessageBoxClosed(QMessageBox::StandardButton button)
{
    d->messageBoxClosed(button == QMessageBox::Yes);
}

// ---- Notifications of the model -------------------------------------------------------------------------

void LayerCommand::slotActivedDeviceChanged()
{
    d->turnToActivedDevice();
    updateKeyboard();
}

void LayerCommand::slotDeviceRemoved(DevicePtr device)
{
    if (device)
        d->forgetDevice(*device);
    d->turnToActivedDevice();
    updateKeyboard();
}

void LayerCommand::slotActivedScreenChanged(WeakDevice, WeakScreen screen)
{
    d->endHoldsOfOtherScreens();
    d->rememberSelection();
    if (screen.expired() || checkScreenType(screen))
        d->refreshKeys();
}

void LayerCommand::slotSelectedScreensChanged(WeakDevice)
{
    d->refreshKeys();
}

void LayerCommand::slotDeviceRegulerScreenAdded(WeakDevice weakDevice, WeakScreen weakScreen)
{
    const auto device = weakDevice.lock();
    const auto screen = weakScreen.lock();
    if (!device || !screen || !checkScreenType(screen->screenType()))
        return;
    Internal::LayerKeyItems::initScreen(device->ipMacSn(), *screen);
    d->refreshKeys();
}

void LayerCommand::slotDeviceRegulerScreenRemoved(WeakDevice weakDevice, ScreenPtr screen)
{
    const auto device = weakDevice.lock();
    if (!device || !screen)
        return;
    d->endHoldsOfOtherScreens();
    d->forgetScreen(*device, *screen);
    d->refreshKeys();
}

void LayerCommand::slotDeviceScreenBaseLayerAdded(WeakDevice, WeakScreen, WeakLayer)
{
    if (d->m_operation.leaveRepaint(LayerOperation::Kind::Creating)) {
        ecInfo(lcModel, "Layer is created by key. ignore this slot.");
        return;
    }
    d->refreshKeys();
}

void LayerCommand::slotDeviceScreenBaseLayerRemoved(
    WeakDevice weakDevice, WeakScreen weakScreen, LayerPtr layer)
{
    if (!layer)
        return;
    const bool isRemovedByKey = d->takeKeyRemoval(layer->screenLayerId());
    if (layer->sceneType() != BizModel::SceneType::PVW) {
        ecInfo(lcModel, "Layer scene type is not PVW.  Type:%d", int(layer->sceneType()));
        return;
    }
    if (const auto running = d->m_operation.leaveRepaint(); running != LayerOperation::Kind::None) {
        ecInfo(
            lcModel,
            running == LayerOperation::Kind::Creating
                ? "Layer is created by key... Can not remove layer keyboard command configs, layer id:%u"
                  " layer name:%s"
                : "Layer is removing by key... Can not remove layer keyboard command configs, layer id:%u"
                  " layer name:%s",
            layer->layerId(), qUtf8Printable(layer->name()));
        return;
    }
    const auto device = weakDevice.lock();
    const auto screen = weakScreen.lock();
    if (!isRemovedByKey && device && screen)
        d->unbindRemovedLayer(*device, *screen, layer);
    d->refreshKeys();
}

void LayerCommand::slotSelectedRegularLayersChanged(WeakDevice device, WeakScreen screen)
{
    if (const auto running = d->m_operation.leaveRepaint(); running != LayerOperation::Kind::None) {
        ecInfo(
            lcModel,
            running == LayerOperation::Kind::Creating ? "Layer is created by key... ignore this slot"
                                                      : "Layer is removing by key... ignore this slot");
        d->rememberSelection();
        return;
    }
    if (device.expired()) {
        ecWarning(lcModel, "Device is nullptr.");
        return;
    }
    const auto changed = screen.lock();
    if (!changed) {
        ecWarning(lcModel, "Screen is nullptr.");
        return;
    }
    const auto target = Internal::activedLayerScreen();
    if (!target || target->screen != changed)
        return;
    d->updateECCommandItems();
    d->showNewlySelectedLayer(*target);
    d->updateLayerKeyboard();
}

void LayerCommand::slotNotifyUpdateLayer(const QList<WeakScreen>& screens, int type)
{
    Internal::logConsumeTime("preset consume time: Update LayerCommand Notify Timer start.");
    d->rememberUpdate(screens, type);
}

void LayerCommand::slotUpdateTakeScreenTimeout()
{
    Internal::logConsumeTime("preset consume time: Timeout, Update LayerCommand Notify Timer start.");
    updateLayerECButtonAfterTake();
    Internal::logConsumeTime("preset consume time: end, Update LayerCommand Notify Timer end.");
}

void LayerCommand::updateLayerECButtonAfterTake()
{
    d->updateAfterTake();
}

void LayerCommand::slotLayerNameChanged(WeakDevice weakDevice, WeakScreen weakScreen, WeakLayer weakLayer)
{
    const auto device = weakDevice.lock();
    const auto screen = weakScreen.lock();
    const auto layer = weakLayer.lock();
    if (device && screen && layer && Internal::isKeyLayer(*layer))
        d->updateLayerName(*device, *screen, *layer);
}

} // namespace Orvane::ECProxy::Client
