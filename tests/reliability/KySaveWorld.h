#pragma once

#include "KyTestEnvironment.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

namespace Kyte {
namespace Test {

/** The two files that saving replaces. */
struct SavedContent
{
    QByteArray mainFile; ///< its channels sorted
    QStringList rows; ///< of all tables, led by the answer of SQLite's integrity check
};

/**
 * The environment in which ky_save is started, again and again from the same files: 150 destinations, most of
 * them in one of three channels and all in one of three groups.
 */
class SaveWorld
{
public:
    /** What lies beside the database file as "destination.kyb-journal". */
    enum class Journal {
        None,
        Stale, ///< a journal that was ended by clearing its first bytes
        Hot, ///< of a process that was killed in the middle of a transaction, before ky_save starts
        HotBeforeSaving, ///< the same, but it is killed between the edits and their saving
    };

    explicit SaveWorld(Journal journal);

    void furnish(const Environment &environment) const;
    /** What ky_save is started with; \a command is for the shell, between the edits and their saving. */
    QStringList arguments(const Environment &environment, const QString &command = QString()) const;

    /**
     * What is wrong in \a environment after ky_save has ended in whatever way, empty when all is well: the
     * two files are complete, each old or new, and the next start in either mode loses nothing of them.
     */
    QString problem(const Environment &environment) const;
    /** What is wrong after ky_save has said \a answer and ended by itself. */
    QString problemOfAnswer(const Environment &environment, const QString &answer) const;

    /** The files in the channel folder that were not there before, separated by blanks. */
    QString leftovers(const Environment &environment) const;

private:
    SavedContent newContent(const Environment &environment) const;
    QString problemOfContent(const SavedContent &present, const SavedContent &wanted) const;

    QList<QPair<QString, QByteArray>> m_files; // names in the environment
    bool m_hasSecondPair = false;
    SavedContent m_old;
    QByteArray m_newMainFile;
};

} // namespace Test
} // namespace Kyte
