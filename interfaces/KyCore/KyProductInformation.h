#pragma once

#include <KyCoreExport.h>

#include <QString>

namespace Kyte {

/** The product that runs, as its applications show it to the user. A plain value. */
class KYCORE_EXPORT KyProductInformation
{
public:
    explicit KyProductInformation(const QString &name = QString(), const QString &version = QString());

    QString name() const;
    void setName(const QString &name);

    QString version() const;
    void setVersion(const QString &version);

private:
    QString m_name;
    QString m_version;
};

} // namespace Kyte
