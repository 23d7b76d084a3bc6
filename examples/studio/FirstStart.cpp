#include "FirstStart.h"

#include "SampleMedia.h"

#include <KyCommandLinkDialog.h>
#include <KyConfig.h>
#include <KyEditorConfig.h>
#include <KyEditorUserConfig.h>
#include <SampleEnvironment.h>

#include <QDir>
#include <QMessageBox>
#include <QStandardPaths>

#include <memory>

using namespace Kyte;

static const char CONFIG_VARIABLE[] = "KYTE_CONFIG_FILE";
static const QString SAMPLE_KEY = QStringLiteral("studio/sample"); // its configuration file

/** A path as people write it: the home folder is "~". */
static QString shown(const QString &path)
{
    const QString home = QDir::homePath();
    return QDir::toNativeSeparators(
        path.startsWith(home + QLatin1Char('/')) ? QLatin1Char('~') + path.mid(home.size()) : path);
}

/** From now on the configuration that every part of the library finds. */
static bool use(const QString &configFile)
{
    qputenv(CONFIG_VARIABLE, QFile::encodeName(configFile));
    return KyEditorConfig::readStandardConfigFile();
}

FirstStart::FirstStart(QObject *parent)
    : QObject(parent)
{
}

bool FirstStart::find()
{
    if (KyEditorConfig::readStandardConfigFile())
        return true;
    const QString file = KyEditorConfig::getConfig()->filePath();
    if (QFile::exists(file))
        return fail(tr("The configuration file %1 cannot be read.").arg(QDir::toNativeSeparators(file)));
    const QString sample = KyEditorUserConfig::value(SAMPLE_KEY).toString();
    if (qEnvironmentVariableIsEmpty(CONFIG_VARIABLE) && QFile::exists(sample))
        return use(sample)
            || fail(tr("The sample in %1 cannot be read.").arg(QDir::toNativeSeparators(sample)));
    m_lastErrorMessage.clear(); // nothing is wrong: there is none
    return false;
}

bool FirstStart::offer(QWidget *parent)
{
    const std::unique_ptr<KyCommandLinkDialog> dialog(createDialog(parent));
    bool isDone = false;
    switch (dialog->exec()) {
    case MakeDefault:
        isDone = createDefault();
        break;
    case MakeSample:
        isDone = createSample(defaultSampleFolder());
        if (isDone) {
            KyEditorUserConfig::setValue(SAMPLE_KEY, KyEditorConfig::getConfig()->filePath());
            KyEditorUserConfig::sync();
        }
        break;
    default:
        return false;
    }
    if (!isDone)
        QMessageBox::critical(parent, tr("First start"), m_lastErrorMessage);
    return isDone;
}

bool FirstStart::createDefault()
{
    return KyEditorConfig::createDefaultEnvironment()
        || fail(tr("The default environment cannot be created at %1.")
                    .arg(QDir::toNativeSeparators(KyEditorConfig::getConfig()->filePath())));
}

bool FirstStart::createSample(const QString &folder)
{
    SampleEnvironment environment(folder);
    if (QFile::exists(environment.configFile()))
        return use(environment.configFile())
            || fail(tr("The sample in %1 cannot be read.").arg(QDir::toNativeSeparators(folder)));
    if (!environment.create())
        return fail(environment.lastErrorMessage());
    SampleMedia media(QDir(environment.folder()).filePath(QStringLiteral("data/media")));
    if (!media.create())
        return fail(media.lastErrorMessage());
    return use(environment.configFile())
        || fail(tr("The sample in %1 cannot be read.").arg(QDir::toNativeSeparators(folder)));
}

QString FirstStart::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

QString FirstStart::defaultSampleFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/kyte/sample");
}

KyCommandLinkDialog *FirstStart::createDialog(QWidget *parent)
{
    auto *dialog = new KyCommandLinkDialog(parent);
    dialog->setWindowTitle(tr("kystudio"));
    dialog->setMainMessage(tr("There is no configuration yet."));
    dialog->setSubMessage(tr("What do you want to begin with?"));
    dialog->addButton(tr("Create the &default environment"),
                      tr("Empty folders and a configuration file at their usual places."));
    dialog->addButton(
        tr("Create a &sample environment"),
        tr("A railway station with 60 destinations and a media library, in a folder of its own:\n%1")
            .arg(shown(defaultSampleFolder())));
    dialog->setActiveButton(MakeSample);
    return dialog;
}

bool FirstStart::fail(const QString &message)
{
    m_lastErrorMessage = message;
    return false;
}
