#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyChannelConfig.h>
#include <KyDestination.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>

using namespace Kyte;

/**
 * Runs the library under a translation that puts every text of the template into brackets, and under the
 * German one.
 */
class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void everyTextOfTheTemplate_isTranslated();
    void message_isTranslated();
    void messageWithArgument_isTranslated();
    void german_isCompleteAndKeepsWhatIsNoText();
    void german_reachesTheUser();

private:
    bool loadGerman();
    QString bracketedCopy(const QByteArray &content);

    QTemporaryDir m_folder;
    QList<QPair<QByteArray, QString>> m_texts; // context and source
    int m_messageCount = 0;
    QTranslator m_translator;
    QTranslator m_german;
};

QString tst_Translations::bracketedCopy(const QByteArray &content)
{
    QXmlStreamReader reader(content);
    QByteArray copy;
    QXmlStreamWriter writer(&copy);
    QByteArray context;
    QString source;
    while (!reader.atEnd()) {
        reader.readNext();
        const QString name = reader.name().toString();
        if (reader.isStartElement() && name == QLatin1String("translation")) {
            reader.skipCurrentElement();
            writer.writeTextElement(name, QLatin1Char('[') + source + QLatin1Char(']'));
        } else if (reader.isStartElement()
                   && (name == QLatin1String("source") || name == QLatin1String("name"))) {
            const QString text = reader.readElementText();
            if (name == QLatin1String("name")) {
                context = text.toUtf8();
            } else {
                source = text;
                m_texts.append({context, source});
            }
            writer.writeTextElement(name, text);
        } else if (!reader.isDTD()) {
            writer.writeCurrentToken(reader);
        }
    }
    const QString path = m_folder.filePath(QStringLiteral("bracketed.ts"));
    Test::writeFile(path, copy);
    return path;
}

void tst_Translations::initTestCase()
{
    const QByteArray content = Test::readFile(qEnvironmentVariable("KYTE_TRANSLATION_TEMPLATE"));
    QVERIFY(!content.isEmpty());
    m_messageCount = content.count("<message>");
    const QString compiled = m_folder.filePath(QStringLiteral("bracketed.qm"));
    QCOMPARE(QProcess::execute(
                 qEnvironmentVariable("KYTE_LRELEASE"),
                 {QStringLiteral("-silent"), bracketedCopy(content), QStringLiteral("-qm"), compiled}),
             0);
    QVERIFY(m_translator.load(compiled));
}

void tst_Translations::init()
{
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
}

void tst_Translations::cleanup()
{
    QCoreApplication::removeTranslator(&m_translator);
    QCoreApplication::removeTranslator(&m_german);
}

void tst_Translations::everyTextOfTheTemplate_isTranslated()
{
    QVERIFY(!m_texts.isEmpty());
    QCOMPARE(m_texts.size(), m_messageCount);
    for (const auto &text : qAsConst(m_texts)) {
        // A form's texts are in the context of the form, which has no namespace.
        QVERIFY2(text.first.startsWith("Kyte::Ky") || text.first == "KyCommonInputNameDialog",
                 text.first.constData());
        QCOMPARE(QCoreApplication::translate(text.first.constData(), text.second.toUtf8().constData()),
                 QLatin1Char('[') + text.second + QLatin1Char(']'));
    }
}

void tst_Translations::message_isTranslated()
{
    KyDestination destination;
    destination.startToRead();
    QCOMPARE(destination.lastErrorMessage(), QStringLiteral("[The database connection does not exist.]"));
}

void tst_Translations::messageWithArgument_isTranslated()
{
    KyChannelConfig config;
    QVERIFY(!config.getAllChannelInfoFromFiles(QStringLiteral("/no/such/folder")));
    QCOMPARE(config.lastErrorMessage(),
             QStringLiteral("[The Channel folder \"%1\" does not exist.]")
                 .arg(QDir::toNativeSeparators(QStringLiteral("/no/such/folder"))));
}

/** As an application does it. */
bool tst_Translations::loadGerman()
{
    QCoreApplication::removeTranslator(&m_translator);
    return m_german.load(QLocale(QLocale::German, QLocale::Austria), QStringLiteral("kyeditorcommon"),
                         QStringLiteral("_"), qEnvironmentVariable("KYTE_TRANSLATIONS_DIR"))
        && QCoreApplication::installTranslator(&m_german);
}

/** Arguments, tags and line ends of \a text, in order. */
static QStringList markupOf(const QString &text)
{
    static const QRegularExpression MARKUP(QStringLiteral("%\\d|</?\\w+ ?/?>|\n"));
    QStringList markup;
    QRegularExpressionMatchIterator matches = MARKUP.globalMatch(text);
    while (matches.hasNext())
        markup.append(matches.next().captured());
    return markup;
}

void tst_Translations::german_isCompleteAndKeepsWhatIsNoText()
{
    QVERIFY(loadGerman());
    for (const auto &text : qAsConst(m_texts)) {
        const QString german = m_german.translate(text.first.constData(), text.second.toUtf8().constData());
        QVERIFY2(!german.isEmpty(), qPrintable(text.second));
        QCOMPARE(markupOf(german), markupOf(text.second));
        QCOMPARE(german.endsWith(QLatin1Char(' ')), text.second.endsWith(QLatin1Char(' ')));
    }
}

void tst_Translations::german_reachesTheUser()
{
    QVERIFY(loadGerman());
    KyDestination destination;
    destination.startToRead();
    QCOMPARE(destination.lastErrorMessage(), QStringLiteral("Die Verbindung zur Datenbank besteht nicht."));
}

KYTE_TEST_MAIN(tst_Translations)
#include "tst_Translations.moc"
