#pragma once

#include "ecprotocol.h"

#include <atomic>
#include <map>
#include <optional>

namespace Orvane::ECProxy::Client::Internal {

/// The lights and labels of the console's keys by number, as requests leave them. A plain value.
class SurfaceRecord {
public:
    void take(const ECButtonColor& light);
    void take(const ECOLEDText& label);

    const std::map<quint16, ECButtonColor>& lights() const { return m_lights; }
    const std::map<quint16, ECOLEDText>& labels() const { return m_labels; }
    /// The key's light; that of a closed one when all were closed since.
    std::optional<ECButtonColor> light(quint16 ecKey) const;
    std::optional<ECOLEDText> label(quint16 ecKey) const;

private:
    std::map<quint16, ECButtonColor> m_lights;
    std::map<quint16, ECOLEDText> m_labels;
    /// The request that closed all lights; those in `m_lights` came after it.
    std::optional<ECButtonColor> m_closed;
};

/// While it lives, the lights and labels that are asked for on its thread go into its record, and nothing is
/// sent: so the keys can say what they would show, with the steps that show it. Painters run their jobs at
/// once meanwhile, for nothing that is not sent needs its turn.
class SurfaceDrawing {
public:
    SurfaceDrawing();
    ~SurfaceDrawing();
    SurfaceDrawing(const SurfaceDrawing&) = delete;
    SurfaceDrawing& operator=(const SurfaceDrawing&) = delete;

    /// The one of the calling thread; null, after one relaxed load, when nobody draws.
    static SurfaceDrawing* current()
    {
        return s_nDrawings.load(std::memory_order_relaxed) > 0 ? ofThread() : nullptr;
    }

    SurfaceRecord record;

private:
    static SurfaceDrawing*& ofThread();

    static std::atomic<int> s_nDrawings;
};

} // namespace Orvane::ECProxy::Client::Internal
