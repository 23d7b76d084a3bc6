#include "ContactSheet.h"
#include "ExhibitWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QStyleFactory>
#include <QTextStream>

static QPalette darkPalette()
{
    QPalette palette(QColor(0x3a, 0x3a, 0x3a), QColor(0x2a, 0x2a, 0x2a));
    palette.setColor(QPalette::Link, QColor(0x7a, 0xb8, 0xff));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x80, 0x80));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x80, 0x80, 0x80));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x80, 0x80, 0x80));
    return palette;
}

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows every dialog and widget of the library."));
    parser.addHelpOption();
    const QCommandLineOption sheet(QStringLiteral("sheet"),
                                   QStringLiteral("Draw them all onto a picture and quit."),
                                   QStringLiteral("file"));
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("With a dark palette."));
    const QCommandLineOption rightToLeft(QStringLiteral("right-to-left"), QStringLiteral("Mirrored."));
    parser.addOptions({sheet, dark, rightToLeft});
    parser.process(application);

    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (parser.isSet(dark))
        QApplication::setPalette(darkPalette());
    if (parser.isSet(rightToLeft))
        QApplication::setLayoutDirection(Qt::RightToLeft);
    if (parser.isSet(sheet)) {
        if (contactSheet().save(parser.value(sheet)))
            return 0;
        QTextStream(stderr) << "cannot write " << parser.value(sheet) << "\n";
        return 1;
    }
    ExhibitWindow window;
    window.show();
    return QApplication::exec();
}
