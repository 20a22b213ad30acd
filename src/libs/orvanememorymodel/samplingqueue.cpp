#include "samplingqueue.h"

#include "operationtext.h"
#include "presets.h"
#include "transitions.h"

#include <QtDebug>

#include <algorithm>
#include <utility>

namespace Orvane::MemoryModel {

using namespace TaskSampling;
using ScreenState = BizModel::Screen::State;

namespace {

constexpr double EndTolerance = 0.000001;

bool isComplete(double process)
{
    return process >= 1.0 - EndTolerance;
}

bool isBack(double process)
{
    return process <= EndTolerance;
}

OperationCall describe(const s_TBarSampling& sample)
{
    return {
        Operation::SampleTBar,
        deviceText(sample.pCurDevice)
            + QStringLiteral(" types=%1 process=%2").arg(sample.takeScreenType).arg(sample.process)};
}

OperationCall describe(const s_LoadPresetSampling& sample)
{
    return {
        Operation::SampleLoadPreset,
        deviceText(sample.pCurDevice) + QStringLiteral(" preset=%1").arg(sample.nFileID)};
}

SamplingType typeOf(const std::variant<s_TBarSampling, s_LoadPresetSampling>& sample)
{
    return std::holds_alternative<s_TBarSampling>(sample) ? SamplingType::TBar : SamplingType::LoadPreset;
}

/// Screens that the position moves: those that a transition has begun with stay in it, whatever is selected
/// meanwhile.
MemoryDevice::Screens tbarScreens(
    const Guard& guard, const MemoryDevice& device, const s_TBarSampling& sample)
{
    MemoryDevice::Screens screens;
    for (const std::shared_ptr<MemoryScreen>& screen : device.data(guard).screens) {
        if ((screen->screenType() & sample.takeScreenType)
            && std::as_const(*screen).data(guard).state == ScreenState::Tbar_taking)
            screens += screen;
    }
    if (!screens.isEmpty() || isBack(sample.process))
        return screens;
    const auto candidates = device.takeScreens(guard, sample.takeScreenType, true);
    for (const std::shared_ptr<MemoryScreen>& screen : candidates) {
        if (std::as_const(*screen).data(guard).isIdle())
            screens += screen;
    }
    return screens;
}

} // namespace

SamplingQueue::SamplingQueue(std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor)
    : m_pHub(std::move(hub))
    , m_list(list)
    , m_processor(processor)
{
}

bool SamplingQueue::setSamplingType(SamplingType type)
{
    if (m_pHub->operations.perform(Operation::SetSamplingType, QStringLiteral("type=%1").arg(int(type))))
        return false;
    const std::lock_guard lock(m_mutex);
    const bool otherWaits = std::any_of(
        m_waiting.cbegin(), m_waiting.cend(), [type](const Sample& each) { return typeOf(each) != type; });
    if (!otherWaits)
        m_type = type;
    return !otherWaits;
}

bool SamplingQueue::appendData(const std::shared_ptr<s_TBarSampling>& sampling)
{
    const bool usable =
        sampling && sampling->process >= -EndTolerance && sampling->process <= 1.0 + EndTolerance;
    return appendUsable(sampling, usable);
}

bool SamplingQueue::appendData(const std::shared_ptr<s_LoadPresetSampling>& sampling)
{
    return appendUsable(sampling, sampling != nullptr);
}

template <typename Sampling>
bool SamplingQueue::appendUsable(const std::shared_ptr<Sampling>& sampling, bool usable)
{
    if (usable && !sampling->pCurDevice.expired())
        return append(*sampling);
    qWarning("%s", sampling ? "Sampling data container is invalid" : "Sampling data container is null");
    return false;
}

void SamplingQueue::stop()
{
    m_worker.stop();
}

bool SamplingQueue::append(Sample sample)
{
    const OperationCall text = std::visit([](const auto& each) { return describe(each); }, sample);
    m_pHub->operations.request(text.operation, text.arguments);
    const bool accepted = !m_pHub->operations.stopped() && enqueue(std::move(sample));
    if (!accepted)
        qWarning("Sampling data container is invalid");
    return accepted;
}

/// False when the sample is not of the type that was announced last.
bool SamplingQueue::enqueue(Sample sample)
{
    const std::lock_guard lock(m_mutex);
    if (m_type != typeOf(sample))
        return false;
    if (!m_waiting.empty()) {
        Sample& last = m_waiting.back();
        const auto* const tbar = std::get_if<s_TBarSampling>(&last);
        if (last.index() == sample.index() && !(tbar && isComplete(tbar->process))) {
            last = std::move(sample);
            return true;
        }
    }
    m_waiting.push_back(std::move(sample));
    return m_worker.post([this](bool stopping) { carryOutNext(stopping); });
}

void SamplingQueue::carryOutNext(bool stopping)
{
    std::optional<Sample> sample;
    {
        const std::lock_guard lock(m_mutex);
        sample = std::move(m_waiting.front());
        m_waiting.pop_front();
    }
    if (stopping)
        return;
    const OperationCall text = std::visit([](const auto& each) { return describe(each); }, *sample);
    std::optional<QString> failure = m_pHub->operations.perform(text.operation, text.arguments);
    std::visit([&](const auto& each) { carryOut(each, failure); }, *sample);
    m_pHub->operations.end(text.operation, text.arguments, failure);
}

void SamplingQueue::carryOut(const s_TBarSampling& sample, std::optional<QString>& failure)
{
    if (failure)
        return;
    MemoryDeviceList::Devices members;
    {
        const Guard guard(*m_pHub);
        if (const std::shared_ptr<MemoryDevice> device = m_list.own(guard, sample.pCurDevice))
            members = m_list.group(guard, device);
    }
    for (const std::shared_ptr<MemoryDevice>& member : std::as_const(members))
        moveTBar(member, sample, failure);
}

void SamplingQueue::moveTBar(
    const std::shared_ptr<MemoryDevice>& device, const s_TBarSampling& sample,
    std::optional<QString>& failure)
{
    const MemoryDevice::Screens moved = tbarScreens(Guard(*m_pHub), *device, sample);
    QString error;
    if (moved.isEmpty())
        return;
    if (!m_processor.moveTBar(jobOf(*device, moved), sample.process, error)) {
        failure = error;
        return;
    }
    Change change(*m_pHub);
    const MemoryDevice::Screens screens = tbarScreens(change, *device, sample);
    const bool complete = isComplete(sample.process);
    const bool ended = complete || isBack(sample.process);
    for (const std::shared_ptr<MemoryScreen>& screen : screens) {
        MemoryScreen::Data& state = screen->data(change);
        if (complete)
            takeScene(change, *device, *screen);
        state.state = ended ? ScreenState::Normal : ScreenState::Tbar_taking;
        state.tbarProgress = ended ? 0.0 : sample.process;
    }
    change.markChanged();
    if (complete)
        announceLayersChanged(change, screens, LayersChangedBy::TBar);
}

void SamplingQueue::carryOut(const s_LoadPresetSampling& sample, std::optional<QString>& failure)
{
    const std::shared_ptr<BizModel::Device> known = sample.pCurDevice.lock();
    QString error;
    if (known && !failure && !m_processor.loadPreset(known->ipMacSn(), sample.nFileID, error))
        failure = error;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> device = m_list.own(change, sample.pCurDevice);
    if (!device)
        return;
    const auto putKeypadBack = [&] {
        device->setKeypad(change, std::make_shared<BizModel::Keypad>(sample.lastKeypadInfo));
    };
    if (failure)
        return putKeypadBack();
    const Devices group = m_list.group(change, device);
    for (const std::shared_ptr<MemoryDevice>& member : group) {
        // The device itself takes another member's preset for its own, so that its key shows it.
        const auto loaded = findPreset(change, member == device ? group : Devices{member}, sample.nFileID);
        if (!member->loadedByDevice(change, loaded, sample.nFileID) && member == device)
            putKeypadBack();
    }
}

} // namespace Orvane::MemoryModel
