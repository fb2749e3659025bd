<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
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
