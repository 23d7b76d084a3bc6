<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>KyCommonInputNameDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>Kyte::KyChannelConfig</name>
    <message>
        <source>Application configuration file can not be found.</source>
        <translation>Die Konfigurationsdatei der Anwendung wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>The Channel folder &quot;%1&quot; does not exist.</source>
        <translation>Der Kanalordner „%1“ existiert nicht.</translation>
    </message>
    <message>
        <source>The channel files were not read correctly.</source>
        <translation>Die Kanaldateien wurden nicht richtig gelesen.</translation>
    </message>
    <message>
        <source>The channel config file can not be open to read.</source>
        <translation>Die Kanalkonfiguration kann nicht zum Lesen geöffnet werden.</translation>
    </message>
    <message>
        <source>The channel config file can not be open to write.</source>
        <translation>Die Kanalkonfiguration kann nicht zum Schreiben geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>Kyte::KyColorWidget</name>
    <message>
        <source>Please select a color.</source>
        <translation>Bitte wählen Sie eine Farbe.</translation>
    </message>
</context>
<context>
    <name>Kyte::KyCommonInputNameDialog</name>
    <message>
        <source>Please input the characters.</source>
        <translation>Bitte geben Sie die Zeichen ein.</translation>
    </message>
</context>
<context>
    <name>Kyte::KyDestination</name>
    <message>
        <source>The channel folder can not be handle.</source>
        <translation>Mit dem Kanalordner kann nicht gearbeitet werden.</translation>
    </message>
    <message>
        <source>Error occured while the data is saving.(1)
%1</source>
        <translation>Beim Speichern der Daten ist ein Fehler aufgetreten.(1)
%1</translation>
    </message>
    <message>
        <source>Error occured while the data is saving.(2)
%1</source>
        <translation>Beim Speichern der Daten ist ein Fehler aufgetreten.(2)
%1</translation>
    </message>
    <message>
        <source>The old working file can not be deleted.
%1</source>
        <translation>Die alte Arbeitsdatei kann nicht gelöscht werden.
%1</translation>
    </message>
    <message>
        <source>The working file can not be created.
%1</source>
        <translation>Die Arbeitsdatei kann nicht angelegt werden.
%1</translation>
    </message>
    <message>
        <source>The Data Type is not defined.</source>
        <translation>Der Datentyp ist nicht festgelegt.</translation>
    </message>
    <message>
        <source>Getting new id or new position index was failed.</source>
        <translation>Eine neue Kennung oder Position konnte nicht ermittelt werden.</translation>
    </message>
    <message>
        <source>Error occured: %1</source>
        <translation>Ein Fehler ist aufgetreten: %1</translation>
    </message>
    <message>
        <source>DataType must be &quot;Data_Channel&quot; or &quot;Data_Group&quot;.</source>
        <translation>Der Datentyp muss „Data_Channel“ oder „Data_Group“ sein.</translation>
    </message>
    <message>
        <source>The channel config object has not be initialized.</source>
        <translation>Die Kanalkonfiguration wurde nicht vorbereitet.</translation>
    </message>
    <message>
        <source>The database connection does not exist.</source>
        <translation>Die Verbindung zur Datenbank besteht nicht.</translation>
    </message>
    <message>
        <source>The destination database can not be opened.</source>
        <translation>Die Datenbank der Ziele kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Transaction can not be started.</source>
        <translation>Die Transaktion kann nicht begonnen werden.</translation>
    </message>
    <message>
        <source>Error occured while the destination database is reading.
(%1)</source>
        <translation>Beim Lesen der Datenbank der Ziele ist ein Fehler aufgetreten.
(%1)</translation>
    </message>
</context>
<context>
    <name>Kyte::KyEditorCommon</name>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>This event is not defined.</source>
        <translation>Dieses Ereignis ist nicht festgelegt.</translation>
    </message>
    <message>
        <source>This event action is not defined.</source>
        <translation>Diese Aktion ist nicht festgelegt.</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message>
        <source>When this event is specified, events set on the screen will be ignored.</source>
        <translation>Mit dieser Angabe werden die Ereignisse des Bildschirms ignoriert.</translation>
    </message>
    <message>
        <source>Started</source>
        <translation>Gestartet</translation>
    </message>
    <message>
        <source>This event occurs when each content is started.</source>
        <translation>Dieses Ereignis tritt ein, wenn ein Inhalt gestartet wird.</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>This event occurs when the sequence is paused.</source>
        <translation>Dieses Ereignis tritt ein, wenn die Abfolge angehalten wird.</translation>
    </message>
    <message>
        <source>Finished</source>
        <translation>Beendet</translation>
    </message>
    <message>
        <source>This event occurs when each content is finished.</source>
        <translation>Dieses Ereignis tritt ein, wenn ein Inhalt zu Ende ist.</translation>
    </message>
    <message>
        <source>Head Transition Finished</source>
        <translation>Einblenden beendet</translation>
    </message>
    <message>
        <source>This event occurs when the head transition of each content ends.</source>
        <translation>Dieses Ereignis tritt ein, wenn der Anfangsübergang eines Inhalts endet.</translation>
    </message>
    <message>
        <source>Tail Transition Started</source>
        <translation>Ausblenden begonnen</translation>
    </message>
    <message>
        <source>This event occurs when the tail transition of each content is started.</source>
        <translation>Dieses Ereignis tritt ein, wenn der Endübergang eines Inhalts beginnt.</translation>
    </message>
    <message>
        <source>Time Elapsed</source>
        <translation>Zeit abgelaufen</translation>
    </message>
    <message>
        <source>This event occurs when the specified time elapses from the start of each content.</source>
        <translation>Dieses Ereignis tritt ein, wenn die angegebene Zeit seit dem Start eines Inhalts vergangen ist.</translation>
    </message>
    <message>
        <source>Clicked/Touched)</source>
        <translation>Geklickt/Berührt)</translation>
    </message>
    <message>
        <source>This event occurs when the screen is clicked or touched.</source>
        <translation>Dieses Ereignis tritt ein, wenn der Bildschirm angeklickt oder berührt wird.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Starten</translation>
    </message>
    <message>
        <source>Start if the sequence is stopped or paused.</source>
        <translation>Startet die Abfolge, wenn sie gestoppt oder angehalten ist.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Pause the content of sequence.</source>
        <translation>Hält den Inhalt der Abfolge an.</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Stop the playback of the content.</source>
        <translation>Beendet die Wiedergabe des Inhalts.</translation>
    </message>
    <message>
        <source>Transit To Next Content</source>
        <translation>Zum nächsten Inhalt wechseln</translation>
    </message>
    <message>
        <source>Transit to the next content and start playback.</source>
        <translation>Wechselt zum nächsten Inhalt und startet die Wiedergabe.</translation>
    </message>
    <message>
        <source>Transit To Specified Content</source>
        <translation>Zum angegebenen Inhalt wechseln</translation>
    </message>
    <message>
        <source>Transit to the content with the specified number and start playback.</source>
        <translation>Wechselt zum Inhalt mit der angegebenen Nummer und startet die Wiedergabe.</translation>
    </message>
    <message>
        <source>Hide Screen</source>
        <translation>Bildschirm ausblenden</translation>
    </message>
    <message>
        <source>Hide the screen.</source>
        <translation>Blendet den Bildschirm aus.</translation>
    </message>
    <message>
        <source>Show Screen</source>
        <translation>Bildschirm einblenden</translation>
    </message>
    <message>
        <source>Show the screen.</source>
        <translation>Blendet den Bildschirm ein.</translation>
    </message>
    <message>
        <source>Repeat</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>When content playback is completed, playback will start again. It will not move to the next content until an event is received.</source>
        <translation>Nach dem Ende des Inhalts beginnt die Wiedergabe von vorn. Zum nächsten Inhalt wird erst gewechselt, wenn ein Ereignis eintrifft.</translation>
    </message>
    <message>
        <source>Wait</source>
        <translation>Warten</translation>
    </message>
    <message>
        <source>When the playback of the content is completed, it will be in a wait state. It will not move to the next content until an event is received.</source>
        <translation>Nach dem Ende des Inhalts wird gewartet. Zum nächsten Inhalt wird erst gewechselt, wenn ein Ereignis eintrifft.</translation>
    </message>
    <message>
        <source>Transit To Same Number As Sender</source>
        <translation>Zur gleichen Nummer wie der Sender wechseln</translation>
    </message>
</context>
<context>
    <name>Kyte::KyFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Änderungsdatum</translation>
    </message>
    <message>
        <source>%1 TB</source>
        <translation>%1 TB</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation>%1 KB</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name is empty.&lt;/b&gt;&lt;p&gt;You have to specify valid name.</source>
        <translation>&lt;b&gt;Der Name ist leer.&lt;/b&gt;&lt;p&gt;Sie müssen einen gültigen Namen angeben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; can not be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuations marks.</source>
        <translation>&lt;b&gt;Der Name „%1“ kann nicht verwendet werden.&lt;/b&gt;&lt;p&gt;Versuchen Sie einen anderen Namen mit weniger Zeichen oder ohne Satzzeichen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; is alrady in use.&lt;/b&gt;&lt;p&gt;Try using another name.</source>
        <translation>&lt;b&gt;Der Name „%1“ wird bereits verwendet.&lt;/b&gt;&lt;p&gt;Versuchen Sie einen anderen Namen.</translation>
    </message>
    <message>
        <source>Filename changing error</source>
        <translation>Fehler beim Umbenennen</translation>
    </message>
    <message>
        <source>&lt;b&gt;An error occurred while changing the filename.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuations marks.</source>
        <translation>&lt;b&gt;Beim Ändern des Dateinamens ist ein Fehler aufgetreten.&lt;/b&gt;&lt;p&gt;Versuchen Sie einen anderen Namen mit weniger Zeichen oder ohne Satzzeichen.</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Ungültiger Dateiname</translation>
    </message>
</context>
<context>
    <name>Kyte::KyMessageBoxWithCheckBox</name>
    <message>
        <source>Do not show this message again.</source>
        <translation>Diese Meldung nicht mehr anzeigen.</translation>
    </message>
</context>
<context>
    <name>Kyte::KyPptConversion</name>
    <message>
        <source>Loading PowerPoint Application...</source>
        <translation>PowerPoint wird geladen …</translation>
    </message>
    <message>
        <source>PowerPoint Application has been loaded.</source>
        <translation>PowerPoint wurde geladen.</translation>
    </message>
    <message>
        <source>The number of slides: %1</source>
        <translation>Anzahl der Folien: %1</translation>
    </message>
    <message>
        <source>Start to create video file.</source>
        <translation>Die Erstellung des Videos beginnt.</translation>
    </message>
    <message>
        <source>Creating video file...</source>
        <translation>Das Video wird erstellt …</translation>
    </message>
    <message>
        <source>Total Time: &lt;HH:mm:ss&gt;</source>
        <translation>Gesamtzeit: &lt;HH:mm:ss&gt;</translation>
    </message>
    <message>
        <source>Start to create image file.</source>
        <translation>Die Erstellung der Bilder beginnt.</translation>
    </message>
    <message>
        <source>Creating image file...</source>
        <translation>Die Bilder werden erstellt …</translation>
    </message>
    <message>
        <source>Creation Finished.</source>
        <translation>Die Erstellung ist abgeschlossen.</translation>
    </message>
    <message>
        <source>Checking Command Line Arguments is failure. (%1)</source>
        <translation>Die Prüfung der Befehlszeile ist fehlgeschlagen. (%1)</translation>
    </message>
    <message>
        <source>PowerPoint Application has NOT been loaded.</source>
        <translation>PowerPoint wurde NICHT geladen.</translation>
    </message>
    <message>
        <source>Can NOT get a presentaion object.</source>
        <translation>Auf die Präsentation kann NICHT zugegriffen werden.</translation>
    </message>
    <message>
        <source>Can NOT open file.</source>
        <translation>Die Datei kann NICHT geöffnet werden.</translation>
    </message>
    <message>
        <source>Can NOT open slides.</source>
        <translation>Die Folien können NICHT geöffnet werden.</translation>
    </message>
    <message>
        <source>Can NOT get the number of slides.</source>
        <translation>Die Anzahl der Folien kann NICHT ermittelt werden.</translation>
    </message>
    <message>
        <source>The PPT file has no slide.</source>
        <translation>Die Präsentation enthält keine Folie.</translation>
    </message>
    <message>
        <source>Can NOT start to create video file.</source>
        <translation>Die Erstellung des Videos kann NICHT begonnen werden.</translation>
    </message>
    <message>
        <source>Video file creation was failed.</source>
        <translation>Die Erstellung des Videos ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>The slide of %1 creation is failure.</source>
        <translation>Die Erstellung der Folie %1 ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>PowerPoint application was not loaded. It might not have been installed.</source>
        <translation>PowerPoint wurde nicht geladen. Möglicherweise ist es nicht installiert.</translation>
    </message>
    <message>
        <source>The presentation object can not be got.</source>
        <translation>Auf die Präsentation kann nicht zugegriffen werden.</translation>
    </message>
    <message>
        <source>The file can not be opened.</source>
        <translation>Die Datei kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Slides can not be opened.</source>
        <translation>Die Folien können nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>The number of slides can not be got.</source>
        <translation>Die Anzahl der Folien kann nicht ermittelt werden.</translation>
    </message>
    <message>
        <source>The video file creation can not be started.</source>
        <translation>Die Erstellung des Videos kann nicht begonnen werden.</translation>
    </message>
    <message>
        <source>The creation of file failed.</source>
        <translation>Die Erstellung der Datei ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>The process failed to start. Either the invoked program is missing, or you may have insufficient permissions to invoke the program.</source>
        <translation>Der Prozess konnte nicht gestartet werden. Entweder fehlt das aufgerufene Programm, oder Ihre Rechte reichen nicht aus, um es aufzurufen.</translation>
    </message>
    <message>
        <source>The process crashed some time after starting successfully.</source>
        <translation>Der Prozess ist nach erfolgreichem Start abgestürzt.</translation>
    </message>
    <message>
        <source>The last waitFor...() function timed out. The state of QProcess is unchanged, and you can try calling waitFor...() again.</source>
        <translation>Die Zeit der letzten Funktion waitFor...() ist abgelaufen. Der Zustand von QProcess ist unverändert, und Sie können waitFor...() erneut aufrufen.</translation>
    </message>
    <message>
        <source>An error occurred when attempting to read from the process. For example, the process may not be running.</source>
        <translation>Beim Lesen vom Prozess ist ein Fehler aufgetreten. Möglicherweise läuft der Prozess nicht.</translation>
    </message>
    <message>
        <source>An error occurred when attempting to write to the process. For example, the process may not be running, or it may have closed its input channel.</source>
        <translation>Beim Schreiben an den Prozess ist ein Fehler aufgetreten. Möglicherweise läuft der Prozess nicht, oder er hat seinen Eingabekanal geschlossen.</translation>
    </message>
    <message>
        <source>An unknown error occurred.</source>
        <translation>Ein unbekannter Fehler ist aufgetreten.</translation>
    </message>
    <message>
        <source>PowerPoint File Conversion Software is Not Found. You should reinstall.</source>
        <translation>Das Programm zur Umwandlung von PowerPoint-Dateien wurde nicht gefunden. Bitte installieren Sie es erneut.</translation>
    </message>
    <message>
        <source>File &quot;%1&quot; is Not found. </source>
        <translation>Die Datei „%1“ wurde nicht gefunden. </translation>
    </message>
    <message>
        <source>&quot;%1&quot; is Not File.</source>
        <translation>„%1“ ist keine Datei.</translation>
    </message>
    <message>
        <source>Can Not create an output folder.</source>
        <translation>Der Ausgabeordner kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>Copying the PowerPoint file...</source>
        <translation>Die PowerPoint-Datei wird kopiert …</translation>
    </message>
    <message>
        <source>Can Not remove the PowerPoint file.</source>
        <translation>Die PowerPoint-Datei kann nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>Can Not copy the PowerPoint file.</source>
        <translation>Die PowerPoint-Datei kann nicht kopiert werden.</translation>
    </message>
</context>
<context>
    <name>Kyte::KyStageListWidgetItem</name>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
</context>
<context>
    <name>Kyte::KyStageTemplate</name>
    <message>
        <source>Multi 1</source>
        <translation>Multi 1</translation>
    </message>
    <message>
        <source>Multi 2</source>
        <translation>Multi 2</translation>
    </message>
    <message>
        <source>Telop 1</source>
        <translation>Telop 1</translation>
    </message>
    <message>
        <source>Background Only</source>
        <translation>Nur Hintergrund</translation>
    </message>
    <message>
        <source>This template has no screen.&lt;br /&gt;&lt;br /&gt;You should add the screen manually.</source>
        <translation>Diese Vorlage enthält keinen Bildschirm.&lt;br /&gt;&lt;br /&gt;Fügen Sie den Bildschirm selbst hinzu.</translation>
    </message>
    <message>
        <source>1 Multimedia Screen</source>
        <translation>1 Multimedia-Bildschirm</translation>
    </message>
    <message>
        <source>This template has one Multimedia Screen.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screen.</source>
        <translation>Diese Vorlage enthält einen Multimedia-Bildschirm.&lt;br /&gt;&lt;br /&gt;Sie können sofort Inhalte in den Bildschirm einfügen.</translation>
    </message>
    <message>
        <source>1 Multimedia Screen (no margin)</source>
        <translation>1 Multimedia-Bildschirm (ohne Rand)</translation>
    </message>
    <message>
        <source>This template has one Multimedia Screen. It is no margin on the screen.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screen.</source>
        <translation>Diese Vorlage enthält einen Multimedia-Bildschirm. Der Bildschirm hat keinen Rand.&lt;br /&gt;&lt;br /&gt;Sie können sofort Inhalte in den Bildschirm einfügen.</translation>
    </message>
    <message>
        <source>1 Multimedia Screen and 1 Telop Screen</source>
        <translation>1 Multimedia-Bildschirm und 1 Laufschrift-Bildschirm</translation>
    </message>
    <message>
        <source>This template has one Multimedia Screen and one Telop Screen.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screens.</source>
        <translation>Diese Vorlage enthält einen Multimedia-Bildschirm und einen Laufschrift-Bildschirm.&lt;br /&gt;&lt;br /&gt;Sie können sofort Inhalte in die Bildschirme einfügen.</translation>
    </message>
    <message>
        <source>This template has one Multimedia Screen and one Telop Screen. It is no margin on the screens.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screens.</source>
        <translation>Diese Vorlage enthält einen Multimedia-Bildschirm und einen Laufschrift-Bildschirm. Die Bildschirme haben keinen Rand.&lt;br /&gt;&lt;br /&gt;Sie können sofort Inhalte in die Bildschirme einfügen.</translation>
    </message>
    <message>
        <source>2 Multimedia Screens and 1 Telop Screen</source>
        <translation>2 Multimedia-Bildschirme und 1 Laufschrift-Bildschirm</translation>
    </message>
    <message>
        <source>This template has two Multimedia Screens and one Telop Screen.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screens.</source>
        <translation>Diese Vorlage enthält zwei Multimedia-Bildschirme und einen Laufschrift-Bildschirm.&lt;br /&gt;&lt;br /&gt;Sie können sofort Inhalte in die Bildschirme einfügen.</translation>
    </message>
    <message>
        <source>2 Multimedia Screens and 1 Telop Screen (no margin)</source>
        <translation>2 Multimedia-Bildschirme und 1 Laufschrift-Bildschirm (ohne Rand)</translation>
    </message>
    <message>
        <source>This template has two Multimedia Screens and one Telop Screen. It is no margin on the screens.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screens.</source>
        <translation>Diese Vorlage enthält zwei Multimedia-Bildschirme und einen Laufschrift-Bildschirm. Die Bildschirme haben keinen Rand.&lt;br /&gt;&lt;br /&gt;Sie können sofort Inhalte in die Bildschirme einfügen.</translation>
    </message>
    <message>
        <source>1 Multimedia Screen on vertical Stage</source>
        <translation>1 Multimedia-Bildschirm auf einer hochkant stehenden Bühne</translation>
    </message>
    <message>
        <source>This template is a vertical Stage to have one Multimedia Screen. &lt;br /&gt;&lt;br /&gt;This template is &quot;Use the desktop size&quot; and &quot;Automatic adjustment&quot; option has been disabled. You can add immediately the content to the screen.</source>
        <translation>Diese Vorlage ist eine hochkant stehende Bühne mit einem Multimedia-Bildschirm. &lt;br /&gt;&lt;br /&gt;In dieser Vorlage sind die Optionen „Größe des Desktops verwenden“ und „Automatisch anpassen“ ausgeschaltet. Sie können sofort Inhalte in den Bildschirm einfügen.</translation>
    </message>
    <message>
        <source>1 Multimedia Screen on vertical Stage (no margin</source>
        <translation>1 Multimedia-Bildschirm auf einer hochkant stehenden Bühne (ohne Rand</translation>
    </message>
    <message>
        <source>This template is a vertical Stage to have one Multimedia Screen. It is no margin on the screens.&lt;br /&gt;&lt;br /&gt;This template is &quot;Use the desktop size&quot; and &quot;Automatic adjustment&quot; option has been disabled. You can add immediately the content to the screen.</source>
        <translation>Diese Vorlage ist eine hochkant stehende Bühne mit einem Multimedia-Bildschirm. Der Bildschirm hat keinen Rand.&lt;br /&gt;&lt;br /&gt;In dieser Vorlage sind die Optionen „Größe des Desktops verwenden“ und „Automatisch anpassen“ ausgeschaltet. Sie können sofort Inhalte in den Bildschirm einfügen.</translation>
    </message>
    <message>
        <source>2 Multimedia Screens on vertical Stage</source>
        <translation>2 Multimedia-Bildschirme auf einer hochkant stehenden Bühne</translation>
    </message>
    <message>
        <source>This template is a vertical Stage to have two Multimedia Screens. &lt;br /&gt;&lt;br /&gt;This template is &quot;Use the desktop size&quot; and &quot;Automatic adjustment&quot; option has been disabled. You can add immediately the content to the screen.</source>
        <translation>Diese Vorlage ist eine hochkant stehende Bühne mit zwei Multimedia-Bildschirmen. &lt;br /&gt;&lt;br /&gt;In dieser Vorlage sind die Optionen „Größe des Desktops verwenden“ und „Automatisch anpassen“ ausgeschaltet. Sie können sofort Inhalte in die Bildschirme einfügen.</translation>
    </message>
    <message>
        <source>2 Multimedia Screens on vertical Stage (no margin)</source>
        <translation>2 Multimedia-Bildschirme auf einer hochkant stehenden Bühne (ohne Rand)</translation>
    </message>
    <message>
        <source>This template is a vertical Stage to have two Multimedia Screens. It is no margin on the screens.&lt;br /&gt;&lt;br /&gt;This template is &quot;Use the desktop size&quot; and &quot;Automatic adjustment&quot; option has been disabled. You can add immediately the content to the screen.</source>
        <translation>Diese Vorlage ist eine hochkant stehende Bühne mit zwei Multimedia-Bildschirmen. Die Bildschirme haben keinen Rand.&lt;br /&gt;&lt;br /&gt;In dieser Vorlage sind die Optionen „Größe des Desktops verwenden“ und „Automatisch anpassen“ ausgeschaltet. Sie können sofort Inhalte in die Bildschirme einfügen.</translation>
    </message>
</context>
<context>
    <name>Kyte::KyWaitingImageWidget</name>
    <message>
        <source>Please wait.</source>
        <translation>Bitte warten.</translation>
    </message>
</context>
</TS>
