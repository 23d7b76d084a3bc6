#pragma once

#include <QBuffer>

namespace Kyte {

/**
 * Bytes for a reader that calls itself as often as the bytes tell it to: they end early when the reader
 * stands too deep on the stack.
 */
class KyShallowBuffer : public QBuffer
{
public:
    /** Readers begin where this object is made. */
    explicit KyShallowBuffer(const QByteArray &bytes)
    {
        setData(bytes);
        open(QIODevice::ReadOnly);
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const char here = 0;
        const qint64 depth = qAbs(qint64(quintptr(this)) - qint64(quintptr(&here)));
        if (m_ended || depth > MAX_STACK) {
            m_ended = true; // for the callers on the way back, too
            return -1;
        }
        return QBuffer::readData(data, maxSize);
    }

private:
    static const qint64 MAX_STACK = 256 * 1024;

    bool m_ended = false;
};

} // namespace Kyte
