<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>DataExporting</name>
    <message numerus="yes">
        <source>%n rows written to &quot;%1&quot;</source>
        <translation>
            <numerusform>%n row written to &quot;%1&quot;</numerusform>
            <numerusform>%n rows written to &quot;%1&quot;</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n rows written to %1 files in &quot;%2&quot;</source>
        <translation>
            <numerusform>%n row written to %1 files in &quot;%2&quot;</numerusform>
            <numerusform>%n rows written to %1 files in &quot;%2&quot;</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n rows could not be written.
The log tells why.</source>
        <translation>
            <numerusform>%n row could not be written.
The log tells why.</numerusform>
            <numerusform>%n rows could not be written.
The log tells why.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ExportPreview</name>
    <message numerus="yes">
        <source>%n more complaints.</source>
        <translation>
            <numerusform>%n more complaint.</numerusform>
            <numerusform>%n more complaints.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MorvantideInfoWindow</name>
    <message numerus="yes">
        <source>%n of %1 records have this spectrum</source>
        <translation>
            <numerusform>%n of %1 records has this spectrum</numerusform>
            <numerusform>%n of %1 records have this spectrum</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>OverviewLabel</name>
    <message numerus="yes">
        <source>%n days</source>
        <translation>
            <numerusform>%n day</numerusform>
            <numerusform>%n days</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files</source>
        <translation>
            <numerusform>%n file</numerusform>
            <numerusform>%n files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n variables</source>
        <translation>
            <numerusform>%n variable</numerusform>
            <numerusform>%n variables</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n without a header</source>
        <translation>
            <numerusform>%n without a header</numerusform>
            <numerusform>%n without a header</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Looking at %n files...</source>
        <translation>
            <numerusform>Looking at %n file...</numerusform>
            <numerusform>Looking at %n files...</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RecordViews</name>
    <message numerus="yes">
        <source>Add %n plots to the browser?</source>
        <translation>
            <numerusform>Add %n plot to the browser?</numerusform>
            <numerusform>Add %n plots to the browser?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SaveWarnings</name>
    <message numerus="yes">
        <source>%n day files of the variant &quot;%1&quot; are there already: rows are added to them.</source>
        <translation>
            <numerusform>%n day file of the variant &quot;%1&quot; is there already: rows are added to it.</numerusform>
            <numerusform>%n day files of the variant &quot;%1&quot; are there already: rows are added to them.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StatusText</name>
    <message numerus="yes">
        <source>%n records</source>
        <translation>
            <numerusform>%n records</numerusform>
            <numerusform>%n records</numerusform>
        </translation>
    </message>
</context>
</TS>
