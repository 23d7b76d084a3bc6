#include "KyCnvConversion.h"
#include "KyCnvProcess.h"

#include <QCoreApplication>

using namespace Kyte;

/** Converts a presentation to images or a video; docs/converter.md tells how it is called and what it says.
 */
int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    KyCnvProcess::prepareConverter();
    KyCnvArguments arguments;
    const int wrong = arguments.read(application.arguments().mid(1));
    if (wrong != 0) {
        say(KyCnvCode::BadArguments, QString::number(wrong));
        return -int(KyCnvCode::BadArguments);
    }
    return KyCnvConversion(arguments).run();
}
