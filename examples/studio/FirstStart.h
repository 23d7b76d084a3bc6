#pragma once

#include <QObject>
#include <QString>

namespace Kyte {
class KyCommandLinkDialog;
} // namespace Kyte

class QWidget;

/**
 * Finds the configuration of the product, or offers to make one: the default environment, or a sample one
 * that lies in a folder of its own and is found again at the next start.
 */
class FirstStart : public QObject
{
    Q_OBJECT

public:
    enum Command { Cancelled = 0, MakeDefault = 1, MakeSample = 2 };

    explicit FirstStart(QObject *parent = nullptr);

    /** Whether a configuration was found and read. A remembered sample counts where there is no other. */
    bool find();
    /** Asks \a parent's user and does it. False when there is no configuration afterwards. */
    bool offer(QWidget *parent);
    /** Makes the environment; the sample in \a folder, unless it is there already. */
    bool createDefault();
    bool createSample(const QString &folder);

    /** Why the last operation failed. */
    QString lastErrorMessage() const;

    static QString defaultSampleFolder();
    /** The question, which the caller deletes. Its result is a Command. */
    static Kyte::KyCommandLinkDialog *createDialog(QWidget *parent);

private:
    bool fail(const QString &message);

    QString m_lastErrorMessage;
};
