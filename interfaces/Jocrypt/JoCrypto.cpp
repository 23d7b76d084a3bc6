#include "JoCrypto.h"

#include <QVarLengthArray>
#include <QtEndian>

#include <utility>

#include <sodium.h>

namespace Jomo {

// A stored text is the nonce, the enciphered UTF-16 units in little-endian order, and the authenticator.
// UTF-16 and not UTF-8, which could not carry every QString.
static const int NONCE_SIZE = crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
static const int OVERHEAD = NONCE_SIZE + crypto_aead_xchacha20poly1305_ietf_ABYTES;
static const int MAX_TEXT_SIZE = 1 << 28; // the base64 text of much longer ones would outgrow a QString
static const int BASE64 = sodium_base64_VARIANT_ORIGINAL;

using Buffer = QVarLengthArray<unsigned char, 256>; // passwords need no allocation

// Literals: they are never freed, so they stay readable while the process ends.
const QString JoCrypto::ENC_KEY_STORED = QStringLiteral(KYTE_JOCRYPT_KEY);
const QString JoCrypto::ENC_IV_STORED = QStringLiteral(KYTE_JOCRYPT_IV);

static const unsigned char *toBytes(const QByteArray &text)
{
    return reinterpret_cast<const unsigned char *>(text.constData());
}

JoCrypto::JoCrypto(const QString &key, const QString &iv)
    : m_vector(iv.toUtf8())
{
    static_assert(sizeof m_key == crypto_aead_xchacha20poly1305_ietf_KEYBYTES,
                  "the key's size is the cipher's");

    if (sodium_init() < 0)
        qFatal("JoCrypto: libsodium cannot be initialised"); // without it there is no safe nonce

    QByteArray text = key.toUtf8();
    crypto_generichash(m_key, sizeof m_key, toBytes(text), quint64(text.size()), nullptr, 0);
    sodium_memzero(text.data(), size_t(text.size()));
}

JoCrypto::~JoCrypto()
{
    sodium_memzero(m_key, sizeof m_key);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
QString JoCrypto::encryptString(QString text) const
{
    if (text.size() > MAX_TEXT_SIZE)
        return QString();

    // The text is enciphered where it was copied to, so that no plain copy of it stays behind in memory.
    const int textBytes = text.size() * int(sizeof(QChar));
    Buffer message(OVERHEAD + textBytes);
    unsigned char *nonce = message.data();
    unsigned char *body = nonce + NONCE_SIZE;
    randombytes_buf(nonce, NONCE_SIZE);
    qToLittleEndian<quint16>(text.constData(), text.size(), body);
    crypto_aead_xchacha20poly1305_ietf_encrypt(body, nullptr, body, quint64(textBytes), toBytes(m_vector),
                                               quint64(m_vector.size()), nullptr, nonce, m_key);

    QVarLengthArray<char, 512> base64(int(sodium_base64_encoded_len(size_t(message.size()), BASE64)));
    sodium_bin2base64(base64.data(), size_t(base64.size()), message.constData(), size_t(message.size()),
                      BASE64);
    return QString::fromLatin1(base64.constData(), base64.size() - 1); // it ends with a null character
}

QString JoCrypto::decryptString(QString text) const
{
    // '?' takes the place of every character beyond Latin-1, and base64 refuses it.
    const QByteArray base64 = std::move(text).toLatin1();
    Buffer message(base64.size() / 4 * 3);
    size_t size = 0;
    if (sodium_base642bin(message.data(), size_t(message.size()), base64.constData(), size_t(base64.size()),
                          nullptr, &size, nullptr, BASE64)
        != 0)
        return QString();

    const int textBytes = int(size) - OVERHEAD;
    if (textBytes < 0 || textBytes % int(sizeof(QChar)) != 0)
        return QString();

    QString plain(textBytes / int(sizeof(QChar)), Qt::Uninitialized);
    const unsigned char *nonce = message.constData();
    if (crypto_aead_xchacha20poly1305_ietf_decrypt(reinterpret_cast<unsigned char *>(plain.data()), nullptr,
                                                   nullptr, nonce + NONCE_SIZE, size - NONCE_SIZE,
                                                   toBytes(m_vector), quint64(m_vector.size()), nonce, m_key)
        != 0)
        return QString();
    qFromLittleEndian<quint16>(plain.constData(), plain.size(), plain.data());
    return plain;
}

} // namespace Jomo
