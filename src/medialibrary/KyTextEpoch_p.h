#pragma once

#include <QLocale>
#include <QObject>

namespace Kyte {

/**
 * Tells whether shown texts that were kept are still what they would be now: they follow the default locale
 * and the application's translators.
 */
class KyTextEpoch : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyTextEpoch)

public:
    /** A number above 0 that is another one after a change. On the GUI thread only. */
    static quint32 current();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit KyTextEpoch(QObject *application);
};

} // namespace Kyte
