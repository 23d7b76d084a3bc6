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
</TS>
