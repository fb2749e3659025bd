<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ButtonClaim</name>
    <message>
        <source>any other button</source>
        <translation>jede andere Taste</translation>
    </message>
    <message>
        <source>any button</source>
        <translation>jede Taste</translation>
    </message>
    <message>
        <source>button %1</source>
        <translation>Taste %1</translation>
    </message>
    <message>
        <source>The buttons on the tool do nothing.</source>
        <translation>Die Tasten am Werkzeug bewirken nichts.</translation>
    </message>
    <message>
        <source>On the tool: %1.</source>
        <translation>Am Werkzeug: %1.</translation>
    </message>
    <message>
        <source>The dock that was used last has the button.</source>
        <translation>Das zuletzt benutzte Dock hat die Taste.</translation>
    </message>
</context>
<context>
    <name>ExportBar</name>
    <message>
        <source>Progress of the export</source>
        <translation>Fortschritt des Exports</translation>
    </message>
    <message>
        <source>Ends the export; nothing of it is kept</source>
        <translation>Beendet den Export; nichts davon bleibt</translation>
    </message>
    <message>
        <source>Exporting to %1</source>
        <translation>Export nach %1</translation>
    </message>
    <message>
        <source>Cancelling the export...</source>
        <translation>Der Export wird abgebrochen ...</translation>
    </message>
    <message numerus="yes">
        <source>%n point(s) exported to %1</source>
        <translation>
            <numerusform>%n Punkt nach %1 exportiert</numerusform>
            <numerusform>%n Punkte nach %1 exportiert</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing exported: cancelled</source>
        <translation>Nichts exportiert: abgebrochen</translation>
    </message>
    <message>
        <source>Nothing exported: %1: %2</source>
        <translation>Nichts exportiert: %1: %2</translation>
    </message>
    <message>
        <source>Stop exportin&amp;g</source>
        <translation>Exp&amp;ort abbrechen</translation>
    </message>
</context>
<context>
    <name>PointsPanel</name>
    <message>
        <source>Measurement Tool Points</source>
        <translation>Messpunkte</translation>
    </message>
    <message>
        <source>Adds these points to the list</source>
        <translation>Nimmt diese Punkte in die Liste auf</translation>
    </message>
    <message>
        <source>&amp;Keep</source>
        <translation>&amp;Behalten</translation>
    </message>
    <message>
        <source>Deletes these points for good</source>
        <translation>Löscht diese Punkte endgültig</translation>
    </message>
    <message>
        <source>D&amp;iscard</source>
        <translation>Verwer&amp;fen</translation>
    </message>
    <message>
        <source>How long the tip has been held still</source>
        <translation>Wie lange die Spitze schon still gehalten wird</translation>
    </message>
    <message>
        <source>x</source>
        <translation>x</translation>
    </message>
    <message>
        <source>Position x in mm</source>
        <translation>Position x in mm</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>y</source>
        <translation>y</translation>
    </message>
    <message>
        <source>Position y in mm</source>
        <translation>Position y in mm</translation>
    </message>
    <message>
        <source>z</source>
        <translation>z</translation>
    </message>
    <message>
        <source>Position z in mm</source>
        <translation>Position z in mm</translation>
    </message>
    <message>
        <source>State of the capture</source>
        <translation>Stand der Aufnahme</translation>
    </message>
    <message>
        <source>Captures a point (space bar); the same again, or Escape, cancels</source>
        <translation>Nimmt einen Punkt auf (Leertaste); noch einmal oder Escape bricht ab</translation>
    </message>
    <message>
        <source>&amp;Sounds</source>
        <translation>&amp;Signaltöne</translation>
    </message>
    <message>
        <source>A sound when a capture begins, succeeds, fails, or the tool is lost</source>
        <translation>Ein Ton, wenn eine Aufnahme beginnt, gelingt, misslingt oder das Werkzeug verloren geht</translation>
    </message>
    <message>
        <source>Tool</source>
        <translation>Werkzeug</translation>
    </message>
    <message>
        <source>The tool whose tip is captured; pressing the button of another one chooses that</source>
        <translation>Das Werkzeug, dessen Spitze aufgenommen wird; die Taste eines anderen wählt dieses</translation>
    </message>
    <message>
        <source>C&amp;apture by</source>
        <translation>Auslösun&amp;g</translation>
    </message>
    <message>
        <source>Capture by</source>
        <translation>Auslösung</translation>
    </message>
    <message>
        <source>What begins a capture</source>
        <translation>Was eine Aufnahme beginnt</translation>
    </message>
    <message>
        <source>key or button</source>
        <translation>Leertaste oder Taste</translation>
    </message>
    <message>
        <source>holding still</source>
        <translation>Stillhalten</translation>
    </message>
    <message>
        <source>&amp;Button</source>
        <translation>Tast&amp;e</translation>
    </message>
    <message>
        <source>Button</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>The button on the tool that begins a capture</source>
        <translation>Die Taste am Werkzeug, die eine Aufnahme beginnt</translation>
    </message>
    <message>
        <source>Du&amp;ration</source>
        <translation>Da&amp;uer</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>How long the tip is held still; at first what the controller has for this tool</source>
        <translation>Wie lange die Spitze still gehalten wird; zunächst, was der Controller für dieses Werkzeug hat</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>Tolerance</source>
        <translation>Toleranz</translation>
    </message>
    <message>
        <source>How far the tip may be from the point meanwhile; at first what the controller has for this tool</source>
        <translation>Wie weit die Spitze dabei vom Punkt entfernt sein darf; zunächst, was der Controller für dieses Werkzeug hat</translation>
    </message>
    <message>
        <source> mm</source>
        <translation> mm</translation>
    </message>
    <message>
        <source>Disk</source>
        <translation>Datenträger</translation>
    </message>
    <message>
        <source>Captured points</source>
        <translation>Aufgenommene Punkte</translation>
    </message>
    <message>
        <source>&amp;Nominal length</source>
        <translation>&amp;Nennlänge</translation>
    </message>
    <message>
        <source>Nominal length</source>
        <translation>Nennlänge</translation>
    </message>
    <message>
        <source>The length that two selected points should be apart, such as that of a gauge</source>
        <translation>Wie weit zwei ausgewählte Punkte auseinander sein sollen, etwa auf einem Endmaß</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Tolerance of the length</source>
        <translation>Toleranz der Länge</translation>
    </message>
    <message>
        <source>How far the length may be from the nominal one</source>
        <translation>Wie weit die Länge von der Nennlänge abweichen darf</translation>
    </message>
    <message>
        <source>Distance of the selected points</source>
        <translation>Abstand der ausgewählten Punkte</translation>
    </message>
    <message>
        <source>Takes the last deletion or renaming back (Ctrl+Z)</source>
        <translation>Nimmt das letzte Löschen oder Umbenennen zurück (Strg+Z)</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Does it again (Ctrl+Shift+Z)</source>
        <translation>Tut es noch einmal (Strg+Umschalt+Z)</translation>
    </message>
    <message>
        <source>R&amp;edo</source>
        <translation>W&amp;iederholen</translation>
    </message>
    <message>
        <source>Deletes the selected points (Del)</source>
        <translation>Löscht die ausgewählten Punkte (Entf)</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>Lös&amp;chen</translation>
    </message>
    <message>
        <source>Copies the selected points, separated by tabs (Ctrl+C)</source>
        <translation>Kopiert die ausgewählten Punkte, durch Tabulatoren getrennt (Strg+C)</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Writes all points to a file of comma-separated values</source>
        <translation>Schreibt alle Punkte in eine Datei mit Kommas zwischen den Werten</translation>
    </message>
    <message>
        <source>E&amp;xport...</source>
        <translation>E&amp;xportieren ...</translation>
    </message>
    <message>
        <source>any</source>
        <translation>jede</translation>
    </message>
    <message>
        <source>The disk does not answer: the last point is in the list only.</source>
        <translation>Der Datenträger antwortet nicht: Der letzte Punkt steht nur in der Liste.</translation>
    </message>
    <message>
        <source>%1 (not calibrated)</source>
        <translation>%1 (nicht kalibriert)</translation>
    </message>
    <message>
        <source>Hold the tip still.</source>
        <translation>Die Spitze still halten.</translation>
    </message>
    <message>
        <source>The tip has left the tolerance: begun anew.</source>
        <translation>Die Spitze hat die Toleranz verlassen: von vorn begonnen.</translation>
    </message>
    <message>
        <source>Captured, being written to the disk.</source>
        <translation>Aufgenommen, wird gespeichert.</translation>
    </message>
    <message>
        <source>Point captured.</source>
        <translation>Punkt aufgenommen.</translation>
    </message>
    <message>
        <source>Point captured, but it is not on the disk yet.</source>
        <translation>Punkt aufgenommen, aber noch nicht gespeichert.</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>Given up: the tool is hidden.</source>
        <translation>Aufgegeben: Das Werkzeug ist verdeckt.</translation>
    </message>
    <message>
        <source>Given up: the reference is lost.</source>
        <translation>Aufgegeben: Die Referenz ist verloren.</translation>
    </message>
    <message>
        <source>Given up: the tool&apos;s reference has changed.</source>
        <translation>Aufgegeben: Das Werkzeug hat eine andere Referenz.</translation>
    </message>
    <message>
        <source>Given up: no data for a second.</source>
        <translation>Aufgegeben: eine Sekunde lang keine Daten.</translation>
    </message>
    <message>
        <source>Given up: the measurement has ended.</source>
        <translation>Aufgegeben: Die Messung ist zu Ende.</translation>
    </message>
    <message>
        <source>Given up: the points are out of sight.</source>
        <translation>Aufgegeben: Die Punkte sind nicht zu sehen.</translation>
    </message>
    <message>
        <source>Nothing captured: no measurement is running.</source>
        <translation>Nichts aufgenommen: Es läuft keine Messung.</translation>
    </message>
    <message>
        <source>Nothing captured: the tool is not calibrated.</source>
        <translation>Nichts aufgenommen: Das Werkzeug ist nicht kalibriert.</translation>
    </message>
    <message>
        <source>One at a time: a point is being captured.</source>
        <translation>Eins nach dem anderen: Es wird gerade ein Punkt aufgenommen.</translation>
    </message>
    <message>
        <source>No measurement is running.</source>
        <translation>Es läuft keine Messung.</translation>
    </message>
    <message>
        <source>Ready.</source>
        <translation>Bereit.</translation>
    </message>
    <message>
        <source>Waiting for the tool to be seen.</source>
        <translation>Wartet, bis das Werkzeug zu sehen ist.</translation>
    </message>
    <message>
        <source>Point captured. Move the tip to the next one.</source>
        <translation>Punkt aufgenommen. Die Spitze zum nächsten bewegen.</translation>
    </message>
    <message>
        <source>%1 ± %2 mm (95 %)</source>
        <translation>%1 ± %2 mm (95 %)</translation>
    </message>
    <message>
        <source>%1 mm, uncertainty unknown: a point was held too briefly</source>
        <translation>%1 mm, Unsicherheit unbekannt: Ein Punkt wurde zu kurz gehalten</translation>
    </message>
    <message>
        <source>The points cannot be written to the disk: %1. They stay in the list and are tried again each second.</source>
        <translation>Die Punkte lassen sich nicht speichern: %1. Sie bleiben in der Liste, und es wird jede Sekunde wieder versucht.</translation>
    </message>
    <message numerus="yes">
        <source>%n point(s) of an earlier session were never exported, the last one of %1. Keep or discard them?</source>
        <translation>
            <numerusform>%n Punkt einer früheren Sitzung wurde nie exportiert, der letzte von %1. Behalten oder verwerfen?</numerusform>
            <numerusform>%n Punkte einer früheren Sitzung wurden nie exportiert, der letzte von %1. Behalten oder verwerfen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Select two points for their distance.</source>
        <translation>Für einen Abstand zwei Punkte auswählen.</translation>
    </message>
    <message>
        <source>%1 to %2:</source>
        <translation>%1 bis %2:</translation>
    </message>
    <message>
        <source>no distance, they are measured from different references</source>
        <translation>kein Abstand, sie sind von verschiedenen Referenzen aus gemessen</translation>
    </message>
    <message>
        <source>; error %1 mm: %2</source>
        <translation>; Abweichung %1 mm: %2</translation>
    </message>
    <message>
        <source>Export points</source>
        <translation>Punkte exportieren</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv)</source>
        <translation>Kommagetrennte Werte (*.csv)</translation>
    </message>
    <message>
        <source>What the buttons on the tool do</source>
        <translation>Was die Tasten am Werkzeug bewirken</translation>
    </message>
    <message>
        <source>%1 captures a point</source>
        <translation>%1 nimmt einen Punkt auf</translation>
    </message>
    <message numerus="yes">
        <source>Error: %n change(s) of the points are not on the disk: %1. Each captured point is in this log.</source>
        <translation>
            <numerusform>Fehler: %n Änderung der Punkte ist nicht auf dem Datenträger: %1. Jeder aufgenommene Punkt steht in diesem Protokoll.</numerusform>
            <numerusform>Fehler: %n Änderungen der Punkte sind nicht auf dem Datenträger: %1. Jeder aufgenommene Punkt steht in diesem Protokoll.</numerusform>
        </translation>
    </message>
    <message>
        <source>Error: The export to %1 was not finished, nothing of it is kept.</source>
        <translation>Fehler: Der Export nach %1 wurde nicht fertig, nichts davon bleibt.</translation>
    </message>
    <message>
        <source>Ca&amp;pture</source>
        <translation>&amp;Punkt aufnehmen</translation>
    </message>
    <message>
        <source>To&amp;ol</source>
        <translation>&amp;Werkzeug</translation>
    </message>
    <message>
        <source>To&amp;lerance</source>
        <translation>Toleran&amp;z</translation>
    </message>
    <message>
        <source>&amp;within</source>
        <translation>To&amp;leranz</translation>
    </message>
    <message>
        <source>A recording is played: nothing is captured.</source>
        <translation>Eine Aufzeichnung wird wiedergegeben: Es wird nichts aufgenommen.</translation>
    </message>
</context>
<context>
    <name>ProbeCheckModule</name>
    <message>
        <source>GUI Measurement Tool check</source>
        <translation>Prüfung der Messwerkzeuge</translation>
    </message>
    <message>
        <source>Measurement Tool tip &amp;check</source>
        <translation>&amp;Prüfung der Tasterspitze</translation>
    </message>
    <message>
        <source>Check whether the tip of a Measurement Tool is where it is said to be</source>
        <translation>Prüfen, ob die Spitze eines Messwerkzeugs dort ist, wo sie sein soll</translation>
    </message>
    <message>
        <source>Measurement Tool Tip Check</source>
        <translation>Prüfung der Tasterspitze</translation>
    </message>
    <message>
        <source>&amp;Tracking</source>
        <translation>&amp;Tracking</translation>
    </message>
    <message>
        <source>Measurement Tool &amp;points</source>
        <translation>Messp&amp;unkte</translation>
    </message>
    <message>
        <source>Capture points with the tip of a Measurement Tool, and list them</source>
        <translation>Mit der Spitze eines Messwerkzeugs Punkte aufnehmen und auflisten</translation>
    </message>
    <message>
        <source>Measurement Tool Points</source>
        <translation>Messpunkte</translation>
    </message>
</context>
<context>
    <name>RoseView</name>
    <message>
        <source>Directions of tilt</source>
        <translation>Neigungsrichtungen</translation>
    </message>
    <message>
        <source>Directions in which the tool has been tilted, seen from above: filled ones are reached, the triangles point to those that are missing, the ring is the tool.</source>
        <translation>Richtungen, in die das Werkzeug geneigt worden ist, von oben gesehen: gefüllte sind erreicht, die Dreiecke zeigen zu den fehlenden, der Ring ist das Werkzeug.</translation>
    </message>
</context>
<context>
    <name>TipCheckPanel</name>
    <message>
        <source>&amp;Start</source>
        <translation>&amp;Start</translation>
    </message>
    <message>
        <source>Sto&amp;p</source>
        <translation>Sto&amp;pp</translation>
    </message>
    <message>
        <source>Start with the tool&apos;s first &amp;button</source>
        <translation>Mit der ersten Taste des Werkzeugs &amp;beginnen</translation>
    </message>
    <message>
        <source>The tool&apos;s tip tolerance on the controller, or yours for this session; nothing is written to the controller</source>
        <translation>Die Spitzentoleranz des Werkzeugs auf dem Controller oder Ihre für diese Sitzung; auf den Controller wird nichts geschrieben</translation>
    </message>
    <message>
        <source>What to do</source>
        <translation>Was zu tun ist</translation>
    </message>
    <message>
        <source>How far the check is</source>
        <translation>Stand der Prüfung</translation>
    </message>
    <message>
        <source>Figures of the result</source>
        <translation>Zahlen des Ergebnisses</translation>
    </message>
    <message>
        <source>To&amp;ol:</source>
        <translation>W&amp;erkzeug:</translation>
    </message>
    <message>
        <source>To&amp;lerance [mm]:</source>
        <translation>To&amp;leranz [mm]:</translation>
    </message>
    <message>
        <source>%1 s, %2 poses, %3 % of the time hidden</source>
        <translation>%1 s, %2 Posen, %3 % der Zeit verdeckt</translation>
    </message>
    <message>
        <source>No tracking runs. Start it to check a tip.</source>
        <translation>Es läuft kein Tracking. Starten Sie es, um eine Spitze zu prüfen.</translation>
    </message>
    <message>
        <source>The controller has no calibrated Measurement Tool.</source>
        <translation>Der Controller hat kein kalibriertes Messwerkzeug.</translation>
    </message>
    <message>
        <source>Put the tip into a hollow, press Start or the tool&apos;s first button, and tilt the tool slowly to all sides for some ten seconds.</source>
        <translation>Setzen Sie die Spitze in eine Mulde, drücken Sie Start oder die erste Taste des Werkzeugs und neigen Sie es langsam etwa zehn Sekunden lang nach allen Seiten.</translation>
    </message>
    <message>
        <source>What the buttons on the tool do</source>
        <translation>Was die Tasten am Werkzeug bewirken</translation>
    </message>
    <message>
        <source>%1 does nothing while the tip check runs</source>
        <translation>%1 bewirkt nichts, solange die Prüfung der Spitze läuft</translation>
    </message>
    <message>
        <source>%1 starts a tip check</source>
        <translation>%1 beginnt eine Prüfung der Spitze</translation>
    </message>
    <message>
        <source>Put the tip into a hollow, press Start, and tilt the tool slowly to all sides for some ten seconds.</source>
        <translation>Setzen Sie die Spitze in eine Mulde, drücken Sie Start und neigen Sie das Werkzeug langsam etwa zehn Sekunden lang nach allen Seiten.</translation>
    </message>
    <message>
        <source>A recording is played: nothing is checked.</source>
        <translation>Eine Aufzeichnung wird wiedergegeben: Es wird nichts geprüft.</translation>
    </message>
</context>
<context>
    <name>TipCheckTexts</name>
    <message>
        <source>No result: this motion does not determine the tip.</source>
        <translation>Kein Ergebnis: Diese Bewegung bestimmt die Spitze nicht.</translation>
    </message>
    <message>
        <source>Tilt more slowly.</source>
        <translation>Neigen Sie langsamer.</translation>
    </message>
    <message>
        <source>Tilt further and for longer.</source>
        <translation>Neigen Sie weiter und länger.</translation>
    </message>
    <message>
        <source>Tilt the tool to all sides.</source>
        <translation>Neigen Sie das Werkzeug nach allen Seiten.</translation>
    </message>
    <message>
        <source>Tilt more to left and right.</source>
        <translation>Neigen Sie mehr nach links und rechts.</translation>
    </message>
    <message>
        <source>Tilt more to front and back.</source>
        <translation>Neigen Sie mehr nach vorn und hinten.</translation>
    </message>
    <message>
        <source>Tilt more to front right and back left.</source>
        <translation>Neigen Sie mehr nach vorn rechts und hinten links.</translation>
    </message>
    <message>
        <source>Tilt more to front left and back right.</source>
        <translation>Neigen Sie mehr nach vorn links und hinten rechts.</translation>
    </message>
    <message>
        <source>The tool is hidden.</source>
        <translation>Das Werkzeug ist verdeckt.</translation>
    </message>
    <message>
        <source>The reference %1 is lost.</source>
        <translation>Die Referenz %1 ist verloren.</translation>
    </message>
    <message>
        <source>No data come.</source>
        <translation>Es kommen keine Daten.</translation>
    </message>
    <message>
        <source>The tip seems to slip.</source>
        <translation>Die Spitze scheint zu rutschen.</translation>
    </message>
    <message>
        <source>Go on. So far: %1 mm.</source>
        <translation>Weiter so. Bisher: %1 mm.</translation>
    </message>
    <message>
        <source>Go on.</source>
        <translation>Weiter so.</translation>
    </message>
    <message>
        <source>A tolerance would decide.</source>
        <translation>Eine Toleranz würde entscheiden.</translation>
    </message>
    <message>
        <source>The error is too close to the tolerance to be told from it.</source>
        <translation>Der Fehler ist zu nah an der Toleranz, um ihn davon zu unterscheiden.</translation>
    </message>
    <message>
        <source>Tilt by %1 degrees instead of %2.</source>
        <translation>Neigen Sie um %1 Grad statt um %2.</translation>
    </message>
    <message>
        <source>Tilt by %1 degrees instead of %2, and for longer.</source>
        <translation>Neigen Sie um %1 Grad statt um %2, und länger.</translation>
    </message>
    <message>
        <source>Tilt for longer.</source>
        <translation>Neigen Sie länger.</translation>
    </message>
    <message>
        <source>No result: the tip has slipped by %1 mm. Hold it in the hollow and start again.</source>
        <translation>Kein Ergebnis: Die Spitze ist um %1 mm gerutscht. Halten Sie sie in der Mulde und beginnen Sie von vorn.</translation>
    </message>
    <message>
        <source>The tip conforms: wrong by %1 mm, tolerance %2 mm.</source>
        <translation>Die Spitze stimmt: Abweichung %1 mm, Toleranz %2 mm.</translation>
    </message>
    <message>
        <source>The tip does not conform: wrong by %1 mm, tolerance %2 mm: calibrate again, menu Tracking, &quot;Measurement Tool tip calibration&quot;.</source>
        <translation>Die Spitze stimmt nicht: Abweichung %1 mm, Toleranz %2 mm: neu kalibrieren, Menü Tracking, „Kalibrierung der Tasterspitze“.</translation>
    </message>
    <message>
        <source>Undecided: wrong by %1 mm, tolerance %2 mm.</source>
        <translation>Unentschieden: Abweichung %1 mm, Toleranz %2 mm.</translation>
    </message>
    <message>
        <source>Error of the tip x, y, z [mm]</source>
        <translation>Abweichung der Spitze x, y, z [mm]</translation>
    </message>
    <message>
        <source>Its length ± radius of the 95 % region [mm]</source>
        <translation>Ihre Länge ± Radius des 95-%-Bereichs [mm]</translation>
    </message>
    <message>
        <source>Residual (RMS distance from the resting point) [mm]</source>
        <translation>Restfehler (RMS-Abstand vom Ruhepunkt) [mm]</translation>
    </message>
    <message>
        <source>Resting point x, y, z [mm]</source>
        <translation>Ruhepunkt x, y, z [mm]</translation>
    </message>
    <message>
        <source>Slip [mm]</source>
        <translation>Rutschen [mm]</translation>
    </message>
    <message>
        <source>Coverage (0 to 1), tilt [degrees]</source>
        <translation>Abdeckung (0 bis 1), Neigung [Grad]</translation>
    </message>
    <message>
        <source>Poses, duration [s], hidden [%]</source>
        <translation>Posen, Dauer [s], verdeckt [%]</translation>
    </message>
</context>
<context>
    <name>points</name>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>conforms</source>
        <translation>erfüllt</translation>
    </message>
    <message>
        <source>does not conform</source>
        <translation>nicht erfüllt</translation>
    </message>
    <message>
        <source>undecided</source>
        <translation>unentschieden</translation>
    </message>
    <message>
        <source>the folder %1 cannot be made</source>
        <translation>Der Ordner %1 lässt sich nicht anlegen</translation>
    </message>
    <message>
        <source>the disk does not answer</source>
        <translation>der Datenträger antwortet nicht</translation>
    </message>
</context>
<context>
    <name>points::PointListModel</name>
    <message numerus="yes">
        <source>delete %n point(s)</source>
        <translation>
            <numerusform>%n Punkt löschen</numerusform>
            <numerusform>%n Punkte löschen</numerusform>
        </translation>
    </message>
    <message>
        <source>rename %1</source>
        <translation>%1 umbenennen</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>x [mm]</source>
        <translation>x [mm]</translation>
    </message>
    <message>
        <source>y [mm]</source>
        <translation>y [mm]</translation>
    </message>
    <message>
        <source>z [mm]</source>
        <translation>z [mm]</translation>
    </message>
    <message>
        <source>Standard deviation of the samples along x</source>
        <translation>Standardabweichung der Messwerte in x</translation>
    </message>
    <message>
        <source>s x [mm]</source>
        <translation>s x [mm]</translation>
    </message>
    <message>
        <source>Standard deviation of the samples along y</source>
        <translation>Standardabweichung der Messwerte in y</translation>
    </message>
    <message>
        <source>s y [mm]</source>
        <translation>s y [mm]</translation>
    </message>
    <message>
        <source>Standard deviation of the samples along z</source>
        <translation>Standardabweichung der Messwerte in z</translation>
    </message>
    <message>
        <source>s z [mm]</source>
        <translation>s z [mm]</translation>
    </message>
    <message>
        <source>Greatest distance of a sample from the point</source>
        <translation>Größter Abstand eines Messwerts vom Punkt</translation>
    </message>
    <message>
        <source>Greatest [mm]</source>
        <translation>Größter [mm]</translation>
    </message>
    <message>
        <source>Samples</source>
        <translation>Messwerte</translation>
    </message>
    <message>
        <source>Duration [s]</source>
        <translation>Dauer [s]</translation>
    </message>
    <message>
        <source>Tool</source>
        <translation>Werkzeug</translation>
    </message>
    <message>
        <source>Reference</source>
        <translation>Referenz</translation>
    </message>
    <message>
        <source>Time (UTC)</source>
        <translation>Zeit (UTC)</translation>
    </message>
    <message>
        <source>Greatest distance with the point&apos;s uncertainty against the tolerance</source>
        <translation>Größter Abstand mit der Unsicherheit des Punkts gegen die Toleranz</translation>
    </message>
    <message>
        <source>Verdict</source>
        <translation>Urteil</translation>
    </message>
    <message>
        <source>Distance to the point before, with the half width of its 95 % interval</source>
        <translation>Abstand zum vorigen Punkt, mit der halben Breite seines 95-%-Bereichs</translation>
    </message>
    <message>
        <source>Distance to the one before [mm]</source>
        <translation>Abstand zum vorigen [mm]</translation>
    </message>
</context>
</TS>
