<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CommandDock</name>
    <message>
        <source>Command line</source>
        <translation>Befehlszeile</translation>
    </message>
    <message>
        <source>Commands and replies</source>
        <translation>Befehle und Antworten</translation>
    </message>
    <message>
        <source>kestrel2 get version system</source>
        <translation>kestrel2 get version system</translation>
    </message>
    <message>
        <source>Command for the controller</source>
        <translation>Befehl an den Controller</translation>
    </message>
    <message>
        <source>A whole command line; arrow keys walk through earlier ones</source>
        <translation>Eine ganze Befehlszeile; die Pfeiltasten holen frühere zurück</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
</context>
<context>
    <name>ConnectDialog</name>
    <message>
        <source>Connect to a controller</source>
        <translation>Mit einem Controller verbinden</translation>
    </message>
    <message>
        <source>&amp;Host:</source>
        <translation>&amp;Rechner:</translation>
    </message>
    <message>
        <source>Name or address of the controller</source>
        <translation>Name oder Adresse des Controllers</translation>
    </message>
    <message>
        <source>Name or address, such as 192.168.1.5</source>
        <translation>Name oder Adresse, etwa 192.168.1.5</translation>
    </message>
    <message>
        <source>Command &amp;port:</source>
        <translation>Befehls&amp;port:</translation>
    </message>
    <message>
        <source>Port of the controller&apos;s command channel</source>
        <translation>Port des Befehlskanals am Controller</translation>
    </message>
    <message>
        <source>&amp;Data port:</source>
        <translation>&amp;Datenport:</translation>
    </message>
    <message>
        <source>Own port for the data lines</source>
        <translation>Eigener Port für die Datenzeilen</translation>
    </message>
    <message>
        <source>The port of this computer that the controller sends its data lines to</source>
        <translation>Der Port dieses Rechners, an den der Controller seine Datenzeilen sendet</translation>
    </message>
    <message>
        <source>any free port</source>
        <translation>beliebiger freier Port</translation>
    </message>
    <message>
        <source>This is not the name or address of a host.</source>
        <translation>Das ist weder Name noch Adresse eines Rechners.</translation>
    </message>
</context>
<context>
    <name>LogDock</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Lines with this text</source>
        <translation>Zeilen mit diesem Text</translation>
    </message>
    <message>
        <source>Filter of the log</source>
        <translation>Filter des Protokolls</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the selected lines, or all shown ones</source>
        <translation>Die ausgewählten oder alle gezeigten Zeilen kopieren</translation>
    </message>
    <message>
        <source>Save…</source>
        <translation>Speichern …</translation>
    </message>
    <message>
        <source>Write the whole log to a file</source>
        <translation>Das ganze Protokoll in eine Datei schreiben</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Remove all lines</source>
        <translation>Alle Zeilen entfernen</translation>
    </message>
    <message>
        <source>Log lines</source>
        <translation>Protokollzeilen</translation>
    </message>
    <message>
        <source>Level of the lines that are shown</source>
        <translation>Stufe der gezeigten Zeilen</translation>
    </message>
    <message>
        <source>Show only lines of this level</source>
        <translation>Nur Zeilen dieser Stufe zeigen</translation>
    </message>
    <message>
        <source>Source of the lines that are shown</source>
        <translation>Quelle der gezeigten Zeilen</translation>
    </message>
    <message>
        <source>Show only lines from this source</source>
        <translation>Nur Zeilen aus dieser Quelle zeigen</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>From now on write all that is sent to the controller, and its answers</source>
        <translation>Ab jetzt alles schreiben, was an den Controller gesandt wird, und seine Antworten</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Kestrel Workbench</source>
        <translation>Kestrel Workbench</translation>
    </message>
    <message>
        <source>Controller:</source>
        <translation>Controller:</translation>
    </message>
    <message>
        <source>Controller</source>
        <translation>Controller</translation>
    </message>
    <message>
        <source>Versions:</source>
        <translation>Versionen:</translation>
    </message>
    <message>
        <source>Versions</source>
        <translation>Versionen</translation>
    </message>
    <message>
        <source>Data lines:</source>
        <translation>Datenzeilen:</translation>
    </message>
    <message>
        <source>Data lines</source>
        <translation>Datenzeilen</translation>
    </message>
    <message>
        <source>Recording:</source>
        <translation>Aufzeichnung:</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufzeichnung</translation>
    </message>
    <message>
        <source>Modules:</source>
        <translation>Module:</translation>
    </message>
    <message>
        <source>Modules</source>
        <translation>Module</translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>&amp;Connect…</source>
        <translation>&amp;Verbinden …</translation>
    </message>
    <message>
        <source>Connect to a controller</source>
        <translation>Mit einem Controller verbinden</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Trennen</translation>
    </message>
    <message>
        <source>End the connection to the controller</source>
        <translation>Die Verbindung zum Controller beenden</translation>
    </message>
    <message>
        <source>&amp;Start measurement</source>
        <translation>Messung &amp;starten</translation>
    </message>
    <message>
        <source>Let the controller measure</source>
        <translation>Den Controller messen lassen</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <source>S&amp;top measurement</source>
        <translation>Messung s&amp;toppen</translation>
    </message>
    <message>
        <source>Stop the measurement</source>
        <translation>Die Messung beenden</translation>
    </message>
    <message>
        <source>Shift+F5</source>
        <translation>Shift+F5</translation>
    </message>
    <message>
        <source>&amp;Record…</source>
        <translation>&amp;Aufzeichnen …</translation>
    </message>
    <message>
        <source>Record the data lines to a file</source>
        <translation>Die Datenzeilen in eine Datei aufzeichnen</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>Stop r&amp;ecording</source>
        <translation>Aufzeichnung &amp;stoppen</translation>
    </message>
    <message>
        <source>End the recording</source>
        <translation>Die Aufzeichnung beenden</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>End the program</source>
        <translation>Das Programm beenden</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>&amp;Modules…</source>
        <translation>&amp;Module …</translation>
    </message>
    <message>
        <source>List the modules that were found</source>
        <translation>Die gefundenen Module auflisten</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>&amp;Über Kestrel Workbench</translation>
    </message>
    <message>
        <source>About this program</source>
        <translation>Über dieses Programm</translation>
    </message>
    <message>
        <source>Data port:</source>
        <translation>Datenport:</translation>
    </message>
    <message>
        <source>Data port</source>
        <translation>Datenport</translation>
    </message>
    <message>
        <source>&amp;User guide</source>
        <translation>&amp;Benutzerhandbuch</translation>
    </message>
    <message>
        <source>Show the user guide</source>
        <translation>Das Benutzerhandbuch zeigen</translation>
    </message>
    <message>
        <source>Try the &amp;simulator</source>
        <translation>&amp;Simulator ausprobieren</translation>
    </message>
    <message>
        <source>Start a simulated controller on this computer and connect to it</source>
        <translation>Einen simulierten Controller auf diesem Rechner starten und sich mit ihm verbinden</translation>
    </message>
    <message>
        <source>&amp;Send to…</source>
        <translation>&amp;Senden an …</translation>
    </message>
    <message>
        <source>Send tools, references and results to other programs</source>
        <translation>Werkzeuge, Referenzen und Ergebnisse an andere Programme senden</translation>
    </message>
</context>
<context>
    <name>ModuleListDialog</name>
    <message>
        <source>Modules</source>
        <translation>Module</translation>
    </message>
    <message>
        <source>Modules that were found</source>
        <translation>Gefundene Module</translation>
    </message>
    <message>
        <source>Module</source>
        <translation>Modul</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>No module was found.</source>
        <translation>Es wurde kein Modul gefunden.</translation>
    </message>
</context>
<context>
    <name>PlotDock</name>
    <message>
        <source>Time plot</source>
        <translation>Zeitverlauf</translation>
    </message>
    <message>
        <source>Tool that is plotted</source>
        <translation>Werkzeug, das gezeichnet wird</translation>
    </message>
    <message>
        <source>The tool whose tip is plotted</source>
        <translation>Das Werkzeug, dessen Spitze gezeichnet wird</translation>
    </message>
    <message>
        <source>Time that is plotted</source>
        <translation>Zeit, die gezeichnet wird</translation>
    </message>
    <message>
        <source>How far the plot goes back; mean and standard deviations are those of this time</source>
        <translation>Wie weit der Verlauf zurückreicht; Mittelwert und Standardabweichungen gelten für diese Zeit</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Let the plot stand still; what is measured meanwhile is kept</source>
        <translation>Den Verlauf anhalten; was inzwischen gemessen wird, bleibt erhalten</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom in, and pause; or draw a rectangle with the mouse</source>
        <translation>Vergrößern und anhalten; oder mit der Maus ein Rechteck aufziehen</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>Show the whole time again</source>
        <translation>Wieder die ganze Zeit zeigen</translation>
    </message>
    <message>
        <source>PNG…</source>
        <translation>PNG …</translation>
    </message>
    <message>
        <source>Save the plot as a picture</source>
        <translation>Den Verlauf als Bild speichern</translation>
    </message>
    <message>
        <source>CSV…</source>
        <translation>CSV …</translation>
    </message>
    <message>
        <source>Save the positions of the plotted time as a table</source>
        <translation>Die Positionen der gezeichneten Zeit als Tabelle speichern</translation>
    </message>
    <message>
        <source>What the plot shows</source>
        <translation>Was der Verlauf zeigt</translation>
    </message>
</context>
<context>
    <name>ReadoutDock</name>
    <message>
        <source>Read-out</source>
        <translation>Großanzeige</translation>
    </message>
    <message>
        <source>Tool that is read out</source>
        <translation>Werkzeug, das angezeigt wird</translation>
    </message>
    <message>
        <source>The tool: choose it here, or with the keys 1 to 9</source>
        <translation>Das Werkzeug: hier wählen, oder mit den Tasten 1 bis 9</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>Halten</translation>
    </message>
    <message>
        <source>Keep the figures as they are (key F)</source>
        <translation>Die Werte festhalten, wie sie sind (Taste F)</translation>
    </message>
    <message>
        <source>Angles</source>
        <translation>Winkel</translation>
    </message>
    <message>
        <source>Show the orientation too (key A)</source>
        <translation>Auch die Orientierung zeigen (Taste A)</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the figures for a table (Ctrl+C)</source>
        <translation>Die Werte für eine Tabelle kopieren (Strg+C)</translation>
    </message>
    <message>
        <source>Position of the tool</source>
        <translation>Position des Werkzeugs</translation>
    </message>
</context>
<context>
    <name>SendDialog</name>
    <message>
        <source>Send data to other programs</source>
        <translation>Daten an andere Programme senden</translation>
    </message>
    <message>
        <source>Where data go</source>
        <translation>Wohin Daten gehen</translation>
    </message>
    <message>
        <source>Where to</source>
        <translation>Wohin</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Frames sent</source>
        <translation>Frames gesendet</translation>
    </message>
    <message>
        <source>Frames dropped</source>
        <translation>Frames verworfen</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>Data go nowhere yet.</source>
        <translation>Noch gehen Daten nirgendwohin.</translation>
    </message>
    <message>
        <source>&amp;To:</source>
        <translation>&amp;An:</translation>
    </message>
    <message>
        <source>URL of another program</source>
        <translation>URL eines anderen Programms</translation>
    </message>
    <message>
        <source>udp://HOST, mqtt://HOST/PREFIX, mqtts://HOST/PREFIX or igtl://</source>
        <translation>udp://HOST, mqtt://HOST/PREFIX, mqtts://HOST/PREFIX oder igtl://</translation>
    </message>
    <message>
        <source>Tr&amp;y</source>
        <translation>&amp;Probieren</translation>
    </message>
    <message>
        <source>Find out whether somebody takes data there</source>
        <translation>Herausfinden, ob dort jemand Daten annimmt</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Send data there, now and after the next start</source>
        <translation>Daten dorthin senden, jetzt und nach dem nächsten Start</translation>
    </message>
    <message>
        <source>What has become of it</source>
        <translation>Was daraus geworden ist</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Send no more data to the selected place, and forget it</source>
        <translation>Keine Daten mehr an die gewählte Stelle senden und sie vergessen</translation>
    </message>
    <message>
        <source>A recording is played: neither its frames nor what modules make of them are sent. Connections stay up.</source>
        <translation>Eine Aufzeichnung wird wiedergegeben: Weder ihre Frames noch was Module daraus machen wird gesendet. Verbindungen bleiben bestehen.</translation>
    </message>
</context>
<context>
    <name>workbench::Banner</name>
    <message>
        <source>Dismiss</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Take this line away</source>
        <translation>Diese Zeile entfernen</translation>
    </message>
    <message>
        <source>Dismiss: %1</source>
        <translation>Verwerfen: %1</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Notices</source>
        <translation>Hinweise</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
</context>
<context>
    <name>workbench::ChannelMaker</name>
    <message>
        <source>%1 needs the packages kestrel-workbench-outlets and %2: %3</source>
        <translation>%1 braucht die Pakete kestrel-workbench-outlets und %2: %3</translation>
    </message>
    <message>
        <source>%1 is not there</source>
        <translation>%1 ist nicht da</translation>
    </message>
    <message>
        <source>%1 is of version %2</source>
        <translation>%1 ist von Version %2</translation>
    </message>
    <message>
        <source>needs the packages kestrel-workbench-outlets and %1</source>
        <translation>braucht die Pakete kestrel-workbench-outlets und %1</translation>
    </message>
    <message>
        <source>nobody has wanted it yet</source>
        <translation>noch niemand hat es gebraucht</translation>
    </message>
</context>
<context>
    <name>workbench::ChannelResult</name>
    <message>
        <source>success</source>
        <translation>erfolgreich</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
    <message>
        <source>no reply in time</source>
        <translation>keine rechtzeitige Antwort</translation>
    </message>
    <message>
        <source>malformed reply</source>
        <translation>fehlerhafte Antwort</translation>
    </message>
    <message>
        <source>reply too long</source>
        <translation>Antwort zu lang</translation>
    </message>
    <message>
        <source>not a command line</source>
        <translation>keine Befehlszeile</translation>
    </message>
    <message>
        <source>bad argument</source>
        <translation>unzulässiges Argument</translation>
    </message>
    <message>
        <source>too many commands under way</source>
        <translation>zu viele Befehle unterwegs</translation>
    </message>
    <message>
        <source>called from a thread other than the GUI thread</source>
        <translation>aus einem anderen Thread als dem der Oberfläche aufgerufen</translation>
    </message>
    <message>
        <source>unknown result</source>
        <translation>unbekanntes Ergebnis</translation>
    </message>
</context>
<context>
    <name>workbench::CommandChannel</name>
    <message>
        <source>the controller closed the connection</source>
        <translation>der Controller hat die Verbindung beendet</translation>
    </message>
    <message>
        <source>no answer to the connection request</source>
        <translation>keine Antwort auf die Verbindungsanfrage</translation>
    </message>
    <message>
        <source>no reply within %1 s</source>
        <translation>keine Antwort innerhalb von %1 s</translation>
    </message>
    <message>
        <source>the controller sent text that no command asked for</source>
        <translation>der Controller sandte Text, nach dem kein Befehl gefragt hat</translation>
    </message>
    <message>
        <source>the controller sent a reply without an end</source>
        <translation>der Controller sandte eine Antwort ohne Ende</translation>
    </message>
    <message>
        <source>the replies do not belong to the commands</source>
        <translation>die Antworten gehören nicht zu den Befehlen</translation>
    </message>
</context>
<context>
    <name>workbench::CommandLineRun</name>
    <message>
        <source>%1 cannot be written</source>
        <translation>%1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>no picture: the program ended before it was due</source>
        <translation>kein Bild: Das Programm wurde vorher beendet</translation>
    </message>
    <message>
        <source>cannot record to %1: %2</source>
        <translation>Aufzeichnung nach %1 nicht möglich: %2</translation>
    </message>
    <message>
        <source>cannot record to %1: the program ended before the recording began</source>
        <translation>Aufzeichnung nach %1 nicht möglich: das Programm endete, bevor sie begann</translation>
    </message>
    <message>
        <source>cannot send to %1: %2</source>
        <translation>an %1 kann nicht gesendet werden: %2</translation>
    </message>
    <message>
        <source>cannot record to %1: the file exists already, and only with --overwrite is it replaced</source>
        <translation>Aufzeichnung nach %1 nicht möglich: die Datei gibt es schon, und nur mit --overwrite wird sie ersetzt</translation>
    </message>
    <message>
        <source>Record to</source>
        <translation>Aufzeichnen in</translation>
    </message>
    <message>
        <source>%1 exists already. Do you want to replace it?</source>
        <translation>%1 gibt es schon. Soll die Datei ersetzt werden?</translation>
    </message>
    <message>
        <source>If not, nothing is recorded for now.</source>
        <translation>Wenn nicht, wird vorerst nichts aufgezeichnet.</translation>
    </message>
    <message>
        <source>cannot record to %1: it is not to be replaced</source>
        <translation>Aufzeichnung nach %1 nicht möglich: die Datei soll nicht ersetzt werden</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>Do &amp;not record</source>
        <translation>&amp;Nicht aufzeichnen</translation>
    </message>
</context>
<context>
    <name>workbench::CommandNews</name>
    <message>
        <source>Calibration accepted</source>
        <translation>Kalibrierung übernommen</translation>
    </message>
    <message>
        <source>Calibration started</source>
        <translation>Kalibrierung begonnen</translation>
    </message>
    <message>
        <source>Calibration cancelled</source>
        <translation>Kalibrierung abgebrochen</translation>
    </message>
    <message>
        <source>Calibration failed</source>
        <translation>Kalibrierung fehlgeschlagen</translation>
    </message>
    <message>
        <source>Calibration discarded: the one before it stays in use</source>
        <translation>Kalibrierung verworfen: die vorige gilt weiter</translation>
    </message>
</context>
<context>
    <name>workbench::ConnectDialog</name>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>workbench::ControllerSession</name>
    <message>
        <source>The controller sent a line that nobody asked for: %1</source>
        <translation>Der Controller sandte eine Zeile, nach der niemand gefragt hat: %1</translation>
    </message>
    <message>
        <source>Connecting to %1</source>
        <translation>Verbindung zu %1 wird aufgebaut</translation>
    </message>
    <message>
        <source>Disconnected from %1</source>
        <translation>Von %1 getrennt</translation>
    </message>
    <message>
        <source>Connected to %1, reading its versions</source>
        <translation>Verbunden mit %1, Versionen werden gelesen</translation>
    </message>
    <message>
        <source>Connected to %1</source>
        <translation>Verbunden mit %1</translation>
    </message>
    <message>
        <source>No connection to %1 (%2), trying again</source>
        <translation>Keine Verbindung zu %1 (%2), neuer Versuch läuft</translation>
    </message>
    <message>
        <source>Connection to %1 lost (%2), reconnecting</source>
        <translation>Verbindung zu %1 verloren (%2), wird neu aufgebaut</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>No data can be received on port %1: %2</source>
        <translation>An Port %1 können keine Daten empfangen werden: %2</translation>
    </message>
    <message>
        <source>Connected to %1: model %2, system %3, protocol %4</source>
        <translation>Verbunden mit %1: Modell %2, System %3, Protokoll %4</translation>
    </message>
    <message>
        <source>The controller refused &quot;%1&quot;: %2 (error %3)</source>
        <translation>Der Controller hat „%1“ abgelehnt: %2 (Fehler %3)</translation>
    </message>
    <message>
        <source>Malformed reply to &quot;%1&quot;: %2</source>
        <translation>Fehlerhafte Antwort auf „%1“: %2</translation>
    </message>
    <message>
        <source>Connection to %1 is back: model %2, system %3, protocol %4</source>
        <translation>Verbindung zu %1 ist wieder da: Modell %2, System %3, Protokoll %4</translation>
    </message>
</context>
<context>
    <name>workbench::CsvExport</name>
    <message>
        <source>Recordings (*.kestrel);;All files (*)</source>
        <translation>Aufzeichnungen (*.kestrel);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Recording to export</source>
        <translation>Zu exportierende Aufzeichnung</translation>
    </message>
    <message>
        <source>Export as CSV</source>
        <translation>Als CSV exportieren</translation>
    </message>
    <message>
        <source>Tables (*.csv);;All files (*)</source>
        <translation>Tabellen (*.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>%1 is the recording itself</source>
        <translation>%1 ist die Aufzeichnung selbst</translation>
    </message>
    <message>
        <source>Writing %1</source>
        <translation>%1 wird geschrieben</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>%1 could not be written to %2: %3</source>
        <translation>%1 konnte nicht nach %2 geschrieben werden: %3</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <source>%1 is damaged, %2; %3 has what is before it</source>
        <translation>%1 ist beschädigt, %2; %3 enthält, was davor steht</translation>
    </message>
    <message>
        <source>%1 is damaged, %2</source>
        <translation>%1 ist beschädigt, %2</translation>
    </message>
    <message>
        <source>The export to %1 was cancelled</source>
        <translation>Der Export nach %1 wurde abgebrochen</translation>
    </message>
    <message>
        <source>Wrote %1 rows to %2</source>
        <translation>%1 Zeilen nach %2 geschrieben</translation>
    </message>
    <message>
        <source>The last line of %1 is cut and left out</source>
        <translation>Die letzte Zeile von %1 ist abgeschnitten und wurde weggelassen</translation>
    </message>
    <message>
        <source>%1 data lines of %2 could not be read and have no rows</source>
        <translation>%1 Datenzeilen von %2 waren unlesbar und fehlen in der Tabelle</translation>
    </message>
    <message>
        <source>Progress of the export</source>
        <translation>Fortschritt des Exports</translation>
    </message>
</context>
<context>
    <name>workbench::GuideDialog</name>
    <message>
        <source>User guide</source>
        <translation>Benutzerhandbuch</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>workbench::IgtlChannel</name>
    <message>
        <source>nobody can connect to port %1: %2</source>
        <translation>an Port %1 kann sich niemand verbinden: %2</translation>
    </message>
    <message>
        <source>a client was too slow and was dropped; nobody is connected</source>
        <translation>ein Client war zu langsam und wurde getrennt; niemand ist verbunden</translation>
    </message>
    <message>
        <source>nobody is connected</source>
        <translation>niemand ist verbunden</translation>
    </message>
    <message>
        <source>clients: %1</source>
        <translation>Clients: %1</translation>
    </message>
</context>
<context>
    <name>workbench::LiveState</name>
    <message>
        <source>%1. No live data until it is back; check that the controller is switched on and its cable plugged in.</source>
        <translation>%1. Bis sie wieder besteht, gibt es keine Live-Daten; prüfen Sie, ob der Controller eingeschaltet und sein Kabel eingesteckt ist.</translation>
    </message>
    <message>
        <source>No data for %1 s: %2</source>
        <translation>Seit %1 s keine Daten: %2</translation>
    </message>
    <message>
        <source>the port for the data could not be opened. Connect again, with another data port.</source>
        <translation>Der Port für die Daten ließ sich nicht öffnen. Verbinden Sie neu, mit einem anderen Datenport.</translation>
    </message>
    <message>
        <source>the controller waits for its sync signal. Check its source and the cable.</source>
        <translation>Der Controller wartet auf sein Synchronsignal. Prüfen Sie dessen Quelle und das Kabel.</translation>
    </message>
    <message>
        <source>data lines arrive, but cannot be read. Check the network, and that the controller&apos;s version is supported.</source>
        <translation>Es kommen Datenzeilen an, sie sind aber nicht lesbar. Prüfen Sie das Netz und ob die Version des Controllers unterstützt wird.</translation>
    </message>
    <message>
        <source>data arrive from another address than the controller&apos;s and are refused. Check whether two controllers use the same data port.</source>
        <translation>Es kommen Daten von einer anderen Adresse als der des Controllers an; sie werden abgewiesen. Prüfen Sie, ob zwei Controller denselben Datenport benutzen.</translation>
    </message>
    <message>
        <source>the controller says that it measures, but nothing arrives at UDP port %1. Check that no firewall blocks it.</source>
        <translation>Der Controller meldet, dass er misst, aber am UDP-Port %1 kommt nichts an. Prüfen Sie, ob eine Firewall ihn sperrt.</translation>
    </message>
    <message>
        <source>the controller says that it measures, but its data no longer arrive at UDP port %1. Check the network; if another program uses the controller too, connect again.</source>
        <translation>Der Controller meldet, dass er misst, aber seine Daten kommen nicht mehr am UDP-Port %1 an. Prüfen Sie das Netz; benutzt ein anderes Programm den Controller auch, verbinden Sie neu.</translation>
    </message>
    <message>
        <source>The controller was started anew while a dialog was open. A calibration that was under way is lost: repeat it. Settings that the dialog shows may be out of date: close it and open it again.</source>
        <translation>Der Controller wurde neu gestartet, während ein Dialog offen war. Eine laufende Kalibrierung ist verloren: Wiederholen Sie sie. Einstellungen im Dialog können veraltet sein: Schließen Sie ihn und öffnen Sie ihn neu.</translation>
    </message>
    <message>
        <source>The connection was interrupted while a dialog was open. Repeat a calibration that was under way. Settings that the dialog shows may be out of date: close it and open it again.</source>
        <translation>Die Verbindung war unterbrochen, während ein Dialog offen war. Wiederholen Sie eine laufende Kalibrierung. Einstellungen im Dialog können veraltet sein: Schließen Sie ihn und öffnen Sie ihn neu.</translation>
    </message>
    <message>
        <source>Waiting for the controller…</source>
        <translation>Warten auf den Controller …</translation>
    </message>
    <message>
        <source>no data for %1 s</source>
        <translation>seit %1 s keine Daten</translation>
    </message>
    <message>
        <source>the recording has no frames here. The replay goes on with the next one.</source>
        <translation>die Aufzeichnung hat hier keine Frames. Die Wiedergabe geht mit dem nächsten weiter.</translation>
    </message>
    <message>
        <source>the recording has no line %1 here.</source>
        <translation>die Aufzeichnung hat hier keine Zeile %1.</translation>
    </message>
    <message>
        <source>the controller sends frames, but no longer the line %1. Another program may have switched it off: connect again.</source>
        <translation>Der Controller sendet Frames, aber nicht mehr die Zeile %1. Vielleicht hat ein anderes Programm sie abgeschaltet: verbinden Sie neu.</translation>
    </message>
    <message>
        <source>the line %1 arrives, but can no longer be read. Check that the controller&apos;s version is supported.</source>
        <translation>Die Zeile %1 kommt an, ist aber nicht mehr lesbar. Prüfen Sie, ob die Version des Controllers unterstützt wird.</translation>
    </message>
    <message>
        <source>%1. The program that plays the recording does not answer; open the recording again if it does not come back.</source>
        <translation>%1. Das Programm, das die Aufzeichnung abspielt, antwortet nicht; öffnen Sie die Aufzeichnung neu, wenn es nicht wiederkommt.</translation>
    </message>
</context>
<context>
    <name>workbench::LogDock</name>
    <message>
        <source>Save the log</source>
        <translation>Protokoll speichern</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>%1 konnte nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>All levels</source>
        <translation>Alle Stufen</translation>
    </message>
    <message>
        <source>All sources</source>
        <translation>Alle Quellen</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Log – new errors: %1</source>
        <translation>Protokoll – neue Fehler: %1</translation>
    </message>
    <message>
        <source>Logs (*.log);;All files (*)</source>
        <translation>Protokolle (*.log);;Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>workbench::LogModel</name>
    <message>
        <source>%1 lines came too fast and were left out</source>
        <translation>%1 Zeilen kamen zu schnell und wurden ausgelassen</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Kategorie</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>%1 (%2 times, the last one at %3)</source>
        <translation>%1 (%2-mal, zuletzt um %3)</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Level %1</source>
        <translation>Stufe %1</translation>
    </message>
</context>
<context>
    <name>workbench::MainWindow</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Connection</source>
        <translation>&amp;Verbindung</translation>
    </message>
    <message>
        <source>&amp;Measurement</source>
        <translation>&amp;Messung</translation>
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
        <source>Measurement started</source>
        <translation>Messung gestartet</translation>
    </message>
    <message>
        <source>Measurement stopped</source>
        <translation>Messung beendet</translation>
    </message>
    <message>
        <source>Record to</source>
        <translation>Aufzeichnen in</translation>
    </message>
    <message>
        <source>Recordings (*.kestrel);;All files (*)</source>
        <translation>Aufzeichnungen (*.kestrel);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über das Programm</translation>
    </message>
    <message>
        <source>Kestrel Workbench %1

A stand-alone front end for tracking controllers: it connects over the network, loads modules and shows what they offer.</source>
        <translation>Kestrel Workbench %1

Eine eigenständige Oberfläche für Tracking-Controller: Sie verbindet sich über das Netz, lädt Module und zeigt, was diese bieten.</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>&amp;Protokoll</translation>
    </message>
    <message>
        <source>&amp;Command line</source>
        <translation>&amp;Befehlszeile</translation>
    </message>
    <message>
        <source>&amp;Toolbar</source>
        <translation>&amp;Werkzeugleiste</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>The user guide is not installed</source>
        <translation>Das Benutzerhandbuch ist nicht installiert</translation>
    </message>
    <message>
        <source>Export recording as &amp;CSV…</source>
        <translation>Aufzeichnung als &amp;CSV exportieren …</translation>
    </message>
    <message>
        <source>Write the frames of a recording as a table</source>
        <translation>Die Frames einer Aufzeichnung als Tabelle schreiben</translation>
    </message>
    <message>
        <source>The disk is nearly full: room for %1 of recording</source>
        <translation>Der Datenträger ist fast voll: Platz für %1 Aufzeichnung</translation>
    </message>
    <message>
        <source>Co&amp;nnect…</source>
        <translation>Ve&amp;rbinden …</translation>
    </message>
    <message>
        <source>To a controller in the network.</source>
        <translation>Mit einem Controller im Netzwerk.</translation>
    </message>
    <message>
        <source>Try the s&amp;imulator</source>
        <translation>S&amp;imulator ausprobieren</translation>
    </message>
    <message>
        <source>A controller of our own on this computer: moving tools, calibrations and faults, without any hardware.</source>
        <translation>Ein eigener Controller auf diesem Rechner: bewegte Werkzeuge, Kalibrierungen und Fehler, ganz ohne Geräte.</translation>
    </message>
    <message>
        <source>&amp;User guide</source>
        <translation>&amp;Benutzerhandbuch</translation>
    </message>
    <message>
        <source>What there is and how it is used, with pictures.</source>
        <translation>Was es gibt und wie man es benutzt, mit Bildern.</translation>
    </message>
    <message>
        <source>Starting the simulated controller</source>
        <translation>Der simulierte Controller wird gestartet</translation>
    </message>
    <message>
        <source>&amp;Open recording…</source>
        <translation>Aufzeichnung ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>What was measured before, played again like live data.</source>
        <translation>Was früher gemessen wurde, wird wiedergegeben wie Livedaten.</translation>
    </message>
    <message>
        <source>Play a recording as if it were measured now</source>
        <translation>Eine Aufzeichnung wiedergeben, als würde jetzt gemessen</translation>
    </message>
    <message>
        <source>Recording to play</source>
        <translation>Aufzeichnung zur Wiedergabe</translation>
    </message>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>%1 cannot be played: %2</source>
        <translation>%1 kann nicht wiedergegeben werden: %2</translation>
    </message>
    <message>
        <source>No dock is open. The menu View shows them: what the modules display, the log and the command line.</source>
        <translation>Kein Andockfenster ist offen. Das Menü Ansicht zeigt sie: die Anzeigen der Module, das Protokoll und die Befehlszeile.</translation>
    </message>
    <message>
        <source>&amp;Read-out</source>
        <translation>&amp;Großanzeige</translation>
    </message>
    <message>
        <source>Time &amp;plot</source>
        <translation>&amp;Zeitverlauf</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Replay of %1 ended</source>
        <translation>Wiedergabe von %1 beendet</translation>
    </message>
    <message>
        <source>Replay of %1 begun</source>
        <translation>Wiedergabe von %1 begonnen</translation>
    </message>
    <message>
        <source>%1 has been changed since it was opened: its replay ends early</source>
        <translation>%1 wurde seit dem Öffnen verändert: Die Wiedergabe endet vorzeitig</translation>
    </message>
</context>
<context>
    <name>workbench::ModuleEntries</name>
    <message>
        <source>&amp;Tracking</source>
        <translation>&amp;Tracking</translation>
    </message>
    <message>
        <source>&amp;Entries of modules</source>
        <translation>&amp;Einträge der Module</translation>
    </message>
</context>
<context>
    <name>workbench::ModuleHost</name>
    <message>
        <source>Loaded module &quot;%1&quot; %2 from %3</source>
        <translation>Modul „%1“ %2 geladen aus %3</translation>
    </message>
    <message>
        <source>Module %1 cannot be loaded: %2</source>
        <translation>Modul %1 kann nicht geladen werden: %2</translation>
    </message>
    <message>
        <source>there is no such file</source>
        <translation>es gibt keine solche Datei</translation>
    </message>
    <message>
        <source>%1 (%2) does not have the interface %3</source>
        <translation>%1 (%2) hat nicht die Schnittstelle %3</translation>
    </message>
    <message>
        <source>it is not a Qt plug-in</source>
        <translation>es ist kein Qt-Plugin</translation>
    </message>
    <message>
        <source>it is a plug-in of another kind (%1)</source>
        <translation>es ist ein Plugin anderer Art (%1)</translation>
    </message>
    <message>
        <source>the module %1 is loaded already, from %2</source>
        <translation>das Modul %1 ist schon geladen, aus %2</translation>
    </message>
    <message>
        <source>Module &quot;%1&quot; offers nothing for this controller</source>
        <translation>Modul „%1“ bietet für diesen Controller nichts an</translation>
    </message>
    <message>
        <source>Module &quot;%1&quot; offers an entry without an action</source>
        <translation>Modul „%1“ bietet einen Eintrag ohne Aktion an</translation>
    </message>
</context>
<context>
    <name>workbench::ModuleListDialog</name>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>loaded</source>
        <translation>geladen</translation>
    </message>
    <message>
        <source>not loaded: %1</source>
        <translation>nicht geladen: %1</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Sending by %1</source>
        <translation>Senden mit %1</translation>
    </message>
</context>
<context>
    <name>workbench::MqttChannel</name>
    <message>
        <source>another program sends there as station %1</source>
        <translation>ein anderes Programm sendet dorthin als Station %1</translation>
    </message>
    <message>
        <source>the results cannot be kept: %1</source>
        <translation>die Ergebnisse können nicht aufbewahrt werden: %1</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>verbindet sich</translation>
    </message>
</context>
<context>
    <name>workbench::MqttLink</name>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>the certificates cannot be used: %1</source>
        <translation>die Zertifikate sind nicht zu gebrauchen: %1</translation>
    </message>
    <message>
        <source>the broker refuses the login</source>
        <translation>der Broker lehnt die Anmeldung ab</translation>
    </message>
    <message>
        <source>the broker refuses us: %1</source>
        <translation>der Broker lehnt uns ab: %1</translation>
    </message>
    <message>
        <source>no agreement with the broker on certificates: %1</source>
        <translation>keine Einigung mit dem Broker über Zertifikate: %1</translation>
    </message>
    <message>
        <source>its name is not known</source>
        <translation>der Name ist nicht bekannt</translation>
    </message>
    <message>
        <source>the connection to the broker was lost: %1</source>
        <translation>die Verbindung zum Broker ging verloren: %1</translation>
    </message>
    <message>
        <source>%1 cannot be reached: %2</source>
        <translation>%1 ist nicht zu erreichen: %2</translation>
    </message>
    <message>
        <source>the broker does not answer</source>
        <translation>der Broker antwortet nicht</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>verbunden</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>verbindet sich</translation>
    </message>
    <message>
        <source>the connection was ended there</source>
        <translation>die Verbindung wurde dort beendet</translation>
    </message>
    <message>
        <source>it has been silent for too long</source>
        <translation>er hat zu lange geschwiegen</translation>
    </message>
    <message>
        <source>what comes from there is no MQTT</source>
        <translation>was von dort kommt, ist kein MQTT</translation>
    </message>
    <message>
        <source>the encryption has failed</source>
        <translation>die Verschlüsselung ist gescheitert</translation>
    </message>
    <message>
        <source>it wants another version of MQTT</source>
        <translation>er will eine andere Version von MQTT</translation>
    </message>
    <message>
        <source>it does not take the name of this station</source>
        <translation>er nimmt den Namen dieser Station nicht an</translation>
    </message>
    <message>
        <source>it is not available now</source>
        <translation>er ist zurzeit nicht verfügbar</translation>
    </message>
    <message>
        <source>it does not take ours, or wants one</source>
        <translation>er nimmt unseres nicht an oder will eines</translation>
    </message>
    <message>
        <source>its own is of an authority that is not trusted, made out to another host, or not valid now</source>
        <translation>seines ist von einer Stelle, der nicht vertraut wird, auf einen anderen Rechner ausgestellt oder zurzeit nicht gültig</translation>
    </message>
    <message>
        <source>what comes from there is not encrypted</source>
        <translation>was von dort kommt, ist nicht verschlüsselt</translation>
    </message>
</context>
<context>
    <name>workbench::Obstacle</name>
    <message>
        <source>No module is loaded: see Help, Modules</source>
        <translation>Kein Modul ist geladen: siehe Hilfe, Module</translation>
    </message>
    <message>
        <source>Not connected to a controller</source>
        <translation>Nicht mit einem Controller verbunden</translation>
    </message>
    <message>
        <source>Not for observers: the workbench was started with --observer</source>
        <translation>Nicht für Beobachter: die Workbench wurde mit --observer gestartet</translation>
    </message>
    <message>
        <source>A measurement is running</source>
        <translation>Eine Messung läuft</translation>
    </message>
    <message>
        <source>No measurement is running</source>
        <translation>Keine Messung läuft</translation>
    </message>
    <message>
        <source>The controller is busy: a calibration is running</source>
        <translation>Der Controller ist beschäftigt: eine Kalibrierung läuft</translation>
    </message>
    <message>
        <source>A recording is running</source>
        <translation>Eine Aufzeichnung läuft</translation>
    </message>
    <message>
        <source>No recording is running</source>
        <translation>Keine Aufzeichnung läuft</translation>
    </message>
    <message>
        <source>A recording is being exported already</source>
        <translation>Eine Aufzeichnung wird schon exportiert</translation>
    </message>
    <message>
        <source>The simulated controller is being started</source>
        <translation>Der simulierte Controller wird gestartet</translation>
    </message>
    <message>
        <source>The modules offer nothing for this controller</source>
        <translation>Die Module bieten für diesen Controller nichts an</translation>
    </message>
    <message>
        <source>The configuration is locked: it can be read, but not changed</source>
        <translation>Die Konfiguration ist gesperrt: sie kann gelesen, aber nicht geändert werden</translation>
    </message>
    <message>
        <source>A recording is being played</source>
        <translation>Eine Aufzeichnung wird wiedergegeben</translation>
    </message>
    <message>
        <source>A recording is about to begin</source>
        <translation>Eine Aufzeichnung beginnt gleich</translation>
    </message>
</context>
<context>
    <name>workbench::Options</name>
    <message>
        <source>there are no texts in the language &quot;%1&quot;</source>
        <translation>Texte in der Sprache „%1“ gibt es nicht</translation>
    </message>
    <message>
        <source>Connect to a controller; the port is %1 unless given.</source>
        <translation>Mit einem Controller verbinden; ohne Angabe ist der Port %1.</translation>
    </message>
    <message>
        <source>Start a simulated controller of our own, connect to it, stop it at the end.</source>
        <translation>Einen eigenen simulierten Controller starten, verbinden und am Ende beenden.</translation>
    </message>
    <message>
        <source>Options for the simulated controller, separated by blanks.</source>
        <translation>Optionen für den simulierten Controller, durch Leerzeichen getrennt.</translation>
    </message>
    <message>
        <source>Start a measurement once connected.</source>
        <translation>Nach dem Verbinden eine Messung starten.</translation>
    </message>
    <message>
        <source>Let modules offer only what observes.</source>
        <translation>Module bieten nur an, was beobachtet.</translation>
    </message>
    <message>
        <source>Load a module file; may be repeated.</source>
        <translation>Eine Moduldatei laden; mehrfach möglich.</translation>
    </message>
    <message>
        <source>Look for modules in this folder instead of the usual ones.</source>
        <translation>Module in diesem Ordner statt in den üblichen suchen.</translation>
    </message>
    <message>
        <source>The language of the user interface, such as de or en; the system&apos;s unless given.</source>
        <translation>Die Sprache der Oberfläche, etwa de oder en; ohne Angabe die des Systems.</translation>
    </message>
    <message>
        <source>Keep window and connection settings in this file.</source>
        <translation>Einstellungen von Fenster und Verbindung in dieser Datei halten.</translation>
    </message>
    <message>
        <source>Record the data lines once connected.</source>
        <translation>Nach dem Verbinden die Datenzeilen aufzeichnen.</translation>
    </message>
    <message>
        <source>Write a picture of the window.</source>
        <translation>Ein Bild des Fensters schreiben.</translation>
    </message>
    <message>
        <source>When to take the picture, in seconds from the start (3).</source>
        <translation>Wann das Bild entsteht, in Sekunden ab dem Start (3).</translation>
    </message>
    <message>
        <source>Quit after so many seconds.</source>
        <translation>Nach so vielen Sekunden enden.</translation>
    </message>
    <message>
        <source>Print the rows of the modules&apos; tables every half second.</source>
        <translation>Die Zeilen der Modultabellen jede halbe Sekunde ausgeben.</translation>
    </message>
    <message>
        <source>Open the docks of all modules, whatever was remembered.</source>
        <translation>Die Andockfenster aller Module öffnen, was immer gespeichert war.</translation>
    </message>
    <message>
        <source>unexpected argument &quot;%1&quot;</source>
        <translation>unerwartetes Argument „%1“</translation>
    </message>
    <message>
        <source>--simulate and --connect exclude each other</source>
        <translation>--simulate und --connect schließen einander aus</translation>
    </message>
    <message>
        <source>--simulator-options needs --simulate</source>
        <translation>--simulator-options verlangt --simulate</translation>
    </message>
    <message>
        <source>--after needs --screenshot</source>
        <translation>--after verlangt --screenshot</translation>
    </message>
    <message>
        <source>--measure and --record need --connect or --simulate</source>
        <translation>--measure und --record verlangen --connect oder --simulate</translation>
    </message>
    <message>
        <source>--%1 takes seconds from 0 to %2, not &quot;%3&quot;</source>
        <translation>--%1 verlangt Sekunden von 0 bis %2, nicht „%3“</translation>
    </message>
    <message>
        <source>--connect takes HOST or HOST:PORT with a port from 1 to 65535, not &quot;%1&quot;</source>
        <translation>--connect verlangt HOST oder HOST:PORT mit einem Port von 1 bis 65535, nicht „%1“</translation>
    </message>
    <message>
        <source>Send tools, references and results to udp://HOST, mqtt://HOST/PREFIX, mqtts://HOST/PREFIX or igtl://; may be repeated.</source>
        <translation>Werkzeuge, Referenzen und Ergebnisse an udp://HOST, mqtt://HOST/PREFIX, mqtts://HOST/PREFIX oder igtl:// senden; mehrfach möglich.</translation>
    </message>
    <message>
        <source>--send %1: %2</source>
        <translation>--send %1: %2</translation>
    </message>
    <message>
        <source>Let --record replace a file that exists, without a question.</source>
        <translation>Lässt --record eine vorhandene Datei ohne Rückfrage ersetzen.</translation>
    </message>
    <message>
        <source>--overwrite needs --record</source>
        <translation>--overwrite verlangt --record</translation>
    </message>
    <message>
        <source>A front end for tracking controllers: connects, loads modules, shows and records data.

Exit codes: 0 success, 2 bad options, 3 the simulator could not be started or has
ended, 4 the picture could not be written, 5 the recording could not be written or
has ended by itself, 6 data cannot be sent there.</source>
        <translation>Eine Oberfläche für Tracking-Controller: verbindet sich, lädt Module, zeigt und
speichert Daten.

Exitcodes: 0 Erfolg, 2 falsche Optionen, 3 der Simulator konnte nicht gestartet werden
oder hat sich beendet, 4 das Bild, 5 die Aufzeichnung konnte nicht geschrieben werden oder
sie hat von selbst geendet, 6 dorthin kann nicht gesendet werden.</translation>
    </message>
</context>
<context>
    <name>workbench::OutletControl</name>
    <message>
        <source>No data go to %1: %2</source>
        <translation>An %1 gehen keine Daten: %2</translation>
    </message>
    <message>
        <source>Data go to %1 no more</source>
        <translation>An %1 gehen keine Daten mehr</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Refused</source>
        <translation>Abgelehnt</translation>
    </message>
    <message>
        <source>Data for %1: %2: %3</source>
        <translation>Daten für %1: %2: %3</translation>
    </message>
    <message>
        <source>A recording is played: nothing of it is sent to other programs</source>
        <translation>Eine Aufzeichnung wird wiedergegeben: Nichts davon wird an andere Programme gesendet</translation>
    </message>
    <message>
        <source>nothing of the recording that is played is sent</source>
        <translation>von der Aufzeichnung, die wiedergegeben wird, wird nichts gesendet</translation>
    </message>
</context>
<context>
    <name>workbench::OutletHub</name>
    <message>
        <source>data go there already</source>
        <translation>dorthin gehen schon Daten</translation>
    </message>
</context>
<context>
    <name>workbench::OutletUrl</name>
    <message>
        <source>this is no URL</source>
        <translation>das ist keine URL</translation>
    </message>
    <message>
        <source>a URL begins with udp://, mqtt://, mqtts:// or igtl://</source>
        <translation>eine URL beginnt mit udp://, mqtt://, mqtts:// oder igtl://</translation>
    </message>
    <message>
        <source>only mqtt:// and mqtts:// take a user</source>
        <translation>nur mqtt:// und mqtts:// nehmen einen Benutzer</translation>
    </message>
    <message>
        <source>a password does not belong into a URL, where others see it: write it into a file and add ?password-file=FILE</source>
        <translation>ein Passwort gehört nicht in eine URL, wo andere es sehen: in eine Datei schreiben und ?password-file=DATEI anhängen</translation>
    </message>
    <message>
        <source>the user before &quot;@&quot; is missing</source>
        <translation>der Benutzer vor „@“ fehlt</translation>
    </message>
    <message>
        <source>a port is a number from 1 to 65535</source>
        <translation>ein Port ist eine Zahl von 1 bis 65535</translation>
    </message>
    <message>
        <source>igtl:// takes an address of this computer, or none</source>
        <translation>igtl:// nimmt eine Adresse dieses Rechners oder keine</translation>
    </message>
    <message>
        <source>the host is missing or cannot be one</source>
        <translation>der Rechnername fehlt oder kann keiner sein</translation>
    </message>
    <message>
        <source>the prefix of the topics is missing: %1://HOST/PREFIX</source>
        <translation>das Präfix der Topics fehlt: %1://HOST/PREFIX</translation>
    </message>
    <message>
        <source>the prefix of the topics may hold no +, #, empty level or $ in front</source>
        <translation>im Präfix der Topics darf kein +, kein #, keine leere Ebene und vorn kein $ stehen</translation>
    </message>
    <message>
        <source>a station is a name without /, + and #</source>
        <translation>eine Station ist ein Name ohne /, + und #</translation>
    </message>
    <message>
        <source>there is no option &quot;%1&quot;; there are station, password-file, ca, certificate and key</source>
        <translation>eine Option „%1“ gibt es nicht; es gibt station, password-file, ca, certificate und key</translation>
    </message>
    <message>
        <source>the option &quot;%1&quot; takes a file name that begins with /</source>
        <translation>die Option „%1“ verlangt einen Dateinamen, der mit / beginnt</translation>
    </message>
    <message>
        <source>a password needs a user: %1://USER@HOST/PREFIX</source>
        <translation>ein Passwort braucht einen Benutzer: %1://USER@HOST/PREFIX</translation>
    </message>
    <message>
        <source>certificates need mqtts://</source>
        <translation>Zertifikate brauchen mqtts://</translation>
    </message>
    <message>
        <source>the options certificate and key need each other</source>
        <translation>die Optionen certificate und key brauchen einander</translation>
    </message>
    <message>
        <source>nothing may stand behind host and port</source>
        <translation>hinter Rechnername und Port darf nichts stehen</translation>
    </message>
</context>
<context>
    <name>workbench::PlotDock</name>
    <message>
        <source>Plot of the position over the time</source>
        <translation>Verlauf der Position über der Zeit</translation>
    </message>
    <message>
        <source>%1 s</source>
        <comment>a time</comment>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min</source>
        <comment>a time</comment>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>no data for %1 s</source>
        <translation>seit %1 s keine Daten</translation>
    </message>
    <message>
        <source>Save the positions</source>
        <translation>Positionen speichern</translation>
    </message>
    <message>
        <source>Tables (*.csv);;All files (*)</source>
        <translation>Tabellen (*.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Save the plot</source>
        <translation>Verlauf speichern</translation>
    </message>
    <message>
        <source>Pictures (*.png);;All files (*)</source>
        <translation>Bilder (*.png);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Wrote %1</source>
        <translation>%1 geschrieben</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>last %1: mm from the mean; s: standard deviation</source>
        <translation>letzte %1: mm vom Mittel; s: Standardabweichung</translation>
    </message>
</context>
<context>
    <name>workbench::Readout</name>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
    <message>
        <source>not measuring</source>
        <translation>keine Messung</translation>
    </message>
    <message>
        <source>no data yet</source>
        <translation>noch keine Daten</translation>
    </message>
    <message>
        <source>no such tool</source>
        <translation>kein solches Werkzeug</translation>
    </message>
    <message>
        <source>not calibrated</source>
        <translation>nicht kalibriert</translation>
    </message>
    <message>
        <source>replay</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>live</source>
        <translation>live</translation>
    </message>
    <message>
        <source>hidden</source>
        <translation>verdeckt</translation>
    </message>
    <message>
        <source>old</source>
        <translation>veraltet</translation>
    </message>
    <message>
        <source>frozen</source>
        <translation>gehalten</translation>
    </message>
    <message>
        <source>no reference</source>
        <translation>keine Referenz</translation>
    </message>
    <message>
        <source>%1 seen</source>
        <comment>a reference</comment>
        <translation>%1 sichtbar</translation>
    </message>
    <message>
        <source>%1 hidden</source>
        <comment>a reference</comment>
        <translation>%1 verdeckt</translation>
    </message>
    <message>
        <source>b%1 pressed</source>
        <translation>T%1 gedrückt</translation>
    </message>
    <message>
        <source>b%1</source>
        <comment>a button</comment>
        <translation>T%1</translation>
    </message>
    <message>
        <source>%1 s ago</source>
        <translation>vor %1 s</translation>
    </message>
</context>
<context>
    <name>workbench::Recorder</name>
    <message>
        <source>this is no regular file</source>
        <translation>das ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>somebody else is recording to this file</source>
        <translation>in diese Datei zeichnet schon jemand auf</translation>
    </message>
    <message>
        <source>the file was removed meanwhile</source>
        <translation>die Datei wurde inzwischen entfernt</translation>
    </message>
    <message>
        <source>the disk does not answer</source>
        <translation>der Datenträger antwortet nicht</translation>
    </message>
    <message>
        <source>the file was moved meanwhile</source>
        <translation>die Datei wurde inzwischen verschoben</translation>
    </message>
</context>
<context>
    <name>workbench::RecordingControl</name>
    <message>
        <source>the connection was lost</source>
        <translation>die Verbindung ging verloren</translation>
    </message>
    <message>
        <source>another recording is still being written</source>
        <translation>eine andere Aufzeichnung wird noch geschrieben</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>The disk does not answer; %1 is not being written</source>
        <translation>Der Datenträger antwortet nicht; %1 wird nicht geschrieben</translation>
    </message>
    <message>
        <source>The disk answers again; %1 is being written</source>
        <translation>Der Datenträger antwortet wieder; %1 wird geschrieben</translation>
    </message>
    <message>
        <source>The disk is too slow; frames are missing in %1</source>
        <translation>Der Datenträger ist zu langsam; in %1 fehlen Frames</translation>
    </message>
    <message>
        <source>Recording to %1</source>
        <translation>Aufzeichnung in %1</translation>
    </message>
    <message>
        <source>Recorded %1 frames to %2</source>
        <translation>%1 Frames in %2 aufgezeichnet</translation>
    </message>
    <message>
        <source>The recording to %1 ended: %2</source>
        <translation>Die Aufzeichnung nach %1 ist beendet: %2</translation>
    </message>
    <message>
        <source>%1 frames could not be written to %2</source>
        <translation>%1 Frames konnten nicht nach %2 geschrieben werden</translation>
    </message>
    <message>
        <source>not recording</source>
        <translation>keine Aufzeichnung</translation>
    </message>
    <message>
        <source>the disk does not answer</source>
        <translation>der Datenträger antwortet nicht</translation>
    </message>
    <message>
        <source>recording</source>
        <translation>Aufzeichnung läuft</translation>
    </message>
    <message>
        <source>It is whole until then: %1 frames.</source>
        <translation>Sie ist bis dahin vollständig: %1 Frames.</translation>
    </message>
    <message>
        <source>There are no frames in it.</source>
        <translation>Sie enthält keine Frames.</translation>
    </message>
    <message>
        <source>less than a minute</source>
        <translation>weniger als eine Minute</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>%1 days</source>
        <translation>%1 Tage</translation>
    </message>
    <message>
        <source>the controller is gone</source>
        <translation>der Controller ist verschwunden</translation>
    </message>
    <message>
        <source>the connection was closed</source>
        <translation>die Verbindung wurde getrennt</translation>
    </message>
    <message>
        <source>room for %1</source>
        <translation>Platz für %1</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 Frames</translation>
    </message>
    <message>
        <source>to %1</source>
        <translation>in %1</translation>
    </message>
    <message>
        <source>%1 free</source>
        <translation>%1 frei</translation>
    </message>
    <message>
        <source>%1 not written</source>
        <translation>%1 nicht geschrieben</translation>
    </message>
    <message>
        <source>The recording to %1 has not begun: %2</source>
        <translation>Die Aufzeichnung nach %1 hat nicht begonnen: %2</translation>
    </message>
    <message>
        <source>The recording to %1 was stopped before it began</source>
        <translation>Die Aufzeichnung nach %1 wurde beendet, bevor sie begann</translation>
    </message>
    <message>
        <source>starting to record</source>
        <translation>Aufzeichnung beginnt</translation>
    </message>
</context>
<context>
    <name>workbench::RecordingReason</name>
    <message>
        <source>not a recording of a known format</source>
        <translation>keine Aufzeichnung in einem bekannten Format</translation>
    </message>
    <message>
        <source>the header has no start</source>
        <translation>im Kopf fehlt der Beginn</translation>
    </message>
    <message>
        <source>the file ends inside its header</source>
        <translation>die Datei endet in ihrem Kopf</translation>
    </message>
    <message>
        <source>unreadable start</source>
        <translation>unlesbarer Beginn</translation>
    </message>
    <message>
        <source>unknown line in the header</source>
        <translation>unbekannte Zeile im Kopf</translation>
    </message>
    <message>
        <source>unreadable version</source>
        <translation>unlesbare Version</translation>
    </message>
    <message>
        <source>unreadable parameter</source>
        <translation>unlesbarer Parameter</translation>
    </message>
    <message>
        <source>too many parameters</source>
        <translation>zu viele Parameter</translation>
    </message>
    <message>
        <source>unreadable time stamp</source>
        <translation>unlesbarer Zeitstempel</translation>
    </message>
    <message>
        <source>the time stamp goes backwards</source>
        <translation>der Zeitstempel läuft rückwärts</translation>
    </message>
    <message>
        <source>unreadable wall clock</source>
        <translation>unlesbare Uhrzeit</translation>
    </message>
    <message>
        <source>unreadable escape</source>
        <translation>unlesbare Zeichenumschreibung</translation>
    </message>
    <message>
        <source>the channel is not that of the line</source>
        <translation>der Kanal ist nicht der der Zeile</translation>
    </message>
    <message>
        <source>the line is too long</source>
        <translation>die Zeile ist zu lang</translation>
    </message>
    <message>
        <source>the file cannot be read on</source>
        <translation>die Datei ist nicht weiter lesbar</translation>
    </message>
    <message>
        <source>only an ordinary file can be read, not a folder, pipe or device</source>
        <translation>nur eine gewöhnliche Datei ist lesbar, kein Ordner, keine Pipe und kein Gerät</translation>
    </message>
    <message>
        <source>a control character in a name or value</source>
        <translation>ein Steuerzeichen in einem Namen oder Wert</translation>
    </message>
    <message>
        <source>a line end inside the line</source>
        <translation>ein Zeilenende in der Zeile</translation>
    </message>
    <message>
        <source>only an ordinary file can be replayed, not a folder, pipe or device</source>
        <translation>nur eine gewöhnliche Datei kann wiedergegeben werden, kein Ordner, keine Pipe und kein Gerät</translation>
    </message>
    <message>
        <source>the recording is empty or unreadable</source>
        <translation>die Aufzeichnung ist leer oder unlesbar</translation>
    </message>
    <message>
        <source>the recording cannot be opened</source>
        <translation>die Aufzeichnung kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>the recorded protocol version cannot be read</source>
        <translation>die aufgezeichnete Protokollversion ist unlesbar</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
</context>
<context>
    <name>workbench::ReplayBar</name>
    <message>
        <source>Replay</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Spee&amp;d:</source>
        <translation>&amp;Geschwindigkeit:</translation>
    </message>
    <message>
        <source>Speed of the replay</source>
        <translation>Geschwindigkeit der Wiedergabe</translation>
    </message>
    <message>
        <source>How many times as fast as it was recorded</source>
        <translation>Wie viel mal so schnell, wie aufgezeichnet wurde</translation>
    </message>
    <message>
        <source>Position in the recording</source>
        <translation>Stelle in der Aufzeichnung</translation>
    </message>
    <message>
        <source>Where in the recording: left and right arrow go 1 s, page up and page down 10 s</source>
        <translation>Wo in der Aufzeichnung: Pfeil links und rechts gehen 1 s weit, Bild auf und ab 10 s</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Stop at the present frame (F7)</source>
        <translation>Beim jetzigen Frame anhalten (F7)</translation>
    </message>
    <message>
        <source>Go on; at the end from the beginning (F7)</source>
        <translation>Weiter; am Ende von vorn (F7)</translation>
    </message>
    <message>
        <source>One frame</source>
        <translation>Ein Frame</translation>
    </message>
    <message>
        <source>Show the next frame and stop there (F8)</source>
        <translation>Den nächsten Frame zeigen und dort anhalten (F8)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close the replay</source>
        <translation>Wiedergabe schließen</translation>
    </message>
    <message>
        <source>End the replay</source>
        <translation>Die Wiedergabe beenden</translation>
    </message>
    <message>
        <source>%1 – %2 of %3 s</source>
        <translation>%1 – %2 von %3 s</translation>
    </message>
    <message>
        <source>%1, recorded %2</source>
        <translation>%1, aufgezeichnet %2</translation>
    </message>
</context>
<context>
    <name>workbench::ReplayControl</name>
    <message>
        <source>REPLAY %1, being opened</source>
        <translation>WIEDERGABE %1, wird geöffnet</translation>
    </message>
    <message>
        <source>REPLAY %1, measurement stopped</source>
        <translation>WIEDERGABE %1, Messung angehalten</translation>
    </message>
    <message>
        <source>REPLAY %1, paused at %2 s</source>
        <translation>WIEDERGABE %1, Pause bei %2 s</translation>
    </message>
    <message>
        <source>REPLAY %1, at its end (%2 s)</source>
        <translation>WIEDERGABE %1, am Ende (%2 s)</translation>
    </message>
    <message>
        <source>REPLAY %1, which has no frames</source>
        <translation>WIEDERGABE %1, ohne Frames</translation>
    </message>
    <message>
        <source>REPLAY %1</source>
        <translation>WIEDERGABE %1</translation>
    </message>
    <message>
        <source>REPLAY %1, playing</source>
        <translation>WIEDERGABE %1, läuft</translation>
    </message>
    <message>
        <source>REPLAY %1, playing at speed %2</source>
        <translation>WIEDERGABE %1, läuft mit Geschwindigkeit %2</translation>
    </message>
    <message>
        <source>REPLAY %1, which does not answer</source>
        <translation>WIEDERGABE %1, die nicht antwortet</translation>
    </message>
    <message>
        <source>REPLAY %1, cut short at %2 of %3 s</source>
        <translation>WIEDERGABE %1, abgebrochen bei %2 von %3 s</translation>
    </message>
</context>
<context>
    <name>workbench::SendDialog</name>
    <message>
        <source>%1 sent</source>
        <translation>%1 gesendet</translation>
    </message>
    <message>
        <source>%1 waiting</source>
        <translation>%1 warten</translation>
    </message>
    <message>
        <source>%1 dropped</source>
        <translation>%1 verworfen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Trying %1 …</source>
        <translation>%1 wird probiert …</translation>
    </message>
    <message>
        <source>It does not work: %1</source>
        <translation>Es geht nicht: %1</translation>
    </message>
    <message>
        <source>It works: %1</source>
        <translation>Es geht: %1</translation>
    </message>
    <message>
        <source>Nobody has answered: %1</source>
        <translation>Niemand hat geantwortet: %1</translation>
    </message>
</context>
<context>
    <name>workbench::SimulatorMenu</name>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Werkzeuge</translation>
    </message>
    <message>
        <source>&amp;Misbehaviour</source>
        <translation>&amp;Fehlverhalten</translation>
    </message>
    <message>
        <source>&amp;End all</source>
        <translation>&amp;Alles beenden</translation>
    </message>
    <message>
        <source>&amp;Calibration outcome</source>
        <translation>&amp;Ausgang der Kalibrierung</translation>
    </message>
    <message>
        <source>Press button &amp;%1</source>
        <translation>Taste &amp;%1 drücken</translation>
    </message>
    <message>
        <source>Let go of the &amp;buttons</source>
        <translation>&amp;Tasten loslassen</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>&amp;Verdecken</translation>
    </message>
    <message>
        <source>&amp;Show</source>
        <translation>&amp;Zeigen</translation>
    </message>
    <message>
        <source>Back to its &amp;own motion</source>
        <translation>Zurück zur &amp;eigenen Bewegung</translation>
    </message>
    <message>
        <source>Simulator</source>
        <translation>Simulator</translation>
    </message>
</context>
<context>
    <name>workbench::SimulatorProcess</name>
    <message>
        <source>%1 does not say where it listens</source>
        <translation>%1 sagt nicht, wo es lauscht</translation>
    </message>
    <message>
        <source>%1 cannot be started: %2</source>
        <translation>%1 kann nicht gestartet werden: %2</translation>
    </message>
    <message>
        <source>%1 says &quot;%2&quot;</source>
        <translation>%1 sagt „%2“</translation>
    </message>
    <message>
        <source>%1 has ended (exit code %2)</source>
        <translation>%1 hat sich beendet (Exitcode %2)</translation>
    </message>
    <message>
        <source>%1 was ended by signal %2</source>
        <translation>%1 wurde durch das Signal %2 beendet</translation>
    </message>
</context>
<context>
    <name>workbench::StartPage</name>
    <message>
        <source>Start page</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>State of the connection</source>
        <translation>Zustand der Verbindung</translation>
    </message>
    <message>
        <source>Last controllers:</source>
        <translation>Letzte Controller:</translation>
    </message>
    <message>
        <source>Connect to %1</source>
        <translation>Mit %1 verbinden</translation>
    </message>
</context>
<context>
    <name>workbench::StateWords</name>
    <message>
        <source>Connection</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Measurement</source>
        <translation>Messung</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufzeichnung</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>protocol %1, system %2 / %3</source>
        <translation>Protokoll %1, System %2 / %3</translation>
    </message>
    <message>
        <source>not measuring</source>
        <translation>keine Messung</translation>
    </message>
    <message>
        <source>replay</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>measuring</source>
        <translation>Messung läuft</translation>
    </message>
    <message>
        <source>no frames</source>
        <translation>keine Frames</translation>
    </message>
    <message>
        <source>last frame %1 s ago, about %2 lost</source>
        <translation>vor %1 s, etwa %2 verloren</translation>
    </message>
    <message>
        <source>%1 frames/s, last %2 s ago, %3 lost</source>
        <translation>%1 Hz, vor %2 s, %3 verloren</translation>
    </message>
    <message>
        <source>, %1 lines unreadable</source>
        <translation>, %1 Zeilen unlesbar</translation>
    </message>
    <message>
        <source>, %1 frames garbled</source>
        <translation>, %1 Frames verstümmelt</translation>
    </message>
    <message>
        <source>, %1 datagrams from elsewhere refused</source>
        <translation>, %1 fremde Datagramme abgewiesen</translation>
    </message>
    <message>
        <source>, lines too long for the display</source>
        <translation>, Zeilen zu lang für die Anzeige</translation>
    </message>
    <message>
        <source>none</source>
        <comment>data port</comment>
        <translation>keiner</translation>
    </message>
    <message>
        <source>Data lines of %1 characters arrive, and the display takes at most %2: it stays empty. The controller has more tools (some 50) than fit into a line.</source>
        <translation>Es kommen Datenzeilen von %1 Zeichen an, und die Anzeige nimmt höchstens %2: sie bleibt leer. Der Controller hat mehr Measurement Tools (etwa 50), als in eine Zeile passen.</translation>
    </message>
    <message>
        <source>%1 not loaded</source>
        <translation>%1 nicht geladen</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Lost frames and free space</source>
        <translation>Verlorene Frames und freier Platz</translation>
    </message>
    <message>
        <source>about %1 lost</source>
        <translation>etwa %1 verloren</translation>
    </message>
    <message>
        <source>%1 lost</source>
        <translation>%1 verloren</translation>
    </message>
    <message>
        <source>measurement unknown</source>
        <translation>Messung unbekannt</translation>
    </message>
</context>
<context>
    <name>workbench::UdpChannel</name>
    <message>
        <source>waiting for the first frame</source>
        <translation>wartet auf den ersten Frame</translation>
    </message>
    <message>
        <source>%1 cannot be found: %2</source>
        <translation>%1 ist nicht zu finden: %2</translation>
    </message>
    <message>
        <source>%1 cannot be reached: %2</source>
        <translation>%1 ist nicht zu erreichen: %2</translation>
    </message>
    <message>
        <source>a frame has too much for one datagram</source>
        <translation>ein Frame hat zu viel für ein Datagramm</translation>
    </message>
    <message>
        <source>sending, as far as can be known</source>
        <translation>sendet, soweit sich das sagen lässt</translation>
    </message>
    <message>
        <source>nobody takes the data there</source>
        <translation>dort nimmt niemand die Daten an</translation>
    </message>
</context>
<context>
    <name>workbench::WindowSettings</name>
    <message>
        <source>The settings in %1 are damaged; defaults are used instead</source>
        <translation>Die Einstellungen in %1 sind beschädigt; die Vorgaben gelten</translation>
    </message>
    <message>
        <source>, and the file is kept as %1</source>
        <translation>, und die Datei bleibt als %1 erhalten</translation>
    </message>
</context>
<context>
    <name>workbench::textLanguage</name>
    <message>
        <source>en</source>
        <comment>the code of this language</comment>
        <translation>de</translation>
    </message>
</context>
</TS>
