#pragma once

#include <QStringList>
#include <QVector>

namespace Kyte {

/**
 * A table of plain text: a line of titles, a rule and the rows, indented by two and aligned for a terminal of
 * 100 columns. The widest columns give way where that is not enough; a cell that is cut ends with "…".
 */
class TextTable
{
public:
    enum Alignment { Left, Right };

    struct Column
    {
        QString title;
        Alignment alignment;
    };

    explicit TextTable(const QVector<Column> &columns);

    /** As many cells as there are columns. Control characters are shown as "�", so no cell can drive a
     * terminal. */
    void addRow(const QStringList &cells);
    QString toString() const;

    /** How many columns of a terminal \a text takes: two for East Asian wide characters, none for combining
     * marks. */
    static int displayWidth(const QString &text);
    /** \a text with "�" for every control character. */
    static QString printable(QString text);

private:
    QVector<int> widths() const;
    QString line(const QStringList &cells, const QVector<int> &widths) const;

    QVector<Column> m_columns;
    QVector<QStringList> m_rows;
};

} // namespace Kyte
