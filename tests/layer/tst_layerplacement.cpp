#include "ecconstants.h"
#include "layerplacement_p.h"

#include <QTest>

using namespace Orvane::ECProxy::Client;
using namespace Orvane::ECProxy::Client::Internal;

namespace {

constexpr quint32 Free = Constants::UnboundLayerIndex;

const QSize LayerSize{960, 540};

/// Full-HD outputs side by side.
QList<QRect> outputRow(int count)
{
    QList<QRect> outputs;
    for (int i = 0; i < count; ++i)
        outputs.append(QRect(1920 * i, 0, 1920, 1080));
    return outputs;
}

} // namespace

Q_DECLARE_METATYPE(std::vector<quint32>)

class TestLayerPlacement : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewLayerGoesToTheNextOutputAndCascades_data()
    {
        QTest::addColumn<int>("outputs");
        QTest::addColumn<QList<QPoint>>("layers");
        QTest::addColumn<QPoint>("position");
        using Points = QList<QPoint>;
        QTest::newRow("one output, no layer") << 1 << Points{} << QPoint(0, 0);
        QTest::newRow("one output, third layer") << 1 << Points{{0, 0}, {60, 60}} << QPoint(120, 120);
        QTest::newRow("two outputs, fourth layer")
            << 2 << Points{{0, 0}, {1920, 0}, {60, 60}} << QPoint(1980, 60);
        QTest::newRow("four outputs, fourth layer")
            << 4 << Points{{0, 0}, {1920, 0}, {3840, 0}} << QPoint(5760, 0);
        QTest::newRow("four outputs, fifth layer")
            << 4 << Points{{0, 0}, {1920, 0}, {3840, 0}, {5760, 0}} << QPoint(60, 60);
        QTest::newRow("a layer in the mosaic's last pixel of an output counts there")
            << 2 << Points{{1919, 1079}, {5000, 5000}} << QPoint(60, 60);
        QTest::newRow("a layer beyond every output still moves the start on")
            << 2 << Points{{-500, -500}} << QPoint(1920, 0);
    }
    void aNewLayerGoesToTheNextOutputAndCascades()
    {
        QFETCH(int, outputs);
        QFETCH(QList<QPoint>, layers);
        QFETCH(QPoint, position);

        QList<QRect> asked;
        const auto hasResources = [&](const QRect& window) {
            asked.append(window);
            return true;
        };
        QCOMPARE(findLayerPosition({outputRow(outputs), layers, LayerSize}, hasResources), position);
        QCOMPARE(asked, QList<QRect>({QRect(position, LayerSize)}));
    }

    void missingResourcesEndEachPass_data()
    {
        QTest::addColumn<int>("layerCount");
        QTest::addColumn<QList<bool>>("answers");
        QTest::addColumn<QPoint>("position");
        using Answers = QList<bool>;
        // Four outputs; the layers all lie outside, so that a place is just its output's corner.
        QTest::newRow("forward pass fails, wrap pass starts at the first output")
            << 2 << Answers{false, true} << QPoint(0, 0);
        QTest::newRow("a failure in the wrap pass ends the search")
            << 2 << Answers{false, false} << NoLayerPosition;
        QTest::newRow("started at the first output there is nothing to wrap to")
            << 4 << Answers{false} << NoLayerPosition;
        QTest::newRow("started at the last output") << 3 << Answers{false, true} << QPoint(0, 0);
    }
    void missingResourcesEndEachPass()
    {
        QFETCH(int, layerCount);
        QFETCH(QList<bool>, answers);
        QFETCH(QPoint, position);

        QList<QPoint> layers;
        for (int i = 0; i < layerCount; ++i)
            layers.append({-1000, -1000});
        int asked = 0;
        const auto hasResources = [&](const QRect&) { return asked < answers.size() && answers.at(asked++); };
        QCOMPARE(findLayerPosition({outputRow(4), layers, LayerSize}, hasResources), position);
        QCOMPARE(asked, answers.size());
    }

    void aCornerAtTheMosaicsOwnMinusOneIsNoPlace()
    {
        const auto always = [](const QRect&) { return true; };
        const QList<QRect> outputs{QRect(-1, -1, 100, 100), QRect(200, 0, 100, 100)};
        QCOMPARE(findLayerPosition({outputs, {}, LayerSize}, always), QPoint(200, 0));
        QCOMPARE(findLayerPosition({{}, {}, LayerSize}, always), NoLayerPosition);
    }

    void oneFullScreenPressFillsTheTouchedOutputs()
    {
        const auto outputs = outputRow(3);
        const QRect mosaic(0, 0, 5760, 1080);
        QCOMPARE(windowOverTouchedOutputs({10, 10, 100, 100}, outputs, mosaic), outputs.at(0));
        QCOMPARE(windowOverTouchedOutputs({1919, 10, 2, 100}, outputs, mosaic), QRect(0, 0, 3840, 1080));
        QCOMPARE(windowOverTouchedOutputs({0, 2000, 100, 100}, outputs, mosaic), mosaic);
    }

    void layersKeepTheirKeysAndNewOnesFillTheGaps_data()
    {
        QTest::addColumn<std::vector<quint32>>("keys");
        QTest::addColumn<std::vector<quint32>>("layers");
        QTest::addColumn<std::vector<quint32>>("assigned");
        using Ids = std::vector<quint32>;
        QTest::newRow("free keys fill by layer id") << Ids{Free, Free, Free} << Ids{2, 5} << Ids{2, 5, Free};
        QTest::newRow("bound ones stay") << Ids{9, Free, 2} << Ids{1, 2, 9} << Ids{9, 1, 2};
        QTest::newRow("a gone layer frees its key") << Ids{7, 8, Free} << Ids{8, 9} << Ids{9, 8, Free};
        QTest::newRow("a layer on two keys keeps the first")
            << Ids{4, 4, Free} << Ids{4, 6} << Ids{4, 6, Free};
        QTest::newRow("keys run out") << Ids{Free, 3} << Ids{1, 2, 3} << Ids{1, 3};
        QTest::newRow("no keys") << Ids{} << Ids{1} << Ids{};
    }
    void layersKeepTheirKeysAndNewOnesFillTheGaps()
    {
        QFETCH(std::vector<quint32>, keys);
        QFETCH(std::vector<quint32>, layers);
        QFETCH(std::vector<quint32>, assigned);
        QVERIFY(assignLayerKeys(keys, layers) == assigned);
    }
};

QTEST_APPLESS_MAIN(TestLayerPlacement)
#include "tst_layerplacement.moc"
