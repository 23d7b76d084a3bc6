#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"
#include "KyecPlatform.h"

#include <QApplication>
#include <QCommandLineParser>

#include <algorithm>
#include <memory>

using namespace Kyte;

static const KyecCommand COMMANDS[] = {
    {"demo", "", "Show the library's main job on a sample environment.", runDemo, true},
    {"destinations", "", "List the upload destinations by position and name.", runDestinations},
    {"channels", "", "List the channels and how many destinations are in each.", runChannels},
    {"groups", "\nadd NAME\nrename ID NAME\nremove ID", "List, add, rename and remove groups.", runGroups},
    {"move", "ID... --to-channel N\nID... --to-group N", "Move destinations to a channel or to a group.",
     runMove},
    {"verify", "", "Check the database: its integrity, its rows and its fingerprint.", runVerify},
    {"convert", "FILE", "Convert a presentation to images or a video.", runConvert},
    {"unique-name", "NAME --used FILE", "Print the name, with a counter while it is in use.", runUniqueName},
    {"duration", "SECONDS", "Print a play duration as the editors show it.", runDuration},
    {"watch-probe", "FOLDER", "Tell whether the system can announce changes in a folder.", runWatchProbe},
    {"tree", "FOLDER", "Print the media library below a folder, and follow its changes.", runTree, true},
    {"thumbnails", "FOLDER", "Make the thumbnails of a folder's images, and read all of its media files'.",
     runThumbnails, true},
    {"svg", "FILE --size WxH --out PNG", "Render an SVG file to an image of a wanted size.", runSvg, true},
    {"templates", "--out DIR", "Write the icons of the stage templates, and print their geometry.",
     runTemplates, true},
    {"preview", "TEMPLATE-NUMBER --size WxH --out PNG", "Write the preview of a stage template.", runPreview,
     true},
};

/** The command \a name, null when there is none. */
static const KyecCommand *findCommand(const QByteArray &name)
{
    const auto command =
        std::find_if(std::begin(COMMANDS), std::end(COMMANDS), [&name](const KyecCommand &candidate) {
            return name == candidate.name;
        });
    return command == std::end(COMMANDS) ? nullptr : command;
}

static QString usage()
{
    QString text =
        QStringLiteral("Usage: kyec COMMAND [OPTIONS]\n"
                       "       kyec COMMAND --help\n"
                       "\n"
                       "The command line of KyEditorCommon: the upload destinations of a configuration,\n"
                       "their channels and their groups, presentations, media libraries, stage\n"
                       "templates and some of the editors' helpers.\n"
                       "\n"
                       "Commands:\n");
    for (const KyecCommand &command : COMMANDS)
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -13)
                    .arg(QLatin1String(command.description));
    return text
        + QStringLiteral(
               "\n"
               "Options:\n"
               "  -h, --help     Show this help.\n"
               "  -v, --version  Show the version.\n"
               "\n"
               "Like the applications, listing brings the database up to date with the configuration\n"
               "first. Editing works on a copy of it and saves at the end.\n"
               "Output is UTF-8. Exit codes: 0 success, 1 failure, 2 wrong usage.\n");
}

static int wrongUsage(const QString &message)
{
    printError(message);
    printError(QStringLiteral("try: kyec --help"));
    return Exit_WrongUsage;
}

static int runCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    parser.addOptions({help, version});
    if (!parser.parse(arguments))
        return wrongUsage(parser.errorText());
    if (parser.isSet(help)) {
        print(usage());
        return Exit_Success;
    }
    if (parser.isSet(version)) {
        print(QStringLiteral("kyec " KYEC_VERSION "\n"));
        return Exit_Success;
    }

    QStringList rest = parser.positionalArguments();
    if (rest.isEmpty())
        return wrongUsage(QStringLiteral("Which command?"));
    const QByteArray name = rest.takeFirst().toUtf8();
    const KyecCommand *command = findCommand(name);
    if (!command)
        return wrongUsage(QStringLiteral("There is no command '%1'.").arg(QString::fromUtf8(name)));
    KyecArguments commandArguments(*command, rest);
    return command->run(commandArguments);
}

/** Of the kind that the command needs: most work where nothing can be drawn. */
static std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv)
{
    const KyecCommand *command = argc > 1 ? findCommand(argv[1]) : nullptr;
    if (!command || !command->draws)
        return std::make_unique<QCoreApplication>(argc, argv);
    prepareDrawing();
    return std::make_unique<QApplication>(argc, argv);
}

int main(int argc, char **argv)
{
    prepareConsole();
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    const int code = runCommand(QCoreApplication::arguments());
    if (!finishOutput())
        return fail(QStringLiteral("The output could not be written."));
    return code;
}
