#pragma once

#include "KyConfig.h"

namespace Kyte {

/** What a configuration file holds; the folders are absolute. */
struct KyConfigContent
{
    QString dataDir;
    QString logDir;
    QList<KyConfig::Destination> destinations;
};

/**
 * Replaces the parts of \a content that the file at \a path gives.
 *
 * @return false, with \a content unchanged, when the file is missing, unreadable or malformed.
 */
bool readConfigFile(const QString &path, KyConfigContent *content);

/** Writes a configuration file without destinations, whole or not at all. The folders are written as they are
 * given. */
bool writeDefaultConfigFile(const QString &path, const QString &dataDir, const QString &logDir);

/**
 * Whether \a xml may be given to QXmlStreamReader. That takes time in the square of an element's attributes
 * (a minute for 100,000), so an element with more than 64 of them is refused before; so are a document type
 * definition, which could add attributes, and NUL bytes, which UTF-8 text does not hold. One pass over the
 * bytes.
 */
bool isHarmlessXml(const QByteArray &xml);

} // namespace Kyte
