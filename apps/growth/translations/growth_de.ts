<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>VelmoraDocument</name>
    <message>
        <source>Patient</source>
        <translation>Patient</translation>
    </message>
    <message>
        <source>&amp;Identifier</source>
        <translation>&amp;Kennung</translation>
    </message>
    <message>
        <source>Identifier</source>
        <translation>Kennung</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>&amp;Born</source>
        <translation>&amp;Geboren</translation>
    </message>
    <message>
        <source>Birth date</source>
        <translation>Geburtsdatum</translation>
    </message>
    <message>
        <source>&amp;Sex</source>
        <translation>Ge&amp;schlecht</translation>
    </message>
    <message>
        <source>Sex</source>
        <translation>Geschlecht</translation>
    </message>
    <message>
        <source>Female</source>
        <translation>Weiblich</translation>
    </message>
    <message>
        <source>Male</source>
        <translation>Männlich</translation>
    </message>
    <message>
        <source>Examination</source>
        <translation>Untersuchung</translation>
    </message>
    <message>
        <source>Exa&amp;mined</source>
        <translation>Untersu&amp;cht</translation>
    </message>
    <message>
        <source>Exam date</source>
        <translation>Untersuchungsdatum</translation>
    </message>
    <message>
        <source>Age</source>
        <translation>Alter</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Previous examination (Left Arrow)</source>
        <translation>Vorige Untersuchung (Pfeil links)</translation>
    </message>
    <message>
        <source>Examination number</source>
        <translation>Nummer der Untersuchung</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Next examination (Right Arrow)</source>
        <translation>Nächste Untersuchung (Pfeil rechts)</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>Add an examination</source>
        <translation>Eine Untersuchung hinzufügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Remove this examination</source>
        <translation>Diese Untersuchung entfernen</translation>
    </message>
    <message>
        <source>&amp;Weight (kg)</source>
        <translation>Ge&amp;wicht (kg)</translation>
    </message>
    <message>
        <source>Weight in kilograms</source>
        <translation>Gewicht in Kilogramm</translation>
    </message>
    <message>
        <source>Weight in kilograms, z-score and centile</source>
        <translation>Gewicht in Kilogramm, z-Wert und Perzentile</translation>
    </message>
    <message>
        <source>Hei&amp;ght (cm)</source>
        <translation>G&amp;röße (cm)</translation>
    </message>
    <message>
        <source>Length or height in centimetres</source>
        <translation>Länge oder Größe in Zentimetern</translation>
    </message>
    <message>
        <source>Length or height in centimetres, z-score and centile</source>
        <translation>Länge oder Größe in Zentimetern, z-Wert und Perzentile</translation>
    </message>
    <message>
        <source>Hea&amp;d (cm)</source>
        <translation>K&amp;opf (cm)</translation>
    </message>
    <message>
        <source>Head circumference in centimetres</source>
        <translation>Kopfumfang in Zentimetern</translation>
    </message>
    <message>
        <source>Head circumference in centimetres, z-score and centile</source>
        <translation>Kopfumfang in Zentimetern, z-Wert und Perzentile</translation>
    </message>
    <message>
        <source>Weight</source>
        <translation>Gewicht</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Head</source>
        <translation>Kopf</translation>
    </message>
    <message>
        <source>Weight (kg)</source>
        <translation>Gewicht (kg)</translation>
    </message>
    <message>
        <source>Length or height (cm)</source>
        <translation>Länge oder Größe (cm)</translation>
    </message>
    <message>
        <source>Head circumference (cm)</source>
        <translation>Kopfumfang (cm)</translation>
    </message>
    <message>
        <source>Choose the sex to see the reference</source>
        <translation>Wählen Sie das Geschlecht, um die Referenz zu sehen</translation>
    </message>
    <message>
        <source>girls</source>
        <translation>Mädchen</translation>
    </message>
    <message>
        <source>boys</source>
        <translation>Jungen</translation>
    </message>
    <message>
        <source>Age (months)</source>
        <translation>Alter (Monate)</translation>
    </message>
    <message>
        <source>This is not a number.</source>
        <translation>Das ist keine Zahl.</translation>
    </message>
    <message>
        <source>A measurement is above zero.</source>
        <translation>Ein Messwert ist größer als null.</translation>
    </message>
    <message>
        <source>The examination lies before the birth.</source>
        <translation>Die Untersuchung liegt vor der Geburt.</translation>
    </message>
    <message>
        <source>Needs birth and exam date.</source>
        <translation>Geburts- und Untersuchungsdatum fehlen.</translation>
    </message>
    <message>
        <source>Needs the sex.</source>
        <translation>Das Geschlecht fehlt.</translation>
    </message>
    <message>
        <source>No reference.</source>
        <translation>Keine Referenz.</translation>
    </message>
    <message>
        <source>The reference does not cover this age.</source>
        <translation>Die Referenz reicht nicht bis zu diesem Alter.</translation>
    </message>
    <message>
        <source>Beyond what the reference describes.</source>
        <translation>Jenseits dessen, was die Referenz beschreibt.</translation>
    </message>
    <message>
        <source>z-score %1, centile %2</source>
        <translation>z-Wert %1, Perzentile %2</translation>
    </message>
    <message>
        <source>%ld y %ld m %ld d</source>
        <translation>%ld J %ld M %ld T</translation>
    </message>
    <message>
        <source>The file is damaged (%1).</source>
        <translation>Die Datei ist beschädigt (%1).</translation>
    </message>
</context>
</TS>
