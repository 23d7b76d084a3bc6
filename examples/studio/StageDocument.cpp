#include "StageDocument.h"

#include <KyEditorCommon.h>
#include <KyPreservedEvent.h>
#include <KyScreen.h>

#include <memory>

using namespace Kyte;

// The screens of a template are all black.
static const QColor SCREEN_COLORS[] = {QColor(44, 76, 128), QColor(122, 68, 98), QColor(224, 202, 128),
                                       QColor(62, 110, 92), QColor(140, 96, 60)};
static const int SCREEN_COLOR_COUNT = sizeof(SCREEN_COLORS) / sizeof(SCREEN_COLORS[0]);
static const QColor STAGE_COLOR(30, 34, 40);

/** An edit as two functions. What was done already is not done once more when the stack takes it. */
class StageEdit : public QUndoCommand
{
public:
    StageEdit(const QString &text,
              const std::function<void()> &redo,
              const std::function<void()> &undo,
              bool isDone)
        : QUndoCommand(text)
        , m_redo(redo)
        , m_undo(undo)
        , m_isDone(isDone)
    {
    }

    void redo() override
    {
        if (!m_isDone)
            m_redo();
        m_isDone = false;
    }

    void undo() override
    {
        m_undo();
    }

private:
    std::function<void()> m_redo;
    std::function<void()> m_undo;
    bool m_isDone = false;
};

StageDocument::StageDocument(QObject *parent)
    : QObject(parent)
{
}

QUndoStack *StageDocument::undoStack()
{
    return &m_undoStack;
}

bool StageDocument::hasStage() const
{
    return m_hasStage;
}

const KyStage &StageDocument::stage() const
{
    return m_stage;
}

KyScreen *StageDocument::screen(int id) const
{
    const QList<KyScreen *> screens = m_stage.screenList();
    for (KyScreen *screen : screens) {
        if (screen->id() == id)
            return screen;
    }
    return nullptr;
}

QStringList StageDocument::screenNames() const
{
    QStringList names;
    const QList<KyScreen *> screens = m_stage.screenList();
    for (const KyScreen *screen : screens)
        names.append(screen->name());
    return names;
}

void StageDocument::setStage(const KyStage &stage)
{
    m_undoStack.clear();
    m_stage = stage;
    m_stage.setBackgroundColor(STAGE_COLOR);
    QMap<QString, int> usedNames;
    int id = 0;
    const QList<KyScreen *> screens = m_stage.screenList();
    for (KyScreen *screen : screens) {
        screen->setId(id);
        screen->setName(KyEditorCommon::checkName(screen->name(), id, &usedNames));
        screen->setBackgoundColor(SCREEN_COLORS[id % SCREEN_COLOR_COUNT]);
        ++id;
    }
    m_nextScreenId = id;
    m_hasStage = true;
    emit stageReplaced();
}

int StageDocument::addScreen(ScreenType::ScreenTypes type)
{
    const bool isTelop = type == ScreenType::Telop;
    const QRectF area = m_stage.rect();
    const int id = m_nextScreenId++; // that of a removed one is not given away: it may come back
    auto screen = std::make_shared<std::unique_ptr<KyScreen>>(new KyScreen);
    (*screen)->setId(id);
    (*screen)->setType(type);
    (*screen)->setName(uniqueName(isTelop ? tr("Telop 1") : tr("Multi 1")));
    (*screen)->setBackgoundColor(SCREEN_COLORS[id % SCREEN_COLOR_COUNT]);
    // In the middle: half the stage, a caption a strip at the bottom.
    (*screen)->setRect(
        isTelop ? QRectF(0, area.height() * 0.9, area.width(), area.height() * 0.1).toRect()
                : QRectF(area.width() / 4, area.height() / 4, area.width() / 2, area.height() / 2).toRect());
    edit(
        tr("add \"%1\"").arg((*screen)->name()),
        [this, screen]() {
            insertScreen(m_stage.screenList().size(), screen->release());
        },
        [this, screen, id]() {
            screen->reset(takeScreen(id));
        });
    return id;
}

void StageDocument::removeScreen(int id)
{
    KyScreen *const removed = screen(id);
    if (!removed)
        return;
    const int row = m_stage.screenList().indexOf(removed);
    auto kept = std::make_shared<std::unique_ptr<KyScreen>>();
    edit(
        tr("remove \"%1\"").arg(removed->name()),
        [this, kept, id]() {
            kept->reset(takeScreen(id));
        },
        [this, kept, row]() {
            insertScreen(row, kept->release());
        });
}

void StageDocument::renameScreen(int id, const QString &name)
{
    const KyScreen *renamed = screen(id);
    if (!renamed || renamed->name() == name)
        return;
    const QString oldName = renamed->name();
    edit(
        tr("rename \"%1\"").arg(oldName),
        [this, id, name]() {
            applyName(id, name);
        },
        [this, id, oldName]() {
            applyName(id, oldName);
        });
}

void StageDocument::setScreenColor(int id, const QColor &color)
{
    const KyScreen *colored = screen(id);
    if (!colored || colored->backgoundColor() == color)
        return;
    const QColor oldColor = colored->backgoundColor();
    edit(
        tr("colour of \"%1\"").arg(colored->name()),
        [this, id, color]() {
            applyColor(id, color);
        },
        [this, id, oldColor]() {
            applyColor(id, oldColor);
        });
}

void StageDocument::setBackgroundColor(const QColor &color)
{
    const QColor oldColor = m_stage.backgroundColor();
    if (!m_hasStage || oldColor == color)
        return;
    edit(
        tr("background colour"),
        [this, color]() {
            applyBackground(color);
        },
        [this, oldColor]() {
            applyBackground(oldColor);
        });
}

bool StageDocument::addEvent(int screenId, const KyEvent &event)
{
    KyPreservedEvent step(screenId);
    if (!step.addEvent(event, screen(screenId)))
        return false;
    keep(tr("add event \"%1\"").arg(KyEditorCommon::getLocalStringFromEventType(event.type())), step);
    return true;
}

bool StageDocument::removeEvent(int screenId, const KyEvent &event)
{
    KyPreservedEvent step(screenId);
    if (!step.removeEvent(event, screen(screenId)))
        return false;
    keep(tr("remove event \"%1\"").arg(KyEditorCommon::getLocalStringFromEventType(event.type())), step);
    return true;
}

bool StageDocument::removeAllEvents(int screenId)
{
    KyPreservedEvent step(screenId);
    const auto both = static_cast<KyEvent::EventDirection>(KyEvent::Raise | KyEvent::Wait);
    if (!step.removeAllEvents(both, screen(screenId), true))
        return false;
    keep(tr("remove all events"), step);
    return true;
}

void StageDocument::edit(const QString &text, const Step &redo, const Step &undo)
{
    m_undoStack.push(new StageEdit(text, redo, undo, false));
}

/** Puts an editing step that was done already on the undo stack. */
void StageDocument::keep(const QString &text, const KyPreservedEvent &step)
{
    auto kept = std::make_shared<KyPreservedEvent>(step);
    const auto redo = [this, kept]() {
        kept->redo(screen(kept->screenId()));
        emit eventsChanged(kept->screenId());
    };
    const auto undo = [this, kept]() {
        kept->undo(screen(kept->screenId()));
        emit eventsChanged(kept->screenId());
    };
    m_undoStack.push(new StageEdit(text, redo, undo, true));
    emit eventsChanged(step.screenId());
}

QString StageDocument::uniqueName(const QString &name) const
{
    QMap<QString, int> usedNames;
    const QStringList names = screenNames();
    for (const QString &used : names)
        usedNames.insert(used, 0);
    return KyEditorCommon::checkName(name, 0, &usedNames);
}

void StageDocument::applyName(int id, const QString &name)
{
    if (KyScreen *renamed = screen(id))
        renamed->setName(name);
    emit screensChanged();
}

void StageDocument::applyColor(int id, const QColor &color)
{
    if (KyScreen *colored = screen(id))
        colored->setBackgoundColor(color);
    emit screensChanged();
}

void StageDocument::applyBackground(const QColor &color)
{
    m_stage.setBackgroundColor(color);
    emit screensChanged();
}

void StageDocument::insertScreen(int row, KyScreen *screen)
{
    m_stage.screenListPtr()->insert(row, screen);
    emit screensChanged();
}

KyScreen *StageDocument::takeScreen(int id)
{
    KyScreen *taken = screen(id);
    m_stage.screenListPtr()->removeOne(taken);
    emit screensChanged();
    return taken;
}
