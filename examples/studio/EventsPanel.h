#pragma once

#include <KyEvent.h>

#include <QWidget>

class MessageBar;
class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class StageDocument;

/** What a screen raises and what it waits for. */
class EventsPanel : public QWidget
{
    Q_OBJECT

public:
    explicit EventsPanel(StageDocument *document, QWidget *parent = nullptr);

public slots:
    /** -1 for none. */
    void setScreen(int screenId);

private slots:
    void refresh();
    void onEventsChanged(int screenId);
    void onChoiceChanged();
    void onCurrentItemChanged();
    void addEvent();
    void removeEvent();
    void removeAllEvents();

private:
    void makeForm();
    QWidget *makeButtons();
    void fillSenders();
    void fill(QTreeWidgetItem *heading, const QList<Kyte::KyEvent *> &events);
    Kyte::KyEvent chosenEvent() const;
    QString screenName(int screenId) const;

    StageDocument *m_document = nullptr;
    int m_screenId = -1;
    QList<Kyte::KyEvent> m_shown; // what the rows stand for; the screen's own objects come and go
    QLabel *m_title = nullptr;
    QLabel *m_atEnd = nullptr;
    MessageBar *m_messages = nullptr;
    QTreeWidget *m_tree = nullptr;
    QWidget *m_form = nullptr;
    QFormLayout *m_formLayout = nullptr;
    QComboBox *m_direction = nullptr;
    QComboBox *m_type = nullptr;
    QDoubleSpinBox *m_elapsed = nullptr;
    QComboBox *m_sender = nullptr;
    QComboBox *m_action = nullptr;
    QLabel *m_explanation = nullptr;
    QPushButton *m_add = nullptr;
    QPushButton *m_remove = nullptr;
    QPushButton *m_removeAll = nullptr;
};
