#pragma once

#include "ipresetcommandex.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

/// The registered preset extensions, and the way to call them.
///
/// Extensions belong to the application's thread and come and go there; keys come on the console's thread,
/// which may not wait for the application. So every call is queued with the page that the keys show at that
/// moment. The application's thread makes the queued calls: at once when the call comes from there,
/// otherwise from its event loop. Any thread may call any member; destroyed on the application's thread.
class PresetExtensions : public QObject {
public:
    using KeyCall = bool (IPresetCommandEx::*)(const quint32&);

    /// `page` returns the page that the preset keys show. Called on any thread, under a mutex: it must take
    /// none.
    explicit PresetExtensions(std::function<int()> page);

    /// Registers the extension and hands it the page. Refuses one that is registered, with a warning.
    void add(IPresetCommandEx* extension);

    /// Has every extension take over the page that the keys show.
    void tellPage();
    /// Calls that operation of every extension.
    void call(KeyCall operation, quint32 ecKey);
    /// Calls `selectPresetPressed()` and then `isBindProgram()` of every extension. Returns the last result;
    /// false without an extension, and on another thread than the application's: keys do not wait for it.
    bool selectPresetPressed(quint32 ecKey);
    void clearPresetsPressed();
    void ecTBarChanged(const ECTBarValue& value);

protected:
    /// Makes the queued calls.
    void customEvent(QEvent* event) override;

private:
    using Extensions = QList<QPointer<IPresetCommandEx>>;
    using Operation = std::function<void(IPresetCommandEx&)>;

    struct Call {
        Extensions receivers; ///< those that were registered when it was queued
        int page = 0; ///< that the keys showed then
        Operation operation; ///< empty for the page alone
    };

    bool isOwnThread() const;
    void enqueue(Operation operation);
    void startQueuedCalls();
    void makeQueuedCalls();
    static void make(const Call& call);

    const std::function<int()> m_page;
    /// What the last extension said to the last press. On the application's thread only.
    bool m_bBound = false;

    // m_mutex guards m_listPresetCmd and m_queuedCalls. The page is read under it too, so that the page told
    // last is the page shown last: of two threads that turn pages, the one that queues later reads later.
    std::mutex m_mutex;
    Extensions m_listPresetCmd;
    QList<Call> m_queuedCalls;
};

} // namespace Orvane::ECProxy::Client::Internal
