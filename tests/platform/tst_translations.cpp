#include "bizmodel/translations.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>

using namespace Orvane::BizModel::Translate;

/// The translations that the library brings: each is complete and keeps what is filled in.
class TestTranslations : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyTextIsTranslatedAndKeepsItsPlaceholder_data()
    {
        QTest::addColumn<QString>("language");
        QCOMPARE(languages(), QStringList({"de", "zh_CN"}));
        for (const QString& language : languages())
            QTest::newRow(qUtf8Printable(language)) << language;
    }

    void everyTextIsTranslatedAndKeepsItsPlaceholder()
    {
        QFETCH(QString, language);
        QTranslator translator;
        QVERIFY(loadLanguage(translator, language));
        const QStringList texts = textsOfTheModel();
        QVERIFY(texts.size() > 30);
        for (const QString& text : texts) {
            const QString translated = translator.translate("Model", qUtf8Printable(text));
            QVERIFY2(!translated.isEmpty(), qUtf8Printable(text));
            QCOMPARE(translated.contains("%1"), text.contains("%1"));
        }
    }

private:
    /// Read from the header itself: a text that is added there is asked for here.
    static QStringList textsOfTheModel()
    {
        QFile header(TEXTS_HEADER);
        if (!header.open(QIODevice::ReadOnly))
            return {};
        const QRegularExpression marked("QT_TRANSLATE_NOOP\\(\"Model\",\\s*\"([^\"]+)\"\\)");
        QStringList texts;
        auto found = marked.globalMatch(QString::fromUtf8(header.readAll()));
        while (found.hasNext())
            texts += found.next().captured(1);
        return texts;
    }
};

QTEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
