<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>AboutWindow</name>
    <message>
        <source>About Murmel</source>
        <translation>Über Murmel</translation>
    </message>
    <message>
        <source>Private dictation. Your voice and your words stay on this computer.</source>
        <translation>Privates Diktieren. Ihre Stimme und Ihre Worte bleiben auf diesem Computer.</translation>
    </message>
    <message>
        <source>Version %1 (build %2)</source>
        <translation>Version %1 (Build %2)</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Diagnostics</source>
        <translation>Diagnose</translation>
    </message>
    <message>
        <source>Version, desktop and checks for a report. No words of yours.</source>
        <translation>Version, Desktop und Prüfungen für einen Bericht. Keines Ihrer Worte.</translation>
    </message>
    <message>
        <source>Copied. Paste it into your report.</source>
        <translation>Kopiert. Fügen Sie es in Ihren Bericht ein.</translation>
    </message>
    <message>
        <source>Credits</source>
        <translation>Mitwirkende</translation>
    </message>
    <message>
        <source>The people whose work Murmel stands on, and their licenses.</source>
        <translation>Die Menschen, auf deren Arbeit Murmel beruht, und ihre Lizenzen.</translation>
    </message>
    <message>
        <source>Show…</source>
        <translation>Anzeigen …</translation>
    </message>
    <message>
        <source>Tip jar</source>
        <translation>Trinkgeld</translation>
    </message>
    <message>
        <source>Opens %1 in your browser. A tip is a thank-you: it unlocks nothing, and everything works without it.</source>
        <translation>Öffnet %1 im Browser. Ein Trinkgeld ist ein Dankeschön: Es schaltet nichts frei, und alles geht auch ohne.</translation>
    </message>
    <message>
        <source>Leave a Tip…</source>
        <translation>Trinkgeld geben …</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>AdvancedPage</name>
    <message>
        <source>Advanced</source>
        <translation>Erweitert</translation>
    </message>
    <message>
        <source>Recognition</source>
        <translation>Erkennung</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Aktualisierungen</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Automatisch nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation>Einstellungsdatei</translation>
    </message>
    <message>
        <source>Export settings</source>
        <translation>Einstellungen exportieren</translation>
    </message>
    <message>
        <source>As JSON, without vocabulary, history and keys.</source>
        <translation>Als JSON, ohne Wörterbuch, Verlauf und Schlüssel.</translation>
    </message>
    <message>
        <source>Export…</source>
        <translation>Exportieren …</translation>
    </message>
    <message>
        <source>Import settings</source>
        <translation>Einstellungen importieren</translation>
    </message>
    <message>
        <source>Settings that the file does not name stay as they are.</source>
        <translation>Was die Datei nicht nennt, bleibt, wie es ist.</translation>
    </message>
    <message>
        <source>Import…</source>
        <translation>Importieren …</translation>
    </message>
    <message>
        <source>Export Settings</source>
        <translation>Einstellungen exportieren</translation>
    </message>
    <message>
        <source>The settings are in %1.</source>
        <translation>Die Einstellungen sind in %1.</translation>
    </message>
    <message>
        <source>The settings of the file are in effect.</source>
        <translation>Die Einstellungen der Datei gelten jetzt.</translation>
    </message>
    <message>
        <source>Import Settings</source>
        <translation>Einstellungen importieren</translation>
    </message>
    <message>
        <source>Settings (*.json);;All files (*)</source>
        <translation>Einstellungen (*.json);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Keep the speech model in memory</source>
        <translation>Sprachmodell im Speicher behalten</translation>
    </message>
    <message>
        <source>After the last dictation. It is loaded again while you speak the next one.</source>
        <translation>Nach dem letzten Diktat. Beim nächsten wird es wieder geladen, während Sie sprechen.</translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 Minute</translation>
    </message>
    <message>
        <source>10 minutes</source>
        <translation>10 Minuten</translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 Stunde</translation>
    </message>
    <message>
        <source>Always</source>
        <translation>Immer</translation>
    </message>
    <message>
        <source>At most once a day. Nothing is downloaded or installed without your word.</source>
        <translation>Höchstens einmal am Tag. Ohne Ihr Wort wird nichts geladen oder installiert.</translation>
    </message>
    <message>
        <source>Work ahead while I speak</source>
        <translation>Beim Sprechen vorarbeiten</translation>
    </message>
    <message>
        <source>Recognizes what you have said during a long dictation, so that the words come sooner after it. Nothing is inserted by this. From the next dictation.</source>
        <translation>Erkennt schon während eines langen Diktats, was gesagt wurde, damit die Wörter danach schneller kommen. Eingefügt wird dadurch nichts. Ab dem nächsten Diktat.</translation>
    </message>
</context>
<context>
    <name>AudioPage</name>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>Murmel records from the microphone that the desktop uses, into memory only.</source>
        <translation>Murmel nimmt von dem Mikrofon auf, das der Desktop verwendet, und nur in den Arbeitsspeicher.</translation>
    </message>
    <message>
        <source>Test Microphone</source>
        <translation>Mikrofon testen</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>Sound Settings…</source>
        <translation>Klangeinstellungen …</translation>
    </message>
    <message>
        <source>Microphone in use</source>
        <translation>Verwendetes Mikrofon</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Pegel</translation>
    </message>
    <message>
        <source>Start the test and say a sentence. Nothing of it is kept.</source>
        <translation>Starten Sie den Test und sagen Sie einen Satz. Nichts davon wird behalten.</translation>
    </message>
    <message>
        <source>input volume gain meter</source>
        <translation>eingangslautstärke verstärkung anzeige</translation>
    </message>
    <message>
        <source>The microphone cannot be tried in this session.</source>
        <translation>Das Mikrofon lässt sich in dieser Sitzung nicht testen.</translation>
    </message>
    <message>
        <source>Sounds</source>
        <translation>Klänge</translation>
    </message>
    <message>
        <source>Play sounds</source>
        <translation>Klänge abspielen</translation>
    </message>
    <message>
        <source>A short sound when recording starts, and another when it stops.</source>
        <translation>Ein kurzer Klang, wenn die Aufnahme beginnt, und einer, wenn sie endet.</translation>
    </message>
    <message>
        <source>There is no microphone.</source>
        <translation>Es gibt kein Mikrofon.</translation>
    </message>
    <message>
        <source>Stop Test</source>
        <translation>Test beenden</translation>
    </message>
    <message>
        <source>Nothing is heard yet. Is the microphone muted?</source>
        <translation>Noch ist nichts zu hören. Ist das Mikrofon stumm?</translation>
    </message>
    <message>
        <source>Very quiet. Come closer, or raise the input volume.</source>
        <translation>Sehr leise. Kommen Sie näher oder erhöhen Sie die Eingangslautstärke.</translation>
    </message>
    <message>
        <source>The level is good.</source>
        <translation>Der Pegel ist gut.</translation>
    </message>
    <message>
        <source>Too loud. Lower the input volume a little.</source>
        <translation>Zu laut. Verringern Sie die Eingangslautstärke etwas.</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Mikrofonpegel</translation>
    </message>
    <message>
        <source>Choosing another one changes it for the whole desktop.</source>
        <translation>Ein anderes zu wählen ändert es für den ganzen Desktop.</translation>
    </message>
    <message>
        <source>This session has no list of microphones.</source>
        <translation>In dieser Sitzung gibt es keine Liste der Mikrofone.</translation>
    </message>
    <message>
        <source>Volume and devices</source>
        <translation>Lautstärke und Geräte</translation>
    </message>
    <message>
        <source>In the sound settings of the desktop.</source>
        <translation>In den Klangeinstellungen des Desktops.</translation>
    </message>
</context>
<context>
    <name>Common</name>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
</context>
<context>
    <name>CreditsWindow</name>
    <message>
        <source>Credits</source>
        <translation>Mitwirkende</translation>
    </message>
    <message>
        <source>What Murmel is made of</source>
        <translation>Woraus Murmel besteht</translation>
    </message>
    <message>
        <source>License</source>
        <translation>Lizenz</translation>
    </message>
    <message>
        <source>Libraries</source>
        <translation>Bibliotheken</translation>
    </message>
    <message>
        <source>Engines</source>
        <translation>Erkennungsprogramme</translation>
    </message>
    <message>
        <source>Models</source>
        <translation>Modelle</translation>
    </message>
    <message>
        <source>The list of credits is missing from this installation.</source>
        <translation>Die Liste der Mitwirkenden fehlt in dieser Installation.</translation>
    </message>
    <message>
        <source>The full text of the license is not on this computer; it is at %1.</source>
        <translation>Der volle Text der Lizenz ist nicht auf diesem Computer; er steht unter %1.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Taken from %1.</source>
        <translation>Entnommen aus %1.</translation>
    </message>
</context>
<context>
    <name>Dialogs</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>The file cannot be read.</source>
        <translation>Die Datei kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The file is too large.</source>
        <translation>Die Datei ist zu groß.</translation>
    </message>
    <message>
        <source>The file is not a text in UTF-8.</source>
        <translation>Die Datei ist kein Text in UTF-8.</translation>
    </message>
    <message>
        <source>The file cannot be written: %1</source>
        <translation>Die Datei kann nicht geschrieben werden: %1</translation>
    </message>
</context>
<context>
    <name>FirstRunWindow</name>
    <message>
        <source>Murmel Setup</source>
        <translation>Murmel einrichten</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Step %1 of %2</source>
        <translation>Schritt %1 von %2</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Finish Later</source>
        <translation>Später fertigstellen</translation>
    </message>
    <message>
        <source>Use %1</source>
        <translation>%1 verwenden</translation>
    </message>
</context>
<context>
    <name>GeneralPage</name>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Changes take effect at once. What is fixed while you speak takes effect with the next dictation, and says so.</source>
        <translation>Änderungen gelten sofort. Was beim Sprechen feststeht, gilt ab dem nächsten Diktat; dann steht es dabei.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Start when I log in</source>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Murmel waits in the tray and uses no processor time until you dictate.</source>
        <translation>Murmel wartet in der Symbolleiste und verbraucht keine Rechenzeit, bis Sie diktieren.</translation>
    </message>
    <message>
        <source>autostart login session boot</source>
        <translation>autostart anmeldung sitzung hochfahren</translation>
    </message>
    <message>
        <source>This session has no folder for programs that start with it.</source>
        <translation>Diese Sitzung hat keinen Ordner für Programme, die mit ihr starten.</translation>
    </message>
    <message>
        <source>This desktop lists every window: no program can keep out of its bar.</source>
        <translation>Dieser Desktop führt jedes Fenster auf: Kein Programm kann seiner Leiste fernbleiben.</translation>
    </message>
    <message>
        <source>Show in the task bar</source>
        <translation>In der Taskleiste zeigen</translation>
    </message>
    <message>
        <source>Without this, open windows appear in the tray icon&apos;s menu only.</source>
        <translation>Sonst sind offene Fenster nur über das Menü des Symbols erreichbar.</translation>
    </message>
    <message>
        <source>While you dictate</source>
        <translation>Beim Diktieren</translation>
    </message>
    <message>
        <source>live insertion phrases</source>
        <translation>live einfügen sätze</translation>
    </message>
    <message>
        <source>Restore the clipboard</source>
        <translation>Zwischenablage wiederherstellen</translation>
    </message>
    <message>
        <source>Murmel pastes through the clipboard. This puts back what you had copied before. Words that could not be pasted stay there for you, marked private; not every clipboard history heeds the mark.</source>
        <translation>Murmel fügt über die Zwischenablage ein. Danach steht dort wieder, was Sie zuvor kopiert hatten. Worte, die nicht eingefügt werden konnten, bleiben dort für Sie liegen, als privat markiert; nicht jeder Zwischenablage-Verlauf beachtet das.</translation>
    </message>
    <message>
        <source>Recording indicator</source>
        <translation>Aufnahmeanzeige</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>The edge of the screen where the indicator floats while Murmel listens.</source>
        <translation>Der Bildschirmrand, an dem die Anzeige schwebt, während Murmel zuhört.</translation>
    </message>
    <message>
        <source>overlay pill edge</source>
        <translation>anzeige rand einblendung</translation>
    </message>
    <message>
        <source>Keep the indicator on the screen</source>
        <translation>Anzeige auf dem Bildschirm lassen</translation>
    </message>
    <message>
        <source>A small button that starts a dictation. Without a shortcut it is always there.</source>
        <translation>Ein kleiner Knopf, der ein Diktat beginnt. Ohne Tastenkürzel ist er immer da.</translation>
    </message>
    <message>
        <source>Insert phrases while I speak</source>
        <translation>Sätze beim Sprechen einfügen</translation>
    </message>
    <message>
        <source>Looks for a phrase pause after at least 3 seconds, then inserts recognized and formatted phrases—not individual words. A phrase pause is a short silence. From the next dictation.</source>
        <translation>Sucht nach frühestens 3 Sekunden eine Sprechpause und fügt dann erkannte und formatierte Sätze ein – nicht einzelne Wörter. Eine Sprechpause ist eine kurze Stille. Ab dem nächsten Diktat.</translation>
    </message>
</context>
<context>
    <name>HistoryModel</name>
    <message numerus="yes">
        <source>%n word(s)</source>
        <translation>
            <numerusform>%n Wort</numerusform>
            <numerusform>%n Wörter</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n part(s) not recognized</source>
        <translation>
            <numerusform>%n Teil nicht erkannt</numerusform>
            <numerusform>%n Teile nicht erkannt</numerusform>
        </translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
</context>
<context>
    <name>HistoryWindow</name>
    <message>
        <source>Murmel History</source>
        <translation>Murmel – Verlauf</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste Again</source>
        <translation>Erneut einfügen</translation>
    </message>
    <message>
        <source>Delete…</source>
        <translation>Löschen …</translation>
    </message>
    <message>
        <source>Delete All…</source>
        <translation>Alles löschen …</translation>
    </message>
    <message>
        <source>Turn On</source>
        <translation>Einschalten</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Entsperren</translation>
    </message>
    <message>
        <source>Dictations</source>
        <translation>Diktate</translation>
    </message>
    <message>
        <source>Search dictations</source>
        <translation>Diktate durchsuchen</translation>
    </message>
    <message>
        <source>Auto-delete history</source>
        <translation>Verlauf automatisch löschen</translation>
    </message>
    <message>
        <source>The whole dictation</source>
        <translation>Das ganze Diktat</translation>
    </message>
    <message>
        <source>History is optional and off by default.</source>
        <translation>Der Verlauf ist freiwillig und anfangs ausgeschaltet.</translation>
    </message>
    <message>
        <source>No dictation is stored.</source>
        <translation>Es ist kein Diktat gespeichert.</translation>
    </message>
    <message>
        <source>No dictation has these words.</source>
        <translation>Kein Diktat enthält diese Wörter.</translation>
    </message>
    <message numerus="yes">
        <source>%n dictation(s)</source>
        <translation>
            <numerusform>%n Diktat</numerusform>
            <numerusform>%n Diktate</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n word(s)</source>
        <translation>
            <numerusform>%n Wort</numerusform>
            <numerusform>%n Wörter</numerusform>
        </translation>
    </message>
    <message>
        <source>Delete this dictation?</source>
        <translation>Dieses Diktat löschen?</translation>
    </message>
    <message>
        <source>It cannot be recovered.</source>
        <translation>Es lässt sich nicht wiederherstellen.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Delete the whole history?</source>
        <translation>Den ganzen Verlauf löschen?</translation>
    </message>
    <message>
        <source>Every entry, and the key that could read copies of it, is deleted. They cannot be recovered.</source>
        <translation>Jeder Eintrag und der Schlüssel, mit dem sich Kopien lesen ließen, werden gelöscht. Sie lassen sich nicht wiederherstellen.</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Alles löschen</translation>
    </message>
    <message>
        <source>What is stored cannot be read now.</source>
        <translation>Was gespeichert ist, lässt sich jetzt nicht lesen.</translation>
    </message>
</context>
<context>
    <name>Keys</name>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Fn</source>
        <translation>Fn</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>This desktop does not tell when keys are let go of: press once to start, and again to stop.</source>
        <translation>Dieser Desktop sagt nicht, wann Tasten losgelassen werden: einmal drücken zum Beginnen, nochmals zum Beenden.</translation>
    </message>
</context>
<context>
    <name>LanguagesPage</name>
    <message>
        <source>Languages</source>
        <translation>Sprachen</translation>
    </message>
    <message>
        <source>What you speak. Changes take effect with the next dictation.</source>
        <translation>Was Sie sprechen. Änderungen gelten ab dem nächsten Diktat.</translation>
    </message>
    <message>
        <source>Recognize</source>
        <translation>Erkennen</translation>
    </message>
    <message>
        <source>All languages, automatically</source>
        <translation>Alle Sprachen, automatisch</translation>
    </message>
    <message>
        <source>The languages I select</source>
        <translation>Die Sprachen, die ich wähle</translation>
    </message>
    <message>
        <source>One language only</source>
        <translation>Nur eine Sprache</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Speech is taken for this language, whatever it sounds like.</source>
        <translation>Gesprochenes gilt als diese Sprache, wie immer es klingt.</translation>
    </message>
    <message>
        <source>The language is recognized from what you say.</source>
        <translation>Die Sprache wird an dem erkannt, was Sie sagen.</translation>
    </message>
    <message>
        <source>The language is recognized from what you say; your list decides which correction is recommended.</source>
        <translation>Die Sprache wird an dem erkannt, was Sie sagen; Ihre Liste bestimmt, welche Korrektur empfohlen wird.</translation>
    </message>
    <message>
        <source>Short phrases are recognized more reliably when only one language comes into question.</source>
        <translation>Kurze Sätze werden sicherer erkannt, wenn nur eine Sprache in Frage kommt.</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>My languages</source>
        <translation>Meine Sprachen</translation>
    </message>
    <message>
        <source>Mark what you speak, and put the most frequent language first.</source>
        <translation>Kreuzen Sie an, was Sie sprechen, und stellen Sie die häufigste Sprache nach vorn.</translation>
    </message>
</context>
<context>
    <name>Messages</name>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Listening… release shortcut</source>
        <translation>Hört zu … Tasten loslassen</translation>
    </message>
    <message>
        <source>Listening · recognition is catching up…</source>
        <translation>Hört zu · die Erkennung holt auf …</translation>
    </message>
    <message>
        <source>Transcribing locally…</source>
        <translation>Wird lokal erkannt …</translation>
    </message>
    <message>
        <source>Inserted</source>
        <translation>Eingefügt</translation>
    </message>
    <message>
        <source>Inserted · clipboard restored</source>
        <translation>Eingefügt · Zwischenablage wiederhergestellt</translation>
    </message>
    <message>
        <source>Inserted · transcript kept</source>
        <translation>Eingefügt · Text in der Zwischenablage</translation>
    </message>
    <message>
        <source>Insertion sent · clipboard changed</source>
        <translation>Eingefügt · Zwischenablage hat sich geändert</translation>
    </message>
    <message>
        <source>Copied — press %paste</source>
        <translation>Kopiert – drücken Sie %paste</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Finish the app update before recording.</source>
        <translation>Schließen Sie vor der Aufnahme die Aktualisierung ab.</translation>
    </message>
    <message>
        <source>Download the required Parakeet speech model to use dictation</source>
        <translation>Laden Sie zum Diktieren das nötige Parakeet-Sprachmodell herunter</translation>
    </message>
    <message>
        <source>Required Parakeet speech model is not installed</source>
        <translation>Das nötige Parakeet-Sprachmodell ist nicht installiert</translation>
    </message>
    <message>
        <source>Verifying existing local models…</source>
        <translation>Vorhandene Modelle werden geprüft …</translation>
    </message>
    <message>
        <source>Part of the recording was not recognized.</source>
        <translation>Ein Teil der Aufnahme wurde nicht erkannt.</translation>
    </message>
    <message>
        <source>Audio configuration changed. Recording stopped; captured audio processed.</source>
        <translation>Die Audiokonfiguration hat sich geändert. Aufnahme beendet; das Aufgenommene wurde verarbeitet.</translation>
    </message>
    <message>
        <source>Audio configuration changed. Recording stopped; no speech was recognized.</source>
        <translation>Die Audiokonfiguration hat sich geändert. Aufnahme beendet; es wurde nichts erkannt.</translation>
    </message>
    <message>
        <source>Memory is running out. Recording stopped; captured audio processed.</source>
        <translation>Der Arbeitsspeicher geht zu Ende. Aufnahme beendet; das Aufgenommene wurde verarbeitet.</translation>
    </message>
    <message>
        <source>Memory is running out. Recording stopped; no speech was recognized.</source>
        <translation>Der Arbeitsspeicher geht zu Ende. Aufnahme beendet; es wurde nichts erkannt.</translation>
    </message>
    <message>
        <source>There is too little memory to record.</source>
        <translation>Für eine Aufnahme ist zu wenig Arbeitsspeicher frei.</translation>
    </message>
    <message>
        <source>The application did not take the text. Copied — press %paste.</source>
        <translation>Die Anwendung hat den Text nicht übernommen. Kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Local model is missing: %1</source>
        <translation>Das lokale Modell fehlt: %1</translation>
    </message>
    <message>
        <source>Local transcription failed: %1</source>
        <translation>Die lokale Erkennung ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Microphone permission is required</source>
        <translation>Zugriff auf das Mikrofon ist nötig</translation>
    </message>
    <message>
        <source>Local ASR worker is missing from the app</source>
        <translation>Das Erkennungsprogramm fehlt in der Anwendung</translation>
    </message>
    <message>
        <source>Could not start microphone recording</source>
        <translation>Die Aufnahme konnte nicht beginnen</translation>
    </message>
    <message>
        <source>No speech was detected</source>
        <translation>Es war nichts Gesprochenes zu hören</translation>
    </message>
    <message>
        <source>The recording could not be recognized. Please try again.</source>
        <translation>Die Aufnahme wurde nicht erkannt. Bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Smart Local model or runtime is not installed</source>
        <translation>Das Sprachmodell oder seine Laufzeit ist nicht installiert</translation>
    </message>
    <message>
        <source>Smart Local formatting failed; using the raw transcript</source>
        <translation>Die Formatierung ist fehlgeschlagen; der Text bleibt wie erkannt</translation>
    </message>
    <message>
        <source>Insertion stopped: you switched applications. Remaining text copied — press %paste.</source>
        <translation>Einfügen beendet: Sie haben die Anwendung gewechselt. Der Rest ist kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: the original application is unavailable. Remaining text copied — press %paste.</source>
        <translation>Einfügen beendet: Die ursprüngliche Anwendung ist nicht mehr da. Der Rest ist kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: the original application is not active. Remaining text copied — press %paste.</source>
        <translation>Einfügen beendet: Die ursprüngliche Anwendung ist nicht im Vordergrund. Der Rest ist kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: a password field is in front. Remaining text copied — press %paste.</source>
        <translation>Einfügen beendet: Ein Passwortfeld ist im Vordergrund. Der Rest ist kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: paste permission is unavailable. Remaining text copied — press %paste.</source>
        <translation>Einfügen beendet: Die Erlaubnis zum Einfügen fehlt. Der Rest ist kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: the paste keys could not be sent. Remaining text copied — press %paste.</source>
        <translation>Einfügen beendet: Die Tasten zum Einfügen ließen sich nicht senden. Der Rest ist kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped. Remaining text copied — press %paste.</source>
        <translation>Einfügen beendet. Der Rest ist kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Double tap Alt</source>
        <translation>Alt zweimal tippen</translation>
    </message>
    <message>
        <source>Caps Lock</source>
        <translation>Feststelltaste</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>Kein Tastenkürzel</translation>
    </message>
    <message>
        <source>Not configured</source>
        <translation>Nicht festgelegt</translation>
    </message>
    <message>
        <source>Hold the shortcut while speaking, then release it.</source>
        <translation>Halten Sie die Tasten beim Sprechen und lassen Sie sie dann los.</translation>
    </message>
    <message>
        <source>Press Caps Lock once to start and again to stop. Its normal Caps Lock state changes too.</source>
        <translation>Drücken Sie die Feststelltaste einmal zum Starten und noch einmal zum Beenden. Ihre normale Wirkung bleibt dabei.</translation>
    </message>
    <message>
        <source>Tap Alt twice to start, then twice again to stop.</source>
        <translation>Tippen Sie zweimal auf Alt, um zu starten, und noch zweimal, um zu beenden.</translation>
    </message>
    <message>
        <source>Use the tray icon or floating recording control to start dictation.</source>
        <translation>Starten Sie das Diktat mit dem Symbol in der Leiste oder der schwebenden Aufnahmeanzeige.</translation>
    </message>
    <message>
        <source>Input Monitoring lets your configured shortcut work while other apps are active.</source>
        <translation>Die Eingabeüberwachung lässt Ihr Tastenkürzel auch wirken, wenn andere Anwendungen aktiv sind.</translation>
    </message>
    <message>
        <source>Record a shortcut</source>
        <translation>Tastenkürzel aufnehmen</translation>
    </message>
    <message>
        <source>Press and release your shortcut three times</source>
        <translation>Drücken Sie Ihr Tastenkürzel dreimal</translation>
    </message>
    <message>
        <source>%1 detected</source>
        <translation>%1 erkannt</translation>
    </message>
    <message>
        <source>A single typing key would also type in your current app. Use Fn, Alt, Ctrl, or add a modifier.</source>
        <translation>Eine einzelne Taste würde auch in Ihrer Anwendung schreiben. Nehmen Sie Fn, Alt, Strg oder eine Umschalttaste dazu.</translation>
    </message>
    <message>
        <source>%1 was detected. Super and Shift cannot be used alone because normal typing uses them constantly. Use Fn, Alt, Ctrl, or hold two modifiers together.</source>
        <translation>%1 erkannt. Super und Umschalt gehen nicht allein, weil man sie beim Schreiben ständig braucht. Nehmen Sie Fn, Alt, Strg oder zwei Umschalttasten zusammen.</translation>
    </message>
    <message>
        <source>Fn, Alt, and Ctrl work alone. Super and Shift must be combined with another modifier or a key. Press Esc to cancel.</source>
        <translation>Fn, Alt und Strg gehen allein. Super und Umschalt brauchen eine weitere Umschalttaste oder eine Taste. Esc bricht ab.</translation>
    </message>
    <message>
        <source>Secure local storage is unavailable. Changes remain in memory for this session and may not survive relaunch.</source>
        <translation>Der sichere lokale Speicher ist nicht verfügbar. Änderungen bleiben für diese Sitzung im Arbeitsspeicher und überstehen einen Neustart womöglich nicht.</translation>
    </message>
    <message>
        <source>Your previous model, %1, is unavailable. Gemma was selected so you can stay offline. You can download and select your previous model in Speech Models.</source>
        <translation>Ihr voriges Modell, %1, ist nicht verfügbar. Damit Sie offline bleiben können, wurde Gemma gewählt. Unter „Sprachmodelle“ können Sie das vorige Modell herunterladen und wählen.</translation>
    </message>
    <message>
        <source>All 28 languages, recognized automatically</source>
        <translation>Alle 28 Sprachen, automatisch erkannt</translation>
    </message>
    <message>
        <source>Qwen3 0.6B Q8 · Fast baseline</source>
        <translation>Qwen3 0.6B Q8 · Schnell</translation>
    </message>
    <message>
        <source>Qwen3 1.7B Q8 · Balanced</source>
        <translation>Qwen3 1.7B Q8 · Ausgewogen</translation>
    </message>
    <message>
        <source>Qwen3 4B Q4 · Best quality</source>
        <translation>Qwen3 4B Q4 · Beste Qualität</translation>
    </message>
    <message>
        <source>Gemma 4 E2B Q4 · Recommended</source>
        <translation>Gemma 4 E2B Q4 · Empfohlen</translation>
    </message>
    <message>
        <source>Parakeet TDT 0.6B v3 Q8 · Recommended</source>
        <translation>Parakeet TDT 0.6B v3 Q8 · Empfohlen</translation>
    </message>
    <message>
        <source>Parakeet TDT 0.6B v3 Q4 · Small</source>
        <translation>Parakeet TDT 0.6B v3 Q4 · Klein</translation>
    </message>
    <message>
        <source>SAGE 95M · Russian</source>
        <translation>SAGE 95M · Russisch</translation>
    </message>
    <message>
        <source>Preparing for fast dictation…</source>
        <translation>Vorbereitung für schnelles Diktieren …</translation>
    </message>
    <message>
        <source>Ready · kept warm in memory</source>
        <translation>Bereit · im Arbeitsspeicher gehalten</translation>
    </message>
    <message>
        <source>Preparation failed · original text remains available</source>
        <translation>Vorbereitung fehlgeschlagen · der erkannte Text bleibt verfügbar</translation>
    </message>
    <message>
        <source>Recommended for Russian: SAGE 95M</source>
        <translation>Für Russisch empfohlen: SAGE 95M</translation>
    </message>
    <message>
        <source>A compact Russian-specific correction candidate. Conservative mode uses only its punctuation and capitalization while preserving the exact ASR words.</source>
        <translation>Eine kompakte Korrektur für Russisch. Konservativ werden nur ihre Satzzeichen und Großschreibung verwendet; die erkannten Wörter bleiben genau erhalten.</translation>
    </message>
    <message>
        <source>Recommended for mixed languages: %1</source>
        <translation>Für gemischte Sprachen empfohlen: %1</translation>
    </message>
    <message>
        <source>Use a multilingual model in Conservative mode. Murmel projects punctuation onto the original ASR words, so a model cannot remove or replace them.</source>
        <translation>Nehmen Sie ein mehrsprachiges Modell, konservativ. Murmel überträgt nur Satzzeichen auf die erkannten Wörter; ein Modell kann sie weder entfernen noch ersetzen.</translation>
    </message>
    <message>
        <source>Recommended model: %1</source>
        <translation>Empfohlenes Modell: %1</translation>
    </message>
    <message>
        <source>No language-specific corrector has passed Murmel&apos;s benchmark for this profile yet. Conservative mode preserves the raw wording.</source>
        <translation>Für diese Auswahl hat noch keine eigene Korrektur die Prüfung von Murmel bestanden. Konservativ bleibt der Wortlaut erhalten.</translation>
    </message>
    <message>
        <source>There is no other speech model for this computer.</source>
        <translation>Für diesen Computer gibt es kein anderes Sprachmodell.</translation>
    </message>
    <message>
        <source>The model is installed.</source>
        <translation>Das Modell ist installiert.</translation>
    </message>
    <message>
        <source>The model downloader is missing from the app or is not the app&apos;s own.</source>
        <translation>Das Programm zum Herunterladen fehlt oder gehört nicht zur Anwendung.</translation>
    </message>
    <message>
        <source>The model downloader could not be started: %1</source>
        <translation>Das Programm zum Herunterladen ließ sich nicht starten: %1</translation>
    </message>
    <message>
        <source>This file is not on the list of approved downloads.</source>
        <translation>Diese Datei steht nicht auf der Liste der erlaubten Downloads.</translation>
    </message>
    <message>
        <source>The model downloader ended unexpectedly.</source>
        <translation>Das Programm zum Herunterladen endete unerwartet.</translation>
    </message>
    <message>
        <source>Full edition</source>
        <translation>Vollausgabe</translation>
    </message>
    <message>
        <source>Lite edition</source>
        <translation>Lite-Ausgabe</translation>
    </message>
    <message>
        <source>Development build</source>
        <translation>Entwicklungsversion</translation>
    </message>
    <message>
        <source>Ready offline · Models included</source>
        <translation>Offline bereit · Modelle enthalten</translation>
    </message>
    <message>
        <source>Lite · Models on demand</source>
        <translation>Lite · Modelle auf Abruf</translation>
    </message>
    <message>
        <source>Local development</source>
        <translation>Lokale Entwicklung</translation>
    </message>
    <message>
        <source>Finish enabling Automatic Paste</source>
        <translation>Automatisches Einfügen fertig einrichten</translation>
    </message>
    <message>
        <source>The desktop needs a fresh %1 process to apply this permission. The app will reopen automatically, and an active Parakeet download will resume. You do not need to restart your computer.</source>
        <translation>Damit die Erlaubnis gilt, muss %1 neu starten. Die Anwendung öffnet sich von selbst wieder, und ein laufender Parakeet-Download wird fortgesetzt. Der Computer muss nicht neu starten.</translation>
    </message>
    <message>
        <source>Quit &amp; Reopen</source>
        <translation>Beenden &amp; neu öffnen</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Nicht jetzt</translation>
    </message>
    <message>
        <source>%1 could not reopen</source>
        <translation>%1 ließ sich nicht wieder öffnen</translation>
    </message>
    <message>
        <source>This build cannot download models.</source>
        <translation>Diese Version kann keine Modelle herunterladen.</translation>
    </message>
    <message>
        <source>This computer&apos;s processor cannot run it.</source>
        <translation>Der Prozessor dieses Computers kann es nicht ausführen.</translation>
    </message>
    <message>
        <source>The key ring is locked.</source>
        <translation>Der Schlüsselbund ist gesperrt.</translation>
    </message>
    <message>
        <source>No key ring (Secret Service) answers on this desktop.</source>
        <translation>Auf diesem Desktop antwortet kein Schlüsselbund (Secret Service).</translation>
    </message>
    <message>
        <source>The key ring stayed locked.</source>
        <translation>Der Schlüsselbund blieb gesperrt.</translation>
    </message>
    <message>
        <source>The system has no random bytes.</source>
        <translation>Das System liefert keine Zufallszahlen.</translation>
    </message>
    <message>
        <source>The key ring answered with an error.</source>
        <translation>Der Schlüsselbund antwortete mit einem Fehler.</translation>
    </message>
    <message>
        <source>The file is not a sealed file</source>
        <translation>Die Datei ist keine versiegelte Datei</translation>
    </message>
    <message>
        <source>The key of the sealed file is not available</source>
        <translation>Der Schlüssel der versiegelten Datei ist nicht verfügbar</translation>
    </message>
    <message>
        <source>The sealed file was changed since it was written</source>
        <translation>Die versiegelte Datei wurde verändert, seit sie geschrieben wurde</translation>
    </message>
    <message>
        <source>The sealed file holds something else than it should</source>
        <translation>Die versiegelte Datei enthält etwas anderes, als sie sollte</translation>
    </message>
    <message>
        <source>The file does not hold settings of Murmel.</source>
        <translation>Die Datei enthält keine Einstellungen von Murmel.</translation>
    </message>
    <message>
        <source>The key ring has no default collection yet: its own program (in KDE, the wallet manager) makes one.</source>
        <translation>Der Schlüsselbund hat noch keine Standardsammlung: Sein eigenes Programm (in KDE die Brieftaschenverwaltung) legt sie an.</translation>
    </message>
    <message>
        <source>The file could not be accessed: %1</source>
        <translation>Auf die Datei konnte nicht zugegriffen werden: %1</translation>
    </message>
    <message>
        <source>The autostart entry cannot be written: %1</source>
        <translation>Der Autostart-Eintrag kann nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>The autostart entry cannot be changed: %1</source>
        <translation>Der Autostart-Eintrag kann nicht geändert werden: %1</translation>
    </message>
    <message>
        <source>There is no setting &quot;%1&quot;.</source>
        <translation>Es gibt keine Einstellung „%1“.</translation>
    </message>
    <message>
        <source>unknown to the speech model in use</source>
        <translation>dem verwendeten Sprachmodell unbekannt</translation>
    </message>
    <message>
        <source>No text field had the keyboard. Copied — press %paste.</source>
        <translation>Kein Textfeld hatte die Tastatur. Kopiert – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Something else was copied before the application took the text. Choose Copy Last Dictation.</source>
        <translation>Bevor die Anwendung den Text nahm, wurde etwas anderes kopiert. Wählen Sie „Letztes Diktat kopieren“.</translation>
    </message>
    <message>
        <source>Your clipboard could not be kept.</source>
        <translation>Ihre Zwischenablage ließ sich nicht bewahren.</translation>
    </message>
    <message>
        <source>The text could not be put on the clipboard. You find it in Murmel&apos;s menu.</source>
        <translation>Der Text ließ sich nicht in die Zwischenablage legen. Sie finden ihn im Menü von Murmel.</translation>
    </message>
    <message>
        <source>This desktop shows no tray icons. Start Murmel once more to open its windows, or use commands like “murmel settings”.</source>
        <translation>Dieser Desktop zeigt keine Symbole in der Leiste. Starten Sie Murmel noch einmal, um seine Fenster zu öffnen, oder verwenden Sie Befehle wie „murmel settings“.</translation>
    </message>
    <message>
        <source>Another program has reserved these keys: both would hear them.</source>
        <translation>Ein anderes Programm hat diese Tasten belegt: Beide würden sie hören.</translation>
    </message>
    <message>
        <source>This keyboard layout makes another key of Caps Lock, so the shortcut would do nothing.</source>
        <translation>Diese Tastaturbelegung macht aus der Feststelltaste eine andere Taste; das Kürzel würde nichts bewirken.</translation>
    </message>
    <message>
        <source>Every Ctrl+C and Ctrl+V would start a dictation too.</source>
        <translation>Jedes Strg+C und Strg+V würde auch ein Diktat beginnen.</translation>
    </message>
    <message>
        <source>Alt opens menus, and every Alt+Tab would start a dictation too.</source>
        <translation>Alt öffnet Menüs, und jedes Alt+Tab würde auch ein Diktat beginnen.</translation>
    </message>
    <message>
        <source>Many keyboards switch their layout with these keys.</source>
        <translation>Viele Tastaturen wechseln mit diesen Tasten ihre Belegung.</translation>
    </message>
    <message>
        <source>Programs made with GTK write the letter too, for they do not know Super.</source>
        <translation>GTK-Programme schreiben auch den Buchstaben, denn sie kennen Super nicht.</translation>
    </message>
    <message>
        <source>Alt+Space opens the menu of the window in front.</source>
        <translation>Alt+Leertaste öffnet das Menü des vorderen Fensters.</translation>
    </message>
    <message>
        <source>Alt with a letter opens menus in many programs.</source>
        <translation>Alt mit einem Buchstaben öffnet in vielen Programmen Menüs.</translation>
    </message>
    <message>
        <source>Programs use Ctrl with a letter to copy, paste, undo and the like.</source>
        <translation>Programme verwenden Strg mit einem Buchstaben zum Kopieren, Einfügen, Rückgängigmachen und Ähnlichem.</translation>
    </message>
    <message>
        <source>Input methods and editors use Ctrl+Space.</source>
        <translation>Eingabemethoden und Editoren verwenden Strg+Leertaste.</translation>
    </message>
    <message>
        <source>Most keyboards keep the Fn key to themselves, and X11 cannot carry it. If holding Fn does nothing, choose Ctrl, Alt or a key combination as the shortcut.</source>
        <translation>Die meisten Tastaturen behalten die Fn-Taste für sich, und X11 kann sie nicht übertragen. Wenn Fn nichts bewirkt, wählen Sie Strg, Alt oder eine Tastenkombination als Kürzel.</translation>
    </message>
    <message>
        <source>Wayland lets no application hear keys while another one is in front. Bind a key to the command &quot;murmel toggle&quot; in the keyboard settings of your desktop.</source>
        <translation>Wayland lässt keine Anwendung Tasten hören, während eine andere vorn ist. Legen Sie in den Tastatureinstellungen Ihres Desktops eine Taste auf den Befehl „murmel toggle“.</translation>
    </message>
    <message>
        <source>There is no display (DISPLAY is not set).</source>
        <translation>Es gibt keine Anzeige (DISPLAY ist nicht gesetzt).</translation>
    </message>
    <message>
        <source>The X server cannot be reached.</source>
        <translation>Der X-Server ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The X server has no screen.</source>
        <translation>Der X-Server hat keinen Bildschirm.</translation>
    </message>
    <message>
        <source>The X server has no XInput extension, so keys cannot be heard globally.</source>
        <translation>Dem X-Server fehlt die Erweiterung XInput; Tasten können nicht überall gehört werden.</translation>
    </message>
    <message>
        <source>The X server&apos;s XInput is older than 2.2, so keys cannot be heard globally.</source>
        <translation>XInput des X-Servers ist älter als 2.2; Tasten können nicht überall gehört werden.</translation>
    </message>
    <message>
        <source>The X server has no XKB extension, so keys cannot be told apart.</source>
        <translation>Dem X-Server fehlt die Erweiterung XKB; Tasten können nicht unterschieden werden.</translation>
    </message>
    <message>
        <source>The X server does not let this application hear keys.</source>
        <translation>Der X-Server lässt diese Anwendung keine Tasten hören.</translation>
    </message>
    <message>
        <source>The list of updates cannot be read.</source>
        <translation>Die Liste der Updates ist nicht lesbar.</translation>
    </message>
    <message>
        <source>The list of updates is not signed by the makers of this app.</source>
        <translation>Die Liste der Updates ist nicht von den Herstellern dieser App unterschrieben.</translation>
    </message>
    <message>
        <source>The list of updates is out of date. Check the computer&apos;s clock, or try again later.</source>
        <translation>Die Liste der Updates ist abgelaufen. Prüfen Sie die Uhr des Computers oder versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>The list of updates is older than one that was seen before.</source>
        <translation>Die Liste der Updates ist älter als eine, die schon gesehen wurde.</translation>
    </message>
    <message>
        <source>New versions come from the store that this app came from.</source>
        <translation>Neue Versionen kommen aus dem Store, aus dem diese App kam.</translation>
    </message>
    <message>
        <source>This build belongs to no release, so there is nothing that could update it.</source>
        <translation>Dieser Build gehört zu keiner Veröffentlichung; es gibt nichts, was ihn aktualisieren könnte.</translation>
    </message>
    <message>
        <source>This copy was built here; build it again to update it.</source>
        <translation>Diese Kopie wurde hier gebaut; bauen Sie sie neu, um sie zu aktualisieren.</translation>
    </message>
    <message>
        <source>The server with the list of updates cannot be reached.</source>
        <translation>Der Server mit der Liste der Updates ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The list of updates is too long.</source>
        <translation>Die Liste der Updates ist zu lang.</translation>
    </message>
    <message>
        <source>The server has no list of updates.</source>
        <translation>Der Server hat keine Liste der Updates.</translation>
    </message>
    <message>
        <source>The new version did not arrive as it was released.</source>
        <translation>Die neue Version kam nicht so an, wie sie veröffentlicht wurde.</translation>
    </message>
    <message>
        <source>The new version holds something that does not belong there.</source>
        <translation>Die neue Version enthält etwas, das nicht hineingehört.</translation>
    </message>
    <message>
        <source>The new version is not what the list of updates says.</source>
        <translation>Die neue Version ist nicht die, die in der Liste der Updates steht.</translation>
    </message>
    <message>
        <source>The new version does not start on this computer; the one before was kept.</source>
        <translation>Die neue Version startet auf diesem Computer nicht; die bisherige wurde behalten.</translation>
    </message>
    <message>
        <source>The updater is missing from the app or is not the app&apos;s own.</source>
        <translation>Das Update-Programm fehlt in der App oder gehört nicht zu ihr.</translation>
    </message>
    <message>
        <source>The updater ended unexpectedly.</source>
        <translation>Das Update-Programm endete unerwartet.</translation>
    </message>
    <message>
        <source>The update was stopped.</source>
        <translation>Das Update wurde angehalten.</translation>
    </message>
    <message>
        <source>The updater could not be started: %1</source>
        <translation>Das Update-Programm ließ sich nicht starten: %1</translation>
    </message>
    <message>
        <source>The update is installed. Start Murmel again: %1</source>
        <translation>Das Update ist installiert. Starten Sie Murmel neu: %1</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Desktop</translation>
    </message>
    <message>
        <source>Speech model</source>
        <translation>Sprachmodell</translation>
    </message>
    <message>
        <source>Speech recognition</source>
        <translation>Spracherkennung</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>Global shortcut</source>
        <translation>Tastenkürzel überall</translation>
    </message>
    <message>
        <source>Automatic paste</source>
        <translation>Automatisches Einfügen</translation>
    </message>
    <message>
        <source>Password fields</source>
        <translation>Passwortfelder</translation>
    </message>
    <message>
        <source>Key ring</source>
        <translation>Schlüsselbund</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Formatting</source>
        <translation>Formatierung</translation>
    </message>
    <message>
        <source>Session bus</source>
        <translation>Sitzungsbus</translation>
    </message>
    <message>
        <source>Tray</source>
        <translation>Symbolleiste</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Sound Settings</source>
        <translation>Klangeinstellungen</translation>
    </message>
    <message>
        <source>Choose Shortcut</source>
        <translation>Kürzel wählen</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Erlauben</translation>
    </message>
    <message>
        <source>There is no speech model in %1. Download one, or install pocketsphinx-en-us.</source>
        <translation>In %1 liegt kein Sprachmodell. Laden Sie eines herunter, oder installieren Sie pocketsphinx-en-us.</translation>
    </message>
    <message>
        <source>The speech model in %1 is damaged. Download it again.</source>
        <translation>Das Sprachmodell in %1 ist beschädigt. Laden Sie es noch einmal herunter.</translation>
    </message>
    <message>
        <source>The worker is missing: %1</source>
        <translation>Das Erkennungsprogramm fehlt: %1</translation>
    </message>
    <message>
        <source>The worker is not signed by the makers of this Murmel.</source>
        <translation>Das Erkennungsprogramm ist nicht von den Herstellern dieses Murmel unterschrieben.</translation>
    </message>
    <message>
        <source>The language-model server is not installed (%1): text stays as it was recognised.</source>
        <translation>Der Server für Sprachmodelle ist nicht installiert (%1): Text bleibt, wie er erkannt wurde.</translation>
    </message>
    <message>
        <source>The sound server refuses this user.</source>
        <translation>Der Soundserver weist diesen Benutzer ab.</translation>
    </message>
    <message>
        <source>This sandbox has no access to the sound server.</source>
        <translation>Diese Sandbox hat keinen Zugang zum Soundserver.</translation>
    </message>
    <message>
        <source>No sound server answers. Start PulseAudio or PipeWire.</source>
        <translation>Kein Soundserver antwortet. Starten Sie PulseAudio oder PipeWire.</translation>
    </message>
    <message>
        <source>There is no microphone: the sound server has no source.</source>
        <translation>Es gibt kein Mikrofon: Der Soundserver hat keine Quelle.</translation>
    </message>
    <message>
        <source>There is no microphone: only what the speakers play is heard.</source>
        <translation>Es gibt kein Mikrofon: Nur was die Lautsprecher spielen, ist zu hören.</translation>
    </message>
    <message>
        <source>The microphone delivers digital silence. It may be muted or switched off.</source>
        <translation>Das Mikrofon liefert digitale Stille. Vielleicht ist es stumm oder ausgeschaltet.</translation>
    </message>
    <message>
        <source>The microphone was opened, but delivers nothing.</source>
        <translation>Das Mikrofon wurde geöffnet, liefert aber nichts.</translation>
    </message>
    <message>
        <source>There is no desktop to hear it on.</source>
        <translation>Es gibt keinen Desktop, auf dem es gehört würde.</translation>
    </message>
    <message>
        <source>There is no desktop to paste on.</source>
        <translation>Es gibt keinen Desktop, auf dem eingefügt würde.</translation>
    </message>
    <message>
        <source>There is no desktop with applications that tell of them.</source>
        <translation>Es gibt keinen Desktop mit Anwendungen, die davon berichten.</translation>
    </message>
    <message>
        <source>This desktop lets no program press keys (on X11: the XTest extension is missing). Text is copied, for you to paste.</source>
        <translation>Dieser Desktop lässt kein Programm Tasten drücken (auf X11: die Erweiterung XTest fehlt). Text wird kopiert, zum Einfügen von Hand.</translation>
    </message>
    <message>
        <source>In this Wayland session text is pasted into X programs only, and copied otherwise.</source>
        <translation>In dieser Wayland-Sitzung wird Text nur in X-Programme eingefügt und sonst kopiert.</translation>
    </message>
    <message>
        <source>No window manager tells which window is active. Text is copied, for you to paste.</source>
        <translation>Kein Fenstermanager sagt, welches Fenster aktiv ist. Text wird kopiert, zum Einfügen von Hand.</translation>
    </message>
    <message>
        <source>The keyboard layout has no keys to paste with. Text is copied, for you to paste.</source>
        <translation>Die Tastaturbelegung hat keine Tasten zum Einfügen. Text wird kopiert, zum Einfügen von Hand.</translation>
    </message>
    <message>
        <source>GTK programs tell of them, Qt programs and browsers only while assistive technologies are switched on. Prompts that take the keyboard for themselves are seen in any case.</source>
        <translation>GTK-Programme geben sie zu erkennen, Qt-Programme und Browser nur, solange Hilfstechnologien eingeschaltet sind. Abfragen, die die Tastatur für sich nehmen, werden in jedem Fall erkannt.</translation>
    </message>
    <message>
        <source>They look like other fields: the accessibility bus (at-spi2-core) does not run. Prompts that take the keyboard for themselves are seen all the same.</source>
        <translation>Sie sehen aus wie andere Felder: Der Bus für Barrierefreiheit (at-spi2-core) läuft nicht. Abfragen, die die Tastatur für sich nehmen, werden trotzdem erkannt.</translation>
    </message>
    <message>
        <source>It is locked. History and vocabulary stay in memory until it is unlocked.</source>
        <translation>Er ist gesperrt. Verlauf und Wortschatz bleiben im Speicher, bis er entsperrt ist.</translation>
    </message>
    <message>
        <source>No secret service answers. History and vocabulary stay in memory only.</source>
        <translation>Kein Dienst für Geheimnisse antwortet. Verlauf und Wortschatz bleiben nur im Speicher.</translation>
    </message>
    <message>
        <source>Settings cannot be kept: %1 cannot be written to.</source>
        <translation>Einstellungen können nicht aufbewahrt werden: In %1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>History and models cannot be kept: %1 cannot be written to.</source>
        <translation>Verlauf und Modelle können nicht aufbewahrt werden: In %1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>There is none, or it does not answer: commands like “murmel toggle” cannot reach the running Murmel.</source>
        <translation>Es gibt keinen, oder er antwortet nicht: Befehle wie „murmel toggle“ erreichen das laufende Murmel nicht.</translation>
    </message>
    <message>
        <source>This desktop has none. Use the shortcut or commands like “murmel settings”.</source>
        <translation>Dieser Desktop hat keine. Verwenden Sie das Kürzel oder Befehle wie „murmel settings“.</translation>
    </message>
    <message>
        <source>Hears 25 languages, the best of those that run here.</source>
        <translation>Hört 25 Sprachen, das beste von denen, die hier laufen.</translation>
    </message>
    <message>
        <source>The same in half the space, with a few more mistakes.</source>
        <translation>Dasselbe in halber Größe, mit ein paar Fehlern mehr.</translation>
    </message>
    <message>
        <source>Hears about a hundred languages, and runs on older machines.</source>
        <translation>Hört etwa hundert Sprachen und läuft auf älteren Rechnern.</translation>
    </message>
    <message>
        <source>Punctuation and capitals in many languages.</source>
        <translation>Satzzeichen und Großschreibung in vielen Sprachen.</translation>
    </message>
    <message>
        <source>Punctuation and capitals on a small machine.</source>
        <translation>Satzzeichen und Großschreibung auf kleinen Rechnern.</translation>
    </message>
    <message>
        <source>Punctuation and capitals, between fast and good.</source>
        <translation>Satzzeichen und Großschreibung, zwischen schnell und gut.</translation>
    </message>
    <message>
        <source>Punctuation and capitals, slower and better.</source>
        <translation>Satzzeichen und Großschreibung, langsamer und besser.</translation>
    </message>
    <message>
        <source>Corrects Russian.</source>
        <translation>Korrigiert Russisch.</translation>
    </message>
    <message>
        <source>Whisper base Q8 · Smallest</source>
        <translation>Whisper base Q8 · Am kleinsten</translation>
    </message>
    <message>
        <source>Its engine is not in this build, or this processor is too old for it.</source>
        <translation>Seine Technik ist nicht in diesem Build, oder dieser Prozessor ist zu alt dafür.</translation>
    </message>
    <message>
        <source>This build has no corrector for Russian.</source>
        <translation>Dieser Build hat keine Korrektur für Russisch.</translation>
    </message>
    <message>
        <source>This build has no server for language models.</source>
        <translation>Dieser Build hat keinen Server für Sprachmodelle.</translation>
    </message>
    <message>
        <source>The settings file %1 is read-only. Changes are kept in memory.</source>
        <translation>Die Einstellungsdatei %1 ist schreibgeschützt. Änderungen bleiben im Speicher.</translation>
    </message>
    <message>
        <source>The screen was locked while you dictated. Copied — press %paste.</source>
        <translation>Der Bildschirm wurde während des Diktats gesperrt. Kopiert — drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Murmel ended before your words could be inserted. They are on the clipboard — press %paste.</source>
        <translation>Murmel wurde beendet, bevor Ihre Worte eingefügt werden konnten. Sie sind in der Zwischenablage — drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Murmel ended before everything was recognized. The first part is on the clipboard — press %paste.</source>
        <translation>Murmel wurde beendet, bevor alles erkannt war. Der erste Teil ist in der Zwischenablage — drücken Sie %paste.</translation>
    </message>
    <message>
        <source>Murmel ended before your last words were recognized.</source>
        <translation>Murmel wurde beendet, bevor Ihre letzten Worte erkannt waren.</translation>
    </message>
    <message>
        <source>Cannot run here: %1.</source>
        <translation>Läuft hier nicht: %1.</translation>
    </message>
    <message>
        <source>Still transcribing the last dictation…</source>
        <translation>Das letzte Diktat wird noch erkannt …</translation>
    </message>
    <message>
        <source>Opening the microphone…</source>
        <translation>Das Mikrofon wird geöffnet …</translation>
    </message>
    <message>
        <source>The words are being inserted already.</source>
        <translation>Die Wörter werden schon eingefügt.</translation>
    </message>
    <message>
        <source>Nothing is being dictated.</source>
        <translation>Es wird nichts diktiert.</translation>
    </message>
    <message>
        <source>Murmel is about to end.</source>
        <translation>Murmel wird gleich beendet.</translation>
    </message>
    <message>
        <source>Murmel is ending.</source>
        <translation>Murmel wird beendet.</translation>
    </message>
    <message>
        <source>Murmel cannot do that now.</source>
        <translation>Das kann Murmel jetzt nicht.</translation>
    </message>
    <message>
        <source>A dictation is under way.</source>
        <translation>Ein Diktat läuft.</translation>
    </message>
    <message>
        <source>There is no failed or cancelled dictation to try again.</source>
        <translation>Es gibt kein fehlgeschlagenes oder abgebrochenes Diktat, das wiederholt werden könnte.</translation>
    </message>
    <message>
        <source>The kept recording cannot be read any more.</source>
        <translation>Die aufbewahrte Aufnahme lässt sich nicht mehr lesen.</translation>
    </message>
    <message>
        <source>The last dictation is still being transcribed.</source>
        <translation>Das letzte Diktat wird noch erkannt.</translation>
    </message>
    <message>
        <source>Murmel is listening already.</source>
        <translation>Murmel hört schon zu.</translation>
    </message>
    <message>
        <source>Nothing is being recorded.</source>
        <translation>Es wird nichts aufgenommen.</translation>
    </message>
    <message>
        <source>There is no dictation to copy.</source>
        <translation>Es gibt kein Diktat zum Kopieren.</translation>
    </message>
    <message>
        <source>There is no dictation to paste.</source>
        <translation>Es gibt kein Diktat zum Einfügen.</translation>
    </message>
    <message>
        <source>Another session is in front.</source>
        <translation>Eine andere Sitzung ist im Vordergrund.</translation>
    </message>
    <message>
        <source>The computer is going to sleep.</source>
        <translation>Der Computer geht in den Ruhezustand.</translation>
    </message>
    <message>
        <source>The screen is locked.</source>
        <translation>Der Bildschirm ist gesperrt.</translation>
    </message>
    <message>
        <source>The application did not take the last dictation. It is on the clipboard — press %paste.</source>
        <translation>Die Anwendung hat das letzte Diktat nicht angenommen. Es ist in der Zwischenablage – drücken Sie %paste.</translation>
    </message>
    <message>
        <source>model process exited</source>
        <translation>der Prozess des Modells hat sich beendet</translation>
    </message>
    <message>
        <source>two answers in a row took too long</source>
        <translation>zwei Antworten in Folge haben zu lange gedauert</translation>
    </message>
    <message>
        <source>an answer was not understood</source>
        <translation>eine Antwort war nicht zu verstehen</translation>
    </message>
    <message>
        <source>too many open files</source>
        <translation>zu viele offene Dateien</translation>
    </message>
    <message>
        <source>inference server exited while starting</source>
        <translation>der Server hat sich beim Start beendet</translation>
    </message>
    <message>
        <source>inference server did not become ready</source>
        <translation>der Server wurde nicht bereit</translation>
    </message>
    <message>
        <source>running inference server identity validation failed</source>
        <translation>der laufende Server ist nicht der erwartete</translation>
    </message>
    <message>
        <source>running correction worker identity validation failed</source>
        <translation>das laufende Korrekturprogramm ist nicht das erwartete</translation>
    </message>
    <message>
        <source>correction worker signature validation failed</source>
        <translation>die Signatur des Korrekturprogramms stimmt nicht</translation>
    </message>
    <message>
        <source>%1 is not installed; “%2” brings it</source>
        <translation>%1 ist nicht installiert; „%2“ holt es</translation>
    </message>
    <message>
        <source>%1 is not as its makers signed it; “%2” brings it again</source>
        <translation>%1 ist nicht so, wie die Hersteller es signiert haben; „%2“ holt es erneut</translation>
    </message>
    <message>
        <source>llama-server needs a processor with AVX2</source>
        <translation>llama-server braucht einen Prozessor mit AVX2</translation>
    </message>
    <message>
        <source>the ONNX Runtime</source>
        <translation>die ONNX Runtime</translation>
    </message>
    <message>
        <source>its engine is not in this build, or this processor is too old for it</source>
        <translation>seine Engine fehlt in diesem Build, oder dieser Prozessor ist zu alt dafür</translation>
    </message>
    <message>
        <source>it needs %1 GB of memory, and this computer has %2 GB</source>
        <translation>es braucht %1 GB Speicher, und dieser Computer hat %2 GB</translation>
    </message>
    <message>
        <source>Where this model is published has never been confirmed, so it cannot be downloaded.</source>
        <translation>Wo dieses Modell veröffentlicht ist, wurde nie bestätigt; deshalb kann es nicht geladen werden.</translation>
    </message>
    <message>
        <source>There is not enough disk space: %1 are needed, %2 are free.</source>
        <translation>Auf der Platte ist zu wenig Platz: %1 werden gebraucht, %2 sind frei.</translation>
    </message>
    <message>
        <source>There is not enough disk space for the model.</source>
        <translation>Auf der Platte ist zu wenig Platz für das Modell.</translation>
    </message>
    <message>
        <source>Another download into this folder is running.</source>
        <translation>Ein anderer Download in diesen Ordner läuft.</translation>
    </message>
    <message>
        <source>Something else is where the folder %1 of the model store belongs.</source>
        <translation>Wo der Modellordner %1 hingehört, liegt etwas anderes.</translation>
    </message>
    <message>
        <source>A folder is where the model file belongs: %1</source>
        <translation>Wo die Modelldatei hingehört, ist ein Ordner: %1</translation>
    </message>
    <message>
        <source>The model host offers a file of another size (%1 bytes instead of %2).</source>
        <translation>Der Modellserver bietet eine Datei anderer Größe an (%1 statt %2 Byte).</translation>
    </message>
    <message>
        <source>The model host refuses the file (HTTP %1).</source>
        <translation>Der Modellserver verweigert die Datei (HTTP %1).</translation>
    </message>
    <message>
        <source>The model host does not have the file (HTTP %1).</source>
        <translation>Der Modellserver hat die Datei nicht (HTTP %1).</translation>
    </message>
    <message>
        <source>The model host asks to slow down (HTTP 429). Try again later.</source>
        <translation>Der Modellserver bittet um Geduld (HTTP 429). Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>The model host failed (HTTP %1). Try again later.</source>
        <translation>Der Modellserver meldet einen Fehler (HTTP %1). Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>The model host did not answer in time.</source>
        <translation>Der Modellserver hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>The model host redirects to an address that is not encrypted.</source>
        <translation>Der Modellserver verweist auf eine unverschlüsselte Adresse.</translation>
    </message>
    <message>
        <source>The model host could not prove its identity.</source>
        <translation>Der Modellserver konnte sich nicht ausweisen.</translation>
    </message>
    <message>
        <source>The model host could not be found. Is this computer online?</source>
        <translation>Der Modellserver wurde nicht gefunden. Ist dieser Computer online?</translation>
    </message>
    <message>
        <source>The model host could not be reached.</source>
        <translation>Der Modellserver ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The model host sends from one address to the next without end.</source>
        <translation>Der Modellserver verweist endlos von einer Adresse zur nächsten.</translation>
    </message>
    <message>
        <source>The connection to the model host was lost.</source>
        <translation>Die Verbindung zum Modellserver ist abgebrochen.</translation>
    </message>
    <message>
        <source>The model host sent more than the file has.</source>
        <translation>Der Modellserver hat mehr gesendet, als die Datei hat.</translation>
    </message>
    <message>
        <source>What the model host sent is not the approved file; it was thrown away.</source>
        <translation>Was der Modellserver gesendet hat, ist nicht die geprüfte Datei; es wurde verworfen.</translation>
    </message>
    <message>
        <source>There is no new version to install.</source>
        <translation>Es gibt keine neue Version zu installieren.</translation>
    </message>
    <message>
        <source>This version is not on the list of updates.</source>
        <translation>Diese Version steht nicht auf der Liste der Updates.</translation>
    </message>
    <message>
        <source>This build does not know where its updates come from.</source>
        <translation>Dieser Build weiß nicht, woher seine Updates kommen.</translation>
    </message>
    <message>
        <source>The download was stopped.</source>
        <translation>Der Download wurde angehalten.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be read (%2). It stays as it is; changes are kept in memory.</source>
        <translation>Die Einstellungsdatei %1 kann nicht gelesen werden (%2). Sie bleibt, wie sie ist; Änderungen bleiben im Arbeitsspeicher.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be understood: %2. The last good settings are in force.</source>
        <translation>Die Einstellungsdatei %1 ist nicht zu verstehen: %2. Es gelten die letzten guten Einstellungen.</translation>
    </message>
    <message>
        <source>The settings file was damaged (%1). It was set aside as %2.</source>
        <translation>Die Einstellungsdatei war beschädigt (%1). Sie wurde als %2 beiseitegelegt.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be made (%2). Changes are kept in memory.</source>
        <translation>Die Einstellungsdatei %1 kann nicht angelegt werden (%2). Änderungen bleiben im Arbeitsspeicher.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be set aside (%2). Changes are kept in memory.</source>
        <translation>Die Einstellungsdatei %1 kann nicht beiseitegelegt werden (%2). Änderungen bleiben im Arbeitsspeicher.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be written (%2). Changes are kept in memory.</source>
        <translation>Die Einstellungsdatei %1 kann nicht geschrieben werden (%2). Änderungen bleiben im Arbeitsspeicher.</translation>
    </message>
    <message>
        <source>The setting &quot;%1&quot; cannot be taken over. %2</source>
        <translation>Die Einstellung „%1“ kann nicht übernommen werden. %2</translation>
    </message>
    <message>
        <source>It can be true or false.</source>
        <translation>Möglich sind true und false.</translation>
    </message>
    <message>
        <source>It can be %1, or the JSON of a shortcut.</source>
        <translation>Möglich sind %1 oder das JSON eines Kürzels.</translation>
    </message>
    <message>
        <source>It can be %1.</source>
        <translation>Möglich sind %1.</translation>
    </message>
    <message>
        <source>It is a number of minutes from 0 to %1.</source>
        <translation>Es ist eine Zahl von Minuten zwischen 0 und %1.</translation>
    </message>
    <message>
        <source>It is a list of %1.</source>
        <translation>Es ist eine Liste aus %1.</translation>
    </message>
    <message>
        <source>It is neither text nor true or false.</source>
        <translation>Es ist weder Text noch true oder false.</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Auslagerung</translation>
    </message>
    <message>
        <source>Confinement</source>
        <translation>Abschottung</translation>
    </message>
    <message>
        <source>No helper process sees your files, other programs or a network it has no business with.</source>
        <translation>Kein Hilfsprozess sieht Ihre Dateien, andere Programme oder ein Netz, das ihn nichts angeht.</translation>
    </message>
    <message>
        <source>No helper process reaches your files, other programs or a network it has no business with. They can see names of files: this system lets nobody make namespaces.</source>
        <translation>Kein Hilfsprozess erreicht Ihre Dateien, andere Programme oder ein Netz, das ihn nichts angeht. Dateinamen können sie sehen: Dieses System lässt niemanden Namensräume anlegen.</translation>
    </message>
    <message>
        <source>Helper processes are not confined: %1.</source>
        <translation>Hilfsprozesse sind nicht abgeschottet: %1.</translation>
    </message>
    <message>
        <source>Helper processes can reach what they should not (%1).</source>
        <translation>Hilfsprozesse erreichen, was sie nicht sollten (%1).</translation>
    </message>
    <message>
        <source>It does not answer.</source>
        <translation>Keine Antwort.</translation>
    </message>
    <message>
        <source>Formatting is on.</source>
        <translation>Das Formatieren ist an.</translation>
    </message>
    <message>
        <source>Formatting is off.</source>
        <translation>Das Formatieren ist aus.</translation>
    </message>
    <message>
        <source>Language models cannot run here: %1.</source>
        <translation>Sprachmodelle können hier nicht laufen: %1.</translation>
    </message>
    <message>
        <source>The corrector for Russian cannot run here: %1.</source>
        <translation>Die Korrektur für Russisch kann hier nicht laufen: %1.</translation>
    </message>
    <message>
        <source>The worker or its engine is not as the makers of this Murmel signed it. Install Murmel again.</source>
        <translation>Das Programm oder seine Engine ist nicht so, wie die Hersteller dieses Murmel sie signiert haben. Installieren Sie Murmel neu.</translation>
    </message>
    <message>
        <source>No shortcut is set. The tray icon and “murmel toggle” start dictation.</source>
        <translation>Es ist kein Kürzel eingestellt. Das Symbol in der Leiste und „murmel toggle“ starten ein Diktat.</translation>
    </message>
    <message>
        <source>The desktop does not let this program press keys after all. Text is copied, for you to paste.</source>
        <translation>Der Desktop lässt dieses Programm doch keine Tasten drücken. Text wird kopiert, Sie fügen ihn ein.</translation>
    </message>
    <message>
        <source>Text is copied, for you to paste.</source>
        <translation>Text wird kopiert, Sie fügen ihn ein.</translation>
    </message>
    <message>
        <source>History and vocabulary stay in memory until then.</source>
        <translation>Bis dahin bleiben Verlauf und Wörter im Arbeitsspeicher.</translation>
    </message>
    <message>
        <source>Only %1 can be kept out of %2; more of what you say may be written to it. Encrypt the swap, or raise the limit of locked memory (LimitMEMLOCK) to 8 MB.</source>
        <translation>Nur %1 lassen sich aus %2 heraushalten; mehr von dem, was Sie sagen, könnte dorthin geschrieben werden. Verschlüsseln Sie die Auslagerung, oder heben Sie die Grenze für gesperrten Speicher (LimitMEMLOCK) auf 8 MB an.</translation>
    </message>
    <message>
        <source>Murmel cannot start: %1 cannot be written to.</source>
        <translation>Murmel kann nicht starten: In %1 lässt sich nichts schreiben.</translation>
    </message>
    <message>
        <source>Neither the X server nor the Wayland compositor of this session can be reached.</source>
        <translation>Weder der X-Server noch der Wayland-Compositor dieser Sitzung ist erreichbar.</translation>
    </message>
    <message>
        <source>The X server that DISPLAY names cannot be reached.</source>
        <translation>Der X-Server, den DISPLAY nennt, ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The Wayland compositor that WAYLAND_DISPLAY names cannot be reached.</source>
        <translation>Der Wayland-Compositor, den WAYLAND_DISPLAY nennt, ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The Wayland compositor cannot be reached.</source>
        <translation>Der Wayland-Compositor ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The Wayland compositor does not answer.</source>
        <translation>Der Wayland-Compositor antwortet nicht.</translation>
    </message>
    <message>
        <source>There is no display.</source>
        <translation>Es gibt keine Anzeige.</translation>
    </message>
    <message>
        <source>The X server lets no program press keys: its XTest extension is missing.</source>
        <translation>Der X-Server lässt kein Programm Tasten drücken: Seine Erweiterung XTest fehlt.</translation>
    </message>
    <message>
        <source>The X server does not describe its keyboard (XKB).</source>
        <translation>Der X-Server beschreibt seine Tastatur nicht (XKB).</translation>
    </message>
    <message>
        <source>The X server does not tell of clipboard changes (XFixes).</source>
        <translation>Der X-Server meldet keine Änderungen der Zwischenablage (XFixes).</translation>
    </message>
    <message>
        <source>No window manager tells which window is active.</source>
        <translation>Kein Fensterverwalter sagt, welches Fenster aktiv ist.</translation>
    </message>
    <message>
        <source>KWin lets installed programs alone press keys and see which window is active. Install Murmel&apos;s package, or its desktop file in ~/.local/share/applications, and start Murmel anew.</source>
        <translation>KWin lässt nur installierte Programme Tasten drücken und sehen, welches Fenster aktiv ist. Installieren Sie das Paket von Murmel oder seine Desktop-Datei in ~/.local/share/applications, und starten Sie Murmel neu.</translation>
    </message>
    <message>
        <source>This desktop lets no program press keys or see which window is active.</source>
        <translation>Dieser Desktop lässt kein Programm Tasten drücken oder sehen, welches Fenster aktiv ist.</translation>
    </message>
    <message>
        <source>This desktop lets no program hear a shortcut. Bind a key to the command “murmel toggle” in its settings.</source>
        <translation>Dieser Desktop lässt kein Programm ein Kürzel hören. Legen Sie in seinen Einstellungen eine Taste auf den Befehl „murmel toggle“.</translation>
    </message>
    <message>
        <source>The compositor lets no program press keys.</source>
        <translation>Der Compositor lässt kein Programm Tasten drücken.</translation>
    </message>
    <message>
        <source>The compositor does not let this program press keys.</source>
        <translation>Der Compositor lässt dieses Programm keine Tasten drücken.</translation>
    </message>
    <message>
        <source>The compositor does not tell of its windows.</source>
        <translation>Der Compositor meldet seine Fenster nicht.</translation>
    </message>
    <message>
        <source>The compositor lets no program without a window have the clipboard.</source>
        <translation>Der Compositor gibt Programmen ohne Fenster die Zwischenablage nicht.</translation>
    </message>
    <message>
        <source>There is no keyboard layout to press keys of (xkb-data).</source>
        <translation>Es gibt keine Tastaturbelegung, um Tasten zu drücken (xkb-data).</translation>
    </message>
    <message>
        <source>PocketSphinx, US English</source>
        <translation>PocketSphinx, US-Englisch</translation>
    </message>
    <message>
        <source>Hears about a hundred languages; about 3 English words in 100 are wrong.</source>
        <translation>Hört etwa hundert Sprachen; etwa 3 von 100 englischen Wörtern sind falsch.</translation>
    </message>
    <message>
        <source>Hears US English alone; about 27 words in 100 are wrong, and it sets no punctuation.</source>
        <translation>Hört nur US-Englisch; etwa 27 von 100 Wörtern sind falsch, Satzzeichen setzt es nicht.</translation>
    </message>
    <message>
        <source>GNOME tells programs which window is active through an extension only. Murmel&apos;s can be enabled in its setup; if GNOME does not know it yet, log in again.</source>
        <translation>GNOME sagt Programmen nur über eine Erweiterung, welches Fenster aktiv ist. Die von Murmel lässt sich in der Einrichtung einschalten; kennt GNOME sie noch nicht, melden Sie sich neu an.</translation>
    </message>
    <message>
        <source>This desktop cannot hear this key. Choose another one, F10 or Ctrl+Space for instance.</source>
        <translation>Diese Taste ist auf diesem Desktop nicht zu hören. Wählen Sie eine andere, etwa F10 oder Strg+Leertaste.</translation>
    </message>
    <message>
        <source>%1 cannot hear this key. Choose another one, F10 or Ctrl+Space for instance.</source>
        <translation>%1 kann diese Taste nicht hören. Wählen Sie eine andere, zum Beispiel F10 oder Strg+Leertaste.</translation>
    </message>
    <message>
        <source>%1 tells nobody when a modifier key alone is let go of. Choose a key with modifiers, Ctrl+Space for instance.</source>
        <translation>%1 sagt niemandem, wann eine Umschalttaste allein losgelassen wird. Wählen Sie eine Taste mit Umschalttasten, zum Beispiel Strg+Leertaste.</translation>
    </message>
    <message>
        <source>sway tells nobody when a modifier key is let go of. Choose a key with modifiers, Ctrl+Space for instance.</source>
        <translation>sway sagt niemandem, wann eine Umschalttaste losgelassen wird. Wählen Sie eine Taste mit Umschalttasten, zum Beispiel Strg+Leertaste.</translation>
    </message>
    <message>
        <source>KDE&apos;s service for global shortcuts does not answer.</source>
        <translation>KDEs Dienst für globale Tastenkürzel antwortet nicht.</translation>
    </message>
    <message>
        <source>KDE or another program has this shortcut. Choose another one, or take it away there in the system settings.</source>
        <translation>KDE oder ein anderes Programm hat dieses Kürzel. Wählen Sie ein anderes, oder nehmen Sie es dort in den Systemeinstellungen weg.</translation>
    </message>
    <message>
        <source>GNOME&apos;s settings daemon, which listens for shortcuts, is not installed. Enable Murmel&apos;s extension instead.</source>
        <translation>GNOMEs Einstellungsdienst, der auf Tastenkürzel hört, ist nicht installiert. Schalten Sie stattdessen die Erweiterung von Murmel ein.</translation>
    </message>
    <message>
        <source>KWin does not let this program press keys.</source>
        <translation>KWin lässt dieses Programm keine Tasten drücken.</translation>
    </message>
    <message>
        <source>KWin does not tell this program of its windows.</source>
        <translation>KWin sagt diesem Programm nichts von seinen Fenstern.</translation>
    </message>
    <message>
        <source>The desktop did not bind the shortcut. %1</source>
        <translation>Der Desktop hat das Kürzel nicht belegt. %1</translation>
    </message>
    <message>
        <source>The desktop has bound the shortcut, but does not tell of it. %1</source>
        <translation>Der Desktop hat das Kürzel belegt, meldet es aber nicht. %1</translation>
    </message>
    <message>
        <source>Press the shortcut once: whether this desktop tells of it is known then. Where it does not, another way is taken.</source>
        <translation>Drücken Sie das Kürzel einmal: Danach ist bekannt, ob dieser Desktop es meldet. Tut er es nicht, wird ein anderer Weg genommen.</translation>
    </message>
    <message>
        <source>The desktop is asking you whether Murmel may press keys.</source>
        <translation>Der Desktop fragt Sie gerade, ob Murmel Tasten drücken darf.</translation>
    </message>
    <message>
        <source>The desktop did not let Murmel press keys when it was asked to.</source>
        <translation>Der Desktop hat auf die Frage hin nicht erlaubt, dass Murmel Tasten drückt.</translation>
    </message>
    <message>
        <source>The desktop lets Murmel press keys no more: its permission was ended.</source>
        <translation>Der Desktop lässt Murmel keine Tasten mehr drücken: Die Erlaubnis wurde beendet.</translation>
    </message>
    <message>
        <source>The desktop lets Murmel press keys once you have allowed it: it asks you then. A Murmel that runs may have been allowed already.</source>
        <translation>Der Desktop lässt Murmel Tasten drücken, sobald Sie es erlaubt haben: Er fragt Sie dann. Einem laufenden Murmel kann es schon erlaubt sein.</translation>
    </message>
    <message>
        <source>The desktop lets Murmel press keys once you have allowed it, after each start of Murmel.</source>
        <translation>Der Desktop lässt Murmel Tasten drücken, sobald Sie es erlaubt haben, nach jedem Start von Murmel neu.</translation>
    </message>
    <message>
        <source>Text is pasted through the desktop&apos;s portal, into applications that tell of their windows on the accessibility bus.</source>
        <translation>Text wird über das Portal des Desktops eingefügt, in Anwendungen, die auf dem Bus für Barrierefreiheit von ihren Fenstern berichten.</translation>
    </message>
    <message>
        <source>Which window is active is told on the accessibility bus (at-spi2-core) alone here, which does not run.</source>
        <translation>Welches Fenster aktiv ist, erfährt man hier nur auf dem Bus für Barrierefreiheit (at-spi2-core), der nicht läuft.</translation>
    </message>
    <message>
        <source>Murmel ended before your words could be inserted, and the clipboard did not take them.</source>
        <translation>Murmel wurde beendet, bevor Ihre Worte eingefügt werden konnten, und die Zwischenablage hat sie nicht angenommen.</translation>
    </message>
    <message>
        <source>The text could not be put on the clipboard.</source>
        <translation>Der Text konnte nicht in die Zwischenablage gelegt werden.</translation>
    </message>
    <message>
        <source>This desktop keeps no clipboard of a program that has ended: paste within ten seconds.</source>
        <translation>Dieser Desktop behält keine Zwischenablage eines beendeten Programms: Fügen Sie sie innerhalb von zehn Sekunden ein.</translation>
    </message>
    <message>
        <source>The last dictations could not be kept in the history.</source>
        <translation>Die letzten Diktate konnten nicht im Verlauf aufbewahrt werden.</translation>
    </message>
</context>
<context>
    <name>MicrophoneStep</name>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>Say a sentence as you would dictate it, and watch the level.</source>
        <translation>Sagen Sie einen Satz, wie Sie ihn diktieren würden, und achten Sie auf den Pegel.</translation>
    </message>
    <message>
        <source>Microphone in use</source>
        <translation>Verwendetes Mikrofon</translation>
    </message>
    <message>
        <source>Choosing another one changes it for the whole desktop.</source>
        <translation>Ein anderes zu wählen ändert es für den ganzen Desktop.</translation>
    </message>
    <message>
        <source>This session has no list of microphones.</source>
        <translation>In dieser Sitzung gibt es keine Liste der Mikrofone.</translation>
    </message>
    <message>
        <source>Speak now</source>
        <translation>Sprechen Sie jetzt</translation>
    </message>
    <message>
        <source>Nothing of it is kept.</source>
        <translation>Nichts davon wird aufbewahrt.</translation>
    </message>
    <message>
        <source>Volume and devices</source>
        <translation>Lautstärke und Geräte</translation>
    </message>
    <message>
        <source>In the sound settings of the desktop.</source>
        <translation>In den Klangeinstellungen des Desktops.</translation>
    </message>
    <message>
        <source>Sound Settings…</source>
        <translation>Klangeinstellungen …</translation>
    </message>
    <message>
        <source>The microphone cannot be tried in this session.</source>
        <translation>Das Mikrofon kann in dieser Sitzung nicht ausprobiert werden.</translation>
    </message>
</context>
<context>
    <name>ModelStep</name>
    <message>
        <source>Speech model</source>
        <translation>Sprachmodell</translation>
    </message>
    <message>
        <source>It turns your voice into words, on this computer.</source>
        <translation>Es macht aus Ihrer Stimme Worte, auf diesem Computer.</translation>
    </message>
    <message>
        <source>Ready to use</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Better, on this computer</source>
        <translation>Besser, auf diesem Computer</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>There is no speech model yet.</source>
        <translation>Es gibt noch kein Sprachmodell.</translation>
    </message>
    <message>
        <source>You have the best one for this computer.</source>
        <translation>Sie haben das beste für diesen Computer.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Fortsetzen</translation>
    </message>
</context>
<context>
    <name>ModelsPage</name>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Verify</source>
        <translation>Prüfen</translation>
    </message>
    <message>
        <source>Remove…</source>
        <translation>Entfernen …</translation>
    </message>
    <message>
        <source>%1 — in use</source>
        <translation>%1 – in Gebrauch</translation>
    </message>
    <message>
        <source>License: %1.</source>
        <translation>Lizenz: %1.</translation>
    </message>
    <message>
        <source>Download of %1</source>
        <translation>Download von %1</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1 per second</source>
        <translation>%1 pro Sekunde</translation>
    </message>
    <message numerus="yes">
        <source>%n second(s) left</source>
        <translation>
            <numerusform>noch %n Sekunde</numerusform>
            <numerusform>noch %n Sekunden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s) left</source>
        <translation>
            <numerusform>noch %n Minute</numerusform>
            <numerusform>noch %n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>Not installed · %1 to download</source>
        <translation>Nicht installiert · %1 herunterzuladen</translation>
    </message>
    <message>
        <source>Not installed</source>
        <translation>Nicht installiert</translation>
    </message>
    <message>
        <source>Waiting…</source>
        <translation>Wartet …</translation>
    </message>
    <message>
        <source>Paused · %1</source>
        <translation>Angehalten · %1</translation>
    </message>
    <message>
        <source>Verifying…</source>
        <translation>Wird geprüft …</translation>
    </message>
    <message>
        <source>Installed, not verified yet · %1 on disk</source>
        <translation>Installiert, noch nicht geprüft · %1 auf der Platte</translation>
    </message>
    <message>
        <source>Installed and verified · %1 on disk</source>
        <translation>Installiert und geprüft · %1 auf der Platte</translation>
    </message>
    <message>
        <source>Damaged. Remove it and download it again.</source>
        <translation>Beschädigt. Entfernen Sie es und laden Sie es neu herunter.</translation>
    </message>
    <message>
        <source>Remove this model?</source>
        <translation>Dieses Modell entfernen?</translation>
    </message>
    <message>
        <source>%1 is deleted from this computer. It can be downloaded again.</source>
        <translation>%1 wird von diesem Computer gelöscht. Es lässt sich wieder herunterladen.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Speech Models</source>
        <translation>Sprachmodelle</translation>
    </message>
    <message>
        <source>Speech recognition</source>
        <translation>Spracherkennung</translation>
    </message>
    <message>
        <source>Punctuation and capitals</source>
        <translation>Satzzeichen und Großschreibung</translation>
    </message>
    <message>
        <source>No model was downloaded yet.</source>
        <translation>Es wurde noch kein Modell heruntergeladen.</translation>
    </message>
    <message>
        <source>Downloaded models occupy %1.</source>
        <translation>Heruntergeladene Modelle belegen %1.</translation>
    </message>
    <message>
        <source>Comes with Murmel</source>
        <translation>Kommt mit Murmel</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>Verwenden</translation>
    </message>
    <message>
        <source>Models run on this computer. Every file is checked before it is used. Q4 and Q8 in a name: the higher, the more exact, and the larger.</source>
        <translation>Modelle laufen auf diesem Computer. Jede Datei wird vor der Verwendung geprüft. Q4 und Q8 im Namen: je höher, desto genauer und größer.</translation>
    </message>
    <message>
        <source>Of those that are here, the best one for your language is used.</source>
        <translation>Von denen, die da sind, wird das beste für Ihre Sprache verwendet.</translation>
    </message>
    <message>
        <source>Used when “Format with a local model” is on, under Text.</source>
        <translation>Verwendet, wenn unter „Text“ „Mit lokalem Modell formatieren“ eingeschaltet ist.</translation>
    </message>
    <message>
        <source>Reads the whole model again and looks whether it is undamaged.</source>
        <translation>Liest das ganze Modell noch einmal und sieht nach, ob es unbeschädigt ist.</translation>
    </message>
</context>
<context>
    <name>NoticeWindow</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Messages of Murmel</source>
        <translation>Meldungen von Murmel</translation>
    </message>
</context>
<context>
    <name>PrivacyPage</name>
    <message>
        <source>History and Privacy</source>
        <translation>Verlauf und Datenschutz</translation>
    </message>
    <message>
        <source>Your voice stays in memory and is never written to disk. Your words are kept only where you ask for it, encrypted, on this computer.</source>
        <translation>Ihre Stimme bleibt im Arbeitsspeicher und wird nie auf die Platte geschrieben. Ihre Worte werden nur behalten, wo Sie es wünschen: verschlüsselt, auf diesem Computer.</translation>
    </message>
    <message>
        <source>Delete All…</source>
        <translation>Alles löschen …</translation>
    </message>
    <message>
        <source>Delete the whole history?</source>
        <translation>Den ganzen Verlauf löschen?</translation>
    </message>
    <message>
        <source>Every entry, and the key that could read copies of it, is deleted. They cannot be recovered.</source>
        <translation>Jeder Eintrag und der Schlüssel, mit dem sich Kopien lesen ließen, werden gelöscht. Sie lassen sich nicht wiederherstellen.</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Alles löschen</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Entsperren</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Keep a history</source>
        <translation>Verlauf führen</translation>
    </message>
    <message>
        <source>History is optional and off by default.</source>
        <translation>Der Verlauf ist freiwillig und anfangs ausgeschaltet.</translation>
    </message>
    <message>
        <source>Auto-delete history</source>
        <translation>Verlauf automatisch löschen</translation>
    </message>
    <message>
        <source>Entries that are older are deleted at once and cannot be recovered.</source>
        <translation>Ältere Einträge werden sofort gelöscht und lassen sich nicht wiederherstellen.</translation>
    </message>
    <message>
        <source>Open History…</source>
        <translation>Verlauf öffnen …</translation>
    </message>
    <message>
        <source>Stored entries</source>
        <translation>Gespeicherte Einträge</translation>
    </message>
    <message>
        <source>What Murmel never does</source>
        <translation>Was Murmel nie tut</translation>
    </message>
    <message>
        <source>No audio on disk</source>
        <translation>Kein Ton auf der Platte</translation>
    </message>
    <message>
        <source>Recordings live in memory and are gone with the dictation.</source>
        <translation>Aufnahmen sind nur im Arbeitsspeicher und mit dem Diktat wieder weg.</translation>
    </message>
    <message>
        <source>No network for your words</source>
        <translation>Kein Netz für Ihre Worte</translation>
    </message>
    <message>
        <source>No words in logs</source>
        <translation>Keine Worte in Protokollen</translation>
    </message>
    <message>
        <source>Logs hold times and counts, never what you said.</source>
        <translation>Protokolle enthalten Zeiten und Zahlen, nie das Gesagte.</translation>
    </message>
    <message>
        <source>None.</source>
        <translation>Keine.</translation>
    </message>
    <message numerus="yes">
        <source>%n entry(ies).</source>
        <translation>
            <numerusform>%n Eintrag.</numerusform>
            <numerusform>%n Einträge.</numerusform>
        </translation>
    </message>
    <message>
        <source>They stay until you delete them, although the history is off.</source>
        <translation>Sie bleiben, bis Sie sie löschen, obwohl der Verlauf aus ist.</translation>
    </message>
    <message>
        <source>Recognition and correction run in processes that have no network. Murmel opens a connection only to download a model that you ask for, and to look for new versions where you have allowed it.</source>
        <translation>Erkennung und Korrektur laufen in Prozessen ohne Netz. Murmel öffnet eine Verbindung nur, um ein Modell herunterzuladen, das Sie wollen, und um nach neuen Versionen zu sehen, wenn Sie das erlaubt haben.</translation>
    </message>
</context>
<context>
    <name>RecorderSheet</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>%1 of %2 times</source>
        <translation>%1 von %2 Mal</translation>
    </message>
    <message>
        <source>This desktop hears no modifier key alone: hold modifiers together with a key.</source>
        <translation>Dieser Desktop hört keine Umschalttaste allein: Halten Sie Umschalttasten zusammen mit einer Taste.</translation>
    </message>
    <message>
        <source>Most keyboards keep Fn to themselves: if nothing shows when you press it, it is not heard here.</source>
        <translation>Die meisten Tastaturen behalten Fn für sich: Wenn sich beim Drücken nichts zeigt, wird es hier nicht gehört.</translation>
    </message>
</context>
<context>
    <name>RecordingPill</name>
    <message>
        <source>The microphone has stopped</source>
        <translation>Das Mikrofon liefert nichts mehr</translation>
    </message>
    <message>
        <source>The microphone is silent</source>
        <translation>Das Mikrofon ist stumm</translation>
    </message>
    <message>
        <source>Sound from the microphone is being lost</source>
        <translation>Vom Mikrofon geht Ton verloren</translation>
    </message>
    <message>
        <source>The microphone is too loud</source>
        <translation>Das Mikrofon ist zu laut</translation>
    </message>
    <message>
        <source>No microphone: listening to the speakers</source>
        <translation>Kein Mikrofon: die Lautsprecher werden gehört</translation>
    </message>
    <message>
        <source>The microphone is very quiet</source>
        <translation>Das Mikrofon ist sehr leise</translation>
    </message>
    <message>
        <source>Stop and insert</source>
        <translation>Beenden und einfügen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Time of the recording</source>
        <translation>Dauer der Aufnahme</translation>
    </message>
    <message>
        <source>Start Dictation</source>
        <translation>Diktat beginnen</translation>
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
        <source>Speak, then let go</source>
        <translation>Sprechen, dann loslassen</translation>
    </message>
    <message>
        <source>Speak, then press again</source>
        <translation>Sprechen, dann nochmals drücken</translation>
    </message>
    <message>
        <source>Speak, then press again or click here</source>
        <translation>Sprechen, dann nochmals drücken oder hier klicken</translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>Murmel Settings</source>
        <translation>Murmel – Einstellungen</translation>
    </message>
    <message>
        <source>Reset This Page…</source>
        <translation>Seite zurücksetzen …</translation>
    </message>
    <message>
        <source>No setting has these words.</source>
        <translation>Keine Einstellung enthält diese Wörter.</translation>
    </message>
    <message>
        <source>Search settings</source>
        <translation>Einstellungen suchen</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Reset the page “%1”?</source>
        <translation>Die Seite „%1“ zurücksetzen?</translation>
    </message>
    <message>
        <source>Its settings become what they are without your changes. Vocabulary and history stay.</source>
        <translation>Ihre Einstellungen werden, wie sie ohne Ihre Änderungen sind. Wörterbuch und Verlauf bleiben.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
</context>
<context>
    <name>ShortcutPage</name>
    <message>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>The keys that start and stop a dictation, whatever application is in front.</source>
        <translation>Die Tasten, die ein Diktat starten und beenden, welche Anwendung auch vorn ist.</translation>
    </message>
    <message>
        <source>Dictation shortcut</source>
        <translation>Tastenkürzel zum Diktieren</translation>
    </message>
    <message>
        <source>keys hotkey hold tap</source>
        <translation>tasten hotkey halten tippen</translation>
    </message>
    <message>
        <source>Keys cannot be recorded in this session.</source>
        <translation>In dieser Sitzung lassen sich keine Tasten aufnehmen.</translation>
    </message>
    <message>
        <source>Setup and permissions</source>
        <translation>Einrichtung und Berechtigungen</translation>
    </message>
    <message>
        <source>Check…</source>
        <translation>Prüfen …</translation>
    </message>
    <message>
        <source>Further shortcuts</source>
        <translation>Weitere Tastenkürzel</translation>
    </message>
    <message>
        <source>Discard the recording</source>
        <translation>Aufnahme verwerfen</translation>
    </message>
    <message>
        <source>Esc does that too, while Murmel listens.</source>
        <translation>Auch Esc tut das, während Murmel zuhört.</translation>
    </message>
    <message>
        <source>Paste the last dictation again</source>
        <translation>Letztes Diktat noch einmal einfügen</translation>
    </message>
    <message>
        <source>For two minutes after it.</source>
        <translation>Zwei Minuten lang danach.</translation>
    </message>
    <message>
        <source>Remove this shortcut</source>
        <translation>Dieses Kürzel entfernen</translation>
    </message>
    <message>
        <source>This desktop watches no further shortcut for Murmel.</source>
        <translation>Dieser Desktop achtet auf kein weiteres Kürzel für Murmel.</translation>
    </message>
    <message>
        <source>Record…</source>
        <translation>Aufnehmen …</translation>
    </message>
    <message>
        <source>Record other keys</source>
        <translation>Andere Tasten aufnehmen</translation>
    </message>
    <message>
        <source>Keys of your own</source>
        <translation>Eigene Tasten</translation>
    </message>
    <message>
        <source>Press the keys that you want to use instead of the shortcut above.</source>
        <translation>Drücken Sie die Tasten, die Sie statt des Kürzels oben verwenden wollen.</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keines</translation>
    </message>
    <message>
        <source>Change…</source>
        <translation>Ändern …</translation>
    </message>
</context>
<context>
    <name>ShortcutStep</name>
    <message>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>The keys that start and stop a dictation, whatever application is in front.</source>
        <translation>Die Tasten, die ein Diktat beginnen und beenden, welche Anwendung auch vorn ist.</translation>
    </message>
    <message>
        <source>Keys cannot be recorded in this session.</source>
        <translation>In dieser Sitzung können keine Tasten aufgenommen werden.</translation>
    </message>
    <message>
        <source>Suggestions</source>
        <translation>Vorschläge</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>Verwenden</translation>
    </message>
    <message>
        <source>Use %1</source>
        <translation>%1 verwenden</translation>
    </message>
    <message>
        <source>Hold both while you speak. They write nothing and are on every keyboard.</source>
        <translation>Halten Sie beide, während Sie sprechen. Sie schreiben nichts und sind auf jeder Tastatur.</translation>
    </message>
    <message>
        <source>Twice to start, twice to stop: nothing has to be held down.</source>
        <translation>Zweimal zum Beginnen, zweimal zum Beenden: Nichts muss gehalten werden.</translation>
    </message>
    <message>
        <source>In Use</source>
        <translation>Verwendet</translation>
    </message>
    <message>
        <source>Record Other Keys…</source>
        <translation>Andere Tasten aufnehmen …</translation>
    </message>
    <message>
        <source>Hold the keys while you speak. This desktop hears them, but no modifier key alone.</source>
        <translation>Halten Sie die Tasten, während Sie sprechen. Dieser Desktop hört sie, aber keine Umschalttaste allein.</translation>
    </message>
    <message>
        <source>Nothing Happened</source>
        <translation>Nichts geschah</translation>
    </message>
</context>
<context>
    <name>TextPage</name>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>What becomes of the recognized words before they are inserted.</source>
        <translation>Was aus den erkannten Wörtern wird, bevor sie eingefügt werden.</translation>
    </message>
    <message>
        <source>Clean-up</source>
        <translation>Aufräumen</translation>
    </message>
    <message>
        <source>Remove filler words</source>
        <translation>Füllwörter entfernen</translation>
    </message>
    <message>
        <source>Optional cleanup for common Russian and English fillers. Unlike Conservative punctuation, this intentionally removes spoken words.</source>
        <translation>Entfernt auf Wunsch übliche russische und englische Füllwörter. Anders als die konservative Zeichensetzung nimmt dies bewusst gesprochene Wörter weg.</translation>
    </message>
    <message>
        <source>um uh you know</source>
        <translation>äh ähm füller</translation>
    </message>
    <message>
        <source>Punctuation and capitals</source>
        <translation>Satzzeichen und Großschreibung</translation>
    </message>
    <message>
        <source>Format with a local model</source>
        <translation>Mit lokalem Modell formatieren</translation>
    </message>
    <message>
        <source>Conservative: a language model on this computer sets punctuation and capitals, and can neither change nor remove a word. From the next dictation.</source>
        <translation>Konservativ: Ein Sprachmodell auf diesem Computer setzt Satzzeichen und Großschreibung und kann kein Wort ändern oder entfernen. Ab dem nächsten Diktat.</translation>
    </message>
    <message>
        <source>Automatic correction routing</source>
        <translation>Automatische Wahl der Korrektur</translation>
    </message>
    <message>
        <source>Russian goes to a corrector of its own where it is installed, everything else to the model below.</source>
        <translation>Russisch geht an eine eigene Korrektur, wo sie installiert ist, alles andere an das Modell darunter.</translation>
    </message>
    <message>
        <source>By language</source>
        <translation>Nach Sprache</translation>
    </message>
    <message>
        <source>Selected model only</source>
        <translation>Nur gewähltes Modell</translation>
    </message>
    <message>
        <source>Language model</source>
        <translation>Sprachmodell</translation>
    </message>
    <message>
        <source>Recommendation</source>
        <translation>Empfehlung</translation>
    </message>
    <message>
        <source>Not installed. Get it under Speech Models.</source>
        <translation>Nicht installiert. Sie erhalten es unter „Sprachmodelle“.</translation>
    </message>
    <message>
        <source>Installed.</source>
        <translation>Installiert.</translation>
    </message>
    <message>
        <source>Needs a language model; get one under Speech Models.</source>
        <translation>Braucht ein Sprachmodell; Sie erhalten es unter „Sprachmodelle“.</translation>
    </message>
    <message>
        <source>Personal vocabulary</source>
        <translation>Persönliches Wörterbuch</translation>
    </message>
    <message>
        <source>Replacements</source>
        <translation>Ersetzungen</translation>
    </message>
    <message>
        <source>One replacement per line, for example: postgresql = PostgreSQL</source>
        <translation>Eine Ersetzung pro Zeile, zum Beispiel: postgresql = PostgreSQL</translation>
    </message>
    <message>
        <source>vocabulary words names spelling</source>
        <translation>wörterbuch wörter namen schreibweise</translation>
    </message>
    <message>
        <source>Spoken commands</source>
        <translation>Gesprochene Befehle</translation>
    </message>
    <message>
        <source>“Comma”, “period”, “new line”, “open quote” and the like write what they name; say “literal comma” for the word. In English, German, French, Spanish and Russian.</source>
        <translation>„Komma“, „Punkt“, „neue Zeile“, „Anführungszeichen auf“ und ähnliche schreiben, was sie nennen; für das Wort selbst sagt man „wörtlich Komma“. Auf Deutsch, Englisch, Französisch, Spanisch und Russisch.</translation>
    </message>
    <message>
        <source>punctuation voice dictation commands</source>
        <translation>Satzzeichen Sprache Diktat Befehle</translation>
    </message>
    <message>
        <source>Space between dictations</source>
        <translation>Leerzeichen zwischen Diktaten</translation>
    </message>
    <message>
        <source>When you dictate twice in a row into the same field and press nothing in between, a space is pasted before the second text.</source>
        <translation>Wenn Sie zweimal nacheinander in dasselbe Feld diktieren und dazwischen nichts drücken, wird vor dem zweiten Text ein Leerzeichen eingefügt.</translation>
    </message>
    <message>
        <source>This desktop does not let Murmel hear whether a key is pressed in between.</source>
        <translation>Dieser Desktop lässt Murmel nicht hören, ob dazwischen eine Taste gedrückt wird.</translation>
    </message>
</context>
<context>
    <name>Titles</name>
    <message>
        <source>English</source>
        <translation>Englisch</translation>
    </message>
    <message>
        <source>Spanish</source>
        <translation>Spanisch</translation>
    </message>
    <message>
        <source>French</source>
        <translation>Französisch</translation>
    </message>
    <message>
        <source>German</source>
        <translation>Deutsch</translation>
    </message>
    <message>
        <source>Italian</source>
        <translation>Italienisch</translation>
    </message>
    <message>
        <source>Portuguese</source>
        <translation>Portugiesisch</translation>
    </message>
    <message>
        <source>Romanian</source>
        <translation>Rumänisch</translation>
    </message>
    <message>
        <source>Dutch</source>
        <translation>Niederländisch</translation>
    </message>
    <message>
        <source>Danish</source>
        <translation>Dänisch</translation>
    </message>
    <message>
        <source>Swedish</source>
        <translation>Schwedisch</translation>
    </message>
    <message>
        <source>Finnish</source>
        <translation>Finnisch</translation>
    </message>
    <message>
        <source>Hungarian</source>
        <translation>Ungarisch</translation>
    </message>
    <message>
        <source>Estonian</source>
        <translation>Estnisch</translation>
    </message>
    <message>
        <source>Latvian</source>
        <translation>Lettisch</translation>
    </message>
    <message>
        <source>Lithuanian</source>
        <translation>Litauisch</translation>
    </message>
    <message>
        <source>Maltese</source>
        <translation>Maltesisch</translation>
    </message>
    <message>
        <source>Polish</source>
        <translation>Polnisch</translation>
    </message>
    <message>
        <source>Czech</source>
        <translation>Tschechisch</translation>
    </message>
    <message>
        <source>Slovak</source>
        <translation>Slowakisch</translation>
    </message>
    <message>
        <source>Slovenian</source>
        <translation>Slowenisch</translation>
    </message>
    <message>
        <source>Croatian</source>
        <translation>Kroatisch</translation>
    </message>
    <message>
        <source>Bosnian</source>
        <translation>Bosnisch</translation>
    </message>
    <message>
        <source>Russian</source>
        <translation>Russisch</translation>
    </message>
    <message>
        <source>Ukrainian</source>
        <translation>Ukrainisch</translation>
    </message>
    <message>
        <source>Belarusian</source>
        <translation>Belarussisch</translation>
    </message>
    <message>
        <source>Bulgarian</source>
        <translation>Bulgarisch</translation>
    </message>
    <message>
        <source>Serbian</source>
        <translation>Serbisch</translation>
    </message>
    <message>
        <source>Greek</source>
        <translation>Griechisch</translation>
    </message>
    <message>
        <source>Never delete automatically</source>
        <translation>Nie automatisch löschen</translation>
    </message>
    <message>
        <source>After 5 minutes</source>
        <translation>Nach 5 Minuten</translation>
    </message>
    <message>
        <source>After 1 day</source>
        <translation>Nach 1 Tag</translation>
    </message>
    <message>
        <source>After 1 week</source>
        <translation>Nach 1 Woche</translation>
    </message>
    <message>
        <source>After 1 month</source>
        <translation>Nach 1 Monat</translation>
    </message>
    <message>
        <source>After 3 months</source>
        <translation>Nach 3 Monaten</translation>
    </message>
    <message>
        <source>Top edge</source>
        <translation>Oberer Rand</translation>
    </message>
    <message>
        <source>Right edge</source>
        <translation>Rechter Rand</translation>
    </message>
    <message>
        <source>Bottom edge</source>
        <translation>Unterer Rand</translation>
    </message>
    <message>
        <source>Left edge</source>
        <translation>Linker Rand</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
</context>
<context>
    <name>TrayMenu</name>
    <message>
        <source>Start Dictation</source>
        <translation>Diktat beginnen</translation>
    </message>
    <message>
        <source>Discard Dictation</source>
        <translation>Diktat verwerfen</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Noch einmal versuchen</translation>
    </message>
    <message>
        <source>Copy Last Dictation</source>
        <translation>Letztes Diktat kopieren</translation>
    </message>
    <message>
        <source>Paste Last Dictation Again</source>
        <translation>Letztes Diktat noch einmal einfügen</translation>
    </message>
    <message>
        <source>Bring Back the Clipboard</source>
        <translation>Zwischenablage zurückholen</translation>
    </message>
    <message>
        <source>Copy from History</source>
        <translation>Aus dem Verlauf kopieren</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Wird gesucht …</translation>
    </message>
    <message>
        <source>Pause Murmel</source>
        <translation>Murmel anhalten</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>History…</source>
        <translation>Verlauf …</translation>
    </message>
    <message>
        <source>Setup and Permissions…</source>
        <translation>Einrichtung und Berechtigungen …</translation>
    </message>
    <message>
        <source>Credits…</source>
        <translation>Mitwirkende …</translation>
    </message>
    <message>
        <source>About Murmel</source>
        <translation>Über Murmel</translation>
    </message>
    <message>
        <source>Quit Murmel</source>
        <translation>Murmel beenden</translation>
    </message>
    <message>
        <source>Paused: the shortcut is not heard</source>
        <translation>Angehalten: Das Tastenkürzel wird nicht gehört</translation>
    </message>
    <message>
        <source>Stop Dictation</source>
        <translation>Diktat beenden</translation>
    </message>
    <message>
        <source>Shortcut: %1</source>
        <translation>Tastenkürzel: %1</translation>
    </message>
    <message>
        <source>Language: %1</source>
        <translation>Sprache: %1</translation>
    </message>
    <message>
        <source>Speech Model: %1</source>
        <translation>Sprachmodell: %1</translation>
    </message>
    <message>
        <source>Nothing yet</source>
        <translation>Noch nichts</translation>
    </message>
    <message>
        <source>There is no microphone.</source>
        <translation>Es gibt kein Mikrofon.</translation>
    </message>
</context>
<context>
    <name>TrayTexts</name>
    <message>
        <source>%1 · downloading, %2 %</source>
        <translation>%1 · wird geladen, %2 %</translation>
    </message>
    <message>
        <source>none yet</source>
        <translation>noch keines</translation>
    </message>
</context>
<context>
    <name>TryStep</name>
    <message>
        <source>Try it here</source>
        <translation>Hier ausprobieren</translation>
    </message>
    <message>
        <source>Your words appear here</source>
        <translation>Hier erscheinen Ihre Worte</translation>
    </message>
    <message>
        <source>Hold %1, say a sentence, let go.</source>
        <translation>%1 halten, einen Satz sagen, loslassen.</translation>
    </message>
    <message>
        <source>A whole dictation, just as in any application. Once words have arrived here, you can finish.</source>
        <translation>Ein ganzes Diktat, genau wie in jeder Anwendung. Sobald hier Wörter angekommen sind, können Sie abschließen.</translation>
    </message>
    <message>
        <source>Press %1, say a sentence, press it again.</source>
        <translation>Drücken Sie %1, sagen Sie einen Satz, drücken Sie nochmals.</translation>
    </message>
</context>
<context>
    <name>UpdatePanel</name>
    <message>
        <source>Version %1 is available, %2.</source>
        <translation>Version %1 ist verfügbar, %2.</translation>
    </message>
    <message>
        <source>Looking for a new version…</source>
        <translation>Suche nach einer neuen Version …</translation>
    </message>
    <message>
        <source>This is the newest version.</source>
        <translation>Das ist die neueste Version.</translation>
    </message>
    <message>
        <source>Downloading, %1 of %2</source>
        <translation>Wird geladen, %1 von %2</translation>
    </message>
    <message>
        <source>Downloading…</source>
        <translation>Wird geladen …</translation>
    </message>
    <message>
        <source>Downloaded. It is installed when nobody dictates.</source>
        <translation>Geladen. Installiert wird, wenn niemand diktiert.</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>Wird installiert …</translation>
    </message>
    <message>
        <source>Installed. Murmel starts again.</source>
        <translation>Installiert. Murmel startet neu.</translation>
    </message>
    <message>
        <source>Check Now</source>
        <translation>Jetzt suchen</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installieren</translation>
    </message>
    <message>
        <source>Install When Idle</source>
        <translation>Installieren, wenn Ruhe ist</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Download of the update</source>
        <translation>Download des Updates</translation>
    </message>
    <message>
        <source>It comes with the packages of your system: %1</source>
        <translation>Sie kommt mit den Paketen Ihres Systems: %1</translation>
    </message>
    <message>
        <source>Last check: %1</source>
        <translation>Zuletzt gesucht: %1</translation>
    </message>
    <message>
        <source>Never checked</source>
        <translation>Noch nie gesucht</translation>
    </message>
</context>
<context>
    <name>VocabularyEditor</name>
    <message>
        <source>Unlock</source>
        <translation>Entsperren</translation>
    </message>
    <message>
        <source>Heard</source>
        <translation>Gehört</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Geschrieben</translation>
    </message>
    <message>
        <source>Replacements</source>
        <translation>Ersetzungen</translation>
    </message>
    <message>
        <source>Replacements as text</source>
        <translation>Ersetzungen als Text</translation>
    </message>
    <message>
        <source>Type a sentence to try the vocabulary on</source>
        <translation>Satz eingeben, um das Wörterbuch auszuprobieren</translation>
    </message>
    <message>
        <source>Try it</source>
        <translation>Ausprobieren</translation>
    </message>
    <message>
        <source>Import…</source>
        <translation>Importieren …</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message numerus="yes">
        <source>%n replacement(s)</source>
        <translation>
            <numerusform>%n Ersetzung</numerusform>
            <numerusform>%n Ersetzungen</numerusform>
        </translation>
    </message>
    <message>
        <source>line %1 has no “=” and does nothing</source>
        <translation>Zeile %1 hat kein „=“ und tut nichts</translation>
    </message>
    <message>
        <source>line %1 has nothing before the “=”</source>
        <translation>Zeile %1 hat nichts vor dem „=“</translation>
    </message>
    <message>
        <source>kept encrypted, with a key in your key ring</source>
        <translation>verschlüsselt, mit einem Schlüssel in Ihrem Schlüsselbund</translation>
    </message>
    <message>
        <source>Import Replacements</source>
        <translation>Ersetzungen importieren</translation>
    </message>
    <message>
        <source>Text files (*.txt);;All files (*)</source>
        <translation>Textdateien (*.txt);;Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>WelcomeStep</name>
    <message>
        <source>Dictate into any application</source>
        <translation>In jede Anwendung diktieren</translation>
    </message>
    <message>
        <source>What Murmel does</source>
        <translation>Was Murmel tut</translation>
    </message>
    <message>
        <source>Recognizes speech on this computer</source>
        <translation>Es erkennt Sprache auf diesem Computer</translation>
    </message>
    <message>
        <source>Inserts the words for you</source>
        <translation>Es fügt die Worte für Sie ein</translation>
    </message>
    <message>
        <source>What you had copied before is put back. When an application takes no text, your words stay on the clipboard.</source>
        <translation>Was Sie vorher kopiert hatten, kommt zurück. Nimmt eine Anwendung keinen Text an, bleiben Ihre Worte in der Zwischenablage.</translation>
    </message>
    <message>
        <source>What it never does</source>
        <translation>Was es niemals tut</translation>
    </message>
    <message>
        <source>Your voice is never written to disk or sent anywhere</source>
        <translation>Ihre Stimme wird nie auf die Platte geschrieben und nirgendwohin gesendet</translation>
    </message>
    <message>
        <source>Sound is kept in memory until it is recognized.</source>
        <translation>Ton bleibt im Arbeitsspeicher, bis er erkannt ist.</translation>
    </message>
    <message>
        <source>Your words are never written to a log</source>
        <translation>Ihre Worte stehen nie in einem Protokoll</translation>
    </message>
    <message>
        <source>There is a history only if you want one, and it is encrypted.</source>
        <translation>Einen Verlauf gibt es nur, wenn Sie ihn wollen, und er ist verschlüsselt.</translation>
    </message>
    <message>
        <source>Press a shortcut and speak: your words appear where you write.</source>
        <translation>Tastenkürzel drücken und sprechen: Ihre Wörter erscheinen dort, wo Sie schreiben.</translation>
    </message>
    <message>
        <source>Listens only while you dictate</source>
        <translation>Hört nur zu, während Sie diktieren</translation>
    </message>
    <message>
        <source>From the shortcut, or a click on its button, until you let go or press again.</source>
        <translation>Vom Tastenkürzel oder einem Klick auf seinen Knopf an, bis Sie loslassen oder nochmals drücken.</translation>
    </message>
    <message>
        <source>No network is needed for it.</source>
        <translation>Dafür ist kein Netz nötig.</translation>
    </message>
</context>
</TS>
