<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en_US">
<context>
    <name>PTDevice</name>
    <message>
        <source>Exposure settings</source>
        <translation>Параметры экспозиции</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>Баланс белого</translation>
    </message>
</context>
</TS>
