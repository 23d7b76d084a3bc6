#pragma once

#include <QString>

/**
 * @file
 * The product's vocabulary: names of files, folders, formats and keys that its applications share. Each text
 * is written here once; every library and program that includes the header holds an instance of its own.
 */

namespace Kyte {

/** @name Folders and files */
///@{
inline const QString CHANNEL_FOLDER = QStringLiteral("channel"); ///< in the data folder
inline const QString CHANNEL_MAIN_FILE = QStringLiteral("chconfig.xml");
inline const QString CHANNEL_FILE = QStringLiteral("channel.xml"); ///< never read as a channel file
inline const QString DESTINATION_DATABASE_FILE = QStringLiteral("destination.kyb");
inline const QString THUMBNAIL_FOLDER = QStringLiteral("._kythumb"); ///< in the folder of the media file
inline const QString TRASH_FOLDER = QStringLiteral("._kytrash");
///@}

/** @name Root element of the product's XML files */
///@{
inline const QString XML_ROOT_ELEMENT = QStringLiteral("Pelmora");
///@}

/** @name File extensions: the thumbnail's has no dot, the others have it */
///@{
inline const QString EXTENSION_THUMBNAIL = QStringLiteral("thumb");
inline const QString EXTENSION_VIEWER_COMMAND = QStringLiteral(".kyvcommand");
inline const QString EXTENSION_SCHEDULER_COMMAND = QStringLiteral(".kyscdcommand");
inline const QString EXTENSION_VIEWER_RESPONSE = QStringLiteral(".kyvcomres");
inline const QString EXTENSION_SCHEDULER_RESPONSE = QStringLiteral(".kyscdcomres");
inline const QString EXTENSION_UPDATE_REQUEST = QStringLiteral(".kyrupdate");
inline const QString EXTENSION_PREVIEW = QStringLiteral(".kyprev");
inline const QString EXTENSION_UPDATE_TEMPORARY = QStringLiteral(".kyupdtmp");
///@}

/** @name Database connections */
///@{
inline const QString DESTINATION_CONNECTION_STD = QStringLiteral("ky_sql_destination_connection_std");
inline const QString DESTINATION_CONNECTION_WORK = QStringLiteral("ky_sql_destination_connection_wrk");
///@}

/** @name Applications */
///@{
inline const QString APPLICATION_EDITOR = QStringLiteral("Editor");
inline const QString APPLICATION_VIEWER = QStringLiteral("Viewer");
inline const QString APPLICATION_MANAGER = QStringLiteral("Manager");
inline const QString APPLICATION_SCHEDULER = QStringLiteral("Scheduler");
inline const QString APPLICATION_DOWNLOADER = QStringLiteral("Downloader");
inline const QString APPLICATION_UPLOADER = QStringLiteral("Uploader");
inline const QString APPLICATION_ASSIST = QStringLiteral("Assist");
///@}

/** @name Kinds of screens */
///@{
inline const QString SCREEN_MULTI = QStringLiteral("Multi");
inline const QString SCREEN_TELOP = QStringLiteral("Telop");
inline const QString SCREEN_EXTENDED = QStringLiteral("Extended");
inline const QString SCREEN_STAGE = QStringLiteral("Stage");
inline const QString SCREEN_PROCESS_MONITOR = QStringLiteral("ProcessMonitor");
inline const QString SCREEN_MEDIA_PLAYER = QStringLiteral("MediaPlayer");
inline const QString SCREEN_LABEL = QStringLiteral("Label");
///@}

/** @name Attribute keys of stages and screens */
///@{
inline const QString KEY_X_POSITION = QStringLiteral("x-position");
inline const QString KEY_Y_POSITION = QStringLiteral("y-position");
inline const QString KEY_Z_INDEX = QStringLiteral("z-index");
inline const QString KEY_BACKGROUND_COLOR = QStringLiteral("bgcolor");
inline const QString KEY_TRANSITION_IN_TYPE = QStringLiteral("transInType");
///@}

/** @name Drag-and-drop formats: the value names the kind of object that is dragged */
///@{
inline const QString MIME_TYPE_URI_LIST = QStringLiteral("application/x-kyte-mime-type;value=\"uri-list\"");
inline const QString MIME_TYPE_FILE_OPERATION =
    QStringLiteral("application/x-kyte-mime-type;value=\"file-operation\"");
inline const QString MIME_TYPE_SCREEN_TYPE =
    QStringLiteral("application/x-kyte-mime-type;value=\"screen-type\"");
inline const QString MIME_TYPE_SCREEN_OBJECT =
    QStringLiteral("application/x-kyte-mime-type;value=\"screen-object\"");
inline const QString MIME_TYPE_MEDIA_OBJECT =
    QStringLiteral("application/x-kyte-mime-type;value=\"media-object\"");
inline const QString MIME_TYPE_SCHEDULE_OBJECT =
    QStringLiteral("application/x-kyte-mime-type;value=\"schedule-object\"");
inline const QString MIME_TYPE_SCHEDULE_DATA =
    QStringLiteral("application/x-kyte-mime-type;value=\"schedule-data\"");
inline const QString MIME_TYPE_TIME_OBJECT =
    QStringLiteral("application/x-kyte-mime-type;value=\"time-object\"");
inline const QString MIME_TYPE_TIME_DATA = QStringLiteral("application/x-kyte-mime-type;value=\"time-data\"");
inline const QString MIME_TYPE_STAGE_LIST =
    QStringLiteral("application/x-kyte-mime-type;value=\"stage-list\"");
///@}

} // namespace Kyte
