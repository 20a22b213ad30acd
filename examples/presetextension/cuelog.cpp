#include "cuelog.h"

#include <orvaneecproxyclient/ecmanager.h>
#include <orvaneecproxyclient/presetcommand.h>

using namespace Orvane::ECProxy::Client;

namespace {

std::shared_ptr<PresetCommand> presetKeys()
{
    const ECManager* manager = ECManager::instance();
    return manager ? std::dynamic_pointer_cast<PresetCommand>(manager->presetCommand().lock()) : nullptr;
}

} // namespace

bool CueLog::attach()
{
    const auto keys = presetKeys();
    // With the group's configuration, findECButtonIndex() below knows which slot a key stands for.
    if (!keys || !keys->makeCommandCfg(this))
        return false;
    keys->registerPresetCommand(this);
    return true;
}

QString CueLog::name() const
{
    return Constants::IPRESETCOMMANDEXNAME;
}

int CueLog::pageSize() const
{
    const auto keys = presetKeys();
    return keys ? keys->pageSize() : 0;
}

bool CueLog::selectPresetPressed(const quint32& ecKey)
{
    return note(QStringLiteral("preset %1").arg(findECButtonIndex(ecKey) + 1));
}

bool CueLog::clearPresetsPressed()
{
    return note(QStringLiteral("all presets removed"));
}

bool CueLog::takePressed(const quint32&)
{
    return note(QStringLiteral("take"));
}

bool CueLog::cutPressed(const quint32&)
{
    return note(QStringLiteral("cut"));
}

void CueLog::ecTBarChanged(const ECTBarValue&)
{
    note(QStringLiteral("manual transition"));
}

bool CueLog::note(const QString& cue)
{
    m_cues.append(cue);
    Q_EMIT signalCue(cue);
    return true;
}
