#pragma once

#include <QByteArray>
#include <QRandomGenerator>

namespace Kyte {

namespace Test {

/** Damages files, in the same way for the same seed on every machine. */
class Mutator
{
public:
    explicit Mutator(quint32 seed);

    /**
     * \a content with some values of attributes changed, or else with bytes, stretches or tokens changed,
     * lost, repeated or put in, which seldom leaves it well-formed.
     */
    QByteArray damagedXml(const QByteArray &content);
    /** \a content with some bits flipped, stretches or whole pages overwritten or exchanged, or its end lost.
     */
    QByteArray damagedDatabase(const QByteArray &content);

private:
    int below(int limit);
    QByteArray noise(int size);
    void changeXml(QByteArray *content);
    void changeValue(QByteArray *content);
    void changeDatabase(QByteArray *content);

    QRandomGenerator m_random;
};

} // namespace Test
} // namespace Kyte
