// A host with a model of its own, step 1: the screen keys.
#include "screens.h"

#include "run.h"

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    Own::DeviceList list;
    list.device->all = {std::make_shared<Own::Screen>(1, "Left"), std::make_shared<Own::Screen>(2, "Right")};
    list.device->all.first()->isSelected = true;
    list.device->active.set(list.device->all.first());
    const Own::ControllerFactory factory;
    const Own::ParallelManager manager(list);
    return Own::run(app);
}
