#include "consolewidget.h"
#include "ec/eckeyboardloader.h"
#include "keycap.h"
#include "lightbar.h"
#include "paneltestsupport.h"
#include "tbarlever.h"

#include <QSignalSpy>
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
