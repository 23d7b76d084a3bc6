#include "KyCnvProtocol.h"

#include <QElapsedTimer>
#include <QThread>

#include <cstdio>

namespace Kyte {

static const int MESSAGE_DISTANCE = 40; // milliseconds, for a reader on a busy machine

void say(KyCnvCode code, const QString &text)
{
    static QElapsedTimer last;
    if (last.isValid() && last.elapsed() < MESSAGE_DISTANCE)
        QThread::msleep(ulong(MESSAGE_DISTANCE - last.elapsed()));
    const QByteArray message = QStringLiteral("[%1](%2)\n").arg(QString::number(int(code)), text).toUtf8();
    std::fwrite(message.constData(), 1, size_t(message.size()), stdout);
    std::fflush(stdout);
    last.start();
}

} // namespace Kyte
