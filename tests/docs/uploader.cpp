#include <KyDestination.h>

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    Kyte::KyDestination destination;
    if (!destination.init()) {
        QTextStream(stderr) << destination.lastErrorMessage() << "\n";
        return 1;
    }
    destination.readChannels();
    const QStringList names = destination.channelNames()->values();
    QTextStream(stdout) << names.join("\n") << "\n";
    return 0;
}
