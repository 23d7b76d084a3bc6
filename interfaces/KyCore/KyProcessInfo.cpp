#include "KyProcessInfo.h"

#include "KyProcessTable_p.h"

#include <QProcess>

namespace Kyte {

#ifdef Q_OS_WIN
static const Qt::CaseSensitivity IMAGE_NAME_CASE = Qt::CaseInsensitive;
#else
static const Qt::CaseSensitivity IMAGE_NAME_CASE = Qt::CaseSensitive;
#endif

static QString withoutExecutableExtension(const QString &name)
{
    const QLatin1String extension(".exe");
    return name.endsWith(extension, Qt::CaseInsensitive) ? name.chopped(extension.size()) : name;
}

KyProcessInfo::KyProcessInfo() = default;

qint64 KyProcessInfo::processId() const
{
    return m_processId;
}

QString KyProcessInfo::name() const
{
    return m_name;
}

bool KyProcessInfo::kill()
{
    return m_startTime != 0 && killProcess(m_processId, m_startTime);
}

QList<KyProcessInfo> KyProcessInfo::getProcessesByName(const QString &name, bool *ok, bool withExtension)
{
    const QString wanted = withExtension ? name : withoutExecutableExtension(name);
    const auto isWanted = [&](const QString &image) {
        return wanted.compare(withExtension ? image : withoutExecutableExtension(image), IMAGE_NAME_CASE)
            == 0;
    };

    QVector<KyProcessEntry> entries;
    const bool isRead = !wanted.isEmpty() && findProcesses(isWanted, &entries);
    if (ok)
        *ok = isRead;

    QList<KyProcessInfo> processes;
    for (const KyProcessEntry &entry : qAsConst(entries)) {
        KyProcessInfo process;
        process.m_processId = entry.id;
        process.m_name = entry.name;
        process.m_startTime = entry.startTime;
        processes.append(process);
    }
    return processes;
}

qint64 KyProcessInfo::getProcessId(QProcess &process)
{
    return process.processId();
}

} // namespace Kyte
