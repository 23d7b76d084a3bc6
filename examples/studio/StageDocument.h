#pragma once

#include <KyEvent.h>
#include <KyStage.h>
#include <ScreenType.h>

#include <QObject>
#include <QUndoStack>

#include <functional>

namespace Kyte {
class KyPreservedEvent;
class KyScreen;
} // namespace Kyte

/**
 * The stage that is edited. Every edit can be undone; another stage begins a new history. Screens are told
 * apart by their ids, because undoing and redoing may replace the objects.
 */
class StageDocument : public QObject
{
    Q_OBJECT

public:
    explicit StageDocument(QObject *parent = nullptr);

    QUndoStack *undoStack();
    bool hasStage() const;
    const Kyte::KyStage &stage() const;
    /** Null for an id that no screen has. */
    Kyte::KyScreen *screen(int id) const;
    QStringList screenNames() const;

    /** Starts anew with a copy of \a stage, whose screens get ids, unique names and colours. */
    void setStage(const Kyte::KyStage &stage);

    /** The edits; an id that no screen has changes nothing. The new screen's id is answered. */
    int addScreen(Kyte::ScreenType::ScreenTypes type);
    void removeScreen(int id);
    void renameScreen(int id, const QString &name);
    void setScreenColor(int id, const QColor &color);
    void setBackgroundColor(const QColor &color);
    /** False when the screen has such an event already. */
    bool addEvent(int screenId, const Kyte::KyEvent &event);
    bool removeEvent(int screenId, const Kyte::KyEvent &event);
    /** False when there was none. */
    bool removeAllEvents(int screenId);

signals:
    void stageReplaced();
    /** Names, colours or the list of screens, or the background. */
    void screensChanged();
    void eventsChanged(int screenId);

private:
    using Step = std::function<void()>;

    void edit(const QString &text, const Step &redo, const Step &undo);
    void keep(const QString &text, const Kyte::KyPreservedEvent &step);
    QString uniqueName(const QString &name) const;
    void applyName(int id, const QString &name);
    void applyColor(int id, const QColor &color);
    void applyBackground(const QColor &color);
    void insertScreen(int row, Kyte::KyScreen *screen);
    Kyte::KyScreen *takeScreen(int id);

    Kyte::KyStage m_stage;
    bool m_hasStage = false;
    int m_nextScreenId = 0;
    QUndoStack m_undoStack;
};
