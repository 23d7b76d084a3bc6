#include "KyChildNames_p.h"

#include "KyFileSystemItem.h"

#include <QChar>

#include <algorithm>

namespace Kyte {

/** Equal for names that QString compares as equal without case, which folds one character at a time. */
static uint foldedHash(const QStringRef &name)
{
    uint hash = 0;
    for (int i = 0; i < name.size(); ++i) {
        uint character = name.at(i).unicode();
        if (name.at(i).isHighSurrogate() && i + 1 < name.size() && name.at(i + 1).isLowSurrogate()) {
            ++i;
            character = QChar::surrogateToUcs4(name.at(i - 1), name.at(i));
        }
        hash = hash * 31 + QChar::toCaseFolded(character);
    }
    return hash;
}

void KyChildNames::validate(quint32 assignments)
{
    if (m_assignments != assignments)
        clear();
    m_assignments = assignments;
}

void KyChildNames::clear()
{
    m_minima.clear();
    m_minimaKnown = false;
    m_rows.clear();
    m_rowsKnown = false;
}

int KyChildNames::insertionRow(const QList<KyFileSystemItem *> &children,
                               const QString &name,
                               Qt::CaseSensitivity cs)
{
    if (!m_minimaKnown || m_cs != cs)
        findMinima(children, cs);
    const auto isNotBelow = [&children, cs](int row, const QString &newName) {
        return QString::compare(newName, children.at(row)->fileName(), cs) <= 0;
    };
    const auto stop = std::lower_bound(m_minima.cbegin(), m_minima.cend(), name, isNotBelow);
    return stop == m_minima.cend() ? children.size() : *stop + 1;
}

void KyChildNames::noteInsertion(int row, int count, const QString &name)
{
    m_rows.clear();
    m_rowsKnown = false;
    if (row == count) {
        if (m_minima.isEmpty() || QString::compare(name, m_lowestName, m_cs) < 0) {
            m_minima.append(row);
            m_lowestName = name;
        }
        return;
    }
    // The name before the new row is less, so the new one is no minimum; those behind it move.
    const auto moved = std::lower_bound(m_minima.begin(), m_minima.end(), row);
    std::for_each(moved, m_minima.end(), [](int &minimum) {
        ++minimum;
    });
}

QVector<int> KyChildNames::rowsLike(const QList<KyFileSystemItem *> &children, const QStringRef &name)
{
    if (!m_rowsKnown)
        hashNames(children);
    QVector<int> rows;
    const uint hash = foldedHash(name);
    auto it = std::lower_bound(m_rows.cbegin(), m_rows.cend(), qMakePair(hash, 0));
    for (; it != m_rows.cend() && it->first == hash; ++it)
        rows.append(it->second);
    return rows;
}

void KyChildNames::findMinima(const QList<KyFileSystemItem *> &children, Qt::CaseSensitivity cs)
{
    m_minima.clear();
    for (int row = 0; row < children.size(); ++row) {
        const QString name = children.at(row)->fileName();
        if (m_minima.isEmpty() || QString::compare(name, m_lowestName, cs) < 0) {
            m_minima.append(row);
            m_lowestName = name;
        }
    }
    m_cs = cs;
    m_minimaKnown = true;
}

void KyChildNames::hashNames(const QList<KyFileSystemItem *> &children)
{
    m_rows.clear();
    m_rows.reserve(children.size());
    for (int row = 0; row < children.size(); ++row) {
        const QString name = children.at(row)->fileName();
        m_rows.append(qMakePair(foldedHash(QStringRef(&name)), row));
    }
    std::sort(m_rows.begin(), m_rows.end());
    m_rowsKnown = true;
}

} // namespace Kyte
