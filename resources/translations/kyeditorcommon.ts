<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1">
<context>
    <name>KyCommonInputNameDialog</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyChannelConfig</name>
    <message>
        <source>Application configuration file can not be found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Channel folder &quot;%1&quot; does not exist.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The channel files were not read correctly.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The channel config file can not be open to read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The channel config file can not be open to write.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyColorWidget</name>
    <message>
        <source>Please select a color.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyCommonInputNameDialog</name>
    <message>
        <source>Please input the characters.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyDestination</name>
    <message>
        <source>The channel folder can not be handle.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error occured while the data is saving.(1)
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error occured while the data is saving.(2)
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The old working file can not be deleted.
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The working file can not be created.
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Data Type is not defined.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Getting new id or new position index was failed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error occured: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DataType must be &quot;Data_Channel&quot; or &quot;Data_Group&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The channel config object has not be initialized.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The database connection does not exist.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The destination database can not be opened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transaction can not be started.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error occured while the destination database is reading.
(%1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyEditorCommon</name>
    <message>
        <source>Unknown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event is not defined.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event action is not defined.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When this event is specified, events set on the screen will be ignored.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Started</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event occurs when each content is started.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paused</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event occurs when the sequence is paused.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finished</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event occurs when each content is finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Head Transition Finished</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event occurs when the head transition of each content ends.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tail Transition Started</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event occurs when the tail transition of each content is started.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time Elapsed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event occurs when the specified time elapses from the start of each content.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clicked/Touched)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This event occurs when the screen is clicked or touched.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start if the sequence is stopped or paused.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pause the content of sequence.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finish</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop the playback of the content.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transit To Next Content</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transit to the next content and start playback.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transit To Specified Content</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transit to the content with the specified number and start playback.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repeat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When content playback is completed, playback will start again. It will not move to the next content until an event is received.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wait</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When the playback of the content is completed, it will be in a wait state. It will not move to the next content until an event is received.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transit To Same Number As Sender</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 TB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;b&gt;The name is empty.&lt;/b&gt;&lt;p&gt;You have to specify valid name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; can not be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuations marks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; is alrady in use.&lt;/b&gt;&lt;p&gt;Try using another name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Filename changing error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;b&gt;An error occurred while changing the filename.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuations marks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyMessageBoxWithCheckBox</name>
    <message>
        <source>Do not show this message again.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyPptConversion</name>
    <message>
        <source>Loading PowerPoint Application...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PowerPoint Application has been loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number of slides: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start to create video file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Creating video file...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Total Time: &lt;HH:mm:ss&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start to create image file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Creating image file...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Creation Finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checking Command Line Arguments is failure. (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PowerPoint Application has NOT been loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can NOT get a presentaion object.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can NOT open file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can NOT open slides.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can NOT get the number of slides.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The PPT file has no slide.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can NOT start to create video file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Video file creation was failed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The slide of %1 creation is failure.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PowerPoint application was not loaded. It might not have been installed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The presentation object can not be got.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file can not be opened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Slides can not be opened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number of slides can not be got.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The video file creation can not be started.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The creation of file failed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The process failed to start. Either the invoked program is missing, or you may have insufficient permissions to invoke the program.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The process crashed some time after starting successfully.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The last waitFor...() function timed out. The state of QProcess is unchanged, and you can try calling waitFor...() again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An error occurred when attempting to read from the process. For example, the process may not be running.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An error occurred when attempting to write to the process. For example, the process may not be running, or it may have closed its input channel.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An unknown error occurred.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PowerPoint File Conversion Software is Not Found. You should reinstall.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File &quot;%1&quot; is Not found. </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; is Not File.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can Not create an output folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copying the PowerPoint file...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can Not remove the PowerPoint file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can Not copy the PowerPoint file.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyStageListWidgetItem</name>
    <message>
        <source>Background</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyStageTemplate</name>
    <message>
        <source>Multi 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Multi 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Telop 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Background Only</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template has no screen.&lt;br /&gt;&lt;br /&gt;You should add the screen manually.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Multimedia Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template has one Multimedia Screen.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Multimedia Screen (no margin)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template has one Multimedia Screen. It is no margin on the screen.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Multimedia Screen and 1 Telop Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template has one Multimedia Screen and one Telop Screen.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screens.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template has one Multimedia Screen and one Telop Screen. It is no margin on the screens.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screens.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>2 Multimedia Screens and 1 Telop Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template has two Multimedia Screens and one Telop Screen.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screens.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>2 Multimedia Screens and 1 Telop Screen (no margin)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template has two Multimedia Screens and one Telop Screen. It is no margin on the screens.&lt;br /&gt;&lt;br /&gt;You can add immediately the content to the screens.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Multimedia Screen on vertical Stage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template is a vertical Stage to have one Multimedia Screen. &lt;br /&gt;&lt;br /&gt;This template is &quot;Use the desktop size&quot; and &quot;Automatic adjustment&quot; option has been disabled. You can add immediately the content to the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Multimedia Screen on vertical Stage (no margin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template is a vertical Stage to have one Multimedia Screen. It is no margin on the screens.&lt;br /&gt;&lt;br /&gt;This template is &quot;Use the desktop size&quot; and &quot;Automatic adjustment&quot; option has been disabled. You can add immediately the content to the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>2 Multimedia Screens on vertical Stage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template is a vertical Stage to have two Multimedia Screens. &lt;br /&gt;&lt;br /&gt;This template is &quot;Use the desktop size&quot; and &quot;Automatic adjustment&quot; option has been disabled. You can add immediately the content to the screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>2 Multimedia Screens on vertical Stage (no margin)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This template is a vertical Stage to have two Multimedia Screens. It is no margin on the screens.&lt;br /&gt;&lt;br /&gt;This template is &quot;Use the desktop size&quot; and &quot;Automatic adjustment&quot; option has been disabled. You can add immediately the content to the screen.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Kyte::KyWaitingImageWidget</name>
    <message>
        <source>Please wait.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
