#include "brokenmodel.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/controllerfactory.h"
#include "modelcontrol/device.h"
#include "modelcontrol/screen.h"
#include "openrequest.h"
#include "parallelcontrol/parallelmanager.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <mutex>
#include <thread>

namespace Orvane::ModelTest::Test {

using namespace BizModel;
using namespace ParallelControl;
using namespace std::chrono_literals;
using State = Screen::State;

namespace {

constexpr auto TaskTime = 30ms;

/// Held by queries, and by who changes something.
class Lock {
public:
    std::recursive_mutex mutex;
    Flaw flaw = Flaw::None;

    /// Lets a query that should not wait for the GUI thread do so, or never return.
    void query()
    {
        if (flaw == Flaw::QueryNeverReturns && QThread::currentThread() != qApp->thread())
            QSemaphore().acquire(); // nobody releases it
        if (flaw == Flaw::QueryWaitsForGui && QThread::currentThread() != qApp->thread())
            QMetaObject::invokeMethod(
                qApp, [] {}, Qt::BlockingQueuedConnection);
        const std::lock_guard lock(mutex);
    }
};

class TestScreen final : public Screen {
public:
    TestScreen(Lock& lock, quint32 id)
        : m_lock(lock)
        , m_nId(id)
    {
    }

    quint32 screenId() const override { return m_nId; }
    QString name() const override { return QStringLiteral("Screen %1 %2").arg(m_nId).arg(m_nRenames); }
    State state() const override
    {
        m_lock.query();
        return m_state;
    }
    bool selected() const override { return m_bSelected; }
    bool freeze() const override { return m_bFreeze; }

    Lock& m_lock;
    const quint32 m_nId;
    std::atomic<int> m_nRenames{0};
    std::atomic<State> m_state{State::Normal};
    std::atomic<bool> m_bSelected{false};
    std::atomic<bool> m_bFreeze{false};
};

class TestDevice final : public Device {
public:
    QString ipMacSn() const override { return QStringLiteral("test"); }
    std::weak_ptr<Screen> activedScreen() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_pActive;
    }
    QList<std::weak_ptr<Screen>> screens(int mask) const override
    {
        const std::lock_guard lock(m_mutex);
        QList<std::weak_ptr<Screen>> list;
        for (const auto& screen : m_screens) {
            if (screen->screenType() & mask)
                list += screen;
        }
        return list;
    }
    bool swapEnable() const override { return m_bSwap; }

    mutable std::mutex m_mutex;
    QList<std::shared_ptr<TestScreen>> m_screens;
    std::weak_ptr<Screen> m_pActive;
    std::atomic<bool> m_bSwap{false};
};

class TestList final : public DeviceList {
public:
    std::weak_ptr<Device> activedDevice() const override { return m_pDevice; }

    const std::shared_ptr<TestDevice> m_pDevice = std::make_shared<TestDevice>();
};

} // namespace

class BrokenModel::Parts final : public ParallelManager,
                                 public ModelControl::AsyncManager,
                                 public ModelControl::ControllerFactory {
public:
    explicit Parts(Flaw flaw)
        : m_flaw(flaw)
    {
        m_lock.flaw = flaw;
        for (const quint32 id : {1, 2, 3})
            device().m_screens += std::make_shared<TestScreen>(m_lock, id);
        device().m_pActive = device().m_screens.first();
    }
    ~Parts() override
    {
        for (std::thread& thread : m_threads)
            thread.join();
    }

    using ParallelManager::startParallelRequest;
    bool startParallelRequest(
        const std::weak_ptr<Device>& weakDevice, const ParallelTaskFactory& factory, bool waitForResult,
        QString*, Completion callback) override
    {
        if (weakDevice.expired())
            return false;
        const ParallelTask task = factory(weakDevice);
        const OpenRequest end(taskName(task), std::move(callback));
        const bool slow = m_flaw == Flaw::SlowRequest && std::holds_alternative<ParallelTakeScreen>(task);
        if (m_flaw != Flaw::StatesAfterReturn)
            begin(task);
        if (m_flaw != Flaw::TaskCountAfterReturn)
            ++m_nTasks;
        const auto work = [this, task, end, slow] {
            std::this_thread::sleep_for(slow ? TaskTime * 20 : TaskTime);
            carryOut(task, end);
        };
        if (waitForResult || slow)
            work();
        else
            run(work);
        return true;
    }
    int currentTaskCount() const override { return m_nTasks; }

    void startAsyncRequest(ModelControl::AsyncRequest request) override
    {
        const Completion completion = std::visit([](auto& each) { return each.completion; }, request);
        if (m_flaw == Flaw::CompletionNever)
            return;
        completion(true, {});
        if (m_flaw == Flaw::CompletionTwice)
            completion(true, {});
        if (m_flaw == Flaw::SilentRename)
            ++device().m_screens.first()->m_nRenames;
        if (m_flaw == Flaw::RemovedScreenKept || m_flaw == Flaw::None)
            removeLast();
    }

    std::shared_ptr<ModelControl::Device> createDevice(const std::weak_ptr<Device>&) override;
    std::shared_ptr<ModelControl::Screen> createScreen(
        Enum::Screen::ScreenType, const std::weak_ptr<Device>&) override;

    TestDevice& device() { return *m_list.m_pDevice; }

    /// Emits a signal as the flaw has it.
    template <typename Signal, typename... Arguments> void emitSignal(Signal signal, Arguments... arguments)
    {
        std::unique_lock lock(m_lock.mutex, std::defer_lock);
        if (m_flaw == Flaw::SignalUnderLock)
            lock.lock();
        Q_EMIT(m_list.*signal)(arguments...);
    }
    template <typename Job> void run(Job job)
    {
        const std::lock_guard lock(m_threadsMutex);
        m_threads.emplace_back(job);
    }

    Lock m_lock;
    const Flaw m_flaw;
    TestList m_list;

private:
    void begin(const ParallelTask& task)
    {
        const State busy = std::holds_alternative<ParallelTakeScreen>(task) ? State::Taking
            : std::holds_alternative<ParallelCutScreen>(task)               ? State::Cut
            : std::holds_alternative<ParallelMatchPGM>(task)                ? State::MatchingPGM
                                                                            : State::Normal;
        for (const auto& screen : device().m_screens) {
            if (screen->m_bSelected && busy != State::Normal)
                screen->m_state = busy;
        }
    }
    void change(const ParallelTask& task)
    {
        const std::weak_ptr<Device> announced = m_list.m_pDevice;
        QList<std::weak_ptr<Screen>> changed;
        for (const auto& screen : device().m_screens) {
            if (!screen->m_bSelected)
                continue;
            changed += screen;
            screen->m_state = State::Normal;
            const auto* const freeze = std::get_if<ParallelFreezeScreen>(&task);
            if (freeze && m_flaw != Flaw::SuccessWithoutEffect
                && screen->m_bFreeze.exchange(freeze->freeze) != freeze->freeze
                && m_flaw != Flaw::FreezeWithoutSignal) {
                const int times = m_flaw == Flaw::FreezeAnnouncedTwice ? 2 : 1;
                for (int i = 0; i < times; ++i)
                    emitSignal(
                        &DeviceList::signalScreenPGMFreezeChanged, announced, std::weak_ptr<Screen>(screen));
            }
        }
        const auto* const swap = std::get_if<ParallelSetSwapStatus>(&task);
        if (swap && device().m_bSwap.exchange(swap->swap) != swap->swap && m_flaw != Flaw::SignalBeforeChange)
            emitSignal(&DeviceList::signalSwapStateChanged, announced);
        if (task.index() <= 2) // take, cut, match
            emitSignal(&DeviceList::signalDeviceScreenLayersChanged, changed, 0);
    }
    void carryOut(const ParallelTask& task, const OpenRequest& end)
    {
        if (m_flaw == Flaw::StatesAfterReturn)
            begin(task);
        const int counted = m_flaw == Flaw::TaskCountAfterReturn ? 0 : 1;
        const bool offered = !std::holds_alternative<ParallelFTBScreen>(task)
            && !std::holds_alternative<ParallelSetLoadToPresetPGMStatus>(task);
        if (!offered) {
            m_nTasks -= counted;
            end.fail(
                m_flaw == Flaw::FailureWithoutReason ? QString() : QStringLiteral("There is no such thing."));
            return;
        }
        if (m_flaw == Flaw::CompletionBeforeSignal && std::holds_alternative<ParallelSetSwapStatus>(task)) {
            m_nTasks -= counted;
            device().m_bSwap = !device().m_bSwap;
            end.succeed();
            emitSignal(&DeviceList::signalSwapStateChanged, std::weak_ptr<Device>(m_list.m_pDevice));
            return;
        }
        if (m_flaw == Flaw::SignalBeforeChange && std::holds_alternative<ParallelSetSwapStatus>(task))
            emitSignal(&DeviceList::signalSwapStateChanged, std::weak_ptr<Device>(m_list.m_pDevice));
        change(task);
        if (m_flaw == Flaw::FailureChanges && std::holds_alternative<ParallelSetSwapStatus>(task)) {
            m_nTasks -= counted;
            end.fail("It cannot swap.");
            return;
        }
        if (m_flaw == Flaw::TaskCountAfterCompletion) {
            end.succeed();
            m_nTasks -= counted;
            return;
        }
        m_nTasks -= counted;
        end.succeed();
    }
    void removeLast()
    {
        std::shared_ptr<TestScreen> last;
        {
            const std::lock_guard lock(device().m_mutex);
            last = device().m_screens.takeLast();
        }
        if (m_flaw == Flaw::RemovedScreenKept)
            m_pKept = last;
        emitSignal(
            &DeviceList::signalScreenRemoved, std::weak_ptr<Device>(m_list.m_pDevice),
            std::shared_ptr<Screen>(last));
    }

    std::shared_ptr<TestScreen> m_pKept;
    std::atomic<int> m_nTasks{0};
    /// Guards m_threads.
    std::mutex m_threadsMutex;
    std::vector<std::thread> m_threads;
};

namespace {

class DeviceControl final : public ModelControl::Device {
public:
    DeviceControl(const std::shared_ptr<TestDevice>& device, DeviceList& list)
        : Device(device)
        , m_pOwn(device)
        , m_list(list)
    {
    }
    void setActivedScreen(const std::weak_ptr<Screen>& screen) override
    {
        {
            const std::lock_guard lock(m_pOwn->m_mutex);
            if (m_pOwn->m_pActive.lock() == screen.lock())
                return;
            m_pOwn->m_pActive = screen;
        }
        Q_EMIT m_list.signalActivedScreenChanged(m_pOwn, screen);
    }

private:
    const std::shared_ptr<TestDevice> m_pOwn;
    DeviceList& m_list;
};

/// Selects by a function of the model's, which has the flaws.
class ScreenControl final : public ModelControl::Screen {
public:
    using Select = std::function<bool(const Screens&, bool)>;

    explicit ScreenControl(Select select)
        : m_select(std::move(select))
    {
    }
    bool setSelected(const Screens& screens, SelectedType, bool, bool) override
    {
        return m_select(screens, true);
    }
    bool cancelSelected(const Screens& screens, bool) override { return m_select(screens, false); }

private:
    const Select m_select;
};

} // namespace

std::shared_ptr<ModelControl::Device> BrokenModel::Parts::createDevice(const std::weak_ptr<Device>&)
{
    return std::make_shared<DeviceControl>(m_list.m_pDevice, m_list);
}

std::shared_ptr<ModelControl::Screen> BrokenModel::Parts::createScreen(
    Enum::Screen::ScreenType, const std::weak_ptr<Device>&)
{
    return std::make_shared<ScreenControl>([this](
                                               const ModelControl::Screen::Screens& screens, bool selected) {
        const auto wanted = screens.isEmpty() ? nullptr : screens.first().lock();
        const bool refused = !wanted;
        if (refused && m_flaw != Flaw::RefusalDeselects)
            return false;
        const auto select = [this, wanted, selected] {
            for (const auto& screen : device().m_screens)
                screen->m_bSelected = screen == wanted && selected;
            emitSignal(
                &DeviceList::signalSelectedRegularScreensChanged, std::weak_ptr<Device>(m_list.m_pDevice));
        };
        if (m_flaw == Flaw::SelectionAfterReturn) {
            run([select] {
                std::this_thread::sleep_for(TaskTime);
                select();
            });
        } else {
            select();
        }
        return !refused;
    });
}

BrokenModel::BrokenModel(Flaw flaw)
    : m_flaw(flaw)
{
}

BrokenModel::~BrokenModel() = default;

bool BrokenModel::create(QString&)
{
    m_p = std::make_unique<Parts>(m_flaw);
    return true;
}

void BrokenModel::destroy()
{
    m_p.reset();
}

} // namespace Orvane::ModelTest::Test
