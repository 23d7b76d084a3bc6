/*
 * Changes files as its standard input says, a line for each change with tabs between the words:
 *
 *     create FILE    folder FOLDER    rename FROM TO    remove FILE-OR-FOLDER
 *
 * Prints "done" or "failed" after each and ends with its input.
 */

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>

static bool create(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write("content") > 0;
}

static bool change(const QStringList &words)
{
    const QString what = words.value(0);
    const QString path = words.value(1);
    if (what == QLatin1String("create"))
        return create(path);
    if (what == QLatin1String("folder"))
        return QDir().mkdir(path);
    if (what == QLatin1String("rename"))
        return QDir().rename(path, words.value(2));
    if (what == QLatin1String("remove"))
        return QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
    return false;
}

int main()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 1;
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        std::puts(change(QString::fromUtf8(line).trimmed().split(QLatin1Char('\t'))) ? "done" : "failed");
        std::fflush(stdout);
    }
    return 0;
}
