#include "signalreporter.h"

#include "bizmodel/devicelist.h"
#include "ecmanager.h"
#include "enumwords_p.h"
#include "eventwriter.h"
#include "noticepresenter.h"
#include "operations.h"

#include <QStringList>

#include <type_traits>

namespace Orvane::ConsoleHost {

using BizModel::DeviceList;
using ECProxy::Client::ECConsoleSession;
using ECProxy::Client::ECManager;
using Notices::NoticePresenter;

namespace {

template <typename Value> QJsonValue jsonOf(const Value& value)
{
    if constexpr (std::is_enum_v<Value>)
        return Internal::wordOf(value);
    else if constexpr (std::is_integral_v<Value> && !std::is_same_v<Value, bool>)
        return qint64(value);
    else
        return value;
}

/// A signal, told as an event with a member for each of its values.
template <typename Sender, typename... Values, typename... Members>
void report(
    const Sender& sender, void (Sender::*signal)(Values...), EventWriter& events, const char* event,
    Members... members)
{
    QObject::connect(
        &sender, signal, &events, [&events, event, members...](const std::decay_t<Values>&... values) {
            events.writeEvent(QLatin1String(event), {{QLatin1String(members), jsonOf(values)}...});
        });
}

} // namespace

void reportManagerSignals(const ECManager& manager, EventWriter& events)
{
    report(manager, &ECManager::signalStandardKeyPressed, events, "standardKeyPressed", "key", "text");
    report(manager, &ECManager::signalStandardKeyReleased, events, "standardKeyReleased", "key", "text");
    report(manager, &ECManager::signalECKeyClicked, events, "keyClicked", "bound", "key");
    report(manager, &ECManager::signalKeyboardLocked, events, "keyboardLocked", "locked");
    report(manager, &ECManager::signalTbarLocked, events, "tbarLocked", "locked");
    report(manager, &ECManager::signalTimeTypeChanged, events, "timeTypeChanged", "type");
    report(manager, &ECManager::signalPropertyPopupVisible, events, "propertyPopupVisible", "visible");
    report(manager, &ECManager::signalPropertyPopupDisable, events, "propertyPopupDisable", "disable");
    report(manager, &ECManager::dviInSignalChanged, events, "dviInSignalChanged", "index");
    report(manager, &ECManager::echoVideoSignalChanged, events, "echoVideoSignalChanged");
    report(manager, &ECManager::signalOpenPGMPrompt, events, "openPGMPrompt");
}

void reportSession(const ECConsoleSession& session, EventWriter& events)
{
    report(session, &ECConsoleSession::serviceStateChanged, events, "serviceState", "state");
    report(session, &ECConsoleSession::errorOccurred, events, "sessionError", "text");
}

void reportNotices(const DeviceList& devices, EventWriter& events)
{
    report(devices, &DeviceList::signalShowStatusBarMsg, events, "statusBarMessage", "type", "text", "ms");
    report(devices, &DeviceList::signalShowWaitingDialog, events, "waitingDialogShown", "text");
    report(devices, &DeviceList::signalHideWaitingDialog, events, "waitingDialogHidden");
    QObject::connect(
        &devices, &DeviceList::signalFramelessMessageBoxClosed, &events,
        [&events](QMessageBox::StandardButton button) {
            events.writeEvent(QStringLiteral("messageBoxClosed"), {{QStringLiteral("button"), int(button)}});
        });
}

void reportMessageBoxes(const NoticePresenter& notices, EventWriter& events)
{
    report(notices, &NoticePresenter::signalMessageShown, events, "messageBox", "type", "text");
}

void reportOperations(MemoryModel::Operations& operations, EventWriter& events)
{
    const auto start = std::chrono::steady_clock::now();
    operations.setListener([&events, start](const MemoryModel::JournalEntry& entry) {
        using namespace std::chrono;
        static const QStringList phases{
            QStringLiteral("requested"), QStringLiteral("started"), QStringLiteral("ended")};
        QJsonObject members{
            {QStringLiteral("operation"), entry.operation},
            {QStringLiteral("arguments"), entry.arguments},
            {QStringLiteral("phase"), phases.value(int(entry.phase))},
            {QStringLiteral("thread"), QStringLiteral("%1 %2").arg(entry.threadName).arg(entry.threadId)},
            {QStringLiteral("ms"), qint64(duration_cast<milliseconds>(entry.time - start).count())}};
        if (entry.phase == MemoryModel::JournalEntry::Phase::Ended)
            members.insert(QStringLiteral("ok"), !entry.failure);
        if (entry.failure)
            members.insert(QStringLiteral("reason"), *entry.failure);
        events.writeEvent(QStringLiteral("operation"), members);
    });
}

} // namespace Orvane::ConsoleHost
