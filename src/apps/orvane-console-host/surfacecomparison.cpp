#include "surfacecomparison.h"

#include "ec/eckeyfunctions.h"
#include "statetext.h"

#include <QFile>
#include <QJsonDocument>

#include <algorithm>

namespace Orvane::ConsoleHost {

using namespace ECProxy::Client;
using ConsolePanel::ConsoleState;

namespace {

/// How a request leaves the console; a light that closed all leaves nothing of one key.
QString lookOf(const ECButtonColor& light)
{
    ConsoleState state;
    state.apply(light);
    const auto* const key = ConsolePanel::find(state.keys, light.ECKey);
    const ConsolePanel::KeyState dark;
    return ConsolePanel::lookText(key ? key : &dark);
}

QString lookOf(const ECOLEDText& label)
{
    ConsoleState state;
    state.apply(label);
    return ConsolePanel::lookText(ConsolePanel::find(state.labels, label.ECKey));
}

template <typename Record>
SurfaceLook lookOf(const QList<Record>& records, quint16 number, const QJsonValue& shown)
{
    const auto found = std::find_if(
        records.cbegin(), records.cend(), [&](const Record& record) { return record.ecKey == number; });
    const Record record = found == records.cend() ? Record() : *found;
    SurfaceLook look;
    if (record.wanted)
        look.wanted = lookOf(*record.wanted);
    look.sent = record.sent ? lookOf(*record.sent) : ConsolePanel::nothingYet();
    if (!shown.isUndefined())
        look.shown = shown.toString();
    look.differs = record.differs() || (look.shown && *look.shown != look.sent);
    return look;
}

void insertLook(QJsonObject& object, const QString& what, const SurfaceLook& look)
{
    QJsonObject members{{QStringLiteral("wanted"), look.wanted}, {QStringLiteral("sent"), look.sent}};
    if (look.shown)
        members.insert(QStringLiteral("shown"), *look.shown);
    members.insert(QStringLiteral("differs"), look.differs);
    object.insert(what, members);
}

} // namespace

std::vector<SurfaceRow> compareSurface(
    const ConsolePanel::ConsoleLayout& layout, const ECSurfaceShadow::Surface& surface,
    const QJsonObject& shown)
{
    // A console has nothing of what never came to it.
    const auto shownLook = [&](const char* part, quint16 number) {
        return shown.isEmpty() ? QJsonValue(QJsonValue::Undefined)
                               : shown[QLatin1String(part)]
                                     .toObject()
                                     .value(QString::number(number))
                                     .toString(ConsolePanel::nothingYet());
    };
    std::vector<SurfaceRow> rows;
    for (const auto& group : layout.groups) {
        for (const auto& key : group.keys) {
            SurfaceRow row{key.number, group.name, EC::keyFunctionName(group.name, key.code), {}, {}};
            row.light = lookOf(surface.keys, key.number, shownLook("keys", key.number));
            if (key.label)
                row.label = lookOf(surface.labels, *key.label, shownLook("labels", *key.label));
            rows.push_back(row);
        }
    }
    return rows;
}

QJsonArray toJson(const std::vector<SurfaceRow>& rows, bool differencesOnly)
{
    QJsonArray array;
    for (const SurfaceRow& row : rows) {
        if (differencesOnly && !row.differs())
            continue;
        QJsonObject object{
            {QStringLiteral("key"), row.key},
            {QStringLiteral("group"), row.group},
            {QStringLiteral("function"), row.function},
            {QStringLiteral("differs"), row.differs()}};
        insertLook(object, QStringLiteral("light"), row.light);
        insertLook(object, QStringLiteral("label"), row.label);
        array.append(object);
    }
    return array;
}

QJsonObject readShownSurface(const QString& path, QString& fault)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fault = QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
        return {};
    }
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (auto line = lines.crbegin(); line != lines.crend(); ++line) {
        const QJsonObject object = QJsonDocument::fromJson(*line).object();
        if (object[QStringLiteral("event")] == QLatin1String("show")
            && object.contains(QStringLiteral("keys")))
            return object;
    }
    fault = QStringLiteral("%1 has no line of the simulator's command \"show\" with --json").arg(path);
    return {};
}

} // namespace Orvane::ConsoleHost
