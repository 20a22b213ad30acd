#include "signalreporter.h"

#include "bizmodel/devicelist.h"
#include "ecmanager.h"
#include "enumwords_p.h"
#include "eventwriter.h"
#include "noticepresenter.h"
#include "operations.h"

namespace Orvane::ConsoleHost {

using BizModel::DeviceList;
using ECProxy::Client::ECConsoleSession;
using ECProxy::Client::ECManager;
using Notices::NoticePresenter;

namespace {

/// A signal of one value, told as an event with one member.
template <typename Sender, typename Value>
void report(
    const Sender& sender, void (Sender::*signal)(Value), EventWriter& events, const char* event,
    const char* member)
{
    QObject::connect(&sender, signal, &events, [&events, event, member](Value value) {
        events.writeEvent(QLatin1String(event), {{QLatin1String(member), QJsonValue(value)}});
    });
}

template <typename Sender>
void report(const Sender& sender, void (Sender::*signal)(), EventWriter& events, const char* event)
{
    QObject::connect(&sender, signal, &events, [&events, event] { events.writeEvent(QLatin1String(event)); });
}

QString nameOf(MemoryModel::JournalEntry::Phase phase)
{
    switch (phase) {
    case MemoryModel::JournalEntry::Phase::Requested:
        return QStringLiteral("requested");
    case MemoryModel::JournalEntry::Phase::Started:
        return QStringLiteral("started");
    case MemoryModel::JournalEntry::Phase::Ended:
        return QStringLiteral("ended");
    }
    return {};
}

} // namespace

void reportManagerSignals(const ECManager& manager, EventWriter& events)
{
    const auto reportKey = [&](void (ECManager::*signal)(unsigned int, QString), const char* event) {
        QObject::connect(&manager, signal, &events, [&events, event](unsigned int key, const QString& text) {
            events.writeEvent(
                QLatin1String(event), {{QStringLiteral("key"), qint64(key)}, {QStringLiteral("text"), text}});
        });
    };
    reportKey(&ECManager::signalStandardKeyPressed, "standardKeyPressed");
    reportKey(&ECManager::signalStandardKeyReleased, "standardKeyReleased");
    QObject::connect(
        &manager, &ECManager::signalECKeyClicked, &events, [&events](bool isBound, unsigned short key) {
            events.writeEvent(
                QStringLiteral("keyClicked"),
                {{QStringLiteral("key"), key}, {QStringLiteral("bound"), isBound}});
        });
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
    QObject::connect(
        &session, &ECConsoleSession::serviceStateChanged, &events,
        [&events](ECConsoleSession::ServiceState state) {
            events.writeEvent(
                QStringLiteral("serviceState"), {{QStringLiteral("state"), Internal::wordOf(state)}});
        });
    QObject::connect(&session, &ECConsoleSession::errorOccurred, &events, [&events](const QString& text) {
        events.writeEvent(QStringLiteral("sessionError"), {{QStringLiteral("text"), text}});
    });
}

void reportNotices(const DeviceList& devices, EventWriter& events)
{
    QObject::connect(
        &devices, &DeviceList::signalShowStatusBarMsg, &events,
        [&events](BizModel::StatusBarMsgType type, const QString& text, int durationMs) {
            events.writeEvent(
                QStringLiteral("statusBarMessage"),
                {{QStringLiteral("type"), Internal::wordOf(type)},
                 {QStringLiteral("text"), text},
                 {QStringLiteral("ms"), durationMs}});
        });
    QObject::connect(&devices, &DeviceList::signalShowWaitingDialog, &events, [&events](const QString& text) {
        events.writeEvent(QStringLiteral("waitingDialogShown"), {{QStringLiteral("text"), text}});
    });
    report(devices, &DeviceList::signalHideWaitingDialog, events, "waitingDialogHidden");
    QObject::connect(
        &devices, &DeviceList::signalFramelessMessageBoxClosed, &events,
        [&events](QMessageBox::StandardButton button) {
            events.writeEvent(QStringLiteral("messageBoxClosed"), {{QStringLiteral("button"), int(button)}});
        });
}

void reportMessageBoxes(const NoticePresenter& notices, EventWriter& events)
{
    QObject::connect(
        &notices, &NoticePresenter::signalMessageShown, &events,
        [&events](BizModel::FramelessMessageBoxMsgType type, const QString& text) {
            events.writeEvent(
                QStringLiteral("messageBox"),
                {{QStringLiteral("type"), Internal::wordOf(type)}, {QStringLiteral("text"), text}});
        });
}

void reportOperations(MemoryModel::Operations& operations, EventWriter& events)
{
    const auto start = std::chrono::steady_clock::now();
    operations.setListener([&events, start](const MemoryModel::JournalEntry& entry) {
        using namespace std::chrono;
        QJsonObject members{
            {QStringLiteral("operation"), entry.operation},
            {QStringLiteral("arguments"), entry.arguments},
            {QStringLiteral("phase"), nameOf(entry.phase)},
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
