#include "tasksampling/samplingthread.h"

#include "installed_p.h"

namespace Orvane::TaskSampling {

namespace {
Internal::Installed<SamplingThread> installedThread;
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

} // namespace Orvane::TaskSampling
