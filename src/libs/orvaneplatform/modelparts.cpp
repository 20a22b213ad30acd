#include "modelparts.h"

#include "installed_p.h"

#include <QStringList>
#include <QtDebug>

namespace Orvane {

namespace Internal {

namespace {

/// Every kind, in the order in which their source files' objects were made. Made with the first of them.
std::vector<const InstalledPart*>& registry()
{
    static std::vector<const InstalledPart*> parts;
    return parts;
}

} // namespace

// Runs while the library is loaded, on one thread.
InstalledPart::InstalledPart(const char* name, const char* consequence)
    : m_name(name)
    , m_consequence(consequence)
{
    registry().push_back(this);
}

std::vector<const InstalledPart*> InstalledPart::all()
{
    return registry();
}

void InstalledPart::reportMissing() noexcept
{
    if (!m_bKnown.exchange(true, std::memory_order_relaxed))
        qWarning("No %s is installed: %s.", m_name, m_consequence);
}

} // namespace Internal

QList<ModelParts::Part> ModelParts::parts()
{
    QList<Part> parts;
    for (const Internal::InstalledPart* part : Internal::InstalledPart::all())
        parts += {
            QString::fromLatin1(part->name()), QString::fromLatin1(part->consequence()), part->isInstalled()};
    std::sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) { return a.name < b.name; });
    return parts;
}

void ModelParts::logSummary()
{
    QStringList installed;
    QStringList missing;
    for (const Part& part : parts()) {
        if (part.isInstalled)
            installed += part.name;
        else
            missing += QStringLiteral("%1 (%2)").arg(part.name, part.consequence);
    }
    const QString line =
        QStringLiteral("Model parts installed: %1. Missing: %2.")
            .arg(installed.isEmpty() ? QStringLiteral("none") : installed.join(QLatin1String(", ")))
            .arg(missing.isEmpty() ? QStringLiteral("none") : missing.join(QLatin1String("; ")));
    if (missing.isEmpty())
        qInfo("%s", qUtf8Printable(line));
    else
        qWarning("%s", qUtf8Printable(line));
}

} // namespace Orvane
