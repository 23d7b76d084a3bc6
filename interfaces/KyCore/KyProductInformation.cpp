#include "KyProductInformation.h"

namespace Kyte {

KyProductInformation::KyProductInformation(const QString &name, const QString &version)
    : m_name(name)
    , m_version(version)
{
}

QString KyProductInformation::name() const
{
    return m_name;
}

void KyProductInformation::setName(const QString &name)
{
    m_name = name;
}

QString KyProductInformation::version() const
{
    return m_version;
}

void KyProductInformation::setVersion(const QString &version)
{
    m_version = version;
}

} // namespace Kyte
