// A host with a model of its own, step 2: the layer and input keys.
#include "layers.h"

#include "run.h"

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const Orvane::Bridge::ItemDeviceList list(std::make_shared<Orvane::Bridge::DeviceItem>("wall"));
    Own::addScreens(list.device());
    Own::addInputs(list.device());
    const Own::ControllerFactory controllers;
    const Own::ParallelManager requests;
    return Own::run(app);
}
