#include "KyPngExtent_p.h"

#include "KyByteCursor_p.h"

namespace Kyte {

static const quint64 SIGNATURE = 0x89504e470d0a1a0a;
static const quint32 HEADER_SIZE = 13;
static const int CHECKSUM_SIZE = 4;
// Texts and colour profiles grow up to a thousand times; this many packed bytes are 256 MiB at most.
static const quint32 MAX_PACKED = 256 * 1024;

// A chunk's name, as the number that its four letters are.
static constexpr quint32 chunk(const char (&name)[5])
{
    return quint32(name[0]) << 24 | quint32(name[1]) << 16 | quint32(name[2]) << 8 | quint32(name[3]);
}

static bool isPacked(quint32 type)
{
    return type == chunk("zTXt") || type == chunk("iTXt") || type == chunk("iCCP");
}

static qint64 pictureSize(KyByteCursor header)
{
    quint32 width = 0;
    quint32 height = 0;
    quint8 bits = 0;
    if (!header.read(&width) || !header.read(&height) || !header.read(&bits))
        return -1;
    const qint64 maxSide = 0x7fffffff;
    if (width == 0 || height == 0 || width > maxSide || height > maxSide)
        return -1;
    const qint64 pixelSize = bits == 16 ? 8 : 4;
    if (qint64(width) > maxSide / pixelSize)
        return -1;
    return (width * pixelSize + qint64(sizeof(void *))) * height; // a pointer to each row while it is read
}

qint64 skipPng(KyByteCursor *cursor)
{
    quint64 signature = 0;
    if (!cursor->read(&signature) || signature != SIGNATURE)
        return -1;

    qint64 size = -1;
    quint32 packed = 0;
    for (;;) {
        quint32 length = 0;
        quint32 type = 0;
        if (!cursor->read(&length) || !cursor->read(&type))
            return -1;
        if ((size < 0) != (type == chunk("IHDR"))) // the header is the first one, and only that
            return -1;
        if (type == chunk("IHDR")) {
            size = length == HEADER_SIZE ? pictureSize(*cursor) : -1;
            if (size < 0)
                return -1;
        }
        if (!cursor->skip(qint64(length) + CHECKSUM_SIZE))
            return -1;
        if (isPacked(type))
            packed += length;
        if (packed > MAX_PACKED)
            return -1;
        if (type == chunk("IEND"))
            return size;
    }
}

} // namespace Kyte
