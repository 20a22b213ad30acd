#include "program.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

Program::Program(const QString& binary)
    : m_binary(binary)
{
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, [this] { takeOutput(); });
    QObject::connect(
        &m_process, &QProcess::readyReadStandardError, [this] { m_log += m_process.readAllStandardError(); });
}

Program::~Program()
{
    m_process.disconnect();
    if (!isRunning())
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(PatienceMs))
        m_process.kill();
    m_process.waitForFinished();
}

void Program::start(const QStringList& arguments)
{
    m_process.start(m_binary, arguments);
}

void Program::writeLine(const QByteArray& line)
{
    m_process.write(line + '\n');
}

void Program::takeOutput()
{
    m_unfinished += m_process.readAllStandardOutput();
    int begin = 0;
    for (int end; (end = m_unfinished.indexOf('\n', begin)) >= 0; begin = end + 1)
        m_lines.append(QJsonDocument::fromJson(m_unfinished.mid(begin, end - begin)).object());
    m_unfinished.remove(0, begin);
}

QJsonObject Program::next(const std::function<bool(const QJsonObject&)>& fits)
{
    QJsonObject found;
    int position = m_nNext;
    const auto search = [&] {
        for (; position < m_lines.size() && found.isEmpty(); ++position) {
            if (fits(m_lines.at(position)))
                found = m_lines.at(position);
        }
        return !found.isEmpty();
    };
    if (QTest::qWaitFor([&] { return search() || !isRunning(); }, PatienceMs) && search())
        m_nNext = position;
    return found;
}

QJsonObject Program::next(const QJsonObject& members)
{
    return next([&](const QJsonObject& line) {
        for (auto member = members.begin(); member != members.end(); ++member) {
            if (line.value(member.key()) != member.value())
                return false;
        }
        return true;
    });
}

bool Program::waitForLog(const QByteArray& text) const
{
    return QTest::qWaitFor([&] { return m_log.contains(text); }, PatienceMs);
}

int Program::exitStatus()
{
    const bool ended =
        QTest::qWaitFor([this] { return m_process.state() == QProcess::NotRunning; }, PatienceMs);
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

Host::Host()
    : Program(HOST_BINARY)
{
}

bool Host::start(const QStringList& more)
{
    Program::start(
        QStringList{"--headless", "--events", "--quit-at-end", "--keyboard", EXAMPLE_KEYBOARD} + more);
    return !next({{"event", "ready"}}).isEmpty();
}

QJsonObject Host::command(const QString& name, QJsonObject arguments)
{
    const int id = ++m_nCommands;
    arguments.insert("command", name);
    arguments.insert("id", id);
    writeLine(QJsonDocument(arguments).toJson(QJsonDocument::Compact));
    QJsonObject answer;
    int position = 0;
    const bool answered = QTest::qWaitFor(
        [&] {
            for (; position < lines().size(); ++position) {
                if (lines().at(position).value("id") == id)
                    return true;
            }
            return !isRunning();
        },
        PatienceMs);
    return answered ? lines().value(position) : QJsonObject();
}

bool Host::hasDone(const QString& name, const QJsonObject& arguments)
{
    const QJsonObject answer = command(name, arguments);
    if (answer.value("event") == "done")
        return true;
    qWarning(
        "%s: %s", qUtf8Printable(name), QJsonDocument(answer).toJson(QJsonDocument::Compact).constData());
    return false;
}

bool Host::tells(const char* event, QJsonObject members)
{
    members.insert("event", event);
    return !next(members).isEmpty();
}

bool Host::shows(const char* field, const char* text)
{
    return tells("field", {{"name", field}, {"text", text}});
}

Console::Console()
    : Program(SIMULATOR_BINARY)
{
}

bool Console::start(const QStringList& more)
{
    Program::start(QStringList("--json") + more);
    return !next({{"event", "ready"}}).isEmpty();
}

bool Console::expect(const QByteArray& condition)
{
    const bool saysHowLong = condition.contains(" within ") || condition.contains(" for ");
    writeLine(
        "expect " + condition
        + (saysHowLong ? QByteArray() : " within " + QByteArray::number(PatienceMs / 2)));
    const QJsonObject result = next({{"event", "result"}});
    if (result.value("ok").toBool())
        return true;
    qWarning("%s: %s", condition.constData(), qUtf8Printable(result.value("detail").toString()));
    return false;
}

void SessionTest::init(const QStringList& hostOptions)
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_console = std::make_unique<Console>();
    m_host = std::make_unique<Host>();
    QVERIFY(QFile::copy(EXAMPLE_SHOW, showFile()));
    QVERIFY(QFile::setPermissions(showFile(), QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(m_console->start() && m_host->start(QStringList{"--show", showFile()} + hostOptions));
    QVERIFY(m_console->expect("led 1 green within 10000"));
}

void SessionTest::cleanup()
{
    if (m_host->isRunning())
        m_host->writeLine(R"({"command":"quit"})");
    m_console->closeInput();
    const int hostStatus = m_host->exitStatus();
    const int consoleStatus = m_console->exitStatus();
    QVERIFY2(hostStatus == 0, m_host->log().right(6000).constData());
    QCOMPARE(consoleStatus, 0);
}

QJsonObject SessionTest::screen(const QString& name)
{
    const QJsonArray screens = m_host->command("screens").value("screens").toArray();
    for (const QJsonValue& one : screens) {
        if (one.toObject().value("screen") == name)
            return one.toObject();
    }
    return {};
}
