#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QObject>

/** What Qt Designer has to know of one widget of the library. */
struct KyWidgetInfo
{
    const char *className; // without the namespace
    const char *icon; // a file among the plug-in's resources
    const char *toolTip;
    const char *properties; // what a new widget starts with, in the language of forms
    QWidget *(*make)(QWidget *parent);
};

/** One entry of Designer's widget box. */
class KyDesignerWidget : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    KyDesignerWidget(const KyWidgetInfo &info, QObject *parent);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QWidget *createWidget(QWidget *parent) override;
    QString domXml() const override;

private:
    const KyWidgetInfo &m_info; // an entry of a constant table
};
