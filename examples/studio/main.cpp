#include "FirstStart.h"
#include "MainWindow.h"
#include "Tour.h"

#include <KyEditorConfig.h>
#include <KyProductInformation.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QTextStream>

#include <memory>

static int complain(const QString &text)
{
    QTextStream(stderr) << text << "\n";
    return 1;
}

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); // for who looks into the library
    QApplication::setApplicationName(QStringLiteral("kystudio"));
    QApplication::setApplicationVersion(QStringLiteral(STUDIO_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Stages, media and destinations in one window."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption sample(
        QStringLiteral("sample"),
        QStringLiteral("Work in a sample environment in this folder, which is made if necessary."),
        QStringLiteral("DIR"));
    const QCommandLineOption screenshots(
        QStringLiteral("screenshots"),
        QStringLiteral("Go through a sample environment, write pictures into this folder and quit."),
        QStringLiteral("DIR"));
    parser.addOptions({sample, screenshots});
    parser.process(application);

    Kyte::KyProductInformation product(QApplication::applicationName(), QApplication::applicationVersion());
    Kyte::KyEditorConfig::setProductInformation(&product);
    if (parser.isSet(screenshots)) {
        Tour tour(parser.value(screenshots));
        return tour.start() ? QApplication::exec() : complain(tour.lastErrorMessage());
    }

    FirstStart start;
    if (parser.isSet(sample)) {
        if (!start.createSample(parser.value(sample)))
            return complain(start.lastErrorMessage());
    } else if (!start.find()) {
        if (!start.lastErrorMessage().isEmpty()) {
            QMessageBox::critical(nullptr, QApplication::applicationName(), start.lastErrorMessage());
            return 1;
        }
        if (!start.offer(nullptr))
            return 1;
    }
    MainWindow window;
    window.show();
    window.open();
    return QApplication::exec();
}
