#pragma once

#include <KyPptConversion.h>
#include <KyScriptedProgram.h>

#include <QCoreApplication>
#include <QFile>
#include <QObject>
#include <QStringList>

#include <functional>

namespace Kyte {
namespace Test {

/** Where the library looks for the converter. */
inline QString converterPath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/KyPptCnv.exe");
}

inline void removeConverter()
{
    QFile::setPermissions(converterPath(), QFile::ReadOwner | QFile::WriteOwner);
    QFile::remove(converterPath());
}

/** Puts a converter there that takes the presentation for a script. */
inline bool installConverter()
{
    removeConverter();
    return QFile::copy(ScriptedProgram::program(), converterPath());
}

/** Writes the signals of a conversion down as short texts, in order, and calls back after each. */
class ConversionRecorder : public QObject
{
    Q_OBJECT

public:
    explicit ConversionRecorder(KyPptConversion *conversion)
    {
        connect(conversion, SIGNAL(errorOccured(QString, bool)), this, SLOT(onErrorOccured(QString, bool)));
        connect(conversion, SIGNAL(informationUpdated(QString)), this, SLOT(onInformationUpdated(QString)));
        connect(conversion, SIGNAL(progressUpdated(int)), this, SLOT(onProgressUpdated(int)));
        connect(conversion, SIGNAL(aborted()), this, SLOT(onAborted()));
        connect(conversion, SIGNAL(finished()), this, SLOT(onFinished()));
        connect(conversion, SIGNAL(requestAbort()), this, SLOT(onRequestAbort()));
        connect(conversion, SIGNAL(creationCompleted(QString)), this, SLOT(onCreationCompleted(QString)));
    }

    QStringList texts;
    std::function<void(const QString &)> listener;

private slots:
    void onErrorOccured(QString message, bool abort)
    {
        record(QStringLiteral("error %1 %2").arg(QLatin1String(abort ? "abort" : "go on"), message));
    }
    void onInformationUpdated(QString info)
    {
        record(QStringLiteral("info ") + info);
    }
    void onProgressUpdated(int percent)
    {
        record(QStringLiteral("progress %1").arg(percent));
    }
    void onAborted()
    {
        record(QStringLiteral("aborted"));
    }
    void onFinished()
    {
        record(QStringLiteral("finished"));
    }
    void onRequestAbort()
    {
        record(QStringLiteral("request"));
    }
    void onCreationCompleted(QString path)
    {
        record(QStringLiteral("completed ") + (path.isNull() ? QStringLiteral("(null)") : path));
    }

private:
    void record(const QString &text)
    {
        texts.append(text);
        const auto call = listener;
        if (call)
            call(text);
    }
};

} // namespace Test
} // namespace Kyte
