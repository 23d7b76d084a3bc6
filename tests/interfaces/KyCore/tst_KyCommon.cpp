#include "KyTestMain.h"

#include <KyCommon.h>

using namespace Kyte;

class tst_KyCommon : public QObject
{
    Q_OBJECT

private slots:
    void text_isTheSharedOne_data();
    void text_isTheSharedOne();
};

void tst_KyCommon::text_isTheSharedOne_data()
{
    QTest::addColumn<QString>("text");

    const auto row = [](const char *expected, const QString &text) {
        QTest::newRow(expected) << text;
    };
    row("channel", CHANNEL_FOLDER);
    row("chconfig.xml", CHANNEL_MAIN_FILE);
    row("channel.xml", CHANNEL_FILE);
    row("destination.kyb", DESTINATION_DATABASE_FILE);
    row("._kythumb", THUMBNAIL_FOLDER);
    row("._kytrash", TRASH_FOLDER);
    row("Pelmora", XML_ROOT_ELEMENT);
    row("thumb", EXTENSION_THUMBNAIL);
    row(".kyvcommand", EXTENSION_VIEWER_COMMAND);
    row(".kyscdcommand", EXTENSION_SCHEDULER_COMMAND);
    row(".kyvcomres", EXTENSION_VIEWER_RESPONSE);
    row(".kyscdcomres", EXTENSION_SCHEDULER_RESPONSE);
    row(".kyrupdate", EXTENSION_UPDATE_REQUEST);
    row(".kyprev", EXTENSION_PREVIEW);
    row(".kyupdtmp", EXTENSION_UPDATE_TEMPORARY);
    row("ky_sql_destination_connection_std", DESTINATION_CONNECTION_STD);
    row("ky_sql_destination_connection_wrk", DESTINATION_CONNECTION_WORK);
    row("Editor", APPLICATION_EDITOR);
    row("Viewer", APPLICATION_VIEWER);
    row("Manager", APPLICATION_MANAGER);
    row("Scheduler", APPLICATION_SCHEDULER);
    row("Downloader", APPLICATION_DOWNLOADER);
    row("Uploader", APPLICATION_UPLOADER);
    row("Assist", APPLICATION_ASSIST);
    row("Multi", SCREEN_MULTI);
    row("Telop", SCREEN_TELOP);
    row("Extended", SCREEN_EXTENDED);
    row("Stage", SCREEN_STAGE);
    row("ProcessMonitor", SCREEN_PROCESS_MONITOR);
    row("MediaPlayer", SCREEN_MEDIA_PLAYER);
    row("Label", SCREEN_LABEL);
    row("x-position", KEY_X_POSITION);
    row("y-position", KEY_Y_POSITION);
    row("z-index", KEY_Z_INDEX);
    row("bgcolor", KEY_BACKGROUND_COLOR);
    row("transInType", KEY_TRANSITION_IN_TYPE);
    row("application/x-kyte-mime-type;value=\"uri-list\"", MIME_TYPE_URI_LIST);
    row("application/x-kyte-mime-type;value=\"file-operation\"", MIME_TYPE_FILE_OPERATION);
    row("application/x-kyte-mime-type;value=\"screen-type\"", MIME_TYPE_SCREEN_TYPE);
    row("application/x-kyte-mime-type;value=\"screen-object\"", MIME_TYPE_SCREEN_OBJECT);
    row("application/x-kyte-mime-type;value=\"media-object\"", MIME_TYPE_MEDIA_OBJECT);
    row("application/x-kyte-mime-type;value=\"schedule-object\"", MIME_TYPE_SCHEDULE_OBJECT);
    row("application/x-kyte-mime-type;value=\"schedule-data\"", MIME_TYPE_SCHEDULE_DATA);
    row("application/x-kyte-mime-type;value=\"time-object\"", MIME_TYPE_TIME_OBJECT);
    row("application/x-kyte-mime-type;value=\"time-data\"", MIME_TYPE_TIME_DATA);
    row("application/x-kyte-mime-type;value=\"stage-list\"", MIME_TYPE_STAGE_LIST);
}

void tst_KyCommon::text_isTheSharedOne()
{
    QFETCH(QString, text);

    QCOMPARE(text, QString::fromLatin1(QTest::currentDataTag()));
}

KYTE_TEST_MAIN(tst_KyCommon)
#include "tst_KyCommon.moc"
