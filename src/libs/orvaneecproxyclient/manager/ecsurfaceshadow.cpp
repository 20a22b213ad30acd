#include "ecsurfaceshadow.h"

#include "commandmanager.h"
#include "ecmanager_p.h"
#include "sentsurface_p.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

namespace Orvane::ECProxy::Client {

namespace {

/// How bright red, green and blue are of a key that is off.
constexpr quint8 OffLevel = 20;

template <typename Record>
std::set<quint16> numbersOf(const std::map<quint16, Record>& some, const std::map<quint16, Record>& more)
{
    std::set<quint16> numbers;
    for (const auto* map : {&some, &more}) {
        for (const auto& entry : *map)
            numbers.insert(entry.first);
    }
    return numbers;
}

} // namespace

using Internal::SurfaceRecord;

SurfaceRecord ECSurfaceShadow::drawSurface()
{
    Internal::SurfaceDrawing drawing;
    const ECManager* const manager = ECManager::instance();
    if (const auto commands = manager ? manager->d->commandManager() : nullptr)
        commands->showSurface();
    return drawing.record;
}

bool ECSurfaceShadow::Key::differs() const
{
    if (!wanted)
        return false;
    if (!sent)
        return std::max({wanted->R, wanted->G, wanted->B}) > OffLevel;
    return wanted->R != sent->R || wanted->G != sent->G || wanted->B != sent->B
        || wanted->brightness != sent->brightness || wanted->ButtonState != sent->ButtonState;
}

bool ECSurfaceShadow::Label::differs() const
{
    if (!wanted)
        return false;
    if (!sent)
        return wanted->OledText[0] != 0;
    return std::memcmp(wanted->OledText, sent->OledText, sizeof(wanted->OledText)) != 0;
}

ECSurfaceShadow::ECSurfaceShadow()
    : d(std::make_unique<Internal::SentSurface>())
{
}

ECSurfaceShadow::~ECSurfaceShadow() = default;

ECSurfaceShadow::Surface ECSurfaceShadow::surface() const
{
    const SurfaceRecord wanted = drawSurface();
    const SurfaceRecord sent = d->record();
    Surface surface;
    for (const quint16 ecKey : numbersOf(wanted.lights(), sent.lights()))
        surface.keys.append({ecKey, wanted.light(ecKey), sent.light(ecKey)});
    for (const quint16 ecKey : numbersOf(wanted.labels(), sent.labels()))
        surface.labels.append({ecKey, wanted.label(ecKey), sent.label(ecKey)});
    return surface;
}

} // namespace Orvane::ECProxy::Client
