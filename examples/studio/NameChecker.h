#pragma once

#include <KyInputNameChecker.h>

#include <QStringList>

/** Accepts names that nobody has yet, in any letter case, and that are not blank. */
class NameChecker : public Kyte::KyInputNameChecker
{
    Q_OBJECT

public:
    explicit NameChecker(const QStringList &usedNames, QObject *parent = nullptr);

    bool validateText(const QString &text) override;

private:
    QStringList m_usedNames;
};
