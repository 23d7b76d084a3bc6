#pragma once

#include <QString>

/** The media library of a railway station: drawn pictures without thumbnails, a text, a presentation. */
class SampleMedia
{
    Q_DISABLE_COPY(SampleMedia)

public:
    explicit SampleMedia(const QString &folder);

    /** False, with lastErrorMessage(), when something cannot be written. */
    bool create();
    QString lastErrorMessage() const;

private:
    bool writePicture(const QString &name, int number);
    bool writeText(const QString &name, const QByteArray &text);
    bool writePresentation(const QString &name);
    bool makeFolderOf(const QString &file);
    bool fail(const QString &file);

    QString m_folder;
    QString m_lastErrorMessage;
};
