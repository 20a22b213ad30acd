#pragma once

#include "dice.h"
#include "modelrig.h"
#include "socketwire.h"
#include "statement.h"

#include <QStringList>

#include <functional>

class QElapsedTimer;

namespace Storm {

/// Somebody at the console and at the application, who does one thing after another and looks each time
/// whether the console shows what the documents say. What the next thing is follows from the seed alone as
/// long as the library does as it should. On real sockets the link and the service fail, too.
///
/// Used on the GUI thread. The show is the example's; its clock may run fast.
class Operator {
public:
    Operator(TestSupport::ModelRig& rig, const Keyboard& keyboard, const QStringList& devices, quint32 seed);
    ~Operator();

    /// Does one thing. What is wrong afterwards, with the things that led to it; empty when nothing is.
    QString step();

    quint64 presses() const { return m_nPresses; }
    quint64 comparisons() const { return m_nComparisons; }
    quint64 linkFaults() const { return m_nLinkFaults; }

private:
    using Key = EC::s_ECButtonConfig;

    // Gestures. Each says in m_doing what it does.
    void tapSomeKey();
    void tap(const char* group, const Key& key);
    void holdSomeKey();
    void sweepTBar();
    void turnPages();
    void workUnderGuard();
    void changeDevice();
    void changeScreen();
    void changeLayer();
    void changeInput();
    void changePreset();
    void typeOnBothConsoles();
    void restartConsole();
    void changeLocks();
    void changeSignal();
    void lockKeypad(bool lock);
    // Where there are sockets.
    void tapBlindly();
    void holdUpService();
    void loseReports();
    void missChange();
    void restartService();

    static bool isLock(const Key& key);
    void allowForHold(const QElapsedTimer& timer);
    void press(const Key& key);
    void release(const Key& key);
    void say(const QString& doing)
    {
        m_doing += (m_doing.isEmpty() ? QString() : QStringLiteral("; ")) + doing;
    }
    /// What the documents say that the key does to the model is looked at after the gesture.
    void expectOfScreenKey(const Key& key);
    void expectOfLayerKey(const Key& key);
    void expectOfPresetKey(const Key& key);
    void expectOfFunctionKey(const Key& key);
    void expectOfNumberKey();
    template <typename Value> void expect(const char* what, std::function<Value()> value, Value expected);

    /// Waits until nothing is under way in library and model.
    void quiet();
    void waitUntilNothingIsSent();
    QString compare();

    std::shared_ptr<BizModel::Device> device() const;
    std::shared_ptr<BizModel::Screen> screen() const;
    bool isAnySelected() const;

    TestSupport::ModelRig& m_rig;
    TestSupport::SocketWire* const m_pSockets; ///< null when there are none
    const Keyboard& m_keyboard;
    const QStringList m_devices;
    Dice m_dice;
    Statement m_statement;
    QString m_doing;
    QStringList m_done; ///< the last of them
    std::vector<std::function<QString()>> m_expectations;
    quint64 m_nTyped = 0;
    quint64 m_nTBarLocks = 0;
    QMetaObject::Connection m_typing, m_locking;
    bool m_bOnScreen = false; ///< the next key is the on-screen console's
    bool m_bHolding = false; ///< a key is down while the console is looked at
    bool m_bUpwards = true; ///< the T-Bar's next sweep
    int m_nNames = 0;
    quint64 m_nPresses = 0;
    quint64 m_nComparisons = 0;
    quint64 m_nLinkFaults = 0;
};

} // namespace Storm
