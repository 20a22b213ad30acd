// A host with a model of its own, step 3: the preset keys.
#include "presets.h"

#include "run.h"

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const Orvane::Bridge::ItemDeviceList list(std::make_shared<Orvane::Bridge::DeviceItem>("wall"));
    Own::addScreens(list.device());
    Own::addInputs(list.device());
    list.device().setMaxPresetCount(20);
    const Own::PresetControllerFactory controllers;
    const Own::ParallelManager requests;
    const Orvane::Bridge::ItemSamplingThread sampling;
    return Own::run(app);
}
