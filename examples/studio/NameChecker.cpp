#include "NameChecker.h"

NameChecker::NameChecker(const QStringList &usedNames, QObject *parent)
    : KyInputNameChecker(parent)
    , m_usedNames(usedNames)
{
}

bool NameChecker::validateText(const QString &text)
{
    if (text.trimmed().isEmpty()) {
        setErrorMessage(tr("A name is more than blanks."));
        return false;
    }
    setErrorMessage(tr("The name \"%1\" is in use.").arg(text.trimmed()));
    return !m_usedNames.contains(text.trimmed(), Qt::CaseInsensitive);
}
