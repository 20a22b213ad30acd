#pragma once

#include "orvaneplatform_global.h"

#include <QList>
#include <QString>

/// Which parts of its model the application has installed.
namespace Orvane::ModelParts {

/// A part of the model.
struct Part {
    QString name; ///< of the class, such as "ParallelManager"
    QString consequence; ///< what does not work without it: "take, cut, ... do nothing"
    bool isInstalled = false; ///< an implementation lives now
};

/// Every part that the library asks for, by name. Any thread.
ORVANEPLATFORM_EXPORT QList<Part> parts();

/// One line about what is installed and what is missing, to the log: a warning when something is missing. The
/// library calls it when the keys get their commands; call it yourself after you have installed a part later.
/// A missing part that a key meets is logged once more at that moment, each once.
ORVANEPLATFORM_EXPORT void logSummary();

} // namespace Orvane::ModelParts
