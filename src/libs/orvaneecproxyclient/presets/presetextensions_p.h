#pragma once

#include "ipresetcommandex.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>

#include <functional>
#include <mutex>
#include <optional>

namespace Orvane::ECProxy::Client::Internal {

class IPresetCommandExPrivate {
public:
    /// The page that a registered extension is just being told of. On the application's thread only.
    std::optional<int> m_toldPage;
};

/// The registered preset extensions, and the way to call them.
///
/// Extensions belong to the application's thread and come and go there; keys come on the console's thread,
/// which may not wait for the application. So calls from elsewhere are queued, and whether an extension still
/// exists is found out where it could disappear. Any thread may call any member; destroyed on the
/// application's thread.
class PresetExtensions : public QObject {
public:
    using Call = std::function<void(IPresetCommandEx&)>;

    PresetExtensions();

    void add(IPresetCommandEx* extension);

    /// Calls `call` for every extension in the order of registration: at once on the application's thread,
    /// after what has been queued; from elsewhere queued.
    void forEach(const Call& call);

    /// Has every extension take over the page that the keys show, as it is now: keys that are on their way to
    /// an extension keep their page.
    void tellPage(int page);

    /// Tells every extension of the press and asks it about the key. Answers what the last extension said:
    /// now on the application's thread, at the key's press before elsewhere; false when none has said
    /// anything.
    bool selectPresetPressed(quint32 ecKey);

protected:
    /// Makes the queued calls.
    void customEvent(QEvent* event) override;

private:
    void makeQueuedCalls();
    void callAll(const Call& call);

    // m_mutex guards m_listPresetCmd, m_queuedCalls and m_mapBindProgram, the answers by key.
    mutable std::mutex m_mutex;
    QList<QPointer<IPresetCommandEx>> m_listPresetCmd;
    QList<Call> m_queuedCalls;
    QMap<quint32, bool> m_mapBindProgram;
};

} // namespace Orvane::ECProxy::Client::Internal
