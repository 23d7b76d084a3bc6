#include "KyMovedIndex.h"

namespace Kyte {

int KyMovedIndex::fromScrIndex() const
{
    return m_fromScrIndex;
}

void KyMovedIndex::setFromScrIndex(int index)
{
    m_fromScrIndex = index;
}

int KyMovedIndex::fromSeqIndex() const
{
    return m_fromSeqIndex;
}

void KyMovedIndex::setFromSeqIndex(int index)
{
    m_fromSeqIndex = index;
}

int KyMovedIndex::toScrIndex() const
{
    return m_toScrIndex;
}

void KyMovedIndex::setToScrIndex(int index)
{
    m_toScrIndex = index;
}

int KyMovedIndex::toSeqIndex() const
{
    return m_toSeqIndex;
}

void KyMovedIndex::setToSeqIndex(int index)
{
    m_toSeqIndex = index;
}

} // namespace Kyte
