#pragma once

#include <QThread>
#include <QWidget>

class MessageBar;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace Kyte {
class KyStage;
class KyStageListWidgetItem;
class KyStageTemplate;
class KyWaitingImageWidget;
} // namespace Kyte

// Connections name this type as the library declares it, without the namespace.
using Kyte::KyStageListWidgetItem;

/**
 * The stage templates. They are made on a thread of their own, appear one by one and can be stopped in
 * between.
 */
class TemplatesPanel : public QWidget
{
    Q_OBJECT

public:
    explicit TemplatesPanel(QWidget *parent = nullptr);
    ~TemplatesPanel() override;

public slots:
    /** Makes the list anew. */
    void build();
    void stop();

signals:
    /** The user looks at a template. */
    void templateSelected(const Kyte::KyStage &stage);
    /** The user wants to work on it. */
    void templateChosen(const Kyte::KyStage &stage);
    void filled();

private slots:
    void onStarted();
    void onItemCreated(KyStageListWidgetItem *item);
    void onAborted();
    void onFinished();
    void onCurrentItemChanged(QListWidgetItem *item);
    void choose();

private:
    const Kyte::KyStage *currentStage() const;
    void deleteUndelivered();

    QListWidget *m_list = nullptr;
    QLabel *m_description = nullptr;
    QPushButton *m_use = nullptr;
    QPushButton *m_stop = nullptr;
    QPushButton *m_build = nullptr;
    MessageBar *m_messages = nullptr;
    Kyte::KyWaitingImageWidget *m_waiting = nullptr;
    QThread m_thread;
    Kyte::KyStageTemplate *m_builder = nullptr; // owned, lives in m_thread
};
