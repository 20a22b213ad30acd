#include "bareplatform.h"
#include "command.h"
#include "consolerig.h"
#include "eccommanditem.h"
#include "ecmanager.h"
#include "keyboardbuilder.h"
#include "logcapture.h"

#include "bizmodel/screen.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <optional>
#include <utility>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using namespace Orvane::TestSupport;

namespace {

enum : quint16 { Select = 1, PageUp = 2, PageDown = 3, Unbound = 9 };
enum : quint16 {
    FirstKey = 20,
    SecondKey = 21,
    UpKey = 30,
    DownKey = 31,
    BareKey = 32,
    DeadKey = 33,
    PageLabel = 512
};

/// A group with two selectable keys a page and seven items on four pages.
class ProbeCommand : public Command {
public:
    ProbeCommand()
    {
        bindKey(
            Select,
            [this](const quint32& key) {
                m_handled.append(key);
                return true;
            },
            nullptr);
        for (int index = 0; index < 7; ++index) {
            auto item = std::make_shared<ECCommandItem>(nullptr);
            item->setECButtonPageIndex(qint16(index / 2));
            item->setECButtonOrderIndex(qint16(index % 2));
            item->setECButtonKey(FirstKey + index % 2);
            item->setECOledText(QStringLiteral("item %1").arg(index));
            item->setECButtonColor(index == 3 ? ECLEDColor::Orange : ECLEDColor::Yellow);
            m_items.append(item);
        }
    }
    QString name() const override { return QStringLiteral("ProbeCommand"); }
    int maxPage() override { return m_nMaxPage ? *m_nMaxPage : Command::maxPage(); }
    int pageSize() const override { return m_nPageSize; }
    QList<std::shared_ptr<ECCommandItem>> commandItems() const override { return m_items; }
    std::shared_ptr<EC::s_ECButtonConfig> findSelectModeButtonByIndex(const int& index) const override
    {
        const auto buttons = ecCommandConfig()->findECButtonConfigsByOrvaneKey(Select);
        return index < buttons.size() ? buttons.at(index) : nullptr;
    }
    using Command::updatePageOled;
    bool updatePageOled(const quint32& oledECKey, const quint32& pageIndex) override
    {
        if (m_onPageTurned)
            std::exchange(m_onPageTurned, nullptr)();
        return Command::updatePageOled(oledECKey, pageIndex);
    }
    void slotECButtonPressed(const quint32& key) override { dispatchPressed(key); }

    std::function<void()> m_onPageTurned; ///< called once, when the next page is about to be shown
    QList<quint32> m_handled;
    QList<std::shared_ptr<ECCommandItem>> m_items;
    std::optional<int> m_nMaxPage;
    int m_nPageSize = 2;
};

} // namespace

class TestCommand : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void pagesStopAtBothEnds();
    void aPageTurnedOnMeanwhileIsShownLast();
    void aLockedKeypadHoldsThePage();
    void aPageKeyWithoutALabelStillTurnsThePage();
    void repaintSendsTheItemsOfThePage();
    void repaintWithoutKeysSendsNothing();
    void oneItemIsSentWhole();
    void keysWithoutAFunctionReachNoHandler();
    void lookupsWithoutAGroup();
    void labelsAreCutAtTheirLastByte();
    void aLabelIsFoundByItsKeyFirst();
    void aColorWithoutANameIsWhite();
    void lockingTellsConsoleAndHost();

private:
    std::unique_ptr<BareDeviceList> m_pDevices;
    std::unique_ptr<ConsoleRig> m_pRig;
    std::unique_ptr<ProbeCommand> m_pCommand;
};

void TestCommand::initTestCase()
{
    m_pDevices = std::make_unique<BareDeviceList>();
    m_pRig = std::make_unique<ConsoleRig>(nullptr);
}

void TestCommand::init()
{
    m_pCommand = std::make_unique<ProbeCommand>();
    const auto keyboard = KeyboardBuilder()
                              .group("ProbeCommand")
                              .selectKeys(FirstKey, 2, 600)
                              .key(UpKey, PageUp, 0, PageLabel)
                              .key(DownKey, PageDown, 0, PageLabel)
                              .key(BareKey, PageDown)
                              .key(DeadKey, 0)
                              .build();
    m_pCommand->setCommandConfig(keyboard->m_commands.first());
    m_pRig->takeRequests();
}

void TestCommand::pagesStopAtBothEnds()
{
    const LogCapture log;
    QVERIFY(m_pCommand->pageUpPressed(UpKey));
    QVERIFY(m_pRig->shows(UpKey, ECLEDColor::Green));
    QVERIFY(!m_pCommand->pageUpRelease(UpKey));
    QVERIFY(m_pRig->shows(UpKey, ECLEDColor::Off));
    QCOMPARE(m_pCommand->currentPageIndex(), 0);
    QVERIFY(log.contains(
        "Can't perform page turning, the minimum page number is currently reached. This is ProbeCommand"));

    m_pCommand->updateCurrentPageIndex(97);
    QVERIFY(m_pCommand->pageDownPressed(DownKey));
    QVERIFY(m_pCommand->pageDownRelease(DownKey));
    QCOMPARE(m_pCommand->page(), 98);
    QCOMPARE(m_pRig->label(PageLabel), QStringLiteral("Page 99"));
    QVERIFY(!m_pCommand->pageDownRelease(DownKey));
    QCOMPARE(m_pCommand->page(), 98);
    QVERIFY(log.contains(
        "Can't perform page turning, the maximum page number is currently reached. This is ProbeCommand"));

    m_pCommand->m_nMaxPage = 90; // there are fewer pages now: back still leads back
    QVERIFY(m_pCommand->pageUpRelease(UpKey));
    QCOMPARE(m_pCommand->page(), 97);
}

void TestCommand::aPageTurnedOnMeanwhileIsShownLast()
{
    // The on-screen console turns the page as well, just before the first turn is shown.
    m_pCommand->m_onPageTurned = [&] { QVERIFY(m_pCommand->pageDownRelease(DownKey)); };
    QVERIFY(m_pCommand->pageDownRelease(DownKey));
    QCOMPARE(m_pCommand->page(), 2);
    QCOMPARE(m_pRig->label(PageLabel), QStringLiteral("Page 3"));
}

void TestCommand::aLockedKeypadHoldsThePage()
{
    m_pCommand->updateCurrentPageIndex(2);
    m_pCommand->pageUpPressed(UpKey);
    ECManager::instance()->lockKeypad();
    QVERIFY(!m_pCommand->pageDownPressed(DownKey));
    QVERIFY(!m_pCommand->pageUpRelease(UpKey));
    QVERIFY(m_pRig->shows(UpKey, ECLEDColor::Green)); // untouched
    QCOMPARE(m_pCommand->page(), 2);
    ECManager::instance()->unlockKeypad();
}

void TestCommand::aPageKeyWithoutALabelStillTurnsThePage()
{
    const LogCapture log;
    QVERIFY(m_pCommand->pageDownRelease(BareKey));
    QCOMPARE(m_pCommand->page(), 1);
    QVERIFY(log.contains("ProbeCommandcommand has invalid page oled"));
    QVERIFY(m_pCommand->pageDownRelease(77));
    QCOMPARE(m_pCommand->page(), 2);
    QVERIFY(log.contains("ProbeCommandcommand has invalid page button"));
    QVERIFY(!m_pCommand->updatePageOled(77, 0));
    QVERIFY(log.contains("ProbeCommand command has invalid page oled . ECKey is 77"));
}

void TestCommand::repaintSendsTheItemsOfThePage()
{
    m_pCommand->updateCurrentPageIndex(1);
    m_pCommand->updateCommandKeypad(Enum::UpdateConsoleType::All);
    QCOMPARE(m_pRig->label(600), QStringLiteral("item 2"));
    QCOMPARE(m_pRig->label(601), QStringLiteral("item 3"));
    QVERIFY(m_pRig->shows(FirstKey, ECLEDColor::Yellow));
    QVERIFY(m_pRig->shows(SecondKey, ECLEDColor::Orange));
    QCOMPARE(m_pRig->key(FirstKey).appKey, appNumber(FirstKey));
    QCOMPARE(int(m_pRig->key(FirstKey).brightness), 100);
    QCOMPARE(int(m_pRig->takeRequests().size()), 4);

    m_pCommand->updateCommandKeypad(Enum::UpdateConsoleType::Key);
    m_pCommand->updateCommandKeypad(Enum::UpdateConsoleType::OLED);
    const auto requests = m_pRig->takeRequests();
    QCOMPARE(int(requests.size()), 4);
    QCOMPARE(requests[1].tag, UpdateECButtonColor);
    QCOMPARE(requests[2].tag, UpdateECOledText);

    m_pCommand->updateCurrentPageIndex(3); // the last page has one item
    m_pCommand->updateCommandKeypad(Enum::UpdateConsoleType::All);
    QCOMPARE(int(m_pRig->takeRequests().size()), 2);
}

void TestCommand::repaintWithoutKeysSendsNothing()
{
    const LogCapture log;
    m_pCommand->m_nPageSize = 0;
    m_pCommand->updateCommandKeypad(Enum::UpdateConsoleType::All);
    QVERIFY(m_pRig->takeRequests().empty());
    QVERIFY(log.contains(" page button config is 0. check config files."));
}

void TestCommand::oneItemIsSentWhole()
{
    m_pCommand->updateBindedECButton(SecondKey, 2);
    QCOMPARE(m_pRig->label(601), QStringLiteral("item 5"));
    QCOMPARE(int(m_pRig->takeRequests().size()), 2);
    m_pCommand->updateBindedECButton(SecondKey, 9);
    QVERIFY(m_pRig->takeRequests().empty());
}

void TestCommand::keysWithoutAFunctionReachNoHandler()
{
    m_pCommand->slotECButtonPressed(FirstKey);
    m_pCommand->slotECButtonPressed(DeadKey);
    m_pCommand->slotECButtonPressed(UpKey); // a code that nothing is bound to
    m_pCommand->slotECButtonPressed(77);
    QCOMPARE(m_pCommand->m_handled, QList<quint32>{FirstKey});
    QVERIFY(!m_pCommand->findECButtonPressedCBByOrvaneKey(Unbound));
    QVERIFY(!m_pCommand->findECButtonReleaseCBByECKey(FirstKey));
    m_pCommand->updateCurrentPageIndex(3);
    QCOMPARE(m_pCommand->findECButtonIndex(SecondKey), 7);
    QCOMPARE(m_pCommand->findECButtonIndex(77), -1);
}

void TestCommand::lookupsWithoutAGroup()
{
    ProbeCommand bare;
    QCOMPARE(bare.getECKeyByOrvaneECKey(1020), 0u);
    QCOMPARE(bare.getECKeyByOrderIndex(0), Constants::InvalidECKey);
    QCOMPARE(bare.findOrvaneKey(FirstKey), 0);
    QCOMPARE(bare.findECButtonOrderIndex(FirstKey), -1);
    QVERIFY(!bare.containsECButton(FirstKey) && !bare.containsECOled(PageLabel));
    bare.updateECButtonColor(FirstKey, ECLEDColor::Red);
    bare.updateECOledTextByBtnECKey(FirstKey, QStringLiteral("x"));
    QVERIFY(m_pRig->takeRequests().empty());

    QCOMPARE(m_pCommand->getECKeyByOrvaneECKey(1021), quint32(SecondKey));
    QCOMPARE(m_pCommand->getECKeyByOrvaneECKey(0x10000 + 1021), quint32(SecondKey)); // cut to 16 bits
    QVERIFY(!m_pCommand->containsECKeyByOrvaneECKey(0x10000 + 1021));
    QCOMPARE(m_pCommand->getECKeyByOrvaneECKey(7), Constants::InvalidECKey);
    const LogCapture log;
    m_pCommand->updateECButtonColor(77, ECLEDColor::Red);
    QVERIFY(log.contains("77 command has invalid button config"));
}

void TestCommand::labelsAreCutAtTheirLastByte()
{
    const QString umlauts = QString(20, QChar(0x00E4)); // 40 bytes in UTF-8
    m_pCommand->updateECOledText(appNumber(600), 600, umlauts);
    QCOMPARE(m_pRig->label(600), QString(16, QChar(0x00E4)));
    m_pCommand->updateECOledText(appNumber(600), 600, QStringLiteral("a") + umlauts);
    QCOMPARE(m_pRig->console().labels.at(600).text.size(), 32); // in the middle of a character
    m_pCommand->updateECOledText(appNumber(600), 600, QString());
    QCOMPARE(m_pRig->label(600), QString());
}

void TestCommand::aLabelIsFoundByItsKeyFirst()
{
    // Keys and labels are numbered apart: key 40's label is 41, key 41's label is 40, key 42 has none.
    const auto keyboard = KeyboardBuilder()
                              .group("ProbeCommand")
                              .key(40, Select, 0, 41)
                              .key(41, Select, 1, 40)
                              .key(42, Select)
                              .build();
    m_pCommand->setCommandConfig(keyboard->m_commands.first());
    m_pCommand->updateECOledTextByBtnECKey(40, QStringLiteral("of key 40"));
    m_pCommand->updateECOledTextByBtnECKey(42, QStringLiteral("nowhere"));
    QCOMPARE(m_pRig->label(41), QStringLiteral("of key 40"));
    QCOMPARE(int(m_pRig->takeRequests().size()), 1);
}

void TestCommand::aColorWithoutANameIsWhite()
{
    m_pCommand->updateECButton(appNumber(FirstKey), FirstKey, ECLEDColor(8), Flashing);
    QVERIFY(m_pRig->shows(FirstKey, ECLEDColor::On));
    QCOMPARE(int(m_pRig->key(FirstKey).buttonState), int(Flashing));
}

void TestCommand::lockingTellsConsoleAndHost()
{
    ECManager* manager = ECManager::instance();
    QSignalSpy keyboard(manager, &ECManager::signalKeyboardLocked);
    QSignalSpy tbar(manager, &ECManager::signalTbarLocked);
    m_pCommand->lockedKeyPad(true);
    m_pCommand->lockedTBar(true);
    QVERIFY(m_pRig->console().isKeypadLocked && m_pRig->console().isTBarLocked);
    m_pCommand->lockedKeyPad(false);
    m_pCommand->lockedTBar(false);
    QVERIFY(!m_pRig->console().isKeypadLocked && !m_pRig->console().isTBarLocked);
    QCOMPARE(keyboard.size(), 2);
    QCOMPARE(tbar.takeLast().first().toBool(), false);
}

QTEST_MAIN(TestCommand)
#include "tst_command.moc"
