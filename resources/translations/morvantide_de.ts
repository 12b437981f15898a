<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>AboutText</name>
    <message>
        <source>&lt;h1&gt;%1&lt;/h1&gt;&lt;p&gt;version: %2&lt;br&gt;revision: %3&lt;br&gt;build date: %4&lt;br&gt;architecture: %7&lt;br&gt;os: %8 &lt;br&gt;os kernel: %9 %10&lt;/p&gt;%5&lt;p&gt;&lt;small&gt;Qt run-time: %6&lt;/small&gt;&lt;/p&gt;</source>
        <translation>&lt;h1&gt;%1&lt;/h1&gt;&lt;p&gt;Version: %2&lt;br&gt;Revision: %3&lt;br&gt;Erstellt: %4&lt;br&gt;Architektur: %7&lt;br&gt;Betriebssystem: %8 &lt;br&gt;Kern: %9 %10&lt;/p&gt;%5&lt;p&gt;&lt;small&gt;Qt: %6&lt;/small&gt;&lt;/p&gt;</translation>
    </message>
</context>
<context>
    <name>AddPlotButton</name>
    <message>
        <source>Add plot</source>
        <translation>Diagramm hinzufügen</translation>
    </message>
</context>
<context>
    <name>ChoiceButton</name>
    <message>
        <source>Select all</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>Select none</source>
        <translation>Keine auswählen</translation>
    </message>
</context>
<context>
    <name>Colorbar</name>
    <message>
        <source>Click and drag left/right half of the colorscale to change minimum/maximum values.</source>
        <translation>Linke/rechte Hälfte der Farbskala ziehen, um den kleinsten/größten Wert zu ändern.</translation>
    </message>
    <message>
        <source>Color scale</source>
        <translation>Farbskala</translation>
    </message>
</context>
<context>
    <name>ColormapChoice</name>
    <message>
        <source>Default color map</source>
        <translation>Voreingestellte Farbskala</translation>
    </message>
    <message>
        <source>%1 (color-blind safe)</source>
        <translation>%1 (bei Farbfehlsichtigkeit geeignet)</translation>
    </message>
    <message>
        <source>New spectrograms begin with this map</source>
        <translation>Neue Spektrogramme beginnen mit dieser Skala</translation>
    </message>
    <message>
        <source>Color-blind safe colors for spectrograms? &lt;a href=&quot;%1&quot;&gt;Use them&lt;/a&gt; or &lt;a href=&quot;%2&quot;&gt;keep the usual&lt;/a&gt;</source>
        <translation>Farben für Spektrogramme, die auch bei Farbfehlsichtigkeit zu unterscheiden sind? &lt;a href=&quot;%1&quot;&gt;Verwenden&lt;/a&gt; oder &lt;a href=&quot;%2&quot;&gt;die üblichen behalten&lt;/a&gt;</translation>
    </message>
</context>
<context>
    <name>CommentEdit</name>
    <message>
        <source>n/a</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>The comment is longer than %1 characters and can&apos;t be changed here</source>
        <translation>Der Kommentar ist länger als %1 Zeichen und kann hier nicht geändert werden</translation>
    </message>
</context>
<context>
    <name>CommentMap</name>
    <message>
        <source>(not saved) %1</source>
        <translation>(nicht gespeichert) %1</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
</context>
<context>
    <name>CommentView</name>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter of comments</source>
        <translation>Filter für Kommentare</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Kommentare</translation>
    </message>
</context>
<context>
    <name>Complaint</name>
    <message>
        <source>%1 more invalid custom limits.</source>
        <translation>%1 weitere ungültige eigene Grenzen.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; must be %2, but was %3</source>
        <translation>&apos;%1&apos; muss %2 sein, war aber %3</translation>
    </message>
    <message>
        <source>A field was left out: a table has no more than %1 columns.</source>
        <translation>Ein Feld wurde ausgelassen: Eine Tabelle hat höchstens %1 Spalten.</translation>
    </message>
    <message>
        <source>Failed to create directory &apos;%1&apos;</source>
        <translation>Der Ordner &apos;%1&apos; konnte nicht angelegt werden</translation>
    </message>
    <message>
        <source>Invalid concentration type &apos;%1&apos;.</source>
        <translation>Ungültige Art der Konzentration &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Invalid custom fraction scale &apos;%1&apos;.</source>
        <translation>Ungültige Skala eigener Fraktionen &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Invalid custom limit &apos;%1&apos;.</source>
        <translation>Ungültige eigene Grenze &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Invalid decade fraction scale &apos;%1&apos;.</source>
        <translation>Ungültige Skala der Fraktionen je Dekade &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Invalid distribution &apos;%1&apos;.</source>
        <translation>Ungültige Verteilung &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Invalid field separator &apos;%1&apos;.</source>
        <translation>Ungültiger Feldtrenner &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Invalid mass unit &apos;%1&apos;.</source>
        <translation>Ungültige Masseneinheit &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Invalid material density %1.</source>
        <translation>Ungültige Materialdichte %1.</translation>
    </message>
    <message>
        <source>Invalid number of fractions per decade: %1.</source>
        <translation>Ungültige Zahl von Fraktionen je Dekade: %1.</translation>
    </message>
    <message>
        <source>Invalid range of decade fractions: %1 to %2.</source>
        <translation>Ungültiger Bereich der Fraktionen je Dekade: %1 bis %2.</translation>
    </message>
    <message>
        <source>Invalid scale &apos;%1&apos;.</source>
        <translation>Ungültige Skala &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>It has no list &quot;fields&quot;</source>
        <translation>Es fehlt die Liste &quot;fields&quot;</translation>
    </message>
    <message>
        <source>It has no map &quot;general&quot;</source>
        <translation>Es fehlt die Abbildung &quot;general&quot;</translation>
    </message>
    <message>
        <source>It is of version %1, which is too new</source>
        <translation>Die Version %1 ist zu neu</translation>
    </message>
    <message>
        <source>It isn&apos;t a map</source>
        <translation>Es ist keine Abbildung</translation>
    </message>
    <message>
        <source>No output file is named.</source>
        <translation>Keine Ausgabedatei ist genannt.</translation>
    </message>
    <message>
        <source>The fraction of plot %1 isn&apos;t bounded by two limits above 0: no field was added.</source>
        <translation>Die Fraktion von Diagramm %1 hat keine zwei Grenzen über 0: Kein Feld wurde hinzugefügt.</translation>
    </message>
    <message>
        <source>The grid of &quot;%1&quot; has no decades.</source>
        <translation>Das Gitter von &quot;%1&quot; hat keine Dekaden.</translation>
    </message>
    <message>
        <source>The output file&apos;s name can&apos;t be one.</source>
        <translation>Der Name der Ausgabedatei ist keiner.</translation>
    </message>
    <message>
        <source>The time format is too long.</source>
        <translation>Das Zeitformat ist zu lang.</translation>
    </message>
    <message>
        <source>Unable to open file &apos;%1&apos;</source>
        <translation>Die Datei &apos;%1&apos; kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Unable to write file &apos;%1&apos;: %2</source>
        <translation>Die Datei &apos;%1&apos; kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Unknown electrometer &apos;%1&apos;.</source>
        <translation>Unbekanntes Elektrometer &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Unknown field type &apos;%1&apos;.</source>
        <translation>Unbekannte Feldart &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Unknown spectrum &apos;%1&apos;.</source>
        <translation>Unbekanntes Spektrum &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Unknown variable &apos;%1&apos;.</source>
        <translation>Unbekannte Variable &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has no points in %2.</source>
        <translation>&quot;%1&quot; hat keine Punkte in %2.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is named as a file of data or settings.</source>
        <translation>&quot;%1&quot; heißt wie eine Datei von Daten oder Einstellungen.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is one of the files to read.</source>
        <translation>&quot;%1&quot; ist eine der zu lesenden Dateien.</translation>
    </message>
    <message>
        <source>It is a device</source>
        <translation>Es ist ein Gerät</translation>
    </message>
    <message>
        <source>It is a folder</source>
        <translation>Es ist ein Ordner</translation>
    </message>
    <message>
        <source>It is a pipe</source>
        <translation>Es ist eine Pipe</translation>
    </message>
    <message>
        <source>It is a socket</source>
        <translation>Es ist ein Socket</translation>
    </message>
    <message>
        <source>Not a regular file</source>
        <translation>Keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>it stands, but might be lost in a power failure: %1</source>
        <translation>sie steht, könnte aber bei Stromausfall verloren gehen: %1</translation>
    </message>
    <message>
        <source>File name too long</source>
        <translation>Dateiname zu lang</translation>
    </message>
    <message>
        <source>File too large</source>
        <translation>Datei zu groß</translation>
    </message>
    <message>
        <source>Input/output error</source>
        <translation>Ein-/Ausgabefehler</translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation>Ist ein Ordner</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>Kein Platz mehr auf dem Gerät</translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation>Datei oder Ordner gibt es nicht</translation>
    </message>
    <message>
        <source>Not a directory</source>
        <translation>Ist kein Ordner</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>Zugriff verweigert</translation>
    </message>
    <message>
        <source>Read-only file system</source>
        <translation>Dateisystem ist schreibgeschützt</translation>
    </message>
</context>
<context>
    <name>ConcentrationFieldForm</name>
    <message>
        <source>Spectra:</source>
        <translation>Spektren:</translation>
    </message>
    <message>
        <source>Total concentration</source>
        <translation>Gesamtkonzentration</translation>
    </message>
    <message>
        <source>Concentrations</source>
        <translation>Konzentrationen</translation>
    </message>
    <message>
        <source>Concentrations: %1</source>
        <translation>Konzentrationen: %1</translation>
    </message>
</context>
<context>
    <name>CustomFractionsBox</name>
    <message>
        <source>Custom fractions</source>
        <translation>Eigene Fraktionen</translation>
    </message>
    <message>
        <source>Diameter (nm)</source>
        <translation>Durchmesser (nm)</translation>
    </message>
    <message>
        <source>Mobility (cm²/V/s)</source>
        <translation>Mobilität (cm²/V/s)</translation>
    </message>
    <message>
        <source>Fraction limits</source>
        <translation>Fraktionsgrenzen</translation>
    </message>
    <message>
        <source>Give any number of fraction limits on one or more lines.
Limits should be separated by spaces: e.g. &quot;1 3 10&quot;</source>
        <translation>Beliebig viele Fraktionsgrenzen in einer oder mehreren Zeilen.
Die Grenzen sind durch Leerzeichen zu trennen: z. B. &quot;1 3 10&quot;</translation>
    </message>
    <message>
        <source>Scale:</source>
        <translation>Skala:</translation>
    </message>
</context>
<context>
    <name>DataChooserDialog</name>
    <message>
        <source>Choose data - Morvantide</source>
        <translation>Daten wählen - Morvantide</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Limit time span</source>
        <translation>Zeitraum begrenzen</translation>
    </message>
    <message>
        <source>Select:</source>
        <translation>Auswahl:</translation>
    </message>
    <message>
        <source>Look for</source>
        <translation>Suchen nach</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>Spectra of records of an unknown mode can&apos;t be saved</source>
        <translation>Spektren von Datensätzen unbekannter Betriebsart können nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Choose folder with datafiles</source>
        <translation>Ordner mit Datendateien wählen</translation>
    </message>
    <message>
        <source>&amp;Data folder:</source>
        <translation>&amp;Datenordner:</translation>
    </message>
    <message>
        <source>&amp;Start:</source>
        <translation>&amp;Beginn:</translation>
    </message>
    <message>
        <source>&amp;End:</source>
        <translation>&amp;Ende:</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>A&amp;lle</translation>
    </message>
    <message>
        <source>Last &amp;7 days</source>
        <translation>Letzte &amp;7 Tage</translation>
    </message>
    <message>
        <source>Last &amp;30 days</source>
        <translation>Letzte &amp;30 Tage</translation>
    </message>
    <message>
        <source>A&amp;veraging period</source>
        <translation>&amp;Mittelungszeit</translation>
    </message>
    <message>
        <source>O&amp;ld-style sig/log/nds datafiles</source>
        <translation>Alte s&amp;ig-/log-/nds-Dateien</translation>
    </message>
    <message>
        <source>Operating &amp;mode where files tell none:</source>
        <translation>Betriebsart, &amp;wo Dateien keine nennen:</translation>
    </message>
</context>
<context>
    <name>DataExportDialog</name>
    <message>
        <source>Export settings</source>
        <translation>Exporteinstellungen</translation>
    </message>
    <message>
        <source>Export data</source>
        <translation>Daten exportieren</translation>
    </message>
    <message>
        <source>First rows</source>
        <translation>Erste Zeilen</translation>
    </message>
    <message>
        <source>Load setup...</source>
        <translation>Einstellungen laden...</translation>
    </message>
    <message>
        <source>Save setup...</source>
        <translation>Einstellungen speichern...</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Not all of the setup was understood: the log tells what.</source>
        <translation>Nicht alle Einstellungen wurden verstanden: Das Protokoll nennt sie.</translation>
    </message>
    <message>
        <source>Save data export settings</source>
        <translation>Exporteinstellungen speichern</translation>
    </message>
    <message>
        <source>Load data export settings</source>
        <translation>Exporteinstellungen laden</translation>
    </message>
    <message>
        <source>Data export settings (*.exportsetup);;All files (*)</source>
        <translation>Exporteinstellungen (*.exportsetup);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Failed to open file %1 for writing.</source>
        <translation>Die Datei %1 konnte nicht zum Schreiben geöffnet werden.</translation>
    </message>
    <message>
        <source>Failed to open file %1.</source>
        <translation>Die Datei %1 konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Data export</source>
        <translation>Datenexport</translation>
    </message>
    <message>
        <source>Those from %1 to %2</source>
        <translation>Die von %1 bis %2</translation>
    </message>
</context>
<context>
    <name>DataExporting</name>
    <message>
        <source>No plot shows a concentration that can be exported.</source>
        <translation>Kein Diagramm zeigt eine Konzentration, die exportiert werden kann.</translation>
    </message>
    <message>
        <source>Data export</source>
        <translation>Datenexport</translation>
    </message>
    <message>
        <source>Nothing to export: none of the setup&apos;s spectra is in memory.</source>
        <translation>Nichts zu exportieren: Keines der eingestellten Spektren ist im Speicher.</translation>
    </message>
    <message>
        <source>Nothing to export: no record is of the setup&apos;s modes.</source>
        <translation>Nichts zu exportieren: Kein Datensatz hat eine der eingestellten Betriebsarten.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a folder.</source>
        <translation>&quot;%1&quot; ist ein Ordner.</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>A file exists. Replace it?</source>
        <translation>Eine Datei gibt es schon. Ersetzen?</translation>
    </message>
    <message>
        <source>Files exist. Replace them?</source>
        <translation>Dateien gibt es schon. Ersetzen?</translation>
    </message>
    <message>
        <source>Exporting records</source>
        <translation>Datensätze werden exportiert</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Export was cancelled by user.</source>
        <translation>Der Export wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Nothing to export: no record is in the time span.</source>
        <translation>Nichts zu exportieren: Kein Datensatz liegt im Zeitraum.</translation>
    </message>
    <message numerus="yes">
        <source>%n rows written to &quot;%1&quot;</source>
        <translation>
            <numerusform>%n Zeile in &quot;%1&quot; geschrieben</numerusform>
            <numerusform>%n Zeilen in &quot;%1&quot; geschrieben</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n rows written to %1 files in &quot;%2&quot;</source>
        <translation>
            <numerusform>%n Zeile in %1 Dateien in &quot;%2&quot; geschrieben</numerusform>
            <numerusform>%n Zeilen in %1 Dateien in &quot;%2&quot; geschrieben</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n rows could not be written.
The log tells why.</source>
        <translation>
            <numerusform>%n Zeile konnte nicht geschrieben werden.
Das Protokoll nennt den Grund.</numerusform>
            <numerusform>%n Zeilen konnten nicht geschrieben werden.
Das Protokoll nennt den Grund.</numerusform>
        </translation>
    </message>
    <message>
        <source>The files stand, but might be lost in a power failure.
The log tells why.</source>
        <translation>Die Dateien stehen, könnten aber bei Stromausfall verloren gehen.
Das Protokoll nennt den Grund.</translation>
    </message>
</context>
<context>
    <name>DataSaverDialog</name>
    <message>
        <source>Save inversion variables</source>
        <translation>Inversionsvariablen speichern</translation>
    </message>
    <message>
        <source>Save data - Morvantide</source>
        <translation>Daten speichern - Morvantide</translation>
    </message>
    <message>
        <source>Full records</source>
        <translation>Vollständige Datensätze</translation>
    </message>
    <message>
        <source>%1 opmode spectra</source>
        <translation>Spektren der Betriebsart %1</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Output folder:</source>
        <translation>Ausgabeordner:</translation>
    </message>
    <message>
        <source>Averaging variant:</source>
        <translation>Mittelungsvariante:</translation>
    </message>
    <message>
        <source>Data:</source>
        <translation>Daten:</translation>
    </message>
    <message>
        <source>Choose folder for datafiles</source>
        <translation>Ordner für Datendateien wählen</translation>
    </message>
    <message>
        <source>Data to save</source>
        <translation>Zu speichernde Daten</translation>
    </message>
</context>
<context>
    <name>DecadeFractionsBox</name>
    <message>
        <source>Fractions per decade</source>
        <translation>Fraktionen je Dekade</translation>
    </message>
    <message>
        <source>Diameter scale (nm)</source>
        <translation>Durchmesserskala (nm)</translation>
    </message>
    <message>
        <source>Mobility scale (cm²/V/s)</source>
        <translation>Mobilitätsskala (cm²/V/s)</translation>
    </message>
    <message>
        <source>Diameter scale (nm), custom range</source>
        <translation>Durchmesserskala (nm), eigener Bereich</translation>
    </message>
    <message>
        <source>Mobility scale (cm²/V/s), custom range</source>
        <translation>Mobilitätsskala (cm²/V/s), eigener Bereich</translation>
    </message>
    <message>
        <source>Fraction per decade:</source>
        <translation>Fraktionen je Dekade:</translation>
    </message>
    <message>
        <source>Fraction scale:</source>
        <translation>Fraktionsskala:</translation>
    </message>
    <message>
        <source>From:</source>
        <translation>Von:</translation>
    </message>
    <message>
        <source>To:</source>
        <translation>Bis:</translation>
    </message>
</context>
<context>
    <name>DiagnosticStatusDockWidget</name>
    <message>
        <source>Diagnostic status</source>
        <translation>Diagnosestatus</translation>
    </message>
    <message>
        <source>Flags of all records</source>
        <translation>Meldungen aller Datensätze</translation>
    </message>
</context>
<context>
    <name>DistributionSummary</name>
    <message>
        <source>%1: no values</source>
        <translation>%1: keine Werte</translation>
    </message>
    <message>
        <source>%1: total %2 %3, GMD %4 %5, GSD %6, mode %7 %8</source>
        <translation>%1: gesamt %2 %3, GMD %4 %5, GSD %6, Modus %7 %8</translation>
    </message>
    <message>
        <source>%1: inversion failed</source>
        <translation>%1: Inversion fehlgeschlagen</translation>
    </message>
</context>
<context>
    <name>DistributionText</name>
    <message>
        <source>mobility</source>
        <translation>Mobilität</translation>
    </message>
    <message>
        <source>radius</source>
        <translation>Radius</translation>
    </message>
    <message>
        <source>diameter</source>
        <translation>Durchmesser</translation>
    </message>
</context>
<context>
    <name>DockTitleBar</name>
    <message>
        <source>Float</source>
        <translation>Ablösen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>ElectrometerFieldForm</name>
    <message>
        <source>All electrometers</source>
        <translation>Alle Elektrometer</translation>
    </message>
    <message>
        <source>no electrometers</source>
        <translation>keine Elektrometer</translation>
    </message>
    <message>
        <source>Electrometers:</source>
        <translation>Elektrometer:</translation>
    </message>
    <message>
        <source>Currents</source>
        <translation>Ströme</translation>
    </message>
    <message>
        <source>Standard deviations of currents</source>
        <translation>Standardabweichungen der Ströme</translation>
    </message>
    <message>
        <source>Raw currents</source>
        <translation>Rohströme</translation>
    </message>
    <message>
        <source>Voltages</source>
        <translation>Spannungen</translation>
    </message>
    <message>
        <source>Electrometers</source>
        <translation>Elektrometer</translation>
    </message>
</context>
<context>
    <name>EmptyWindow</name>
    <message>
        <source>&amp;Recent folders:</source>
        <translation>&amp;Zuletzt geöffnet:</translation>
    </message>
    <message>
        <source>No data are open</source>
        <translation>Keine Daten sind geöffnet</translation>
    </message>
    <message>
        <source>Recent folders</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>A click opens the folder; Return shows the choice first</source>
        <translation>Ein Klick öffnet den Ordner; die Eingabetaste zeigt zuerst die Auswahl</translation>
    </message>
    <message>
        <source>Or drop a folder, or files of data, on this window.</source>
        <translation>Oder einen Ordner oder Datendateien auf dieses Fenster ziehen.</translation>
    </message>
</context>
<context>
    <name>ExportFieldKinds</name>
    <message>
        <source>Add concentrations</source>
        <translation>Konzentrationen hinzufügen</translation>
    </message>
    <message>
        <source>Add whole spectra</source>
        <translation>Ganze Spektren hinzufügen</translation>
    </message>
    <message>
        <source>Add variables</source>
        <translation>Variablen hinzufügen</translation>
    </message>
    <message>
        <source>Add electrometers</source>
        <translation>Elektrometer hinzufügen</translation>
    </message>
</context>
<context>
    <name>ExportPreview</name>
    <message>
        <source>None of the first records is meant.</source>
        <translation>Keiner der ersten Datensätze ist gemeint.</translation>
    </message>
    <message>
        <source>%1 and more</source>
        <translation>%1 und weitere</translation>
    </message>
    <message>
        <source>First rows of the table</source>
        <translation>Erste Zeilen der Tabelle</translation>
    </message>
    <message>
        <source>The first %1 of %2 columns are shown.</source>
        <translation>Die ersten %1 von %2 Spalten werden gezeigt.</translation>
    </message>
    <message numerus="yes">
        <source>%n more complaints.</source>
        <translation>
            <numerusform>%n weitere Beanstandung.</numerusform>
            <numerusform>%n weitere Beanstandungen.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ExportSetupTree</name>
    <message>
        <source>Pages of the export settings</source>
        <translation>Seiten der Exporteinstellungen</translation>
    </message>
    <message>
        <source>Each field adds columns to the table, in the order of this list.</source>
        <translation>Jedes Feld fügt der Tabelle Spalten hinzu, in der Reihenfolge dieser Liste.</translation>
    </message>
    <message>
        <source>General export settings</source>
        <translation>Allgemeine Einstellungen</translation>
    </message>
    <message>
        <source>Fields</source>
        <translation>Felder</translation>
    </message>
    <message>
        <source>Add fields from timeseries plots</source>
        <translation>Felder aus Zeitreihendiagrammen hinzufügen</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Add fields</source>
        <translation>Felder hinzufügen</translation>
    </message>
</context>
<context>
    <name>FileChoices</name>
    <message>
        <source>Select files</source>
        <translation>Dateien auswählen</translation>
    </message>
    <message>
        <source>Open inverters</source>
        <translation>Inverter öffnen</translation>
    </message>
    <message>
        <source>Inverters (*.inverter *.sinv *.sinp *.invmap *.zip);;All files (*)</source>
        <translation>Inverter (*.inverter *.sinv *.sinp *.invmap *.zip);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Backup window setup</source>
        <translation>Fensterlayout sichern</translation>
    </message>
    <message>
        <source>Restore window setup</source>
        <translation>Fensterlayout wiederherstellen</translation>
    </message>
    <message>
        <source>Window setup file (*.windowsetup)
All files (*)</source>
        <translation>Fensterlayout (*.windowsetup)
Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>FlagCommands</name>
    <message>
        <source>Plot flag</source>
        <translation>Meldung darstellen</translation>
    </message>
</context>
<context>
    <name>FlagMark</name>
    <message>
        <source>of the chosen flag</source>
        <translation>aus der gewählten Meldung</translation>
    </message>
</context>
<context>
    <name>FollowCommand</name>
    <message>
        <source>Follow folder</source>
        <translation>Ordner folgen</translation>
    </message>
    <message>
        <source>Takes in what is appended to the files, and the files of new days</source>
        <translation>Nimmt auf, was an die Dateien angehängt wird, und die Dateien neuer Tage</translation>
    </message>
</context>
<context>
    <name>FrameDocks</name>
    <message>
        <source>Selected record</source>
        <translation>Gewählter Datensatz</translation>
    </message>
    <message>
        <source>Comment list</source>
        <translation>Kommentarliste</translation>
    </message>
</context>
<context>
    <name>GeneralExportSettingsForm</name>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Choose output file</source>
        <translation>Ausgabedatei wählen</translation>
    </message>
    <message>
        <source>Add record date to name</source>
        <translation>Datum der Datensätze an den Namen anhängen</translation>
    </message>
    <message>
        <source>Add record opmode to name</source>
        <translation>Betriebsart der Datensätze an den Namen anhängen</translation>
    </message>
    <message>
        <source>Files that exist are asked about once, and then replaced as a whole.</source>
        <translation>Nach vorhandenen Dateien wird einmal gefragt; dann werden sie ganz ersetzt.</translation>
    </message>
    <message>
        <source>Output file:</source>
        <translation>Ausgabedatei:</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tabulator</translation>
    </message>
    <message>
        <source>, + space</source>
        <translation>, + Leerzeichen</translation>
    </message>
    <message>
        <source>; + space</source>
        <translation>; + Leerzeichen</translation>
    </message>
    <message>
        <source>%Y year, %m month, %d day, %j days since the year began, %H hours, %M minutes,
%S whole seconds, %s seconds with their fraction, %z offset from UTC</source>
        <translation>%Y Jahr, %m Monat, %d Tag, %j Tage seit Jahresbeginn, %H Stunden, %M Minuten,
%S ganze Sekunden, %s Sekunden mit Bruchteil, %z Abstand zu UTC</translation>
    </message>
    <message>
        <source>Local</source>
        <translation>Ortszeit</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
    <message>
        <source>Lines that tell program, files and spectra before the titles</source>
        <translation>Vor den Titeln Zeilen, die Programm, Dateien und Spektren nennen</translation>
    </message>
    <message>
        <source>Field separator:</source>
        <translation>Feldtrenner:</translation>
    </message>
    <message>
        <source>Time format:</source>
        <translation>Zeitformat:</translation>
    </message>
    <message>
        <source>Time zone:</source>
        <translation>Zeitzone:</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Datensätze</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Those in sight on the time axis</source>
        <translation>Die auf der Zeitachse sichtbaren</translation>
    </message>
    <message>
        <source>Time span:</source>
        <translation>Zeitraum:</translation>
    </message>
    <message>
        <source>Operating mode:</source>
        <translation>Betriebsart:</translation>
    </message>
    <message>
        <source>Tables (*.txt *.csv *.tsv);;All files (*)</source>
        <translation>Tabellen (*.txt *.csv *.tsv);;Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>GuideWindow</name>
    <message>
        <source>Page of the user guide</source>
        <translation>Seite des Handbuchs</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>&amp;Contents</source>
        <translation>&amp;Inhalt</translation>
    </message>
    <message>
        <source>Find in page</source>
        <translation>Auf der Seite suchen</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>&amp;Open in browser</source>
        <translation>Im &amp;Browser öffnen</translation>
    </message>
    <message>
        <source>User guide</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>User guide: %1</source>
        <translation>Handbuch: %1</translation>
    </message>
    <message>
        <source>No program was found that shows this page: %1</source>
        <translation>Kein Programm wurde gefunden, das diese Seite zeigt: %1</translation>
    </message>
</context>
<context>
    <name>InverterLoader</name>
    <message>
        <source>Reading inverters</source>
        <translation>Inverter werden gelesen</translation>
    </message>
    <message>
        <source>Stopping after this inverter</source>
        <translation>Abbruch nach diesem Inverter</translation>
    </message>
</context>
<context>
    <name>KeyList</name>
    <message>
        <source>Selected record</source>
        <translation>Gewählter Datensatz</translation>
    </message>
    <message>
        <source>Time axis</source>
        <translation>Zeitachse</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>Ziehen</translation>
    </message>
    <message>
        <source>Moves through time; far above or below the axis it zooms</source>
        <translation>Bewegt durch die Zeit; weit über oder unter der Achse vergrößert es</translation>
    </message>
    <message>
        <source>Drag with the middle button</source>
        <translation>Mit der mittleren Taste ziehen</translation>
    </message>
    <message>
        <source>Rolls on, faster with the distance</source>
        <translation>Rollt weiter, mit dem Abstand schneller</translation>
    </message>
    <message>
        <source>Wheel</source>
        <translation>Rad</translation>
    </message>
    <message>
        <source>Zooms about the pointer</source>
        <translation>Vergrößert um den Zeiger</translation>
    </message>
    <message>
        <source>Double click</source>
        <translation>Doppelklick</translation>
    </message>
    <message>
        <source>Shows all of the data</source>
        <translation>Zeigt alle Daten</translation>
    </message>
    <message>
        <source>Plot over time</source>
        <translation>Zeitreihendiagramm</translation>
    </message>
    <message>
        <source>Click, drag</source>
        <translation>Klicken, ziehen</translation>
    </message>
    <message>
        <source>Selects the record under the pointer</source>
        <translation>Wählt den Datensatz unter dem Zeiger</translation>
    </message>
    <message>
        <source>Shift + click, Ctrl + drag</source>
        <translation>Umschalt + Klick, Strg + Ziehen</translation>
    </message>
    <message>
        <source>Selects the nearest record of the same mode</source>
        <translation>Wählt den nächsten Datensatz derselben Betriebsart</translation>
    </message>
    <message>
        <source>Moves through time; Ctrl and the left button do the same</source>
        <translation>Bewegt durch die Zeit; Strg und die linke Taste tun dasselbe</translation>
    </message>
    <message>
        <source>Up, Down</source>
        <translation>Auf, Ab</translation>
    </message>
    <message>
        <source>Previous and next record; with Ctrl of the same mode</source>
        <translation>Voriger und nächster Datensatz; mit Strg derselben Betriebsart</translation>
    </message>
    <message>
        <source>Page Up, Page Down</source>
        <translation>Bild auf, Bild ab</translation>
    </message>
    <message>
        <source>Ten pixels back and forth</source>
        <translation>Zehn Pixel zurück und vor</translation>
    </message>
    <message>
        <source>+, -</source>
        <translation>+, -</translation>
    </message>
    <message>
        <source>Zooms about the selected record</source>
        <translation>Vergrößert um den gewählten Datensatz</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Frame of a plot over time</source>
        <translation>Rahmen eines Zeitreihendiagramms</translation>
    </message>
    <message>
        <source>Drag the left edge</source>
        <translation>Am linken Rand ziehen</translation>
    </message>
    <message>
        <source>Moves the plot among the others</source>
        <translation>Verschiebt das Diagramm zwischen den anderen</translation>
    </message>
    <message>
        <source>Drag the lower edge</source>
        <translation>Am unteren Rand ziehen</translation>
    </message>
    <message>
        <source>Sets the height</source>
        <translation>Ändert die Höhe</translation>
    </message>
    <message>
        <source>Right click</source>
        <translation>Rechtsklick</translation>
    </message>
    <message>
        <source>Shows the plot&apos;s commands</source>
        <translation>Zeigt die Befehle des Diagramms</translation>
    </message>
    <message>
        <source>Value scale</source>
        <translation>Werteskala</translation>
    </message>
    <message>
        <source>Drag up or down</source>
        <translation>Auf oder ab ziehen</translation>
    </message>
    <message>
        <source>Moves the scale</source>
        <translation>Verschiebt die Skala</translation>
    </message>
    <message>
        <source>Drag left or right</source>
        <translation>Nach links oder rechts ziehen</translation>
    </message>
    <message>
        <source>Zooms</source>
        <translation>Vergrößert oder verkleinert</translation>
    </message>
    <message>
        <source>Fits the scale to the values in sight</source>
        <translation>Passt die Skala an die sichtbaren Werte an</translation>
    </message>
    <message>
        <source>Colour bar</source>
        <translation>Farbskala</translation>
    </message>
    <message>
        <source>Drag the left or right half</source>
        <translation>Linke oder rechte Hälfte ziehen</translation>
    </message>
    <message>
        <source>Sets the lower or upper limit</source>
        <translation>Ändert die untere oder obere Grenze</translation>
    </message>
    <message>
        <source>Drag with the right button</source>
        <translation>Mit der rechten Taste ziehen</translation>
    </message>
    <message>
        <source>Marks the values above the pointer</source>
        <translation>Hebt die Werte über dem Zeiger hervor</translation>
    </message>
    <message>
        <source>Moves the limit of that half</source>
        <translation>Verschiebt die Grenze dieser Hälfte</translation>
    </message>
    <message>
        <source>Fits the limits to the values in sight</source>
        <translation>Passt die Grenzen an die sichtbaren Werte an</translation>
    </message>
    <message>
        <source>Plot of the selected record</source>
        <translation>Diagramm des gewählten Datensatzes</translation>
    </message>
    <message>
        <source>Moves the axis under the pointer</source>
        <translation>Verschiebt die Achse unter dem Zeiger</translation>
    </message>
    <message>
        <source>Zooms the axis under the pointer</source>
        <translation>Vergrößert die Achse unter dem Zeiger</translation>
    </message>
    <message>
        <source>Double click, Home</source>
        <translation>Doppelklick, Pos1</translation>
    </message>
    <message>
        <source>Fits the axes</source>
        <translation>Passt die Achsen an</translation>
    </message>
    <message>
        <source>Shift + arrow keys</source>
        <translation>Umschalt + Pfeiltasten</translation>
    </message>
    <message>
        <source>Moves the axes</source>
        <translation>Verschiebt die Achsen</translation>
    </message>
    <message>
        <source>Comma, full stop</source>
        <translation>Komma, Punkt</translation>
    </message>
    <message>
        <source>Reads out the previous or next point</source>
        <translation>Liest den vorigen oder nächsten Punkt ab</translation>
    </message>
    <message>
        <source>Reads out another curve</source>
        <translation>Liest eine andere Kurve ab</translation>
    </message>
    <message>
        <source>Hides what is read out</source>
        <translation>Verbirgt die Ablesung</translation>
    </message>
    <message>
        <source>Shift + drag</source>
        <translation>Umschalt + ziehen</translation>
    </message>
    <message>
        <source>Marks a time span, to zoom to it or to export it</source>
        <translation>Markiert einen Zeitraum, um auf ihn zu vergrößern oder ihn zu exportieren</translation>
    </message>
    <message>
        <source>Drag a handle</source>
        <translation>An einem Griff ziehen</translation>
    </message>
    <message>
        <source>Moves that measuring cursor</source>
        <translation>Verschiebt diese Messlinie</translation>
    </message>
    <message>
        <source>1, 2</source>
        <translation>1, 2</translation>
    </message>
    <message>
        <source>Sets a measuring cursor at the pointer, else at the selected record</source>
        <translation>Setzt eine Messlinie am Zeiger, sonst am gewählten Datensatz</translation>
    </message>
    <message>
        <source>Drops the measuring cursors; without any, unselects the record</source>
        <translation>Entfernt die Messlinien; gibt es keine, hebt es die Wahl des Datensatzes auf</translation>
    </message>
    <message>
        <source>Up, Down, +, -, Home</source>
        <translation>Auf, Ab, +, -, Pos1</translation>
    </message>
    <message>
        <source>Moves, zooms and fits the scale that Tab has reached</source>
        <translation>Verschiebt, vergrößert und passt die Skala an, die Tab erreicht hat</translation>
    </message>
</context>
<context>
    <name>LayoutKeeper</name>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>Save layout</source>
        <translation>Layout speichern</translation>
    </message>
    <message>
        <source>Save layout copy...</source>
        <translation>Kopie des Layouts speichern...</translation>
    </message>
    <message>
        <source>Restore layout...</source>
        <translation>Layout wiederherstellen...</translation>
    </message>
    <message>
        <source>Layouts of the data</source>
        <translation>Layouts der Daten</translation>
    </message>
    <message>
        <source>Restore default layout</source>
        <translation>Standardlayout wiederherstellen</translation>
    </message>
    <message>
        <source>Undo restore</source>
        <translation>Wiederherstellung rückgängig machen</translation>
    </message>
    <message>
        <source>Autosave layout</source>
        <translation>Layout automatisch speichern</translation>
    </message>
    <message>
        <source>Keep time span and record</source>
        <translation>Zeitraum und Datensatz behalten</translation>
    </message>
    <message>
        <source>The layout holds them, too</source>
        <translation>Das Layout enthält auch diese</translation>
    </message>
    <message>
        <source>The layout was saved to &apos;%1&apos;</source>
        <translation>Das Layout wurde in &apos;%1&apos; gespeichert</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
</context>
<context>
    <name>LogDock</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
</context>
<context>
    <name>MainWindowBase</name>
    <message>
        <source>About %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>About %1...</source>
        <translation>Über %1...</translation>
    </message>
    <message>
        <source>Select latest record</source>
        <translation>Letzten Datensatz wählen</translation>
    </message>
    <message>
        <source>Latest record</source>
        <translation>Letzter Datensatz</translation>
    </message>
    <message>
        <source>Follow current moment</source>
        <translation>Dem jetzigen Zeitpunkt folgen</translation>
    </message>
    <message>
        <source>Time flies</source>
        <translation>Zeit läuft</translation>
    </message>
    <message>
        <source>Fit timescale</source>
        <translation>Zeitachse anpassen</translation>
    </message>
    <message>
        <source>Go to time...</source>
        <translation>Gehe zu Zeitpunkt...</translation>
    </message>
    <message>
        <source>Previous view</source>
        <translation>Vorherige Ansicht</translation>
    </message>
    <message>
        <source>Show inversion statistics</source>
        <translation>Inversionsstatistik zeigen</translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Timeseries</source>
        <translation>&amp;Zeitreihen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Next record</source>
        <translation>Nächster Datensatz</translation>
    </message>
    <message>
        <source>Previous record</source>
        <translation>Voriger Datensatz</translation>
    </message>
    <message>
        <source>Next record of the same mode</source>
        <translation>Nächster Datensatz derselben Betriebsart</translation>
    </message>
    <message>
        <source>Previous record of the same mode</source>
        <translation>Voriger Datensatz derselben Betriebsart</translation>
    </message>
    <message>
        <source>Working out the statistics...</source>
        <translation>Die Statistik wird berechnet...</translation>
    </message>
</context>
<context>
    <name>MeasuringDock</name>
    <message>
        <source>Measuring</source>
        <translation>Messen</translation>
    </message>
    <message>
        <source>The keys 1 and 2 set cursors where the pointer is, over a plot or the time axis.</source>
        <translation>Die Tasten 1 und 2 setzen Messlinien, wo der Zeiger ist: über einem Diagramm oder der Zeitachse.</translation>
    </message>
    <message>
        <source>Values at the measuring cursors and between them</source>
        <translation>Werte an den Messlinien und dazwischen</translation>
    </message>
    <message>
        <source>&amp;Copy selected rows or all</source>
        <translation>Ausgewählte oder alle Zeilen &amp;kopieren</translation>
    </message>
</context>
<context>
    <name>MeasuringModel</name>
    <message>
        <source>%1 d %2</source>
        <translation>%1 d %2</translation>
    </message>
    <message>
        <source>Curve</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Cursor %1</source>
        <translation>Messlinie %1</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Differenz</translation>
    </message>
    <message>
        <source>Least</source>
        <translation>Kleinster</translation>
    </message>
    <message>
        <source>Greatest</source>
        <translation>Größter</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>The value of the record around %1</source>
        <translation>Der Wert des Datensatzes um %1</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>MorvantideInfoWindow</name>
    <message>
        <source>Change comment</source>
        <translation>Kommentar ändern</translation>
    </message>
    <message>
        <source>Change color...</source>
        <translation>Farbe ändern...</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Spectrum information</source>
        <translation>Spektreninformation</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>Kennung</translation>
    </message>
    <message>
        <source>Inverter</source>
        <translation>Inverter</translation>
    </message>
    <message>
        <source>Select color for %1</source>
        <translation>Farbe für %1 wählen</translation>
    </message>
    <message>
        <source>Spectrum comment</source>
        <translation>Kommentar zum Spektrum</translation>
    </message>
    <message>
        <source>Enter comment for spectrum</source>
        <translation>Kommentar zum Spektrum eingeben</translation>
    </message>
    <message>
        <source>Spectra</source>
        <translation>Spektren</translation>
    </message>
    <message numerus="yes">
        <source>%n of %1 records have this spectrum</source>
        <translation>
            <numerusform>%n von %1 Datensätzen hat dieses Spektrum</numerusform>
            <numerusform>%n von %1 Datensätzen haben dieses Spektrum</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MorvantideMainWindow</name>
    <message>
        <source>Viewing and analysis of data measured with aerosol and ion mobility spectrometers.</source>
        <translation>Betrachtung und Auswertung von Messdaten aus Aerosol- und Ionenmobilitätsspektrometern.</translation>
    </message>
    <message>
        <source> (incomplete)</source>
        <translation> (unvollständig)</translation>
    </message>
    <message>
        <source> (following)</source>
        <translation> (folgt)</translation>
    </message>
    <message>
        <source>Export data...</source>
        <translation>Daten exportieren...</translation>
    </message>
    <message>
        <source>Save data...</source>
        <translation>Daten speichern...</translation>
    </message>
    <message>
        <source>Spectra info</source>
        <translation>Spektreninformation</translation>
    </message>
    <message>
        <source>Spectra</source>
        <translation>Spektren</translation>
    </message>
    <message>
        <source>Reinvert...</source>
        <translation>Neu invertieren...</translation>
    </message>
    <message>
        <source>Cancel reinversion</source>
        <translation>Neuinversion abbrechen</translation>
    </message>
    <message>
        <source>An inversion already in progress.</source>
        <translation>Eine Inversion läuft bereits.</translation>
    </message>
    <message>
        <source>Do you want to abort the current inversion?</source>
        <translation>Die laufende Inversion abbrechen?</translation>
    </message>
    <message>
        <source>Read again</source>
        <translation>Neu lesen</translation>
    </message>
    <message>
        <source>&amp;Spectra</source>
        <translation>&amp;Spektren</translation>
    </message>
    <message>
        <source>Drawing the plots...</source>
        <translation>Die Diagramme werden gezeichnet...</translation>
    </message>
</context>
<context>
    <name>OpenCommands</name>
    <message>
        <source>Open data folder...</source>
        <translation>Datenordner öffnen...</translation>
    </message>
    <message>
        <source>Manually select data files...</source>
        <translation>Datendateien einzeln wählen...</translation>
    </message>
    <message>
        <source>Recent folders</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Open folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Manually select files</source>
        <translation>Dateien wählen</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Forget them</source>
        <translation>Liste leeren</translation>
    </message>
</context>
<context>
    <name>OverviewLabel</name>
    <message>
        <source>No file matches.</source>
        <translation>Keine Datei passt.</translation>
    </message>
    <message>
        <source>No file of these days; the folder has %1 to %2.</source>
        <translation>Keine Datei dieser Tage; der Ordner hat %1 bis %2.</translation>
    </message>
    <message>
        <source>Variables: %1</source>
        <translation>Variablen: %1</translation>
    </message>
    <message>
        <source>modes: %1</source>
        <translation>Betriebsarten: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n days</source>
        <translation>
            <numerusform>%n Tag</numerusform>
            <numerusform>%n Tage</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files</source>
        <translation>
            <numerusform>%n Datei</numerusform>
            <numerusform>%n Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n variables</source>
        <translation>
            <numerusform>%n Variable</numerusform>
            <numerusform>%n Variablen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n without a header</source>
        <translation>
            <numerusform>%n ohne Kopf</numerusform>
            <numerusform>%n ohne Kopf</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Looking at %n files...</source>
        <translation>
            <numerusform>%n Datei wird angesehen...</numerusform>
            <numerusform>%n Dateien werden angesehen...</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PictureCommands</name>
    <message>
        <source>Copy picture</source>
        <translation>Bild kopieren</translation>
    </message>
    <message>
        <source>Save picture...</source>
        <translation>Bild speichern...</translation>
    </message>
    <message>
        <source>Picture in pixels (*.png)</source>
        <translation>Pixelbild (*.png)</translation>
    </message>
    <message>
        <source>Picture in pixels, %1 times as fine (*.png)</source>
        <translation>Pixelbild, %1-mal so fein (*.png)</translation>
    </message>
    <message>
        <source>Drawing that can be scaled (*.svg)</source>
        <translation>Skalierbare Zeichnung (*.svg)</translation>
    </message>
    <message>
        <source>PDF document (*.pdf)</source>
        <translation>PDF-Dokument (*.pdf)</translation>
    </message>
    <message>
        <source>The picture can&apos;t be drawn.</source>
        <translation>Das Bild kann nicht gezeichnet werden.</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Failed to write &quot;%1&quot;: %2</source>
        <translation>&quot;%1&quot; konnte nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Saving the picture</source>
        <translation>Das Bild wird gespeichert</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Wird angehalten</translation>
    </message>
</context>
<context>
    <name>PictureFile</name>
    <message>
        <source>The picture can&apos;t be drawn.</source>
        <translation>Das Bild kann nicht gezeichnet werden.</translation>
    </message>
    <message>
        <source>The picture would be too large: %1 x %2 pixels</source>
        <translation>Das Bild wäre zu groß: %1 x %2 Pixel</translation>
    </message>
    <message>
        <source>The name must end in .png, .svg or .pdf.</source>
        <translation>Der Name muss auf .png, .svg oder .pdf enden.</translation>
    </message>
</context>
<context>
    <name>QuantityRows</name>
    <message>
        <source>Number concentration</source>
        <translation>Anzahlkonzentration</translation>
    </message>
    <message>
        <source>Diameter concentration</source>
        <translation>Durchmesserkonzentration</translation>
    </message>
    <message>
        <source>Surface concentration</source>
        <translation>Oberflächenkonzentration</translation>
    </message>
    <message>
        <source>Volume concentration</source>
        <translation>Volumenkonzentration</translation>
    </message>
    <message>
        <source>Mass concentration</source>
        <translation>Massenkonzentration</translation>
    </message>
    <message>
        <source>Concentration type:</source>
        <translation>Art der Konzentration:</translation>
    </message>
    <message>
        <source>Unit of mass concentrations</source>
        <translation>Einheit der Massenkonzentrationen</translation>
    </message>
    <message>
        <source>result in mg/cm³</source>
        <translation>Ergebnis in mg/cm³</translation>
    </message>
    <message>
        <source>result in µg/m³</source>
        <translation>Ergebnis in µg/m³</translation>
    </message>
    <message>
        <source>g/cm³</source>
        <translation>g/cm³</translation>
    </message>
    <message>
        <source>Material density:</source>
        <translation>Materialdichte:</translation>
    </message>
</context>
<context>
    <name>ReadProgress</name>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2 von %3)</translation>
    </message>
</context>
<context>
    <name>ReadProgressDialog</name>
    <message>
        <source>Reading data files</source>
        <translation>Datendateien werden gelesen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stopping after this file</source>
        <translation>Abbruch nach dieser Datei</translation>
    </message>
</context>
<context>
    <name>RecentFolders</name>
    <message>
        <source>until %1</source>
        <translation>bis %1</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>ab %1</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>old-style files</source>
        <translation>alte Dateien</translation>
    </message>
</context>
<context>
    <name>RecordForm</name>
    <message>
        <source>not saved</source>
        <translation>nicht gespeichert</translation>
    </message>
    <message>
        <source>Notes and flags</source>
        <translation>Hinweise und Meldungen</translation>
    </message>
    <message>
        <source>Date:</source>
        <translation>Datum:</translation>
    </message>
    <message>
        <source>Begin:</source>
        <translation>Beginn:</translation>
    </message>
    <message>
        <source>End:</source>
        <translation>Ende:</translation>
    </message>
    <message>
        <source>Mode:</source>
        <translation>Betriebsart:</translation>
    </message>
    <message>
        <source>Add comment</source>
        <translation>Kommentar hinzufügen</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>The comment could not be written; the log tells why. It is tried again with the next comment, and when the data or the program are closed.</source>
        <translation>Der Kommentar konnte nicht geschrieben werden; das Protokoll nennt den Grund. Beim nächsten Kommentar und beim Schließen der Daten oder des Programms wird es erneut versucht.</translation>
    </message>
</context>
<context>
    <name>RecordSteps</name>
    <message>
        <source>Next comment</source>
        <translation>Nächster Kommentar</translation>
    </message>
    <message>
        <source>Previous comment</source>
        <translation>Voriger Kommentar</translation>
    </message>
    <message>
        <source>Next flagged record</source>
        <translation>Nächster Datensatz mit Meldung</translation>
    </message>
    <message>
        <source>Previous flagged record</source>
        <translation>Voriger Datensatz mit Meldung</translation>
    </message>
    <message>
        <source>There is no later comment</source>
        <translation>Es gibt keinen späteren Kommentar</translation>
    </message>
    <message>
        <source>There is no earlier comment</source>
        <translation>Es gibt keinen früheren Kommentar</translation>
    </message>
    <message>
        <source>There is no later flagged record</source>
        <translation>Es gibt keinen späteren Datensatz mit Meldung</translation>
    </message>
    <message>
        <source>There is no earlier flagged record</source>
        <translation>Es gibt keinen früheren Datensatz mit Meldung</translation>
    </message>
</context>
<context>
    <name>RecordText</name>
    <message>
        <source>n/a</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>Measurement results are provisional</source>
        <translation>Die Messergebnisse sind vorläufig</translation>
    </message>
    <message>
        <source>Distribution estimates are provisional</source>
        <translation>Die Verteilungen sind vorläufig</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
</context>
<context>
    <name>RecordViews</name>
    <message>
        <source>Plot selected</source>
        <translation>Ausgewählte darstellen</translation>
    </message>
    <message numerus="yes">
        <source>Add %n plots to the browser?</source>
        <translation>
            <numerusform>%n Diagramm zu den Zeitreihen hinzufügen?</numerusform>
            <numerusform>%n Diagramme zu den Zeitreihen hinzufügen?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RecordViews::ChannelPlot</name>
    <message>
        <source>Raw current</source>
        <translation>Rohstrom</translation>
    </message>
    <message>
        <source>Current</source>
        <translation>Strom</translation>
    </message>
    <message>
        <source>Level of noise</source>
        <translation>Rauschpegel</translation>
    </message>
    <message>
        <source>Channel number</source>
        <translation>Kanalnummer</translation>
    </message>
    <message>
        <source>%1 in fA: %2</source>
        <translation>%1 in fA: %2</translation>
    </message>
    <message>
        <source>no values</source>
        <translation>keine Werte</translation>
    </message>
</context>
<context>
    <name>RecordViews::DiagnosticModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>RecordViews::DiagnosticView</name>
    <message>
        <source>Record variable list</source>
        <translation>Variablenliste</translation>
    </message>
    <message>
        <source>Filter by name</source>
        <translation>Nach Namen filtern</translation>
    </message>
    <message>
        <source>Variables whose name or unit holds every word. A word behind &quot;!&quot; is one that they must not hold.</source>
        <translation>Variablen, deren Name oder Einheit jedes Wort enthält. Ein Wort hinter &quot;!&quot; dürfen sie nicht enthalten.</translation>
    </message>
    <message>
        <source>Clear filter</source>
        <translation>Filter löschen</translation>
    </message>
    <message>
        <source>Plot selected parameters</source>
        <translation>Ausgewählte Parameter darstellen</translation>
    </message>
    <message>
        <source>Copy selected values to clipboard</source>
        <translation>Ausgewählte Werte in die Zwischenablage kopieren</translation>
    </message>
</context>
<context>
    <name>RecordViews::ElectrometersModel</name>
    <message>
        <source>Standard deviation of the current</source>
        <translation>Standardabweichung des Stroms</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>U (V)</source>
        <translation>U (V)</translation>
    </message>
    <message>
        <source>I raw (fA)</source>
        <translation>I roh (fA)</translation>
    </message>
    <message>
        <source>I (fA)</source>
        <translation>I (fA)</translation>
    </message>
</context>
<context>
    <name>RecordViews::ElectrometersPlot</name>
    <message>
        <source>Electrometer signal plot</source>
        <translation>Elektrometerdiagramm</translation>
    </message>
    <message>
        <source>Current (fA)</source>
        <translation>Strom (fA)</translation>
    </message>
    <message>
        <source>Use correction</source>
        <translation>Korrektur anwenden</translation>
    </message>
    <message>
        <source>Set coefficients...</source>
        <translation>Koeffizienten setzen...</translation>
    </message>
    <message>
        <source>Lock axes</source>
        <translation>Achsen festhalten</translation>
    </message>
    <message>
        <source>&lt;font color=&apos;darkred&apos;&gt;Correction not used! Vector size does not match.&lt;/font&gt;</source>
        <translation>&lt;font color=&apos;darkred&apos;&gt;Korrektur nicht angewendet! Die Länge des Vektors passt nicht.&lt;/font&gt;</translation>
    </message>
    <message>
        <source>&lt;b&gt;Corrected current&lt;/b&gt; (fA)</source>
        <translation>&lt;b&gt;Korrigierter Strom&lt;/b&gt; (fA)</translation>
    </message>
    <message>
        <source>Correction coefficients:</source>
        <translation>Korrekturkoeffizienten:</translation>
    </message>
    <message>
        <source>Correction coefficients</source>
        <translation>Korrekturkoeffizienten</translation>
    </message>
    <message>
        <source>&lt;b&gt;&quot;%1&quot; is not a number. Please fix!&lt;/b&gt; &lt;br&gt;%2</source>
        <translation>&lt;b&gt;&quot;%1&quot; ist keine Zahl. Bitte berichtigen!&lt;/b&gt; &lt;br&gt;%2</translation>
    </message>
</context>
<context>
    <name>RecordViews::ElectrometersView</name>
    <message>
        <source>Electrometer signals</source>
        <translation>Elektrometersignale</translation>
    </message>
    <message>
        <source>Plot selected electrometers</source>
        <translation>Ausgewählte Elektrometer darstellen</translation>
    </message>
    <message>
        <source>Copy all currents to clipboard</source>
        <translation>Alle Ströme in die Zwischenablage kopieren</translation>
    </message>
    <message>
        <source>Copy selected rows</source>
        <translation>Ausgewählte Zeilen kopieren</translation>
    </message>
</context>
<context>
    <name>RecordViews::RecordPlot</name>
    <message>
        <source>No record is selected</source>
        <translation>Kein Datensatz ist gewählt</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>RecordViews::ReportView</name>
    <message>
        <source>Inversion report</source>
        <translation>Inversionsbericht</translation>
    </message>
    <message>
        <source>Click to analyze selected record</source>
        <translation>Klicken, um den gewählten Datensatz zu untersuchen</translation>
    </message>
    <message>
        <source>No inverters are loaded.</source>
        <translation>Keine Inverter sind geladen.</translation>
    </message>
    <message>
        <source>No record is selected.</source>
        <translation>Kein Datensatz ist gewählt.</translation>
    </message>
</context>
<context>
    <name>RecordViews::ResultPlot</name>
    <message>
        <source>Distribution plot: %1</source>
        <translation>Verteilungsdiagramm: %1</translation>
    </message>
    <message>
        <source>%1, held</source>
        <translation>%1, festgehalten</translation>
    </message>
    <message>
        <source>no values</source>
        <translation>keine Werte</translation>
    </message>
</context>
<context>
    <name>RecordViews::SpectraView</name>
    <message>
        <source>Spectra</source>
        <translation>Spektren</translation>
    </message>
    <message>
        <source>Distribution plot</source>
        <translation>Verteilungsdiagramm</translation>
    </message>
    <message>
        <source>Total concentrations and diameters</source>
        <translation>Gesamtkonzentrationen und Durchmesser</translation>
    </message>
    <message>
        <source>Copy to clipboard</source>
        <translation>In die Zwischenablage kopieren</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Lock axes</source>
        <translation>Achsen fest</translation>
    </message>
    <message>
        <source>Lock axes: they stay as they are when another record is shown</source>
        <translation>Achsen festhalten: Sie bleiben, wie sie sind, wenn ein anderer Datensatz gezeigt wird</translation>
    </message>
    <message>
        <source>Hold curves</source>
        <translation>Kurven festhalten</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>Halten</translation>
    </message>
    <message>
        <source>Hold curves: those of this record stay in grey when another one is shown</source>
        <translation>Kurven festhalten: Die dieses Datensatzes bleiben grau stehen, wenn ein anderer gezeigt wird</translation>
    </message>
    <message>
        <source>Fit axes</source>
        <translation>Achsen anpassen</translation>
    </message>
    <message>
        <source>Choose which spectra are shown</source>
        <translation>Gezeigte Spektren wählen</translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>Alle zeigen</translation>
    </message>
</context>
<context>
    <name>RecordViews::SpectraViewDialog</name>
    <message>
        <source>Distribution plot settings</source>
        <translation>Einstellungen des Verteilungsdiagramms</translation>
    </message>
    <message>
        <source>Distribution type:</source>
        <translation>Art der Verteilung:</translation>
    </message>
    <message>
        <source>Density distribution</source>
        <translation>Dichteverteilung</translation>
    </message>
    <message>
        <source>Fraction distribution</source>
        <translation>Fraktionsverteilung</translation>
    </message>
    <message>
        <source>Concentration type:</source>
        <translation>Art der Konzentration:</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Diameter</source>
        <translation>Durchmesser</translation>
    </message>
    <message>
        <source>Surface</source>
        <translation>Oberfläche</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Vertical scale:</source>
        <translation>Senkrechte Skala:</translation>
    </message>
    <message>
        <source>Linear</source>
        <translation>Linear</translation>
    </message>
    <message>
        <source>Logarithmic</source>
        <translation>Logarithmisch</translation>
    </message>
    <message>
        <source>Horizontal quantity:</source>
        <translation>Waagerechte Größe:</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Mobility</source>
        <translation>Mobilität</translation>
    </message>
    <message>
        <source>Layout:</source>
        <translation>Anordnung:</translation>
    </message>
    <message>
        <source>Single plot</source>
        <translation>Ein Diagramm</translation>
    </message>
    <message>
        <source>Separate plots for spectra</source>
        <translation>Ein Diagramm je Spektrum</translation>
    </message>
    <message>
        <source>Smoothing:</source>
        <translation>Glättung:</translation>
    </message>
    <message>
        <source>Smoothing</source>
        <translation>Glättung</translation>
    </message>
</context>
<context>
    <name>RecordViews::VarGridView</name>
    <message>
        <source>Record variables</source>
        <translation>Variablen</translation>
    </message>
    <message>
        <source>There are no layouts. They are read from the file &quot;var_grid_layouts.yaml&quot; in the folder of the data, or beside the program.</source>
        <translation>Es gibt keine Anordnungen. Sie werden aus der Datei &quot;var_grid_layouts.yaml&quot; im Ordner der Daten oder neben dem Programm gelesen.</translation>
    </message>
    <message>
        <source>Layout</source>
        <translation>Anordnung</translation>
    </message>
    <message>
        <source>Plot variables of this cell</source>
        <translation>Variablen dieser Zelle darstellen</translation>
    </message>
</context>
<context>
    <name>ReinversionProgress</name>
    <message>
        <source>0000 records/s</source>
        <translation>0000 Datensätze/s</translation>
    </message>
    <message>
        <source>Data inversion rate in records per second
(optionally also inversion queue length)</source>
        <translation>Inversionsrate in Datensätzen je Sekunde
(gegebenenfalls auch Länge der Warteschlange)</translation>
    </message>
    <message>
        <source>Progress of the reinversion</source>
        <translation>Fortschritt der Neuinversion</translation>
    </message>
    <message>
        <source>%1 records/s</source>
        <translation>%1 Datensätze/s</translation>
    </message>
    <message>
        <source>%1 records/s (%2 in queue)</source>
        <translation>%1 Datensätze/s (%2 warten)</translation>
    </message>
</context>
<context>
    <name>SaveWarnings</name>
    <message>
        <source>Folder does not exist. It will be created.</source>
        <translation>Den Ordner gibt es nicht. Er wird angelegt.</translation>
    </message>
    <message>
        <source>Folder is not empty! Files may become corrupted.</source>
        <translation>Der Ordner ist nicht leer! Dateien können beschädigt werden.</translation>
    </message>
    <message>
        <source>A reinversion is running: spectra that it hasn&apos;t made yet will be missing.</source>
        <translation>Eine Neuinversion läuft: Spektren, die noch ausstehen, werden fehlen.</translation>
    </message>
    <message numerus="yes">
        <source>%n day files of the variant &quot;%1&quot; are there already: rows are added to them.</source>
        <translation>
            <numerusform>%n Tagesdatei der Variante &quot;%1&quot; gibt es schon: Zeilen werden angehängt.</numerusform>
            <numerusform>%n Tagesdateien der Variante &quot;%1&quot; gibt es schon: Zeilen werden angehängt.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ScatterPlot</name>
    <message>
        <source>Reverse current root mean square error</source>
        <translation>RMS-Fehler der Rückrechnung</translation>
    </message>
    <message>
        <source>Reverse current mean abs error</source>
        <translation>Mittlerer Fehlerbetrag der Rückrechnung</translation>
    </message>
    <message>
        <source>Total current error</source>
        <translation>Fehler des Gesamtstroms</translation>
    </message>
    <message>
        <source>Total concentration
(%1/cm³)</source>
        <translation>Gesamtkonzentration
(%1/cm³)</translation>
    </message>
    <message>
        <source>%1 - %2 %3
(%4/cm³)</source>
        <translation>%1 - %2 %3
(%4/cm³)</translation>
    </message>
    <message>
        <source>Elm. %1 noise</source>
        <translation>Rauschen Elm. %1</translation>
    </message>
    <message>
        <source>Elm. %1</source>
        <translation>Elm. %1</translation>
    </message>
</context>
<context>
    <name>SpectraChoice</name>
    <message>
        <source>None selected</source>
        <translation>Keine ausgewählt</translation>
    </message>
    <message>
        <source>no spectra</source>
        <translation>keine Spektren</translation>
    </message>
    <message>
        <source>%2: %1</source>
        <translation>%2: %1</translation>
    </message>
</context>
<context>
    <name>SpectrumFieldForm</name>
    <message>
        <source>Density at each point</source>
        <translation>Dichte an jedem Punkt</translation>
    </message>
    <message>
        <source>Fractions between points</source>
        <translation>Fraktionen zwischen den Punkten</translation>
    </message>
    <message>
        <source>Diameter (nm)</source>
        <translation>Durchmesser (nm)</translation>
    </message>
    <message>
        <source>Mobility (cm²/V/s)</source>
        <translation>Mobilität (cm²/V/s)</translation>
    </message>
    <message>
        <source>Spectra:</source>
        <translation>Spektren:</translation>
    </message>
    <message>
        <source>Values:</source>
        <translation>Werte:</translation>
    </message>
    <message>
        <source>Scale:</source>
        <translation>Skala:</translation>
    </message>
    <message>
        <source>Uncertainty behind each value</source>
        <translation>Unsicherheit hinter jedem Wert</translation>
    </message>
    <message>
        <source>Spectra</source>
        <translation>Spektren</translation>
    </message>
    <message>
        <source>Spectra: %1</source>
        <translation>Spektren: %1</translation>
    </message>
</context>
<context>
    <name>StatusText</name>
    <message>
        <source>[warn]</source>
        <translation>[Warnung]</translation>
    </message>
    <message>
        <source>[fail]</source>
        <translation>[Fehler]</translation>
    </message>
    <message>
        <source>1 failure</source>
        <translation>1 Fehler</translation>
    </message>
    <message>
        <source>%1 failures</source>
        <translation>%1 Fehler</translation>
    </message>
    <message>
        <source>1 warning</source>
        <translation>1 Warnung</translation>
    </message>
    <message>
        <source>%1 warnings</source>
        <translation>%1 Warnungen</translation>
    </message>
    <message>
        <source>1 notice</source>
        <translation>1 Hinweis</translation>
    </message>
    <message>
        <source>%1 notices</source>
        <translation>%1 Hinweise</translation>
    </message>
    <message>
        <source>ok</source>
        <translation>in Ordnung</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>0 minutes ago</source>
        <translation>vor 0 Minuten</translation>
    </message>
    <message>
        <source>1 minute ago</source>
        <translation>vor 1 Minute</translation>
    </message>
    <message>
        <source>%1 minutes ago</source>
        <translation>vor %1 Minuten</translation>
    </message>
    <message>
        <source>%1:%2 hours ago</source>
        <translation>vor %1:%2 Stunden</translation>
    </message>
    <message numerus="yes">
        <source>%n records</source>
        <translation>
            <numerusform>%n Datens.</numerusform>
            <numerusform>%n Datens.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tsb::ArrangingCommands</name>
    <message>
        <source>Move plot up</source>
        <translation>Diagramm nach oben schieben</translation>
    </message>
    <message>
        <source>Move plot down</source>
        <translation>Diagramm nach unten schieben</translation>
    </message>
    <message>
        <source>Make plot higher</source>
        <translation>Diagramm höher machen</translation>
    </message>
    <message>
        <source>Make plot lower</source>
        <translation>Diagramm niedriger machen</translation>
    </message>
    <message>
        <source>The plot that has the keyboard focus</source>
        <translation>Das Diagramm, das den Tastaturfokus hat</translation>
    </message>
    <message>
        <source>Arrange plot</source>
        <translation>Diagramm anordnen</translation>
    </message>
</context>
<context>
    <name>Tsb::ColorLimitBox</name>
    <message>
        <source>Least value of the color scale</source>
        <translation>Kleinster Wert der Farbskala</translation>
    </message>
    <message>
        <source>Greatest value of the color scale</source>
        <translation>Größter Wert der Farbskala</translation>
    </message>
</context>
<context>
    <name>Tsb::ColormapMenu</name>
    <message>
        <source>Light background</source>
        <translation>Heller Hintergrund</translation>
    </message>
    <message>
        <source>Dark background</source>
        <translation>Dunkler Hintergrund</translation>
    </message>
</context>
<context>
    <name>Tsb::GoToTimeDialog</name>
    <message>
        <source>Go to time</source>
        <translation>Gehe zu Zeitpunkt</translation>
    </message>
    <message>
        <source>YYYY-MM-DD or YYYY-MM-DD HH:MM:SS, in the local time of the axis</source>
        <translation>JJJJ-MM-TT oder JJJJ-MM-TT HH:MM:SS, in der Ortszeit der Achse</translation>
    </message>
    <message>
        <source>As 2024-05-31 or 2024-05-31 12:30:00, in local time (UTC%1)</source>
        <translation>Wie 2024-05-31 oder 2024-05-31 12:30:00, in Ortszeit (UTC%1)</translation>
    </message>
    <message>
        <source>&amp;Time:</source>
        <translation>&amp;Zeit:</translation>
    </message>
    <message>
        <source>“%1” is no time.
It is to read YYYY-MM-DD or YYYY-MM-DD HH:MM:SS.</source>
        <translation>„%1“ ist keine Zeit.
Sie lautet JJJJ-MM-TT oder JJJJ-MM-TT HH:MM:SS.</translation>
    </message>
</context>
<context>
    <name>Tsb::MeasuringCommands</name>
    <message>
        <source>Set cursor &amp;%1</source>
        <translation>Messlinie &amp;%1 setzen</translation>
    </message>
    <message>
        <source>&amp;Drop cursors</source>
        <translation>Messlinien &amp;entfernen</translation>
    </message>
    <message>
        <source>&amp;Zoom to span between cursors</source>
        <translation>Auf Zeitraum zwischen den Messlinien &amp;vergrößern</translation>
    </message>
    <message>
        <source>E&amp;xport span between cursors...</source>
        <translation>Zeitraum zwischen den Messlinien e&amp;xportieren...</translation>
    </message>
    <message>
        <source>&amp;Zoom to span</source>
        <translation>Auf Zeitraum &amp;vergrößern</translation>
    </message>
    <message>
        <source>Set &amp;cursors at its ends</source>
        <translation>&amp;Messlinien an seine Enden setzen</translation>
    </message>
    <message>
        <source>&amp;Export span...</source>
        <translation>Zeitraum &amp;exportieren...</translation>
    </message>
</context>
<context>
    <name>Tsb::OpmodePlot</name>
    <message>
        <source>flag is raised</source>
        <translation>Meldung liegt vor</translation>
    </message>
    <message>
        <source>flag isn&apos;t raised</source>
        <translation>Meldung liegt nicht vor</translation>
    </message>
    <message>
        <source>unknown mode</source>
        <translation>unbekannte Betriebsart</translation>
    </message>
    <message>
        <source>%1, provisional</source>
        <translation>%1, vorläufig</translation>
    </message>
</context>
<context>
    <name>Tsb::OpmodeView</name>
    <message>
        <source>Opmode</source>
        <translation>Betriebsart</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Meldung: %1</translation>
    </message>
</context>
<context>
    <name>Tsb::Plot</name>
    <message>
        <source>No record is selected</source>
        <translation>Kein Datensatz ist gewählt</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>Tsb::PlotAdder</name>
    <message>
        <source>Spectrogram</source>
        <translation>Spektrogramm</translation>
    </message>
    <message>
        <source>Fraction concentration</source>
        <translation>Fraktionskonzentration</translation>
    </message>
    <message>
        <source>Electrometer current</source>
        <translation>Elektrometerstrom</translation>
    </message>
    <message>
        <source>Variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <source>Inversion parameter</source>
        <translation>Inversionsparameter</translation>
    </message>
    <message>
        <source>Operating mode</source>
        <translation>Betriebsart</translation>
    </message>
    <message>
        <source>Add plot</source>
        <translation>Diagramm hinzufügen</translation>
    </message>
</context>
<context>
    <name>Tsb::ScatterPlot</name>
    <message>
        <source>No spectra</source>
        <translation>Keine Spektren</translation>
    </message>
    <message>
        <source>no value</source>
        <translation>kein Wert</translation>
    </message>
    <message>
        <source>%1, raw</source>
        <translation>%1, roh</translation>
    </message>
</context>
<context>
    <name>Tsb::ScatterPlotView</name>
    <message>
        <source>Fit vertical scale</source>
        <translation>Senkrechte Skala anpassen</translation>
    </message>
    <message>
        <source>Show selected value</source>
        <translation>Gewählten Wert zeigen</translation>
    </message>
    <message>
        <source>Show value label for selected record</source>
        <translation>Wert des gewählten Datensatzes anschreiben</translation>
    </message>
    <message>
        <source>Show properties</source>
        <translation>Eigenschaften zeigen</translation>
    </message>
    <message>
        <source>Show raw currents</source>
        <translation>Rohströme zeigen</translation>
    </message>
    <message>
        <source>Show processed currents</source>
        <translation>Verarbeitete Ströme zeigen</translation>
    </message>
    <message>
        <source>Show noise level</source>
        <translation>Rauschpegel zeigen</translation>
    </message>
    <message>
        <source>off scale: %1</source>
        <translation>außerhalb der Skala: %1</translation>
    </message>
</context>
<context>
    <name>Tsb::ScatterPropertiesRow</name>
    <message>
        <source>Electrometer</source>
        <translation>Elektrometer</translation>
    </message>
    <message>
        <source>Record variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <source>Concentration</source>
        <translation>Konzentration</translation>
    </message>
    <message>
        <source>Inversion parameter</source>
        <translation>Inversionsparameter</translation>
    </message>
    <message>
        <source>Show or hide the choices for this plot</source>
        <translation>Auswahl für dieses Diagramm zeigen oder verbergen</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Spectra</source>
        <translation>Spektren</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Diameter</source>
        <translation>Durchmesser</translation>
    </message>
    <message>
        <source>Surface</source>
        <translation>Oberfläche</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Gesamt</translation>
    </message>
    <message>
        <source>Mobility</source>
        <translation>Mobilität</translation>
    </message>
    <message>
        <source>Mobility range (cm²/V/s)</source>
        <translation>Mobilitätsbereich (cm²/V/s)</translation>
    </message>
    <message>
        <source>Diameter range (nm)</source>
        <translation>Durchmesserbereich (nm)</translation>
    </message>
    <message>
        <source>%1: no bound on this side</source>
        <translation>%1: keine Grenze auf dieser Seite</translation>
    </message>
    <message>
        <source>Concentration type</source>
        <translation>Art der Konzentration</translation>
    </message>
    <message>
        <source>Quantity of the range</source>
        <translation>Größe des Bereichs</translation>
    </message>
    <message>
        <source>Smaller limit</source>
        <translation>Untere Grenze</translation>
    </message>
    <message>
        <source>Larger limit</source>
        <translation>Obere Grenze</translation>
    </message>
    <message>
        <source>Choose the spectra</source>
        <translation>Spektren wählen</translation>
    </message>
</context>
<context>
    <name>Tsb::SpectraSelectionWidget</name>
    <message>
        <source>Spectra</source>
        <translation>Spektren</translation>
    </message>
</context>
<context>
    <name>Tsb::SpectrogramControls</name>
    <message>
        <source>Smoothing:</source>
        <translation>Glättung:</translation>
    </message>
    <message>
        <source>Spectrogram</source>
        <translation>Spektrogramm</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Fit color map</source>
        <translation>Farbskala anpassen</translation>
    </message>
    <message>
        <source>Fill gaps</source>
        <translation>Lücken füllen</translation>
    </message>
    <message>
        <source>Fill gaps between records</source>
        <translation>Lücken zwischen Datensätzen füllen</translation>
    </message>
    <message>
        <source>Smoothing</source>
        <translation>Glättung</translation>
    </message>
    <message>
        <source>Enable spectrum smoothing</source>
        <translation>Glättung der Spektren einschalten</translation>
    </message>
    <message>
        <source>Color map</source>
        <translation>Farbskala</translation>
    </message>
    <message>
        <source>Choose the spectra</source>
        <translation>Spektren wählen</translation>
    </message>
    <message>
        <source>Mark zeros</source>
        <translation>Nullen kennzeichnen</translation>
    </message>
    <message>
        <source>Show values of 0 and below as stripes</source>
        <translation>Werte von 0 und darunter als Streifen zeigen</translation>
    </message>
    <message>
        <source>Lock color limits</source>
        <translation>Farbgrenzen festhalten</translation>
    </message>
    <message>
        <source>The same colors for the same values in all spectrograms whose limits are locked</source>
        <translation>Gleiche Farben für gleiche Werte in allen Spektrogrammen mit festgehaltenen Grenzen</translation>
    </message>
</context>
<context>
    <name>Tsb::SpectrogramPlot</name>
    <message>
        <source>no spectrum</source>
        <translation>kein Spektrum</translation>
    </message>
    <message>
        <source>total %1 %2, highest at %3 %4</source>
        <translation>gesamt %1 %2, am höchsten bei %3 %4</translation>
    </message>
</context>
<context>
    <name>Tsb::SpectrogramView</name>
    <message>
        <source>Distribution: %1</source>
        <translation>Verteilung: %1</translation>
    </message>
    <message>
        <source>&lt;br&gt;Inverter: %2</source>
        <translation>&lt;br&gt;Inverter: %2</translation>
    </message>
    <message>
        <source>No spectra</source>
        <translation>Keine Spektren</translation>
    </message>
    <message>
        <source>Invalid spectrum</source>
        <translation>Ungültiges Spektrum</translation>
    </message>
    <message>
        <source>Spectrogram: %1</source>
        <translation>Spektrogramm: %1</translation>
    </message>
</context>
<context>
    <name>Tsb::TimeSeriesBrowser</name>
    <message>
        <source>Autoscale all plots</source>
        <translation>Alle Diagramme anpassen</translation>
    </message>
    <message>
        <source>Close all plots</source>
        <translation>Alle Diagramme schließen</translation>
    </message>
</context>
<context>
    <name>Tsb::TimeView</name>
    <message>
        <source>Time zone: UTC%1</source>
        <translation>Zeitzone: UTC%1</translation>
    </message>
    <message>
        <source>Time axis</source>
        <translation>Zeitachse</translation>
    </message>
    <message>
        <source>Drag to pan and zoom, with Shift to mark a time span. The keys 1 and 2 set measuring cursors.</source>
        <translation>Ziehen verschiebt und vergrößert, mit Umschalt markiert es einen Zeitraum. Die Tasten 1 und 2 setzen Messlinien.</translation>
    </message>
</context>
<context>
    <name>Tsb::VerticalScaleWidget</name>
    <message>
        <source>Click and drag vertically to pan, horizontally to zoom. Double click to autoscale.</source>
        <translation>Senkrecht ziehen verschiebt, waagerecht ziehen vergrößert. Doppelklick passt an.</translation>
    </message>
    <message>
        <source>Scale: %1</source>
        <translation>Skala: %1</translation>
    </message>
</context>
<context>
    <name>Tsb::View</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close this and below</source>
        <translation>Dieses und alle darunter schließen</translation>
    </message>
    <message>
        <source>Keep this plot</source>
        <translation>Dieses Diagramm behalten</translation>
    </message>
</context>
<context>
    <name>Tsb::ZeroSwatch</name>
    <message>
        <source>Stripes mark values of 0 and below</source>
        <translation>Streifen kennzeichnen Werte von 0 und darunter</translation>
    </message>
</context>
<context>
    <name>UserGuide</name>
    <message>
        <source>&amp;User guide</source>
        <translation>&amp;Handbuch</translation>
    </message>
    <message>
        <source>User guide</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>The user guide isn&apos;t installed.</source>
        <translation>Das Handbuch ist nicht installiert.</translation>
    </message>
</context>
<context>
    <name>VariableFieldForm</name>
    <message>
        <source>Filter by name</source>
        <translation>Nach Namen filtern</translation>
    </message>
    <message>
        <source>Record variables</source>
        <translation>Variablen</translation>
    </message>
    <message>
        <source>Variables</source>
        <translation>Variablen</translation>
    </message>
    <message>
        <source>Variables: %1</source>
        <translation>Variablen: %1</translation>
    </message>
</context>
<context>
    <name>WindowKeys</name>
    <message>
        <source>To the filter line of the dock at hand</source>
        <translation>Zur Filterzeile des aktuellen Docks</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>command and its key</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Go to filter</source>
        <translation>Zum Filter</translation>
    </message>
    <message>
        <source>Keys and gestures</source>
        <translation>Tasten und Gesten</translation>
    </message>
</context>
</TS>
