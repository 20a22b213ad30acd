#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QVector>

#include <functional>
#include <memory>

/// Answers in this test are a matter of milliseconds; a machine under load, or a sanitizer, takes longer.
constexpr int PatienceMs = 20000;

/// One of our programs in a process of its own, with the JSON lines that it writes. Ends with the object.
class Program {
public:
    explicit Program(const QString& binary);
    ~Program();

    void start(const QStringList& arguments);
    void writeLine(const QByteArray& line);
    /// What was written and not yet looked at by `next`.
    /// @return the first that fits, an empty object when there is none in time. It and all before it are
    /// then passed over.
    QJsonObject next(const std::function<bool(const QJsonObject&)>& fits);
    /// The same for one that has all these members, whatever else it has.
    QJsonObject next(const QJsonObject& members);

    const QVector<QJsonObject>& lines() const { return m_lines; }
    /// Standard error so far.
    QByteArray log() const { return m_log; }
    bool waitForLog(const QByteArray& text) const;

    void terminate() { m_process.terminate(); }
    void closeInput() { m_process.closeWriteChannel(); }
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    /// Waits for the end. The exit status; -1 when it goes on or has crashed.
    int exitStatus();

private:
    void takeOutput();

    const QString m_binary;
    QProcess m_process;
    QByteArray m_unfinished;
    QVector<QJsonObject> m_lines;
    QByteArray m_log;
    int m_nNext = 0;
};

/// The reference host, without a window.
class Host : public Program {
public:
    Host();
    /// False when it does not get ready.
    bool start(const QStringList& more = {});
    /// Runs one command and waits for its answer, the events before it left for `next`.
    QJsonObject command(const QString& name, QJsonObject arguments = {});
    bool hasDone(const QString& name, const QJsonObject& arguments = {});
    /// Waits for the next event of that name with these members.
    bool tells(const char* event, QJsonObject members = {});
    /// Waits until a field's text is this.
    bool shows(const char* field, const char* text);

private:
    int m_nCommands = 0;
};

/// The console.
class Console : public Program {
public:
    Console();
    /// False when it does not get ready.
    bool start(const QStringList& more = {});
    /// False, with the console's own words in the log, when the expectation fails.
    bool expect(const QByteArray& condition);
};

/// Every test has a console, and a host that shows a copy of the example show, from its start to its end.
class SessionTest : public QObject {
    Q_OBJECT

protected Q_SLOTS:
    /// Fails when a program does not get ready, or the console's first keys stay dark.
    void init() { init({}); }
    /// Fails when a program does not end well; an expectation of the console that failed is one reason.
    void cleanup();

protected:
    /// As the slot, with more options for the host.
    void init(const QStringList& hostOptions);
    void press(int key) { m_console->writeLine("press " + QByteArray::number(key)); }
    void release(int key) { m_console->writeLine("release " + QByteArray::number(key)); }
    void hold(int key, int ms)
    {
        m_console->writeLine("hold " + QByteArray::number(key) + ' ' + QByteArray::number(ms));
    }
    /// Down and up again, at once.
    void tap(int key)
    {
        press(key);
        release(key);
    }
    /// Waits until the key shows this.
    bool lights(int key, const QByteArray& look)
    {
        return m_console->expect("led " + QByteArray::number(key) + ' ' + look);
    }
    bool isDone(const QString& command, const QJsonObject& arguments = {})
    {
        return m_host->hasDone(command, arguments);
    }
    /// One of the active device's screens, as the host tells it.
    QJsonObject screen(const QString& name);
    QString showFile() const { return m_directory->filePath("show.json"); }

    std::unique_ptr<Console> m_console;
    std::unique_ptr<Host> m_host;

private:
    std::unique_ptr<QTemporaryDir> m_directory; // the host may write its show
};
