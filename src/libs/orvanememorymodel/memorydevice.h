#pragma once

#include "memoryinterface.h"
#include "memorypreset.h"
#include "memoryscreen.h"
#include "modelhub.h"
#include "orvaneplatform/bizmodel/device.h"
#include "orvaneplatform/bizmodel/keypad.h"
#include "records.h"

#include <QMap>

namespace Orvane::MemoryModel {

class MemoryDevice final : public BizModel::Device, public std::enable_shared_from_this<MemoryDevice> {
public:
    using Screens = QList<std::shared_ptr<MemoryScreen>>;
    using Presets = QList<std::shared_ptr<MemoryPreset>>;

    /// A preset is loaded in two halves on two threads, in either order: the model takes its scenes over, and
    /// the device is told. What the first half leaves for the second.
    struct PresetLoad {
        enum class Half { None, RefusedByModel, ToldToDevice };

        Half done = Half::None;
        quint16 fileId = 0;
        /// Of a load that the device was told: the preset that was active before it.
        std::shared_ptr<MemoryPreset> formerPreset;
    };

    /// What changes over a device's life.
    struct Data : DeviceSettings {
        QString preIPMacSn;
        bool upgrading = false;
        Screens screens;
        /// Made by `createDefaultScreen` and not part of the device yet.
        QList<std::weak_ptr<MemoryScreen>> pendingScreens;
        std::shared_ptr<MemoryScreen> activeScreen;
        QList<std::weak_ptr<MemoryScreen>> viewingScreens;
        QMap<quint32, std::shared_ptr<MemoryInput>> inputs;
        quint32 selectedInput = 0;
        /// Preview presets first, each kind by file id.
        Presets presets;
        /// One of this device or of another of its group.
        std::shared_ptr<MemoryPreset> activePreset;
        /// The load that the model and the device have not both dealt with.
        PresetLoad openLoad;
        std::shared_ptr<BizModel::Keypad> keypad;
    };

    /// A device with the hardware and the flags of the record; `populate` adds what is on it.
    MemoryDevice(std::shared_ptr<ModelHub> hub, const DeviceRecord& record);

    QString ipMacSn() const override { return data(Guard(*m_pHub)).ipMacSn; }
    QString preIPMacSn() const override { return data(Guard(*m_pHub)).preIPMacSn; }
    QString groupId() const override { return data(Guard(*m_pHub)).groupId; }
    bool onlineFlag() const override { return data(Guard(*m_pHub)).online; }
    bool isDeviceUpgrading() const override { return data(Guard(*m_pHub)).upgrading; }
    BizModel::s_DeviceConfig deviceConfig() const override;

    std::weak_ptr<BizModel::Screen> activedScreen() const override
    {
        return data(Guard(*m_pHub)).activeScreen;
    }
    QList<std::weak_ptr<BizModel::Screen>> screens(int screenTypeMask) const override;
    QList<std::weak_ptr<BizModel::Screen>> selectedScreen(int screenTypeMask) const override;
    bool isScreenSelected(const std::weak_ptr<BizModel::Screen>& screen) const override;
    bool isMultiScreens() const override { return data(Guard(*m_pHub)).multiScreens; }
    bool isScreenLimited(ScreenType type) const override;
    std::shared_ptr<BizModel::Screen> createDefaultScreen(ScreenType type) override;
    std::weak_ptr<BizModel::Output> firstUnsedOutput() const override;
    void appendViewingScreen(const std::weak_ptr<BizModel::Screen>& screen) override;

    bool swapEnable() const override { return data(Guard(*m_pHub)).swap; }

    bool isLayerLimited(BizModel::SceneType scene) const override;
    QList<std::weak_ptr<BizModel::Input>> validInputs() const override;
    std::weak_ptr<BizModel::Input> findInput(quint32 interfaceId) const override;
    std::weak_ptr<BizModel::Connector> getConnector(
        const BizModel::s_InterfaceFullId& interfaceFullId) const override;

    quint16 maxPresetCount() const override { return m_nMaxPresetCount; }
    QList<std::weak_ptr<BizModel::Preset>> presets() const override;
    std::weak_ptr<BizModel::Preset> activedPreset() const override
    {
        return data(Guard(*m_pHub)).activePreset;
    }
    void setActivedPreset(const std::weak_ptr<BizModel::Preset>& preset, quint16 fileId) override;
    bool editPresetValidityCheck(const QString& text, QString& error) const override;
    bool loadToPGMEnable() const override { return data(Guard(*m_pHub)).loadToPGM; }
    QList<std::weak_ptr<BizModel::File>> files(FileType type) const override;
    void addKeypadFile(const std::shared_ptr<BizModel::Keypad>& keypad) override;

    /// @name For the model itself
    /// @{
    const Data& data(const Guard& guard) const { return m_data.get(guard); }
    Data& data(Change& change) { return m_data.get(change); }
    /// Adds the screens, inputs and presets of the record, which has no faults.
    void populate(Change& change, const DeviceRecord& record);
    DeviceRecord record(const Guard& guard) const;

    const LimitsRecord& limits() const { return m_limits; }
    const QList<std::shared_ptr<MemoryOutput>>& allOutputs() const { return m_outputs; }
    std::shared_ptr<MemorySubcard> subcard(quint32 subcardId) const;
    std::shared_ptr<MemoryOutput> output(quint32 outputId) const;
    std::shared_ptr<MemoryConnector> connector(const MemoryInput& input) const;

    std::shared_ptr<MemoryScreen> screen(const Guard& guard, ScreenKey key) const;
    /// The screen when it is one of this device, else empty.
    std::shared_ptr<MemoryScreen> own(
        const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen) const;
    std::shared_ptr<MemoryPreset> own(
        const Guard& guard, const std::weak_ptr<BizModel::Preset>& preset) const;
    std::shared_ptr<MemoryPreset> preset(const Guard& guard, FileType type, quint16 fileId) const;
    int screenCount(const Guard& guard, ScreenType type) const;
    int layerCount(const Guard& guard, BizModel::SceneType scene) const;
    /// Screens of the types that are selected and have outputs: those that a take would act on.
    Screens takeScreens(const Guard& guard, int screenTypeMask, bool onlySelected) const;
    bool isOutputShown(const Guard& guard, const std::shared_ptr<MemoryOutput>& output) const;
    /// The same, screens that are not part of the device yet included.
    bool isOutputUsed(const Guard& guard, const std::shared_ptr<MemoryOutput>& output) const;

    std::shared_ptr<MemoryScreen> createScreen(Change& change, ScreenType type);
    /// Whether the screen can become part of the device after those that are @p accepted. If not, @p error
    /// says why.
    bool canAddScreen(
        const Guard& guard, const std::shared_ptr<MemoryScreen>& screen, const Screens& accepted,
        QString& error) const;
    void addScreen(Change& change, const std::shared_ptr<MemoryScreen>& screen);
    bool removeScreen(Change& change, const std::shared_ptr<MemoryScreen>& screen);
    /// Selects those screens for which @p select, called with each and whether it is selected now, is true.
    /// The change shows at once; @p notify also sends its signal.
    void selectScreens(
        Change& change, const std::function<bool(const std::shared_ptr<MemoryScreen>&, bool)>& select,
        bool notify = true);
    void setActiveScreen(Change& change, const std::shared_ptr<MemoryScreen>& screen);
    void setKeypad(Change& change, const std::shared_ptr<BizModel::Keypad>& keypad);
    void setActivePreset(Change& change, const std::shared_ptr<MemoryPreset>& preset);
    /// @name The halves of a preset's load
    /// @{

    /// A new load begins: the refusal of an earlier one no longer counts.
    void beginLoad(Change& change, quint16 fileId);
    /// The device was told: the preset becomes active. False when the model has refused the load.
    bool loadedByDevice(Change& change, const std::shared_ptr<MemoryPreset>& preset, quint16 fileId);
    /// The model has taken the preset's scenes over, or has refused them: the former preset is active again.
    void loadedByModel(Change& change, quint16 fileId);
    void refusedByModel(Change& change, quint16 fileId);
    /// @}
    void insertPreset(Change& change, const std::shared_ptr<MemoryPreset>& preset);
    /// @}

private:
    std::shared_ptr<MemoryScreen> makeScreen(const ScreenRecord& record);

    const std::shared_ptr<ModelHub> m_pHub;
    const quint16 m_nMaxPresetCount;
    const LimitsRecord m_limits;
    QList<std::shared_ptr<MemorySubcard>> m_subcards;
    QList<std::shared_ptr<MemoryOutput>> m_outputs;
    Guarded<Data> m_data;
};

/// The model's own object behind an interface pointer; empty for none or for another model's kind.
template <typename Own, typename Interface>
std::shared_ptr<Own> ownObject(const std::weak_ptr<Interface>& object)
{
    return std::dynamic_pointer_cast<Own>(object.lock());
}

} // namespace Orvane::MemoryModel
