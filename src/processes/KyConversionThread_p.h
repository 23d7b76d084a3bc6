#pragma once

#include <QThread>

namespace Kyte {

/**
 * The thread of an asynchronous conversion, which belongs to nobody. It ends with the application, whatever
 * its worker is at: the application waits until the worker has ended its converter.
 */
class KyConversionThread : public QThread
{
    Q_OBJECT
    Q_DISABLE_COPY(KyConversionThread)

public:
    KyConversionThread();
    ~KyConversionThread() override;

private slots:
    void end();

private:
    static void endAll();
};

} // namespace Kyte
