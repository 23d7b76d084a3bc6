#pragma once

#include <QLabel>

class QAbstractItemView;

/** What stands in a view that has nothing to show. It is there as long as the view's model has no rows. */
class EmptyHint : public QLabel
{
    Q_OBJECT

public:
    /** The view's model must be set already. */
    EmptyHint(const QString &text, QAbstractItemView *view);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void refresh();

private:
    QAbstractItemView *m_view = nullptr;
};
