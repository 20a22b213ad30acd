// A host with a model of its own, step 1: the screen keys.
#include "screens.h"

#include "run.h"

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const Orvane::Bridge::ItemDeviceList list(std::make_shared<Orvane::Bridge::DeviceItem>("wall"));
    Own::addScreens(list.device());
    const Orvane::Bridge::ItemControllerFactory controllers;
    const Own::ParallelManager requests;
    return Own::run(app);
}
