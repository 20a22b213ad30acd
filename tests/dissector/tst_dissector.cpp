#include "capturefile.h"
#include "downdecoder.h"
#include "downdescription.h"
#include "printabletext.h"
#include "requestrows.h"
#include "upmessage.h"

#include <QJsonArray>
#include <QMultiMap>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

using namespace Orvane::ConsolePanel;
using namespace Orvane::ECProxy::Client;

namespace {

constexpr int TsharkLimitMs = 100000;

/// A field as tshark prints it: its value, and its label with the value in words.
struct ShownField {
    QString value;
    QString words;
};

/// The fields of one datagram by name, without what all our names begin with.
using ShownDatagram = QMultiMap<QString, ShownField>;

/// What tshark shows of a capture, datagram for datagram.
QVector<ShownDatagram> dissect(const QString& capture)
{
    QProcess tshark;
    tshark.start("tshark", {"-r", capture, "-X", "lua_script:" DISSECTOR, "-T", "pdml", "-J", "orvane_ec"});
    if (!tshark.waitForFinished(TsharkLimitMs) || tshark.exitCode() != 0)
        qFatal("tshark: %s", tshark.readAllStandardError().constData());
    QXmlStreamReader xml(tshark.readAllStandardOutput());
    QVector<ShownDatagram> datagrams;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("packet"))
            datagrams.append(ShownDatagram());
        const QString name = xml.attributes().value("name").toString();
        if (xml.name() == QLatin1String("field") && name.startsWith("orvane_ec."))
            datagrams.last().insert(
                name.mid(int(qstrlen("orvane_ec."))),
                {xml.attributes().value("show").toString(), xml.attributes().value("showname").toString()});
    }
    if (xml.hasError())
        qFatal("tshark's output: %s", qUtf8Printable(xml.errorString()));
    return datagrams;
}

bool isShown(const ShownField& field, const QJsonValue& expected)
{
    if (expected.isBool())
        return field.value == (expected.toBool() ? "1" : "0");
    if (expected.isDouble())
        return field.value == QString::number(qint64(expected.toDouble()));
    const QString text = expected.toString();
    if (printable(text) != text)
        return true; // Wireshark has its own way with control characters; the line has ours
    return field.value == text || field.words.endsWith(QStringLiteral(": %1 (%2)").arg(text, field.value));
}

/// What is wrong with a field; empty when it has the expected value, or the expected list of values.
QString fieldFault(const ShownDatagram& shown, const QString& name, const QJsonValue& expected)
{
    QList<ShownField> fields = shown.values(name); // the last one first
    std::reverse(fields.begin(), fields.end());
    const QJsonArray values = expected.isArray() ? expected.toArray() : QJsonArray{expected};
    bool isRight = fields.size() == values.size();
    for (int i = 0; isRight && i < values.size(); ++i)
        isRight = isShown(fields.at(i), values.at(i));
    return isRight ? QString() : QStringLiteral("field %1 is \"%2\"").arg(name, fields.value(0).value);
}

QString fieldFaults(const ShownDatagram& shown, const QJsonObject& expected)
{
    QString faults;
    for (auto member = expected.begin(); member != expected.end(); ++member)
        faults += fieldFault(shown, member.key(), member.value());
    return faults;
}

QJsonObject headFields(const QByteArray& bytes, int offset)
{
    const char* const head = bytes.constData() + offset;
    return {
        {"packet_type", Wire::load<quint16>(head + 4)},
        {"content_length", Wire::load<quint16>(head + 10)},
        {"length", Wire::load<quint16>(head + 14)}};
}

/// A request's fields under our names, a color in its three parts.
QJsonObject fieldsOf(const DownDatagram& request)
{
    QJsonObject fields = toJson(request);
    fields.remove("name"); // which goes with the tag
    const QStringList color = fields.take("color").toString().split(',');
    if (color.size() == 3) {
        fields.insert("red", color[0].toInt());
        fields.insert("green", color[1].toInt());
        fields.insert("blue", color[2].toInt());
    }
    return fields;
}

QJsonObject fieldsOf(const ECDeviceIPData& record)
{
    // As the same record is told when it is a request.
    return fieldsOf(DownDatagram{0, UpdateECDeviceIPData, record});
}

QJsonObject fieldsOf(const UpMessage& report)
{
    QJsonObject fields = std::visit(
        Overloaded{
            [](const KeyReport& key) {
                return QJsonObject{{"key", qint64(key.key)}};
            },
            [](const ECTBarValue& lever) {
                return QJsonObject{{"position", qint64(lever.Value)}, {"direction", lever.IsBottomToTop}};
            },
            [](const LockReport& lock) {
                return QJsonObject{{"locked", lock.locked}};
            },
            [](const DviReport& dvi) {
                QJsonArray inputs;
                QJsonArray present;
                for (const DVIInSignal& state : dvi.signalStates) {
                    inputs.append(state.Index);
                    present.append(state.Signal != 0);
                }
                return QJsonObject{{"input", inputs}, {"signal", present}};
            },
            [](const ECDeviceIPData& record) { return fieldsOf(record); },
        },
        report);
    fields.remove("seq");
    fields.remove("tag");
    return fields;
}

/// What our decoder says of a datagram.
struct Reading {
    QString line; ///< empty when it is malformed
    QJsonObject fields;
};

Reading readingOf(const CapturedDatagram& datagram)
{
    const QByteArray& bytes = datagram.bytes;
    Reading reading;
    if (datagram.direction == CapturedDatagram::Up) {
        if (const auto report = decodeUp(bytes)) {
            reading = {describe(*report), fieldsOf(*report)};
            reading.fields.insert("tag", Wire::load<quint16>(bytes.constData() + ECHeadSize));
            reading.fields.insert("seq", Wire::load<quint16>(bytes.constData() + 8));
        }
    } else {
        const auto decoded = decodeDown(bytes.constData(), bytes.size());
        if (const auto* request = std::get_if<DownDatagram>(&decoded))
            reading = {describe(*request), fieldsOf(*request)};
    }
    const bool isPack = reading.fields.contains("packs");
    if (!reading.line.isEmpty()) {
        const QJsonObject head = headFields(bytes, isPack ? FilePack::HeadOffset : 0);
        for (auto member = head.begin(); member != head.end(); ++member)
            reading.fields.insert(member.key(), member.value());
    }
    return reading;
}

QVector<QByteArray> everyRequest()
{
    QVector<QByteArray> requests;
    for (const PanelTest::RequestRow& row : PanelTest::requestRows())
        requests.append(QByteArray::fromHex(row.hex));
    return requests;
}

QVector<QByteArray> everyReport()
{
    QVector<QByteArray> reports;
    for (const UpMessage& message : std::initializer_list<UpMessage>{
             KeyReport{true, 0xFF0449}, KeyReport{false, 12}, ECTBarValue{32, BottomToTop},
             ECTBarValue{64, TopToBottom}, LockReport{LockTarget::TBar, true},
             LockReport{LockTarget::Keypad, false}, DviReport{}, DviReport{{{0, 1}, {1, 0}, {2, 7}}},
             ECDeviceIPData{1, 2, 0xC0A8000A, 0xFFFFFF00, 0xFF000001}})
        reports.append(encodeUp(message, quint16(reports.size())));
    return reports;
}

/// The datagram as it is, and with each of the ways in which it can be wrong by a little.
QVector<QByteArray> withFaults(const QByteArray& datagram)
{
    QVector<QByteArray> all{datagram, datagram + '\0', datagram + 'x'};
    constexpr int mostBytes = 60;
    for (int size = 1; size < std::min(datagram.size(), mostBytes); ++size)
        all.append(datagram.left(size));
    for (int i = 0; i < std::min(datagram.size(), mostBytes); ++i) {
        all.append(datagram);
        all.last()[i] = char(all.last()[i] + 1);
    }
    return all;
}

} // namespace

/// What Wireshark shows with our dissector, held against our own decoder.
class TestDissector : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable("tshark").isEmpty())
            QSKIP("tshark is not installed: the Wireshark dissector is not tested (scripts/setup installs "
                  "it).");
    }

    void everyMessageIsShownWithEveryField()
    {
        QByteArray file = captureFileHead();
        QSet<int> tags;
        for (const QByteArray& request : everyRequest()) {
            add(CapturedDatagram::Down, request, file);
            const auto read = decodeDown(request.constData(), request.size());
            QVERIFY(std::holds_alternative<DownDatagram>(read));
            tags.insert(std::get<DownDatagram>(read).tag);
        }
        QCOMPARE(tags.size(), DownMessageCount);
        for (const QByteArray& report : everyReport())
            add(CapturedDatagram::Up, report, file);
        compare(write(file));
    }

    void malformedDatagramIsShownAsOne()
    {
        QByteArray file = captureFileHead();
        for (const QByteArray& request : everyRequest())
            for (const QByteArray& datagram : withFaults(request))
                add(CapturedDatagram::Down, datagram, file);
        for (const QByteArray& report : everyReport())
            for (const QByteArray& datagram : withFaults(report))
                add(CapturedDatagram::Up, datagram, file);
        compare(write(file));
    }

    void demoSessionIsShownWithEveryField()
    {
        QVERIFY2(QFile::exists(DEMO_CAPTURE), "the test demo_session writes " DEMO_CAPTURE);
        compare(QStringLiteral(DEMO_CAPTURE));
    }

private:
    static void add(CapturedDatagram::Direction direction, const QByteArray& bytes, QByteArray& file)
    {
        appendCaptureRecord(direction, {}, bytes.constData(), bytes.size(), file);
    }

    QString write(const QByteArray& content) const
    {
        QFile file(m_directory.filePath("a.pcap"));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("the capture cannot be written");
        return file.fileName();
    }

    /// Every datagram of the file, in both views.
    static void compare(const QString& path)
    {
        const auto capture = std::get<Capture>(loadCapture(path));
        const QVector<ShownDatagram> shown = dissect(path);
        QVERIFY(!shown.isEmpty());
        QCOMPARE(std::size_t(shown.size()), capture.datagrams.size());
        for (int i = 0; i < shown.size(); ++i) {
            const CapturedDatagram& datagram = capture.datagrams[std::size_t(i)];
            if (datagram.bytes.isEmpty())
                continue; // analysers have nothing to look into
            const Reading reading = readingOf(datagram);
            const ShownDatagram& fields = shown.at(i);
            const QString place =
                QStringLiteral("packet %1, %2").arg(i + 1).arg(QLatin1String(datagram.bytes.toHex()));
            QVERIFY2(fields.contains("malformed") == reading.line.isEmpty(), qPrintable(place));
            QCOMPARE(fields.value("line").value, reading.line);
            const QString faults = fieldFaults(fields, reading.fields);
            QVERIFY2(faults.isEmpty(), qPrintable(place + ": " + faults));
        }
    }

    const QTemporaryDir m_directory;
};

QTEST_GUILESS_MAIN(TestDissector)
#include "tst_dissector.moc"
