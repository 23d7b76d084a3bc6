#include "DockWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QPixmap>
#include <QTimer>

/** Saves a picture of the window after a while and closes it. */
class Photographer : public QObject
{
    Q_OBJECT

public:
    Photographer(DockWindow *window, const QString &file)
        : QObject(window)
        , m_window(window)
        , m_file(file)
    {
        const int settlingTime = 500; // milliseconds
        QTimer::singleShot(settlingTime, this, SLOT(shoot()));
    }

private slots:
    void shoot()
    {
        m_window->grab().save(m_file);
        m_window->close();
    }

private:
    DockWindow *m_window = nullptr;
    QString m_file;
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A window whose dock layout survives a restart."));
    parser.addHelpOption();
    const QCommandLineOption rearrange(QStringLiteral("rearrange"), QStringLiteral("Move the docks first."));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Save a picture of the window and quit."),
                                        QStringLiteral("file"));
    parser.addOptions({rearrange, screenshot});
    parser.process(application);

    DockWindow window;
    window.show();
    if (parser.isSet(rearrange)) {
        QApplication::processEvents();
        window.rearrange();
    }
    if (parser.isSet(screenshot))
        new Photographer(&window, parser.value(screenshot));
    return QApplication::exec();
}

#include "main.moc"
