#pragma once

#include "orvaneplatform/bizmodel/device.h"
#include "orvaneplatform/bizmodel/file.h"
#include "orvaneplatform/protomodel/constants.h"

/// All named constants of the model in one include; the classes' own stand in the classes.
namespace Orvane::BizModel {

using ProtoModel::emptyMACString;
using ProtoModel::emptySNString;

} // namespace Orvane::BizModel
