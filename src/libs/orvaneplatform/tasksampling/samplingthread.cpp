#include "tasksampling/samplingthread.h"

#include "installed_p.h"

namespace Orvane::TaskSampling {

namespace {
Internal::Installed<SamplingThread> installedThread(
    "SamplingThread", "the T-Bar moves nothing and presets are not loaded");
}

SamplingThread::SamplingThread()
{
    installedThread.install(this);
}

SamplingThread::~SamplingThread()
{
    installedThread.uninstall(this);
}

SamplingThread* SamplingThread::instance()
{
    return installedThread.get();
}

bool SamplingThread::appendData(const std::shared_ptr<s_TBarSampling>&)
{
    return false;
}

bool SamplingThread::appendData(const std::shared_ptr<s_LoadPresetSampling>&)
{
    return false;
}

} // namespace Orvane::TaskSampling
