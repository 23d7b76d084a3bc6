#include "BrowserWindow.h"
#include "SampleLibrary.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QPixmap>

#include <memory>

/** Saves a picture of the window after a while and closes it. */
class Photographer : public QObject
{
    Q_OBJECT

public:
    Photographer(QWidget *window, const QString &file)
        : QObject(window)
        , m_window(window)
        , m_file(file)
    {
        const int settlingTime = 1500; // milliseconds
        QTimer::singleShot(settlingTime, this, SLOT(shoot()));
    }

private slots:
    void shoot()
    {
        const bool isSaved = m_window->grab().save(m_file);
        m_window->close();
        QApplication::exit(isSaved ? 0 : 1);
    }

private:
    QWidget *m_window = nullptr;
    QString m_file;
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A media library to browse, rename and rearrange."));
    parser.addHelpOption();
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Save a picture of the window and quit."),
                                        QStringLiteral("file"));
    parser.addOption(screenshot);
    parser.addPositionalArgument(QStringLiteral("folder"),
                                 QStringLiteral("The library; a sample one if left out."),
                                 QStringLiteral("[folder]"));
    parser.process(application);

    const QString folder = parser.positionalArguments().value(0);
    if (!folder.isEmpty() && !QFileInfo(folder).isDir()) {
        qWarning("%s is no folder.", qPrintable(folder));
        return 1;
    }
    const std::unique_ptr<SampleLibrary> sample(folder.isEmpty() ? new SampleLibrary : nullptr);
    BrowserWindow window(sample ? sample->path() : folder);
    window.show();
    if (sample)
        window.openFolder(sample->firstFolder());
    if (parser.isSet(screenshot))
        new Photographer(&window, parser.value(screenshot));
    return QApplication::exec();
}

#include "main.moc"
