#pragma once

#include <ScreenType.h>

#include <QRect>
#include <QRectF>
#include <QString>
#include <QVector>

#include <memory>

namespace Kyte {

class KyStage;

/** The catalogue of stage templates: its texts, and the arithmetic of its stages and screens. */
namespace StageLayouts {

/** In the order of the catalogue. */
enum Layout {
    StageOnly,
    OneMultiMediaScreen,
    OneMultiMediaScreenNoMargin,
    OneMultiMediaScreenAndOneTelopScreen,
    OneMultiMediaScreenAndOneTelopScreenNoMargin,
    TwoMultiMediaScreensAndOneTelopScreen,
    TwoMultiMediaScreensAndOneTelopScreenNoMargin,
    OneMultiMediaScreenVertical,
    OneMultiMediaScreenVerticalNoMargin,
    TwoMultiMediaScreensVertical,
    TwoMultiMediaScreensVerticalNoMargin
};
const int LAYOUT_COUNT = 11;

struct ScreenPlace
{
    const char *name; ///< to be translated
    ScreenType::ScreenTypes type;
    QRectF rect;
};

/** Source texts in the context of KyStageTemplate, which translates them. */
const char *title(Layout layout);
const char *description(Layout layout); ///< HTML

/** Vertical stages take the monitor's full height, and do not follow its size. */
bool isVertical(Layout layout);

/** The stage at (0, 0) for a monitor with the geometry \a monitor. */
QRect stageRect(Layout layout, const QRect &monitor);

/** The screens of a stage with the rectangle \a stage, in drawing order. */
QVector<ScreenPlace> screens(Layout layout, const QRectF &stage);

using Translate = QString (*)(const char *sourceText);

/** The whole stage: name, description, options and screens, with texts as \a translate gives them. */
std::unique_ptr<KyStage> makeStage(Layout layout, const QRect &monitor, Translate translate);

} // namespace StageLayouts
} // namespace Kyte
