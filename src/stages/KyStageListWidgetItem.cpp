#include "KyStageListWidgetItem.h"

#include "KyStageIcon_p.h"

#include <KyStage.h>

#include <QImage>
#include <QPixmap>

#include <utility>

namespace Kyte {

/** The device-pixel ratios that icons are drawn for. */
static const double ICON_FACTORS[] = {1.0, 1.25, 1.5, 1.75, 2.0, 2.25, 2.5, 2.75, 3.0};

static KyStage *copyOf(const KyStage *stage)
{
    return stage ? new KyStage(*stage) : nullptr;
}

KyStageListWidgetItem::KyStageListWidgetItem(QListWidget *listView, int type)
    : QListWidgetItem(listView, type)
{
}

KyStageListWidgetItem::KyStageListWidgetItem(const QString &text, QListWidget *listView, int type)
    : QListWidgetItem(text, listView, type)
{
}

KyStageListWidgetItem::KyStageListWidgetItem(const QIcon &icon,
                                             const QString &text,
                                             QListWidget *listView,
                                             int type)
    : QListWidgetItem(icon, text, listView, type)
{
}

KyStageListWidgetItem::KyStageListWidgetItem(const KyStage &stage, QListWidget *listView, int type)
    : QListWidgetItem(stage.name(), listView, type)
    , m_stage(new KyStage(stage))
{
}

KyStageListWidgetItem::KyStageListWidgetItem(const QListWidgetItem &other)
    : QListWidgetItem(other)
{
}

KyStageListWidgetItem::KyStageListWidgetItem(const KyStageListWidgetItem &other)
    : QListWidgetItem(other)
    , m_stage(copyOf(other.m_stage))
    , m_iconSize(other.m_iconSize)
{
}

KyStageListWidgetItem::~KyStageListWidgetItem()
{
    delete m_stage;
}

KyStageListWidgetItem &KyStageListWidgetItem::operator=(const KyStageListWidgetItem &other)
{
    if (this == &other)
        return *this;

    delete m_stage;
    m_stage = copyOf(other.m_stage);
    m_iconSize = other.m_iconSize;
    QListWidgetItem::operator=(other); // last: a list widget tells its listeners
    return *this;
}

KyStage *KyStageListWidgetItem::stage() const
{
    return m_stage;
}

void KyStageListWidgetItem::setStage(KyStage *stage)
{
    m_stage = stage;
    setText(stage ? stage->name() : QString());
}

QString KyStageListWidgetItem::description() const
{
    return m_stage ? m_stage->description() : QString();
}

QSize KyStageListWidgetItem::iconSize() const
{
    return m_iconSize;
}

void KyStageListWidgetItem::setIconSize(const QSize &size)
{
    m_iconSize = size;
}

void KyStageListWidgetItem::createIconImage()
{
    if (!m_stage)
        return;
    const QString label = tr("Background");
    QIcon icon;
    for (double factor : ICON_FACTORS) {
        QImage image = StageIcon::draw(*m_stage, m_iconSize, factor, label);
        if (!image.isNull())
            icon.addPixmap(QPixmap::fromImage(std::move(image)), QIcon::Normal, QIcon::Off);
    }
    setIcon(icon);
}

} // namespace Kyte
