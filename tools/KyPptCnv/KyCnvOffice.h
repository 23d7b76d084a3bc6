#pragma once

#include <QString>
#include <QTemporaryDir>
#include <QVector>

#include <functional>

namespace Kyte {

/**
 * The office suite that reads presentations, run without windows and with a user profile of its own: two runs
 * that share one break each other.
 */
class KyCnvOffice
{
public:
    /** False when the suite is not installed. */
    bool isInstalled() const;

    enum class Slides { Some, None, Unreadable };
    /** What can be seen of \a path without the suite, which makes a blank slide of everything empty. */
    static Slides slidesIn(const QString &path);

    /**
     * The path of \a inputPath as a PDF of one page a slide; empty when it cannot be opened. \a started is
     * called once the suite runs.
     */
    QString toPdf(const QString &inputPath, const std::function<void()> &started);
    /** Milliseconds that each shown slide of \a inputPath stays, -1 for one without a timing. */
    QVector<int> timings(const QString &inputPath);

    /** Where everything temporary lies; gone with the object. */
    QString folder() const;

private:
    QString convert(const QString &inputPath,
                    const QString &suffix,
                    const QString &filter,
                    const std::function<void()> &started);

    QTemporaryDir m_folder;
};

/** The first program of \a names that is installed, in the folders where it may lie; empty without one. */
QString findProgram(const QStringList &names);

} // namespace Kyte
