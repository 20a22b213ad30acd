#include "modelhub.h"

namespace Orvane::MemoryModel {

void ModelHub::setSignals(ModelSignals* signalsOfModel)
{
    const std::lock_guard lock(m_mutex);
    m_pSignals = signalsOfModel;
}

Change::~Change()
{
    ModelSignals* const list = m_hub.m_pSignals;
    m_lock.unlock();
    if (!list)
        return;
    for (const auto& announcement : m_announcements)
        announcement(*list);
    if (m_bChanged)
        Q_EMIT list->signalModelChanged();
}

void Change::forgetAnnouncements()
{
    m_announcements.clear();
    m_bChanged = false;
}

} // namespace Orvane::MemoryModel
