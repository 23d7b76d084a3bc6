#include "KyBench.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <cstdlib>

using namespace Kyte;

// Both sides turn the same presentation into the same pictures and are timed by the clock, since the work is
// done in other programs. The reference is what one types into a shell: the office suite, with a profile that
// it has used before, makes a PDF, of which pdftoppm makes PNG files.

static const int SLIDES = 20;
static const QSize SIZE(1280, 720);

/** Slides with a title, lines of text and shapes on a gradient, as flat OpenDocument. */
static QByteArray presentation()
{
    const QStringList spaces({QStringLiteral("office:office"), QStringLiteral("style:style"),
                              QStringLiteral("text:text"), QStringLiteral("draw:drawing"),
                              QStringLiteral("fo:xsl-fo-compatible"), QStringLiteral("svg:svg-compatible"),
                              QStringLiteral("presentation:presentation")});
    QString xml =
        QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?><office:document office:version=\"1.2\" "
                       "office:mimetype=\"application/vnd.oasis.opendocument.presentation\"");
    for (const QString &space : spaces) {
        xml += QStringLiteral(" xmlns:%1=\"urn:oasis:names:tc:opendocument:xmlns:%2:1.0\"")
                   .arg(space.section(QLatin1Char(':'), 0, 0), space.section(QLatin1Char(':'), 1));
    }
    xml += QStringLiteral(
        "><office:styles><draw:gradient draw:name=\"sky\" draw:style=\"linear\" draw:start-color=\"#4060a0\" "
        "draw:end-color=\"#f0f4ff\"/></office:styles><office:automatic-styles><style:page-layout "
        "style:name=\"PM1\"><style:page-layout-properties fo:margin=\"0cm\" fo:page-width=\"28cm\" "
        "fo:page-height=\"15.75cm\"/></style:page-layout><style:style style:name=\"back\" "
        "style:family=\"drawing-page\"><style:drawing-page-properties draw:fill=\"gradient\" "
        "draw:fill-gradient-name=\"sky\"/></style:style><style:style style:name=\"shape\" "
        "style:family=\"graphic\"><style:graphic-properties draw:fill=\"solid\" draw:fill-color=\"#ffcc33\"/>"
        "</style:style></office:automatic-styles><office:master-styles><style:master-page "
        "style:name=\"Default\" style:page-layout-name=\"PM1\"/></office:master-styles><office:body>"
        "<office:presentation>");
    for (int slide = 1; slide <= SLIDES; ++slide) {
        xml += QStringLiteral("<draw:page draw:name=\"page%1\" draw:style-name=\"back\" "
                              "draw:master-page-name=\"Default\"><draw:frame svg:x=\"1cm\" svg:y=\"1cm\" "
                              "svg:width=\"20cm\" svg:height=\"12cm\"><draw:text-box>")
                   .arg(slide);
        for (int line = 1; line <= 12; ++line)
            xml += QStringLiteral("<text:p>Slide %1, line %2: departures, arrivals, menus</text:p>")
                       .arg(slide)
                       .arg(line);
        xml += QStringLiteral("</draw:text-box></draw:frame>");
        for (int shape = 0; shape < 8; ++shape) {
            xml += QStringLiteral("<draw:ellipse draw:style-name=\"shape\" svg:x=\"%1cm\" svg:y=\"11cm\" "
                                  "svg:width=\"2.5cm\" svg:height=\"3cm\"/>")
                       .arg(1 + 3 * shape);
        }
        xml += QStringLiteral("</draw:page>");
    }
    return (xml + QStringLiteral("</office:presentation></office:body></office:document>")).toUtf8();
}

/** Ends the benchmark when \a program fails: there is nothing to measure then. */
static void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0)
        return;
    qCritical("%s failed: %s", qPrintable(program), process.readAllStandardError().constData());
    std::exit(2);
}

static void runOffice(const QDir &folder, const QString &format, const QString &input)
{
    run(QStringLiteral("soffice"),
        {QStringLiteral("-env:UserInstallation=")
             + QUrl::fromLocalFile(folder.filePath(QStringLiteral("profile"))).toString(),
         QStringLiteral("--headless"), QStringLiteral("--convert-to"), format, QStringLiteral("--outdir"),
         folder.path(), input});
}

static double convertByHand(const QDir &folder, const QString &input)
{
    QElapsedTimer timer;
    timer.start();
    runOffice(folder, QStringLiteral("pdf"), input);
    run(QStringLiteral("pdftoppm"),
        {QStringLiteral("-png"), QStringLiteral("-scale-to-x"), QString::number(SIZE.width()),
         QStringLiteral("-scale-to-y"), QString::number(SIZE.height()),
         folder.filePath(QStringLiteral("slides.pdf")), folder.filePath(QStringLiteral("hand"))});
    return double(timer.elapsed());
}

static double convertWithConverter(const QDir &folder, const QString &input)
{
    QElapsedTimer timer;
    timer.start();
    run(QCoreApplication::applicationDirPath() + QStringLiteral("/KyPptCnv.exe"),
        {QStringLiteral("-i"), input, QStringLiteral("-t"), QStringLiteral("png"), QStringLiteral("-d"),
         folder.path(), QStringLiteral("-o"), QStringLiteral("slide"), QStringLiteral("-w"),
         QString::number(SIZE.width()), QStringLiteral("-h"), QString::number(SIZE.height())});
    return double(timer.elapsed());
}

static bool picturesAreEqual(const QDir &folder)
{
    for (int slide = 1; slide <= SLIDES; ++slide) {
        const QImage ours(folder.filePath(QStringLiteral("slide%1.png").arg(slide)));
        const QImage theirs(
            folder.filePath(QStringLiteral("hand-%1.png").arg(slide, 2, 10, QLatin1Char('0'))));
        if (ours.size() != SIZE
            || ours.convertToFormat(QImage::Format_RGB32) != theirs.convertToFormat(QImage::Format_RGB32))
            return false;
    }
    return true;
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir temporary;
    const QDir folder(temporary.path());
    QFile flat(folder.filePath(QStringLiteral("slides.fodp")));
    const QByteArray content = presentation();
    Bench::requireEqual(flat.open(QIODevice::WriteOnly) && flat.write(content) == content.size(),
                        "written bytes");
    flat.close();
    runOffice(folder, QStringLiteral("pptx"), flat.fileName());
    const QString input = folder.filePath(QStringLiteral("slides.pptx"));
    convertByHand(folder, input);
    convertWithConverter(folder, input);
    Bench::requireEqual(picturesAreEqual(folder), "pictures");

    Bench::Report report;
    report.ratio(
        QStringLiteral("converting %1 slides / soffice and pdftoppm by hand").arg(SLIDES), {1.25, 0.8},
        [&] {
            return convertWithConverter(folder, input);
        },
        [&] {
            return convertByHand(folder, input);
        });
    return report.finish(QCoreApplication::arguments());
}
