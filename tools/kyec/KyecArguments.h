#pragma once

#include "KyecCommand.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QStringList>

namespace Kyte {

/**
 * The command line of one command. A command declares its options, calls parse() and, when that is false,
 * ends with exitCode(). Every command has --help.
 */
class KyecArguments
{
    Q_DISABLE_COPY(KyecArguments)

public:
    static const int ANY_NUMBER = -1; ///< of positional arguments

    /** \a arguments are those behind the command's name. */
    KyecArguments(const KyecCommand &command, const QStringList &arguments);

    void addOption(const QString &name, const QString &description, const QString &valueName = QString());
    /** --config FILE: parse() makes it the standard configuration file of this process. */
    void addConfigOption();
    void addJsonOption();
    /** Takes "-1.5" for a number, not for options. Only where no option has a value. */
    void allowNegativeNumbers();

    /** False when the command has nothing to do: the help was shown, or what is wrong was said. */
    bool parse(int maximumPositional = 0);
    int exitCode() const;
    /** Says \a message and how to get help; answers the exit code. */
    int wrongUsage(const QString &message);

    bool isSet(const QString &option) const;
    bool isJsonWanted() const;
    QString value(const QString &option) const;
    /** The values of an option that may be given several times. */
    QStringList values(const QString &option) const;
    QStringList positional() const;
    /** Reads an option's integer if it is given; false, with the matter said, unless that is \a minimum or
     * more. */
    bool readInteger(const QString &option, int minimum, int *value);
    /** Reads an id out of a positional argument; false, with the matter said, when it is no integer. */
    bool readId(const QString &text, int *id);

private:
    bool useConfigFile();
    void showHelp() const;

    const KyecCommand &m_command;
    QStringList m_arguments;
    QCommandLineParser m_parser;
    int m_exitCode = Exit_Success;
};

} // namespace Kyte
