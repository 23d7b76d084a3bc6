#pragma once

#include <QWidget>

class QListWidget;

/** A list of everything there is to see; a double click, or the return key, shows it. */
class ExhibitWindow : public QWidget
{
    Q_OBJECT

public:
    explicit ExhibitWindow(QWidget *parent = nullptr);

private slots:
    void showCurrent();

private:
    QListWidget *m_list = nullptr;
};
