#pragma once

#include <KyLibFileIconProvider.h>

#include <QCache>
#include <QDateTime>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QObject>
#include <QPair>
#include <QSet>
#include <QThreadPool>
#include <QTimer>

/**
 * The thumbnails of media files: read in the background where they are stored, made and stored where a
 * picture has none or an old one. Only what is asked for is read and made, the last one asked for first: what
 * a view paints is what it needs.
 */
class Thumbnails : public QObject
{
    Q_OBJECT

public:
    explicit Thumbnails(QObject *parent = nullptr);
    ~Thumbnails() override;

    /** Null until it is there, which changed() tells, and for a file that has none. */
    QIcon icon(const QFileInfo &file);
    /** Forgets what was asked for and is not begun yet. */
    void forgetWaiting();

public slots:
    /** Gives a file that was moved or copied the thumbnail that it had, as soon as there is time. */
    void carry(const QString &from, const QString &to);

signals:
    void changed();

private slots:
    void lookUp();
    void onIconRead(const QString &path, QIcon *icon);
    void onIconFailed(const QString &path);
    void onPictureLoaded(const QString &path, const QImage &picture);
    void makeNext();
    void carryNext();

private:
    struct Entry
    {
        QDateTime fileTime;
        QIcon icon;
    };

    void read(const QStringList &paths);
    void enter(const QString &path, const QIcon &icon);

    Kyte::KyLibFileIconProvider m_provider;
    QCache<QString, Entry> m_entries;
    QSet<QString> m_asked; // not entered yet
    QFileInfoList m_wanted; // not looked up yet
    QStringList m_unmade; // the last one is the next
    QList<QPair<QString, QString>> m_uncarried;
    bool m_isMaking = false;
    QTimer m_lookUp;
    QTimer m_carrying;
    QThreadPool m_loaders;
};
