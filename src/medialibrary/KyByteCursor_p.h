#pragma once

#include <QByteArray>
#include <QString>
#include <QtEndian>

#include <cstring>

namespace Kyte {

/**
 * A place in bytes that QDataStream wrote. Each operation moves behind what it names and is false, with the
 * place anywhere, when the bytes end before.
 */
class KyByteCursor
{
public:
    explicit KyByteCursor(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    const QByteArray &bytes() const
    {
        return m_bytes;
    }
    int position() const
    {
        return m_position;
    }
    int left() const
    {
        return m_bytes.size() - m_position;
    }
    bool atEnd() const
    {
        return left() == 0;
    }

    /** The bytes from here on; they live as long as this cursor and its bytes do. */
    QByteArray rest() const
    {
        return QByteArray::fromRawData(m_bytes.constData() + m_position, left());
    }

    /** Goes back to a \a position where the cursor was before. */
    void seek(int position)
    {
        m_position = position;
    }

    bool skip(qint64 count)
    {
        if (count < 0 || count > left())
            return false;
        m_position += int(count);
        return true;
    }

    /** A number of the size of \a T, as QDataStream orders its bytes. */
    template<typename T>
    bool read(T *number)
    {
        const int begin = m_position;
        if (!skip(sizeof(T)))
            return false;
        *number = qFromBigEndian<T>(m_bytes.constData() + begin);
        return true;
    }

    bool read(double *number)
    {
        quint64 bits = 0;
        if (!read(&bits))
            return false;
        std::memcpy(number, &bits, sizeof bits);
        return true;
    }

    /** A count in front of entries of \a entrySize bytes each, and the entries. */
    bool skipArray(int entrySize, quint32 limit = 0xffffffff)
    {
        quint32 count = 0;
        return read(&count) && count <= limit && skip(qint64(count) * entrySize);
    }

    /** A byte array or a null one; \a content, where given, refers to these bytes. */
    bool readBytes(QByteArray *content = nullptr)
    {
        quint32 size = 0;
        if (!read(&size))
            return false;
        if (size == NULL_SIZE)
            return true;
        const int begin = m_position;
        if (!skip(size))
            return false;
        if (content)
            *content = QByteArray::fromRawData(m_bytes.constData() + begin, int(size));
        return true;
    }

    bool readString(QString *text = nullptr)
    {
        QByteArray content;
        if (!readBytes(&content) || content.size() % 2 != 0)
            return false;
        if (text) {
            text->resize(content.size() / 2);
            qFromBigEndian<ushort>(content.constData(), text->size(), text->data());
        }
        return true;
    }

    /** Writes \a content over the bytes at \a position. */
    void overwrite(int position, const QByteArray &content)
    {
        m_bytes.replace(position, content.size(), content);
    }

private:
    static const quint32 NULL_SIZE = 0xffffffff;

    QByteArray m_bytes;
    int m_position = 0;
};

} // namespace Kyte
