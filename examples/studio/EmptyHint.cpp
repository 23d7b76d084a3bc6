#include "EmptyHint.h"

#include <QAbstractItemView>
#include <QEvent>

EmptyHint::EmptyHint(const QString &text, QAbstractItemView *view)
    : QLabel(text, view->viewport())
    , m_view(view)
{
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setMargin(16);
    setForegroundRole(QPalette::Mid);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    view->viewport()->installEventFilter(this);
    const QAbstractItemModel *model = view->model();
    connect(model, SIGNAL(rowsInserted(QModelIndex, int, int)), this, SLOT(refresh()));
    connect(model, SIGNAL(rowsRemoved(QModelIndex, int, int)), this, SLOT(refresh()));
    connect(model, SIGNAL(layoutChanged()), this, SLOT(refresh()));
    connect(model, SIGNAL(modelReset()), this, SLOT(refresh()));
    refresh();
}

bool EmptyHint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(m_view->viewport()->rect());
    return QLabel::eventFilter(watched, event);
}

void EmptyHint::refresh()
{
    setVisible(m_view->model()->rowCount(m_view->rootIndex()) == 0);
}
