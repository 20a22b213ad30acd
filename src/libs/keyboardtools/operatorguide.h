#pragma once

#include "ec/eckeyboardconfig.h"
#include "ec/eckeyfunctions.h"

namespace Orvane::KeyboardTools {

/// A page in Markdown for the operator of a console with this keyboard: every key, what a press, a hold and a
/// release do, and what its light and its label show.
QString operatorGuide(const EC::s_ECKeyboardConfig& keyboard);

/// The cells of a row about the function: name, press, hold, release, light and label.
QString functionCells(const EC::KeyFunction& function, const QString& name);

} // namespace Orvane::KeyboardTools
