/// The key tables of the commands are what counts. What the loader, the documents and the operator's guide
/// say of the keys must agree with them.

#include "ec/eckeyfunctions.h"
#include "functioncommand.h"
#include "inputcommand.h"
#include "keytable_p.h"
#include "layercommand.h"
#include "numbercommand.h"
#include "operatorguide.h"
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
        const EC::KeyGroupInfo* const group = EC::findKeyGroup(command->name());
        QVERIFY(group);
        const Codes codes = codesOf(*command, false);
        QVERIFY(!codes.empty());
        QCOMPARE(int(codes.size()), *codes.rbegin()); // no hole
        QCOMPARE(int(group->functions.size()) - 1, *codes.rbegin());
    }

    void aKeyIsDescribedAsItWorks_data() { addCommands(); }
    void aKeyIsDescribedAsItWorks()
    {
        const auto command = make();
        for (const auto& row : command->keyTable().rows()) {
            const EC::KeyFunction* const function = EC::findKeyFunction(command->name(), row.code);
            QVERIFY2(function, qPrintable(text({row.code})));
            QVERIFY2(function->isUsed() == hasHandler(row), function->name);
            QVERIFY2(
                function->worksInDialog == bool(row.traits & Internal::PressPassesDialog), function->name);
            QVERIFY2(
                function->worksWhenLocked == bool(row.traits & Internal::PassesKeypadLock), function->name);
            if (*function->hold) // what a hold began must be stopped when its release is dropped
                QVERIFY2(row.rest, function->name);
            if (row.light == Internal::KeyLight::Lasting)
                QVERIFY2(*function->light, function->name);
        }
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
        if (document.isEmpty())
            QSKIP("the digits need no table");
        const QStringList lines = linesOf(document);
        const auto command = make();
        for (const int code : codesOf(*command, true)) {
            const EC::KeyFunction& function = *EC::findKeyFunction(command->name(), quint16(code));
            const QString row =
                QStringLiteral("| %1 | %2 |")
                    .arg(code)
                    .arg(KeyboardTools::functionCells(function, QLatin1String(function.name)));
            QVERIFY2(lines.contains(row), qPrintable(row));
        }
    }

private:
    static void addCommands()
    {
        QTest::addColumn<MakeCommand>("makeCommand");
        QTest::addColumn<QString>("document");
        const QString layerKeys = QStringLiteral("layer-keys.md");
        const QString presetKeys = QStringLiteral("preset-keys.md");
        QTest::newRow("screens") << maker<ScreenCommand>() << QStringLiteral("screen-keys.md");
        QTest::newRow("layers") << maker<LayerCommand>() << layerKeys;
        QTest::newRow("inputs") << maker<InputCommand>() << layerKeys;
        QTest::newRow("presets") << maker<PresetCommand>() << presetKeys;
        QTest::newRow("functions") << maker<FunctionCommand>() << presetKeys;
        QTest::newRow("digits") << maker<NumberCommand>() << QString();
    }

    static std::unique_ptr<Command> make()
    {
        QFETCH(MakeCommand, makeCommand);
        return makeCommand();
    }
};

QTEST_MAIN(TestKeyTables)
#include "tst_keytables.moc"
