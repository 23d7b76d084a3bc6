#pragma once

#include "KyCnvArguments.h"
#include "KyCnvOffice.h"
#include "KyCnvProtocol.h"
#include "KyCnvSlides.h"

#include <QStringList>

namespace Kyte {

/** One run of the converter: says how far it is, and leaves either everything that was asked for or nothing.
 */
class KyCnvConversion
{
public:
    explicit KyCnvConversion(const KyCnvArguments &arguments);

    /** The exit code: 0, a failure's negated code, or END_REQUESTED. */
    int run();

    /** As a shell tells the end by a request to end. */
    static const int END_REQUESTED = 143;

private:
    int fail(KyCnvCode code, const QString &text);
    int convert();
    int makeImages(const QString &pdf, int count);
    int makeVideo(const QString &pdf, const KyCnvPages &pages);
    QVector<int> durations(int count);
    QString pathOf(const QString &name) const;

    KyCnvArguments m_arguments;
    KyCnvOffice m_office;
    QStringList m_files; // made by this run
};

} // namespace Kyte
