/*
 * Opens top-level windows: ky_window [KIND[:MILLISECONDS]]...
 *
 * Each window opens so long after the start, at once without a number. The kinds: main; dialog, which belongs
 * to the main window where that is open; splash; tool; minimized and hidden, which are main windows. Prints
 * "KIND HANDLE" for each, or "ready" when there are none, and runs until it is killed.
 */

#include <QApplication>
#include <QDialog>
#include <QSplashScreen>
#include <QTimer>

#include <cstdio>

static QWidget *makeWindow(const QString &kind)
{
    static QWidget *mainWindow = nullptr;
    if (kind == QLatin1String("splash"))
        return new QSplashScreen(QPixmap(200, 100));
    if (kind == QLatin1String("dialog"))
        return new QDialog(mainWindow);
    if (kind == QLatin1String("tool"))
        return new QWidget(nullptr, Qt::Tool);
    QWidget *window = new QWidget;
    if (kind == QLatin1String("main"))
        mainWindow = window;
    return window;
}

static void openWindow(const QString &kind)
{
    QWidget *window = makeWindow(kind);
    window->resize(200, 100);
    const quint64 handle = window->winId();
    if (kind == QLatin1String("minimized"))
        window->showMinimized();
    else if (kind != QLatin1String("hidden"))
        window->show();
    std::printf("%s %llu\n", qPrintable(kind), handle);
    std::fflush(stdout);
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);

    const QStringList windows = application.arguments().mid(1);
    for (const QString &window : windows) {
        const QString kind = window.section(QLatin1Char(':'), 0, 0);
        const int delay = window.section(QLatin1Char(':'), 1).toInt();
        QTimer::singleShot(delay, [kind]() {
            openWindow(kind);
        });
    }
    if (windows.isEmpty()) {
        std::puts("ready");
        std::fflush(stdout);
    }
    return application.exec();
}
