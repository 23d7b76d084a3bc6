/*
 * An application that ends in the middle of an asynchronous conversion: ky_conversion PRESENTATION FOLDER WAY
 *
 * The ways: quit, as soon as the converter has said something; at-once, with the first event; return, from
 * main() without an event loop; leaked, as quit but the application object is never deleted; deleted, as quit
 * but without the controlling object; sync, as quit with a conversion on the main thread that nobody deletes;
 * twice, as quit with an application object after another. Prints "ended" last.
 */

#include <KyPptConversion.h>

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <cstdio>

using Kyte::KyPptConversion;

namespace {

class Quitter : public QObject
{
    Q_OBJECT

public:
    QPointer<KyPptConversion> victim;

public slots:
    void onInformationUpdated(QString)
    {
        delete victim.data();
        QCoreApplication::quit();
    }
};

} // namespace

static void convert(const QStringList &arguments, Quitter *quitter)
{
    const QString way = arguments.at(3);
    KyPptConversion *conversion = new KyPptConversion(arguments.at(1), arguments.at(2), false);
    QObject::connect(conversion, SIGNAL(informationUpdated(QString)), quitter,
                     SLOT(onInformationUpdated(QString)));
    if (way == QLatin1String("deleted"))
        quitter->victim = conversion;
    if (way == QLatin1String("at-once"))
        QTimer::singleShot(0, QCoreApplication::instance(), SLOT(quit()));
    if (way == QLatin1String("sync"))
        conversion->start();
    else
        conversion->startAsync();
    if (way != QLatin1String("return"))
        QCoreApplication::exec();
}

int main(int argc, char **argv)
{
    Quitter quitter;
    if (argc == 4 && qstrcmp(argv[3], "leaked") == 0) {
        convert((new QCoreApplication(argc, argv))->arguments(), &quitter);
    } else {
        for (int i = argc == 4 && qstrcmp(argv[3], "twice") == 0 ? 2 : 1; i > 0; --i) {
            QCoreApplication application(argc, argv);
            convert(application.arguments(), &quitter);
        }
    }
    std::puts("ended");
    return 0;
}

#include "ky_conversion.moc"
