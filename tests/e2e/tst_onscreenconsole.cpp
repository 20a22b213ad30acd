#include "consolewidget.h"
#include "ec/eckeyboardloader.h"
#include "ecconsolesession.h"
#include "hand.h"
#include "keycap.h"
#include "lightbar.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "noticepresenter.h"
#include "program.h"
#include "tbarlever.h"
#include "virtualconsole.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>

using namespace Orvane;
using namespace Orvane::ConsolePanel;
using ECProxy::Client::ECConsoleSession;

namespace {

constexpr int Screen1 = 1;
constexpr int Screen2 = 2;
constexpr int ScreenPageDown = 10;
constexpr int LoadTarget = 92;
const QColor Green(0, 255, 0);

} // namespace

/// A person at the host's on-screen console, without any other console.
class OnScreenConsoleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const auto keyboard = EC::loadKeyboardFile(EXAMPLE_KEYBOARD).config;
        QStringList faults;
        QVERIFY2(m_model.loadFile(EXAMPLE_SHOW, faults), qPrintable(faults.join('\n')));
        m_application.resize(400, 300);
        m_application.move(1400, 800);
        m_application.show();
        m_notices = std::make_unique<Notices::NoticePresenter>(m_model.deviceList(), m_application);
        m_console = std::make_unique<ConsoleHost::VirtualConsole>(*keyboard);
        m_console->move(0, 0);
        m_console->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_console.get()));
        m_session = std::make_unique<ECConsoleSession>();
        QVERIFY2(m_session->start(keyboard), qPrintable(m_session->errorString()));
        QTRY_COMPARE_WITH_TIMEOUT(key(Screen1).shownColor(), Green, PatienceMs);
    }

    void cleanupTestCase()
    {
        m_model.stop();
        m_console.reset();
        m_session.reset();
        m_notices.reset();
    }

    void screenKeySelectsItsScreen()
    {
        m_hand.click(key(Screen2));
        QTRY_COMPARE_WITH_TIMEOUT(key(Screen2).shownColor(), Green, PatienceMs);
        const auto device = m_model.deviceList().activedDevice().lock();
        const auto screen = device->activedScreen().lock();
        QVERIFY(screen);
        QCOMPARE(key(Screen2).shownLabel(), screen->name());
    }

    void pageTurnsForthAndBack()
    {
        m_hand.click(key(ScreenPageDown));
        QTRY_COMPARE_WITH_TIMEOUT(key(ScreenPageDown).shownLabel(), "Page 2", PatienceMs);
        m_hand.click(key(ScreenPageDown - 1));
        QTRY_COMPARE_WITH_TIMEOUT(key(ScreenPageDown).shownLabel(), "Page 1", PatienceMs);
    }

    void draggedTBarMovesItsLights()
    {
        auto* const lever = m_console->findChild<TBarLever*>();
        auto* const lights = m_console->findChild<LightBar*>();
        const QPoint bottom(lever->width() / 2, lever->height() - lever->width() / 4);
        const QPoint middle(lever->width() / 2, lever->height() / 2);
        m_hand.press(*lever, bottom);
        m_hand.move(*lever, middle);
        QTRY_VERIFY_WITH_TIMEOUT(lights->level() >= 4, PatienceMs);
        m_hand.move(*lever, bottom);
        QTRY_COMPARE_WITH_TIMEOUT(lights->level(), 0, PatienceMs);
        m_hand.release(*lever, bottom);
    }

    void questionStopsTheKeysUntilItIsAnswered()
    {
        m_hand.click(key(LoadTarget));
        QMessageBox* box = nullptr;
        QTRY_VERIFY_WITH_TIMEOUT(
            (box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())), PatienceMs);
        QVERIFY(QTest::qWaitForWindowExposed(box));
        m_hand.click(key(Screen1)); // refused
        m_hand.click(*box->buttons().first());
        QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), PatienceMs);
        m_hand.click(key(ScreenPageDown)); // let through, and behind the refused one
        QTRY_COMPARE_WITH_TIMEOUT(key(ScreenPageDown).shownLabel(), "Page 2", PatienceMs);
        m_hand.click(key(ScreenPageDown - 1));
        QTRY_COMPARE_WITH_TIMEOUT(key(Screen2).shownColor(), Green, PatienceMs);
    }

private:
    KeyCap& key(int number) { return *m_console->findChild<KeyCap*>(QStringLiteral("key%1").arg(number)); }

    Hand m_hand;
    MemoryModel::MemoryModel m_model;
    QWidget m_application;
    std::unique_ptr<Notices::NoticePresenter> m_notices;
    std::unique_ptr<ConsoleHost::VirtualConsole> m_console;
    std::unique_ptr<ECConsoleSession> m_session;
};

QTEST_MAIN(OnScreenConsoleTest)
#include "tst_onscreenconsole.moc"
