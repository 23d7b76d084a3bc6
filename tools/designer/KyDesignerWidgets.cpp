#include "KyDesignerWidgets.h"

#include "KyDesignerWidget.h"

#include <KyColorWidget.h>
#include <KyCommandLinkButton.h>
#include <KyEditorDrawingLayerWidget.h>
#include <KyReadOnlyLineEdit.h>
#include <KyWaitingImageWidget.h>

template<class Widget>
static QWidget *make(QWidget *parent)
{
    return new Widget(parent);
}

static const KyWidgetInfo WIDGETS[] = {
    {"KyColorWidget", "color.svg", "A swatch that shows a colour and lets the user choose another one", "",
     make<Kyte::KyColorWidget>},
    {"KyCommandLinkButton", "command.svg", "A command-link button that knows its number",
     "<property name=\"text\"><string>Command</string></property>", make<Kyte::KyCommandLinkButton>},
    {"KyEditorDrawingLayerWidget", "layers.svg", "Layers of pixmaps that darken what lies under them", "",
     make<Kyte::KyEditorDrawingLayerWidget>},
    {"KyReadOnlyLineEdit", "lineedit.svg", "A line edit that reads like a label and can be copied from", "",
     make<Kyte::KyReadOnlyLineEdit>},
    {"KyWaitingImageWidget", "waiting.svg", "A turning circle that tells the user to wait", "",
     make<Kyte::KyWaitingImageWidget>},
};

KyDesignerWidgets::KyDesignerWidgets(QObject *parent)
    : QObject(parent)
{
    for (const KyWidgetInfo &info : WIDGETS)
        m_widgets.append(new KyDesignerWidget(info, this));
}

QList<QDesignerCustomWidgetInterface *> KyDesignerWidgets::customWidgets() const
{
    return m_widgets;
}
