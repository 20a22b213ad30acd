#include "modelrig.h"
#include "processuse.h"
#include "showclock_p.h"
#include "showfile.h"
#include "socketwire.h"
#include "stormconsole.h"
#include "traffic.h"

#include "ecconsolesession.h"
#include "ecmanager.h"
#include "faultywire.h"
#include "functioncommand.h"
#include "memorydevicelist.h"
#include "numbercommand.h"
#include "screencommand.h"

#include "parallelcontrol/parallelmanager.h"

#include <QApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Storm;
using Clock = std::chrono::steady_clock;
using TestSupport::ProcessUse;
using namespace std::chrono_literals;
using MemoryModel::Operation;
using MemoryModel::Times;

namespace {

constexpr int PatienceMs = 30000;
constexpr int ShowRate = 10;
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr int Tries = 100;
#else
constexpr int Tries = 1000;
#endif
/// A press that has done nothing after this never will.
constexpr auto LostAfter = 500ms;

} // namespace

/// The library on the real ports while more goes on than in any show.
class TestUnderLoad : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aThousandOpeningsAmidTrafficLeaveNothingBehind();
    void aFloodOfGarbageDoublesNoKeyAndLosesOnlyWhatTheKernelDrops();
    void aSlowModelLosesAndDoublesNoKey();
    void cleanupTestCase() { m_pRig.reset(); }

private:
    TestSupport::SocketWire& wire()
    {
        return static_cast<TestSupport::SocketWire&>(m_pRig->console().wire());
    }
    quint32 digit() const { return m_keyboard.group(NumberGroup).m_buttons.front()->ECKey; }

    const Keyboard m_keyboard{QStringLiteral(EXAMPLE_KEYBOARD)};
    std::unique_ptr<TestSupport::ModelRig> m_pRig;
    QTemporaryDir m_directory;
    std::vector<int> allTyped()
    {
        const std::lock_guard<std::mutex> lock(m_mtxTyped);
        return m_typed;
    }
    void forgetTyped()
    {
        const std::lock_guard<std::mutex> lock(m_mtxTyped);
        m_typed.clear();
    }

    std::mutex m_mtxTyped; ///< guards m_typed, which grows on the thread of the reports
    std::vector<int> m_typed;
    std::atomic<int> m_nTyped{0};
};

void TestUnderLoad::initTestCase()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    ShowClock::setRate(ShowRate);
    QStringList faults;
    const auto show = MemoryModel::loadShowFile(QStringLiteral(EXAMPLE_SHOW), faults);
    QVERIFY(show);
    m_pRig = std::make_unique<TestSupport::ModelRig>(
        m_keyboard.config(), std::make_unique<TestSupport::SocketWire>());
    QVERIFY(m_pRig->load(*show));
    m_pRig->model().setShowFile(m_directory.filePath(QStringLiteral("show.json")));
    connect(
        ECManager::instance(), &ECManager::signalStandardKeyPressed, this,
        [this](int key) {
            const std::lock_guard<std::mutex> lock(m_mtxTyped);
            m_typed.push_back(key);
            ++m_nTyped;
        },
        Qt::DirectConnection);
}

void TestUnderLoad::aThousandOpeningsAmidTrafficLeaveNothingBehind()
{
    constexpr int rounds = Tries;
    auto& session = wire().session();
    std::atomic<bool> stop{false};
    std::thread requests([&] {
        while (!stop) {
            ECManager::instance()->updateSystemTime(QStringLiteral("2026-01-01"), QStringLiteral("12:00"));
            std::this_thread::sleep_for(50us);
        }
    });
    auto typing = std::make_unique<Life::Traffic>(Life::taps({digit()}), 20us);
    const auto openAndClose = [&](int round) {
        QVERIFY2(session.start(m_keyboard.config()), qPrintable(session.errorString()));
        if (round % 2 == 0) // and closed again before the threads have begun
            QTest::qWait(round % 5);
        session.stop();
        const int typed = m_nTyped;
        if (round % 10 == 0)
            QTest::qWait(2);
        QCOMPARE(m_nTyped.load(), typed); // no key acts while the channel is closed
    };
    const ProcessUse before = ProcessUse::present();
    for (int round = 0; round < rounds && !QTest::currentTestFailed(); ++round)
        openAndClose(round);
    typing.reset();
    stop = true;
    requests.join();
    const ProcessUse after = ProcessUse::present();
    QVERIFY2(after.growthSince(before).isEmpty(), qPrintable(after.growthSince(before)));
    QVERIFY(m_nTyped > 0);

    QVERIFY(session.start(m_keyboard.config()));
    QVERIFY(TestSupport::SocketWire::waitUntilReceiving());
    m_nTyped = 0;
    for (int tap = 1; tap <= 10; ++tap) {
        m_pRig->console().tap(digit());
        QVERIFY(m_pRig->console().settle());
        QCOMPARE(m_nTyped.load(), tap);
    }
    QTRY_COMPARE(difference(*m_pRig, m_keyboard), QString());
}

void TestUnderLoad::aFloodOfGarbageDoublesNoKeyAndLosesOnlyWhatTheKernelDrops()
{
    constexpr int taps = Tries;
    const auto& digits = m_keyboard.group(NumberGroup).m_buttons;
    const quint64 droppedBefore = TestSupport::portState(ECClientPort).dropped;
    const ProcessUse before = ProcessUse::present();
    QProcess flood;
    flood.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--flood")});
    QVERIFY(flood.waitForReadyRead(PatienceMs));
    forgetTyped();
    std::chrono::nanoseconds slowest{};
    for (int tap = 0; tap < taps; ++tap) {
        const auto typed = m_nTyped.load();
        const auto pressed = Clock::now();
        m_pRig->console().tap(digits[tap % digits.size()]->ECKey);
        while (m_nTyped == typed && Clock::now() < pressed + LostAfter)
            std::this_thread::sleep_for(20us);
        if (m_nTyped != typed)
            slowest = std::max<std::chrono::nanoseconds>(slowest, Clock::now() - pressed);
    }
    const ProcessUse after = ProcessUse::present();
    flood.closeWriteChannel();
    QVERIFY(flood.waitForFinished(PatienceMs));
    QVERIFY(m_pRig->console().settle(PatienceMs));

    const quint64 dropped = TestSupport::portState(ECClientPort).dropped - droppedBefore;
    const int lost = taps - int(allTyped().size());
    std::printf(
        "flood: %s datagrams of garbage, %llu dropped by the kernel; %d of %d presses lost, the slowest took "
        "%.1f ms; "
        "memory %lld kB, then %lld\n",
        flood.readAllStandardOutput().trimmed().constData(), static_cast<unsigned long long>(dropped), lost,
        taps, double(slowest.count()) / 1e6, before.memoryKb, after.memoryKb);
    const std::vector<int> keys = allTyped();
    QVERIFY(std::adjacent_find(keys.begin(), keys.end()) == keys.end());
    QVERIFY2(quint64(std::max(lost, 0)) <= dropped, "a press is lost that the kernel has not dropped");
}

void TestUnderLoad::aSlowModelLosesAndDoublesNoKey()
{
    // Keys of which each press asks for its own operation, whatever is still under way.
    const std::pair<ScreenCallbackType, Operation> keys[] = {
        {ScreenCallbackType::eFTBPGMCB, Operation::ParallelFTBScreen},
        {ScreenCallbackType::eFreezePGMCB, Operation::ParallelFreezeScreen},
        {ScreenCallbackType::eSetSwapStatusCB, Operation::ParallelSetSwapStatus},
        {ScreenCallbackType::eSetPGMEdit, Operation::UpdatePGMEditStatus},
        {ScreenCallbackType::eSetTransitionTimeCB, Operation::UpdateEffectSpeed},
        {ScreenCallbackType::eMatchPGMCB, Operation::ParallelMatchPGM}};
    const auto& digits = m_keyboard.group(NumberGroup).m_buttons;
    int typed = 0;
    // How often the model was asked, a key's group of devices counted.
    const auto play = [&](int rounds) {
        m_pRig->forget();
        for (int round = 0; round < rounds; ++round) {
            for (const auto& key : keys) {
                m_pRig->console().tap(m_keyboard.key(ScreenGroup, key.first).ECKey);
                m_pRig->console().tap(digits[typed++ % digits.size()]->ECKey);
            }
        }
        const auto* const requests = ParallelControl::ParallelManager::instance();
        if (!m_pRig->console().settle(PatienceMs)
            || !QTest::qWaitFor([&] { return requests->currentTaskCount() == 0; }, PatienceMs))
            return QStringList("the model has not done it all");
        QStringList asked;
        for (const auto& key : keys) {
            const int count = m_pRig->asked(key.second).size();
            if (count == 0 || count % rounds != 0)
                asked += QStringLiteral("wrong:");
            asked += QStringLiteral("%1 %2").arg(MemoryModel::operationName(key.second)).arg(count);
        }
        return asked;
    };
    constexpr int rounds = 4;
    forgetTyped();
    const QStringList fast = play(rounds);
    QVERIFY2(!fast.contains(QStringLiteral("wrong:")), qPrintable(fast.join(' ')));
    for (const QString& name : MemoryModel::operationNames())
        m_pRig->operations().delay(*MemoryModel::findOperation(name), 500ms, Times::Always);
    QCOMPARE(play(rounds), fast);
    const std::vector<int> typedKeys = allTyped();
    QCOMPARE(int(typedKeys.size()), typed);
    for (int i = digits.size(); i < typed; ++i)
        QCOMPARE(typedKeys[std::size_t(i)], typedKeys[std::size_t(i - digits.size())]);
    m_pRig->operations().clearAllOrders();
    QTRY_COMPARE_WITH_TIMEOUT(difference(*m_pRig, m_keyboard), QString(), PatienceMs);
}

namespace {

/// Another process of this machine that does not mean well. Until its input ends.
int flood()
{
    std::vector<QByteArray> garbage;
    for (int kind = 0; kind < ConsolePanel::malformedKinds().size(); ++kind)
        garbage.push_back(ConsolePanel::malformedDatagram(kind));
    garbage.push_back(QByteArray(1400, '\xEE'));
    garbage.push_back(QByteArray::fromHex("55ee55ee0100000100000400cf000e00") + QByteArray(14, '\xFF'));
    const Life::Traffic traffic(garbage, 0us);
    std::printf("\n");
    std::fflush(stdout);
    (void)std::getchar();
    std::printf("%llu\n", static_cast<unsigned long long>(traffic.sent()));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && qstrcmp(argv[1], "--flood") == 0)
        return flood();
    QApplication app(argc, argv);
    TestUnderLoad test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_underload.moc"
