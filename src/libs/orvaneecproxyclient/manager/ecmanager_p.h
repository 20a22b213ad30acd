#pragma once

#include "consolerequests_p.h"
#include "ecmanager.h"
#include "keytracing_p.h"
#include "orvaneecclientencoder.h"
#include "requestedstate_p.h"
#include "sentsurface_p.h"

#include <QByteArray>
#include <QMap>

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace Orvane::ECProxy::Client {

class CommandManager;

namespace Internal {

class ECManagerPrivate final : public ConsoleRequests {
public:
    struct Route {
        int id;
        ECManager::SendDownTLVRequestCallbackType send;
    };
    using Routes = std::vector<Route>;
    using UpHandler = std::function<bool(const QByteArray&)>;

    explicit ECManagerPrivate(ECManager* manager);

    std::shared_ptr<CommandManager> commandManager() const
    {
        const std::lock_guard<std::mutex> lock(m_wiringMutex);
        return m_pCommandMgr;
    }

    void forwardClicks() const;

    bool hasSendRoute() const { return !sendRoutes()->empty(); }
    void send(const QByteArray& datagram) const;

    /// Has the encoder build one datagram and hands it to every route.
    /// @return false, with nothing sent, when there is no route (then nothing is built either), and when the
    /// encoder was given no record, which it logs
    template <typename Build, typename... Arguments> bool request(Build build, const Arguments&... arguments)
    {
        const std::shared_ptr<const Routes> routes = sendRoutes();
        if (routes->empty())
            return false;
        QByteArray datagram;
        std::invoke(build, *m_pECClientEncoder, arguments..., datagram);
        if (datagram.isEmpty())
            return false;
        KeyTracing::addSent(datagram);
        for (const auto& route : *routes)
            route.send(datagram);
        return true;
    }

    /// Sends a light or a label, unless this thread draws it.
    template <typename Build, typename Record> void show(Build build, const std::shared_ptr<Record>& record)
    {
        SurfaceDrawing* const drawing = record ? SurfaceDrawing::current() : nullptr;
        if (drawing)
            drawing->record.take(*record);
        else if (request(build, record))
            SentSurface::note(*record);
    }

    void sendTBarLock(bool locked);
    void sendKeypadLock(bool locked);
    void sendSource(DVISource source);
    /// Has the manager emit its signal of a lock, and then what the lock is when that differs: another thread
    /// may have changed and announced it meanwhile, and the last announcement must be true.
    void announce(void (ECManager::*signal)(bool), const RequestedState<bool>& lock, bool locked);

    // What the commands ask for.

    void light(const std::shared_ptr<ECButtonColor>& color) override { m_pECMgr->updateECButtonColor(color); }
    void label(const std::shared_ptr<ECOLEDText>& text) override { m_pECMgr->updateECOledText(text); }
    void lightAndLabel(
        const std::shared_ptr<ECButtonColor>& color, const std::shared_ptr<ECOLEDText>& text) override
    {
        m_pECMgr->updateECButtonColor(color, text);
    }
    void tbarLevel(const std::shared_ptr<ECTBarValue>& value) override { m_pECMgr->updateTBarValue(value); }
    bool isKeypadLocked() const override { return m_pECMgr->isLockedKeypad(); }
    bool isTBarLocked() const override { return m_pECMgr->isLockedTBar(); }
    void lockKeypad(bool locked) override
    {
        if (hasSendRoute())
            m_bLockPanel.request(locked);
    }
    void lockTBar(bool locked) override
    {
        if (hasSendRoute())
            m_bLockTbar.request(locked);
    }
    void announceKeypadLock(bool locked) override
    {
        announce(&ECManager::signalKeyboardLocked, m_bLockPanel, locked);
    }
    void announceTBarLock(bool locked) override
    {
        announce(&ECManager::signalTbarLocked, m_bLockTbar, locked);
    }
    void followLocks(
        QObject* receiver, std::function<void(bool)> tbarLocked,
        std::function<void(bool)> keypadLocked) override;
    DVISource currentSource() const override { return m_pECMgr->getCurrentSource(); }
    void switchSource(DVISource source) override { m_pECMgr->switchSource(source); }
    bool hasDVISignal(int input) override { return m_pECMgr->dviInSignal(input); }
    void showPropertyPopup(bool visible) override { Q_EMIT m_pECMgr->signalPropertyPopupVisible(visible); }
    bool isVirtualConsoleMode() const override { return m_pECMgr->getVirtualConsoleMode(); }
    void setVirtualConsoleMode(bool isVirtual) override { m_pECMgr->setIsVirtualConsoleMode(isVirtual); }
    void pressStandardKey(quint32 key, const QString& text) override
    {
        Q_EMIT m_pECMgr->signalStandardKeyPressed(key, text);
    }

    // What each report of the console does. False when the value is refused.

    bool onButtonPressed(const QByteArray& value);
    bool onButtonRelease(const QByteArray& value);
    bool onTBarValue(const QByteArray& value);
    bool onLockedTBar(const QByteArray& value);
    bool onLockedKeyboard(const QByteArray& value);
    bool onDVIInSignal(const QByteArray& value);
    bool onDeviceIP(const QByteArray& value);

    ECManager* const m_pECMgr;
    const std::shared_ptr<ECClientEncoder> m_pECClientEncoder = std::make_shared<ECClientEncoder>();
    /// Filled by the constructor and only read after it.
    QMap<eECUpMessageTag, UpHandler> m_messageTagForDecodeCB;

    // m_wiringMutex guards m_pCommandMgr, m_pECKeyboardCfg, m_sendTLVReqCBs, m_nLastRoute, m_pClientDecoder
    // and m_strDeviceConfigFilePath. The list of routes itself never changes: adding one replaces it.
    mutable std::mutex m_wiringMutex;
    std::shared_ptr<CommandManager> m_pCommandMgr;
    std::shared_ptr<Orvane::EC::s_ECKeyboardConfig> m_pECKeyboardCfg;
    std::shared_ptr<const Routes> m_sendTLVReqCBs = std::make_shared<const Routes>();
    int m_nLastRoute = 0; ///< id of the route added last
    std::weak_ptr<ECClientDecoder> m_pClientDecoder;
    QString m_strDeviceConfigFilePath;

    // m_recordMutex guards m_dviSignal and m_ecDeviceIPData.
    std::mutex m_recordMutex;
    QMap<int, bool> m_dviSignal;
    QMap<int, ECDeviceIPData> m_ecDeviceIPData;

    RequestedState<DVISource> m_curSource{dvi1, [this](DVISource source) { sendSource(source); }};
    RequestedState<bool> m_bLockPanel{false, [this](bool locked) { sendKeypadLock(locked); }};
    RequestedState<bool> m_bLockTbar{false, [this](bool locked) { sendTBarLock(locked); }};

private:
    std::shared_ptr<const Routes> sendRoutes() const
    {
        const std::lock_guard<std::mutex> lock(m_wiringMutex);
        return m_sendTLVReqCBs;
    }
};

} // namespace Internal
} // namespace Orvane::ECProxy::Client
