#include "memorymodel.h"

#include "memorycontrollerfactory.h"
#include "memorydevicelist.h"
#include "memoryparallelmanager.h"
#include "memoryresourcecheck.h"
#include "requestmanager.h"
#include "samplingqueue.h"
#include "showfile.h"
#include "worker.h"

#include <utility>

namespace Orvane::MemoryModel {

/// In the order in which they need one another.
struct MemoryModel::Parts {
    explicit Parts(std::unique_ptr<Processor> own)
        : processor(std::move(own))
    {
    }

    const std::unique_ptr<Processor> processor;
    std::shared_ptr<ModelHub> hub = std::make_shared<ModelHub>();
    MemoryDeviceList list{hub};
    Control control{hub, list};
    MemoryControllerFactory factory{hub, list, *processor};
    MemoryResourceCheck resources{hub};
    MemoryParallelManager parallel{hub, list, *processor};
    RequestManager requests{hub, list, *processor};
    SamplingQueue sampling{hub, list, *processor};
    Guarded<QString> showFile;
};

MemoryModel::MemoryModel(std::unique_ptr<Processor> processor)
    : m_p(std::make_unique<Parts>(processor ? std::move(processor) : std::make_unique<Processor>()))
{
    m_p->processor->m_writeShowFile = [this](QString& error) { return saveShow(error); };
}

MemoryModel::~MemoryModel()
{
    stop();
}

void MemoryModel::stop()
{
    // First, so that no operation that was told to take longer holds the threads up.
    m_p->hub->operations.stop();
    m_p->requests.stop();
    m_p->sampling.stop();
    m_p->processor->m_pTimer->stop();
    m_p->parallel.stop();
}

bool MemoryModel::load(const QByteArray& json, QStringList& faults)
{
    const std::optional<ShowRecord> show = parseShow(json, faults);
    if (show)
        replace(*show);
    return show.has_value();
}

bool MemoryModel::loadFile(const QString& path, QStringList& faults)
{
    const std::optional<ShowRecord> show = loadShowFile(path, faults);
    if (!show)
        return false;
    setShowFile(path);
    replace(*show);
    return true;
}

QByteArray MemoryModel::show() const
{
    return writeShow(snapshot());
}

bool MemoryModel::saveFile(const QString& path, QString& error) const
{
    return saveShowFile(path, snapshot(), error);
}

void MemoryModel::setShowFile(const QString& path)
{
    Change change(*m_p->hub);
    m_p->showFile.get(change) = path;
}

ModelSignals& MemoryModel::deviceList()
{
    return m_p->list;
}

Operations& MemoryModel::operations()
{
    return m_p->hub->operations;
}

Control& MemoryModel::control()
{
    return m_p->control;
}

ShowRecord MemoryModel::snapshot() const
{
    const Guard guard(*m_p->hub);
    const MemoryDeviceList::Data& state = std::as_const(m_p->list).data(guard);
    ShowRecord show;
    for (const std::shared_ptr<MemoryDevice>& device : state.devices)
        show.devices += std::as_const(*device).record(guard);
    if (state.activeDevice)
        show.activeDevice = std::as_const(*state.activeDevice).data(guard).ipMacSn;
    return show;
}

void MemoryModel::replace(const ShowRecord& show)
{
    MemoryDeviceList::Devices devices;
    for (const DeviceRecord& record : show.devices)
        devices += std::make_shared<MemoryDevice>(m_p->hub, record);
    Change change(*m_p->hub);
    for (int i = 0; i < devices.size(); ++i)
        devices[i]->populate(change, show.devices[i]);
    MemoryDeviceList::Data& state = m_p->list.data(change);
    const MemoryDeviceList::Devices former = state.devices;
    for (const std::shared_ptr<MemoryDevice>& device : former)
        m_p->list.retire(change, device);
    state.devices = devices;
    state.activeDevice = m_p->list.device(change, show.activeDevice);
    change.announce(&BizModel::DeviceList::signalActivedDeviceChanged);
}

bool MemoryModel::saveShow(QString& error) const
{
    const QString path = std::as_const(m_p->showFile).get(Guard(*m_p->hub));
    if (path.isEmpty())
        error = QStringLiteral("There is no show file.");
    return !path.isEmpty() && saveFile(path, error);
}

} // namespace Orvane::MemoryModel
