#include "KyTestMain.h"

#include <KyPluginExtScreenInterface.h>
#include <KyPluginGuiInterface.h>
#include <KyScreen.h>

using namespace Kyte;

class Gui : public KyPluginGuiInterface
{
};

class PlainPlugin : public KyPluginCommonInterface
{
};

class ScreenPlugin : public KyPluginExtScreenInterface
{
public:
    explicit ScreenPlugin(bool *isDeleted)
        : m_isDeleted(isDeleted)
    {
    }

    ~ScreenPlugin() override
    {
        *m_isDeleted = true;
    }

    KyPluginGuiInterface *guiInterface() override
    {
        return &m_gui;
    }

private:
    bool *m_isDeleted;
    Gui m_gui;
};

class tst_KyPluginInterfaces : public QObject
{
    Q_OBJECT

private slots:
    void screenPlugin_isFoundByADynamicCast();
    void plainPlugin_isNoScreenPlugin();
    void lastPointer_deletesThePluginThroughItsBase();
};

void tst_KyPluginInterfaces::screenPlugin_isFoundByADynamicCast()
{
    bool isDeleted = false;
    KyScreen screen;
    screen.setPlugin(QSharedPointer<ScreenPlugin>::create(&isDeleted));

    const auto plugin = screen.plugin().dynamicCast<KyPluginExtScreenInterface>();

    QVERIFY(plugin);
    QVERIFY(dynamic_cast<Gui *>(plugin->guiInterface()));
}

void tst_KyPluginInterfaces::plainPlugin_isNoScreenPlugin()
{
    KyScreen screen;
    screen.setPlugin(QSharedPointer<PlainPlugin>::create());

    QVERIFY(!screen.plugin().dynamicCast<KyPluginExtScreenInterface>());
}

void tst_KyPluginInterfaces::lastPointer_deletesThePluginThroughItsBase()
{
    bool isDeleted = false;
    {
        const std::unique_ptr<KyPluginCommonInterface> plugin(new ScreenPlugin(&isDeleted));
        QVERIFY(!isDeleted);
    }
    QVERIFY(isDeleted);
}

KYTE_TEST_MAIN(tst_KyPluginInterfaces)
#include "tst_KyPluginInterfaces.moc"
