#include "KyecArguments.h"

#include "KyecOutput.h"
#include "KyecPlatform.h"

#include <QFileInfo>

#include <algorithm>

namespace Kyte {

static const QString HELP = QStringLiteral("help");
static const QString CONFIG = QStringLiteral("config");
static const QString JSON = QStringLiteral("json");

KyecArguments::KyecArguments(const KyecCommand &command, const QStringList &arguments)
    : m_command(command)
    , m_arguments(arguments)
{
    m_arguments.prepend(QString::fromUtf8(command.name)); // the parser takes the first one for the program
    m_parser.setApplicationDescription(QString::fromUtf8(command.description));
    // Not addHelpOption(), which brings --help-all along.
    m_parser.addOption({{QStringLiteral("h"), HELP}, QStringLiteral("Show this help.")});
}

void KyecArguments::addOption(const QString &name, const QString &description, const QString &valueName)
{
    m_parser.addOption({name, description, valueName});
}

void KyecArguments::addConfigOption()
{
    addOption(CONFIG,
              QStringLiteral("Use this configuration file in place of the standard one "
                             "(sets KYTE_CONFIG_FILE for this run)."),
              QStringLiteral("FILE"));
}

void KyecArguments::addJsonOption()
{
    addOption(JSON, QStringLiteral("Print JSON."));
}

void KyecArguments::allowNegativeNumbers()
{
    const QString endOfOptions = QStringLiteral("--");
    if (m_arguments.contains(endOfOptions))
        return;
    const auto numbers =
        std::stable_partition(m_arguments.begin(), m_arguments.end(), [](const QString &argument) {
            bool isNumber = false;
            argument.toDouble(&isNumber);
            return !isNumber || !argument.startsWith(QLatin1Char('-'));
        });
    m_arguments.insert(numbers, endOfOptions);
}

bool KyecArguments::parse(int maximumPositional)
{
    const bool understood = m_parser.parse(m_arguments);
    if (m_parser.isSet(HELP)) {
        showHelp();
        return false;
    }
    if (!understood) {
        wrongUsage(m_parser.errorText());
        return false;
    }
    if (maximumPositional != ANY_NUMBER && positional().size() > maximumPositional) {
        wrongUsage(QStringLiteral("Unexpected argument '%1'.").arg(positional().at(maximumPositional)));
        return false;
    }
    return useConfigFile();
}

int KyecArguments::exitCode() const
{
    return m_exitCode;
}

int KyecArguments::wrongUsage(const QString &message)
{
    printError(message);
    printError(QStringLiteral("try: kyec %1 --help").arg(QString::fromUtf8(m_command.name)));
    m_exitCode = Exit_WrongUsage;
    return m_exitCode;
}

bool KyecArguments::isSet(const QString &option) const
{
    return m_parser.isSet(option);
}

bool KyecArguments::isJsonWanted() const
{
    return m_parser.isSet(JSON);
}

QString KyecArguments::value(const QString &option) const
{
    return m_parser.value(option);
}

QStringList KyecArguments::values(const QString &option) const
{
    return m_parser.values(option);
}

QStringList KyecArguments::positional() const
{
    return m_parser.positionalArguments();
}

bool KyecArguments::readInteger(const QString &option, int minimum, int *value)
{
    if (!m_parser.isSet(option))
        return true;
    bool ok = false;
    const int number = m_parser.value(option).toInt(&ok);
    if (!ok || number < minimum) {
        wrongUsage(QStringLiteral("--%1 needs an integer of %2 or more, not '%3'.")
                       .arg(option, QString::number(minimum), m_parser.value(option)));
        return false;
    }
    *value = number;
    return true;
}

bool KyecArguments::readId(const QString &text, int *id)
{
    bool ok = false;
    *id = text.toInt(&ok);
    if (!ok)
        wrongUsage(QStringLiteral("'%1' is no id.").arg(text));
    return ok;
}

/**
 * The library finds the channel folder through the standard place of the configuration file, so naming the
 * file to KyEditorConfig would not do: the environment of this process has to name it.
 */
bool KyecArguments::useConfigFile()
{
    if (!m_parser.optionNames().contains(CONFIG))
        return true;
    const QString path = m_parser.value(CONFIG);
    if (path.isEmpty()) { // which would mean the user's own file
        wrongUsage(QStringLiteral("--config needs a file."));
        return false;
    }
    setConfigFile(QFileInfo(path).absoluteFilePath());
    return true;
}

void KyecArguments::showHelp() const
{
    QString lead = QStringLiteral("Usage: ");
    QString text;
    const QStringList synopses = QString::fromUtf8(m_command.synopsis).split(QLatin1Char('\n'));
    for (const QString &synopsis : synopses) {
        const QString call =
            QStringLiteral("kyec %1 [OPTIONS] %2").arg(QString::fromUtf8(m_command.name), synopsis);
        text += lead + call.trimmed() + QLatin1Char('\n');
        lead.fill(QLatin1Char(' '));
    }
    // The parser's own first line knows neither the command nor what goes with what.
    const QString options = m_parser.helpText();
    print(text + options.mid(options.indexOf(QLatin1Char('\n'))));
}

} // namespace Kyte
