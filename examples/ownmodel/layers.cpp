// A host with a model of its own, step 2: the layer and input keys.
#include "layers.h"

#include "run.h"

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const auto device = std::make_shared<Own::LayerDevice>();
    device->all = {
        std::make_shared<Own::LayerScreen>(1, "Left"), std::make_shared<Own::LayerScreen>(2, "Right")};
    device->all.first()->isSelected = true;
    device->active.set(device->all.first());
    device->inputs = {std::make_shared<Own::Input>(1, "Camera"), std::make_shared<Own::Input>(2, "Slides")};
    Own::DeviceList list;
    list.device = device;
    const Own::LayerControllerFactory factory;
    const Own::ParallelManager manager(list);
    return Own::run(app);
}
