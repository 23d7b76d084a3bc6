#include "KyStageLayouts_p.h"

#include "KyStageGeometry_p.h"

#include <KyEditorCommon.h>
#include <KyScreen.h>
#include <KyStage.h>

#include <QtGlobal>

namespace Kyte {
namespace StageLayouts {

static const double MARGIN_PART = 0.9; // of the stage, for what is within its margin
static const double VERTICAL_RATIO = 0.5625; // 9 : 16
// The parts are not the same in all layouts: users know the templates as they are.
static const double MULTI_HEIGHT = 0.88;
static const double MULTI_HEIGHT_OF_TWO_NO_MARGIN = 0.9;
static const double MULTI_WIDTH_LEFT = 0.73;
static const double MULTI_WIDTH_RIGHT = 0.25;
static const double TELOP_HEIGHT = 0.1;

static const char MULTI_1[] = QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "Multi 1");
static const char MULTI_2[] = QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "Multi 2");
static const char TELOP_1[] = QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "Telop 1");

struct Texts
{
    const char *title;
    const char *description;
};

// These texts are the keys of their translations. The equal titles of the fourth and fifth, the missing
// closing parenthesis of the ninth and the blanks before some line breaks have to stay.
static const Texts TEXTS[LAYOUT_COUNT] = {
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "Background Only"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template has no screen.<br /><br />You should add the screen manually.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "1 Multimedia Screen"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template has one Multimedia Screen.<br /><br />You can add immediately the "
                       "content to the screen.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "1 Multimedia Screen (no margin)"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template has one Multimedia Screen. It is no margin on the screen.<br /><br "
                       "/>You can add immediately the content to the screen.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "1 Multimedia Screen and 1 Telop Screen"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template has one Multimedia Screen and one Telop Screen.<br /><br />You can add "
                       "immediately the content to the screens.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "1 Multimedia Screen and 1 Telop Screen"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template has one Multimedia Screen and one Telop Screen. It is no margin on the "
                       "screens.<br /><br />You can add immediately the content to the screens.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "2 Multimedia Screens and 1 Telop Screen"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template has two Multimedia Screens and one Telop Screen.<br /><br />You can "
                       "add immediately the content to the screens.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "2 Multimedia Screens and 1 Telop Screen (no margin)"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template has two Multimedia Screens and one Telop Screen. It is no margin on "
                       "the screens.<br /><br />You can add immediately the content to the screens.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "1 Multimedia Screen on vertical Stage"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template is a vertical Stage to have one Multimedia Screen. <br /><br />This "
                       "template is \"Use the desktop size\" and \"Automatic adjustment\" option has been "
                       "disabled. You can add immediately the content to the screen.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "1 Multimedia Screen on vertical Stage (no margin"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template is a vertical Stage to have one Multimedia Screen. It is no margin on "
                       "the screens.<br /><br />This template is \"Use the desktop size\" and \"Automatic "
                       "adjustment\" option has been disabled. You can add immediately the content to the "
                       "screen.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "2 Multimedia Screens on vertical Stage"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template is a vertical Stage to have two Multimedia Screens. <br /><br />This "
                       "template is \"Use the desktop size\" and \"Automatic adjustment\" option has been "
                       "disabled. You can add immediately the content to the screen.")},
    {QT_TRANSLATE_NOOP("Kyte::KyStageTemplate", "2 Multimedia Screens on vertical Stage (no margin)"),
     QT_TRANSLATE_NOOP("Kyte::KyStageTemplate",
                       "This template is a vertical Stage to have two Multimedia Screens. It is no margin on "
                       "the screens.<br /><br />This template is \"Use the desktop size\" and \"Automatic "
                       "adjustment\" option has been disabled. You can add immediately the content to the "
                       "screen.")},
};

static QRectF snapped(const QRectF &rect)
{
    return StageGeometry::snapped(rect);
}

static ScreenPlace multi1(const QRectF &rect)
{
    return {MULTI_1, ScreenType::MultiMedia, rect};
}

static ScreenPlace multi2(const QRectF &rect)
{
    return {MULTI_2, ScreenType::MultiMedia, rect};
}

static ScreenPlace telop1(const QRectF &rect)
{
    return {TELOP_1, ScreenType::Telop, rect};
}

/** What is left of \a stage within its margin, on whole pixels. */
static QRectF withinMargin(const QRectF &stage)
{
    const QSizeF size(stage.width() * MARGIN_PART, stage.height() * MARGIN_PART);
    return snapped(
        QRectF(QPointF((stage.width() - size.width()) * 0.5, (stage.height() - size.height()) * 0.5), size));
}

/** The upper left part of \a rect, as wide and high as the factors say. */
static QRectF upperLeft(QRectF rect, double width, double height)
{
    rect.setSize({rect.width() * width, rect.height() * height});
    return rect;
}

static QRectF withBottomAt(QRectF rect, double bottom)
{
    rect.moveBottom(bottom);
    return rect;
}

static QRectF withTopEdgeAt(QRectF rect, double top)
{
    rect.setTop(top);
    return rect;
}

static QRectF telopWithinMargin(const QRectF &base)
{
    return snapped(withBottomAt(upperLeft(base, 1, TELOP_HEIGHT), base.bottom()));
}

static QVector<ScreenPlace> oneMultiAndTelop(const QRectF &base)
{
    return {multi1(snapped(upperLeft(base, 1, MULTI_HEIGHT))), telop1(telopWithinMargin(base))};
}

static QVector<ScreenPlace> oneMultiAndTelopNoMargin(const QRectF &stage)
{
    const QRectF multi = upperLeft(stage, 1, MULTI_HEIGHT);
    // Not snapped: the strip begins where the unsnapped screen above ends.
    return {multi1(snapped(multi)), telop1(withTopEdgeAt(stage, multi.bottom()))};
}

static QVector<ScreenPlace> twoMultiAndTelop(const QRectF &base)
{
    QRectF right = upperLeft(base, MULTI_WIDTH_RIGHT, MULTI_HEIGHT);
    right.moveRight(base.right());
    return {multi1(snapped(upperLeft(base, MULTI_WIDTH_LEFT, MULTI_HEIGHT))), multi2(snapped(right)),
            telop1(telopWithinMargin(base))};
}

static QVector<ScreenPlace> twoMultiAndTelopNoMargin(const QRectF &stage)
{
    const QRectF left = upperLeft(stage, MULTI_WIDTH_LEFT, MULTI_HEIGHT_OF_TWO_NO_MARGIN);
    QRectF right = upperLeft(stage, 1, MULTI_HEIGHT_OF_TWO_NO_MARGIN);
    right.setLeft(left.right());
    return {multi1(snapped(left)), multi2(snapped(right)),
            telop1(snapped(withTopEdgeAt(stage, left.bottom())))};
}

static QVector<ScreenPlace> twoMultiVertical(const QRectF &base)
{
    const QRectF half = upperLeft(base, 1, 0.5);
    return {multi1(snapped(half)), multi2(snapped(withBottomAt(half, base.bottom())))};
}

static QVector<ScreenPlace> twoMultiVerticalNoMargin(const QRectF &stage)
{
    const QRectF half = upperLeft(stage, 1, 0.5);
    // Not snapped: the lower half of an odd height begins on half a pixel.
    return {multi1(snapped(half)), multi2(withBottomAt(half, stage.bottom()))};
}

const char *title(Layout layout)
{
    return TEXTS[layout].title;
}

const char *description(Layout layout)
{
    return TEXTS[layout].description;
}

bool isVertical(Layout layout)
{
    return layout >= OneMultiMediaScreenVertical;
}

QRect stageRect(Layout layout, const QRect &monitor)
{
    QRect stage(QPoint(0, 0), monitor.size());
    if (isVertical(layout))
        stage.setWidth(int(stage.height() * VERTICAL_RATIO));
    return stage;
}

QVector<ScreenPlace> screens(Layout layout, const QRectF &stage)
{
    switch (layout) {
    case StageOnly:
        break;
    case OneMultiMediaScreen:
    case OneMultiMediaScreenVertical:
        return {multi1(withinMargin(stage))};
    case OneMultiMediaScreenNoMargin:
    case OneMultiMediaScreenVerticalNoMargin:
        return {multi1(stage)};
    case OneMultiMediaScreenAndOneTelopScreen:
        return oneMultiAndTelop(withinMargin(stage));
    case OneMultiMediaScreenAndOneTelopScreenNoMargin:
        return oneMultiAndTelopNoMargin(stage);
    case TwoMultiMediaScreensAndOneTelopScreen:
        return twoMultiAndTelop(withinMargin(stage));
    case TwoMultiMediaScreensAndOneTelopScreenNoMargin:
        return twoMultiAndTelopNoMargin(stage);
    case TwoMultiMediaScreensVertical:
        return twoMultiVertical(withinMargin(stage));
    case TwoMultiMediaScreensVerticalNoMargin:
        return twoMultiVerticalNoMargin(stage);
    }
    return {};
}

/** Stages of the monitor's shape keep what a new stage says about "Use the desktop size". */
static void setOptions(KyStage *stage, Layout layout)
{
    if (isVertical(layout))
        stage->setOption(STAGE_OPTION_ZOOM_TO_DESKTOP_SIZE, false);
    stage->setOption(STAGE_OPTION_CORRECT_SCREEN_POS_SIZE, !isVertical(layout));
}

std::unique_ptr<KyStage> makeStage(Layout layout, const QRect &monitor, Translate translate)
{
    auto stage = std::make_unique<KyStage>();
    stage->setRect(stageRect(layout, monitor));
    stage->setName(translate(title(layout)));
    stage->setDescription(translate(description(layout)));
    setOptions(stage.get(), layout);
    const QVector<ScreenPlace> places = screens(layout, stage->rect());
    for (const ScreenPlace &place : places) {
        auto *screen = new KyScreen;
        screen->setRect(place.rect);
        screen->setName(translate(place.name));
        screen->setType(place.type);
        stage->screenListPtr()->append(screen);
    }
    return stage;
}

} // namespace StageLayouts
} // namespace Kyte
