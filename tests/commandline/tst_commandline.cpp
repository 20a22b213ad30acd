#include "arguments.h"
#include "linereader.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <unistd.h>

using namespace Orvane::CommandLine;

namespace {

const Program example{
    "example",
    "stand for any program",
    {"It does nothing."},
    {{"file", "path", "Read this."},
     {"side", "left|right", "Go there."},
     {"size", "number", "So large (3).", "3"},
     {"loud", nullptr, "Say more."}},
    {{"SHOW", "What to work on."}},
    {{"0", "Well."}},
    {},
    {}};

/// The page as a reader sees it, on one line.
QString unformatted(QByteArray page)
{
    page.replace("\\-", "-").replace("\\fB", "").replace("\\fI", "").replace("\\fR", "").replace("\\e", "\\");
    return QString::fromUtf8(page).simplified();
}

} // namespace

class TestCommandLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wrongCommandLineIsRefused_data()
    {
        QTest::addColumn<QStringList>("commandLine");
        QTest::newRow("unknown option") << QStringList{"--quiet", "show"};
        QTest::newRow("value for a switch") << QStringList{"--loud=yes", "show"};
        QTest::newRow("no value") << QStringList{"show", "--file"};
        QTest::newRow("neither of two") << QStringList{"--side", "up", "show"};
        QTest::newRow("not both of two") << QStringList{"--side", "left|right", "show"};
        QTest::newRow("no argument") << QStringList{"--loud"};
        QTest::newRow("one argument too many") << QStringList{"show", "other"};
    }

    void wrongCommandLineIsRefused()
    {
        QFETCH(QStringList, commandLine);
        const auto read = readArguments(example, QStringList("example") + commandLine);
        QVERIFY(std::holds_alternative<ExitStatus>(read));
        QCOMPARE(std::get<ExitStatus>(read), ExitRefused);
    }

    void helpManualPageAndVersionAgree_data()
    {
        QTest::addColumn<QString>("program");
        for (const char* program : {"orvane-console-host", "orvane-console-simulator", "orvane-model-check"})
            QTest::newRow(program) << program;
    }

    void helpManualPageAndVersionAgree()
    {
        QFETCH(QString, program);
        const QString help = output(program, "--help");
        QFile file(QStringLiteral(MANUALS "/%1.1").arg(program));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray source = file.readAll();
        const QString page = unformatted(source);

        QVERIFY2(help.startsWith("Usage: " + program + " "), qPrintable(help));
        const QString description = help.section("\n\nOptions:", 0, 0).section('\n', 1);
        for (const QString& paragraph : description.split("\n\n"))
            QVERIFY2(page.contains(paragraph.simplified()), qPrintable(paragraph));

        // An option begins with its name; lines without one go on with its text.
        const QString options =
            help.section("Options:\n", 1).section("\n\n", 0, 0).section("\nArguments", 0, 0);
        QStringList described;
        for (const QString& line : options.section("\nExit status", 0, 0).split('\n')) {
            if (line.startsWith("  -"))
                described += line;
            else
                described.last() += ' ' + line;
        }
        for (QString& option : described) {
            option = option.remove('<').remove('>').simplified();
            QVERIFY2(page.contains(option), qPrintable(option));
        }
        QCOMPARE(source.count(".TP\n\\fB\\-"), described.size());
        for (const QString& status : help.section("Exit status:\n", 1).split("\n  "))
            QVERIFY2(page.contains(status.simplified()), qPrintable(status));

        const QString version = output(program, "--version").trimmed();
        QVERIFY2(version.startsWith(program + " "), qPrintable(version));
        QVERIFY2(
            source.left(source.indexOf('\n')).contains(version.section(' ', 1).toUtf8()), source.constData());
    }

    void linesArriveWholeHoweverTheyAreWritten()
    {
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        QList<QByteArray> lines;
        bool hasEnded = false;
        LineReader reader(
            ends[0], [&](const QByteArray& line) { lines.append(line); }, [&] { hasEnded = true; });
        const auto write = [&](const QByteArray& bytes) {
            QCOMPARE(::write(ends[1], bytes.constData(), size_t(bytes.size())), ssize_t(bytes.size()));
        };
        write("one\n\nth");
        QTRY_COMPARE(lines, (QList<QByteArray>{"one", ""}));
        write("ree\n");
        QTRY_COMPARE(lines.size(), 3);
        QCOMPARE(lines.last(), QByteArray("three"));

        const QByteArray piece(16 * 1024, 'x');
        for (int written = 0; written <= LineReader::MaxLineBytes; written += piece.size()) {
            write(piece);
            QCoreApplication::processEvents();
        }
        write("\nlast");
        QTRY_COMPARE(lines.size(), 4);
        QCOMPARE(lines.last().size(), LineReader::MaxLineBytes);
        QVERIFY(!hasEnded);
        ::close(ends[1]);
        QTRY_VERIFY(hasEnded);
        QCOMPARE(lines.last(), QByteArray("last"));
        ::close(ends[0]);
    }

private:
    static QString output(const QString& program, const QString& option)
    {
        QProcess process;
        process.start(QStringLiteral(PROGRAMS "/") + program, {option});
        return process.waitForFinished() && process.exitCode() == 0
            ? QString::fromUtf8(process.readAllStandardOutput())
            : QString();
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
