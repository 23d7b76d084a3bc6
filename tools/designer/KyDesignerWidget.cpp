#include "KyDesignerWidget.h"

#include <QIcon>

KyDesignerWidget::KyDesignerWidget(const KyWidgetInfo &info, QObject *parent)
    : QObject(parent)
    , m_info(info)
{
}

QString KyDesignerWidget::name() const
{
    return QLatin1String("Kyte::") + QLatin1String(m_info.className);
}

QString KyDesignerWidget::group() const
{
    return QStringLiteral("KyEditorCommon");
}

QString KyDesignerWidget::toolTip() const
{
    return QLatin1String(m_info.toolTip);
}

QString KyDesignerWidget::whatsThis() const
{
    return toolTip();
}

QString KyDesignerWidget::includeFile() const
{
    return QLatin1String(m_info.className) + QLatin1String(".h");
}

QIcon KyDesignerWidget::icon() const
{
    return QIcon(QLatin1String(":/kyeditorcommon/designer/") + QLatin1String(m_info.icon));
}

bool KyDesignerWidget::isContainer() const
{
    return false;
}

QWidget *KyDesignerWidget::createWidget(QWidget *parent)
{
    return m_info.make(parent);
}

QString KyDesignerWidget::domXml() const
{
    QString objectName = QLatin1String(m_info.className);
    objectName[0] = objectName.at(0).toLower();
    return QStringLiteral("<ui language=\"c++\"><widget class=\"%1\" name=\"%2\">%3</widget></ui>")
        .arg(name(), objectName, QLatin1String(m_info.properties));
}
