#include "program.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

namespace {

QJsonObject keyOf(const QJsonArray& rows, int key)
{
    for (const QJsonValue& row : rows) {
        if (row.toObject().value("key") == key)
            return row.toObject();
    }
    return {};
}

} // namespace

/// The host explains its keys and compares what they are to show with what the console was told.
class ExplainSessionTest : public SessionTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { SessionTest::init({"--shadow"}); }
    void cleanup() { SessionTest::cleanup(); }

    void aKeyUnderADialogIsExplainedWithItsOneReason()
    {
        QVERIFY(isDone("explain", {{"on", true}}));
        QVERIFY(isDone("openDialog"));
        tap(15); // take
        const QJsonObject told = m_host->next({{"event", "keyExplained"}, {"what", "pressed"}});
        QCOMPARE(told.value("key"), QJsonValue(15));
        QCOMPARE(told.value("owner"), QJsonValue("ScreenCommand"));
        QCOMPARE(told.value("function"), QJsonValue("take"));
        QCOMPARE(told.value("reason"), QJsonValue("a dialog is open: \"dialog\""));
        QVERIFY(told.value("handled").isNull());
        const QJsonObject dialog = told.value("guards").toArray().last().toObject();
        QCOMPARE(dialog, (QJsonObject{{"guard", "dialog"}, {"passed", false}}));
    }

    void aKeyThatTheConsoleWasToldWronglyIsTheOneDifference()
    {
        const auto differences = [this] {
            return m_host->command("surface", {{"differences", true}}).value("surface").toArray();
        };
        QTRY_COMPARE(differences(), QJsonArray());
        QVERIFY(isDone("closeAllLights"));
        const QJsonObject select = keyOf(differences(), 1);
        const QJsonObject light = select.value("light").toObject();
        QCOMPARE(light.value("sent"), QJsonValue("dark"));
        QVERIFY2(light.value("wanted").toString().contains("Green"), "the selected screen's key");
        QVERIFY(isDone("repaint"));
        QTRY_VERIFY(keyOf(differences(), 1).isEmpty());
    }

    void aConsoleThatShowsSomethingElseDiffersFromWhatWasSent()
    {
        QTemporaryDir directory;
        const QString file = directory.filePath("shown.json");
        const auto differences = [&] {
            m_console->writeLine("show");
            const QJsonObject shown = m_console->next({{"event", "show"}});
            QFile written(file);
            if (!written.open(QIODevice::WriteOnly)
                || written.write(QJsonDocument(shown).toJson(QJsonDocument::Compact)) <= 0)
                return QJsonArray{"the file cannot be written"};
            written.close();
            return m_host->command("surface", {{"differences", true}, {"shown", file}})
                .value("surface")
                .toArray();
        };
        QTRY_COMPARE(differences(), QJsonArray());
        m_console->writeLine("restart-console"); // all dark, and nobody tells the host
        const QJsonObject light = keyOf(differences(), 1).value("light").toObject();
        QCOMPARE(light.value("sent"), light.value("wanted"));
        QCOMPARE(light.value("shown"), QJsonValue("nothing came"));
        QVERIFY(isDone("showSurface", {{"visible", true}, {"shown", file}}));
        const QJsonValue reason("/nowhere cannot be read: No such file or directory");
        QCOMPARE(m_host->command("surface", {{"shown", "/nowhere"}}).value("reason"), reason);
        QCOMPARE(
            m_host->command("showSurface", {{"visible", true}, {"shown", "/nowhere"}}).value("reason"),
            reason);
    }
};

QTEST_GUILESS_MAIN(ExplainSessionTest)
#include "tst_explainsession.moc"
