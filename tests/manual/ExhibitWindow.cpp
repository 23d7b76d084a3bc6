#include "ExhibitWindow.h"

#include "Exhibits.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

ExhibitWindow::ExhibitWindow(QWidget *parent)
    : QWidget(parent)
    , m_list(new QListWidget(this))
{
    setWindowTitle(tr("Dialogs and widgets"));
    resize(360, 420);
    const QList<Exhibit> all = exhibits();
    for (const Exhibit &exhibit : all)
        m_list->addItem(exhibit.name);
    m_list->setCurrentRow(0);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("Press Return to see it, Tab and Esc to walk through it."), this));
    layout->addWidget(m_list);
    connect(m_list, SIGNAL(itemActivated(QListWidgetItem *)), this, SLOT(showCurrent()));
}

void ExhibitWindow::showCurrent()
{
    QWidget *window = exhibits().at(m_list->currentRow()).make();
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setVisible(true);
    window->activateWindow();
}
