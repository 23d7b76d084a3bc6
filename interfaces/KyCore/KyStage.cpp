#include "KyStage.h"

#include "KyScreen.h"

namespace Kyte {

static QList<KyScreen *> copyScreens(const QList<KyScreen *> &screens)
{
    QList<KyScreen *> copies;
    copies.reserve(screens.size());
    for (const KyScreen *screen : screens) {
        if (screen) // the list is open to everybody
            copies.append(new KyScreen(*screen));
    }
    return copies;
}

KyStage::KyStage(QObject *parent)
    : QObject(parent)
{
}

KyStage::KyStage(const KyStage &other)
    : QObject(nullptr)
    , m_name(other.m_name)
    , m_description(other.m_description)
    , m_filePath(other.m_filePath)
    , m_backgroundColor(other.m_backgroundColor)
    , m_backgroundImage(other.m_backgroundImage)
    , m_rect(other.m_rect)
    , m_options(other.m_options)
    , m_screenList(copyScreens(other.m_screenList))
{
}

KyStage::~KyStage()
{
    qDeleteAll(m_screenList);
}

KyStage &KyStage::operator=(const KyStage &other)
{
    if (this == &other)
        return *this;

    m_name = other.m_name;
    m_description = other.m_description;
    m_filePath = other.m_filePath;
    m_backgroundColor = other.m_backgroundColor;
    m_backgroundImage = other.m_backgroundImage;
    m_rect = other.m_rect;
    m_options = other.m_options;
    qDeleteAll(m_screenList);
    m_screenList = copyScreens(other.m_screenList);
    return *this;
}

QString KyStage::name() const
{
    return m_name;
}

void KyStage::setName(const QString &name)
{
    m_name = name;
}

QString KyStage::description() const
{
    return m_description;
}

void KyStage::setDescription(const QString &description)
{
    m_description = description;
}

QString KyStage::filePath() const
{
    return m_filePath;
}

void KyStage::setFilePath(const QString &filePath)
{
    m_filePath = filePath;
}

QColor KyStage::backgroundColor() const
{
    return m_backgroundColor;
}

void KyStage::setBackgroundColor(const QColor &color)
{
    m_backgroundColor = color;
}

QString KyStage::backgroundImage() const
{
    return m_backgroundImage;
}

void KyStage::setBackgroundImage(const QString &path)
{
    m_backgroundImage = path;
}

QRect KyStage::rect() const
{
    return m_rect;
}

void KyStage::setRect(const QRect &rect)
{
    m_rect = rect;
}

unsigned int KyStage::options() const
{
    return m_options;
}

void KyStage::setOptions(unsigned int options)
{
    m_options = options;
}

bool KyStage::hasOption(unsigned int option) const
{
    return option != 0 && (m_options & option) == option;
}

void KyStage::setOption(unsigned int option, bool on)
{
    m_options = on ? m_options | option : m_options & ~option;
}

QList<KyScreen *> KyStage::screenList() const
{
    return m_screenList;
}

QList<KyScreen *> *KyStage::screenListPtr()
{
    return &m_screenList;
}

} // namespace Kyte
