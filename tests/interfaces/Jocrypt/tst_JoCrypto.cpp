#include "KyTestMain.h"

#include <JoCrypto.h>

#include <ctime>
#include <string_view>
#include <thread>
#include <vector>

using Jomo::JoCrypto;
using namespace std::string_view_literals;

static const QString KEY_WHILE_LOADING = JoCrypto::ENC_KEY_STORED;

/** Every unit as it is, which QString's conversions do not promise. */
static QString fromUnits(std::u16string_view units)
{
    return QString(reinterpret_cast<const QChar *>(units.data()), int(units.size()));
}

class tst_JoCrypto : public QObject
{
    Q_OBJECT

private slots:
    void everyText_comesBackExactly_data();
    void everyText_comesBackExactly();
    void nullText_comesBackEmpty();
    void cipherText_isPrintableAscii();
    void sameText_isEncipheredDifferentlyEachTime();
    void textEncipheredEarlier_isStillReadable();
    void changedCipherText_decryptsToNothing();
    void shortenedCipherText_decryptsToNothing();
    void foreignText_decryptsToNothing_data();
    void foreignText_decryptsToNothing();
    void otherKeyOrVector_decryptsToNothing_data();
    void otherKeyOrVector_decryptsToNothing();
    void separateObjectsWithOneKey_understandEachOther();
    void storedKeyAndVector_areThereFromTheStart();
    void oneObject_servesManyThreads();
    void tenThousandTexts_takeFarLessThanATenthOfASecond();

private:
    const JoCrypto m_cipher{QStringLiteral("a key"), QStringLiteral("a vector")};
};

void tst_JoCrypto::everyText_comesBackExactly_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString::fromLatin1("");
    QTest::newRow("one character") << QStringLiteral("x");
    QTest::newRow("blanks") << QStringLiteral("  \t\r\n ");
    QTest::newRow("password") << QStringLiteral("pa55 w\"ord';--<&>%1");
    QTest::newRow("beyond ASCII") << QStringLiteral("Grüße, 日本語, привет");
    QTest::newRow("beyond 16 bits") << QString::fromUcs4(U"\U0001F511\U00020000");
    QTest::newRow("null characters") << fromUnits(u"\0a\0\0b\0"sv);
    QTest::newRow("surrogates without partner") << fromUnits(u"\xDC00x\xD800"sv);
    QTest::newRow("no characters") << fromUnits(u"\xFFFE\xFFFF\xFEFF"sv);
    QTest::newRow("own cipher text") << m_cipher.encryptString(QStringLiteral("inner"));
    QTest::newRow("beyond the buffers") << QString(300, QLatin1Char('p'));
    QTest::newRow("a million characters") << QString(1000000, QChar(0x20AC));
}

void tst_JoCrypto::everyText_comesBackExactly()
{
    QFETCH(QString, text);
    const QString cipherText = m_cipher.encryptString(text);
    QVERIFY(!cipherText.isEmpty());
    QVERIFY(cipherText != text);
    QCOMPARE(m_cipher.decryptString(cipherText), text);
}

void tst_JoCrypto::nullText_comesBackEmpty()
{
    const QString cipherText = m_cipher.encryptString(QString());
    QVERIFY(!cipherText.isEmpty());
    QCOMPARE(m_cipher.decryptString(cipherText), QString());
}

void tst_JoCrypto::cipherText_isPrintableAscii()
{
    for (int length = 0; length < 100; ++length) {
        const QString cipherText = m_cipher.encryptString(QString(length, QChar(0x20AC)));
        for (QChar character : cipherText)
            QVERIFY(character > QLatin1Char(' ') && character <= QLatin1Char('~'));
    }
}

void tst_JoCrypto::sameText_isEncipheredDifferentlyEachTime()
{
    QSet<QString> cipherTexts;
    for (int i = 0; i < 1000; ++i)
        cipherTexts.insert(m_cipher.encryptString(QStringLiteral("secret")));
    QCOMPARE(cipherTexts.size(), 1000);
}

void tst_JoCrypto::textEncipheredEarlier_isStillReadable()
{
    // Made with libsodium alone. Databases hold such texts, so a change of the format loses passwords.
    const QString cipherText =
        QStringLiteral("AAECAwQFBgcICQoLDA0ODxAREhMUFRYX7c7L1aB+Z4iDJGuUx9Rd3A0pTnUYfZ6N");
    QCOMPARE(m_cipher.decryptString(cipherText), QStringLiteral("sé€t"));
}

void tst_JoCrypto::changedCipherText_decryptsToNothing()
{
    // Of 3 and of 4 characters, so that the cipher text ends with and without padding.
    for (const QString &text : {QStringLiteral("abc"), QStringLiteral("abcd")}) {
        const QString cipherText = m_cipher.encryptString(text);
        for (int i = 0; i < cipherText.size(); ++i) {
            for (char character = ' '; character <= '~'; ++character) {
                QString changed = cipherText;
                changed[i] = QLatin1Char(character);
                QCOMPARE(m_cipher.decryptString(changed), changed == cipherText ? text : QString());
            }
        }
    }
}

void tst_JoCrypto::shortenedCipherText_decryptsToNothing()
{
    const QString cipherText = m_cipher.encryptString(QStringLiteral("secret"));
    for (int length = 0; length < cipherText.size(); ++length) {
        QCOMPARE(m_cipher.decryptString(cipherText.left(length)), QString());
        QCOMPARE(m_cipher.decryptString(cipherText.right(length)), QString());
    }
}

void tst_JoCrypto::foreignText_decryptsToNothing_data()
{
    const QString cipherText = m_cipher.encryptString(QStringLiteral("secret"));
    const auto zeros = [](int size) {
        return QString::fromLatin1(QByteArray(size, '\0').toBase64());
    };

    QTest::addColumn<QString>("text");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QString::fromLatin1("");
    QTest::newRow("plain password") << QStringLiteral("secret");
    QTest::newRow("shorter than a nonce") << zeros(23);
    QTest::newRow("without authenticator") << zeros(39);
    QTest::newRow("with an empty text's size") << zeros(40);
    QTest::newRow("with half a character") << zeros(41);
    QTest::newRow("with a character") << zeros(42);
    QTest::newRow("padding only") << QStringLiteral("====");
    QTest::newRow("blank before") << QLatin1Char(' ') + cipherText;
    QTest::newRow("line end after") << cipherText + QLatin1Char('\n');
    QTest::newRow("null character after") << cipherText + QChar();
    QTest::newRow("padding after") << cipherText + QLatin1Char('=');
    QTest::newRow("twice") << cipherText + cipherText;
    QTest::newRow("beyond Latin-1") << QString(cipherText).replace(0, 1, QChar(0x20AC));
    QTest::newRow("low byte of a wide character")
        << QString(cipherText).replace(0, 1, QChar(cipherText[0].unicode() + 0x100));
    QTest::newRow("surrogates") << QString(64, QChar(0xD800));
    QTest::newRow("long") << QString(1000000, QLatin1Char('A'));
}

void tst_JoCrypto::foreignText_decryptsToNothing()
{
    QFETCH(QString, text);
    QCOMPARE(m_cipher.decryptString(text), QString());
}

void tst_JoCrypto::otherKeyOrVector_decryptsToNothing_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("vector");
    QTest::newRow("key") << QStringLiteral("A key") << QStringLiteral("a vector");
    QTest::newRow("longer key") << QStringLiteral("a key ") << QStringLiteral("a vector");
    QTest::newRow("empty key") << QString() << QStringLiteral("a vector");
    QTest::newRow("vector") << QStringLiteral("a key") << QStringLiteral("a Vector");
    QTest::newRow("empty vector") << QStringLiteral("a key") << QString();
    QTest::newRow("exchanged") << QStringLiteral("a vector") << QStringLiteral("a key");
}

void tst_JoCrypto::otherKeyOrVector_decryptsToNothing()
{
    QFETCH(QString, key);
    QFETCH(QString, vector);
    const JoCrypto other(key, vector);
    const QString text = QStringLiteral("secret");
    QCOMPARE(other.decryptString(m_cipher.encryptString(text)), QString());
    QCOMPARE(m_cipher.decryptString(other.encryptString(text)), QString());
    QCOMPARE(other.decryptString(other.encryptString(text)), text);
}

void tst_JoCrypto::separateObjectsWithOneKey_understandEachOther()
{
    const JoCrypto writer(QStringLiteral("Schlüssel"), QStringLiteral("Väktor"));
    const JoCrypto reader(QStringLiteral("Schlüssel"), QStringLiteral("Väktor"));
    QCOMPARE(reader.decryptString(writer.encryptString(QStringLiteral("secret"))), QStringLiteral("secret"));
}

void tst_JoCrypto::storedKeyAndVector_areThereFromTheStart()
{
    QVERIFY(!KEY_WHILE_LOADING.isEmpty());
    QCOMPARE(KEY_WHILE_LOADING, JoCrypto::ENC_KEY_STORED);
    QVERIFY(!JoCrypto::ENC_IV_STORED.isEmpty());
    QVERIFY(JoCrypto::ENC_KEY_STORED != JoCrypto::ENC_IV_STORED);
}

void tst_JoCrypto::oneObject_servesManyThreads()
{
    std::vector<int> failures(4, 0);
    std::vector<std::thread> threads;
    for (int &failed : failures) {
        threads.emplace_back([this, &failed]() {
            for (int i = 0; i < 1000; ++i) {
                const QString text = QString::number(i);
                failed += m_cipher.decryptString(m_cipher.encryptString(text)) != text;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(failures, std::vector<int>(4, 0));
}

void tst_JoCrypto::tenThousandTexts_takeFarLessThanATenthOfASecond()
{
#ifdef Q_OS_WIN
    QSKIP("clock() counts the time of other programs here");
#endif
    const std::clock_t start = std::clock();
    for (int i = 0; i < 10000; ++i)
        m_cipher.encryptString(QStringLiteral("secret1234"));
    const double milliseconds = 1000.0 * double(std::clock() - start) / CLOCKS_PER_SEC;
    QVERIFY2(milliseconds < 50, qPrintable(QString::number(milliseconds)));
}

KYTE_TEST_MAIN(tst_JoCrypto)
#include "tst_JoCrypto.moc"
