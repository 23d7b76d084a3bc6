#include "KyInputNameChecker.h"

#include <QRegExp>
#include <QRegExpValidator>

namespace Kyte {

static const QString ALLOWED_TEXT = QStringLiteral(R"([^\\/:\*\?"<>|;]+)");

KyInputNameChecker::KyInputNameChecker(QObject *parent)
    : QObject(parent)
    , m_validator(new QRegExpValidator(QRegExp(ALLOWED_TEXT), this))
{
}

bool KyInputNameChecker::checkText(const QString &text)
{
    const bool isValid = validateText(text);
    if (isValid)
        emit succeeded();
    else
        emit failured(m_errorMessage);
    return isValid;
}

QString KyInputNameChecker::errorMessage() const
{
    return m_errorMessage;
}

void KyInputNameChecker::setErrorMessage(const QString &message)
{
    m_errorMessage = message;
}

QValidator *KyInputNameChecker::validator() const
{
    return m_validator;
}

void KyInputNameChecker::setValidator(QValidator *validator)
{
    if (validator == m_validator)
        return;
    delete m_validator;
    m_validator = validator;
    if (m_validator)
        m_validator->setParent(this);
}

} // namespace Kyte
