#include "keylist.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/screen.h"
#include "ec/eckeyboardconfig.h"
#include "ec/eckeyfunctions.h"
#include "ecconsolemanager.h"
#include "ecconstants.h"
#include "ecmanager.h"
#include "modelpicture.h"

#include <QHash>
#include <QJsonObject>

namespace Orvane::ConsoleHost {

using namespace ECProxy::Client;

namespace {

/// The items that the group's select keys have on a device; of layer keys those of its active screen.
ECCommandItemList itemsOf(KeyboardType type, const BizModel::Device& device)
{
    ECConsoleManager* const store = ECConsoleManager::instance();
    switch (type) {
    case KeyboardType::Screen:
        return store->screenECCommandItems(device.ipMacSn());
    case KeyboardType::Layer: {
        ECCommandItemList items;
        if (const auto screen = device.activedScreen().lock())
            store->layerECCommandItems(device.ipMacSn(), screen->screenId(), items);
        return items;
    }
    case KeyboardType::Input:
        return store->inputECCommandItems(device.ipMacSn());
    default:
        return store->presetECCommandItems(device.ipMacSn());
    }
}

QString objectName(KeyboardType type, const ECObjectId& id)
{
    switch (type) {
    case KeyboardType::Screen:
        return screenName({BizModel::Enum::Screen::ScreenType(id.second), quint32(id.first)});
    case KeyboardType::Layer: // which also knows the screen, bound or not
        return id.second == Constants::UnboundLayerIndex ? QString()
                                                         : QStringLiteral("layer %1").arg(id.second);
    case KeyboardType::Input:
        return QStringLiteral("input %1").arg(id.first);
    default:
        return QStringLiteral("preset %1").arg(id.first);
    }
}

/// What the select keys of a group are bound to on the page that it shows, by their place on it.
QHash<int, QString> boundOnPage(const QString& group, const BizModel::Device& device)
{
    static const QHash<QString, KeyboardType> types = {
        {QStringLiteral("ScreenCommand"), KeyboardType::Screen},
        {QStringLiteral("LayerCommand"), KeyboardType::Layer},
        {QStringLiteral("InputCommand"), KeyboardType::Input},
        {QStringLiteral("PresetCommand"), KeyboardType::Preset}};
    QHash<int, QString> bound;
    const auto type = types.constFind(group);
    if (type == types.constEnd())
        return bound;
    const int page = ECManager::instance()->page(group.toStdString());
    const ECCommandItemList items = itemsOf(*type, device);
    for (const ECCommandItemPtr& item : items) {
        if (item->ecButtonPageIndex() != page)
            continue;
        QStringList names;
        const ECObjectIdList ids = item->getObjectIdList();
        for (const ECObjectId& id : ids)
            names += objectName(*type, id);
        bound.insert(item->ecButtonOrderIndex(), names.join(QStringLiteral(", ")));
    }
    return bound;
}

} // namespace

bool hasAppKey(const EC::s_ECKeyboardConfig& keyboard, quint32 appKey)
{
    for (const auto& group : keyboard.m_commands) {
        if (group->getECKeyByOrvaneECKey(quint16(appKey)) != EC::InvalidECKey)
            return true;
    }
    return false;
}

QJsonArray keysToJson(const EC::s_ECKeyboardConfig& keyboard)
{
    const auto device = BizModel::DeviceList::instance()->activedDevice().lock();
    QJsonArray keys;
    for (const auto& group : keyboard.m_commands) {
        const QHash<int, QString> bound = device ? boundOnPage(group->Name, *device) : QHash<int, QString>();
        for (const auto& key : group->m_buttons) {
            QJsonObject members{
                {QStringLiteral("key"), key->ECKey},
                {QStringLiteral("appKey"), qint64(key->OrvaneECKey)},
                {QStringLiteral("group"), group->Name},
                {QStringLiteral("function"), EC::keyFunctionName(group->Name, key->OrvaneKey)}};
            if (key->pECOledCfg)
                members.insert(QStringLiteral("label"), key->pECOledCfg->ECKey);
            if (key->OrvaneKey == EC::SelectKeyCode && bound.contains(key->OrderIndex))
                members.insert(QStringLiteral("bound"), bound.value(key->OrderIndex));
            keys.append(members);
        }
    }
    return keys;
}

} // namespace Orvane::ConsoleHost
