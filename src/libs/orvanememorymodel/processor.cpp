#include "processor.h"

#include "showclock_p.h"
#include "worker.h"

#include <utility>

namespace Orvane::MemoryModel {

Processor::Processor()
    : m_pTimer(std::make_unique<Worker>(QStringLiteral("model-processor")))
{
}

Processor::~Processor() = default;

void Processor::take(const ScreenJob& job, OpenRequest end)
{
    succeedAfter(job.duration, std::move(end));
}

void Processor::cut(const ScreenJob&, OpenRequest end)
{
    end.succeed();
}

void Processor::match(const ScreenJob&, OpenRequest end)
{
    end.succeed();
}

void Processor::freeze(const ScreenJob&, bool, OpenRequest end)
{
    end.succeed();
}

void Processor::fadeToBlack(const ScreenJob&, bool, OpenRequest end)
{
    end.succeed();
}

void Processor::setSwap(const QString&, bool, OpenRequest end)
{
    end.succeed();
}

void Processor::setLoadTarget(const QString&, BizModel::Enum::Device::LoadToPGMStatus, OpenRequest end)
{
    end.succeed();
}

bool Processor::moveTBar(const ScreenJob&, double, QString&)
{
    return true;
}

bool Processor::loadPreset(const QString&, quint16, QString&)
{
    return true;
}

bool Processor::storePreset(const QString&, FileType, quint16, QString&)
{
    return true;
}

bool Processor::createScreens(const ScreenJob&, QString&)
{
    return true;
}

bool Processor::removePreset(const QString&, FileType, quint16, QString&)
{
    return true;
}

bool Processor::addLayer(const LayerJob&, QString&)
{
    return true;
}

bool Processor::removeLayer(const LayerJob&, QString&)
{
    return true;
}

bool Processor::moveLayer(const LayerJob&, QString&)
{
    return true;
}

bool Processor::bindSource(const LayerJob&, QString&)
{
    return true;
}

bool Processor::orderLayers(
    const QString&, const ScreenKey&, BizModel::SceneType, const QList<quint32>&, QString&)
{
    return true;
}

bool Processor::save(const QString&, QString& error)
{
    return writeShowFile(error);
}

void Processor::succeedAfter(std::chrono::milliseconds duration, OpenRequest end)
{
    const auto finish = [end](bool stopping) {
        end.finish(!stopping, stopping ? QStringLiteral("The model has stopped.") : QString());
    };
    if (!m_pTimer->postAt(ShowClock::now() + duration, finish))
        finish(true);
}

bool Processor::writeShowFile(QString& error) const
{
    if (m_writeShowFile)
        return m_writeShowFile(error);
    error = QStringLiteral("There is no show file.");
    return false;
}

} // namespace Orvane::MemoryModel
