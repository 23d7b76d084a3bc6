#pragma once

#include "KyEditorCommonExport.h"

#include <QString>
#include <QVariant>

class QSettings;

namespace Kyte {

/**
 * The per-user settings: "usersettings.ini" in the user's application-data folder, in which the library keeps
 * remembered choices such as the dock layout.
 *
 * Everything is static and forwards to one QSettings (INI format, UTF-8), created on first use and never
 * deleted, so changes reach the file when the event loop runs or sync() is called. A missing or unreadable
 * file behaves as an empty store. QSettings writes texts unit by unit: a character beyond U+FFFF gets lost.
 * Creation is thread-safe; groups are shared by all callers, so the rest belongs to the main thread.
 */
class KYEDITORCOMMON_EXPORT KyEditorUserConfig
{
    Q_DISABLE_COPY(KyEditorUserConfig)

public:
    /** The one settings object; it belongs to this class. */
    static QSettings *settings();
    static void beginGroup(const QString &prefix);
    static void endGroup();
    static QString group();
    static void setValue(const QString &key, const QVariant &value);
    static QVariant value(const QString &key, const QVariant &defaultValue = QVariant());
    /** Writes pending changes to the file, and takes over what other processes wrote. */
    static void sync();

protected:
    KyEditorUserConfig();

    static KyEditorUserConfig *getInscance();

private:
    QSettings *m_settings = nullptr; // owned
};

} // namespace Kyte
