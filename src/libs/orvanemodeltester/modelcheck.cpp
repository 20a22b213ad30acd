#include "modelcheck.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/device.h"
#include "modelcontrol/screen.h"
#include "parallelcontrol/parallelmanager.h"

#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>
#include <utility>

namespace Orvane::ModelTest {

using namespace ParallelControl;
using namespace std::chrono_literals;

namespace {

constexpr auto RegularScreens = BizModel::Enum::Screen::RegularScreen;

/// A completion that the checking thread can wait for.
class Ending final {
public:
    Completion completion() const
    {
        return [state = m_pState](bool, const QString&) {
            const std::lock_guard lock(state->mutex);
            state->ended = true;
            state->changed.notify_all();
        };
    }
    void wait(std::chrono::milliseconds limit) const
    {
        std::unique_lock lock(m_pState->mutex);
        m_pState->changed.wait_for(lock, limit, [this] { return m_pState->ended; });
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        bool ended = false;
    };
    const std::shared_ptr<State> m_pState = std::make_shared<State>();
};

/// What an operator does, one step after another.
class Operator final {
public:
    explicit Operator(ModelLimits limits)
        : m_limits(limits)
    {
    }

    void work()
    {
        const auto device = BizModel::DeviceList::instance()->activedDevice().lock();
        const auto screens =
            device ? device->screens(RegularScreens) : QList<std::weak_ptr<BizModel::Screen>>();
        if (screens.isEmpty())
            return;
        m_pDevice = device;
        m_pScreen = screens.first();
        select();
        toggle();
        transitions();
        refusals();
        save();
    }

private:
    void select()
    {
        const auto control = ModelControl::Device::screenModelControl(RegularScreens, m_pDevice);
        const auto device = ModelControl::Device::create(m_pDevice);
        if (!control || !device)
            return;
        if (const auto screen = m_pScreen.lock(); screen && screen->selected())
            control->cancelSelected({m_pScreen}, true);
        control->setSelected({m_pScreen}, BizModel::SelectedType::Cover, true, true);
        device->setActivedScreen(m_pScreen);
    }

    /// Each flag there and back.
    void toggle()
    {
        const auto device = m_pDevice.lock();
        const auto screen = m_pScreen.lock();
        if (!device || !screen)
            return;
        for (int i = 0; i < 2; ++i) {
            ParallelFreezeScreen freeze;
            freeze.freeze = !screen->freeze();
            run(freeze, true);
            ParallelFTBScreen ftb;
            ftb.fadeToBlack = !screen->FTBEnable();
            run(ftb, false);
            ParallelSetSwapStatus swap;
            swap.swap = !device->swapEnable();
            run(swap, false);
        }
    }

    void transitions()
    {
        Ending first;
        Ending second;
        start(ParallelTakeScreen{}, false, first.completion()); // the second press comes at once
        const auto control = ModelControl::Device::create(m_pDevice);
        const bool again =
            control && control->takeCutEnabled() && start(ParallelTakeScreen{}, false, second.completion());
        const auto screen = m_pScreen.lock();
        const auto limit = m_limits.completion
            + std::chrono::milliseconds(screen ? qRound64(screen->switchEffectTime() * 1000) : 0);
        first.wait(limit);
        if (again)
            second.wait(limit);
        run(ParallelCutScreen{}, true);
        run(ParallelMatchPGM{}, false);
    }

    /// What names nothing that is there must be refused.
    void refusals()
    {
        const auto control = ModelControl::Device::screenModelControl(RegularScreens, m_pDevice);
        if (control) {
            control->setSelected({}, BizModel::SelectedType::Cover, true, true);
            control->setSelected(
                {std::weak_ptr<BizModel::Screen>()}, BizModel::SelectedType::Cover, true, true);
            control->cancelSelected({std::weak_ptr<BizModel::Screen>()}, true);
        }
        m_pDevice.swap(m_pNone);
        run(ParallelFreezeScreen{}, false);
        m_pDevice.swap(m_pNone);
    }

    void save()
    {
        auto* const manager = ModelControl::AsyncManager::instance();
        if (!manager)
            return;
        const Ending ending;
        manager->startAsyncRequest(ModelControl::AsyncSaveDeviceData{m_pDevice, ending.completion()});
        ending.wait(m_limits.completion);
    }

    template <typename Task> bool start(Task task, bool waits, const Completion& completion)
    {
        auto* const manager = ParallelManager::instance();
        const auto factory = [task](const std::weak_ptr<BizModel::Device>& device) {
            Task each = task;
            each.device = device;
            return each;
        };
        return manager && manager->startParallelRequest(m_pDevice, factory, waits, nullptr, completion);
    }

    template <typename Task> void run(const Task& task, bool waits)
    {
        const Ending ending;
        if (start(task, waits, ending.completion()))
            ending.wait(m_limits.completion);
    }

    const ModelLimits m_limits;
    std::weak_ptr<BizModel::Device> m_pDevice;
    std::weak_ptr<BizModel::Device> m_pNone;
    std::weak_ptr<BizModel::Screen> m_pScreen;
};

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

} // namespace

QList<ModelFault> checkModel(ModelFixture& fixture, ModelLimits limits)
{
    QString error;
    BizModel::DeviceList* const list = fixture.create(error) ? BizModel::DeviceList::instance() : nullptr;
    const auto device = list ? list->activedDevice().lock() : nullptr;
    if (!device || device->screens(RegularScreens).isEmpty())
        return {
            {QStringLiteral("fixture"), QStringLiteral("create"),
             error.isEmpty() ? QStringLiteral("There is no active device with a regular screen.") : error}};
    QList<ModelFault> faults;
    {
        ModelTester tester(*list, limits);
        std::atomic<bool> done{false};
        std::thread console([&] {
            Operator(limits).work();
            done = true;
        });
        runUntil([&] { return done.load(); }, std::chrono::minutes(2));
        console.join();
        tester.check();
        runUntil([&] { return !tester.isWaiting(); }, limits.completion + limits.removal);
        tester.check();
        faults = tester.faults();
    }
    fixture.destroy();
    return faults;
}

int checkModelMain(ModelFixture& fixture)
{
    const QList<ModelFault> faults = checkModel(fixture);
    for (const ModelFault& fault : faults)
        std::printf(
            "%s: %s: %s\n", qUtf8Printable(fault.rule), qUtf8Printable(fault.call),
            qUtf8Printable(fault.seen));
    if (faults.isEmpty())
        std::puts("The model keeps the rules.");
    return faults.isEmpty() ? 0 : faults.first().rule == QLatin1String("fixture") ? 2 : 1;
}

} // namespace Orvane::ModelTest
