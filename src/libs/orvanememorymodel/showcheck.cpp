#include "showcheck.h"

#include "operationtext.h"

#include <QSet>

#include <algorithm>

namespace Orvane::MemoryModel {

using BizModel::LayerType;

namespace {

/// Numbers that could not be read are 0; that fault is told already.
bool isSet(quint32 id)
{
    return id != 0;
}

bool isSet(const ScreenKey& key)
{
    return key.id != 0;
}

/// Checks one device; `place` leads to what is being looked at.
class DeviceCheck final {
public:
    DeviceCheck(const DeviceRecord& device, QString place, QStringList& faults)
        : m_device(device)
        , m_place(std::move(place))
        , m_faults(faults)
    {
    }

    void run()
    {
        checkHardware();
        checkScreens();
        checkPresets();
    }

private:
    void fault(const QString& place, const QString& text)
    {
        m_faults += m_place + QLatin1Char('.') + place + QStringLiteral(": ") + text;
    }

    /// Records a number; it must not stand there already.
    template <typename T> void unique(QSet<T>& seen, const T& value, const QString& place)
    {
        if (seen.contains(value) && isSet(value))
            fault(place, QStringLiteral("expected a number that no other has"));
        seen += value;
    }

    void checkHardware()
    {
        for (int i = 0; i < m_device.subcards.size(); ++i) {
            const SubcardRecord& card = m_device.subcards[i];
            unique(m_subcards, card.id, QStringLiteral("subcards[%1].id").arg(i));
            QSet<quint32> connectors;
            for (int j = 0; j < card.connectors.size(); ++j) {
                const quint32 id = card.connectors[j].id;
                unique(connectors, id, QStringLiteral("subcards[%1].connectors[%2].id").arg(i).arg(j));
                m_connectors += (quint64(card.id) << 32) | id;
            }
        }
        QSet<quint64> used;
        for (int i = 0; i < m_device.inputs.size(); ++i) {
            const InputRecord& input = m_device.inputs[i];
            const QString place = QStringLiteral("inputs[%1]").arg(i);
            const quint64 connector = (quint64(input.subcardId) << 32) | input.connectorId;
            unique(m_inputs, input.id, place + QStringLiteral(".id"));
            if (input.subcardId == 0 || input.connectorId == 0)
                continue;
            if (!m_connectors.contains(connector))
                fault(
                    place + QStringLiteral(".connector"),
                    QStringLiteral("expected a connector of sub-card %1").arg(input.subcardId));
            else if (used.contains(connector))
                fault(
                    place + QStringLiteral(".connector"),
                    QStringLiteral("expected a connector that no other input is on"));
            used += connector;
        }
        for (int i = 0; i < m_device.outputs.size(); ++i) {
            const OutputRecord& output = m_device.outputs[i];
            unique(m_outputs, output.id, QStringLiteral("outputs[%1].id").arg(i));
            if (isSet(output.subcardId) && !m_subcards.contains(output.subcardId))
                fault(
                    QStringLiteral("outputs[%1].subcard").arg(i),
                    QStringLiteral("expected a sub-card of the device"));
        }
    }

    void checkScreens()
    {
        int selected = 0;
        for (int i = 0; i < m_device.screens.size(); ++i) {
            const ScreenRecord& screen = m_device.screens[i];
            const QString place = QStringLiteral("screens[%1]").arg(i);
            unique(m_screens, screen.key, place + QStringLiteral(".id"));
            selected += screen.selected;
            for (int j = 0; j < screen.outputs.size(); ++j) {
                const quint32 id = screen.outputs[j].outputId;
                const QString output = place + QStringLiteral(".outputs[%1].output").arg(j);
                if (!isSet(id))
                    continue;
                if (!m_outputs.contains(id))
                    fault(output, QStringLiteral("expected an output of the device"));
                else if (m_usedOutputs.contains(id))
                    fault(output, QStringLiteral("expected an output that no other screen shows"));
                m_usedOutputs += id;
            }
            if (screen.pgmEdit && screen.key.type != ScreenType::RegularScreen)
                fault(place + QStringLiteral(".pgmEdit"), QStringLiteral("expected a regular screen"));
            checkLayers(screen.pgm, screen.key.type, place + QStringLiteral(".pgm"));
            checkLayers(screen.pvw, screen.key.type, place + QStringLiteral(".pvw"));
            checkSources(screen.pgm, place + QStringLiteral(".pgm"));
            checkSources(screen.pvw, place + QStringLiteral(".pvw"));
        }
        if (selected > 1 && !m_device.multiScreens)
            fault(
                QStringLiteral("screens"),
                QStringLiteral("expected one selected screen at most without multiScreens"));
        checkLimit(ScreenType::RegularScreen, m_device.limits.regularScreens);
        checkLimit(ScreenType::AUXScreen, m_device.limits.auxScreens);
        if (m_device.activeScreen.id != 0 && !m_screens.contains(m_device.activeScreen))
            fault(QStringLiteral("activeScreen"), QStringLiteral("expected a screen of the device"));
    }

    void checkLimit(ScreenType type, int limit)
    {
        const auto& all = m_device.screens;
        const auto count = std::count_if(
            all.cbegin(), all.cend(), [type](const ScreenRecord& screen) { return screen.key.type == type; });
        if (count > limit)
            fault(
                QStringLiteral("screens"),
                QStringLiteral("expected %1 %2 screens at most").arg(limit).arg(screenTypeText(type)));
    }

    void checkLayers(const LayerRecords& layers, ScreenType screenType, const QString& place)
    {
        const LayerType foreign = screenType == ScreenType::AUXScreen ? LayerType::Regular : LayerType::AUX;
        QSet<quint32> ids;
        for (int i = 0; i < layers.size(); ++i) {
            const LayerRecord& layer = layers[i];
            const QString each = place + QStringLiteral("[%1]").arg(i);
            unique(ids, layer.id, each + QStringLiteral(".id"));
            if (layer.type == foreign)
                fault(
                    each + QStringLiteral(".type"),
                    QStringLiteral("expected a layer that a screen of type %1 can have")
                        .arg(screenTypeText(screenType)));
        }
    }

    /// Not for presets: the device may have changed since one was stored.
    void checkSources(const LayerRecords& layers, const QString& place)
    {
        for (int i = 0; i < layers.size(); ++i) {
            if (layers[i].inputId != 0 && !m_inputs.contains(layers[i].inputId))
                fault(
                    place + QStringLiteral("[%1].input").arg(i),
                    QStringLiteral("expected an input of the device"));
        }
    }

    void checkPresets()
    {
        QSet<quint32> ids;
        bool activeFound = m_device.activePreset == 0;
        for (int i = 0; i < m_device.presets.size(); ++i) {
            const PresetRecord& preset = m_device.presets[i];
            const QString place = QStringLiteral("presets[%1]").arg(i);
            // Of a number that could not be read the type alone would stand twice.
            const quint32 slot = preset.id == 0 ? 0 : quint32(preset.type) << 16 | preset.id;
            unique(ids, slot, place + QStringLiteral(".id"));
            activeFound |= preset.id == m_device.activePreset;
            if (preset.id > m_device.maxPresetCount)
                fault(
                    place + QStringLiteral(".id"),
                    QStringLiteral("expected a number up to maxPresetCount, %1")
                        .arg(m_device.maxPresetCount));
            QSet<ScreenKey> screens;
            for (int j = 0; j < preset.screens.size(); ++j) {
                const PresetScreenRecord& screen = preset.screens[j];
                const QString each = place + QStringLiteral(".screens[%1]").arg(j);
                unique(screens, screen.key, each + QStringLiteral(".id"));
                checkLayers(screen.layers, screen.key.type, each + QStringLiteral(".layers"));
            }
        }
        if (!activeFound)
            fault(QStringLiteral("activePreset"), QStringLiteral("expected a preset of the device"));
    }

    const DeviceRecord& m_device;
    const QString m_place;
    QStringList& m_faults;
    QSet<quint32> m_subcards;
    QSet<quint64> m_connectors;
    QSet<quint32> m_inputs;
    QSet<quint32> m_outputs;
    QSet<quint32> m_usedOutputs;
    QSet<ScreenKey> m_screens;
};

} // namespace

void checkShow(const ShowRecord& show, QStringList& faults)
{
    QSet<QString> devices;
    for (int i = 0; i < show.devices.size(); ++i) {
        const DeviceRecord& device = show.devices[i];
        const QString place = QStringLiteral("devices[%1]").arg(i);
        if (devices.contains(device.ipMacSn) && !device.ipMacSn.isEmpty())
            faults += place + QStringLiteral(".ipMacSn: expected an identity that no other device has");
        devices += device.ipMacSn;
        DeviceCheck(device, place, faults).run();
    }
    if (!show.activeDevice.isEmpty() && !devices.contains(show.activeDevice))
        faults += QStringLiteral("activeDevice: expected the identity of one of the devices");
}

} // namespace Orvane::MemoryModel
