#pragma once

#include <QList>
#include <QString>

class QWidget;

/** One dialog or widget in one state. */
struct Exhibit
{
    QString name;
    /** A new window that is not shown yet; it belongs to the caller. */
    QWidget *(*make)();
};

/** Everything that there is to see, in the order of the documentation. */
QList<Exhibit> exhibits();
