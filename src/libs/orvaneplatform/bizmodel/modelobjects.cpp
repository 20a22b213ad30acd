// Small members of small classes. The destructors stand here so that each class has its type information in
// this library alone, and dynamic casts between libraries hold.
#include "bizmodel/connector.h"
#include "bizmodel/file.h"
#include "bizmodel/input.h"
#include "bizmodel/interface.h"
#include "bizmodel/layer.h"
#include "bizmodel/output.h"
#include "bizmodel/preset.h"
#include "bizmodel/subcard.h"

namespace Orvane::BizModel {

Connector::~Connector() = default;
File::~File() = default;
Input::~Input() = default;
Interface::~Interface() = default;
Layer::~Layer() = default;
Output::~Output() = default;
Preset::~Preset() = default;
Subcard::~Subcard() = default;

void Layer::setCapacity(CapacityMode) { }

QSize Layer::defulatSize(const std::weak_ptr<Input>&) const
{
    return windowRect().size();
}

bool Preset::presetSelectedScreens(QList<std::weak_ptr<Screen>>&, Enum::File::FileType, QString& error) const
{
    error = QStringLiteral("The model does not tell the screens of a preset.");
    return false;
}

} // namespace Orvane::BizModel
