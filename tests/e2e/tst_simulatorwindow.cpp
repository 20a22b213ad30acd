#include "consolewidget.h"
#include "ec/eckeyboardloader.h"
#include "hand.h"
#include "keycap.h"
#include "lightbar.h"
#include "program.h"
#include "simulatorwindow.h"
#include "tbarlever.h"

#include <QSpinBox>
#include <QTest>

using namespace Orvane::ConsolePanel;

namespace {

constexpr int FirstDigit = 93;
constexpr int ScreenPageDown = 10;
constexpr int LoadTarget = 92;

SimulatorOptions windowOptions()
{
    SimulatorOptions options;
    options.window = true;
    options.quiet = true;
    return options;
}

} // namespace

/// A person at the console's window, and the host in a process of its own.
class SimulatorWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const auto keyboard = Orvane::EC::loadKeyboardFile(EXAMPLE_KEYBOARD);
        m_simulator =
            std::make_unique<Simulator>(windowOptions(), ConsoleLayout::fromConfig(*keyboard.config));
        QVERIFY(m_simulator->open());
        m_window = std::make_unique<SimulatorWindow>(*m_simulator);
        m_window->resize(1280, 800);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        m_host = std::make_unique<Host>();
        QVERIFY(m_host->start({"--show", EXAMPLE_SHOW}));
        QTRY_COMPARE_WITH_TIMEOUT(key(1).shownColor(), QColor(0, 255, 0), PatienceMs);
    }

    void cleanup()
    {
        m_window.reset();
        m_simulator.reset();
        m_host.reset();
    }

    void digitIsTypedAndItsKeyIsLitWhileItIsHeld()
    {
        m_hand.press(key(FirstDigit));
        QVERIFY(m_host->tells("field", {{"text", "0"}}));
        QTRY_COMPARE_WITH_TIMEOUT(key(FirstDigit).shownColor(), QColor(0, 255, 0), PatienceMs);
        m_hand.release(key(FirstDigit));
        QTRY_VERIFY_WITH_TIMEOUT(key(FirstDigit).shownColor() != QColor(0, 255, 0), PatienceMs);
    }

    void pageTurnsAndBothKeysSayWhich()
    {
        QCOMPARE(key(ScreenPageDown).shownLabel(), "Page 1");
        m_hand.click(key(ScreenPageDown));
        QTRY_COMPARE_WITH_TIMEOUT(key(ScreenPageDown).shownLabel(), "Page 2", PatienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(key(1).shownLabel().trimmed(), QString(), PatienceMs);
    }

    void draggedTBarMovesTheTransitionAndItsLights()
    {
        auto* const lever = m_window->findChild<TBarLever*>();
        const QPoint bottom(lever->width() / 2, lever->height() - lever->width() / 4);
        const QPoint middle(lever->width() / 2, lever->height() / 2);
        m_hand.press(*lever, bottom);
        m_hand.move(*lever, middle);
        QVERIFY(m_host->tells("operation", {{"operation", "TBarSampling"}, {"phase", "ended"}}));
        QTRY_VERIFY_WITH_TIMEOUT(m_window->findChild<LightBar*>()->level() >= 4, PatienceMs);
        m_hand.release(*lever, middle);
    }

    void questionIsAnsweredAndTheKeysWorkAgain()
    {
        m_hand.click(key(LoadTarget));
        const QJsonObject box = m_host->next({{"event", "messageBox"}});
        QVERIFY(!box.isEmpty());
        QVERIFY(m_host->hasDone(
            "answerMessageBox", {{"button", box.value("type") == "question" ? "yes" : "ok"}}));
        m_hand.click(key(ScreenPageDown));
        QTRY_COMPARE_WITH_TIMEOUT(key(ScreenPageDown).shownLabel(), "Page 2", PatienceMs);
    }

    void droppedReportsDoNothingAndARestartDarkensAll()
    {
        m_window->findChild<QSpinBox*>("dropRate")->setValue(100);
        m_hand.click(key(FirstDigit));
        m_window->findChild<QSpinBox*>("dropRate")->setValue(0);
        m_hand.click(key(FirstDigit + 1));
        QVERIFY(m_host->tells("field", {{"text", "1"}})); // not 01
        m_simulator->restart();
        QTRY_VERIFY_WITH_TIMEOUT(!key(1).shownColor().isValid(), PatienceMs);
    }

private:
    KeyCap& key(int number) { return *m_window->findChild<KeyCap*>(QStringLiteral("key%1").arg(number)); }

    Hand m_hand;
    std::unique_ptr<Simulator> m_simulator;
    std::unique_ptr<SimulatorWindow> m_window;
    std::unique_ptr<Host> m_host;
};

QTEST_MAIN(SimulatorWindowTest)
#include "tst_simulatorwindow.moc"
