#pragma once

#include "KyEditorCommonExport.h"

#include <QAction>

namespace Kyte {

/**
 * A menu action that tells its object name when it is triggered, so that one slot can serve many actions.
 *
 * Set the object name before the action is used; it is read at the moment of triggering. The signal has the
 * name of QAction's own, which goes on working: in string-based connections the arguments tell them apart, by
 * address they are KyMenuAction::triggered and QAction::triggered. GUI thread only.
 */
class KYEDITORCOMMON_EXPORT KyMenuAction : public QAction
{
    Q_OBJECT
    Q_DISABLE_COPY(KyMenuAction)

public:
    explicit KyMenuAction(QObject *parent = nullptr);
    explicit KyMenuAction(const QString &text, QObject *parent = nullptr);
    KyMenuAction(const QIcon &icon, const QString &text, QObject *parent = nullptr);

signals:
    /** Follows QAction::triggered(bool) as its first listener does: before everybody who connected later. */
    void triggered(const QString &objectName, bool checked); // clazy:exclude=overloaded-signal

private slots:
    void onTriggered(bool checked);

private:
    void init();
};

} // namespace Kyte
