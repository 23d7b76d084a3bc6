#include "PreviewPanel.h"

#include <KyStage.h>
#include <KyStagePreview.h>

#include <QEvent>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

using namespace Kyte;

PreviewPanel::PreviewPanel(QWidget *parent)
    : QWidget(parent)
    , m_frame(new QWidget(this))
    , m_preview(new KyStagePreview(m_frame))
    , m_caption(new QLabel(tr("Nothing to preview yet."), this))
{
    m_preview->setObjectName(QStringLiteral("preview"));
    m_frame->setMinimumSize(160, 90);
    m_frame->installEventFilter(this);
    m_caption->setAlignment(Qt::AlignCenter);
    m_caption->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_frame, 1);
    layout->addWidget(m_caption);
}

void PreviewPanel::showStage(const KyStage &stage, const QString &caption)
{
    m_stageSize = stage.rect().size();
    place();
    m_preview->setStage(stage);
    m_caption->setText(caption);
}

bool PreviewPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

/** The preview begins at the top left of its widget; so that it lies in the middle, the widget does. */
void PreviewPanel::place()
{
    const QSize room = m_frame->size();
    const QSize wanted = m_stageSize.isEmpty() ? room : m_stageSize.scaled(room, Qt::KeepAspectRatio);
    m_preview->setGeometry(
        QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, wanted, QRect(QPoint(0, 0), room)));
}
