#include "PickerWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QListWidget>
#include <QPixmap>
#include <QTimer>

/** Chooses a template once all are there, saves a picture of the window and closes it. */
class Photographer : public QObject
{
    Q_OBJECT

public:
    Photographer(PickerWindow *window, const QString &file, int row)
        : QObject(window)
        , m_window(window)
        , m_file(file)
        , m_row(row)
    {
        connect(window, SIGNAL(filled()), this, SLOT(choose()));
    }

private slots:
    void choose()
    {
        const int settlingTime = 500; // milliseconds
        auto *list = m_window->findChild<QListWidget *>();
        list->setCurrentRow(m_row);
        list->scrollToItem(list->currentItem(), QAbstractItemView::PositionAtCenter);
        QTimer::singleShot(settlingTime, this, SLOT(shoot()));
    }

    void shoot()
    {
        m_window->grab().save(m_file);
        m_window->close();
    }

private:
    PickerWindow *m_window = nullptr;
    QString m_file;
    int m_row = 0;
};

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps); // or an icon is drawn in one size and stretched
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Picks a stage template."));
    parser.addHelpOption();
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Save a picture of the window and quit."),
                                        QStringLiteral("file"));
    const QCommandLineOption number(QStringLiteral("template"),
                                    QStringLiteral("Choose this template first, 1 to 11."),
                                    QStringLiteral("number"), QStringLiteral("6"));
    parser.addOptions({screenshot, number});
    parser.process(application);

    PickerWindow window;
    window.show();
    if (parser.isSet(screenshot))
        new Photographer(&window, parser.value(screenshot), parser.value(number).toInt() - 1);
    return QApplication::exec();
}

#include "main.moc"
