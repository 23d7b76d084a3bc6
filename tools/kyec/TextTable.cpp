#include "TextTable.h"

#include <QChar>

#include <algorithm>
#include <numeric>

namespace Kyte {

static const int LINE_WIDTH = 100;
static const int MINIMUM_WIDTH = 4; // of a column that gives way
static const QString INDENT = QStringLiteral("  ");
static const QString GAP = QStringLiteral("  ");
static const QChar ELLIPSIS(0x2026);

/** The blocks of characters that terminals draw two columns wide. */
static const struct
{
    uint first;
    uint last;
} WIDE_BLOCKS[] = {
    {0x1100, 0x115F}, // Hangul Jamo
    {0x2E80, 0x303E}, // CJK radicals and punctuation
    {0x3041, 0xA4CF}, // Kana to Yi
    {0xAC00, 0xD7A3}, // Hangul syllables
    {0xF900, 0xFAFF}, // CJK compatibility ideographs
    {0xFE30, 0xFE6F}, // CJK compatibility forms
    {0xFF00, 0xFF60}, // full-width forms
    {0xFFE0, 0xFFE6}, // full-width signs
    {0x1F300, 0x1F64F}, // pictographs
    {0x1F900, 0x1F9FF}, // supplemental pictographs
    {0x20000, 0x3FFFD}, // CJK extensions
};

static int characterWidth(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return 0;
    default:
        break;
    }
    const bool isWide =
        std::any_of(std::begin(WIDE_BLOCKS), std::end(WIDE_BLOCKS), [character](const auto &block) {
            return character >= block.first && character <= block.last;
        });
    return isWide ? 2 : 1;
}

/** As much of \a text as fits into \a width columns, with an ellipsis where something is missing. */
static QString cut(const QString &text, int width)
{
    if (TextTable::displayWidth(text) <= width)
        return text;
    QString result;
    int used = 1; // the ellipsis
    const QVector<uint> characters = text.toUcs4();
    for (uint character : characters) {
        used += characterWidth(character);
        if (used > width)
            break;
        result += QString::fromUcs4(&character, 1);
    }
    return result + ELLIPSIS;
}

TextTable::TextTable(const QVector<Column> &columns)
    : m_columns(columns)
{
}

void TextTable::addRow(const QStringList &cells)
{
    Q_ASSERT(cells.size() == m_columns.size());
    QStringList row;
    row.reserve(cells.size());
    for (const QString &cell : cells)
        row.append(printable(cell));
    m_rows.append(row);
}

QString TextTable::toString() const
{
    const QVector<int> columnWidths = widths();
    QStringList titles;
    QStringList rule;
    for (int column = 0; column < m_columns.size(); ++column) {
        titles.append(m_columns.at(column).title);
        rule.append(QString(columnWidths.at(column), QLatin1Char('-')));
    }
    QString text = line(titles, columnWidths) + line(rule, columnWidths);
    for (const QStringList &row : m_rows)
        text += line(row, columnWidths);
    return text;
}

int TextTable::displayWidth(const QString &text)
{
    const QVector<uint> characters = text.toUcs4();
    return std::accumulate(characters.begin(), characters.end(), 0, [](int width, uint character) {
        return width + characterWidth(character);
    });
}

QString TextTable::printable(QString text)
{
    for (QChar &character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line
            || category == QChar::Separator_Paragraph)
            character = QChar::ReplacementCharacter;
    }
    return text;
}

QVector<int> TextTable::widths() const
{
    QVector<int> result;
    int excess = INDENT.size() - GAP.size() - LINE_WIDTH;
    for (int column = 0; column < m_columns.size(); ++column) {
        int width = displayWidth(m_columns.at(column).title);
        for (const QStringList &row : m_rows)
            width = qMax(width, displayWidth(row.at(column)));
        result.append(width);
        excess += width + GAP.size();
    }
    for (; excess > 0; --excess) {
        int &widest = *std::max_element(result.begin(), result.end());
        if (widest <= MINIMUM_WIDTH)
            break;
        --widest;
    }
    return result;
}

QString TextTable::line(const QStringList &cells, const QVector<int> &widths) const
{
    QString text = INDENT;
    for (int column = 0; column < cells.size(); ++column) {
        const QString cell = cut(cells.at(column), widths.at(column));
        const QString padding(widths.at(column) - displayWidth(cell), QLatin1Char(' '));
        if (column > 0)
            text += GAP;
        text += m_columns.at(column).alignment == Right ? padding + cell : cell + padding;
    }
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text + QLatin1Char('\n');
}

} // namespace Kyte
