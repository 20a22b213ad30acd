#pragma once

#include <QStringList>

namespace Orvane::ConsoleHost::Languages {

/// Languages that `use` takes: "en", the texts' own, and those that the platform library brings translations
/// for.
QStringList names();

/// Translates the model's texts, on the console's labels and in notices, from now on. False, with nothing
/// changed, for a language that is not among `names()`. GUI thread.
bool use(const QString& name);

} // namespace Orvane::ConsoleHost::Languages
