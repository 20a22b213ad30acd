#include "bareplatform.h"
#include "command.h"
#include "consolerig.h"
#include "keyboardbuilder.h"
#include "logcapture.h"

#include <QTest>

#include <functional>
#include <optional>
#include <utility>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using namespace Orvane::TestSupport;

namespace {

enum : quint16 { Select = 1, PageUp = 2, PageDown = 3 };
enum : quint16 { FirstKey = 20, UpKey = 30, DownKey = 31, DeadKey = 33, PageLabel = 512 };

/// A group of keys without items.
class ProbeCommand : public Command {
public:
    ProbeCommand()
    {
        const auto handle = [this](const quint32& key) {
            m_handled.append(key);
            return true;
        };
        bindKey(Select, handle, nullptr);
    }
    QString name() const override { return QStringLiteral("ProbeCommand"); }
    int maxPage() override { return m_nMaxPage ? *m_nMaxPage : Command::maxPage(); }
    int pageSize() const override { return 0; }
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
    std::optional<int> m_nMaxPage;
};

} // namespace

class TestCommand : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_pDevices = std::make_unique<BareDeviceList>();
        m_pRig = std::make_unique<ConsoleRig>(nullptr);
    }

    void init()
    {
        m_pCommand = std::make_unique<ProbeCommand>();
        setKeys(KeyboardBuilder()
                    .group("ProbeCommand")
                    .key(FirstKey, Select)
                    .key(UpKey, PageUp, 0, PageLabel)
                    .key(DownKey, PageDown, 0, PageLabel)
                    .key(DeadKey, 0));
        m_pRig->takeRequests();
    }

    void pagesStopAtBothEnds()
    {
        const LogCapture log;
        const auto stopped = [&](const char* end) {
            const auto line = QStringLiteral(
                "Can't perform page turning, the %1 page number is currently reached. This is ProbeCommand");
            return log.contains(line.arg(end));
        };
        QVERIFY(!m_pCommand->pageUpRelease(UpKey));
        QVERIFY(m_pRig->shows(UpKey, ECLEDColor::Off));
        QCOMPARE(m_pCommand->currentPageIndex(), 0);
        QVERIFY(stopped("minimum"));

        m_pCommand->updateCurrentPageIndex(97);
        QVERIFY(m_pCommand->pageDownRelease(DownKey));
        QVERIFY(!m_pCommand->pageDownRelease(DownKey));
        QCOMPARE(m_pRig->label(PageLabel), QStringLiteral("Page 99"));
        QVERIFY(stopped("maximum"));

        m_pCommand->m_nMaxPage = 90; // there are fewer pages now: back still leads back
        QVERIFY(m_pCommand->pageUpRelease(UpKey));
        QCOMPARE(m_pCommand->page(), 97);
    }

    void aPageTurnedOnMeanwhileIsShownLast()
    {
        // The on-screen console turns the page as well, just before the first turn is shown.
        m_pCommand->m_onPageTurned = [&] { QVERIFY(m_pCommand->pageDownRelease(DownKey)); };
        QVERIFY(m_pCommand->pageDownRelease(DownKey));
        QCOMPARE(m_pCommand->page(), 2);
        QCOMPARE(m_pRig->label(PageLabel), QStringLiteral("Page 3"));
    }

    void pageKeysWithTwoLabelsBothShowThePage()
    {
        setKeys(KeyboardBuilder()
                    .group("ProbeCommand")
                    .key(UpKey, PageUp, 0, PageLabel)
                    .key(DownKey, PageDown, 0, PageLabel + 1));
        // Turned three times more before the first turn is shown.
        m_pCommand->m_onPageTurned = [&] {
            QVERIFY(m_pCommand->pageDownRelease(DownKey));
            QVERIFY(m_pCommand->pageDownRelease(DownKey));
            QVERIFY(m_pCommand->pageUpRelease(UpKey));
        };
        QVERIFY(m_pCommand->pageDownRelease(DownKey));
        QCOMPARE(m_pRig->label(PageLabel), QStringLiteral("Page 3"));
        QCOMPARE(m_pRig->label(PageLabel + 1), QStringLiteral("Page 3"));
    }

    void aPageKeyWithoutALabelStillTurnsThePage()
    {
        setKeys(KeyboardBuilder().group("ProbeCommand").key(DownKey, PageDown));
        const LogCapture log;
        QVERIFY(m_pCommand->pageDownRelease(DownKey));
        QVERIFY(log.contains("ProbeCommandcommand has invalid page oled"));
        QVERIFY(m_pCommand->pageDownRelease(77));
        QVERIFY(log.contains("ProbeCommandcommand has invalid page button"));
        QCOMPARE(m_pCommand->page(), 2);
    }

    void labelsAreCutAtTheirLastByte()
    {
        const QString umlauts = QString(20, QChar(0x00E4)); // 40 bytes in UTF-8
        m_pCommand->updateECOledText(appNumber(600), 600, umlauts);
        QCOMPARE(m_pRig->label(600), QString(16, QChar(0x00E4)));
        m_pCommand->updateECOledText(appNumber(600), 600, QStringLiteral("a") + umlauts);
        QCOMPARE(m_pRig->console().labels.at(600).text.size(), 32); // in the middle of a character
        m_pCommand->updateECOledText(appNumber(600), 600, QString());
        QCOMPARE(m_pRig->label(600), QString());
    }

    void aLabelIsFoundByItsKeyFirst()
    {
        // Keys and labels are numbered apart: key 40's label is 41, key 41's label is 40, key 42 has none.
        setKeys(KeyboardBuilder()
                    .group("ProbeCommand")
                    .key(40, Select, 0, 41)
                    .key(41, Select, 1, 40)
                    .key(42, Select));
        m_pCommand->updateECOledTextByBtnECKey(40, QStringLiteral("of key 40"));
        m_pCommand->updateECOledTextByBtnECKey(42, QStringLiteral("nowhere"));
        QCOMPARE(m_pRig->label(41), QStringLiteral("of key 40"));
        QCOMPARE(int(m_pRig->takeRequests().size()), 1);
        QVERIFY(m_pCommand->containsECOled(41) && !m_pCommand->containsECOled(42));
    }

private:
    void setKeys(const KeyboardBuilder& keys)
    {
        m_pCommand->setCommandConfig(keys.build()->m_commands.first());
    }

    std::unique_ptr<BareDeviceList> m_pDevices;
    std::unique_ptr<ConsoleRig> m_pRig;
    std::unique_ptr<ProbeCommand> m_pCommand;
};

QTEST_MAIN(TestCommand)
#include "tst_command.moc"
