#pragma once

#include <QThread>
#include <QWidget>

class QLabel;
class QListWidget;
class QListWidgetItem;

namespace Kyte {
class KyStageListWidgetItem;
class KyStagePreview;
class KyStageTemplate;
} // namespace Kyte

// Connections name this type as the library declares it, without the namespace.
using Kyte::KyStageListWidgetItem;

/**
 * Lets the user pick a stage template: the list with the icons on the left, the chosen template's preview and
 * description on the right. The templates are made on a worker thread and appear one by one.
 */
class PickerWindow : public QWidget
{
    Q_OBJECT

public:
    explicit PickerWindow(QWidget *parent = nullptr);
    ~PickerWindow() override;

signals:
    /** All templates are in the list. */
    void filled();

private slots:
    void onItemCreated(KyStageListWidgetItem *item);
    void onCurrentItemChanged(QListWidgetItem *item);

private:
    QListWidget *m_list = nullptr;
    Kyte::KyStagePreview *m_preview = nullptr;
    QLabel *m_description = nullptr;
    QThread m_thread;
    Kyte::KyStageTemplate *m_builder = nullptr; // owned, lives in m_thread
};
