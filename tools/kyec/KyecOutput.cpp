#include "KyecOutput.h"

#include "KyecCommand.h"

#include <QByteArray>

#include <cstdio>

namespace Kyte {

static void write(const QByteArray &bytes, std::FILE *stream)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

void print(const QString &text)
{
    write(text.toUtf8(), stdout);
}

void printError(const QString &message)
{
    std::fflush(stdout); // so that a terminal shows both streams in order
    write(QStringLiteral("kyec: %1\n").arg(message).toUtf8(), stderr);
}

int fail(const QString &message)
{
    printError(message);
    return Exit_Failure;
}

bool finishOutput()
{
    return std::fflush(stdout) == 0 && !std::ferror(stdout);
}

QString jsonText(const QJsonDocument &document)
{
    return QString::fromUtf8(document.toJson());
}

QString counted(int count, const QString &noun)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), noun,
                                         count == 1 ? QString() : QStringLiteral("s"));
}

} // namespace Kyte
