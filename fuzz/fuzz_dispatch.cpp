/// Bursts of datagrams through the whole way: decoder and its thread, manager, command manager, every command
/// of a full keyboard, a model with a show loaded, and back as requests that a console reads.
///
/// An input is a byte that sets the scene, then datagrams, each behind its length (one byte, 255: two more).

#include "fuzztarget.h"

#include "consolerecorder.h"
#include "ec/eckeyboardloader.h"
#include "ecmanager.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "orvaneecclientdecoder.h"
#include "showclock_p.h"
#include "uptlv_p.h"

#include <QApplication>
#include <QFile>
#include <QLoggingCategory>

#include <chrono>
#include <mutex>
#include <thread>

namespace Orvane::Fuzz {

using namespace ECProxy::Client;

namespace {

/// Bits of the first byte.
enum Scene : std::uint8_t { Quenor = 1, LockedKeypad = 2, TurnsGuiOften = 4, VirtualConsole = 8 };

constexpr std::uint8_t LongLength = 255;
/// Handlers that wait do so on the console's thread, each time for longer than a hundred inputs take.
constexpr int ShowRate = 1000;
constexpr auto LongestBurst = std::chrono::seconds(60);

std::vector<Bytes> datagramsOf(const Bytes& input)
{
    std::vector<Bytes> datagrams;
    for (std::size_t at = 1; at < input.size();) {
        std::size_t size = input[at++];
        if (size == LongLength && input.size() - at >= 2) {
            size = std::size_t(input[at] | input[at + 1] << 8);
            at += 2;
        }
        size = std::min(size, input.size() - at);
        datagrams.emplace_back(input.begin() + std::ptrdiff_t(at), input.begin() + std::ptrdiff_t(at + size));
        at += size;
    }
    return datagrams;
}

/// Whether the datagram reaches the callback, said once more and otherwise than the decoder does.
bool isReport(const Bytes& datagram)
{
    const Bytes magic{0x55, 0xEE, 0x55, 0xEE};
    return datagram.size() > 12 && std::equal(magic.begin(), magic.end(), datagram.begin());
}

/// Whether the manager takes a value of this size for this tag.
bool isAcceptable(unsigned tag, int size)
{
    switch (tag) {
    case 201:
    case 202:
    case 203:
        return size == 5;
    case 204:
    case 205:
        return size == 1;
    case 206:
        return size % 2 == 0;
    case 207:
        return size == 14;
    default:
        return false;
    }
}

class Host {
public:
    Host(int& argc, char** argv)
        : m_app(argc, argv)
    {
        QFile show(QStringLiteral(EXAMPLES "/show.json"));
        QStringList faults;
        check(show.open(QIODevice::ReadOnly) && m_model.load(show.readAll(), faults), "no example show");
        const auto keyboard = EC::loadKeyboardFile(QStringLiteral(EXAMPLES "/keyboard.json"));
        check(bool(keyboard), "no example keyboard");
        ECManager* const manager = ECManager::instance();
        manager->addSendDownTLVRequstCB([this](const QByteArray& datagram) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_recorder.receive(datagram.constData(), datagram.size());
            return true;
        });
        manager->setECClientDecoder(m_pDecoder);
        m_pDecoder->registerUpTLVDecodeFinishedCB(
            [this, manager](const eECUpMessageTag& tag, const QByteArray& value) {
                const bool accepted = manager->upTLVDecodeFinished(tag, value);
                check(accepted == isAcceptable(tag, value.size()), "a report was taken or refused wrongly");
                m_nReports.fetch_add(1, std::memory_order_release);
                return accepted;
            });
        manager->init(keyboard.config);
        m_pDecoder->startDecode();
    }

    ~Host()
    {
        m_pDecoder->stopDecode();
        m_model.stop();
        QCoreApplication::processEvents();
        ECManager::deleteInstance();
    }

    void run(const Bytes& input)
    {
        const std::uint8_t scene = input.empty() ? std::uint8_t(0) : input[0];
        setScene(scene);
        std::uint64_t expected = m_nReports;
        for (const Bytes& datagram : datagramsOf(input)) {
            expected += isReport(datagram) ? 1 : 0;
            m_pDecoder->appendDatagram(
                QByteArray(reinterpret_cast<const char*>(datagram.data()), int(datagram.size())));
            if (scene & TurnsGuiOften)
                QCoreApplication::processEvents();
        }
        const auto deadline = std::chrono::steady_clock::now() + LongestBurst;
        while (m_nReports.load(std::memory_order_acquire) < expected) {
            // Nobody on the console's thread may wait for the GUI, so it runs in some bursts only.
            if (scene & TurnsGuiOften)
                QCoreApplication::processEvents();
            std::this_thread::yield();
            check(std::chrono::steady_clock::now() < deadline, "a report never reached the manager");
        }
        QCoreApplication::processEvents();
        check(m_nReports == expected, "a datagram was reported that is none");
        const std::lock_guard<std::mutex> lock(m_mutex);
        check(m_recorder.unreadable() == 0, "a request was sent that no console reads");
    }

    void tell()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        std::printf(
            "fuzz: %llu reports dispatched, %llu requests read\n",
            static_cast<unsigned long long>(m_nReports.load()),
            static_cast<unsigned long long>(m_recorder.received()));
    }

private:
    void setScene(std::uint8_t scene)
    {
        m_app.setProperty("Quenor", (scene & Quenor) != 0);
        ECManager* const manager = ECManager::instance();
        if (((scene & LockedKeypad) != 0) != manager->isLockedKeypad()) {
            if (scene & LockedKeypad)
                manager->lockKeypad();
            else
                manager->unlockKeypad();
        }
        manager->setIsVirtualConsoleMode((scene & VirtualConsole) != 0);
    }

    QApplication m_app;
    MemoryModel::MemoryModel m_model;
    std::shared_ptr<ECClientDecoder> m_pDecoder = std::make_shared<ECClientDecoder>();
    std::atomic<std::uint64_t> m_nReports{0};

    // m_mutex guards m_recorder.
    std::mutex m_mutex;
    ConsolePanel::ConsoleRecorder m_recorder;
};

std::unique_ptr<Host> s_pHost;

} // namespace

void setUp(int& argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& line) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qUtf8Printable(line));
    });
    QLoggingCategory::setFilterRules(QStringLiteral("default=true\norvane.*=true"));
    ShowClock::setRate(ShowRate);
    s_pHost = std::make_unique<Host>(argc, argv);
}

void run(const Bytes& input)
{
    s_pHost->run(input);
}

void tearDown()
{
    s_pHost->tell();
    s_pHost.reset();
}

} // namespace Orvane::Fuzz
