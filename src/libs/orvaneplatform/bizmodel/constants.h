#pragma once

#include "bizmodel/device.h"
#include "bizmodel/file.h"
#include "protomodel/constants.h"

/// All named constants of the model in one include; the classes' own stand in the classes.
namespace Orvane::BizModel {

using ProtoModel::emptyMACString;
using ProtoModel::emptySNString;

} // namespace Orvane::BizModel
