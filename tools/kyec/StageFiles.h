#pragma once

#include <KyStageListWidgetItem.h>

#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace Kyte {

using StageItems = std::vector<std::unique_ptr<KyStageListWidgetItem>>;

/** The stage templates for a monitor of the size \a monitor; for this machine's own where that is invalid. */
StageItems makeStageTemplates(const QSize &monitor);

/** Writes pictures of stage templates into a folder, which is made where it is missing. */
class StageFiles
{
    Q_DISABLE_COPY(StageFiles)

public:
    explicit StageFiles(const QString &folder);

    /** Writes each pixmap of the icon of template \a number; on failure lastErrorMessage() tells why. */
    bool writeIcons(const KyStageListWidgetItem &item, int number);
    /** Writes what the preview shows in the size \a size. */
    bool writePreview(const KyStage &stage, const QSize &size, const QString &name);
    QString lastErrorMessage() const;
    QStringList names() const; ///< of the files written so far

private:
    bool write(const QImage &image, const QString &name);

    QString m_folder;
    QStringList m_names;
    QString m_lastErrorMessage;
};

} // namespace Kyte
