#include "modeltester.h"

#include "modelwatch_p.h"
#include "proxies_p.h"

namespace Orvane::ModelTest {

using namespace Internal;

/// The watch, and what stands in front of the parts that the model has.
class ModelTester::Parts final {
public:
    Parts(ModelTester& tester, BizModel::DeviceList& model, ModelLimits limits)
        : m_watch(model, limits, [&tester](const ModelFault& fault) {
            Q_EMIT tester.faultFound(fault.rule, fault.call, fault.seen);
        })
    {
        if (auto* const inner = ParallelControl::ParallelManager::instance())
            m_pParallel = std::make_unique<ProxyParallelManager>(m_watch, *inner);
        if (auto* const inner = ModelControl::AsyncManager::instance())
            m_pAsync = std::make_unique<ProxyAsyncManager>(m_watch, *inner);
        if (auto* const inner = ModelControl::ControllerFactory::instance())
            m_pControllers = std::make_unique<ProxyControllerFactory>(m_watch, *inner);
    }

    ModelWatch m_watch;

private:
    std::unique_ptr<ProxyParallelManager> m_pParallel;
    std::unique_ptr<ProxyAsyncManager> m_pAsync;
    std::unique_ptr<ProxyControllerFactory> m_pControllers;
};

ModelTester::ModelTester(BizModel::DeviceList& model, ModelLimits limits, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Parts>(*this, model, limits))
{
}

ModelTester::~ModelTester() = default;

QList<ModelFault> ModelTester::faults() const
{
    return d->m_watch.faults();
}

void ModelTester::check()
{
    d->m_watch.check();
}

bool ModelTester::isWaiting() const
{
    return d->m_watch.isWaiting();
}

bool ModelTester::stop()
{
    return d->m_watch.stop();
}

} // namespace Orvane::ModelTest
