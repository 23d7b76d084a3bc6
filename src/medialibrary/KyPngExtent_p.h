#pragma once

#include <QtGlobal>

namespace Kyte {

class KyByteCursor;

/**
 * Moves \a cursor behind the PNG file that begins there, without unpacking it.
 *
 * @return how many bytes its picture takes while and after it is read; -1 when it is no PNG, has no end or
 *         unpacks to nobody knows how many bytes beside its picture
 */
qint64 skipPng(KyByteCursor *cursor);

} // namespace Kyte
