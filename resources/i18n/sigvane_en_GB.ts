<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB" sourcelanguage="en">
<context>
    <name>RecordingStatus</name>
    <message numerus="yes">
        <source>%Ln line(s) lost</source>
        <translation>
            <numerusform>%Ln line lost</numerusform>
            <numerusform>%Ln lines lost</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln line(s)</source>
        <translation>
            <numerusform>%Ln line</numerusform>
            <numerusform>%Ln lines</numerusform>
        </translation>
    </message>
</context>
</TS>
