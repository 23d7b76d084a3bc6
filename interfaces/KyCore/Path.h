#pragma once

#include <ExecFunction.h>
#include <KyCoreExport.h>

#include <QString>

namespace Kyte {

/**
 * Helpers for paths as texts. The product's paths come from several systems: "/" and back-slash both
 * separate, and every result separates with "/". No operation changes anything on disk; all may be called
 * from any thread.
 */
class KYCORE_EXPORT Path
{
public:
    Path() = delete;

    /**
     * Both parts joined by one "/", without the trailing separators of \a first and the leading ones of \a
     * second, so that \a second never counts as absolute. When one part is empty the other one alone is the
     * result: a relative path stays relative.
     */
    static QString combine(const QString &first, const QString &second);

    /**
     * The folder that holds \a path, whether that ends with a separator or not; a root is kept ("/a" lies in
     * "/", "C:/a" in "C:/"). Empty for a bare name and for a root.
     */
    static QString getParentDirectory(QString path);

    /**
     * The last component of \a path, whether that ends with a separator or not; empty for a root. Without its
     * extension it loses what getExtension() gives and the dot before, nothing else: "a.tar.gz" becomes
     * "a.tar".
     */
    static QString getName(QString path, bool withExtension);

    /**
     * The extension of the last component: what follows its last dot, in lower case, without the dot. Empty
     * when there is none, which is so for a name whose only dot is its first or last character as well
     * (".hidden", "name.").
     */
    static QString getExtension(QString fileName);

    /** \a path with "/" for every back-slash, otherwise unchanged: its length stays the same. */
    static QString replaceSepalator(const QString &path);

    /** The SHA-1 of the file's bytes in lower-case hex; empty for a folder and for a file that cannot be
     * read. */
    static QString getHashSha1(const QString &filePath);

    /** The per-user data folder of an application, which need not exist; empty for an unknown application. */
    static QString getApplicationDataFolderPath(ExecFunction::ExecFunctions function);

    /** The product's per-user cache folder, which need not exist. */
    static QString getApplicationCacheFolderPath();

    /** The folder with a stage's files beside its stage file: "/a/b_data" for "/a/b.kystage"; empty for an
     * empty path. */
    static QString getDataFolderByStageFile(QString stageFile);
};

} // namespace Kyte
