#include "modelcontrol/layer.h"

namespace Orvane::ModelControl {

Layer::~Layer() = default;

bool Layer::updateWindow(const std::weak_ptr<BizModel::Layer>&, const QRect&)
{
    return false;
}

bool Layer::bindSource(const Layers&, quint32, int)
{
    return false;
}

} // namespace Orvane::ModelControl
