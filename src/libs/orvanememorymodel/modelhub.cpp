#include "modelhub.h"

#include "modelsignals.h"

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
    for (const Announcement& announcement : m_announcements)
        announcement(*list);
    if (m_bChanged)
        Q_EMIT list->signalModelChanged();
}

void Change::announce(Announcement announcement)
{
    m_announcements.push_back(std::move(announcement));
    m_bChanged = true;
}

void Change::forgetAnnouncements()
{
    m_announcements.clear();
    m_bChanged = false;
}

} // namespace Orvane::MemoryModel
