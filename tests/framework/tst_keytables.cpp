/// The key tables of the commands are what counts. The keyboard loader and the documents, which repeat parts
/// of them, must say the same.

#include "ec/eckeyfunctions.h"
#include "functioncommand.h"
#include "inputcommand.h"
#include "keytable_p.h"
#include "layercommand.h"
#include "numbercommand.h"
#include "presetcommand.h"
#include "screencommand.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <functional>
#include <memory>
#include <set>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;

namespace {

using Codes = std::set<int>;
using MakeCommand = std::function<std::unique_ptr<Command>()>;

template <typename OneCommand> MakeCommand maker()
{
    return [] { return std::make_unique<OneCommand>(); };
}

bool hasHandler(const Internal::BoundKeyRow& row)
{
    return row.pressed || row.released;
}

/// The codes of the table's rows without that of keys that have no function.
Codes codesOf(const Command& command, bool withHandlerOnly)
{
    Codes codes;
    for (const auto& row : command.keyTable().rows()) {
        if (row.code != 0 && (hasHandler(row) || !withHandlerOnly))
            codes.insert(row.code);
    }
    return codes;
}

QString text(const Codes& codes)
{
    QStringList numbers;
    for (const int code : codes)
        numbers.append(QString::number(code));
    return numbers.join(QLatin1Char(' '));
}

QStringList linesOf(const QString& document)
{
    QFile file(QStringLiteral(DOCUMENTS "/") + document);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

/// The numbers of a text such as "10, 15" or "12 and 13 without function".
Codes numbersIn(const QString& text)
{
    static const QRegularExpression number(QStringLiteral("\\b\\d+\\b"));
    Codes codes;
    for (auto match = number.globalMatch(text); match.hasNext();)
        codes.insert(match.next().captured().toInt());
    return codes;
}

/// The codes in the first column of the document's table number `table`.
Codes codesOfKeyTable(const QString& document, int table)
{
    Codes codes;
    int tables = -1;
    bool isInside = false;
    const QStringList lines = linesOf(document);
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1String("| Code | Key |")))
            isInside = ++tables == table;
        else if (!line.startsWith(QLatin1Char('|')))
            isInside = false;
        else if (isInside)
            codes.merge(numbersIn(line.section(QLatin1Char('|'), 1, 1)));
    }
    return codes;
}

/// The group's row in the list of function codes: "1 select, 2 page up, ...".
QString codeListOf(const QString& group)
{
    const QStringList lines = linesOf(QStringLiteral("keyboard-file.md"));
    const QString start = QStringLiteral("| `%1` |").arg(group);
    for (const QString& line : lines) {
        if (line.startsWith(start))
            return line.mid(start.size());
    }
    return {};
}

} // namespace

Q_DECLARE_METATYPE(MakeCommand)

class TestKeyTables : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void loaderKnowsEachCodeAndNoOther_data() { addCommands(); }
    void loaderKnowsEachCodeAndNoOther()
    {
        const auto command = make();
        const QStringList names = EC::keyFunctionNames(command->name());
        const Codes codes = codesOf(*command, false);
        QVERIFY(!codes.empty());
        QCOMPARE(int(codes.size()), *codes.rbegin()); // no hole
        QCOMPARE(names.size() - 1, *codes.rbegin());
        for (const auto& row : command->keyTable().rows()) {
            if (hasHandler(row))
                QVERIFY2(names.at(row.code) != names.at(0), row.name);
        }
    }

    void eachCodeHasOneRow_data() { addCommands(); }
    void eachCodeHasOneRow()
    {
        const auto command = make();
        Codes seen;
        for (const auto& row : command->keyTable().rows())
            QVERIFY2(seen.insert(row.code).second, row.name);
    }

    void keyboardFileListsEachCode_data() { addCommands(); }
    void keyboardFileListsEachCode()
    {
        const auto command = make();
        const QString list = codeListOf(command->name());
        QCOMPARE(text(numbersIn(list)), text(codesOf(*command, false)));
        const QStringList parts = list.split(QLatin1Char(','));
        for (const QString& part : parts) {
            if (!part.contains(QLatin1String("without function")))
                continue;
            for (const int code : numbersIn(part))
                QVERIFY2(!hasHandler(*command->keyTable().find(code)), qPrintable(part));
        }
    }

    void documentDescribesEachKeyThatDoesSomething_data() { addCommands(); }
    void documentDescribesEachKeyThatDoesSomething()
    {
        QFETCH(QString, document);
        QFETCH(int, table);
        if (document.isEmpty())
            QSKIP("the digits need no table");
        const auto command = make();
        const Codes described = codesOfKeyTable(document, table);
        const Codes known = codesOf(*command, false);
        for (const int code : codesOf(*command, true))
            QVERIFY2(described.count(code) == 1, command->keyTable().find(code)->name);
        for (const int code : described)
            QVERIFY2(known.count(code) == 1, qPrintable(QString::number(code)));
    }

private:
    static void addCommands()
    {
        QTest::addColumn<MakeCommand>("makeCommand");
        QTest::addColumn<QString>("document");
        QTest::addColumn<int>("table");
        const QString layerKeys = QStringLiteral("layer-keys.md");
        const QString presetKeys = QStringLiteral("preset-keys.md");
        QTest::newRow("screens") << maker<ScreenCommand>() << QStringLiteral("screen-keys.md") << 0;
        QTest::newRow("layers") << maker<LayerCommand>() << layerKeys << 0;
        QTest::newRow("inputs") << maker<InputCommand>() << layerKeys << 1;
        QTest::newRow("presets") << maker<PresetCommand>() << presetKeys << 0;
        QTest::newRow("functions") << maker<FunctionCommand>() << presetKeys << 1;
        QTest::newRow("digits") << maker<NumberCommand>() << QString() << 0;
    }

    static std::unique_ptr<Command> make()
    {
        QFETCH(MakeCommand, makeCommand);
        return makeCommand();
    }
};

QTEST_MAIN(TestKeyTables)
#include "tst_keytables.moc"
