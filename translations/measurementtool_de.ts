<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CalibrationProgressDialog</name>
    <message>
        <source>Calibration Progress</source>
        <translation>Kalibrierung läuft</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>all</source>
        <translation>gesamt</translation>
    </message>
    <message>
        <source>step</source>
        <translation>Schritt</translation>
    </message>
    <message>
        <source>remaining time: </source>
        <translation>Restzeit: </translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Overall progress</source>
        <translation>Gesamtfortschritt</translation>
    </message>
    <message>
        <source>Progress of the step</source>
        <translation>Fortschritt des Schritts</translation>
    </message>
</context>
<context>
    <name>CalibrationProgressDlg</name>
    <message>
        <source> is a %1 step calibration.</source>
        <translation> ist eine Kalibrierung in %1 Schritten.</translation>
    </message>
    <message>
        <source>remaining time: %1 seconds</source>
        <translation>Restzeit: %1 Sekunden</translation>
    </message>
    <message>
        <source>calculating...</source>
        <translation>Berechnung läuft ...</translation>
    </message>
    <message>
        <source>Calibration Error</source>
        <translation>Fehler bei der Kalibrierung</translation>
    </message>
</context>
<context>
    <name>CountdownDialog</name>
    <message>
        <source>Waiting</source>
        <translation>Bitte warten</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Start now</source>
        <translation>Jetzt starten</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Seconds left</source>
        <translation>Verbleibende Sekunden</translation>
    </message>
</context>
<context>
    <name>MeasurementToolModule</name>
    <message>
        <source>GUI Measurement Tool</source>
        <translation>Messwerkzeug</translation>
    </message>
    <message>
        <source>&amp;Measurement Tool</source>
        <translation>&amp;Messwerkzeug</translation>
    </message>
    <message>
        <source>Open the Measurement Tool settings dialog</source>
        <translation>Die Einstellungen der Messwerkzeuge öffnen</translation>
    </message>
    <message>
        <source>Change the Measurement Tool settings</source>
        <translation>Die Einstellungen der Messwerkzeuge ändern</translation>
    </message>
    <message>
        <source>Measurement &amp;Tool tip calibration</source>
        <translation>Kalibrierung der &amp;Tasterspitze</translation>
    </message>
    <message>
        <source>Open the Measurement Tool tip calibration</source>
        <translation>Die Kalibrierung der Tasterspitze öffnen</translation>
    </message>
    <message>
        <source>Perform Measurement Tool tip calibration</source>
        <translation>Die Tasterspitze eines Messwerkzeugs kalibrieren</translation>
    </message>
    <message>
        <source>&amp;Tracking</source>
        <translation>&amp;Tracking</translation>
    </message>
    <message>
        <source>Measurement Tool Display</source>
        <translation>Anzeige der Messwerkzeuge</translation>
    </message>
    <message>
        <source>Show the Measurement Tool tracking data</source>
        <translation>Die Trackingdaten der Messwerkzeuge anzeigen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
</context>
<context>
    <name>MtCalibrationDlg</name>
    <message>
        <source>as shown in the picture with &lt;b&gt;fixed tip!&lt;/b&gt;</source>
        <translation>wie im Bild bei &lt;b&gt;feststehender Spitze!&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Tracking is not available!</source>
        <translation>Tracking ist nicht verfügbar!</translation>
    </message>
    <message>
        <source>No Measurement Tool is defined!</source>
        <translation>Es ist kein Messwerkzeug eingerichtet!</translation>
    </message>
    <message>
        <source>No Measurement Tool is calibrated!</source>
        <translation>Es ist kein Messwerkzeug kalibriert!</translation>
    </message>
    <message>
        <source>Measurement Tool is not available!</source>
        <translation>Das Messwerkzeug ist nicht verfügbar!</translation>
    </message>
    <message>
        <source>Calibration Measurement Tool is not available!</source>
        <translation>Die Kalibrierung des Messwerkzeugs ist nicht verfügbar!</translation>
    </message>
    <message>
        <source>Measurement Tool Calibration</source>
        <translation>Kalibrierung des Messwerkzeugs</translation>
    </message>
    <message>
        <source>Measurement Tool calibration is not available</source>
        <translation>Die Kalibrierung des Messwerkzeugs ist nicht verfügbar</translation>
    </message>
</context>
<context>
    <name>MtCalibrationDlgClass</name>
    <message>
        <source>Measurement Tool Tip Calibration</source>
        <translation>Kalibrierung der Tasterspitze</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;During the calibration process the Measurement Tool must be seesawed without moving the tool tip&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Während der Kalibrierung muss das Messwerkzeug gekippt werden, ohne dass sich die Spitze bewegt&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>for the tool tip calibration follow these steps:</source>
        <translation>So wird die Tasterspitze kalibriert:</translation>
    </message>
    <message>
        <source>1. start the calibration process</source>
        <translation>1. Kalibrierung starten</translation>
    </message>
    <message>
        <source>2. during the calibration move the Measurement Tool</source>
        <translation>2. Messwerkzeug währenddessen bewegen,</translation>
    </message>
    <message>
        <source>as shown in the picture with fixed tip!</source>
        <translation>wie im Bild bei feststehender Spitze!</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Start the calibration process</source>
        <translation>Die Kalibrierung starten</translation>
    </message>
    <message>
        <source>&amp;Calibrate</source>
        <translation>&amp;Kalibrieren</translation>
    </message>
    <message>
        <source>Close the dialog</source>
        <translation>Den Dialog schließen</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>MtDataDisplay</name>
    <message>
        <source>reference ID</source>
        <translation>Referenz</translation>
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
        <source>rx [deg]</source>
        <translation>rx [Grad]</translation>
    </message>
    <message>
        <source>ry [deg]</source>
        <translation>ry [Grad]</translation>
    </message>
    <message>
        <source>rz [deg]</source>
        <translation>rz [Grad]</translation>
    </message>
    <message>
        <source>tool ID</source>
        <translation>Werkzeug</translation>
    </message>
    <message>
        <source>b1</source>
        <translation>T1</translation>
    </message>
    <message>
        <source>b2</source>
        <translation>T2</translation>
    </message>
    <message>
        <source>b3</source>
        <translation>T3</translation>
    </message>
</context>
<context>
    <name>MtDataDisplayClass</name>
    <message>
        <source>MtDataDisplay</source>
        <translation>MtDataDisplay</translation>
    </message>
    <message>
        <source>This is a list of all &apos;Measurement Tools&apos; and their current tracking status</source>
        <translation>Alle Messwerkzeuge und ihr augenblicklicher Trackingzustand</translation>
    </message>
    <message>
        <source>Measurement Tools</source>
        <translation>Messwerkzeuge</translation>
    </message>
    <message>
        <source>References</source>
        <translation>Referenzen</translation>
    </message>
</context>
<context>
    <name>MtHelpDlgClass</name>
    <message>
        <source>Measurement Tool Tip Calibration Help</source>
        <translation>Hilfe zur Kalibrierung der Tasterspitze</translation>
    </message>
    <message>
        <source>&lt;!DOCTYPE HTML PUBLIC &quot;-//W3C//DTD HTML 4.0//EN&quot; &quot;http://www.w3.org/TR/REC-html40/strict.dtd&quot;&gt;
&lt;html&gt;&lt;head&gt;&lt;meta name=&quot;qrichtext&quot; content=&quot;1&quot; /&gt;&lt;style type=&quot;text/css&quot;&gt;
p, li { white-space: pre-wrap; }
&lt;/style&gt;&lt;/head&gt;&lt;body&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;span style=&quot; font-weight:600;&quot;&gt;Result of the Measurement Tool Tip calibration:&lt;/span&gt;&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;The Measurement Tool Tip calibration changes the body&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;coordinate system according to the following rules:&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;1. The origin of the body coordinate system is moved&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;into the tip of the Measurement Tool.&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;2. The connection line between tip and the marker&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;with the biggest distance to it defines the z-axis.&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;The positive z-axis directs towards the tip.&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;3. The y-axis is defined by the perpendicular from the&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;marker with the smallest distance between&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;marker and tip to the z-axis.&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;4. The orientation of the x-axis results from the&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;definition of the right-hand rule.&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;!DOCTYPE HTML PUBLIC &quot;-//W3C//DTD HTML 4.0//EN&quot; &quot;http://www.w3.org/TR/REC-html40/strict.dtd&quot;&gt;
&lt;html&gt;&lt;head&gt;&lt;meta name=&quot;qrichtext&quot; content=&quot;1&quot; /&gt;&lt;style type=&quot;text/css&quot;&gt;
p, li { white-space: pre-wrap; }
&lt;/style&gt;&lt;/head&gt;&lt;body&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;span style=&quot; font-weight:600;&quot;&gt;Ergebnis der Kalibrierung der Tasterspitze:&lt;/span&gt;&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;Die Kalibrierung ändert das Koordinatensystem des&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;Körpers nach folgenden Regeln:&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;1. Der Ursprung des Koordinatensystems wird in die&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;Spitze des Messwerkzeugs verschoben.&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;2. Die Verbindungslinie zwischen der Spitze und dem am&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;weitesten entfernten Marker ist die z-Achse.&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;Die positive z-Achse zeigt zur Spitze.&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;3. Die y-Achse ist das Lot auf die z-Achse von&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;demjenigen Marker, der der Spitze&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;am nächsten liegt.&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;4. Die Richtung der x-Achse ergibt sich aus der&lt;/p&gt;
&lt;p style=&quot; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;Rechte-Hand-Regel.&lt;/p&gt;
&lt;p style=&quot;-qt-paragraph-type:empty; margin-top:0px; margin-bottom:0px; margin-left:0px; margin-right:0px; -qt-block-indent:0; text-indent:0px;&quot;&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>MtResultDlgClass</name>
    <message>
        <source>Measurement Tool Tip Calibration Result</source>
        <translation>Ergebnis der Kalibrierung</translation>
    </message>
    <message>
        <source>Shows the Measurement Tool tip calibration result</source>
        <translation>Zeigt das Ergebnis der Kalibrierung der Tasterspitze</translation>
    </message>
    <message>
        <source>Measurement Tool ID</source>
        <translation>Messwerkzeug</translation>
    </message>
    <message>
        <source>Reference ID</source>
        <translation>Referenz</translation>
    </message>
    <message>
        <source>Tool tip residual [mm]</source>
        <translation>Restfehler der Spitze [mm]</translation>
    </message>
    <message>
        <source>Accept the calibration result</source>
        <translation>Das Ergebnis übernehmen</translation>
    </message>
    <message>
        <source>&amp;Accept</source>
        <translation>&amp;Übernehmen</translation>
    </message>
    <message>
        <source>Discard the calibration result</source>
        <translation>Das Ergebnis verwerfen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Calibration result</source>
        <translation>Ergebnis der Kalibrierung</translation>
    </message>
</context>
<context>
    <name>MtSettingsDlg</name>
    <message>
        <source>Measurement Tool is not available!</source>
        <translation>Das Messwerkzeug ist nicht verfügbar!</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Tip diameter [mm]</source>
        <translation>Spitzen-Ø [mm]</translation>
    </message>
    <message>
        <source>Reference ID</source>
        <translation>Referenz</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Serial</source>
        <translation>S/N</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Max. number of Measurement Tools and references are reached!</source>
        <translation>Höchstzahl an Messwerkzeugen und Referenzen erreicht!</translation>
    </message>
    <message>
        <source>Max. number of bodies is reached!</source>
        <translation>Höchstzahl an Körpern erreicht!</translation>
    </message>
    <message>
        <source>Max. number of Measurement Tools is reached!</source>
        <translation>Höchstzahl an Messwerkzeugen erreicht!</translation>
    </message>
    <message>
        <source>Max. number of references is reached!</source>
        <translation>Höchstzahl an Referenzen erreicht!</translation>
    </message>
    <message>
        <source>SortColumn_Key</source>
        <translation>Sortierschlüssel</translation>
    </message>
    <message>
        <source>Vendor</source>
        <translation>Hersteller</translation>
    </message>
    <message>
        <source>Model_intern</source>
        <translation>Modell (intern)</translation>
    </message>
</context>
<context>
    <name>MtSettingsDlgClass</name>
    <message>
        <source>Measurement Tool Settings</source>
        <translation>Einstellungen der Messwerkzeuge</translation>
    </message>
    <message>
        <source>Measurement Tool settings</source>
        <translation>Einstellungen der Messwerkzeuge</translation>
    </message>
    <message>
        <source>Adjust the number of Measurement Tools</source>
        <translation>Die Anzahl der Messwerkzeuge einstellen</translation>
    </message>
    <message>
        <source>&amp;number of Measurement Tools</source>
        <translation>A&amp;nzahl der Messwerkzeuge</translation>
    </message>
    <message>
        <source>Adjust the number of references</source>
        <translation>Die Anzahl der Referenzen einstellen</translation>
    </message>
    <message>
        <source>number of &amp;references</source>
        <translation>Anzahl der &amp;Referenzen</translation>
    </message>
    <message>
        <source>Measurement Tools</source>
        <translation>Messwerkzeuge</translation>
    </message>
    <message>
        <source>Assignments between Measurement Tools and references</source>
        <translation>Zuordnungen zwischen Messwerkzeugen und Referenzen</translation>
    </message>
    <message>
        <source>Set assignment between Measurement Tool and reference</source>
        <translation>Dem Messwerkzeug die Referenz zuordnen</translation>
    </message>
    <message>
        <source>&lt;&lt; &amp;Select    </source>
        <translation>&lt;&lt; Zu&amp;ordnen    </translation>
    </message>
    <message>
        <source>Dissolve assignment between Measurement Tool and reference</source>
        <translation>Die Zuordnung von Messwerkzeug und Referenz aufheben</translation>
    </message>
    <message>
        <source>&gt;&gt; &amp;Deselect</source>
        <translation>&gt;&gt; &amp;Lösen</translation>
    </message>
    <message>
        <source>available Buttons</source>
        <translation>Verfügbare Tasten</translation>
    </message>
    <message>
        <source>Available references</source>
        <translation>Verfügbare Referenzen</translation>
    </message>
    <message>
        <source>reference bodies</source>
        <translation>Referenzkörper</translation>
    </message>
    <message>
        <source>radio devices</source>
        <translation>Funkgeräte</translation>
    </message>
    <message>
        <source>Control is checked:
Old output format 6dmt is activated.

Control is unchecked:
New output format 6dmt2 is activated.

See output settings.

</source>
        <translation>Angekreuzt:
Das alte Ausgabeformat 6dmt ist aktiv.

Nicht angekreuzt:
Das neue Ausgabeformat 6dmt2 ist aktiv.

Siehe Ausgabeeinstellungen.

</translation>
    </message>
    <message>
        <source>use &amp;old output format</source>
        <translation>Altes Ausgabe&amp;format verwenden</translation>
    </message>
    <message>
        <source>point measurement</source>
        <translation>Punktmessung</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Measurement duration&lt;/p&gt;&lt;p&gt;Valid rage: [0.2 ... 10.0 s]&lt;/p&gt;&lt;p&gt;Default value: 1.0 s&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Messdauer&lt;/p&gt;&lt;p&gt;Gültiger Bereich: [0,2 ... 10,0 s]&lt;/p&gt;&lt;p&gt;Voreinstellung: 1,0 s&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>m&amp;easurement duration [s]</source>
        <translation>M&amp;essdauer [s]</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Tolerance of the tool tip to be still considered as static&lt;/p&gt;&lt;p&gt;Valid range: [0.1 ... 5.0 mm]&lt;/p&gt;&lt;p&gt;Default value: 1.5 mm&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Bis zu dieser Abweichung gilt die Spitze noch als ruhend&lt;/p&gt;&lt;p&gt;Gültiger Bereich: [0,1 ... 5,0 mm]&lt;/p&gt;&lt;p&gt;Voreinstellung: 1,5 mm&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&amp;tool tip tolerance [mm]</source>
        <translation>&amp;Toleranz der Spitze [mm]</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Tolerance that the tool tip is still considered as static&lt;/p&gt;&lt;p&gt;Valid range: [0.1 ... 5.0 mm]&lt;/p&gt;&lt;p&gt;Default value: 1.5 mm&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Bis zu dieser Abweichung gilt die Spitze noch als ruhend&lt;/p&gt;&lt;p&gt;Gültiger Bereich: [0,1 ... 5,0 mm]&lt;/p&gt;&lt;p&gt;Voreinstellung: 1,5 mm&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Activate start simulation&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Den Messbeginn durch Neigen auslösen&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&amp;activate measurement start simulation</source>
        <translation>&amp;Messbeginn durch Neigen auslösen</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Minimal angular variation to start the measurement effected by seesawing of the Measurement Tool&lt;/p&gt;&lt;p&gt;Valid range: [10 ... 120 degrees]&lt;/p&gt;&lt;p&gt;Default value: 40 degrees&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Kleinste Winkeländerung beim Kippen des Messwerkzeugs, die eine Messung auslöst&lt;/p&gt;&lt;p&gt;Gültiger Bereich: [10 ... 120 Grad]&lt;/p&gt;&lt;p&gt;Voreinstellung: 40 Grad&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>minimal angular &amp;variation [deg]</source>
        <translation>Kleinste &amp;Winkeländerung [Grad]</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Lead time before the measurement is started [s]&lt;/p&gt;&lt;p&gt;Valid range: [0.2 ... 1.0s]&lt;/p&gt;&lt;p&gt;Default value: 0.2s&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Vorlaufzeit bis zum Messbeginn [s]&lt;/p&gt;&lt;p&gt;Gültiger Bereich: [0,2 ... 1,0 s]&lt;/p&gt;&lt;p&gt;Voreinstellung: 0,2 s&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>maximum &amp;lead time for this angular variation [s]</source>
        <translation>Größte &amp;Vorlaufzeit dafür [s]</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Lead time before the measurement is started [s]&lt;/p&gt;&lt;p&gt;Valid range: [0.1 ... 1.0s]&lt;/p&gt;&lt;p&gt;Default value: 0.2s&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Vorlaufzeit bis zum Messbeginn [s]&lt;/p&gt;&lt;p&gt;Gültiger Bereich: [0,1 ... 1,0 s]&lt;/p&gt;&lt;p&gt;Voreinstellung: 0,2 s&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Accept changes</source>
        <translation>Die Änderungen übernehmen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Discard changes and close dialog</source>
        <translation>Die Änderungen verwerfen und den Dialog schließen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>References</source>
        <translation>Referenzen</translation>
    </message>
    <message>
        <source>Radio devices</source>
        <translation>Funkgeräte</translation>
    </message>
</context>
</TS>
