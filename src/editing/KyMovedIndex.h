#pragma once

#include "KyEditorCommonExport.h"

namespace Kyte {

/** One move of a content item: the indexes of screen and sequence that it came from and went to. */
class KYEDITORCOMMON_EXPORT KyMovedIndex
{
public:
    int fromScrIndex() const;
    void setFromScrIndex(int index);
    int fromSeqIndex() const;
    void setFromSeqIndex(int index);
    int toScrIndex() const;
    void setToScrIndex(int index);
    int toSeqIndex() const;
    void setToSeqIndex(int index);

private:
    int m_fromScrIndex = 0;
    int m_fromSeqIndex = 0;
    int m_toScrIndex = 0;
    int m_toSeqIndex = 0;
};

} // namespace Kyte
