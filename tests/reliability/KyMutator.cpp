#include "KyMutator.h"

#include <QtGlobal>

namespace Kyte {
namespace Test {

static const int PAGE = 4096; // bytes, of a database

/** What XML readers and number parsers trip over. */
static const char *const TOKENS[] = {
    "<",
    ">",
    "&",
    "\"",
    "'",
    "/>",
    "<!--",
    "-->",
    "<![CDATA[",
    "]]>",
    "<?xml",
    "?>",
    "&#0;",
    "&#x110000;",
    "&unknown;",
    "<!DOCTYPE Pelmora [<!ENTITY a \"aaaaaaaaaa\">]>",
    "&a;",
    "<Pelmora>",
    "</Pelmora>",
    "<channel id=\"1\">",
    "</channel>",
    "<destination id=\"1\"/>",
    "xmlns=\"urn:x\"",
    "x:",
    "\xff\xfe",
    "\xef\xbb\xbf",
    "\xc3\x28",
    "\xed\xa0\x80",
    "\xf4\x90\x80\x80",
    "encoding=\"utf-16\"",
    "encoding=\"x\"",
};

/** Values that are well-formed, however little sense they make. */
static const char *const VALUES[] = {
    "",
    " ",
    "-1",
    "0",
    "1",
    "2",
    "7",
    "+3",
    " 7 ",
    "007",
    "0x10",
    "1e3",
    "1.0",
    "2147483647",
    "2147483648",
    "-2147483649",
    "99999999999999999999",
    "%1%2%n",
    "NULL",
    "' OR 1=1 --",
    "\xe2\x80\xae",
    "&#10;",
    "&lt;&amp;",
    "Destination 1",
    "Channel 1",
};

template<int COUNT>
static QByteArray choose(const char *const (&texts)[COUNT], quint32 number)
{
    return texts[number % COUNT];
}

Mutator::Mutator(quint32 seed)
    : m_random(seed)
{
}

int Mutator::below(int limit)
{
    return limit > 0 ? static_cast<int>(m_random.bounded(limit)) : 0;
}

QByteArray Mutator::noise(int size)
{
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(below(256));
    return bytes;
}

void Mutator::changeXml(QByteArray *content)
{
    const int position = below(content->size());
    const int length = below(qMin(60, content->size() - position));
    switch (below(8)) {
    case 0:
        content->replace(position, 1, noise(1));
        break;
    case 1:
        content->truncate(position);
        break;
    case 2:
        content->remove(position, length);
        break;
    case 3:
        content->insert(position, content->mid(below(content->size()), length));
        break;
    case 4:
        content->insert(position, noise(1 + below(8)));
        break;
    case 5: {
        const QByteArray part = content->mid(position, 1 + length / 10);
        content->insert(position, part.repeated(below(300)));
        break;
    }
    default:
        content->insert(position, choose(TOKENS, m_random.generate()));
        break;
    }
}

/** Gives another value to an attribute. */
void Mutator::changeValue(QByteArray *content)
{
    const int begin = content->indexOf("=\"", below(content->size()));
    const int end = content->indexOf('"', begin + 2);
    if (begin >= 0 && end >= 0)
        content->replace(begin + 2, end - begin - 2, choose(VALUES, m_random.generate()));
}

void Mutator::changeDatabase(QByteArray *content)
{
    // Where a page begins, SQLite keeps what the rest of the page hangs on.
    const int pages = content->size() / PAGE;
    const int page = below(pages) * PAGE;
    const bool isNearTheBegin = below(3) > 0;
    const int position = isNearTheBegin ? page + below(page == 0 ? 110 : 40) : below(content->size());
    const int other = below(pages) * PAGE;
    switch (below(8)) {
    case 0:
        content->replace(page, PAGE, noise(qMin(PAGE, content->size() - page)));
        break;
    case 1:
        content->replace(page, PAGE, QByteArray(PAGE, below(2) ? '\0' : '\xff'));
        break;
    case 2:
        content->replace(page, PAGE, content->mid(other, PAGE));
        break;
    case 3:
        content->truncate(below(4) ? page : position);
        break;
    case 4:
        content->replace(position, 32, noise(32));
        break;
    default:
        content->replace(position, 1,
                         QByteArray(1, static_cast<char>(content->at(position) ^ (1 << below(8)))));
        break;
    }
}

QByteArray Mutator::damagedXml(const QByteArray &content)
{
    QByteArray damaged = content;
    const bool isWellFormed = below(2) > 0;
    for (int changes = 1 + below(4); changes > 0; --changes) {
        if (isWellFormed)
            changeValue(&damaged);
        else
            changeXml(&damaged);
    }
    return damaged;
}

QByteArray Mutator::damagedDatabase(const QByteArray &content)
{
    QByteArray damaged = content;
    for (int changes = 1 + below(4); changes > 0 && damaged.size() >= PAGE; --changes)
        changeDatabase(&damaged);
    return damaged;
}

} // namespace Test
} // namespace Kyte
