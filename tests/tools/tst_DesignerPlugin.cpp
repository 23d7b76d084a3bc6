#include "KyTestMain.h"

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QIcon>
#include <QPluginLoader>
#include <QXmlStreamReader>

/** Loads the plug-in as Qt Designer does. */
class tst_DesignerPlugin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void offersTheWidgets();
    void everyWidget_isMade_data();
    void everyWidget_isMade();
    void propertiesAreOffered_data();
    void propertiesAreOffered();
    void pluginPath_findsIt();

private:
    QDesignerCustomWidgetInterface *find(const QString &name) const;

    QPluginLoader m_loader;
    QList<QDesignerCustomWidgetInterface *> m_widgets;
};

static const QStringList NAMES = {
    QStringLiteral("Kyte::KyColorWidget"), QStringLiteral("Kyte::KyCommandLinkButton"),
    QStringLiteral("Kyte::KyEditorDrawingLayerWidget"), QStringLiteral("Kyte::KyReadOnlyLineEdit"),
    QStringLiteral("Kyte::KyWaitingImageWidget")};

QDesignerCustomWidgetInterface *tst_DesignerPlugin::find(const QString &name) const
{
    for (QDesignerCustomWidgetInterface *widget : m_widgets) {
        if (widget->name() == name)
            return widget;
    }
    return nullptr;
}

void tst_DesignerPlugin::initTestCase()
{
    m_loader.setFileName(QFile::decodeName(qgetenv("KYTE_DESIGNER_PLUGIN")));
    auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(m_loader.instance());
    QVERIFY2(collection, qPrintable(m_loader.errorString()));
    m_widgets = collection->customWidgets();
}

void tst_DesignerPlugin::offersTheWidgets()
{
    QStringList names;
    for (const QDesignerCustomWidgetInterface *widget : qAsConst(m_widgets))
        names.append(widget->name());
    names.sort();
    QCOMPARE(names, NAMES);
}

void tst_DesignerPlugin::everyWidget_isMade_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : NAMES)
        QTest::newRow(qPrintable(name)) << name;
}

void tst_DesignerPlugin::everyWidget_isMade()
{
    QFETCH(QString, name);
    QDesignerCustomWidgetInterface *entry = find(name);
    QVERIFY(entry);
    QWidget parent;
    const QWidget *widget = entry->createWidget(&parent);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), name);
    QCOMPARE(widget->parentWidget(), &parent);
    QVERIFY(!entry->toolTip().isEmpty());
    QVERIFY(!entry->icon().pixmap(22, 22).isNull());
    QCOMPARE(entry->group(), QStringLiteral("KyEditorCommon"));
    QCOMPARE(entry->includeFile(), name.mid(QStringLiteral("Kyte::").size()) + QStringLiteral(".h"));
    QVERIFY(!entry->isContainer());

    QXmlStreamReader form(entry->domXml());
    QStringList classes;
    while (!form.atEnd()) {
        form.readNext();
        if (form.isStartElement() && form.name() == QLatin1String("widget"))
            classes.append(form.attributes().value(QStringLiteral("class")).toString());
    }
    QVERIFY2(!form.hasError(), qPrintable(form.errorString()));
    QCOMPARE(classes, QStringList({name}));
}

void tst_DesignerPlugin::propertiesAreOffered_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("property");
    QTest::newRow("colour") << NAMES.at(0) << QByteArray("backColor");
    QTest::newRow("alpha") << NAMES.at(0) << QByteArray("alphaSettingEnabled");
    QTest::newRow("number") << NAMES.at(1) << QByteArray("buttonId");
    QTest::newRow("description") << NAMES.at(1) << QByteArray("description");
    QTest::newRow("text") << NAMES.at(3) << QByteArray("text");
}

void tst_DesignerPlugin::propertiesAreOffered()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, property);
    QWidget parent;
    const QMetaObject *meta = find(name)->createWidget(&parent)->metaObject();
    const int index = meta->indexOfProperty(property.constData());
    QVERIFY(index >= 0);
    QVERIFY(meta->property(index).isDesignable() && meta->property(index).isWritable());
}

/** Designer looks in the folder "designer" of every plug-in path. */
void tst_DesignerPlugin::pluginPath_findsIt()
{
    QCOMPARE(QFileInfo(m_loader.fileName()).dir().dirName(), QStringLiteral("designer"));
}

KYTE_TEST_MAIN(tst_DesignerPlugin)
#include "tst_DesignerPlugin.moc"
