/*
 * Does what a script tells it: ky_scripted [-i] SCRIPT [ARGUMENT]...
 *
 * Without a file it waits until it is ended. Files that the script names lie in its folder. The commands, one
 * a line; text is the rest of the line:
 *
 *     arguments FILE   write the command line, one argument a line, line ends in it written as "\n"
 *     pid FILE         write the process id
 *     environment FILE NAME
 *                      write the value of an environment variable
 *     print TEXT       write the text to the standard output, in one piece and without a line end
 *     touch FILE       make a file
 *     wait FILE        go on when the file exists; the end of the program after a minute
 *     read FILE        copy the standard input to a file until it ends
 *     ignore-end       from now on be deaf to requests to end
 *     on-end FILE      from now on make the file when asked to end, and exit with 7
 *     write-forever FILE
 *                      write to the standard output until that fails, then make the file
 *     crash            end by a signal
 *     exit CODE        end; so does the end of the script, with 0
 */

#include "ky_requests.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QThread>

#include <cstdio>
#include <cstdlib>

static const int LIMIT = 60000; // milliseconds
static const int INTERVAL = 2; // milliseconds

static void writeFile(const QString &path, const QByteArray &content)
{
    // In one step, so that who waits for the file finds it whole.
    QFile file(path + QStringLiteral(".part"));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        std::exit(98);
    file.close();
    QFile::remove(path);
    file.rename(path);
}

static void waitFor(const QString &path)
{
    for (int waited = 0; !QFile::exists(path); waited += INTERVAL) {
        if (waited > LIMIT)
            std::exit(99);
        QThread::msleep(INTERVAL);
        heedRequests();
    }
}

static void writeForever()
{
    while (std::fputs("text\n", stdout) >= 0 && std::fflush(stdout) == 0) {
        QThread::msleep(INTERVAL);
        heedRequests();
    }
}

static QByteArray commandLine()
{
    QByteArray text;
    for (const QString &argument : QCoreApplication::arguments())
        text += argument.toUtf8().replace('\n', "\\n") + '\n';
    return text;
}

static void readInput(const QString &path)
{
    QByteArray text;
    for (int character = std::getchar(); character != EOF; character = std::getchar())
        text += char(character);
    writeFile(path, text);
}

static void run(const QString &command, const QString &text, const QString &path)
{
    if (command == QLatin1String("arguments"))
        writeFile(path, commandLine());
    else if (command == QLatin1String("pid"))
        writeFile(path, QByteArray::number(QCoreApplication::applicationPid()));
    else if (command == QLatin1String("environment"))
        writeFile(path.section(QLatin1Char(' '), 0, -2),
                  qgetenv(text.section(QLatin1Char(' '), -1).toLatin1().constData()));
    else if (command == QLatin1String("print")) {
        std::fputs(text.toUtf8().constData(), stdout);
        std::fflush(stdout);
    } else if (command == QLatin1String("touch"))
        writeFile(path, QByteArray());
    else if (command == QLatin1String("wait"))
        waitFor(path);
    else if (command == QLatin1String("read"))
        readInput(path);
    else if (command == QLatin1String("ignore-end"))
        ignoreRequests();
    else if (command == QLatin1String("on-end"))
        makeFileOnRequest(QFile::encodeName(path).toStdString());
    else if (command == QLatin1String("write-forever")) {
        writeForever();
        writeFile(path, QByteArray());
    } else if (command == QLatin1String("crash"))
        crash();
    else if (command == QLatin1String("exit"))
        std::exit(text.toInt());
    else {
        std::fprintf(stderr, "ky_scripted: %s?\n", qPrintable(command));
        std::exit(97);
    }
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    heedRequests();
    QStringList arguments = application.arguments().mid(1);
    if (arguments.value(0) == QLatin1String("-i"))
        arguments.removeFirst();
    if (arguments.isEmpty())
        waitFor(QString());

    QFile script(arguments.first());
    if (!script.open(QIODevice::ReadOnly))
        return 96;
    const QDir folder = QFileInfo(script).absoluteDir();
    const QStringList lines = QString::fromUtf8(script.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString text = line.section(QLatin1Char(' '), 1);
        if (!line.isEmpty())
            run(line.section(QLatin1Char(' '), 0, 0), text, folder.filePath(text));
    }
    return 0;
}
