<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AudioLevelMeter</name>
    <message>
        <source>Microphone level</source>
        <translation>Mikrofonpegel</translation>
    </message>
</context>
<context>
    <name>CameraConfig</name>
    <message>
        <source>Camera Configuration</source>
        <translation>Kamerakonfiguration</translation>
    </message>
    <message>
        <source>No camera is connected to this computer.</source>
        <translation>An diesen Computer ist keine Kamera angeschlossen.</translation>
    </message>
    <message>
        <source>Camera:</source>
        <translation>Kamera:</translation>
    </message>
    <message>
        <source>Microphone:</source>
        <translation>Mikrofon:</translation>
    </message>
    <message>
        <source>Input level:</source>
        <translation>Eingangspegel:</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Klicken Sie auf das Schloss, um Änderungen vorzunehmen.</translation>
    </message>
    <message>
        <source>Bind</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>The camera this computer records with for the server</source>
        <translation>Die Kamera, mit der dieser Computer für den Server aufnimmt</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>The microphone this computer records with for the server</source>
        <translation>Das Mikrofon, mit dem dieser Computer für den Server aufnimmt</translation>
    </message>
    <message>
        <source>Input level</source>
        <translation>Eingangspegel</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Wie laut das gewählte Mikrofon ist</translation>
    </message>
    <message>
        <source>Unlocks the settings with administrator rights, or locks them again</source>
        <translation>Entsperrt die Einstellungen mit Administratorrechten oder sperrt sie wieder</translation>
    </message>
    <message>
        <source>Binds this computer as a camera to a server, or unbinds it</source>
        <translation>Bindet diesen Computer als Kamera an einen Server oder löst ihn wieder</translation>
    </message>
</context>
<context>
    <name>CameraConfigController</name>
    <message>
        <source>Server:</source>
        <translation>Server:</translation>
    </message>
    <message>
        <source>User name:</source>
        <translation>Benutzername:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Passwort:</translation>
    </message>
    <message>
        <source>Camera name:</source>
        <translation>Kameraname:</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Unbind</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Bind</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Lumex requires that you authenticate as a server administrator to %@.</source>
        <translation>Lumex erfordert, dass Sie sich als Serveradministrator von %@ anmelden.</translation>
    </message>
    <message>
        <source>Binding failed</source>
        <translation>Verbinden fehlgeschlagen</translation>
    </message>
    <message>
        <source>Please confirm that the server is reachable and that the server administrator user name and password are correct.</source>
        <translation>Bitte prüfen Sie, ob der Server erreichbar ist und ob Benutzername und Passwort des Serveradministrators stimmen.</translation>
    </message>
    <message>
        <source>Unbinding failed</source>
        <translation>Trennen fehlgeschlagen</translation>
    </message>
    <message>
        <source>Please confirm that the server administrator user name and password are correct and that the server is reachable.</source>
        <translation>Bitte prüfen Sie, ob Benutzername und Passwort des Serveradministrators stimmen und ob der Server erreichbar ist.</translation>
    </message>
    <message>
        <source>Unable to start/stop the camera agent.</source>
        <translation>Der Kamera-Agent konnte nicht gestartet oder gestoppt werden.</translation>
    </message>
    <message>
        <source>Received error status</source>
        <translation>Fehlerstatus erhalten</translation>
    </message>
    <message>
        <source>Click the lock to prevent further changes.</source>
        <translation>Klicken Sie auf das Schloss, um weitere Änderungen zu verhindern.</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Klicken Sie auf das Schloss, um Änderungen vorzunehmen.</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>The address of the server this camera is bound to</source>
        <translation>Die Adresse des Servers, an den diese Kamera gebunden ist</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>The account of the server&apos;s administrator</source>
        <translation>Das Konto des Serveradministrators</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>The password of the administrator&apos;s account</source>
        <translation>Das Passwort des Administratorkontos</translation>
    </message>
    <message>
        <source>Camera name</source>
        <translation>Kameraname</translation>
    </message>
    <message>
        <source>The name this camera has on the server</source>
        <translation>Der Name dieser Kamera auf dem Server</translation>
    </message>
    <message>
        <source>Binds or unbinds this camera with the administrator&apos;s account</source>
        <translation>Bindet oder löst diese Kamera mit dem Administratorkonto</translation>
    </message>
    <message>
        <source>Closes this sheet and changes nothing</source>
        <translation>Schließt dieses Fenster, ohne etwas zu ändern</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Schließt diese Meldung</translation>
    </message>
    <message>
        <source>Unlocked</source>
        <translation>Entsperrt</translation>
    </message>
    <message>
        <source>Locked</source>
        <translation>Gesperrt</translation>
    </message>
</context>
<context>
    <name>CaptureDevicesController</name>
    <message>
        <source>Cannot find the audio and video devices</source>
        <translation>Die Audio- und Videogeräte wurden nicht gefunden</translation>
    </message>
</context>
<context>
    <name>CountdownView</name>
    <message>
        <source>Counts down the seconds before the recording starts</source>
        <translation>Zählt die Sekunden bis zum Beginn der Aufnahme herunter</translation>
    </message>
    <message>
        <source>Recording starts in 1 second</source>
        <translation>Aufnahme beginnt in 1 Sekunde</translation>
    </message>
    <message numerus="yes">
        <source>Recording starts in %n seconds</source>
        <translation>
            <numerusform>Aufnahme beginnt in %n Sekunde</numerusform>
            <numerusform>Aufnahme beginnt in %n Sekunden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DesktopNotifier</name>
    <message>
        <source>Podcast Published</source>
        <translation>Podcast veröffentlicht</translation>
    </message>
    <message>
        <source>&quot;%@&quot; has been uploaded.</source>
        <translation>„%@“ wurde hochgeladen.</translation>
    </message>
    <message>
        <source>Podcast Not Published</source>
        <translation>Podcast nicht veröffentlicht</translation>
    </message>
    <message>
        <source>&quot;%@&quot; could not be uploaded. You can retry it in the Transfers window.</source>
        <translation>„%@“ konnte nicht hochgeladen werden. Sie können es im Fenster „Übertragungen“ erneut versuchen.</translation>
    </message>
</context>
<context>
    <name>DeviceChooser</name>
    <message>
        <source>No Camera</source>
        <translation>Keine Kamera</translation>
    </message>
</context>
<context>
    <name>DonePage</name>
    <message>
        <source>New Recording</source>
        <translation>Neue Aufnahme</translation>
    </message>
    <message>
        <source>Whether the recording was handed to the server</source>
        <translation>Ob die Aufnahme an den Server übergeben wurde</translation>
    </message>
    <message>
        <source>Starts a new recording</source>
        <translation>Beginnt eine neue Aufnahme</translation>
    </message>
</context>
<context>
    <name>GLScreenGrabController</name>
    <message>
        <source>Lumex cannot show the screen: no picture came from the desktop&apos;s screen sharing (%1).</source>
        <translation>Lumex kann den Bildschirm nicht zeigen: Von der Bildschirmfreigabe des Desktops kam kein Bild (%1).</translation>
    </message>
</context>
<context>
    <name>InterruptedRecordings</name>
    <message>
        <source>Publish the recording interrupted on %@?</source>
        <translation>Die am %@ unterbrochene Aufnahme veröffentlichen?</translation>
    </message>
    <message>
        <source>Lumex or the computer stopped while this recording was made. If you do not publish it now, it stays in %@.</source>
        <translation>Lumex oder der Computer wurde während dieser Aufnahme beendet. Wenn Sie sie jetzt nicht veröffentlichen, bleibt sie in %@.</translation>
    </message>
    <message>
        <source>Publish…</source>
        <translation>Veröffentlichen …</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Nicht jetzt</translation>
    </message>
    <message>
        <source>“%1” is still recording. Continue, publish or discard it?</source>
        <translation>„%1“ nimmt noch auf. Fortsetzen, veröffentlichen oder verwerfen?</translation>
    </message>
    <message>
        <source>Lumex ended while this camera was recording for you; it has gone on since.</source>
        <translation>Lumex wurde beendet, während diese Kamera für Sie aufnahm; sie hat seitdem weiter aufgenommen.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
</context>
<context>
    <name>LXApplication</name>
    <message>
        <source>Usage: lumex [FILE…]
Records from a server&apos;s camera, this computer&apos;s camera and microphone or the screen,
and publishes to a media server. Movie files named are offered for submission; with
Lumex already running, they are handed to it.

  --version  print the version and exit
  --help     print this text and exit
</source>
        <translation>Aufruf: lumex [DATEI…]
Nimmt mit einer Kamera des Servers, der Kamera und dem Mikrofon dieses Computers oder dem
Bildschirm auf und veröffentlicht auf einem Medienserver. Genannte Filmdateien werden zum
Übermitteln angeboten; läuft Lumex bereits, werden sie an das laufende Lumex übergeben.

  --version  die Version ausgeben und beenden
  --help     diesen Text ausgeben und beenden
</translation>
    </message>
</context>
<context>
    <name>LXController</name>
    <message>
        <source>The server&apos;s list of workflows could not be read.</source>
        <translation>Die Liste der Workflows des Servers konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Aufnahme anhalten</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Aufnahme fortsetzen</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Podcast aufnehmen</translation>
    </message>
    <message>
        <source>Do you want to delete the recording and Quit?</source>
        <translation>Möchten Sie die Aufnahme löschen und Lumex beenden?</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Keeps Lumex running with the recording</source>
        <translation>Lässt Lumex mit der Aufnahme weiterlaufen</translation>
    </message>
    <message>
        <source>Deletes the recording and quits Lumex</source>
        <translation>Löscht die Aufnahme und beendet Lumex</translation>
    </message>
    <message>
        <source>Recording Paused</source>
        <translation>Aufnahme angehalten</translation>
    </message>
    <message>
        <source>Your podcast is being submitted.</source>
        <translation>Ihr Podcast wird übermittelt.</translation>
    </message>
    <message>
        <source>Your podcast has been successfully submitted.</source>
        <translation>Ihr Podcast wurde erfolgreich übermittelt.</translation>
    </message>
    <message>
        <source>There was an error submitting your podcast.</source>
        <translation>Beim Übermitteln Ihres Podcasts ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Delete recording and Start Over?</source>
        <translation>Aufnahme löschen und neu beginnen?</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Neu beginnen</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>The recording could not be trimmed, so it is published whole.</source>
        <translation>Die Aufnahme konnte nicht gekürzt werden und wird deshalb vollständig veröffentlicht.</translation>
    </message>
    <message>
        <source>The screen is recorded without the camera. %1</source>
        <translation>Der Bildschirm wird ohne die Kamera aufgenommen. %1</translation>
    </message>
</context>
<context>
    <name>LXLoginPanelController</name>
    <message>
        <source>Connecting…</source>
        <translation>Verbindungsaufbau…</translation>
    </message>
</context>
<context>
    <name>LXMainWindow</name>
    <message>
        <source>Lumex</source>
        <translation>Lumex</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Neu beginnen</translation>
    </message>
    <message>
        <source>Publish</source>
        <translation>Veröffentlichen</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Aufnehmen</translation>
    </message>
    <message>
        <source>&amp;Lumex</source>
        <translation>&amp;Lumex</translation>
    </message>
    <message>
        <source>&amp;Sign In…</source>
        <translation>&amp;Anmelden…</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Einstellungen…</translation>
    </message>
    <message>
        <source>&amp;Quit Lumex</source>
        <translation>Lumex &amp;beenden</translation>
    </message>
    <message>
        <source>&amp;Recording</source>
        <translation>A&amp;ufnahme</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Podcast aufnehmen</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Transfers</source>
        <translation>Ü&amp;bertragungen</translation>
    </message>
    <message>
        <source>&amp;Camera Configuration…</source>
        <translation>&amp;Kamerakonfiguration…</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Goes back, or discards the recording and starts over</source>
        <translation>Geht zurück oder verwirft die Aufnahme und beginnt neu</translation>
    </message>
    <message>
        <source>Goes on to describe and publish the recording</source>
        <translation>Weiter zum Beschreiben und Veröffentlichen der Aufnahme</translation>
    </message>
    <message>
        <source>Choose Movie Files</source>
        <translation>Filmdateien auswählen</translation>
    </message>
</context>
<context>
    <name>LXRecordButton</name>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Aufnehmen</translation>
    </message>
    <message>
        <source>Recording. Press to pause the recording.</source>
        <translation>Aufnahme läuft. Drücken, um die Aufnahme anzuhalten.</translation>
    </message>
    <message>
        <source>Not recording. Press to start or resume the recording.</source>
        <translation>Keine Aufnahme. Drücken, um die Aufnahme zu starten oder fortzusetzen.</translation>
    </message>
</context>
<context>
    <name>LoginPanel</name>
    <message>
        <source>Sign In to Lumex</source>
        <translation>Bei Lumex anmelden</translation>
    </message>
    <message>
        <source>Sign in to your media server</source>
        <translation>Melden Sie sich bei Ihrem Medienserver an</translation>
    </message>
    <message>
        <source>Lumex records to the workflows of your organisation&apos;s server. Enter the server&apos;s address and your account.</source>
        <translation>Lumex nimmt für die Workflows des Servers Ihrer Einrichtung auf. Geben Sie die Adresse des Servers und Ihr Konto ein.</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Server:</translation>
    </message>
    <message>
        <source>media.example.edu</source>
        <translation>media.example.edu</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Benutzername:</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Passwort:</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>The address of your organisation&apos;s media server</source>
        <translation>Die Adresse des Medienservers Ihrer Organisation</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Your account on the media server</source>
        <translation>Ihr Konto auf dem Medienserver</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>The password of your account</source>
        <translation>Das Passwort Ihres Kontos</translation>
    </message>
    <message>
        <source>Closes this window without signing in</source>
        <translation>Schließt dieses Fenster ohne Anmeldung</translation>
    </message>
    <message>
        <source>Signs in to the server with this account</source>
        <translation>Meldet sich mit diesem Konto beim Server an</translation>
    </message>
</context>
<context>
    <name>MetadataPage</name>
    <message>
        <source>Describe your recording</source>
        <translation>Beschreiben Sie Ihre Aufnahme</translation>
    </message>
    <message>
        <source>Give the recording a title and a description, then choose where it goes.</source>
        <translation>Geben Sie der Aufnahme einen Titel und eine Beschreibung und wählen Sie dann ihr Ziel.</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Title of the recording</source>
        <translation>Titel der Aufnahme</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>What is it about?</source>
        <translation>Worum geht es?</translation>
    </message>
    <message>
        <source>Workflow</source>
        <translation>Workflow</translation>
    </message>
    <message>
        <source>What to fill in before publishing</source>
        <translation>Was vor dem Veröffentlichen auszufüllen ist</translation>
    </message>
    <message>
        <source>The movie files that are published</source>
        <translation>Die Filmdateien, die veröffentlicht werden</translation>
    </message>
    <message>
        <source>The title the recording is published with</source>
        <translation>Der Titel, unter dem die Aufnahme veröffentlicht wird</translation>
    </message>
    <message>
        <source>A description published with the recording</source>
        <translation>Eine Beschreibung, die mit der Aufnahme veröffentlicht wird</translation>
    </message>
    <message>
        <source>The server workflow that processes the recording</source>
        <translation>Der Server-Workflow, der die Aufnahme verarbeitet</translation>
    </message>
    <message>
        <source>Files to publish:</source>
        <translation>Zu veröffentlichende Dateien:</translation>
    </message>
</context>
<context>
    <name>MoviePlayer</name>
    <message>
        <source>This computer cannot play movies: a GStreamer plug-in is missing.</source>
        <translation>Dieser Rechner kann keine Filme abspielen: Ein GStreamer-Plug-in fehlt.</translation>
    </message>
    <message>
        <source>The recording cannot be played.</source>
        <translation>Die Aufnahme kann nicht abgespielt werden.</translation>
    </message>
</context>
<context>
    <name>OrvaneServerInterface</name>
    <message>
        <source>%@ tool cannot be found.</source>
        <translation>Das Programm %@ wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be read from %@: %@</source>
        <translation>Die Konfiguration des Kamera-Agenten konnte nicht aus %@ gelesen werden: %@</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be saved to %@: %@</source>
        <translation>Die Konfiguration des Kamera-Agenten konnte nicht in %@ gespeichert werden: %@</translation>
    </message>
    <message>
        <source>The folder for recording data could not be created at %@: %@</source>
        <translation>Der Ordner für Aufnahmedaten konnte nicht unter %@ angelegt werden: %@</translation>
    </message>
    <message>
        <source>The recording data could not be saved to %@: %@</source>
        <translation>Die Aufnahmedaten konnten nicht in %@ gespeichert werden: %@</translation>
    </message>
    <message>
        <source>Could not make destination folder for capture movie. mkdir returned status: %d.</source>
        <translation>Der Zielordner für den Aufnahmefilm konnte nicht angelegt werden. mkdir endete mit Status %d.</translation>
    </message>
    <message>
        <source>Could not start %@. It terminates with status: %d.</source>
        <translation>%@ konnte nicht gestartet werden. Es endet mit Status %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to stop.</source>
        <translation>Der lokale Aufnahme-Agent konnte nicht gestoppt werden.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to pause signal with status: %d.</source>
        <translation>Der lokale Aufnahme-Agent hat nicht auf das Pausesignal reagiert, Status: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to resume signal with status: %d.</source>
        <translation>Der lokale Aufnahme-Agent hat nicht auf das Fortsetzungssignal reagiert, Status: %d.</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Record/pause shortcut:</source>
        <translation>Tastenkürzel für Aufnahme/Pause:</translation>
    </message>
    <message>
        <source>Choose a key, or click the field and press the combination you want.</source>
        <translation>Wählen Sie eine Taste, oder klicken Sie in das Feld und drücken Sie die gewünschte Kombination.</translation>
    </message>
    <message>
        <source>Starts or pauses a recording from any application.</source>
        <translation>Startet oder pausiert eine Aufnahme aus jedem Programm heraus.</translation>
    </message>
    <message>
        <source>Record/pause shortcut</source>
        <translation>Tastenkürzel für Aufnahme/Pause</translation>
    </message>
    <message>
        <source>The key combination that starts or pauses a recording from any application</source>
        <translation>Die Tastenkombination, die eine Aufnahme aus jedem Programm startet oder pausiert</translation>
    </message>
</context>
<context>
    <name>PreferencesController</name>
    <message>
        <source>Press the key combination you want while this field has focus</source>
        <translation>Drücken Sie die gewünschte Tastenkombination, während dieses Feld den Fokus hat</translation>
    </message>
    <message>
        <source>This desktop offers no global record/pause key: on Wayland no application may take a key from the others. Use the Recording menu to start or pause a recording.</source>
        <translation>Dieser Desktop bietet keine globale Taste für Aufnahme/Pause: Unter Wayland darf kein Programm den anderen eine Taste wegnehmen. Starten oder pausieren Sie Aufnahmen über das Menü „Aufnahme“.</translation>
    </message>
</context>
<context>
    <name>RecordPage</name>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Mikrofonpegel</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>No preview yet</source>
        <translation>Noch keine Vorschau</translation>
    </message>
    <message>
        <source>Screen preview</source>
        <translation>Bildschirmvorschau</translation>
    </message>
    <message>
        <source>Camera preview</source>
        <translation>Kameravorschau</translation>
    </message>
    <message>
        <source>The camera to record from</source>
        <translation>Die Kamera, mit der aufgenommen wird</translation>
    </message>
    <message>
        <source>The microphone to record from</source>
        <translation>Das Mikrofon, mit dem aufgenommen wird</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Wie laut das gewählte Mikrofon ist</translation>
    </message>
    <message>
        <source>A recent picture from the remote camera</source>
        <translation>Ein aktuelles Bild der entfernten Kamera</translation>
    </message>
    <message>
        <source>A picture of the screen that is recorded</source>
        <translation>Ein Bild des Bildschirms, der aufgenommen wird</translation>
    </message>
    <message>
        <source>The live picture of the chosen camera</source>
        <translation>Das Livebild der gewählten Kamera</translation>
    </message>
    <message>
        <source>Whether a recording is running or paused</source>
        <translation>Ob eine Aufnahme läuft oder pausiert</translation>
    </message>
    <message>
        <source>The key that starts or pauses a recording from any application</source>
        <translation>Die Taste, die eine Aufnahme aus jedem Programm startet oder pausiert</translation>
    </message>
    <message>
        <source>How long the recording has run</source>
        <translation>Wie lange die Aufnahme schon läuft</translation>
    </message>
    <message>
        <source>Use the Recording menu to start or pause recording: this desktop offers no key that works in any application.</source>
        <translation>Starten oder pausieren Sie die Aufnahme über das Menü „Aufnahme“: Dieser Desktop bietet keine Taste, die in jedem Programm wirkt.</translation>
    </message>
    <message>
        <source>Press %1 in any application to start or pause recording.</source>
        <translation>Drücken Sie %1 in einem beliebigen Programm, um die Aufnahme zu starten oder anzuhalten.</translation>
    </message>
    <message>
        <source>How much longer this disk can record</source>
        <translation>Wie lange auf diesem Datenträger noch aufgenommen werden kann</translation>
    </message>
    <message>
        <source>A warning about the recording</source>
        <translation>Eine Warnung zur Aufnahme</translation>
    </message>
</context>
<context>
    <name>RecordingGuard</name>
    <message>
        <source>No sound from “%1” for 10 seconds</source>
        <translation>Kein Ton von „%1“ seit 10 Sekunden</translation>
    </message>
    <message>
        <source>“%1” is too loud</source>
        <translation>„%1“ ist zu laut</translation>
    </message>
    <message>
        <source>The picture from “%1” has stopped</source>
        <translation>Das Bild von „%1“ ist stehen geblieben</translation>
    </message>
    <message>
        <source>The screen recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>Die Bildschirmaufnahme wurde unerwartet beendet; das bisher Aufgenommene bleibt erhalten.</translation>
    </message>
    <message>
        <source>The sound recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>Die Tonaufnahme wurde unerwartet beendet; das bisher Aufgenommene bleibt erhalten.</translation>
    </message>
</context>
<context>
    <name>RecordingWatch</name>
    <message>
        <source>Less than 10 minutes of recording left on this disk. Free some space, or the recording pauses when the disk is full.</source>
        <translation>Auf diesem Datenträger ist nur noch Platz für weniger als 10 Minuten Aufnahme. Geben Sie Speicherplatz frei, sonst wird die Aufnahme angehalten, wenn der Datenträger voll ist.</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>hours, then minutes</comment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>About %1 of recording left on this disk</source>
        <translation>Noch etwa %1 Aufnahme auf diesem Datenträger</translation>
    </message>
    <message>
        <source>Lumex: check your recording</source>
        <translation>Lumex: Bitte prüfen Sie Ihre Aufnahme</translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 Minute</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n Minute</numerusform>
            <numerusform>%n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 Stunde</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n Stunde</numerusform>
            <numerusform>%n Stunden</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on; its picture stays black until the recording ends.</source>
        <translation>„%1“ wurde getrennt. Die Aufnahme läuft weiter; ihr Bild bleibt schwarz, bis die Aufnahme endet.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on without its sound until the recording ends.</source>
        <translation>„%1“ wurde getrennt. Die Aufnahme läuft bis zu ihrem Ende ohne dessen Ton weiter.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with a black picture and the sound of “%2”.</source>
        <translation>„%1“ wurde getrennt. Die Aufnahme läuft mit schwarzem Bild und dem Ton von „%2“ weiter.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with the sound of “%2”.</source>
        <translation>„%1“ wurde getrennt. Die Aufnahme läuft mit dem Ton von „%2“ weiter.</translation>
    </message>
</context>
<context>
    <name>ReviewPlayer</name>
    <message>
        <source>Recording</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Mark In</source>
        <translation>Anfang setzen</translation>
    </message>
    <message>
        <source>Mark Out</source>
        <translation>Ende setzen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Clear marks</source>
        <translation>Markierungen entfernen</translation>
    </message>
    <message>
        <source>Kept length</source>
        <translation>Behaltene Länge</translation>
    </message>
    <message>
        <source>Marks cleared: the whole recording is published.</source>
        <translation>Markierungen entfernt: Die ganze Aufnahme wird veröffentlicht.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>The recording as it will be published</source>
        <translation>Die Aufnahme, wie sie veröffentlicht wird</translation>
    </message>
    <message>
        <source>Left and Right step 5 seconds; I and O set the marks</source>
        <translation>Links und Rechts springen 5 Sekunden; I und O setzen die Markierungen</translation>
    </message>
    <message>
        <source>Plays or pauses the recording (Space)</source>
        <translation>Spielt die Aufnahme ab oder hält sie an (Leertaste)</translation>
    </message>
    <message>
        <source>Publishes the recording from the playhead on (I)</source>
        <translation>Veröffentlicht die Aufnahme ab der Abspielposition (I)</translation>
    </message>
    <message>
        <source>Publishes the recording up to the playhead (O)</source>
        <translation>Veröffentlicht die Aufnahme bis zur Abspielposition (O)</translation>
    </message>
    <message>
        <source>Publishes the whole recording again</source>
        <translation>Veröffentlicht wieder die ganze Aufnahme</translation>
    </message>
    <message>
        <source>The recording is on the server.</source>
        <translation>Die Aufnahme liegt auf dem Server.</translation>
    </message>
    <message>
        <source>In mark at %1.</source>
        <translation>Anfangsmarke bei %1.</translation>
    </message>
    <message>
        <source>Out mark at %1.</source>
        <translation>Endmarke bei %1.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>–</source>
        <translation>–</translation>
    </message>
    <message>
        <source>Keeps %1 (%2–%3)</source>
        <translation>Behält %1 (%2–%3)</translation>
    </message>
    <message>
        <source>Keeps all</source>
        <translation>Behält alles</translation>
    </message>
</context>
<context>
    <name>ScreenCastPortal</name>
    <message>
        <source>Lumex cannot see the screen: this desktop offers no screen sharing service (the desktop portal is not running).</source>
        <translation>Lumex kann den Bildschirm nicht sehen: Dieser Desktop bietet keine Bildschirmfreigabe (das Desktop-Portal läuft nicht).</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen because sharing it was declined. Choose the screen again to be asked once more.</source>
        <translation>Lumex kann den Bildschirm nicht sehen, weil die Freigabe abgelehnt wurde. Wählen Sie den Bildschirm erneut, um noch einmal gefragt zu werden.</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen: the desktop&apos;s screen sharing failed (%1).</source>
        <translation>Lumex kann den Bildschirm nicht sehen: Die Bildschirmfreigabe des Desktops ist fehlgeschlagen (%1).</translation>
    </message>
</context>
<context>
    <name>Sheets</name>
    <message>
        <source>Server communication error.</source>
        <translation>Fehler bei der Kommunikation mit dem Server.</translation>
    </message>
    <message>
        <source>An error occurred while communicating with the Orvane server. Please contact your network administrator for further help.</source>
        <translation>Bei der Kommunikation mit dem Orvane-Server ist ein Fehler aufgetreten. Bitte wenden Sie sich an Ihren Netzwerkadministrator.</translation>
    </message>
    <message>
        <source>Authentication Failed</source>
        <translation>Anmeldung fehlgeschlagen</translation>
    </message>
    <message>
        <source>The username or password you entered may not be correct. Please retype the username and password and try again.</source>
        <translation>Benutzername oder Passwort sind möglicherweise falsch. Bitte geben Sie beide erneut ein und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Schließt diese Meldung</translation>
    </message>
    <message>
        <source>Your current recording will be deleted. This action cannot be undone.</source>
        <translation>Ihre aktuelle Aufnahme wird gelöscht. Dies kann nicht rückgängig gemacht werden.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Not enough disk space available</source>
        <translation>Nicht genügend Speicherplatz verfügbar</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to continue recording the podcast. Your recording has been paused.</source>
        <translation>Auf dem Volume %@ ist nicht genügend Speicherplatz verfügbar, um die Aufnahme des Podcasts fortzusetzen. Ihre Aufnahme wurde angehalten.</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to record a podcast.</source>
        <translation>Auf dem Volume %@ ist nicht genügend Speicherplatz verfügbar, um einen Podcast aufzunehmen.</translation>
    </message>
</context>
<context>
    <name>SourceChooserPage</name>
    <message>
        <source>What would you like to record?</source>
        <translation>Was möchten Sie aufnehmen?</translation>
    </message>
    <message>
        <source>Choose a source. Recordings go to the workflow you pick when you publish.</source>
        <translation>Wählen Sie eine Quelle. Aufnahmen gehen an den Workflow, den Sie beim Veröffentlichen wählen.</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>Record from a camera in a lecture hall or from this computer&apos;s camera</source>
        <translation>Mit einer Kamera im Hörsaal oder der Kamera dieses Computers aufnehmen</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>Record sound only</source>
        <translation>Nur Ton aufnehmen</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>Record this computer&apos;s screen with narration</source>
        <translation>Den Bildschirm dieses Computers mit Kommentar aufnehmen</translation>
    </message>
    <message>
        <source>Movie Files</source>
        <translation>Filmdateien</translation>
    </message>
    <message>
        <source>Publish movie files you already have</source>
        <translation>Vorhandene Filmdateien veröffentlichen</translation>
    </message>
    <message>
        <source>The server and account you are signed in with</source>
        <translation>Der Server und das Konto, mit denen Sie angemeldet sind</translation>
    </message>
    <message>
        <source>Signed in as %1 on %2.</source>
        <translation>Angemeldet als %1 auf %2.</translation>
    </message>
    <message>
        <source>Not connected to a server yet. Choose Lumex ▸ Sign In… to connect.</source>
        <translation>Noch mit keinem Server verbunden. Wählen Sie Lumex ▸ Anmelden…, um sich zu verbinden.</translation>
    </message>
</context>
<context>
    <name>TransferCell</name>
    <message>
        <source>Retry</source>
        <comment>button: upload again</comment>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Upload the files of this transfer again</source>
        <translation>Die Dateien dieser Übertragung erneut hochladen</translation>
    </message>
    <message>
        <source>Retry Upload</source>
        <translation>Upload erneut versuchen</translation>
    </message>
</context>
<context>
    <name>Transfers</name>
    <message>
        <source>Transfers</source>
        <translation>Übertragungen</translation>
    </message>
    <message>
        <source>No Transfers</source>
        <translation>Keine Übertragungen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Remove the completed uploads from the list</source>
        <translation>Die abgeschlossenen Uploads aus der Liste entfernen</translation>
    </message>
    <message>
        <source>The uploads of your recordings and how far each has got</source>
        <translation>Die Uploads Ihrer Aufnahmen und wie weit jeder ist</translation>
    </message>
    <message>
        <source>Removes the completed uploads from the list</source>
        <translation>Entfernt die abgeschlossenen Uploads aus der Liste</translation>
    </message>
</context>
<context>
    <name>TransfersController</name>
    <message>
        <source>No Transfers</source>
        <translation>Keine Übertragungen</translation>
    </message>
    <message>
        <source>1 Transfer</source>
        <translation>1 Übertragung</translation>
    </message>
    <message numerus="yes">
        <source>%n Transfers</source>
        <translation>
            <numerusform>%n Übertragung</numerusform>
            <numerusform>%n Übertragungen</numerusform>
        </translation>
    </message>
    <message>
        <source>(no file)</source>
        <translation>(keine Datei)</translation>
    </message>
    <message>
        <source>This upload can no longer be retried.</source>
        <translation>Dieser Upload kann nicht mehr wiederholt werden.</translation>
    </message>
    <message>
        <source>Its files were moved or deleted:
%@</source>
        <translation>Seine Dateien wurden verschoben oder gelöscht:
%@</translation>
    </message>
    <message>
        <source>Sign in to retry this upload.</source>
        <translation>Melden Sie sich an, um diesen Upload zu wiederholen.</translation>
    </message>
    <message>
        <source>The upload is sent again under the name you sign in with.</source>
        <translation>Der Upload wird erneut unter dem Namen gesendet, mit dem Sie sich anmelden.</translation>
    </message>
</context>
<context>
    <name>TransfersModel</name>
    <message>
        <source>&apos;%@&apos; by %@</source>
        <translation>„%@“ von %@</translation>
    </message>
    <message>
        <source>Pending</source>
        <translation>Wartend</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Abgeschlossen</translation>
    </message>
    <message>
        <source>%d%% done — %@ remaining</source>
        <translation>%d%% erledigt – noch %@</translation>
    </message>
    <message>
        <source>%d%% done</source>
        <translation>%d%% erledigt</translation>
    </message>
    <message>
        <source>1 second</source>
        <translation>1 Sekunde</translation>
    </message>
    <message numerus="yes">
        <source>%n seconds</source>
        <translation>
            <numerusform>%n Sekunde</numerusform>
            <numerusform>%n Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 Minute</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n Minute</numerusform>
            <numerusform>%n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 Stunde</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n Stunde</numerusform>
            <numerusform>%n Stunden</numerusform>
        </translation>
    </message>
    <message>
        <source>progress %1 %</source>
        <translation>Fortschritt %1 %</translation>
    </message>
    <message>
        <source>Press Return to retry the upload.</source>
        <translation>Drücken Sie die Eingabetaste, um den Upload zu wiederholen.</translation>
    </message>
</context>
<context>
    <name>VKPopUpButton</name>
    <message>
        <source>In use, cannot be chosen</source>
        <translation>Belegt, kann nicht gewählt werden</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <comment>a device, then the device recorded with it</comment>
        <translation>%1 — %2</translation>
    </message>
</context>
</TS>
