#pragma once

#include <QDataStream>
#include <QMetaType>
#include <QPair>
#include <QVariant>
#include <QVector>

namespace Kyte {
namespace Test {

/** A type of an application, with stream operators of its own and variants inside. */
struct Caption
{
    QString text;
    QVariantMap options;
};

/** A type of an application that nobody gave stream operators. */
struct Unstreamed
{
    int number = 0;
};

/** A type of an application whose operator throws when it reads. */
struct Thrower
{
    int number = 0;
};

QDataStream &operator<<(QDataStream &stream, const Caption &caption);
QDataStream &operator>>(QDataStream &stream, Caption &caption);
QDataStream &operator<<(QDataStream &stream, const Thrower &thrower);
QDataStream &operator>>(QDataStream &stream, Thrower &thrower);

/** Registers the types above and a few containers, with their stream operators. */
void registerItemTypes();

struct NamedVariant
{
    QByteArray name;
    QVariant value;
};

/** At least one value of every type that a variant can be streamed with. */
QVector<NamedVariant> sampleVariants();

/** One record of a payload: \a row, \a column and \a value as the display role. */
QByteArray record(int row, int column, const QVariant &value);

} // namespace Test
} // namespace Kyte

Q_DECLARE_METATYPE(Kyte::Test::Caption)
Q_DECLARE_METATYPE(Kyte::Test::Unstreamed)
Q_DECLARE_METATYPE(Kyte::Test::Thrower)
