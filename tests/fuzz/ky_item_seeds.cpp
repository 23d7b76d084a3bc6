/* Writes a payload of each sample variant into the folder that it is given: what a fuzzer starts from. */

#include "KyItemSamples.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

using namespace Kyte;

int main(int argc, char **argv)
{
    const int maxSize = 20000; // larger ones only slow the fuzzer down
    QGuiApplication application(argc, argv);
    if (argc != 2 || !QDir().mkpath(QFile::decodeName(argv[1])))
        return 1;
    Test::registerItemTypes();
    const QVector<Test::NamedVariant> samples = Test::sampleVariants();
    for (const Test::NamedVariant &sample : samples) {
        const QByteArray payload = Test::record(1, 2, sample.value) + Test::record(3, 4, 5);
        if (payload.size() > maxSize)
            continue;
        QFile file(QDir(QFile::decodeName(argv[1])).filePath(QString::fromLatin1(sample.name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(payload) != payload.size())
            return 1;
    }
    return 0;
}
