#include "consolewidget.h"
#include "ec/eckeyboardloader.h"
#include "faultpanel.h"
#include "journalview.h"
#include "keycap.h"
#include "lightbar.h"
#include "paneltestsupport.h"
#include "tbarlever.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QSpinBox>
#include <QTableView>
#include <QTest>

using namespace PanelTest;

namespace {

constexpr int TakeKey = 15;
constexpr int OtherKey = 16;
constexpr int FirstLabel = 512;

/// The example console on the screen, with what it is told and what it reports.
struct Desk {
    Desk()
        : widget(ConsoleLayout::fromConfig(*Orvane::EC::loadKeyboardFile(EXAMPLE_KEYBOARD).config), recorder)
    {
        QObject::connect(&widget, &ConsoleWidget::signalKeyMoved, &widget, [this](quint16 key, bool isDown) {
            moves.append(QStringLiteral("%1%2").arg(isDown ? '+' : '-').arg(key));
        });
        widget.resize(1280, 800);
        widget.show();
        widget.activateWindow();
        widget.setFocus();
    }

    KeyCap& key(int number) { return *widget.findChild<KeyCap*>(QStringLiteral("key%1").arg(number)); }
    void tell(const QByteArray& datagram)
    {
        recorder.receive(datagram.constData(), datagram.size());
        widget.consoleChanged();
    }

    QStringList moves;
    ConsoleRecorder recorder;
    ConsoleWidget widget;
};

} // namespace

class ConsoleWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keyIsDownAsLongAsItIsHeld()
    {
        Desk desk;
        QTest::mousePress(&desk.key(TakeKey), Qt::LeftButton);
        QVERIFY(desk.key(TakeKey).isDown());
        QTest::mousePress(&desk.key(OtherKey), Qt::RightButton);
        QCOMPARE(desk.moves, QStringList("+15"));
        QTest::mouseRelease(&desk.key(TakeKey), Qt::LeftButton);
        QCOMPARE(desk.moves, (QStringList{"+15", "-15"}));
    }

    void severalFingersHoldSeveralKeys()
    {
        Desk desk;
        QTouchDevice* const screen = QTest::createTouchDevice(); // Qt keeps it
        auto* const first = &desk.key(TakeKey);
        auto* const second = &desk.key(OtherKey);
        const QPoint firstPlace = first->mapTo(&desk.widget, first->rect().center());
        const QPoint secondPlace = second->mapTo(&desk.widget, second->rect().center());
        QTest::touchEvent(&desk.widget, screen)
            .press(0, firstPlace, &desk.widget)
            .press(1, secondPlace, &desk.widget);
        QVERIFY(first->isDown() && second->isDown());
        QCOMPARE(desk.moves.size(), 2);
    }

    void keyboardWorksTheKeysAndHoldsThem()
    {
        Desk desk;
        QTest::keyPress(&desk.widget, Qt::Key_Space);
        QTest::keyPress(&desk.widget, Qt::Key_7);
        QTest::keyRelease(&desk.widget, Qt::Key_7);
        QCOMPARE(desk.moves, (QStringList{"+15", "+100", "-100"}));
        QFocusEvent lost(QEvent::FocusOut); // the release will go to another window
        QCoreApplication::sendEvent(&desk.widget, &lost);
        QCOMPARE(desk.moves.last(), "-15");
    }

    void keyThatIsHeldWhenItsWindowIsHiddenComesUp()
    {
        Desk desk;
        QTest::mousePress(&desk.key(TakeKey), Qt::LeftButton);
        desk.widget.hide();
        QCOMPARE(desk.moves, (QStringList{"+15", "-15"}));
    }

    void lightsAndLabelsAreThoseOfTheConsole()
    {
        Desk desk;
        QVERIFY(!desk.key(1).shownColor().isValid());
        desk.tell(led(1, "00ff00"));
        desk.tell(led(2, "141414"));
        desk.tell(label(FirstLabel, "Main wall"));
        QTRY_COMPARE(desk.key(1).shownColor(), QColor(0, 255, 0));
        QCOMPARE(desk.key(1).shownLabel(), "Main wall");
        const QColor off = desk.key(2).shownColor();
        QVERIFY2(off.red() == off.blue() && off.red() > 60 && off.red() < 128, "a dim grey that can be seen");

        desk.tell(led(1, "ff0000", Protocol::Flashing));
        QTRY_COMPARE(desk.key(1).shownColor(), QColor(255, 0, 0));
        QTRY_VERIFY(!desk.key(1).shownColor().isValid());
        QTRY_COMPARE(desk.key(1).shownColor(), QColor(255, 0, 0));

        desk.tell(led(9999, "0000ff"));
        QTRY_VERIFY(desk.widget.findChild<KeyCap*>("key9999"));
        QCOMPARE(desk.key(9999).shownColor(), QColor(0, 0, 255));
    }

    void leverReportsEveryPositionItPasses()
    {
        Desk desk;
        QVector<QPair<quint32, quint8>> positions;
        QObject::connect(
            &desk.widget, &ConsoleWidget::signalTBarMoved, &desk.widget,
            [&](quint32 position, quint8 direction) {
                positions.append({position, direction});
            });
        auto* const lever = desk.widget.findChild<TBarLever*>();
        lever->setSliderDown(true);
        lever->setSliderPosition(64);
        lever->setSliderDown(false);
        QCOMPARE(positions.size(), 63);
        QCOMPARE(positions.first(), qMakePair(quint32(2), quint8(Protocol::BottomToTop)));
        QCOMPARE(positions.last(), qMakePair(quint32(64), quint8(Protocol::BottomToTop)));
        lever->setSliderPosition(62);
        QCOMPARE(positions.last(), qMakePair(quint32(62), quint8(Protocol::TopToBottom)));
        desk.widget.showLever(10); // a script
        QCOMPARE(lever->value(), 10);
        QCOMPARE(positions.last().first, quint32(62));
        desk.tell(request(103, number(7, 4) + number(Protocol::BottomToTop, 1)));
        QTRY_COMPARE(desk.widget.findChild<LightBar*>()->level(), 7);
    }

    void everythingFitsAtBothSizes_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("small") << QSize(1280, 550);
        QTest::newRow("large") << QSize(3840, 2160);
    }

    void everythingFitsAtBothSizes()
    {
        QFETCH(QSize, size);
        Desk desk;
        desk.widget.resize(size);
        QCOMPARE(desk.widget.size(), size);
        QCoreApplication::processEvents();
        const auto keys = desk.widget.findChildren<KeyCap*>();
        QCOMPARE(keys.size(), 113);
        for (const KeyCap* key : keys) {
            const QRect place(key->mapTo(&desk.widget, QPoint(0, 0)), key->size());
            QVERIFY2(desk.widget.rect().contains(place), qPrintable(key->objectName()));
            QVERIFY2(place.width() >= 40 && place.height() >= 30, qPrintable(key->objectName()));
        }
    }

    void journalReadsFiltersAndForgets()
    {
        JournalModel journal;
        JournalView view(journal);
        journal.note(std::chrono::seconds(1), JournalModel::Down, led(12, "00ff00"));
        journal.note(std::chrono::seconds(2), JournalModel::Up, encodeUp(KeyReport{true, 13}, 0));
        journal.note(std::chrono::seconds(3), JournalModel::Lost, malformedDatagram(1));
        view.refresh();
        const auto* const shown = view.findChild<QTableView*>()->model();
        QCOMPARE(shown->rowCount(), 3);
        const auto text = [&](int row) {
            return shown->index(row, JournalModel::TextColumn).data().toString();
        };
        QVERIFY(text(0).contains("UpdateECButtonColor key=12"));
        QCOMPARE(text(1), "press 13");
        QCOMPARE(text(2), "malformed");
        QCOMPARE(shown->index(2, JournalModel::DirectionColumn).data().toString(), "> lost");
        QVERIFY(shown->index(0, JournalModel::HexColumn).data().toString().startsWith("ee 55 ee 55"));
        view.findChild<QLineEdit*>("journalFilter")->setText("PRESS 13");
        QCOMPARE(shown->rowCount(), 1);
        view.findChild<QLineEdit*>("journalFilter")->clear();
        for (int i = 0; i < JournalModel::MostEntries + 10; ++i)
            journal.note(std::chrono::seconds(4), JournalModel::Down, led(quint16(i), "ffffff"));
        view.refresh();
        QCOMPARE(journal.rowCount(), int(JournalModel::MostEntries));
        QVERIFY(text(0).contains("key=10 "));
    }

    void faultPanelAndScriptChangeTheSameWire()
    {
        FaultyWire wire;
        FaultPanel panel(wire);
        panel.findChild<QSpinBox*>("dropRate")->setValue(30);
        QCOMPARE(wire.faults().dropRate, 30);
        wire.faults().delayRate = 5;
        panel.refresh();
        QCOMPARE(panel.findChild<QSpinBox*>("delayRate")->value(), 5);
        panel.findChild<QPushButton*>("loseRelease")->click();
        QVERIFY(wire.faults().losesNextRelease);
        QSignalSpy sent(&panel, &FaultPanel::signalSendBytes);
        panel.findChild<QPushButton*>("sendMalformed")->click();
        QVERIFY(!decodeUp(sent.at(0).at(0).toByteArray()));
    }

    void burstCostsOneFrameThatShowsItsLast()
    {
        Desk desk;
        QSignalSpy frames(&desk.widget.frames(), &FrameCoalescer::signalFrame);
        for (int i = 0; i < 1000; ++i)
            desk.tell(led(quint16(1 + i % 113), i < 999 ? "ff0000" : "00ff00"));
        QTRY_COMPARE(desk.key(1 + 999 % 113).shownColor(), QColor(0, 255, 0));
        QCOMPARE(desk.key(1 + 998 % 113).shownColor(), QColor(255, 0, 0));
        QCOMPARE(frames.count(), 1);
    }
};

QTEST_MAIN(ConsoleWidgetTest)
#include "tst_consolewidget.moc"
