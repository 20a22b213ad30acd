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

    /// Calls @p check with each of the records and its place.
    template <typename Record, typename Check>
    void each(const QString& name, const QList<Record>& records, Check check)
    {
        for (int i = 0; i < records.size(); ++i)
            check(records[i], QStringLiteral("%1[%2]").arg(name).arg(i));
    }

    /// Records a number; it must not stand there already.
    template <typename T> void unique(QSet<T>& seen, const T& value, const QString& place)
    {
        if (seen.contains(value) && isSet(value))
            fault(place + QStringLiteral(".id"), QStringLiteral("expected a number that no other has"));
        seen += value;
    }

    void checkHardware()
    {
        each(QStringLiteral("subcards"), m_device.subcards, [this](const auto& card, const QString& place) {
            unique(m_subcards, card.id, place);
            QSet<quint32> ids;
            each(
                place + QStringLiteral(".connectors"), card.connectors,
                [&](const auto& one, const QString& at) {
                    unique(ids, one.id, at);
                    m_connectors += (quint64(card.id) << 32) | one.id;
                });
        });
        QSet<quint64> used;
        each(QStringLiteral("inputs"), m_device.inputs, [&](const auto& input, const QString& place) {
            const quint64 connector = (quint64(input.subcardId) << 32) | input.connectorId;
            unique(m_inputs, input.id, place);
            if (input.subcardId == 0 || input.connectorId == 0)
                return;
            if (!m_connectors.contains(connector))
                fault(
                    place + QStringLiteral(".connector"),
                    QStringLiteral("expected a connector of sub-card %1").arg(input.subcardId));
            else if (used.contains(connector))
                fault(
                    place + QStringLiteral(".connector"),
                    QStringLiteral("expected a connector that no other input is on"));
            used += connector;
        });
        each(QStringLiteral("outputs"), m_device.outputs, [this](const auto& output, const QString& place) {
            unique(m_outputs, output.id, place);
            if (isSet(output.subcardId) && !m_subcards.contains(output.subcardId))
                fault(
                    place + QStringLiteral(".subcard"), QStringLiteral("expected a sub-card of the device"));
        });
    }

    void checkScreens()
    {
        int selected = 0;
        each(QStringLiteral("screens"), m_device.screens, [&](const auto& screen, const QString& place) {
            unique(m_screens, screen.key, place);
            selected += screen.selected;
            checkOutputs(screen.outputs, place);
            if (screen.pgmEdit && screen.key.type != ScreenType::RegularScreen)
                fault(place + QStringLiteral(".pgmEdit"), QStringLiteral("expected a regular screen"));
            checkScene(screen.pgm, screen.key.type, place + QStringLiteral(".pgm"));
            checkScene(screen.pvw, screen.key.type, place + QStringLiteral(".pvw"));
        });
        if (selected > 1 && !m_device.multiScreens)
            fault(
                QStringLiteral("screens"),
                QStringLiteral("expected one selected screen at most without multiScreens"));
        checkLimit(ScreenType::RegularScreen, m_device.limits.regularScreens);
        checkLimit(ScreenType::AUXScreen, m_device.limits.auxScreens);
        if (m_device.activeScreen.id != 0 && !m_screens.contains(m_device.activeScreen))
            fault(QStringLiteral("activeScreen"), QStringLiteral("expected a screen of the device"));
    }

    void checkOutputs(const QList<ScreenOutputRecord>& outputs, const QString& screen)
    {
        each(screen + QStringLiteral(".outputs"), outputs, [this](const auto& shown, const QString& place) {
            const quint32 id = shown.outputId;
            const QString output = place + QStringLiteral(".output");
            if (isSet(id) && !m_outputs.contains(id))
                fault(output, QStringLiteral("expected an output of the device"));
            else if (isSet(id) && m_usedOutputs.contains(id))
                fault(output, QStringLiteral("expected an output that no other screen shows"));
            m_usedOutputs += id;
        });
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

    void checkLayers(const LayerRecords& layers, ScreenType screenType, const QString& name)
    {
        const LayerType foreign = screenType == ScreenType::AUXScreen ? LayerType::Regular : LayerType::AUX;
        QSet<quint32> ids;
        each(name, layers, [&](const auto& layer, const QString& place) {
            unique(ids, layer.id, place);
            if (layer.type == foreign)
                fault(
                    place + QStringLiteral(".type"),
                    QStringLiteral("expected a layer that a screen of type %1 can have")
                        .arg(screenTypeText(screenType)));
        });
    }

    /// The sources too. Not for presets: the device may have changed since one was stored.
    void checkScene(const LayerRecords& layers, ScreenType screenType, const QString& name)
    {
        checkLayers(layers, screenType, name);
        each(name, layers, [this](const auto& layer, const QString& place) {
            if (layer.inputId != 0 && !m_inputs.contains(layer.inputId))
                fault(place + QStringLiteral(".input"), QStringLiteral("expected an input of the device"));
        });
    }

    void checkPresets()
    {
        QSet<quint32> ids;
        bool activeFound = m_device.activePreset == 0;
        each(QStringLiteral("presets"), m_device.presets, [&](const auto& preset, const QString& place) {
            // Of a number that could not be read the type alone would stand twice.
            const quint32 slot = preset.id == 0 ? 0 : quint32(preset.type) << 16 | preset.id;
            unique(ids, slot, place);
            activeFound |= preset.id == m_device.activePreset;
            if (preset.id > m_device.maxPresetCount)
                fault(
                    place + QStringLiteral(".id"),
                    QStringLiteral("expected a number up to maxPresetCount, %1")
                        .arg(m_device.maxPresetCount));
            QSet<ScreenKey> screens;
            each(
                place + QStringLiteral(".screens"), preset.screens,
                [&](const auto& screen, const QString& at) {
                    unique(screens, screen.key, at);
                    checkLayers(screen.layers, screen.key.type, at + QStringLiteral(".layers"));
                });
        });
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
