#include "operationtext.h"

#include "bizmodel/device.h"
#include "bizmodel/layer.h"
#include "bizmodel/screen.h"

#include <QStringList>

namespace Orvane::MemoryModel {

namespace {

QString screenName(const BizModel::Screen& screen)
{
    return QStringLiteral("%1:%2").arg(screenTypeText(screen.screenType())).arg(screen.screenId());
}

template <typename T, typename Text>
QString listText(const char* name, const QList<std::weak_ptr<T>>& objects, Text text)
{
    QStringList parts;
    for (const std::weak_ptr<T>& object : objects) {
        const std::shared_ptr<T> present = object.lock();
        parts += present ? text(*present) : QStringLiteral("gone");
    }
    return QStringLiteral("%1=[%2]").arg(QLatin1String(name), parts.join(QLatin1Char(',')));
}

} // namespace

QString deviceText(const std::weak_ptr<BizModel::Device>& device)
{
    const std::shared_ptr<BizModel::Device> present = device.lock();
    return QStringLiteral("device=%1").arg(present ? present->ipMacSn() : QString());
}

QString screenText(const BizModel::Screen& screen)
{
    return QStringLiteral("screen=%1").arg(screenName(screen));
}

QString screenText(const std::weak_ptr<BizModel::Screen>& screen)
{
    const std::shared_ptr<BizModel::Screen> present = screen.lock();
    return present ? screenText(*present) : QStringLiteral("screen=gone");
}

QString screensText(const QList<std::weak_ptr<BizModel::Screen>>& screens)
{
    return listText("screens", screens, [](const BizModel::Screen& screen) { return screenName(screen); });
}

QString layersText(const QList<std::weak_ptr<BizModel::Layer>>& layers)
{
    return listText("layers", layers, [](const BizModel::Layer& layer) {
        return QStringLiteral("%1:%2").arg(sceneText(layer.sceneType())).arg(layer.layerId());
    });
}

QString windowText(const QRect& window)
{
    return QStringLiteral("window=%1,%2,%3x%4")
        .arg(window.x())
        .arg(window.y())
        .arg(window.width())
        .arg(window.height());
}

QString screenTypeText(int screenType)
{
    using namespace BizModel::Enum::Screen;
    if (screenType == RegularScreen)
        return QStringLiteral("regular");
    if (screenType == AUXScreen)
        return QStringLiteral("AUX");
    return QString::number(screenType);
}

QString sceneText(int scene)
{
    return scene == BizModel::SceneType::PGM ? QStringLiteral("PGM") : QStringLiteral("PVW");
}

} // namespace Orvane::MemoryModel
