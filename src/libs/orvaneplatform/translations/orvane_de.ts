<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Model</name>
    <message>
        <source>Page %1</source>
        <translation>Seite %1</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>Blende</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>SL</source>
        <translation>SL</translation>
    </message>
    <message>
        <source>DL</source>
        <translation>DL</translation>
    </message>
    <message>
        <source>4K</source>
        <translation>4K</translation>
    </message>
    <message>
        <source>Load to PGM</source>
        <translation>Nach PGM laden</translation>
    </message>
    <message>
        <source>Load to PVW</source>
        <translation>Nach PVW laden</translation>
    </message>
    <message>
        <source>Taking,please wait...</source>
        <translation>Übernahme läuft, bitte warten ...</translation>
    </message>
    <message>
        <source>Adding screen,please wait...</source>
        <translation>Screen wird angelegt, bitte warten ...</translation>
    </message>
    <message>
        <source>The number of screens exceeds the limit!</source>
        <translation>Zu viele Screens!</translation>
    </message>
    <message>
        <source>The current operation cannot be completed during the screen taking.</source>
        <translation>Während der Übernahme ist das nicht möglich.</translation>
    </message>
    <message>
        <source>The number of layers exceeds the limit.</source>
        <translation>Zu viele Ebenen.</translation>
    </message>
    <message>
        <source>No matching input source found.</source>
        <translation>Keine passende Quelle gefunden.</translation>
    </message>
    <message>
        <source>Not enough resources.</source>
        <translation>Zu wenig Ressourcen.</translation>
    </message>
    <message>
        <source>Cleaning layers,please wait...</source>
        <translation>Ebenen werden gelöscht, bitte warten ...</translation>
    </message>
    <message>
        <source>Do you want to remove all the layers from PGM?</source>
        <translation>Alle Ebenen von PGM löschen?</translation>
    </message>
    <message>
        <source>Do you want to remove all the layers from PVW?</source>
        <translation>Alle Ebenen von PVW löschen?</translation>
    </message>
    <message>
        <source>No SL input source, this operation cannot be completed.</source>
        <translation>Keine SL-Quelle: nicht möglich.</translation>
    </message>
    <message>
        <source>No DL input source, this operation cannot be completed.</source>
        <translation>Keine DL-Quelle: nicht möglich.</translation>
    </message>
    <message>
        <source>No 4K input source, this operation cannot be completed.</source>
        <translation>Keine 4K-Quelle: nicht möglich.</translation>
    </message>
    <message>
        <source>Please select a layer first.</source>
        <translation>Bitte zuerst eine Ebene wählen.</translation>
    </message>
    <message>
        <source>Saving device data, please wait.</source>
        <translation>Gerätedaten werden gesichert, bitte warten.</translation>
    </message>
    <message>
        <source>save data successed.</source>
        <translation>Gerätedaten gesichert.</translation>
    </message>
    <message>
        <source>save data failure.</source>
        <translation>Gerätedaten konnten nicht gesichert werden.</translation>
    </message>
    <message>
        <source>Layer count is more than %1</source>
        <translation>Mehr als %1 Ebenen</translation>
    </message>
    <message>
        <source>Are you sure you want to delete all the presets?</source>
        <translation>Wirklich alle Presets löschen?</translation>
    </message>
    <message>
        <source>can&apos;t create PVW preset</source>
        <translation>PVW-Preset kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>The preset will be directly loaded to PGM. Continue?</source>
        <translation>Das Preset wird direkt nach PGM geladen. Fortfahren?</translation>
    </message>
    <message>
        <source>Deleting preset,please wait...</source>
        <translation>Preset wird gelöscht, bitte warten ...</translation>
    </message>
    <message>
        <source>Cleaning presets,please wait...</source>
        <translation>Presets werden gelöscht, bitte warten ...</translation>
    </message>
</context>
</TS>
