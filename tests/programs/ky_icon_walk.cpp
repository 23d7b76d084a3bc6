#include <KyIconReader.h>
#include <KyIconReaderAsync.h>

#include <QGuiApplication>
#include <QIcon>
#include <QPointer>
#include <QStringList>
#include <QThread>

#include <cstdio>

using namespace Kyte;

// ky_icon_walk HOW FILE: reads the thumbnail of FILE over and over, which would take minutes, and ends when
// the first one is there. HOW the reader goes: "keep" (never), "delete" (before), "child" (with the
// application). "nogui" reads images only, in a program that cannot have a pixmap.

static QStringList endlessList(const QString &path)
{
    QStringList paths;
    for (int i = 0; i < 2000000; ++i)
        paths.append(path);
    return paths;
}

static int say(const char *text)
{
    std::puts(text);
    return std::fflush(stdout);
}

static int walkWithoutGui(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QStringList paths = endlessList(QCoreApplication::arguments().at(2));
    KyIconReader reader(paths);
    QThread thread;
    reader.moveToThread(&thread);
    QObject::connect(&thread, SIGNAL(started()), &reader, SLOT(readIconImage()));
    QObject::connect(&reader, SIGNAL(readingImageCompleted(QString, QImage)), &application, SLOT(quit()));
    thread.start();
    QCoreApplication::exec();
    reader.abort();
    thread.quit();
    thread.wait();
    return say("ended");
}

/** Answers the thread, which is to be at its end when the application is gone. */
static QPointer<QThread> walk(int argc, char **argv)
{
    const QByteArray how = argv[1];
    static KyIconReaderAsync *reader; // so that a kept one is no leak
    QGuiApplication application(argc, argv);
    reader = new KyIconReaderAsync(endlessList(QGuiApplication::arguments().at(2)),
                                   how == "child" ? &application : nullptr);
    QObject::connect(reader, &KyIconReaderAsync::iconReadCompleted, [](const QString &, QIcon *icon) {
        delete icon;
        QCoreApplication::quit();
    });
    reader->start();
    const QPointer<QThread> thread = reader->findChild<QThread *>();
    QGuiApplication::exec();
    if (how == "delete")
        delete reader;
    return thread;
}

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    if (QByteArray(argv[1]) == "nogui")
        return walkWithoutGui(argc, argv);
    const QPointer<QThread> thread = walk(argc, argv);
    return say(!thread || thread->isFinished() ? "ended" : "still reading");
}
