#pragma once

#include <QTemporaryDir>

/** A small media library with thumbnails, in a temporary folder that goes with the object. */
class SampleLibrary
{
    Q_DISABLE_COPY(SampleLibrary)

public:
    SampleLibrary();

    QString path() const;
    /** The folder that is worth a look first. */
    QString firstFolder() const;

private:
    void addPicture(const QString &name, int hue) const;
    void addFile(const QString &name, int size) const;

    QTemporaryDir m_folder;
};
