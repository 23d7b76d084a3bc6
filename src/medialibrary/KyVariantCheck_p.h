#pragma once

#include "KyByteCursor_p.h"

#include <QDataStream>

class QImage;

namespace Kyte {

/**
 * Walks over values as QDataStream writes them, without making them, and stops at everything that would make
 * QDataStream reserve, loop or call itself beyond what the bytes are worth. Values of unknown build are read
 * once for trial: pictures, JSON and CBOR, icons of plug-ins, types of the application.
 *
 * The walk is false at the first thing that is cut off, damaged or refused, and of no use after that.
 */
class KyVariantCheck
{
public:
    explicit KyVariantCheck(const QByteArray &bytes);

    /**
     * The bytes as they may be read: names of files that an icon would open are overwritten in them, and
     * addresses of functions.
     */
    const QByteArray &bytes() const
    {
        return m_cursor.bytes();
    }
    int position() const
    {
        return m_cursor.position();
    }
    bool atEnd() const
    {
        return m_cursor.atEnd();
    }

    bool skipInt()
    {
        return m_cursor.skip(4);
    }
    bool skipRoleMap();
    bool skipVariant();

private:
    struct Layout
    {
        int type;
        int size; // of values that are all of one size
        bool (KyVariantCheck::*skip)();
    };
    static const Layout LAYOUTS[];
    static const Layout *layout(int type);

    bool skipValue(int type);
    bool skipUserType();
    bool skipKnownUserType(int type, const QByteArray &name);
    bool isCountBelievable(const QByteArray &typeName) const;
    bool skipContainer(const QByteArray &typeName);
    template<typename Read>
    bool skipByReading(Read read);

    bool skipBytes()
    {
        return m_cursor.readBytes();
    }
    bool skipString()
    {
        return m_cursor.readString();
    }
    bool skipStringList();
    bool skipByteArrayList();
    bool skipVariantList();
    bool skipVariantMap();
    bool skipIntegerMap(quint32 limit);
    bool skipBitArray();
    bool skipDateTime();
    bool skipTimeZone();
    bool skipRegExp();
    bool skipRegularExpression();
    bool skipEasingCurve();
    bool skipJsonDocument();
    bool skipJsonValue();
    bool skipCbor();

    bool skipColor();
    bool skipBrush();
    bool skipGradient();
    bool skipPen();
    bool skipPalette();
    bool skipFont();
    bool skipPolygon();
    bool skipPolygonF();
    bool skipRegion();
    bool skipKeySequence();
    bool skipTextFormat();
    bool skipCursor();
    bool skipPicture();
    bool readPicture(QImage *picture);
    bool skipIcon();
    bool skipPixmapIcon();
    bool skipPixmapIconEntry();
    bool skipSvgIcon();
    bool skipPluginIcon(int begin, const QString &engine);

    KyByteCursor m_cursor;
    int m_depth = 0;
    qint64 m_patternCostLeft; // what further patterns may cost
    qint64 m_pictureBytesLeft; // what further pictures may take
};

} // namespace Kyte
