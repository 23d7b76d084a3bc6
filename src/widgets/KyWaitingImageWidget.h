#pragma once

#include "KyEditorCommonExport.h"

#include <QSvgWidget>

namespace Kyte {

/**
 * A turning circle of 24 by 24 pixels that tells the user to wait.
 *
 * It turns whenever it is visible; show and hide it. Its grey is readable on light and dark panels. GUI
 * thread only.
 */
class KYEDITORCOMMON_EXPORT KyWaitingImageWidget : public QSvgWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(KyWaitingImageWidget)

public:
    explicit KyWaitingImageWidget(QWidget *parent = nullptr);

private:
    void setup();
};

} // namespace Kyte
