#include "modelcheck.h"

#include "bizmodel/device.h"
#include "modeloperator_p.h"

#include <QEventLoop>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>

namespace Orvane::ModelTest {

using namespace std::chrono_literals;
using Internal::ModelOperator;
using Internal::OperatorProgress;

namespace {

constexpr auto RegularScreens = BizModel::Enum::Screen::RegularScreen;

/// Lets the event loop run until the condition holds or the time is over.
template <typename Condition> void runUntil(Condition condition, std::chrono::milliseconds limit)
{
    QEventLoop loop;
    QTimer poll;
    const auto end = std::chrono::steady_clock::now() + limit;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition() || std::chrono::steady_clock::now() >= end)
            loop.quit();
    });
    poll.start(10ms);
    loop.exec();
}

/// What the operator has found by itself, on its thread.
class OperatorFaults final {
public:
    void add(const ModelFault& fault)
    {
        const std::lock_guard lock(m_mutex);
        m_faults += fault;
    }
    QList<ModelFault> get() const
    {
        const std::lock_guard lock(m_mutex);
        return m_faults;
    }

private:
    mutable std::mutex m_mutex; ///< guards m_faults
    QList<ModelFault> m_faults;
};

struct Result {
    QList<ModelFault> faults;
    /// A call has not returned: a thread is still in the model.
    bool isStuck = false;
};

/// Lets the operator work on a thread of its own while this thread's events go on. False when one of its
/// calls does not return.
bool runOperator(const ModelLimits& limits, const std::shared_ptr<OperatorFaults>& found)
{
    const auto progress = std::make_shared<OperatorProgress>();
    std::thread console([limits, progress, found] {
        ModelOperator(limits, progress, [found](const ModelFault& fault) { found->add(fault); }).work();
    });
    int steps = -1;
    while (!progress->done && progress->steps != std::exchange(steps, progress->steps))
        runUntil([&] { return progress->done || progress->steps != steps; }, limits.step);
    if (progress->done) {
        console.join();
        return true;
    }
    console.detach();
    found->add(
        {QStringLiteral("call-returns"), QString::fromLatin1(progress->step),
         QStringLiteral("A call of the model has not returned; the check ends here.")});
    return false;
}

Result check(ModelFixture& fixture, const ModelLimits& limits)
{
    QString error;
    BizModel::DeviceList* const list = fixture.create(error) ? BizModel::DeviceList::instance() : nullptr;
    auto device = list ? list->activedDevice().lock() : nullptr;
    if (!device || device->screens(RegularScreens).isEmpty())
        return {
            {{QStringLiteral("fixture"), QStringLiteral("create"),
              error.isEmpty() ? QStringLiteral("There is no active device with a regular screen.") : error}},
            false};
    device.reset();
    const auto found = std::make_shared<OperatorFaults>();
    auto tester = std::make_unique<ModelTester>(*list, limits);
    const bool ended = runOperator(limits, found);
    tester->check();
    runUntil([&] { return !tester->isWaiting(); }, limits.completion + limits.removal);
    tester->check();
    Result result{tester->faults() + found->get(), !tester->stop() || !ended};
    if (result.isStuck) {
        tester.release(); // the thread that is left works with it
        return result;
    }
    tester.reset();
    fixture.destroy();
    return result;
}

} // namespace

QList<ModelFault> checkModel(ModelFixture& fixture, ModelLimits limits)
{
    return check(fixture, limits).faults;
}

int checkModelMain(ModelFixture& fixture, ModelLimits limits)
{
    const Result result = check(fixture, limits);
    const QList<ModelFault>& faults = result.faults;
    for (const ModelFault& fault : faults)
        std::printf(
            "%s: %s: %s\n", qUtf8Printable(fault.rule), qUtf8Printable(fault.call),
            qUtf8Printable(fault.seen));
    if (faults.isEmpty())
        std::puts("The model keeps the rules.");
    const int code = faults.isEmpty() ? 0 : faults.first().rule == QLatin1String("fixture") ? 2 : 1;
    if (result.isStuck) {
        // Destroying the model would take it away from under the thread that is still in it.
        std::fflush(stdout);
        std::_Exit(code);
    }
    return code;
}

} // namespace Orvane::ModelTest
