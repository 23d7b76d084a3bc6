#include "KyTestMain.h"

#include <KyMovedIndex.h>

using namespace Kyte;

class tst_KyMovedIndex : public QObject
{
    Q_OBJECT

private slots:
    void newMove_isAllZero();
    void setters_replaceOneIndexEach();
};

static QList<int> indexes(const KyMovedIndex &move)
{
    return {move.fromScrIndex(), move.fromSeqIndex(), move.toScrIndex(), move.toSeqIndex()};
}

void tst_KyMovedIndex::newMove_isAllZero()
{
    QCOMPARE(indexes(KyMovedIndex()), QList<int>({0, 0, 0, 0}));
}

void tst_KyMovedIndex::setters_replaceOneIndexEach()
{
    KyMovedIndex move;
    move.setFromScrIndex(1);
    QCOMPARE(indexes(move), QList<int>({1, 0, 0, 0}));
    move.setFromSeqIndex(2);
    QCOMPARE(indexes(move), QList<int>({1, 2, 0, 0}));
    move.setToScrIndex(3);
    QCOMPARE(indexes(move), QList<int>({1, 2, 3, 0}));
    move.setToSeqIndex(-4);
    QCOMPARE(indexes(move), QList<int>({1, 2, 3, -4}));

    const KyMovedIndex copy = move;
    QCOMPARE(indexes(copy), indexes(move));
}

KYTE_TEST_MAIN(tst_KyMovedIndex)
#include "tst_KyMovedIndex.moc"
