#pragma once

#include <JocryptExport.h>

#include <QByteArray>
#include <QString>

namespace Jomo {

/**
 * Enciphers short texts, such as passwords, for storage in a text column or a text file.
 *
 * The cipher is XChaCha20-Poly1305: a stored text can neither be read nor changed unnoticed without the key.
 * Its form is the base64 text (printable ASCII) of a random nonce, the enciphered text and the authenticator,
 * so a text of n characters becomes one of about 8 / 3 n + 56, and enciphering a text twice gives two
 * different results. Whoever compares texts deciphers them first.
 *
 * The two operations change nothing, and any number of threads may call them on one object.
 */
class JOCRYPT_EXPORT JoCrypto
{
    Q_DISABLE_COPY(JoCrypto)

public:
    /**
     * Deriving the key makes an object dearer than its use: keep one instead of making one for each text.
     *
     * @param key any text, not stored as such
     * @param iv any text. It is no secret: a text enciphered with another one does not decipher, which keeps
     * texts of different purposes apart under one key.
     */
    JoCrypto(const QString &key, const QString &iv);
    ~JoCrypto();

    /**
     * Keeps every text exactly: the empty one, null characters and surrogates without partner included.
     *
     * @return never empty, except for a text of more than 2^28 characters
     */
    QString encryptString(QString text) const;

    /**
     * The text that encryptString() was given. Empty when \a text did not come from there with the same key
     * and vector or was changed since; the empty text is the only other one whose result is empty.
     */
    QString decryptString(QString text) const;

    /**
     * Key and vector of everything that the product stores. They are chosen when this library is built
     * (CMake: KYTE_JOCRYPT_KEY and KYTE_JOCRYPT_IV) and the defaults are known to everybody: a product
     * replaces them, and never changes them afterwards, for nothing stored before could be read.
     *
     * They are good from the loading of this library until the process has ended.
     */
    static const QString ENC_KEY_STORED;
    static const QString ENC_IV_STORED;

private:
    unsigned char m_key[32] = {};
    QByteArray m_vector; // UTF-8
};

} // namespace Jomo
