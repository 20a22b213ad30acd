#pragma once

#include "parallelcontrol/parallelmanager.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace ScreenScene {

/// Stands before the model's manager of parallel requests, and hands requests on unless it is told to refuse
/// them or to hold up who makes them. Make it after the model.
class RequestGate : public Orvane::ParallelControl::ParallelManager {
public:
    using Device = std::weak_ptr<Orvane::BizModel::Device>;
    using Factory = Orvane::ParallelControl::ParallelTaskFactory;

    explicit RequestGate(ParallelManager* model = instance())
        : m_pModel(model)
    {
    }

    bool startParallelRequest(
        const Device& device, const Factory& factory, bool waitForResult, QString* error,
        Orvane::Completion callback) override
    {
        pass();
        if (!m_bRefuses.exchange(false))
            return m_pModel->startParallelRequest(device, factory, waitForResult, error, std::move(callback));
        if (error)
            *error = QStringLiteral("not now");
        return false;
    }
    bool startParallelRequest(
        const Device& device, const Factory& factory, Orvane::Completion completion, int count) override
    {
        return m_pModel->startParallelRequest(device, factory, std::move(completion), count);
    }
    int currentTaskCount() const override { return m_pModel->currentTaskCount(); }

    /// The next request is refused.
    void refuseNext() { m_bRefuses = true; }
    /// Whoever makes a request waits until `open()`.
    void close()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bClosed = true;
    }
    void open()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bClosed = false;
        m_opened.notify_all();
    }

private:
    void pass()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_opened.wait_for(lock, std::chrono::seconds(20), [this] { return !m_bClosed; });
    }

    ParallelManager* const m_pModel;
    std::atomic<bool> m_bRefuses{false};
    // m_mutex guards m_bClosed.
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_bClosed = false;
};

} // namespace ScreenScene
