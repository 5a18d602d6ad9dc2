<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>AudioLevelMeter</name>
    <message>
        <source>Microphone level</source>
        <translation>Niveau du microphone</translation>
    </message>
</context>
<context>
    <name>CameraConfig</name>
    <message>
        <source>Camera Configuration</source>
        <translation>Configuration de la caméra</translation>
    </message>
    <message>
        <source>No camera is connected to this computer.</source>
        <translation>Aucune caméra n&apos;est connectée à cet ordinateur.</translation>
    </message>
    <message>
        <source>Camera:</source>
        <translation>Caméra&#xa0;:</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Caméra</translation>
    </message>
    <message>
        <source>The camera this computer records with for the server</source>
        <translation>La caméra avec laquelle cet ordinateur enregistre pour le serveur</translation>
    </message>
    <message>
        <source>Microphone:</source>
        <translation>Microphone&#xa0;:</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Microphone</translation>
    </message>
    <message>
        <source>The microphone this computer records with for the server</source>
        <translation>Le microphone avec lequel cet ordinateur enregistre pour le serveur</translation>
    </message>
    <message>
        <source>Input level:</source>
        <translation>Niveau d&apos;entrée&#xa0;:</translation>
    </message>
    <message>
        <source>Input level</source>
        <translation>Niveau d&apos;entrée</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Niveau sonore du microphone choisi</translation>
    </message>
    <message>
        <source>Unlocks the settings with administrator rights, or locks them again</source>
        <translation>Déverrouille les réglages avec les droits d&apos;administrateur, ou les verrouille à nouveau</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Cliquez sur le cadenas pour apporter des modifications.</translation>
    </message>
    <message>
        <source>Binds this computer as a camera to a server, or unbinds it</source>
        <translation>Associe cet ordinateur à un serveur en tant que caméra, ou l&apos;en dissocie</translation>
    </message>
    <message>
        <source>Bind</source>
        <translation>Associer</translation>
    </message>
</context>
<context>
    <name>CameraConfigController</name>
    <message>
        <source>Server:</source>
        <translation>Serveur&#xa0;:</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Serveur</translation>
    </message>
    <message>
        <source>The address of the server this camera is bound to</source>
        <translation>L&apos;adresse du serveur auquel cette caméra est associée</translation>
    </message>
    <message>
        <source>User name:</source>
        <translation>Nom d&apos;utilisateur&#xa0;:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nom d&apos;utilisateur</translation>
    </message>
    <message>
        <source>The account of the server&apos;s administrator</source>
        <translation>Le compte de l&apos;administrateur du serveur</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Mot de passe&#xa0;:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>The password of the administrator&apos;s account</source>
        <translation>Le mot de passe du compte administrateur</translation>
    </message>
    <message>
        <source>Camera name:</source>
        <translation>Nom de la caméra&#xa0;:</translation>
    </message>
    <message>
        <source>Camera name</source>
        <translation>Nom de la caméra</translation>
    </message>
    <message>
        <source>The name this camera has on the server</source>
        <translation>Le nom de cette caméra sur le serveur</translation>
    </message>
    <message>
        <source>Binds or unbinds this camera with the administrator&apos;s account</source>
        <translation>Associe ou dissocie cette caméra avec le compte administrateur</translation>
    </message>
    <message>
        <source>Closes this sheet and changes nothing</source>
        <translation>Ferme cette fenêtre sans rien modifier</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>Unbind</source>
        <translation>Dissocier</translation>
    </message>
    <message>
        <source>Bind</source>
        <translation>Associer</translation>
    </message>
    <message>
        <source>Lumex requires that you authenticate as a server administrator to %@.</source>
        <translation>Lumex vous demande de vous authentifier en tant qu&apos;administrateur du serveur %@.</translation>
    </message>
    <message>
        <source>Binding failed</source>
        <translation>Échec de l&apos;association</translation>
    </message>
    <message>
        <source>Please confirm that the server is reachable and that the server administrator user name and password are correct.</source>
        <translation>Vérifiez que le serveur est joignable et que le nom d&apos;utilisateur et le mot de passe de l&apos;administrateur du serveur sont corrects.</translation>
    </message>
    <message>
        <source>Unbinding failed</source>
        <translation>Échec de la dissociation</translation>
    </message>
    <message>
        <source>Please confirm that the server administrator user name and password are correct and that the server is reachable.</source>
        <translation>Vérifiez que le nom d&apos;utilisateur et le mot de passe de l&apos;administrateur du serveur sont corrects et que le serveur est joignable.</translation>
    </message>
    <message>
        <source>Unable to start/stop the camera agent.</source>
        <translation>Impossible de démarrer ou d&apos;arrêter l&apos;agent de caméra.</translation>
    </message>
    <message>
        <source>Received error status</source>
        <translation>Code d&apos;erreur reçu&#xa0;:</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Ferme ce message</translation>
    </message>
    <message>
        <source>Click the lock to prevent further changes.</source>
        <translation>Cliquez sur le cadenas pour empêcher toute nouvelle modification.</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Cliquez sur le cadenas pour apporter des modifications.</translation>
    </message>
    <message>
        <source>Unlocked</source>
        <translation>Déverrouillé</translation>
    </message>
    <message>
        <source>Locked</source>
        <translation>Verrouillé</translation>
    </message>
</context>
<context>
    <name>CaptureDevicesController</name>
    <message>
        <source>Cannot find the audio and video devices</source>
        <translation>Impossible de trouver les périphériques audio et vidéo</translation>
    </message>
</context>
<context>
    <name>CountdownView</name>
    <message>
        <source>Counts down the seconds before the recording starts</source>
        <translation>Décompte les secondes avant le début de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Recording starts in 1 second</source>
        <translation>L&apos;enregistrement commence dans 1 seconde</translation>
    </message>
    <message numerus="yes">
        <source>Recording starts in %n seconds</source>
        <translation>
            <numerusform>L&apos;enregistrement commence dans %n seconde</numerusform>
            <numerusform>L&apos;enregistrement commence dans %n secondes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DesktopNotifier</name>
    <message>
        <source>Podcast Published</source>
        <translation>Podcast publié</translation>
    </message>
    <message>
        <source>&quot;%@&quot; has been uploaded.</source>
        <translation>«&#xa0;%@&#xa0;» a été mis en ligne.</translation>
    </message>
    <message>
        <source>Podcast Not Published</source>
        <translation>Podcast non publié</translation>
    </message>
    <message>
        <source>&quot;%@&quot; could not be uploaded. You can retry it in the Transfers window.</source>
        <translation>«&#xa0;%@&#xa0;» n&apos;a pas pu être mis en ligne. Vous pouvez réessayer depuis la fenêtre Transferts.</translation>
    </message>
</context>
<context>
    <name>DeviceChooser</name>
    <message>
        <source>No Camera</source>
        <translation>Aucune caméra</translation>
    </message>
</context>
<context>
    <name>DonePage</name>
    <message>
        <source>New Recording</source>
        <translation>Nouvel enregistrement</translation>
    </message>
    <message>
        <source>Whether the recording was handed to the server</source>
        <translation>Indique si l&apos;enregistrement a été transmis au serveur</translation>
    </message>
    <message>
        <source>Starts a new recording</source>
        <translation>Commence un nouvel enregistrement</translation>
    </message>
</context>
<context>
    <name>GLScreenGrabController</name>
    <message>
        <source>Lumex cannot show the screen: no picture came from the desktop&apos;s screen sharing (%1).</source>
        <translation>Lumex ne peut pas afficher l&apos;écran&#xa0;: le partage d&apos;écran du bureau n&apos;a fourni aucune image (%1).</translation>
    </message>
</context>
<context>
    <name>InterruptedRecordings</name>
    <message>
        <source>Publish the recording interrupted on %@?</source>
        <translation>Publier l&apos;enregistrement interrompu le %@&#xa0;?</translation>
    </message>
    <message>
        <source>Lumex or the computer stopped while this recording was made. If you do not publish it now, it stays in %@.</source>
        <translation>Lumex ou l&apos;ordinateur s&apos;est arrêté pendant cet enregistrement. Si vous ne le publiez pas maintenant, il reste dans %@.</translation>
    </message>
    <message>
        <source>Publish…</source>
        <translation>Publier…</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <source>“%1” is still recording. Continue, publish or discard it?</source>
        <translation>« %1 » enregistre toujours. Continuer, publier ou abandonner l’enregistrement ?</translation>
    </message>
    <message>
        <source>Lumex ended while this camera was recording for you; it has gone on since.</source>
        <translation>Lumex s’est arrêté pendant que cette caméra enregistrait pour vous ; elle a continué depuis.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Abandonner</translation>
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
        <translation>Utilisation : lumex [FICHIER…]
Enregistre depuis une caméra du serveur, la caméra et le microphone de cet ordinateur
ou l&apos;écran, et publie sur un serveur multimédia. Les fichiers vidéo indiqués sont
proposés à l&apos;envoi ; si Lumex est déjà lancé, ils lui sont transmis.

  --version  affiche la version et quitte
  --help     affiche ce texte et quitte
</translation>
    </message>
</context>
<context>
    <name>LXController</name>
    <message>
        <source>The server&apos;s list of workflows could not be read.</source>
        <translation>Impossible de lire la liste des flux de travail du serveur.</translation>
    </message>
    <message>
        <source>Do you want to delete the recording and Quit?</source>
        <translation>Voulez-vous supprimer l&apos;enregistrement et quitter&#xa0;?</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Keeps Lumex running with the recording</source>
        <translation>Laisse Lumex ouvert avec l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Deletes the recording and quits Lumex</source>
        <translation>Supprime l&apos;enregistrement et quitte Lumex</translation>
    </message>
    <message>
        <source>Recording Paused</source>
        <translation>Enregistrement suspendu</translation>
    </message>
    <message>
        <source>Your podcast is being submitted.</source>
        <translation>Votre podcast est en cours d&apos;envoi.</translation>
    </message>
    <message>
        <source>Your podcast has been successfully submitted.</source>
        <translation>Votre podcast a bien été envoyé.</translation>
    </message>
    <message>
        <source>There was an error submitting your podcast.</source>
        <translation>Une erreur s&apos;est produite lors de l&apos;envoi de votre podcast.</translation>
    </message>
    <message>
        <source>Delete recording and Start Over?</source>
        <translation>Supprimer l&apos;enregistrement et recommencer&#xa0;?</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Recommencer</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Suspendre l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Reprendre l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Enregistrer un podcast</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Écran</translation>
    </message>
    <message>
        <source>The recording could not be trimmed, so it is published whole.</source>
        <translation>L’enregistrement n’a pas pu être raccourci ; il est donc publié en entier.</translation>
    </message>
    <message>
        <source>The screen is recorded without the camera. %1</source>
        <translation>L’écran est enregistré sans la caméra. %1</translation>
    </message>
</context>
<context>
    <name>LXLoginPanelController</name>
    <message>
        <source>Connecting…</source>
        <translation>Connexion…</translation>
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
        <translation>Revient en arrière, ou abandonne l&apos;enregistrement et recommence</translation>
    </message>
    <message>
        <source>Goes on to describe and publish the recording</source>
        <translation>Passe à la description et à la publication de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Recommencer</translation>
    </message>
    <message>
        <source>Publish</source>
        <translation>Publier</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>&amp;Lumex</source>
        <translation>&amp;Lumex</translation>
    </message>
    <message>
        <source>&amp;Sign In…</source>
        <translation>&amp;Se connecter…</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Préférences…</translation>
    </message>
    <message>
        <source>&amp;Quit Lumex</source>
        <translation>&amp;Quitter Lumex</translation>
    </message>
    <message>
        <source>&amp;Recording</source>
        <translation>&amp;Enregistrement</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Enregistrer un podcast</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenêtre</translation>
    </message>
    <message>
        <source>&amp;Transfers</source>
        <translation>&amp;Transferts</translation>
    </message>
    <message>
        <source>&amp;Camera Configuration…</source>
        <translation>Configuration de la &amp;caméra…</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Choose Movie Files</source>
        <translation>Choisir des fichiers vidéo</translation>
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
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Recording. Press to pause the recording.</source>
        <translation>Enregistrement en cours. Appuyez pour le suspendre.</translation>
    </message>
    <message>
        <source>Not recording. Press to start or resume the recording.</source>
        <translation>Aucun enregistrement en cours. Appuyez pour démarrer ou reprendre l&apos;enregistrement.</translation>
    </message>
</context>
<context>
    <name>LoginPanel</name>
    <message>
        <source>Sign In to Lumex</source>
        <translation>Connexion à Lumex</translation>
    </message>
    <message>
        <source>Sign in to your media server</source>
        <translation>Connectez-vous à votre serveur multimédia</translation>
    </message>
    <message>
        <source>Lumex records to the workflows of your organisation&apos;s server. Enter the server&apos;s address and your account.</source>
        <translation>Lumex enregistre pour les flux de travail du serveur de votre organisation. Saisissez l&apos;adresse du serveur et vos identifiants.</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Serveur&#xa0;:</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Serveur</translation>
    </message>
    <message>
        <source>The address of your organisation&apos;s media server</source>
        <translation>L&apos;adresse du serveur multimédia de votre organisation</translation>
    </message>
    <message>
        <source>media.example.edu</source>
        <translation>media.example.edu</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Nom d&apos;utilisateur&#xa0;:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nom d&apos;utilisateur</translation>
    </message>
    <message>
        <source>Your account on the media server</source>
        <translation>Votre compte sur le serveur multimédia</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Mot de passe&#xa0;:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>The password of your account</source>
        <translation>Le mot de passe de votre compte</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Closes this window without signing in</source>
        <translation>Ferme cette fenêtre sans se connecter</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>Signs in to the server with this account</source>
        <translation>Se connecte au serveur avec ce compte</translation>
    </message>
</context>
<context>
    <name>MetadataPage</name>
    <message>
        <source>Describe your recording</source>
        <translation>Décrivez votre enregistrement</translation>
    </message>
    <message>
        <source>Give the recording a title and a description, then choose where it goes.</source>
        <translation>Donnez un titre et une description à l&apos;enregistrement, puis choisissez sa destination.</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titre</translation>
    </message>
    <message>
        <source>Title of the recording</source>
        <translation>Titre de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>What is it about?</source>
        <translation>De quoi s&apos;agit-il&#xa0;?</translation>
    </message>
    <message>
        <source>Workflow</source>
        <translation>Flux de travail</translation>
    </message>
    <message>
        <source>What to fill in before publishing</source>
        <translation>Ce qu&apos;il faut renseigner avant de publier</translation>
    </message>
    <message>
        <source>The movie files that are published</source>
        <translation>Les fichiers vidéo qui seront publiés</translation>
    </message>
    <message>
        <source>The title the recording is published with</source>
        <translation>Le titre sous lequel l&apos;enregistrement est publié</translation>
    </message>
    <message>
        <source>A description published with the recording</source>
        <translation>Une description publiée avec l&apos;enregistrement</translation>
    </message>
    <message>
        <source>The server workflow that processes the recording</source>
        <translation>Le flux de travail du serveur qui traite l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Files to publish:</source>
        <translation>Fichiers à publier&#xa0;:</translation>
    </message>
</context>
<context>
    <name>MoviePlayer</name>
    <message>
        <source>This computer cannot play movies: a GStreamer plug-in is missing.</source>
        <translation>Cet ordinateur ne peut pas lire de vidéos : un greffon GStreamer est manquant.</translation>
    </message>
    <message>
        <source>The recording cannot be played.</source>
        <translation>L’enregistrement ne peut pas être lu.</translation>
    </message>
</context>
<context>
    <name>OrvaneServerInterface</name>
    <message>
        <source>%@ tool cannot be found.</source>
        <translation>L&apos;outil %@ est introuvable.</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be read from %@: %@</source>
        <translation>Impossible de lire la configuration de l&apos;agent de caméra depuis %@&#xa0;: %@</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be saved to %@: %@</source>
        <translation>Impossible d&apos;enregistrer la configuration de l&apos;agent de caméra dans %@&#xa0;: %@</translation>
    </message>
    <message>
        <source>The folder for recording data could not be created at %@: %@</source>
        <translation>Impossible de créer le dossier des données d&apos;enregistrement dans %@&#xa0;: %@</translation>
    </message>
    <message>
        <source>The recording data could not be saved to %@: %@</source>
        <translation>Impossible d&apos;écrire les données d&apos;enregistrement dans %@&#xa0;: %@</translation>
    </message>
    <message>
        <source>Could not make destination folder for capture movie. mkdir returned status: %d.</source>
        <translation>Impossible de créer le dossier de destination de la vidéo capturée. mkdir a renvoyé le code&#xa0;: %d.</translation>
    </message>
    <message>
        <source>Could not start %@. It terminates with status: %d.</source>
        <translation>Impossible de démarrer %@. Il se termine avec le code&#xa0;: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to stop.</source>
        <translation>L&apos;agent de capture local ne s&apos;est pas arrêté.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to pause signal with status: %d.</source>
        <translation>L&apos;agent de capture local n&apos;a pas répondu au signal de pause, code&#xa0;: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to resume signal with status: %d.</source>
        <translation>L&apos;agent de capture local n&apos;a pas répondu au signal de reprise, code&#xa0;: %d.</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation>Préférences</translation>
    </message>
    <message>
        <source>Record/pause shortcut:</source>
        <translation>Raccourci enregistrer/pause&#xa0;:</translation>
    </message>
    <message>
        <source>Record/pause shortcut</source>
        <translation>Raccourci enregistrer/pause</translation>
    </message>
    <message>
        <source>The key combination that starts or pauses a recording from any application</source>
        <translation>La combinaison de touches qui démarre ou suspend un enregistrement depuis n&apos;importe quelle application</translation>
    </message>
    <message>
        <source>Choose a key, or click the field and press the combination you want.</source>
        <translation>Choisissez une touche, ou cliquez dans le champ et appuyez sur la combinaison voulue.</translation>
    </message>
    <message>
        <source>Starts or pauses a recording from any application.</source>
        <translation>Démarre ou suspend un enregistrement depuis n&apos;importe quelle application.</translation>
    </message>
</context>
<context>
    <name>PreferencesController</name>
    <message>
        <source>Press the key combination you want while this field has focus</source>
        <translation>Appuyez sur la combinaison de touches voulue pendant que ce champ a le focus</translation>
    </message>
    <message>
        <source>This desktop offers no global record/pause key: on Wayland no application may take a key from the others. Use the Recording menu to start or pause a recording.</source>
        <translation>Ce bureau ne propose pas de touche globale d&apos;enregistrement et de pause&#xa0;: sous Wayland, aucune application ne peut s&apos;approprier une touche aux dépens des autres. Utilisez le menu Enregistrement pour démarrer ou suspendre un enregistrement.</translation>
    </message>
</context>
<context>
    <name>RecordPage</name>
    <message>
        <source>Camera</source>
        <translation>Caméra</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Microphone</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Niveau du microphone</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>No preview yet</source>
        <translation>Pas encore d&apos;aperçu</translation>
    </message>
    <message>
        <source>Screen preview</source>
        <translation>Aperçu de l&apos;écran</translation>
    </message>
    <message>
        <source>Camera preview</source>
        <translation>Aperçu de la caméra</translation>
    </message>
    <message>
        <source>The camera to record from</source>
        <translation>La caméra avec laquelle enregistrer</translation>
    </message>
    <message>
        <source>The microphone to record from</source>
        <translation>Le microphone avec lequel enregistrer</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Niveau sonore du microphone choisi</translation>
    </message>
    <message>
        <source>A recent picture from the remote camera</source>
        <translation>Une image récente de la caméra distante</translation>
    </message>
    <message>
        <source>A picture of the screen that is recorded</source>
        <translation>Une image de l&apos;écran enregistré</translation>
    </message>
    <message>
        <source>The live picture of the chosen camera</source>
        <translation>L&apos;image en direct de la caméra choisie</translation>
    </message>
    <message>
        <source>Whether a recording is running or paused</source>
        <translation>Indique si un enregistrement est en cours ou suspendu</translation>
    </message>
    <message>
        <source>The key that starts or pauses a recording from any application</source>
        <translation>La touche qui démarre ou suspend un enregistrement depuis n&apos;importe quelle application</translation>
    </message>
    <message>
        <source>How long the recording has run</source>
        <translation>Durée écoulée de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Use the Recording menu to start or pause recording: this desktop offers no key that works in any application.</source>
        <translation>Utilisez le menu Enregistrement pour démarrer ou suspendre l&apos;enregistrement&#xa0;: ce bureau ne propose aucune touche qui fonctionne dans toutes les applications.</translation>
    </message>
    <message>
        <source>Press %1 in any application to start or pause recording.</source>
        <translation>Appuyez sur %1 dans n&apos;importe quelle application pour démarrer ou suspendre l&apos;enregistrement.</translation>
    </message>
    <message>
        <source>How much longer this disk can record</source>
        <translation>Durée d’enregistrement encore possible sur ce disque</translation>
    </message>
    <message>
        <source>A warning about the recording</source>
        <translation>Un avertissement sur l’enregistrement</translation>
    </message>
</context>
<context>
    <name>RecordingGuard</name>
    <message>
        <source>No sound from “%1” for 10 seconds</source>
        <translation>Aucun son de « %1 » depuis 10 secondes</translation>
    </message>
    <message>
        <source>“%1” is too loud</source>
        <translation>« %1 » est trop fort</translation>
    </message>
    <message>
        <source>The picture from “%1” has stopped</source>
        <translation>L’image de « %1 » est figée</translation>
    </message>
    <message>
        <source>The screen recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>L’enregistrement de l’écran s’est arrêté de façon inattendue ; ce qui a été enregistré est conservé.</translation>
    </message>
    <message>
        <source>The sound recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>L’enregistrement du son s’est arrêté de façon inattendue ; ce qui a été enregistré est conservé.</translation>
    </message>
</context>
<context>
    <name>RecordingWatch</name>
    <message>
        <source>Less than 10 minutes of recording left on this disk. Free some space, or the recording pauses when the disk is full.</source>
        <translation>Il reste moins de 10 minutes d’enregistrement sur ce disque. Libérez de l’espace, sinon l’enregistrement sera mis en pause quand le disque sera plein.</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>hours, then minutes</comment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>About %1 of recording left on this disk</source>
        <translation>Environ %1 d’enregistrement restant sur ce disque</translation>
    </message>
    <message>
        <source>Lumex: check your recording</source>
        <translation>Lumex : vérifiez votre enregistrement</translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 minute</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 heure</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n heure</numerusform>
            <numerusform>%n heures</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on; its picture stays black until the recording ends.</source>
        <translation>« %1 » a été déconnecté. L’enregistrement continue ; son image reste noire jusqu’à la fin de l’enregistrement.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on without its sound until the recording ends.</source>
        <translation>« %1 » a été déconnecté. L’enregistrement continue sans le son de cet appareil jusqu’à la fin.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with a black picture and the sound of “%2”.</source>
        <translation>« %1 » a été déconnecté. L’enregistrement continue avec une image noire et le son de « %2 ».</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with the sound of “%2”.</source>
        <translation>« %1 » a été déconnecté. L’enregistrement continue avec le son de « %2 ».</translation>
    </message>
</context>
<context>
    <name>ReviewPlayer</name>
    <message>
        <source>Recording</source>
        <translation>Enregistrement</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Lire</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Temps</translation>
    </message>
    <message>
        <source>Mark In</source>
        <translation>Marquer le début</translation>
    </message>
    <message>
        <source>Mark Out</source>
        <translation>Marquer la fin</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>Clear marks</source>
        <translation>Effacer les marques</translation>
    </message>
    <message>
        <source>Kept length</source>
        <translation>Durée conservée</translation>
    </message>
    <message>
        <source>Marks cleared: the whole recording is published.</source>
        <translation>Marques effacées : tout l’enregistrement sera publié.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>The recording as it will be published</source>
        <translation>L’enregistrement tel qu’il sera publié</translation>
    </message>
    <message>
        <source>Left and Right step 5 seconds; I and O set the marks</source>
        <translation>Gauche et Droite avancent de 5 secondes ; I et O placent les marques</translation>
    </message>
    <message>
        <source>Plays or pauses the recording (Space)</source>
        <translation>Lit l’enregistrement ou le met en pause (Espace)</translation>
    </message>
    <message>
        <source>Publishes the recording from the playhead on (I)</source>
        <translation>Publie l’enregistrement à partir de la tête de lecture (I)</translation>
    </message>
    <message>
        <source>Publishes the recording up to the playhead (O)</source>
        <translation>Publie l’enregistrement jusqu’à la tête de lecture (O)</translation>
    </message>
    <message>
        <source>Publishes the whole recording again</source>
        <translation>Publie de nouveau l’enregistrement entier</translation>
    </message>
    <message>
        <source>The recording is on the server.</source>
        <translation>L’enregistrement se trouve sur le serveur.</translation>
    </message>
    <message>
        <source>In mark at %1.</source>
        <translation>Marque de début à %1.</translation>
    </message>
    <message>
        <source>Out mark at %1.</source>
        <translation>Marque de fin à %1.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>–</source>
        <translation>–</translation>
    </message>
    <message>
        <source>Keeps %1 (%2–%3)</source>
        <translation>Conserve %1 (%2–%3)</translation>
    </message>
    <message>
        <source>Keeps all</source>
        <translation>Conserve tout</translation>
    </message>
</context>
<context>
    <name>ScreenCastPortal</name>
    <message>
        <source>Lumex cannot see the screen: this desktop offers no screen sharing service (the desktop portal is not running).</source>
        <translation>Lumex ne peut pas voir l&apos;écran&#xa0;: ce bureau ne propose aucun service de partage d&apos;écran (le portail du bureau n&apos;est pas lancé).</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen because sharing it was declined. Choose the screen again to be asked once more.</source>
        <translation>Lumex ne peut pas voir l&apos;écran, car son partage a été refusé. Choisissez de nouveau l&apos;écran pour que la question vous soit reposée.</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen: the desktop&apos;s screen sharing failed (%1).</source>
        <translation>Lumex ne peut pas voir l&apos;écran&#xa0;: le partage d&apos;écran du bureau a échoué (%1).</translation>
    </message>
</context>
<context>
    <name>Sheets</name>
    <message>
        <source>Server communication error.</source>
        <translation>Erreur de communication avec le serveur.</translation>
    </message>
    <message>
        <source>An error occurred while communicating with the Orvane server. Please contact your network administrator for further help.</source>
        <translation>Une erreur s&apos;est produite lors de la communication avec le serveur Orvane. Contactez votre administrateur réseau pour obtenir de l&apos;aide.</translation>
    </message>
    <message>
        <source>Authentication Failed</source>
        <translation>Échec de l&apos;authentification</translation>
    </message>
    <message>
        <source>The username or password you entered may not be correct. Please retype the username and password and try again.</source>
        <translation>Le nom d&apos;utilisateur ou le mot de passe saisi est peut-être incorrect. Saisissez-les à nouveau et réessayez.</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Ferme ce message</translation>
    </message>
    <message>
        <source>Your current recording will be deleted. This action cannot be undone.</source>
        <translation>L&apos;enregistrement en cours sera supprimé. Cette action est irréversible.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Not enough disk space available</source>
        <translation>Espace disque insuffisant</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to continue recording the podcast. Your recording has been paused.</source>
        <translation>L&apos;espace disque disponible sur le volume %@ ne suffit pas pour poursuivre l&apos;enregistrement du podcast. L&apos;enregistrement a été suspendu.</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to record a podcast.</source>
        <translation>L&apos;espace disque disponible sur le volume %@ ne suffit pas pour enregistrer un podcast.</translation>
    </message>
</context>
<context>
    <name>SourceChooserPage</name>
    <message>
        <source>What would you like to record?</source>
        <translation>Que voulez-vous enregistrer&#xa0;?</translation>
    </message>
    <message>
        <source>Choose a source. Recordings go to the workflow you pick when you publish.</source>
        <translation>Choisissez une source. Les enregistrements vont au flux de travail choisi lors de la publication.</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Vidéo</translation>
    </message>
    <message>
        <source>Record from a camera in a lecture hall or from this computer&apos;s camera</source>
        <translation>Enregistrer avec une caméra d&apos;amphithéâtre ou celle de cet ordinateur</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>Record sound only</source>
        <translation>Enregistrer uniquement le son</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Écran</translation>
    </message>
    <message>
        <source>Record this computer&apos;s screen with narration</source>
        <translation>Enregistrer l&apos;écran de cet ordinateur avec un commentaire</translation>
    </message>
    <message>
        <source>Movie Files</source>
        <translation>Fichiers vidéo</translation>
    </message>
    <message>
        <source>Publish movie files you already have</source>
        <translation>Publier des fichiers vidéo existants</translation>
    </message>
    <message>
        <source>The server and account you are signed in with</source>
        <translation>Le serveur et le compte avec lesquels vous êtes connecté</translation>
    </message>
    <message>
        <source>Signed in as %1 on %2.</source>
        <translation>Connecté en tant que %1 sur %2.</translation>
    </message>
    <message>
        <source>Not connected to a server yet. Choose Lumex ▸ Sign In… to connect.</source>
        <translation>Pas encore connecté à un serveur. Choisissez Lumex ▸ Se connecter… pour vous connecter.</translation>
    </message>
</context>
<context>
    <name>TransferCell</name>
    <message>
        <source>Retry</source>
        <comment>button: upload again</comment>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Upload the files of this transfer again</source>
        <translation>Renvoyer les fichiers de ce transfert</translation>
    </message>
    <message>
        <source>Retry Upload</source>
        <translation>Réessayer l&apos;envoi</translation>
    </message>
</context>
<context>
    <name>Transfers</name>
    <message>
        <source>Transfers</source>
        <translation>Transferts</translation>
    </message>
    <message>
        <source>The uploads of your recordings and how far each has got</source>
        <translation>Les envois de vos enregistrements et leur avancement</translation>
    </message>
    <message>
        <source>No Transfers</source>
        <translation>Aucun transfert</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>Removes the completed uploads from the list</source>
        <translation>Retire de la liste les envois terminés</translation>
    </message>
    <message>
        <source>Remove the completed uploads from the list</source>
        <translation>Retirer de la liste les envois terminés</translation>
    </message>
</context>
<context>
    <name>TransfersController</name>
    <message>
        <source>No Transfers</source>
        <translation>Aucun transfert</translation>
    </message>
    <message>
        <source>1 Transfer</source>
        <translation>1 transfert</translation>
    </message>
    <message numerus="yes">
        <source>%n Transfers</source>
        <translation>
            <numerusform>%n transfert</numerusform>
            <numerusform>%n transferts</numerusform>
        </translation>
    </message>
    <message>
        <source>(no file)</source>
        <translation>(aucun fichier)</translation>
    </message>
    <message>
        <source>This upload can no longer be retried.</source>
        <translation>Cet envoi ne peut plus être relancé.</translation>
    </message>
    <message>
        <source>Its files were moved or deleted:
%@</source>
        <translation>Ses fichiers ont été déplacés ou supprimés&#xa0;:
%@</translation>
    </message>
    <message>
        <source>Sign in to retry this upload.</source>
        <translation>Connectez-vous pour relancer cet envoi.</translation>
    </message>
    <message>
        <source>The upload is sent again under the name you sign in with.</source>
        <translation>L&apos;envoi est relancé sous le nom avec lequel vous vous connectez.</translation>
    </message>
</context>
<context>
    <name>TransfersModel</name>
    <message>
        <source>progress %1 %</source>
        <translation>progression %1 %</translation>
    </message>
    <message>
        <source>Press Return to retry the upload.</source>
        <translation>Appuyez sur Entrée pour relancer l’envoi.</translation>
    </message>
    <message>
        <source>&apos;%@&apos; by %@</source>
        <translation>«&#xa0;%@&#xa0;» par %@</translation>
    </message>
    <message>
        <source>Pending</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>%d%% done — %@ remaining</source>
        <translation>%d&#xa0;%% effectués — il reste %@</translation>
    </message>
    <message>
        <source>%d%% done</source>
        <translation>%d&#xa0;%% effectués</translation>
    </message>
    <message>
        <source>1 second</source>
        <translation>1 seconde</translation>
    </message>
    <message numerus="yes">
        <source>%n seconds</source>
        <translation>
            <numerusform>%n seconde</numerusform>
            <numerusform>%n secondes</numerusform>
        </translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 minute</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 heure</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n heure</numerusform>
            <numerusform>%n heures</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VKPopUpButton</name>
    <message>
        <source>In use, cannot be chosen</source>
        <translation>Occupé, ne peut pas être choisi</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <comment>a device, then the device recorded with it</comment>
        <translation>%1 — %2</translation>
    </message>
</context>
</TS>
