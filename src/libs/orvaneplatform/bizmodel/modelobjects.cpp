// The destructors stand here so that each class has its type information in this library alone, and
// dynamic casts between libraries hold.
#include "bizmodel/connector.h"
#include "bizmodel/device.h"
#include "bizmodel/file.h"
#include "bizmodel/input.h"
#include "bizmodel/interface.h"
#include "bizmodel/layer.h"
#include "bizmodel/output.h"
#include "bizmodel/preset.h"
#include "bizmodel/screen.h"
#include "bizmodel/subcard.h"

namespace Orvane::BizModel {

Connector::~Connector() = default;
Device::~Device() = default;
File::~File() = default;
Input::~Input() = default;
Interface::~Interface() = default;
Layer::~Layer() = default;
Output::~Output() = default;
Preset::~Preset() = default;
Screen::~Screen() = default;
Subcard::~Subcard() = default;

} // namespace Orvane::BizModel
