<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
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
        <translation>&amp;Verwerfen</translation>
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
        <source>&amp;Capture</source>
        <translation>&amp;Punkt aufnehmen</translation>
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
        <source>&amp;Tool</source>
        <translation>&amp;Werkzeug</translation>
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
        <translation>&amp;Auslösung</translation>
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
        <translation>&amp;Taste</translation>
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
        <translation>&amp;Dauer</translation>
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
        <source>T&amp;olerance</source>
        <translation>Toleran&amp;z</translation>
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
        <source>to&amp;lerance</source>
        <translation>To&amp;leranz</translation>
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
        <translation>Wieder&amp;holen</translation>
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
        <source>Nothing exported: %1: %2</source>
        <translation>Nichts exportiert: %1: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n point(s) exported to %1</source>
        <translation>
            <numerusform>%n Punkt nach %1 exportiert</numerusform>
            <numerusform>%n Punkte nach %1 exportiert</numerusform>
        </translation>
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
        <translation>&amp;Messpunkte</translation>
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
    <name>TipCheckPanel</name>
    <message>
        <source>Tracking runs.</source>
        <translation>Das Tracking läuft.</translation>
    </message>
    <message>
        <source>No tracking runs.</source>
        <translation>Es läuft kein Tracking.</translation>
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
