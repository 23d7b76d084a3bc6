#pragma once

#include <QList>
#include <QMainWindow>

class QDockWidget;

/** A window whose docks are where they were when it was closed: areas, sizes, floating docks, tabs and the
 * front tab. */
class DockWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit DockWindow(QWidget *parent = nullptr);

    /** Moves the docks as a user might do, for a look without a hand on the mouse. */
    void rearrange();

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private slots:
    void restoreLayout();

private:
    QDockWidget *addDock(const QString &name, const QString &title, Qt::DockWidgetArea area);
    void resizeStack(const QList<QDockWidget *> &stack);
    void storeLayout();

    QList<QDockWidget *> m_docks;
    bool m_isRestored = false;
};
