#pragma once

#include "KyEditorCommonExport.h"

#include <QObject>

class QValidator;

namespace Kyte {

/**
 * Decides whether a name is acceptable: the base of the applications' checkers.
 *
 * A subclass supplies validateText(), and sets the error message, at the latest there. The validator
 * restricts what can be typed; the checker owns it. A checker given to a KyCommonInputNameDialog belongs to
 * that. GUI thread only.
 */
class KYEDITORCOMMON_EXPORT KyInputNameChecker : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyInputNameChecker)

public:
    /** With a validator that refuses what file names cannot hold, and the semicolon. */
    explicit KyInputNameChecker(QObject *parent = nullptr);

    /** Asks validateText(), emits succeeded() or failured(), and returns the answer. */
    bool checkText(const QString &text);

    QString errorMessage() const;
    void setErrorMessage(const QString &message);

    /** The validator is taken over and the former one deleted; null lifts the restriction. */
    QValidator *validator() const;
    void setValidator(QValidator *validator);

    virtual bool validateText(const QString &text) = 0;

signals:
    /** With the error message as it is after the test. */
    void failured(const QString &message);
    void succeeded();

private:
    QValidator *m_validator = nullptr; // owned
    QString m_errorMessage;
};

} // namespace Kyte
