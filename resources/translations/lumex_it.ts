<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT">
<context>
    <name>AudioLevelMeter</name>
    <message>
        <source>Microphone level</source>
        <translation>Livello del microfono</translation>
    </message>
</context>
<context>
    <name>CameraConfig</name>
    <message>
        <source>Camera Configuration</source>
        <translation>Configurazione videocamera</translation>
    </message>
    <message>
        <source>No camera is connected to this computer.</source>
        <translation>Nessuna videocamera è collegata a questo computer.</translation>
    </message>
    <message>
        <source>Camera:</source>
        <translation>Videocamera:</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Videocamera</translation>
    </message>
    <message>
        <source>The camera this computer records with for the server</source>
        <translation>La videocamera con cui questo computer registra per il server</translation>
    </message>
    <message>
        <source>Microphone:</source>
        <translation>Microfono:</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Microfono</translation>
    </message>
    <message>
        <source>The microphone this computer records with for the server</source>
        <translation>Il microfono con cui questo computer registra per il server</translation>
    </message>
    <message>
        <source>Input level:</source>
        <translation>Livello di ingresso:</translation>
    </message>
    <message>
        <source>Input level</source>
        <translation>Livello di ingresso</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Livello sonoro del microfono scelto</translation>
    </message>
    <message>
        <source>Unlocks the settings with administrator rights, or locks them again</source>
        <translation>Sblocca le impostazioni con i privilegi di amministratore, o le blocca di nuovo</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Fare clic sul lucchetto per apportare modifiche.</translation>
    </message>
    <message>
        <source>Binds this computer as a camera to a server, or unbinds it</source>
        <translation>Associa questo computer a un server come videocamera, o lo dissocia</translation>
    </message>
    <message>
        <source>Bind</source>
        <translation>Associa</translation>
    </message>
</context>
<context>
    <name>CameraConfigController</name>
    <message>
        <source>Server:</source>
        <translation>Server:</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>The address of the server this camera is bound to</source>
        <translation>L&apos;indirizzo del server a cui è associata questa videocamera</translation>
    </message>
    <message>
        <source>User name:</source>
        <translation>Nome utente:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nome utente</translation>
    </message>
    <message>
        <source>The account of the server&apos;s administrator</source>
        <translation>L&apos;account dell&apos;amministratore del server</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Password:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>The password of the administrator&apos;s account</source>
        <translation>La password dell&apos;account amministratore</translation>
    </message>
    <message>
        <source>Camera name:</source>
        <translation>Nome videocamera:</translation>
    </message>
    <message>
        <source>Camera name</source>
        <translation>Nome videocamera</translation>
    </message>
    <message>
        <source>The name this camera has on the server</source>
        <translation>Il nome di questa videocamera sul server</translation>
    </message>
    <message>
        <source>Binds or unbinds this camera with the administrator&apos;s account</source>
        <translation>Associa o dissocia questa videocamera con l&apos;account amministratore</translation>
    </message>
    <message>
        <source>Closes this sheet and changes nothing</source>
        <translation>Chiude questa finestra senza modificare nulla</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatico</translation>
    </message>
    <message>
        <source>Unbind</source>
        <translation>Dissocia</translation>
    </message>
    <message>
        <source>Bind</source>
        <translation>Associa</translation>
    </message>
    <message>
        <source>Lumex requires that you authenticate as a server administrator to %@.</source>
        <translation>Lumex richiede di autenticarsi come amministratore del server %@.</translation>
    </message>
    <message>
        <source>Binding failed</source>
        <translation>Associazione non riuscita</translation>
    </message>
    <message>
        <source>Please confirm that the server is reachable and that the server administrator user name and password are correct.</source>
        <translation>Verificare che il server sia raggiungibile e che nome utente e password dell&apos;amministratore del server siano corretti.</translation>
    </message>
    <message>
        <source>Unbinding failed</source>
        <translation>Dissociazione non riuscita</translation>
    </message>
    <message>
        <source>Please confirm that the server administrator user name and password are correct and that the server is reachable.</source>
        <translation>Verificare che nome utente e password dell&apos;amministratore del server siano corretti e che il server sia raggiungibile.</translation>
    </message>
    <message>
        <source>Unable to start/stop the camera agent.</source>
        <translation>Impossibile avviare o arrestare l&apos;agente della videocamera.</translation>
    </message>
    <message>
        <source>Received error status</source>
        <translation>Codice di errore ricevuto:</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Chiude questo messaggio</translation>
    </message>
    <message>
        <source>Click the lock to prevent further changes.</source>
        <translation>Fare clic sul lucchetto per impedire altre modifiche.</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Fare clic sul lucchetto per apportare modifiche.</translation>
    </message>
    <message>
        <source>Unlocked</source>
        <translation>Sbloccato</translation>
    </message>
    <message>
        <source>Locked</source>
        <translation>Bloccato</translation>
    </message>
</context>
<context>
    <name>CaptureDevicesController</name>
    <message>
        <source>Cannot find the audio and video devices</source>
        <translation>Impossibile trovare i dispositivi audio e video</translation>
    </message>
</context>
<context>
    <name>CountdownView</name>
    <message>
        <source>Counts down the seconds before the recording starts</source>
        <translation>Conta i secondi che mancano all&apos;inizio della registrazione</translation>
    </message>
    <message>
        <source>Recording starts in 1 second</source>
        <translation>La registrazione inizia tra 1 secondo</translation>
    </message>
    <message numerus="yes">
        <source>Recording starts in %n seconds</source>
        <translation>
            <numerusform>La registrazione inizia tra %n secondo</numerusform>
            <numerusform>La registrazione inizia tra %n secondi</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DesktopNotifier</name>
    <message>
        <source>Podcast Published</source>
        <translation>Podcast pubblicato</translation>
    </message>
    <message>
        <source>&quot;%@&quot; has been uploaded.</source>
        <translation>«%@» è stato caricato.</translation>
    </message>
    <message>
        <source>Podcast Not Published</source>
        <translation>Podcast non pubblicato</translation>
    </message>
    <message>
        <source>&quot;%@&quot; could not be uploaded. You can retry it in the Transfers window.</source>
        <translation>Impossibile caricare «%@». È possibile riprovare dalla finestra Trasferimenti.</translation>
    </message>
</context>
<context>
    <name>DeviceChooser</name>
    <message>
        <source>No Camera</source>
        <translation>Nessuna videocamera</translation>
    </message>
</context>
<context>
    <name>DonePage</name>
    <message>
        <source>New Recording</source>
        <translation>Nuova registrazione</translation>
    </message>
    <message>
        <source>Whether the recording was handed to the server</source>
        <translation>Indica se la registrazione è stata consegnata al server</translation>
    </message>
    <message>
        <source>Starts a new recording</source>
        <translation>Avvia una nuova registrazione</translation>
    </message>
</context>
<context>
    <name>GLScreenGrabController</name>
    <message>
        <source>Lumex cannot show the screen: no picture came from the desktop&apos;s screen sharing (%1).</source>
        <translation>Lumex non può mostrare lo schermo: la condivisione dello schermo del desktop non ha fornito alcuna immagine (%1).</translation>
    </message>
</context>
<context>
    <name>InterruptedRecordings</name>
    <message>
        <source>Publish the recording interrupted on %@?</source>
        <translation>Pubblicare la registrazione interrotta il %@?</translation>
    </message>
    <message>
        <source>Lumex or the computer stopped while this recording was made. If you do not publish it now, it stays in %@.</source>
        <translation>Lumex o il computer si è arrestato durante questa registrazione. Se non viene pubblicata ora, resta in %@.</translation>
    </message>
    <message>
        <source>Publish…</source>
        <translation>Pubblica…</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Non ora</translation>
    </message>
    <message>
        <source>“%1” is still recording. Continue, publish or discard it?</source>
        <translation>«%1» sta ancora registrando. Continuare, pubblicare o scartare la registrazione?</translation>
    </message>
    <message>
        <source>Lumex ended while this camera was recording for you; it has gone on since.</source>
        <translation>Lumex si è chiuso mentre questa videocamera registrava per te; da allora ha continuato a registrare.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continua</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Scarta</translation>
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
        <translation>Uso: lumex [FILE…]
Registra da una videocamera del server, dalla videocamera e dal microfono di questo
computer o dallo schermo, e pubblica su un server multimediale. I file video indicati
vengono proposti per l&apos;invio; se Lumex è già in esecuzione, vengono passati a esso.

  --version  mostra la versione ed esce
  --help     mostra questo testo ed esce
</translation>
    </message>
</context>
<context>
    <name>LXController</name>
    <message>
        <source>The server&apos;s list of workflows could not be read.</source>
        <translation>Impossibile leggere l&apos;elenco dei flussi di lavoro del server.</translation>
    </message>
    <message>
        <source>Do you want to delete the recording and Quit?</source>
        <translation>Eliminare la registrazione e uscire?</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Keeps Lumex running with the recording</source>
        <translation>Lascia Lumex aperto con la registrazione</translation>
    </message>
    <message>
        <source>Deletes the recording and quits Lumex</source>
        <translation>Elimina la registrazione e chiude Lumex</translation>
    </message>
    <message>
        <source>Recording Paused</source>
        <translation>Registrazione in pausa</translation>
    </message>
    <message>
        <source>Your podcast is being submitted.</source>
        <translation>Invio del podcast in corso.</translation>
    </message>
    <message>
        <source>Your podcast has been successfully submitted.</source>
        <translation>Il podcast è stato inviato correttamente.</translation>
    </message>
    <message>
        <source>There was an error submitting your podcast.</source>
        <translation>Si è verificato un errore durante l&apos;invio del podcast.</translation>
    </message>
    <message>
        <source>Delete recording and Start Over?</source>
        <translation>Eliminare la registrazione e ricominciare?</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Ricomincia</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Metti in pausa la registrazione</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Riprendi la registrazione</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Registra podcast</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Schermo</translation>
    </message>
    <message>
        <source>The recording could not be trimmed, so it is published whole.</source>
        <translation>Non è stato possibile tagliare la registrazione, quindi viene pubblicata per intero.</translation>
    </message>
    <message>
        <source>The screen is recorded without the camera. %1</source>
        <translation>Lo schermo viene registrato senza la videocamera. %1</translation>
    </message>
</context>
<context>
    <name>LXLoginPanelController</name>
    <message>
        <source>Connecting…</source>
        <translation>Connessione…</translation>
    </message>
</context>
<context>
    <name>LXMainWindow</name>
    <message>
        <source>Lumex</source>
        <translation>Lumex</translation>
    </message>
    <message>
        <source>Goes back, or discards the recording and starts over</source>
        <translation>Torna indietro, o scarta la registrazione e ricomincia</translation>
    </message>
    <message>
        <source>Goes on to describe and publish the recording</source>
        <translation>Passa alla descrizione e alla pubblicazione della registrazione</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Ricomincia</translation>
    </message>
    <message>
        <source>Publish</source>
        <translation>Pubblica</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Registra</translation>
    </message>
    <message>
        <source>&amp;Lumex</source>
        <translation>&amp;Lumex</translation>
    </message>
    <message>
        <source>&amp;Sign In…</source>
        <translation>&amp;Accedi…</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Preferenze…</translation>
    </message>
    <message>
        <source>&amp;Quit Lumex</source>
        <translation>&amp;Esci da Lumex</translation>
    </message>
    <message>
        <source>&amp;Recording</source>
        <translation>&amp;Registrazione</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Registra podcast</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Finestra</translation>
    </message>
    <message>
        <source>&amp;Transfers</source>
        <translation>&amp;Trasferimenti</translation>
    </message>
    <message>
        <source>&amp;Camera Configuration…</source>
        <translation>Configurazione &amp;videocamera…</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fatto</translation>
    </message>
    <message>
        <source>Choose Movie Files</source>
        <translation>Scegli file video</translation>
    </message>
</context>
<context>
    <name>LXRecordButton</name>
    <message>
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Registra</translation>
    </message>
    <message>
        <source>Recording. Press to pause the recording.</source>
        <translation>Registrazione in corso. Premere per metterla in pausa.</translation>
    </message>
    <message>
        <source>Not recording. Press to start or resume the recording.</source>
        <translation>Nessuna registrazione in corso. Premere per avviare o riprendere la registrazione.</translation>
    </message>
</context>
<context>
    <name>LoginPanel</name>
    <message>
        <source>Sign In to Lumex</source>
        <translation>Accedi a Lumex</translation>
    </message>
    <message>
        <source>Sign in to your media server</source>
        <translation>Accedere al proprio server multimediale</translation>
    </message>
    <message>
        <source>Lumex records to the workflows of your organisation&apos;s server. Enter the server&apos;s address and your account.</source>
        <translation>Lumex registra per i flussi di lavoro del server della propria organizzazione. Inserire l&apos;indirizzo del server e il proprio account.</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Server:</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>The address of your organisation&apos;s media server</source>
        <translation>L&apos;indirizzo del server multimediale della propria organizzazione</translation>
    </message>
    <message>
        <source>media.example.edu</source>
        <translation>media.example.edu</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>Nome &amp;utente:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nome utente</translation>
    </message>
    <message>
        <source>Your account on the media server</source>
        <translation>Il proprio account sul server multimediale</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Password:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>The password of your account</source>
        <translation>La password del proprio account</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Closes this window without signing in</source>
        <translation>Chiude questa finestra senza accedere</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Connetti</translation>
    </message>
    <message>
        <source>Signs in to the server with this account</source>
        <translation>Accede al server con questo account</translation>
    </message>
</context>
<context>
    <name>MetadataPage</name>
    <message>
        <source>Describe your recording</source>
        <translation>Descrivere la registrazione</translation>
    </message>
    <message>
        <source>Give the recording a title and a description, then choose where it goes.</source>
        <translation>Dare alla registrazione un titolo e una descrizione, poi sceglierne la destinazione.</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aiuto</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titolo</translation>
    </message>
    <message>
        <source>Title of the recording</source>
        <translation>Titolo della registrazione</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Descrizione</translation>
    </message>
    <message>
        <source>What is it about?</source>
        <translation>Di che cosa si tratta?</translation>
    </message>
    <message>
        <source>Workflow</source>
        <translation>Flusso di lavoro</translation>
    </message>
    <message>
        <source>What to fill in before publishing</source>
        <translation>Che cosa compilare prima di pubblicare</translation>
    </message>
    <message>
        <source>The movie files that are published</source>
        <translation>I file video che vengono pubblicati</translation>
    </message>
    <message>
        <source>The title the recording is published with</source>
        <translation>Il titolo con cui viene pubblicata la registrazione</translation>
    </message>
    <message>
        <source>A description published with the recording</source>
        <translation>Una descrizione pubblicata con la registrazione</translation>
    </message>
    <message>
        <source>The server workflow that processes the recording</source>
        <translation>Il flusso di lavoro del server che elabora la registrazione</translation>
    </message>
    <message>
        <source>Files to publish:</source>
        <translation>File da pubblicare:</translation>
    </message>
</context>
<context>
    <name>MoviePlayer</name>
    <message>
        <source>This computer cannot play movies: a GStreamer plug-in is missing.</source>
        <translation>Questo computer non può riprodurre filmati: manca un plugin di GStreamer.</translation>
    </message>
    <message>
        <source>The recording cannot be played.</source>
        <translation>Impossibile riprodurre la registrazione.</translation>
    </message>
</context>
<context>
    <name>OrvaneServerInterface</name>
    <message>
        <source>%@ tool cannot be found.</source>
        <translation>Impossibile trovare lo strumento %@.</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be read from %@: %@</source>
        <translation>Impossibile leggere la configurazione dell&apos;agente della videocamera da %@: %@</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be saved to %@: %@</source>
        <translation>Impossibile salvare la configurazione dell&apos;agente della videocamera in %@: %@</translation>
    </message>
    <message>
        <source>The folder for recording data could not be created at %@: %@</source>
        <translation>Impossibile creare la cartella dei dati di registrazione in %@: %@</translation>
    </message>
    <message>
        <source>The recording data could not be saved to %@: %@</source>
        <translation>Impossibile salvare i dati di registrazione in %@: %@</translation>
    </message>
    <message>
        <source>Could not make destination folder for capture movie. mkdir returned status: %d.</source>
        <translation>Impossibile creare la cartella di destinazione del filmato acquisito. mkdir ha restituito lo stato: %d.</translation>
    </message>
    <message>
        <source>Could not start %@. It terminates with status: %d.</source>
        <translation>Impossibile avviare %@. Termina con lo stato: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to stop.</source>
        <translation>L&apos;agente di acquisizione locale non si è arrestato.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to pause signal with status: %d.</source>
        <translation>L&apos;agente di acquisizione locale non ha risposto al segnale di pausa, stato: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to resume signal with status: %d.</source>
        <translation>L&apos;agente di acquisizione locale non ha risposto al segnale di ripresa, stato: %d.</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation>Preferenze</translation>
    </message>
    <message>
        <source>Record/pause shortcut:</source>
        <translation>Scorciatoia registra/pausa:</translation>
    </message>
    <message>
        <source>Record/pause shortcut</source>
        <translation>Scorciatoia registra/pausa</translation>
    </message>
    <message>
        <source>The key combination that starts or pauses a recording from any application</source>
        <translation>La combinazione di tasti che avvia o mette in pausa una registrazione da qualsiasi applicazione</translation>
    </message>
    <message>
        <source>Choose a key, or click the field and press the combination you want.</source>
        <translation>Scegliere un tasto, o fare clic nel campo e premere la combinazione desiderata.</translation>
    </message>
    <message>
        <source>Starts or pauses a recording from any application.</source>
        <translation>Avvia o mette in pausa una registrazione da qualsiasi applicazione.</translation>
    </message>
</context>
<context>
    <name>PreferencesController</name>
    <message>
        <source>Press the key combination you want while this field has focus</source>
        <translation>Premere la combinazione di tasti desiderata mentre questo campo ha il focus</translation>
    </message>
    <message>
        <source>This desktop offers no global record/pause key: on Wayland no application may take a key from the others. Use the Recording menu to start or pause a recording.</source>
        <translation>Questo desktop non offre un tasto globale per registrare e mettere in pausa: su Wayland nessuna applicazione può sottrarre un tasto alle altre. Usare il menu Registrazione per avviare o mettere in pausa una registrazione.</translation>
    </message>
</context>
<context>
    <name>RecordPage</name>
    <message>
        <source>Camera</source>
        <translation>Videocamera</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Microfono</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Livello del microfono</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Anteprima</translation>
    </message>
    <message>
        <source>No preview yet</source>
        <translation>Ancora nessuna anteprima</translation>
    </message>
    <message>
        <source>Screen preview</source>
        <translation>Anteprima dello schermo</translation>
    </message>
    <message>
        <source>Camera preview</source>
        <translation>Anteprima della videocamera</translation>
    </message>
    <message>
        <source>The camera to record from</source>
        <translation>La videocamera con cui registrare</translation>
    </message>
    <message>
        <source>The microphone to record from</source>
        <translation>Il microfono con cui registrare</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Livello sonoro del microfono scelto</translation>
    </message>
    <message>
        <source>A recent picture from the remote camera</source>
        <translation>Un&apos;immagine recente della videocamera remota</translation>
    </message>
    <message>
        <source>A picture of the screen that is recorded</source>
        <translation>Un&apos;immagine dello schermo registrato</translation>
    </message>
    <message>
        <source>The live picture of the chosen camera</source>
        <translation>L&apos;immagine dal vivo della videocamera scelta</translation>
    </message>
    <message>
        <source>Whether a recording is running or paused</source>
        <translation>Indica se una registrazione è in corso o in pausa</translation>
    </message>
    <message>
        <source>The key that starts or pauses a recording from any application</source>
        <translation>Il tasto che avvia o mette in pausa una registrazione da qualsiasi applicazione</translation>
    </message>
    <message>
        <source>How long the recording has run</source>
        <translation>Da quanto tempo è in corso la registrazione</translation>
    </message>
    <message>
        <source>Use the Recording menu to start or pause recording: this desktop offers no key that works in any application.</source>
        <translation>Usare il menu Registrazione per avviare o mettere in pausa la registrazione: questo desktop non offre alcun tasto che funzioni in qualsiasi applicazione.</translation>
    </message>
    <message>
        <source>Press %1 in any application to start or pause recording.</source>
        <translation>Premere %1 in qualsiasi applicazione per avviare o mettere in pausa la registrazione.</translation>
    </message>
    <message>
        <source>How much longer this disk can record</source>
        <translation>Quanto si può ancora registrare su questo disco</translation>
    </message>
    <message>
        <source>A warning about the recording</source>
        <translation>Un avviso sulla registrazione</translation>
    </message>
</context>
<context>
    <name>RecordingGuard</name>
    <message>
        <source>No sound from “%1” for 10 seconds</source>
        <translation>Nessun suono da «%1» da 10 secondi</translation>
    </message>
    <message>
        <source>“%1” is too loud</source>
        <translation>Il volume di «%1» è troppo alto</translation>
    </message>
    <message>
        <source>The picture from “%1” has stopped</source>
        <translation>L’immagine di «%1» si è fermata</translation>
    </message>
    <message>
        <source>The screen recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>La registrazione dello schermo si è interrotta inaspettatamente; quanto registrato viene conservato.</translation>
    </message>
    <message>
        <source>The sound recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>La registrazione audio si è interrotta inaspettatamente; quanto registrato viene conservato.</translation>
    </message>
</context>
<context>
    <name>RecordingWatch</name>
    <message>
        <source>Less than 10 minutes of recording left on this disk. Free some space, or the recording pauses when the disk is full.</source>
        <translation>Su questo disco restano meno di 10 minuti di registrazione. Libera spazio, altrimenti la registrazione verrà messa in pausa quando il disco sarà pieno.</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>hours, then minutes</comment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>About %1 of recording left on this disk</source>
        <translation>Restano circa %1 di registrazione su questo disco</translation>
    </message>
    <message>
        <source>Lumex: check your recording</source>
        <translation>Lumex: controlla la registrazione</translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 minuto</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minuto</numerusform>
            <numerusform>%n minuti</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 ora</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n ora</numerusform>
            <numerusform>%n ore</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on; its picture stays black until the recording ends.</source>
        <translation>«%1» è stato scollegato. La registrazione continua; la sua immagine resta nera fino alla fine della registrazione.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on without its sound until the recording ends.</source>
        <translation>«%1» è stato scollegato. La registrazione continua senza il suo audio fino alla fine.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with a black picture and the sound of “%2”.</source>
        <translation>«%1» è stato scollegato. La registrazione continua con l’immagine nera e l’audio di «%2».</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with the sound of “%2”.</source>
        <translation>«%1» è stato scollegato. La registrazione continua con l’audio di «%2».</translation>
    </message>
</context>
<context>
    <name>ReviewPlayer</name>
    <message>
        <source>Recording</source>
        <translation>Registrazione</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Posizione</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Riproduci</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>Mark In</source>
        <translation>Segna inizio</translation>
    </message>
    <message>
        <source>Mark Out</source>
        <translation>Segna fine</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Cancella</translation>
    </message>
    <message>
        <source>Clear marks</source>
        <translation>Cancella i segni</translation>
    </message>
    <message>
        <source>Kept length</source>
        <translation>Durata mantenuta</translation>
    </message>
    <message>
        <source>Marks cleared: the whole recording is published.</source>
        <translation>Segni cancellati: viene pubblicata l’intera registrazione.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>The recording as it will be published</source>
        <translation>La registrazione come verrà pubblicata</translation>
    </message>
    <message>
        <source>Left and Right step 5 seconds; I and O set the marks</source>
        <translation>Sinistra e Destra spostano di 5 secondi; I e O impostano i segni</translation>
    </message>
    <message>
        <source>Plays or pauses the recording (Space)</source>
        <translation>Riproduce o mette in pausa la registrazione (Spazio)</translation>
    </message>
    <message>
        <source>Publishes the recording from the playhead on (I)</source>
        <translation>Pubblica la registrazione dalla testina in poi (I)</translation>
    </message>
    <message>
        <source>Publishes the recording up to the playhead (O)</source>
        <translation>Pubblica la registrazione fino alla testina (O)</translation>
    </message>
    <message>
        <source>Publishes the whole recording again</source>
        <translation>Pubblica di nuovo l’intera registrazione</translation>
    </message>
    <message>
        <source>The recording is on the server.</source>
        <translation>La registrazione si trova sul server.</translation>
    </message>
    <message>
        <source>In mark at %1.</source>
        <translation>Segno di inizio a %1.</translation>
    </message>
    <message>
        <source>Out mark at %1.</source>
        <translation>Segno di fine a %1.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 di %2</translation>
    </message>
    <message>
        <source>–</source>
        <translation>–</translation>
    </message>
    <message>
        <source>Keeps %1 (%2–%3)</source>
        <translation>Mantiene %1 (%2–%3)</translation>
    </message>
    <message>
        <source>Keeps all</source>
        <translation>Mantiene tutto</translation>
    </message>
</context>
<context>
    <name>ScreenCastPortal</name>
    <message>
        <source>Lumex cannot see the screen: this desktop offers no screen sharing service (the desktop portal is not running).</source>
        <translation>Lumex non può vedere lo schermo: questo desktop non offre alcun servizio di condivisione dello schermo (il portale del desktop non è in esecuzione).</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen because sharing it was declined. Choose the screen again to be asked once more.</source>
        <translation>Lumex non può vedere lo schermo perché la condivisione è stata rifiutata. Scegliere di nuovo lo schermo per ricevere un&apos;altra richiesta.</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen: the desktop&apos;s screen sharing failed (%1).</source>
        <translation>Lumex non può vedere lo schermo: la condivisione dello schermo del desktop non è riuscita (%1).</translation>
    </message>
</context>
<context>
    <name>Sheets</name>
    <message>
        <source>Server communication error.</source>
        <translation>Errore di comunicazione con il server.</translation>
    </message>
    <message>
        <source>An error occurred while communicating with the Orvane server. Please contact your network administrator for further help.</source>
        <translation>Si è verificato un errore durante la comunicazione con il server Orvane. Per assistenza, contattare l&apos;amministratore di rete.</translation>
    </message>
    <message>
        <source>Authentication Failed</source>
        <translation>Autenticazione non riuscita</translation>
    </message>
    <message>
        <source>The username or password you entered may not be correct. Please retype the username and password and try again.</source>
        <translation>Il nome utente o la password inseriti potrebbero non essere corretti. Digitarli di nuovo e riprovare.</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Chiude questo messaggio</translation>
    </message>
    <message>
        <source>Your current recording will be deleted. This action cannot be undone.</source>
        <translation>La registrazione attuale verrà eliminata. Questa azione non può essere annullata.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Not enough disk space available</source>
        <translation>Spazio su disco insufficiente</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to continue recording the podcast. Your recording has been paused.</source>
        <translation>Lo spazio disponibile sul volume %@ non è sufficiente per continuare la registrazione del podcast. La registrazione è stata messa in pausa.</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to record a podcast.</source>
        <translation>Lo spazio disponibile sul volume %@ non è sufficiente per registrare un podcast.</translation>
    </message>
</context>
<context>
    <name>SourceChooserPage</name>
    <message>
        <source>What would you like to record?</source>
        <translation>Che cosa registrare?</translation>
    </message>
    <message>
        <source>Choose a source. Recordings go to the workflow you pick when you publish.</source>
        <translation>Scegliere una sorgente. Le registrazioni vanno al flusso di lavoro scelto al momento della pubblicazione.</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>Record from a camera in a lecture hall or from this computer&apos;s camera</source>
        <translation>Registra con una videocamera in aula o con quella di questo computer</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>Record sound only</source>
        <translation>Registra solo l&apos;audio</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Schermo</translation>
    </message>
    <message>
        <source>Record this computer&apos;s screen with narration</source>
        <translation>Registra lo schermo di questo computer con commento</translation>
    </message>
    <message>
        <source>Movie Files</source>
        <translation>File video</translation>
    </message>
    <message>
        <source>Publish movie files you already have</source>
        <translation>Pubblica file video già esistenti</translation>
    </message>
    <message>
        <source>The server and account you are signed in with</source>
        <translation>Il server e l&apos;account con cui è stato eseguito l&apos;accesso</translation>
    </message>
    <message>
        <source>Signed in as %1 on %2.</source>
        <translation>Accesso eseguito come %1 su %2.</translation>
    </message>
    <message>
        <source>Not connected to a server yet. Choose Lumex ▸ Sign In… to connect.</source>
        <translation>Non ancora connesso a un server. Scegliere Lumex ▸ Accedi… per connettersi.</translation>
    </message>
</context>
<context>
    <name>TransferCell</name>
    <message>
        <source>Retry</source>
        <comment>button: upload again</comment>
        <translation>Riprova</translation>
    </message>
    <message>
        <source>Upload the files of this transfer again</source>
        <translation>Carica di nuovo i file di questo trasferimento</translation>
    </message>
    <message>
        <source>Retry Upload</source>
        <translation>Riprova caricamento</translation>
    </message>
</context>
<context>
    <name>Transfers</name>
    <message>
        <source>Transfers</source>
        <translation>Trasferimenti</translation>
    </message>
    <message>
        <source>The uploads of your recordings and how far each has got</source>
        <translation>I caricamenti delle registrazioni e il loro avanzamento</translation>
    </message>
    <message>
        <source>No Transfers</source>
        <translation>Nessun trasferimento</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Pulisci</translation>
    </message>
    <message>
        <source>Removes the completed uploads from the list</source>
        <translation>Rimuove dall&apos;elenco i caricamenti completati</translation>
    </message>
    <message>
        <source>Remove the completed uploads from the list</source>
        <translation>Rimuovi dall&apos;elenco i caricamenti completati</translation>
    </message>
</context>
<context>
    <name>TransfersController</name>
    <message>
        <source>No Transfers</source>
        <translation>Nessun trasferimento</translation>
    </message>
    <message>
        <source>1 Transfer</source>
        <translation>1 trasferimento</translation>
    </message>
    <message numerus="yes">
        <source>%n Transfers</source>
        <translation>
            <numerusform>%n trasferimento</numerusform>
            <numerusform>%n trasferimenti</numerusform>
        </translation>
    </message>
    <message>
        <source>(no file)</source>
        <translation>(nessun file)</translation>
    </message>
    <message>
        <source>This upload can no longer be retried.</source>
        <translation>Non è più possibile riprovare questo caricamento.</translation>
    </message>
    <message>
        <source>Its files were moved or deleted:
%@</source>
        <translation>I suoi file sono stati spostati o eliminati:
%@</translation>
    </message>
    <message>
        <source>Sign in to retry this upload.</source>
        <translation>Accedere per riprovare questo caricamento.</translation>
    </message>
    <message>
        <source>The upload is sent again under the name you sign in with.</source>
        <translation>Il caricamento viene inviato di nuovo con il nome con cui si accede.</translation>
    </message>
</context>
<context>
    <name>TransfersModel</name>
    <message>
        <source>progress %1 %</source>
        <translation>avanzamento %1 %</translation>
    </message>
    <message>
        <source>Press Return to retry the upload.</source>
        <translation>Premi Invio per riprovare il caricamento.</translation>
    </message>
    <message>
        <source>&apos;%@&apos; by %@</source>
        <translation>«%@» di %@</translation>
    </message>
    <message>
        <source>Pending</source>
        <translation>In attesa</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Errore</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Completato</translation>
    </message>
    <message>
        <source>%d%% done — %@ remaining</source>
        <translation>%d%% completato — tempo rimanente: %@</translation>
    </message>
    <message>
        <source>%d%% done</source>
        <translation>%d%% completato</translation>
    </message>
    <message>
        <source>1 second</source>
        <translation>1 secondo</translation>
    </message>
    <message numerus="yes">
        <source>%n seconds</source>
        <translation>
            <numerusform>%n secondo</numerusform>
            <numerusform>%n secondi</numerusform>
        </translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 minuto</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minuto</numerusform>
            <numerusform>%n minuti</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 ora</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n ora</numerusform>
            <numerusform>%n ore</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VKPopUpButton</name>
    <message>
        <source>In use, cannot be chosen</source>
        <translation>In uso, non selezionabile</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <comment>a device, then the device recorded with it</comment>
        <translation>%1 — %2</translation>
    </message>
</context>
</TS>
