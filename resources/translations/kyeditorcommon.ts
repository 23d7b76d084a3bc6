<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1">
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
</TS>
