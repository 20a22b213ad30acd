#pragma once

#include "consolelayout.h"
#include "ecsurfaceshadow.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace Orvane::ConsoleHost {

/// How a light or a label is to look, and how it does, in words.
struct SurfaceLook {
    QString wanted; ///< empty when no repaint sends it
    QString sent; ///< last
    std::optional<QString> shown; ///< by the console; empty when nobody has said what it shows
    bool differs = false;
};

/// A key and its label.
struct SurfaceRow {
    quint16 key = 0;
    QString group;
    QString function;
    SurfaceLook light;
    SurfaceLook label;

    bool differs() const { return light.differs || label.differs; }
};

/// A row for each key of the keyboard, in its order.
/// @param shown what the simulator tells of its console with `show`, as an object; empty when not known
std::vector<SurfaceRow> compareSurface(
    const ConsolePanel::ConsoleLayout& layout, const ECProxy::Client::ECSurfaceShadow::Surface& surface,
    const QJsonObject& shown = {});

/// The rows as objects; only those that differ if so asked.
QJsonArray toJson(const std::vector<SurfaceRow>& rows, bool differencesOnly);

/// Reads the last "show" of what the simulator wrote with --json. Empty, with the reason in `fault`, when the
/// file cannot be read or has none.
QJsonObject readShownSurface(const QString& path, QString& fault);

} // namespace Orvane::ConsoleHost
