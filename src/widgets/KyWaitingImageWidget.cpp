#include "KyWaitingImageWidget.h"

namespace Kyte {

static const int SIDE = 24; // pixels
static const QString IMAGE = QStringLiteral(":/images/waiting_circle_gray.svg");

KyWaitingImageWidget::KyWaitingImageWidget(QWidget *parent)
    : QSvgWidget(parent)
{
    setup();
}

void KyWaitingImageWidget::setup()
{
    setFixedSize(SIDE, SIDE);
    load(IMAGE);
    setAccessibleName(tr("Please wait."));
}

} // namespace Kyte
