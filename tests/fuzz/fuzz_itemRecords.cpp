/*
 * Drops whatever libFuzzer makes up. Beside what the sanitizers find, no Qt message may be printed but those
 * of libpng and of colour profiles, which only reading can find out about.
 */

#include "KyItemSamples.h"

#include <KyItemRecords_p.h>

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>

using namespace Kyte;

static void refuseMessages(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    const bool isOfProfile = qstrcmp(context.category, "qt.gui.icc") == 0
        || message == QLatin1String("QPngHandler: Failed to parse ICC profile");
    if (isOfProfile || message.startsWith(QLatin1String("libpng ")))
        return;
    std::fprintf(stderr, "%s: %s\n", context.category, qPrintable(message));
    std::abort();
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QGuiApplication(*argc, *argv); // it lives as long as the process
    Test::registerItemTypes();
    qInstallMessageHandler(refuseMessages);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray payload(reinterpret_cast<const char *>(data), int(size));
    if (payload.contains("Caption")) // the variants in it are read by its own operator, that is by Qt alone
        return 0;
    readItemRecords(payload);
    return 0;
}
