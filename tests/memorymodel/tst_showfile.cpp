#include "modeltestsupport.h"

#include "showfile.h"

#include <QtTest>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;

class TestShowFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void exampleLoadsAndRoundTrips();
};

void TestShowFile::exampleLoadsAndRoundTrips()
{
    QStringList faults;
    const auto show = loadShowFile(QStringLiteral(EXAMPLE_SHOW), faults);
    QVERIFY2(show.has_value(), qPrintable(faults.join(QLatin1Char('\n'))));
    MemoryModel::MemoryModel model;
    QVERIFY(model.loadFile(QStringLiteral(EXAMPLE_SHOW), faults));
    QCOMPARE(model.show(), writeShow(*show));
    const auto again = parseShow(model.show(), faults);
    QVERIFY(again.has_value());
    QCOMPARE(writeShow(*again), writeShow(*show));
}

QTEST_GUILESS_MAIN(TestShowFile)
#include "tst_showfile.moc"
