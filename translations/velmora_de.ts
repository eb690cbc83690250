<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>About</name>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
</context>
<context>
    <name>BatchExport</name>
    <message>
        <source>Batch Export</source>
        <translation>Stapelexport</translation>
    </message>
    <message>
        <source>E&amp;xport records saved in the last</source>
        <translation>Akten e&amp;xportieren, gespeichert in den letzten</translation>
    </message>
    <message>
        <source>Number of days</source>
        <translation>Anzahl der Tage</translation>
    </message>
    <message>
        <source>days</source>
        <translation>Tagen</translation>
    </message>
    <message>
        <source>&amp;Erase previously exported charts first</source>
        <translation>&amp;Früher exportierte Kurven vorher löschen</translation>
    </message>
    <message>
        <source>Destination</source>
        <translation>Ziel</translation>
    </message>
</context>
<context>
    <name>BatchExportController</name>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>The charts are sent to OsiriX.</source>
        <translation>Die Kurven werden an OsiriX gesendet.</translation>
    </message>
    <message>
        <source>The charts go to the folder &apos;%@&apos;. Erasing removes every JPEG picture in it, whatever program made it.</source>
        <translation>Die Kurven kommen in den Ordner „%@“. Beim Löschen wird jedes JPEG-Bild darin entfernt, gleich welches Programm es gemacht hat.</translation>
    </message>
    <message>
        <source>The export folder is not available</source>
        <translation>Der Exportordner ist nicht verfügbar</translation>
    </message>
    <message>
        <source>You can select a new export folder by choosing the Preferences menu item.</source>
        <translation>Einen anderen Exportordner können Sie über den Menüpunkt „Einstellungen“ wählen.</translation>
    </message>
</context>
<context>
    <name>BatchProgress</name>
    <message>
        <source>Batch Export</source>
        <translation>Stapelexport</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Exporting %ld of %ld</source>
        <translation>Export %ld von %ld</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>One chart waits to be sent to OsiriX</source>
        <translation>Eine Kurve wartet auf das Senden an OsiriX</translation>
    </message>
    <message>
        <source>%ld charts wait to be sent to OsiriX</source>
        <translation>%ld Kurven warten auf das Senden an OsiriX</translation>
    </message>
</context>
<context>
    <name>Document</name>
    <message>
        <source>Untitled</source>
        <translation>Ohne Titel</translation>
    </message>
    <message>
        <source>Do you want to save the changes to &apos;%@&apos;?</source>
        <translation>Möchten Sie die Änderungen an „%@“ speichern?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Nicht speichern</translation>
    </message>
    <message>
        <source>Your changes will be lost if you don&apos;t save them.</source>
        <translation>Ihre Änderungen gehen verloren, wenn Sie sie nicht speichern.</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; could not be opened.</source>
        <translation>Die Datei „%@“ konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>You have %ld documents with unsaved changes. Do you want to review these changes before quitting?</source>
        <translation>Es gibt %ld Dokumente mit ungespeicherten Änderungen. Möchten Sie diese Änderungen vor dem Beenden durchsehen?</translation>
    </message>
    <message>
        <source>Review Changes...</source>
        <translation>Änderungen durchsehen...</translation>
    </message>
    <message>
        <source>Discard Changes</source>
        <translation>Änderungen verwerfen</translation>
    </message>
    <message>
        <source>If you don&apos;t review your documents, all your changes will be lost.</source>
        <translation>Wenn Sie Ihre Dokumente nicht durchsehen, gehen alle Änderungen verloren.</translation>
    </message>
    <message>
        <source>The document could not be saved as &apos;%@&apos;.</source>
        <translation>Das Dokument konnte nicht als „%@“ gespeichert werden.</translation>
    </message>
    <message>
        <source>There is no printer.</source>
        <translation>Es gibt keinen Drucker.</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; was not printed.</source>
        <translation>Die Datei „%@“ wurde nicht gedruckt.</translation>
    </message>
    <message>
        <source>The help is not installed.</source>
        <translation>Die Hilfe ist nicht installiert.</translation>
    </message>
    <message>
        <source>It was looked for in the folder %@.</source>
        <translation>Gesucht wurde sie im Ordner %@.</translation>
    </message>
    <message>
        <source>The help could not be shown.</source>
        <translation>Die Hilfe konnte nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>No program opens the page %@.</source>
        <translation>Kein Programm öffnet die Seite %@.</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Akten</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>&apos;%@&apos; already exists. Do you want to replace it?</source>
        <translation>„%@“ gibt es schon. Möchten Sie es ersetzen?</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>There is nothing to print.</source>
        <translation>Es gibt nichts zu drucken.</translation>
    </message>
    <message>
        <source>The printer could not be started.</source>
        <translation>Der Druck konnte nicht begonnen werden.</translation>
    </message>
    <message>
        <source>The printer reported an error.</source>
        <translation>Der Drucker hat einen Fehler gemeldet.</translation>
    </message>
</context>
<context>
    <name>OrvDocument</name>
    <message>
        <source>The file is empty.</source>
        <translation>Die Datei ist leer.</translation>
    </message>
    <message>
        <source>The file is damaged (%@ at byte %ld).</source>
        <translation>Die Datei ist beschädigt (%@ bei Byte %ld).</translation>
    </message>
    <message>
        <source>The file is not a record of this application.</source>
        <translation>Die Datei ist keine Akte dieser Anwendung.</translation>
    </message>
    <message>
        <source>The file is damaged (its header is incomplete).</source>
        <translation>Die Datei ist beschädigt (ihr Kopf ist unvollständig).</translation>
    </message>
    <message>
        <source>The file was written by a newer version of the application (%@).</source>
        <translation>Die Datei stammt von einer neueren Version der Anwendung (%@).</translation>
    </message>
    <message>
        <source>The file is damaged (its checksum does not match).</source>
        <translation>Die Datei ist beschädigt (ihre Prüfsumme stimmt nicht).</translation>
    </message>
    <message>
        <source>The document could not be printed.</source>
        <translation>Das Dokument konnte nicht gedruckt werden.</translation>
    </message>
    <message>
        <source>Another record stands there under this name, and no copy of it could be kept.</source>
        <translation>Unter diesem Namen liegt dort eine andere Akte, und von ihr konnte keine Kopie aufbewahrt werden.</translation>
    </message>
    <message>
        <source>The record &apos;%@&apos; had been removed by somebody else.</source>
        <translation>Die Akte „%@“ war von jemand anderem entfernt worden.</translation>
    </message>
    <message>
        <source>It has been saved again.</source>
        <translation>Sie wurde neu gespeichert.</translation>
    </message>
    <message>
        <source>Another version of the record &apos;%@&apos; was in its place.</source>
        <translation>Eine andere Fassung der Akte „%@“ lag an ihrer Stelle.</translation>
    </message>
    <message>
        <source>Yours has been saved. The other one, which somebody else may have written, was kept as &apos;%@&apos;.</source>
        <translation>Ihre ist gespeichert. Die andere, die vielleicht jemand anderes geschrieben hat, wurde als „%@“ aufbewahrt.</translation>
    </message>
    <message>
        <source>Unsaved changes to &apos;%@&apos; could not be kept.</source>
        <translation>Ungespeicherte Änderungen an „%@“ konnten nicht aufbewahrt werden.</translation>
    </message>
    <message>
        <source>Unsaved changes to &apos;%@&apos; are about to be dropped.</source>
        <translation>Ungespeicherte Änderungen an „%@“ gehen gleich verloren.</translation>
    </message>
    <message>
        <source>No copy of them could be kept.</source>
        <translation>Von ihnen konnte keine Kopie aufbewahrt werden.</translation>
    </message>
    <message>
        <source>&apos;%@&apos; was closed with unsaved changes</source>
        <translation>„%@“ wurde mit ungespeicherten Änderungen geschlossen</translation>
    </message>
    <message>
        <source>A copy with the changes was kept as &apos;%@&apos;.</source>
        <translation>Eine Kopie mit den Änderungen wurde als „%@“ aufbewahrt.</translation>
    </message>
    <message>
        <source>The record &apos;%@&apos; could not be saved.</source>
        <translation>Die Akte „%@“ konnte nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>A copy was kept as &apos;%@&apos;.</source>
        <translation>Eine Kopie wurde als „%@“ aufbewahrt.</translation>
    </message>
    <message>
        <source>No copy could be kept either.</source>
        <translation>Auch eine Kopie konnte nicht aufbewahrt werden.</translation>
    </message>
    <message>
        <source>Save Elsewhere...</source>
        <translation>Anderswo speichern...</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Nicht speichern</translation>
    </message>
    <message>
        <source>Save Elsewhere</source>
        <translation>Anderswo speichern</translation>
    </message>
</context>
<context>
    <name>OrvVersion</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>That is not the address of a web page.</source>
        <translation>Das ist nicht die Adresse einer Webseite.</translation>
    </message>
    <message>
        <source>The server took too long to answer.</source>
        <translation>Der Server hat zu lange nicht geantwortet.</translation>
    </message>
    <message>
        <source>The server&apos;s answer is too large.</source>
        <translation>Die Antwort des Servers ist zu groß.</translation>
    </message>
    <message>
        <source>The server leads from one address to the next without end.</source>
        <translation>Der Server verweist ohne Ende von einer Adresse auf die nächste.</translation>
    </message>
    <message>
        <source>The server leads to an address that is not safe.</source>
        <translation>Der Server verweist auf eine Adresse, die nicht sicher ist.</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be made.</source>
        <translation>Eine sichere Verbindung zum Server kam nicht zustande.</translation>
    </message>
    <message>
        <source>The server broke the connection off.</source>
        <translation>Der Server hat die Verbindung abgebrochen.</translation>
    </message>
    <message>
        <source>The server&apos;s answer could not be understood.</source>
        <translation>Die Antwort des Servers war nicht zu verstehen.</translation>
    </message>
    <message>
        <source>The server could not be reached.</source>
        <translation>Der Server war nicht zu erreichen.</translation>
    </message>
    <message>
        <source>The server answered with status %@.</source>
        <translation>Der Server hat mit Status %@ geantwortet.</translation>
    </message>
    <message>
        <source>The list of versions could not be understood.</source>
        <translation>Die Liste der Versionen war nicht zu verstehen.</translation>
    </message>
    <message>
        <source>The list of versions names no version.</source>
        <translation>Die Liste der Versionen nennt keine Version.</translation>
    </message>
    <message>
        <source>This application does not say where to look for new versions.</source>
        <translation>Diese Anwendung sagt nicht, wo nach neuen Versionen zu suchen ist.</translation>
    </message>
    <message>
        <source>%@ is up to date</source>
        <translation>%@ ist auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>Version %@ is the newest one.</source>
        <translation>Version %@ ist die neueste.</translation>
    </message>
    <message>
        <source>The check for a new version failed</source>
        <translation>Die Suche nach einer neuen Version ist fehlgeschlagen</translation>
    </message>
    <message>
        <source>Version %@ is available. You have version %@.</source>
        <translation>Version %@ ist verfügbar. Sie haben Version %@.</translation>
    </message>
    <message>
        <source>A new version of %@ is available</source>
        <translation>Eine neue Version von %@ ist verfügbar</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>The page could not be opened</source>
        <translation>Die Seite konnte nicht geöffnet werden</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Akten</translation>
    </message>
    <message>
        <source>&amp;Save folder</source>
        <translation>&amp;Speicherordner</translation>
    </message>
    <message>
        <source>&amp;Choose...</source>
        <translation>&amp;Auswählen...</translation>
    </message>
    <message>
        <source>Choose the save folder</source>
        <translation>Speicherordner auswählen</translation>
    </message>
    <message>
        <source>Choose the folder in which records are kept</source>
        <translation>Den Ordner auswählen, in dem Akten aufbewahrt werden</translation>
    </message>
    <message>
        <source>S&amp;how</source>
        <translation>&amp;Zeigen</translation>
    </message>
    <message>
        <source>Show the save folder</source>
        <translation>Speicherordner zeigen</translation>
    </message>
    <message>
        <source>Show this folder in the file manager</source>
        <translation>Diesen Ordner in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>&amp;Keep records in this folder automatically</source>
        <translation>Akten automatisch in diesem Ordner auf&amp;bewahren</translation>
    </message>
    <message>
        <source>Save each record under its identifier, and find it again when the patient returns</source>
        <translation>Jede Akte unter ihrer Kennung speichern und wiederfinden, wenn der Patient wiederkommt</translation>
    </message>
    <message>
        <source>Charts</source>
        <translation>Kurven</translation>
    </message>
    <message>
        <source>&amp;Export charts to</source>
        <translation>&amp;Kurven exportieren nach</translation>
    </message>
    <message>
        <source>A folder</source>
        <translation>Ein Ordner</translation>
    </message>
    <message>
        <source>OsiriX</source>
        <translation>OsiriX</translation>
    </message>
    <message>
        <source>Export &amp;folder</source>
        <translation>E&amp;xportordner</translation>
    </message>
    <message>
        <source>Ch&amp;oose...</source>
        <translation>Aus&amp;wählen...</translation>
    </message>
    <message>
        <source>Choose the export folder</source>
        <translation>Exportordner auswählen</translation>
    </message>
    <message>
        <source>Choose the folder into which charts are exported</source>
        <translation>Den Ordner auswählen, in den Kurven exportiert werden</translation>
    </message>
    <message>
        <source>Sho&amp;w</source>
        <translation>Z&amp;eigen</translation>
    </message>
    <message>
        <source>Show the export folder</source>
        <translation>Exportordner zeigen</translation>
    </message>
    <message>
        <source>Start-up script</source>
        <translation>Startskript</translation>
    </message>
    <message>
        <source>This shell scri&amp;pt runs each time the application starts, with all of your rights. Leave it empty to run nothing.</source>
        <translation>Dieses Shell-Skri&amp;pt läuft bei jedem Start der Anwendung, mit allen Ihren Rechten. Leer bewirkt es nichts.</translation>
    </message>
    <message>
        <source>Script error</source>
        <translation>Fehler im Skript</translation>
    </message>
    <message>
        <source>Check S&amp;yntax</source>
        <translation>S&amp;yntax prüfen</translation>
    </message>
    <message>
        <source>Look for mistakes in the script without running it</source>
        <translation>Nach Fehlern im Skript suchen, ohne es auszuführen</translation>
    </message>
    <message>
        <source>New versions</source>
        <translation>Neue Versionen</translation>
    </message>
    <message>
        <source>Look for new versions &amp;automatically</source>
        <translation>Automatisch nach neuen &amp;Versionen suchen</translation>
    </message>
    <message>
        <source>&amp;Interval</source>
        <translation>&amp;Intervall</translation>
    </message>
    <message>
        <source>Daily</source>
        <translation>Täglich</translation>
    </message>
    <message>
        <source>Weekly</source>
        <translation>Wöchentlich</translation>
    </message>
    <message>
        <source>Monthly</source>
        <translation>Monatlich</translation>
    </message>
    <message>
        <source>Last check</source>
        <translation>Letzte Suche</translation>
    </message>
    <message>
        <source>Check &amp;Now</source>
        <translation>&amp;Jetzt suchen</translation>
    </message>
    <message>
        <source>Look for a new version now</source>
        <translation>Jetzt nach einer neuen Version suchen</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>%@ at %@</source>
        <translation>%@ um %@</translation>
    </message>
    <message>
        <source>Folder Missing</source>
        <translation>Ordner fehlt</translation>
    </message>
    <message>
        <source>The specified folder is not currently available.</source>
        <translation>Der angegebene Ordner ist zurzeit nicht verfügbar.</translation>
    </message>
    <message>
        <source>Install OsiriX Plugin</source>
        <translation>OsiriX-Plugin installieren</translation>
    </message>
    <message>
        <source>Once installed, the plugin will be available the next time OsiriX is launched.</source>
        <translation>Nach der Installation steht das Plugin beim nächsten Start von OsiriX bereit.</translation>
    </message>
    <message>
        <source>OsiriX may be downloaded from </source>
        <translation>OsiriX gibt es zum Herunterladen unter </translation>
    </message>
</context>
<context>
    <name>Script</name>
    <message>
        <source>The script cannot be started: %@</source>
        <translation>Das Skript kann nicht gestartet werden: %@</translation>
    </message>
    <message>
        <source>The script was stopped.</source>
        <translation>Das Skript wurde angehalten.</translation>
    </message>
    <message>
        <source>The script ended with status %@.</source>
        <translation>Das Skript endete mit Status %@.</translation>
    </message>
    <message>
        <source>The script was ended by signal %@.</source>
        <translation>Das Skript wurde durch Signal %@ beendet.</translation>
    </message>
    <message>
        <source>The shell cannot read this script.</source>
        <translation>Die Shell kann dieses Skript nicht lesen.</translation>
    </message>
</context>
<context>
    <name>SplashController</name>
    <message>
        <source>Build %@ (%s)</source>
        <translation>Build %@ (%s)</translation>
    </message>
</context>
<context>
    <name>VelmoraAppController</name>
    <message>
        <source>Caching database...</source>
        <translation>Datenbank wird eingelesen...</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>E&amp;xamination</source>
        <translation>&amp;Untersuchung</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt benutzt</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>C&amp;lose All</source>
        <translation>&amp;Alle schließen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>E&amp;xportieren</translation>
    </message>
    <message>
        <source>&amp;Batch Export...</source>
        <translation>S&amp;tapelexport...</translation>
    </message>
    <message>
        <source>Pa&amp;ge Setup...</source>
        <translation>Seite ein&amp;richten...</translation>
    </message>
    <message>
        <source>&amp;Print...</source>
        <translation>&amp;Drucken...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Prefere&amp;nces...</source>
        <translation>Ein&amp;stellungen...</translation>
    </message>
    <message>
        <source>&amp;New Examination</source>
        <translation>&amp;Neue Untersuchung</translation>
    </message>
    <message>
        <source>&amp;Delete Examination...</source>
        <translation>Untersuchung &amp;löschen...</translation>
    </message>
    <message>
        <source>Ne&amp;xt Examination</source>
        <translation>Nä&amp;chste Untersuchung</translation>
    </message>
    <message>
        <source>&amp;Previous Examination</source>
        <translation>&amp;Vorige Untersuchung</translation>
    </message>
    <message>
        <source>%@ &amp;Help</source>
        <translation>%@-&amp;Hilfe</translation>
    </message>
    <message>
        <source>Check for New &amp;Version...</source>
        <translation>Nach neuer &amp;Version suchen...</translation>
    </message>
    <message>
        <source>&amp;Web Site</source>
        <translation>&amp;Website</translation>
    </message>
    <message>
        <source>&amp;Contact Support...</source>
        <translation>&amp;Support kontaktieren...</translation>
    </message>
    <message>
        <source>&amp;About %@</source>
        <translation>Ü&amp;ber %@</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>Alles a&amp;uswählen</translation>
    </message>
    <message>
        <source>&amp;Clear Menu</source>
        <translation>Liste &amp;leeren</translation>
    </message>
    <message>
        <source>&amp;Remember Recent Documents</source>
        <translation>&amp;Zuletzt benutzte Akten merken</translation>
    </message>
    <message>
        <source>Running startup script...</source>
        <translation>Startskript läuft...</translation>
    </message>
    <message>
        <source>Startup script error</source>
        <translation>Fehler im Startskript</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>The file &apos;%@&apos; is no longer there.</source>
        <translation>Die Datei „%@“ ist nicht mehr da.</translation>
    </message>
    <message>
        <source>It may have been moved or renamed. The menu of recent documents no longer names it.</source>
        <translation>Vielleicht wurde sie verschoben oder umbenannt. Die Liste der zuletzt benutzten Akten nennt sie nicht mehr.</translation>
    </message>
    <message>
        <source>Periodically check for updates?</source>
        <translation>Regelmäßig nach Aktualisierungen suchen?</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Don&apos;t Check</source>
        <translation>Nicht suchen</translation>
    </message>
    <message>
        <source>You can change this setting later by choosing Preferences from the %@ menu.</source>
        <translation>Sie können dies später in den Einstellungen von %@ ändern.</translation>
    </message>
    <message>
        <source>Set Up Database?</source>
        <translation>Datenbank einrichten?</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Would you like to automatically configure the default database?

You can alter the default settings later in the preferences.</source>
        <translation>Möchten Sie die Standarddatenbank automatisch einrichten lassen?

Die Vorgaben können Sie später in den Einstellungen ändern.</translation>
    </message>
    <message>
        <source>Update OsiriX Plugin</source>
        <translation>OsiriX-Plugin aktualisieren</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>This is a recommended update of the OsiriX plugin.</source>
        <translation>Diese Aktualisierung des OsiriX-Plugins wird empfohlen.</translation>
    </message>
    <message>
        <source>~/Documents/%@ Data</source>
        <translation>~/Documents/%@ Data</translation>
    </message>
    <message>
        <source>Checking for new version...</source>
        <translation>Suche nach neuer Version...</translation>
    </message>
    <message>
        <source>Version check successful...</source>
        <translation>Suche nach neuer Version abgeschlossen...</translation>
    </message>
    <message>
        <source>Version check unsuccessful...</source>
        <translation>Suche nach neuer Version gescheitert...</translation>
    </message>
    <message>
        <source>The batch export has closed records with unsaved changes</source>
        <translation>Der Stapelexport hat Akten mit ungespeicherten Änderungen geschlossen</translation>
    </message>
    <message>
        <source>Copies with the changes were kept as:
%@</source>
        <translation>Kopien mit den Änderungen wurden aufbewahrt als:
%@</translation>
    </message>
    <message>
        <source>No examination was added to &apos;%@&apos;</source>
        <translation>Zu „%@“ wurde keine Untersuchung hinzugefügt</translation>
    </message>
    <message>
        <source>Installation Succeeded</source>
        <translation>Installation gelungen</translation>
    </message>
    <message>
        <source>The plugin will be available the next time OsiriX is launched.</source>
        <translation>Das Plugin steht beim nächsten Start von OsiriX bereit.</translation>
    </message>
    <message>
        <source>Installation Failed</source>
        <translation>Installation fehlgeschlagen</translation>
    </message>
</context>
<context>
    <name>VelmoraDocument</name>
    <message>
        <source>&amp;Identifier</source>
        <translation>&amp;Kennung</translation>
    </message>
    <message>
        <source>&amp;Born</source>
        <translation>&amp;Geboren</translation>
    </message>
    <message>
        <source>Exa&amp;mined</source>
        <translation>Untersu&amp;cht</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Chart</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>This entry has already been defined</source>
        <translation>Dieser Eintrag ist bereits festgelegt</translation>
    </message>
    <message>
        <source>Modify</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>Are you sure you want to modify this item?</source>
        <translation>Möchten Sie diesen Eintrag wirklich ändern?</translation>
    </message>
    <message>
        <source>Are you sure you want to remove this exam?</source>
        <translation>Möchten Sie diese Untersuchung wirklich entfernen?</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>%ld of %ld</source>
        <translation>%ld von %ld</translation>
    </message>
    <message>
        <source>A file with that name already exists</source>
        <translation>Eine Datei dieses Namens gibt es schon</translation>
    </message>
    <message>
        <source>Overwrite</source>
        <translation>Überschreiben</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Überspringen</translation>
    </message>
    <message>
        <source>A file named &apos;%@&apos; is already present in &apos;%@/&apos;.</source>
        <translation>Eine Datei „%@“ liegt bereits in „%@/“.</translation>
    </message>
    <message>
        <source>%@ Chart</source>
        <translation>%@ Kurve</translation>
    </message>
    <message>
        <source>Patient Data Found</source>
        <translation>Patientendaten gefunden</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>A previously saved data file is available for patient &apos;%@&apos;.  Would you like to open it?</source>
        <translation>Für den Patienten „%@“ gibt es eine früher gespeicherte Datei.  Möchten Sie sie öffnen?</translation>
    </message>
    <message>
        <source>The file was saved for patient &apos;%@&apos;, but the identifier in it reads &apos;%@&apos;.</source>
        <translation>Die Datei wurde für den Patienten „%@“ gespeichert, aber die Kennung darin lautet „%@“.</translation>
    </message>
    <message>
        <source>&apos;%@&apos; is the record of another patient</source>
        <translation>„%@“ ist die Akte eines anderen Patienten</translation>
    </message>
    <message>
        <source>Recently Printed</source>
        <translation>Kürzlich gedruckt</translation>
    </message>
    <message>
        <source>This document was printed in the last 30 seconds.</source>
        <translation>Dieses Dokument wurde in den letzten 30 Sekunden gedruckt.</translation>
    </message>
    <message>
        <source>The identifier of this record has changed</source>
        <translation>Die Kennung dieser Akte hat sich geändert</translation>
    </message>
    <message>
        <source>New File</source>
        <translation>Neue Datei</translation>
    </message>
    <message>
        <source>Same File</source>
        <translation>Dieselbe Datei</translation>
    </message>
    <message>
        <source>It was &apos;%@&apos; and is now &apos;%@&apos;. With a new file the record of &apos;%@&apos; stays as it was last saved.</source>
        <translation>Sie war „%@“ und ist jetzt „%@“. Mit einer neuen Datei bleibt die Akte von „%@“, wie sie zuletzt gespeichert wurde.</translation>
    </message>
    <message>
        <source>Save changes to document?</source>
        <translation>Änderungen am Dokument speichern?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save As...</source>
        <translation>Speichern unter...</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Nicht speichern</translation>
    </message>
    <message>
        <source>This is not a date. A date looks like %@.</source>
        <translation>Das ist kein Datum. Ein Datum sieht so aus: %@.</translation>
    </message>
    <message>
        <source>for example %@</source>
        <translation>zum Beispiel %@</translation>
    </message>
</context>
</TS>
