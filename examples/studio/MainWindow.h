#pragma once

#include <QList>
#include <QMainWindow>

class ConversionPanel;
class DestinationsPanel;
class MediaPanel;
class PreviewPanel;
class QDockWidget;
class QMenu;
class ScreensPanel;
class EventsPanel;
class StageDocument;
class TemplatesPanel;

namespace Kyte {
class KyMenuAction;
class KyStage;
} // namespace Kyte

/**
 * The window: a stage in the middle, everything else in docks around it. The panels know nothing of each
 * other; this joins them. Where the docks are is remembered.
 */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);

    /** Whether the layout is restored and remembered; true until set. */
    void setLayoutRemembered(bool remembered);
    /** Shows what the configuration leads to, which must have been read. */
    void open();

public slots:
    void arrangeDocks();

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private slots:
    void onTemplateSelected(const Kyte::KyStage &stage);
    void onTemplateChosen(const Kyte::KyStage &stage);
    void onDocumentChanged();
    void onPresentationChosen(const QString &path);
    void onDestinationsSaved();
    void onWindowAction(const QString &objectName, bool checked);
    void restoreLayout();
    void resizeStacks();
    void about();

private:
    void makeDocks();
    void makeMenus();
    void connectPanels();
    QDockWidget *addDock(const QString &name, const QString &title, QWidget *panel);
    Kyte::KyMenuAction *addWindowAction(QMenu *menu, const QString &name, const QString &text);
    void raiseDockOf(QWidget *panel);
    void storeLayout();
    bool mayClose();

    StageDocument *m_document = nullptr;
    ScreensPanel *m_screens = nullptr;
    MediaPanel *m_media = nullptr;
    TemplatesPanel *m_templates = nullptr;
    PreviewPanel *m_preview = nullptr;
    EventsPanel *m_events = nullptr;
    DestinationsPanel *m_destinations = nullptr;
    ConversionPanel *m_conversion = nullptr;
    QList<QDockWidget *> m_docks;
    bool m_isLayoutRemembered = true;
    bool m_isLayoutRestored = false;
    bool m_isClosing = false; // as soon as the destinations are saved
};
