#pragma once

#include "eccommanditem.h"

#include "bizmodel/fwd.h"

namespace Orvane::ECProxy::Client::Internal {

/// Gives the bound items of preset keys the colors of the device's keypad file. Does nothing when the file
/// means another preset as the active one, that is, when it would change which of them is `Green`: it is
/// the file of an earlier load then. The items are the caller's own copies.
void applyKeypadColors(const ECCommandItemList& items, const BizModel::Keypad& keypad);

} // namespace Orvane::ECProxy::Client::Internal
