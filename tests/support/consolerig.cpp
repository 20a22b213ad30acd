#include "consolerig.h"

#include <QCoreApplication>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

namespace Orvane::TestSupport {

using namespace ECProxy::Client;

class ConsoleRig::Private {
public:
    explicit Private(std::unique_ptr<ConsoleWire> wire)
        : m_pWire(std::move(wire))
    {
    }

    void receive(const char* bytes, int size)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto reception = m_recorder.receive(bytes, size);
        if (const auto* read = std::get_if<ConsolePanel::DownDatagram>(&reception.datagram)) {
            const auto* data = std::get_if<ECDeviceIPData>(&read->message);
            if (data && data->Index == MarkerIndex) {
                m_nMarkerSeen = data->IP;
                m_markerSeen.notify_all();
            } else {
                m_requests.push_back(*read);
            }
        }
    }

    /// A console index that no test uses: its network record, echoed by the library, marks a point in time.
    static constexpr quint8 MarkerIndex = 0xEE;

    const std::unique_ptr<ConsoleWire> m_pWire;
    std::atomic<quint16> m_nSequence{0}; ///< tests report on threads of their own
    quint32 m_nMarkerSent = 0;

    // m_mutex guards m_recorder, m_requests and m_nMarkerSeen.
    mutable std::mutex m_mutex;
    ConsolePanel::ConsoleRecorder m_recorder;
    std::vector<ConsolePanel::DownDatagram> m_requests;
    quint32 m_nMarkerSeen = 0;
    std::condition_variable m_markerSeen;
};

namespace {

/// What the console has at the number; its default when there is nothing yet.
template <typename Map> typename Map::mapped_type valueAt(const Map& map, quint16 ecKey)
{
    const auto found = map.find(ecKey);
    return found == map.end() ? typename Map::mapped_type() : found->second;
}

} // namespace

ConsoleRig::ConsoleRig(
    const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, std::unique_ptr<ConsoleWire> wire)
    : d(std::make_unique<Private>(std::move(wire)))
{
    d->m_pWire->join(keyboard, [this](const char* bytes, int size) { d->receive(bytes, size); });
}

ConsoleRig::~ConsoleRig()
{
    d->m_pWire->end();
}

ConsoleWire& ConsoleRig::wire()
{
    return *d->m_pWire;
}

void ConsoleRig::tap(quint32 key)
{
    press(key);
    release(key);
}

void ConsoleRig::tbar(quint32 value, quint8 direction)
{
    ECTBarValue position;
    position.Value = value;
    position.IsBottomToTop = direction;
    report(position);
}

void ConsoleRig::report(const ConsolePanel::UpMessage& message)
{
    d->m_pWire->report(ConsolePanel::encodeUp(message, ++d->m_nSequence));
}

void ConsoleRig::sendMarker()
{
    ECDeviceIPData marker;
    marker.Index = Private::MarkerIndex;
    marker.IP = ++d->m_nMarkerSent;
    report(marker);
}

bool ConsoleRig::settleWithoutEventLoop(int timeoutMs)
{
    sendMarker();
    std::unique_lock<std::mutex> lock(d->m_mutex);
    return d->m_markerSeen.wait_for(
        lock, std::chrono::milliseconds(timeoutMs), [this] { return d->m_nMarkerSeen == d->m_nMarkerSent; });
}

bool ConsoleRig::settle(int timeoutMs)
{
    sendMarker();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    bool handled = false;
    do {
        QCoreApplication::processEvents();
        std::unique_lock<std::mutex> lock(d->m_mutex);
        handled = d->m_markerSeen.wait_for(
            lock, std::chrono::milliseconds(1), [this] { return d->m_nMarkerSeen == d->m_nMarkerSent; });
    } while (!handled && std::chrono::steady_clock::now() < deadline);
    QCoreApplication::processEvents();
    return handled;
}

void ConsoleRig::restart()
{
    const std::lock_guard<std::mutex> lock(d->m_mutex);
    d->m_recorder.restart();
}

ConsolePanel::ConsoleState ConsoleRig::console() const
{
    const std::lock_guard<std::mutex> lock(d->m_mutex);
    return d->m_recorder.state();
}

ConsolePanel::KeyState ConsoleRig::key(quint16 ecKey) const
{
    const std::lock_guard<std::mutex> lock(d->m_mutex);
    return valueAt(d->m_recorder.state().keys, ecKey);
}

QString ConsoleRig::label(quint16 ecKey) const
{
    const std::lock_guard<std::mutex> lock(d->m_mutex);
    return QString::fromUtf8(valueAt(d->m_recorder.state().labels, ecKey).text);
}

bool ConsoleRig::shows(quint16 ecKey, ECLEDColor color) const
{
    const auto state = key(ecKey);
    return state.isLit && state.colour == colourOf(color);
}

bool ConsoleRig::waitShows(quint16 ecKey, ECLEDColor color, int timeoutMs) const
{
    return QTest::qWaitFor([&] { return shows(ecKey, color); }, timeoutMs);
}

bool ConsoleRig::waitLabel(quint16 ecKey, const QString& text, int timeoutMs) const
{
    return QTest::qWaitFor([&] { return label(ecKey) == text; }, timeoutMs);
}

QStringList ConsoleRig::faces(quint16 firstKey, quint16 firstLabel, int count) const
{
    static const std::pair<const char*, ECLEDColor> s_colors[] = {
        {"red", ECLEDColor::Red},
        {"green", ECLEDColor::Green},
        {"yellow", ECLEDColor::Yellow},
        {"orange", ECLEDColor::Orange},
        {"off", ECLEDColor::Off}};
    QStringList faces;
    for (int i = 0; i < count; ++i) {
        const auto* color = std::find_if(std::begin(s_colors), std::end(s_colors), [&](const auto& each) {
            return shows(quint16(firstKey + i), each.second);
        });
        const QString name = color == std::end(s_colors) ? "unlit" : color->first;
        faces.append((name + ' ' + label(quint16(firstLabel + i))).trimmed());
    }
    return faces;
}

quint64 ConsoleRig::unreadableRequests() const
{
    const std::lock_guard<std::mutex> lock(d->m_mutex);
    return d->m_recorder.unreadable();
}

std::vector<ConsolePanel::DownDatagram> ConsoleRig::takeRequests()
{
    const std::lock_guard<std::mutex> lock(d->m_mutex);
    return std::exchange(d->m_requests, {});
}

std::vector<quint32> ConsoleRig::takeTBarLevels()
{
    std::vector<quint32> levels;
    for (const auto& request : takeRequests()) {
        if (const auto* level = std::get_if<ECTBarValue>(&request.message))
            levels.push_back(level->Value);
    }
    return levels;
}

ConsolePanel::KeyColour colourOf(ECLEDColor color)
{
    // Stated here once more, on purpose: the tests must notice when the library's own table changes.
    using Colour = ConsolePanel::KeyColour;
    static const std::map<ECLEDColor, Colour> s_colours{
        {ECLEDColor::Red, {255, 0, 0}},     {ECLEDColor::Blue, {0, 0, 255}},
        {ECLEDColor::Green, {0, 255, 0}},   {ECLEDColor::Yellow, {255, 255, 0}},
        {ECLEDColor::Off, {20, 20, 20}},    {ECLEDColor::Purple, {255, 0, 255}},
        {ECLEDColor::Orange, {255, 72, 0}}, {ECLEDColor::On, {255, 255, 255}}};
    return s_colours.at(color);
}

} // namespace Orvane::TestSupport
