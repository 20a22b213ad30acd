#pragma once

#include "mutator.h"

#include <QByteArray>

namespace Orvane::Fuzz {

/// Changes a JSON text as people and programs get it wrong: a value for another of any type, a name for
/// another of the same text, an element doubled or left out. Most results are still JSON, so that they get
/// past the parser to the loader.
Bytes mutateJson(const QByteArray& text, Random& random);

} // namespace Orvane::Fuzz
