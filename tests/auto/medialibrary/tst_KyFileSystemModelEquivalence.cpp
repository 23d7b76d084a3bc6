#include "KyFileModelProbe.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Kyte;
using namespace Kyte::Test;

using Item = KyFileSystemItem;

/** A node as the rules tell it: plain lists, walked one by one. Nothing is ever freed before the end. */
struct PlainNode
{
    QString label; ///< unlike that of every other node
    QFileInfo info;
    PlainNode *parent = nullptr;
    QList<PlainNode *> children;
    bool canFetchMore = false;
    bool destroyed = false;

    QString name() const
    {
        return info.fileName();
    }

    void insert(PlainNode *child, int row)
    {
        children.insert(row < 0 ? 0 : row >= children.size() ? children.size() : row, child);
    }

    void insertByName(PlainNode *child, Qt::CaseSensitivity cs)
    {
        int position = 0;
        for (PlainNode *other : qAsConst(children)) {
            ++position;
            if (QString::compare(child->name(), other->name(), cs) > 0) {
                children.insert(position, child);
                return;
            }
        }
        children.append(child);
    }

    void clearRange(int from, int to)
    {
        const int count = children.size();
        from = std::min(std::max(from, 0), count - 1);
        to = std::min(std::max(to, from), count - 1);
        if (to < from || count == 0)
            return;
        for (int row = to; row >= from; --row)
            children.removeAt(row);
    }
};

/** The model as the rules tell it; its signals are the texts in \a said. */
class PlainModel
{
public:
    QStringList said;

    PlainNode *make(const QFileInfo &info, PlainNode *parent)
    {
        m_all.emplace_back(new PlainNode);
        PlainNode *node = m_all.back().get();
        node->label = QString::number(m_all.size());
        node->info = info;
        node->parent = parent;
        node->canFetchMore = info.isDir();
        return node;
    }

    PlainNode *root() const
    {
        return m_root;
    }

    bool isValid(PlainNode *node) const
    {
        return m_valid.contains(node);
    }

    void setRootPath(const QString &path)
    {
        say("layoutAboutToBeChanged");
        m_valid.clear();
        m_root = make(QFileInfo(path), nullptr);
        m_valid.append(m_root);
        append(m_root);
        say("layoutChanged");
    }

    void fetchMore(PlainNode *node)
    {
        if (!isValid(node) || !node->info.isDir())
            return;
        say("layoutAboutToBeChanged");
        node->canFetchMore = false;
        const bool any = append(node);
        say("layoutChanged");
        if (any)
            say("directoryLoaded " + node->info.absoluteFilePath());
    }

    void update(PlainNode *node, int row)
    {
        if (!isValid(node))
            return;
        QFileInfo info = node->info;
        info.refresh();
        if (!info.exists())
            removeRows(row, 1, parentIndexOf(node));
        else if (info.isDir())
            updateFolder(node);
        else
            updateFile(node, info, row);
    }

    /** A null \a parent is the invalid index. */
    bool removeRows(int row, int count, PlainNode *parent)
    {
        PlainNode *node = parent ? parent : m_root;
        if (!isValid(node) || row < 0)
            return false;
        const int last = std::min(node->children.size() - 1, row + count - 1);
        if (last < row)
            return false;
        const QString rows = QStringLiteral(" %1 %2").arg(row).arg(last);
        say("rowsAboutToBeRemoved" + rows);
        for (int i = row; i <= last; ++i) {
            PlainNode *child = parent ? node->children.value(i) : nullptr;
            if (isValid(child))
                deleteItem(child);
        }
        node->clearRange(row, last);
        say("rowsRemoved" + rows);
        return true;
    }

    QList<PlainNode *> deleteItem(PlainNode *node)
    {
        QList<PlainNode *> destroyed;
        if (!isValid(node))
            return destroyed;
        m_valid.removeAll(node);
        for (int i = node->children.size() - 1; i >= 0; --i) {
            if (i >= node->children.size())
                continue;
            PlainNode *child = node->children.at(i);
            if (child->children.isEmpty()) {
                m_valid.removeAll(child);
                child->destroyed = true;
                if (!destroyed.contains(child))
                    destroyed.append(child);
            } else {
                destroyed += deleteItem(child);
            }
            node->children.removeAll(child);
        }
        if (node->parent)
            node->parent->children.removeAll(node);
        node->destroyed = true;
        destroyed.append(node);
        return destroyed;
    }

    PlainNode *find(const QString &path, PlainNode *start) const
    {
        if (!start)
            start = m_root;
        if (!isValid(start))
            return nullptr;
        const QString startPath = start->info.absoluteFilePath();
        if (startPath.compare(path, Qt::CaseInsensitive) == 0)
            return start;
        if (!path.startsWith(startPath, Qt::CaseInsensitive))
            return nullptr;
        for (PlainNode *child : qAsConst(start->children)) {
            if (!isValid(child))
                continue;
            if (child->info.absoluteFilePath().compare(path, Qt::CaseInsensitive) == 0)
                return child;
            PlainNode *found = child->children.isEmpty() ? nullptr : find(path, child);
            if (found)
                return found;
        }
        return nullptr;
    }

    /** Null stands for the invalid index. */
    PlainNode *parentIndexOf(PlainNode *node) const
    {
        PlainNode *parent = isValid(node) && isValid(node->parent) ? node->parent : nullptr;
        const bool hasIndex = parent && parent != m_root && isValid(parent->parent)
            && parent->parent->children.contains(parent);
        return hasIndex ? parent : nullptr;
    }

    void registerNode(PlainNode *node)
    {
        m_valid.append(node);
    }

private:
    void say(const QString &text)
    {
        said.append(text);
    }

    void say(const char *text)
    {
        said.append(QLatin1String(text));
    }

    bool append(PlainNode *node)
    {
        const QFileInfoList entries =
            QDir(node->info.absoluteFilePath())
                .entryInfoList(QStringList(), QDir::AllEntries | QDir::NoDotAndDotDot,
                               QDir::Name | QDir::DirsFirst | QDir::IgnoreCase);
        for (const QFileInfo &entry : entries) {
            PlainNode *child = make(entry, node);
            node->children.append(child);
            m_valid.append(child);
        }
        return !entries.isEmpty();
    }

    void sayDestroyed(const QList<PlainNode *> &nodes)
    {
        QStringList labels;
        for (PlainNode *node : nodes)
            labels.append(node->label);
        say("itemDeleted " + labels.join(QLatin1Char(' ')));
    }

    void updateFolder(PlainNode *folder)
    {
        say("layoutAboutToBeChanged");
        if (!folder->children.isEmpty()) {
            QList<PlainNode *> destroyed;
            for (int i = 0; i < folder->children.size(); ++i)
                destroyed += deleteItem(folder->children.at(i));
            folder->children.clear();
            sayDestroyed(destroyed);
        }
        const bool any = append(folder);
        say("layoutChanged");
        if (any)
            say("directoryLoaded " + folder->info.absoluteFilePath());
    }

    void updateFile(PlainNode *file, const QFileInfo &info, int row)
    {
        PlainNode *parent = isValid(file->parent) ? file->parent : nullptr;
        if (!parent)
            return; // nobody would hold the new node
        say("layoutAboutToBeChanged");
        parent->children.removeAll(file);
        const QList<PlainNode *> destroyed = deleteItem(file);
        PlainNode *fresh = make(info, parent);
        parent->insert(fresh, row);
        m_valid.append(fresh);
        sayDestroyed(destroyed);
        say("layoutChanged");
        say("directoryLoaded " + info.absoluteFilePath());
    }

    PlainNode *m_root = nullptr;
    QList<PlainNode *> m_valid;
    std::vector<std::unique_ptr<PlainNode>> m_all;
};

/** Both models side by side; the nodes of the plain one by those of the real one. */
class Twins : public QObject
{
    Q_OBJECT

public:
    Twins()
    {
        model.setUseFileSystemWatcher(false);
        connect(&model, SIGNAL(layoutAboutToBeChanged()), this, SLOT(onLayoutAboutToBeChanged()));
        connect(&model, SIGNAL(layoutChanged()), this, SLOT(onLayoutChanged()));
        connect(&model, SIGNAL(rowsAboutToBeRemoved(QModelIndex, int, int)), this,
                SLOT(onRowsAboutToBeRemoved(QModelIndex, int, int)));
        connect(&model, SIGNAL(rowsRemoved(QModelIndex, int, int)), this,
                SLOT(onRowsRemoved(QModelIndex, int, int)));
        connect(&model, SIGNAL(directoryLoaded(QString)), this, SLOT(onDirectoryLoaded(QString)));
        connect(&model, SIGNAL(itemDeleted(QList<void *>)), this, SLOT(onItemDeleted(QList<void *>)));
    }

    FileModel model;
    PlainModel plain;
    QStringList said;
    QHash<void *, PlainNode *> twins;
    QStringList differences;

    /** Walks both trees, notes which node is which, and compares everything that can be seen. */
    void compare(const QString &what)
    {
        if (said != plain.said)
            differences << what << QStringLiteral("real:") << said << QStringLiteral("plain:") << plain.said;
        said.clear();
        plain.said.clear();
        compareNodes(what, model.getItem(QModelIndex()), plain.root());
        // Nodes that left the tree alive may hold nodes that never were in it.
        const QHash<void *, PlainNode *> known = twins;
        for (auto it = known.cbegin(); it != known.cend(); ++it) {
            if (plain.isValid(it.value()) && model.isValidItem(static_cast<Item *>(it.key())))
                compareNodes(what, static_cast<Item *>(it.key()), it.value());
        }
    }

    /** Nodes that were in the tree once and are not any more: gone in both or in none. */
    void compareUnlinked(const QString &what)
    {
        for (auto it = twins.begin(); it != twins.end();) {
            Item *item = static_cast<Item *>(it.key());
            if (model.isValidItem(item) != plain.isValid(it.value()))
                differences << what + QStringLiteral(": register, ") + it.value()->info.filePath();
            if (it.value()->destroyed)
                it = twins.erase(it); // another node may get this address
            else
                ++it;
        }
    }

private slots:
    void onLayoutAboutToBeChanged()
    {
        said.append(QStringLiteral("layoutAboutToBeChanged"));
    }

    void onLayoutChanged()
    {
        said.append(QStringLiteral("layoutChanged"));
    }

    void onRowsAboutToBeRemoved(const QModelIndex &, int first, int last)
    {
        said.append(QStringLiteral("rowsAboutToBeRemoved %1 %2").arg(first).arg(last));
    }

    void onRowsRemoved(const QModelIndex &, int first, int last)
    {
        said.append(QStringLiteral("rowsRemoved %1 %2").arg(first).arg(last));
    }

    void onDirectoryLoaded(const QString &path)
    {
        said.append(QStringLiteral("directoryLoaded ") + path);
    }

    void onItemDeleted(const QList<void *> &items)
    {
        QStringList labels;
        for (void *item : items)
            labels.append(twins.contains(item) ? twins.value(item)->label : QStringLiteral("?"));
        said.append(QStringLiteral("itemDeleted ") + labels.join(QLatin1Char(' ')));
    }

private:
    void compareNodes(const QString &what, Item *item, PlainNode *node)
    {
        const QString path = node->info.absoluteFilePath();
        if (twins.value(item, node) != node)
            differences << what + QStringLiteral(": another node, ") + path;
        twins.insert(item, node);
        if (item->absolutePath() != path || item->canFetchMore() != node->canFetchMore
            || item->childCount() != node->children.size()) {
            differences << what + QStringLiteral(": ") + path;
            return;
        }
        if (model.isValidItem(item) != plain.isValid(node))
            differences << what + QStringLiteral(": register, ") + path;
        for (int row = 0; row < node->children.size(); ++row) {
            Item *child = item->childAt(row);
            if (child->parent() == item
                && child->positionInParent() != node->children.indexOf(node->children.at(row)))
                differences << what + QStringLiteral(": row of ") + child->absolutePath();
            compareNodes(what, child, node->children.at(row));
        }
    }
};

class tst_KyFileSystemModelEquivalence : public QObject
{
    Q_OBJECT

private slots:
    void lists_data();
    void lists();
    void trees_data();
    void trees();
};

static QStringList somePieces(const QString &kind)
{
    if (kind == QLatin1String("letters"))
        return {"a", "A", "b", "B", "c", ".", "_"};
    if (kind == QLatin1String("non-ASCII"))
        return {QString::fromUtf8("ä"),
                QString::fromUtf8("Ä"),
                QString::fromUtf8("ß"),
                QString::fromUtf8("ẞ"),
                QString::fromUtf8("σ"),
                QString::fromUtf8("ς"),
                QString::fromUtf8("İ"),
                "i",
                "I",
                QString::fromUtf8("日")};
    // Deseret letters, which have two cases, and others beyond the sixteen bits
    return {QString::fromUtf8("\U00010400"),
            QString::fromUtf8("\U00010428"),
            QString::fromUtf8("\U0001F600"),
            QString::fromUtf8("\uFFEE"),
            "a",
            "A"};
}

static QString someName(QRandomGenerator *random, const QStringList &pieces)
{
    QString name = QStringLiteral("n");
    for (int length = random->bounded(1, 3); length > 0; --length)
        name += pieces.at(random->bounded(pieces.size()));
    return name;
}

static void addKinds(int seeds)
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("seed");
    for (const char *kind : {"letters", "non-ASCII", "surrogates"}) {
        for (int seed = 1; seed <= seeds; ++seed)
            QTest::addRow("%s %d", kind, seed) << kind << seed;
    }
}

void tst_KyFileSystemModelEquivalence::lists_data()
{
    addKinds(6);
}

/** The operations on the children of one node. */
void tst_KyFileSystemModelEquivalence::lists()
{
    QFETCH(QString, kind);
    QFETCH(int, seed);
    QRandomGenerator random(seed);
    const QStringList pieces = somePieces(kind);
    PlainModel maker;
    Item folder(QFileInfo(QStringLiteral("/none")), nullptr, -1);
    PlainNode *plain = maker.make(folder.fileInfo(), nullptr);
    std::vector<std::unique_ptr<Item>> items;
    QHash<Item *, PlainNode *> twins;

    for (int step = 0; step < 600; ++step) {
        const int operation = random.bounded(12);
        if (items.empty() || operation < 5) {
            const QFileInfo info(QStringLiteral("/none/") + someName(&random, pieces));
            items.emplace_back(new Item(info, nullptr, -1));
            Item *item = items.back().get();
            twins.insert(item, maker.make(info, plain));
        }
        Item *item = operation < 5 ? items.back().get() : items.at(random.bounded(int(items.size()))).get();
        PlainNode *node = twins.value(item);
        const int from = random.bounded(-3, plain->children.size() + 3);
        const int to = from + random.bounded(-2, 4);
        if (operation < 3 || operation == 5) {
            const auto cs = operation == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
            folder.insertChildByName(item, cs);
            plain->insertByName(node, cs);
        } else if (operation == 3) {
            folder.addChild(item);
            if (!plain->children.contains(node))
                plain->children.append(node);
        } else if (operation == 4 || operation == 6) {
            folder.insertChild(item, from);
            plain->insert(node, from);
        } else if (operation == 7 || operation == 8) {
            folder.clearChild(item);
            plain->children.removeAll(node);
        } else if (operation == 9) {
            folder.clearChildren(from, to);
            plain->clearRange(from, to);
        } else if (operation == 10 && random.bounded(20) == 0) {
            folder.clearAllChildren();
            plain->children.clear();
        } else if (operation == 11) {
            folder.addChild(item);
            if (!plain->children.contains(node))
                plain->children.append(node);
        }

        QCOMPARE(folder.childCount(), plain->children.size());
        for (int row = 0; row < folder.childCount(); ++row)
            QCOMPARE(twins.value(folder.childAt(row)), plain->children.at(row));
        QCOMPARE(folder.childPosition(item), plain->children.indexOf(node));
    }
    folder.clearAllChildren();
}

void tst_KyFileSystemModelEquivalence::trees_data()
{
    addKinds(4);
}

static QString someFolder(QRandomGenerator *random, const QString &base)
{
    QString folder = base;
    while (random->bounded(3) > 0) {
        const QStringList below = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        if (below.isEmpty())
            break;
        folder += QLatin1Char('/') + below.at(random->bounded(below.size()));
    }
    return folder;
}

static void changeDisk(QRandomGenerator *random, const QString &base, const QStringList &pieces)
{
    const QString folder = someFolder(random, base);
    const QString path = folder + QLatin1Char('/') + someName(random, pieces);
    const QStringList entries = QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    const int change = random->bounded(6);
    if (change < 2 && !QFileInfo::exists(path))
        writeFile(path, QByteArray());
    else if (change == 2)
        QDir().mkpath(path);
    else if (change == 3 && !entries.isEmpty())
        QFile::rename(folder + QLatin1Char('/') + entries.at(random->bounded(entries.size())), path);
    else if (change == 4 && entries.size() > 2) {
        const QString gone = folder + QLatin1Char('/') + entries.at(random->bounded(entries.size()));
        if (!QFile::remove(gone))
            QDir(gone).removeRecursively();
    }
}

/** What a random sequence of calls does to the real model and to the plain one. */
void tst_KyFileSystemModelEquivalence::trees()
{
    QFETCH(QString, kind);
    QFETCH(int, seed);
    QRandomGenerator random(seed);
    const QStringList pieces = somePieces(kind);
    QTemporaryDir folder;
    for (int i = 0; i < 60; ++i)
        changeDisk(&random, folder.path(), pieces);

    Twins twins;
    FileModel &model = twins.model;
    PlainModel &plain = twins.plain;
    model.setRootPath(folder.path());
    plain.setRootPath(folder.path());
    twins.compare(QStringLiteral("setRootPath"));

    for (int step = 0; step < 250 && twins.differences.isEmpty(); ++step) {
        // Any node known so far, in the tree or not, and the root most often.
        QList<void *> known = twins.twins.keys();
        std::sort(known.begin(), known.end(), [&](void *a, void *b) {
            return twins.twins.value(a)->label.toInt() < twins.twins.value(b)->label.toInt();
        });
        Item *item = static_cast<Item *>(known.at(random.bounded(known.size())));
        PlainNode *node = twins.twins.value(item);
        const bool isRoot = node == plain.root();
        const int operation = random.bounded(10);
        const QString what = QStringLiteral("step %1, operation %2").arg(step).arg(operation);

        // The index that a view would hold; where the node left its list, one of an earlier time.
        if (!isRoot && node->parent->destroyed)
            continue; // the address of the parent may be that of another node by now
        const int position = isRoot ? 0 : node->parent->children.indexOf(node);
        const int row = position < 0 ? random.bounded(4) : position;
        const QModelIndex index = model.createIndex(row, 0, item);

        if (operation < 3) {
            model.fetchMore(index);
            plain.fetchMore(node);
        } else if (operation < 5) {
            model.update(isRoot ? QModelIndex() : index);
            plain.update(node, isRoot ? -1 : row);
        } else if (operation == 5) {
            const int first = random.bounded(-1, node->children.size() + 2);
            const int count = random.bounded(-1, 4);
            const bool asInvalid = isRoot && random.bounded(2) == 0;
            const bool real = model.removeRows(first, count, asInvalid ? QModelIndex() : index);
            QCOMPARE(real, plain.removeRows(first, count, asInvalid ? nullptr : node));
        } else if (operation == 6 && !isRoot) {
            QStringList real;
            QStringList expected;
            for (void *address : model.deleteItem(item))
                real.append(twins.twins.value(address)->label);
            for (PlainNode *destroyed : plain.deleteItem(node))
                expected.append(destroyed->label);
            QCOMPARE(real, expected);
        } else if (operation == 7) {
            QString path = node->info.absoluteFilePath();
            if (random.bounded(2))
                path = path.toUpper().replace(folder.path().toUpper(), folder.path());
            Item *found = model.findItem(path);
            PlainNode *expected = plain.find(path, nullptr);
            QCOMPARE(found ? twins.twins.value(found) : nullptr, expected);
        } else if (operation == 8 && node->info.isDir()) {
            const QFileInfo info(node->info.absoluteFilePath() + QLatin1Char('/')
                                 + someName(&random, pieces));
            const auto cs = random.bounded(2) ? Qt::CaseSensitive : Qt::CaseInsensitive;
            Item *added = new Item(item, info, cs);
            model.addValidItem(added);
            PlainNode *plainAdded = plain.make(info, node);
            node->insertByName(plainAdded, cs);
            plain.registerNode(plainAdded);
        } else {
            changeDisk(&random, folder.path(), pieces);
        }
        twins.compare(what);
        twins.compareUnlinked(what);
    }
    QVERIFY2(twins.differences.isEmpty(), qPrintable(twins.differences.join(QLatin1Char('\n'))));
}

KYTE_TEST_MAIN(tst_KyFileSystemModelEquivalence)
#include "tst_KyFileSystemModelEquivalence.moc"
