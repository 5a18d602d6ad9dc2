<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES">
<context>
    <name>AudioLevelMeter</name>
    <message>
        <source>Microphone level</source>
        <translation>Nivel del micrófono</translation>
    </message>
</context>
<context>
    <name>CameraConfig</name>
    <message>
        <source>Camera Configuration</source>
        <translation>Configuración de la cámara</translation>
    </message>
    <message>
        <source>No camera is connected to this computer.</source>
        <translation>No hay ninguna cámara conectada a este equipo.</translation>
    </message>
    <message>
        <source>Camera:</source>
        <translation>Cámara:</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Cámara</translation>
    </message>
    <message>
        <source>The camera this computer records with for the server</source>
        <translation>La cámara con la que este equipo graba para el servidor</translation>
    </message>
    <message>
        <source>Microphone:</source>
        <translation>Micrófono:</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Micrófono</translation>
    </message>
    <message>
        <source>The microphone this computer records with for the server</source>
        <translation>El micrófono con el que este equipo graba para el servidor</translation>
    </message>
    <message>
        <source>Input level:</source>
        <translation>Nivel de entrada:</translation>
    </message>
    <message>
        <source>Input level</source>
        <translation>Nivel de entrada</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Nivel sonoro del micrófono elegido</translation>
    </message>
    <message>
        <source>Unlocks the settings with administrator rights, or locks them again</source>
        <translation>Desbloquea la configuración con permisos de administrador, o la vuelve a bloquear</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Pulse el candado para realizar cambios.</translation>
    </message>
    <message>
        <source>Binds this computer as a camera to a server, or unbinds it</source>
        <translation>Vincula este equipo como cámara a un servidor, o lo desvincula</translation>
    </message>
    <message>
        <source>Bind</source>
        <translation>Vincular</translation>
    </message>
</context>
<context>
    <name>CameraConfigController</name>
    <message>
        <source>Server:</source>
        <translation>Servidor:</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Servidor</translation>
    </message>
    <message>
        <source>The address of the server this camera is bound to</source>
        <translation>La dirección del servidor al que está vinculada esta cámara</translation>
    </message>
    <message>
        <source>User name:</source>
        <translation>Nombre de usuario:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nombre de usuario</translation>
    </message>
    <message>
        <source>The account of the server&apos;s administrator</source>
        <translation>La cuenta del administrador del servidor</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Contraseña:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>The password of the administrator&apos;s account</source>
        <translation>La contraseña de la cuenta de administrador</translation>
    </message>
    <message>
        <source>Camera name:</source>
        <translation>Nombre de la cámara:</translation>
    </message>
    <message>
        <source>Camera name</source>
        <translation>Nombre de la cámara</translation>
    </message>
    <message>
        <source>The name this camera has on the server</source>
        <translation>El nombre que tiene esta cámara en el servidor</translation>
    </message>
    <message>
        <source>Binds or unbinds this camera with the administrator&apos;s account</source>
        <translation>Vincula o desvincula esta cámara con la cuenta de administrador</translation>
    </message>
    <message>
        <source>Closes this sheet and changes nothing</source>
        <translation>Cierra esta ventana sin cambiar nada</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automático</translation>
    </message>
    <message>
        <source>Unbind</source>
        <translation>Desvincular</translation>
    </message>
    <message>
        <source>Bind</source>
        <translation>Vincular</translation>
    </message>
    <message>
        <source>Lumex requires that you authenticate as a server administrator to %@.</source>
        <translation>Lumex necesita que se autentique como administrador del servidor %@.</translation>
    </message>
    <message>
        <source>Binding failed</source>
        <translation>Error al vincular</translation>
    </message>
    <message>
        <source>Please confirm that the server is reachable and that the server administrator user name and password are correct.</source>
        <translation>Compruebe que el servidor esté accesible y que el nombre de usuario y la contraseña del administrador del servidor sean correctos.</translation>
    </message>
    <message>
        <source>Unbinding failed</source>
        <translation>Error al desvincular</translation>
    </message>
    <message>
        <source>Please confirm that the server administrator user name and password are correct and that the server is reachable.</source>
        <translation>Compruebe que el nombre de usuario y la contraseña del administrador del servidor sean correctos y que el servidor esté accesible.</translation>
    </message>
    <message>
        <source>Unable to start/stop the camera agent.</source>
        <translation>No se pudo iniciar o detener el agente de cámara.</translation>
    </message>
    <message>
        <source>Received error status</source>
        <translation>Código de error recibido:</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Cierra este mensaje</translation>
    </message>
    <message>
        <source>Click the lock to prevent further changes.</source>
        <translation>Pulse el candado para impedir más cambios.</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Pulse el candado para realizar cambios.</translation>
    </message>
    <message>
        <source>Unlocked</source>
        <translation>Desbloqueado</translation>
    </message>
    <message>
        <source>Locked</source>
        <translation>Bloqueado</translation>
    </message>
</context>
<context>
    <name>CaptureDevicesController</name>
    <message>
        <source>Cannot find the audio and video devices</source>
        <translation>No se encuentran los dispositivos de audio y vídeo</translation>
    </message>
</context>
<context>
    <name>CountdownView</name>
    <message>
        <source>Counts down the seconds before the recording starts</source>
        <translation>Cuenta los segundos que faltan para que empiece la grabación</translation>
    </message>
    <message>
        <source>Recording starts in 1 second</source>
        <translation>La grabación empieza en 1 segundo</translation>
    </message>
    <message numerus="yes">
        <source>Recording starts in %n seconds</source>
        <translation>
            <numerusform>La grabación empieza en %n segundo</numerusform>
            <numerusform>La grabación empieza en %n segundos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DesktopNotifier</name>
    <message>
        <source>Podcast Published</source>
        <translation>Podcast publicado</translation>
    </message>
    <message>
        <source>&quot;%@&quot; has been uploaded.</source>
        <translation>«%@» se ha subido.</translation>
    </message>
    <message>
        <source>Podcast Not Published</source>
        <translation>Podcast no publicado</translation>
    </message>
    <message>
        <source>&quot;%@&quot; could not be uploaded. You can retry it in the Transfers window.</source>
        <translation>No se pudo subir «%@». Puede reintentarlo en la ventana Transferencias.</translation>
    </message>
</context>
<context>
    <name>DeviceChooser</name>
    <message>
        <source>No Camera</source>
        <translation>Sin cámara</translation>
    </message>
</context>
<context>
    <name>DonePage</name>
    <message>
        <source>New Recording</source>
        <translation>Nueva grabación</translation>
    </message>
    <message>
        <source>Whether the recording was handed to the server</source>
        <translation>Indica si la grabación se entregó al servidor</translation>
    </message>
    <message>
        <source>Starts a new recording</source>
        <translation>Inicia una grabación nueva</translation>
    </message>
</context>
<context>
    <name>GLScreenGrabController</name>
    <message>
        <source>Lumex cannot show the screen: no picture came from the desktop&apos;s screen sharing (%1).</source>
        <translation>Lumex no puede mostrar la pantalla: la función de compartir pantalla del escritorio no ha enviado ninguna imagen (%1).</translation>
    </message>
</context>
<context>
    <name>InterruptedRecordings</name>
    <message>
        <source>Publish the recording interrupted on %@?</source>
        <translation>¿Publicar la grabación interrumpida el %@?</translation>
    </message>
    <message>
        <source>Lumex or the computer stopped while this recording was made. If you do not publish it now, it stays in %@.</source>
        <translation>Lumex o el equipo se detuvo mientras se hacía esta grabación. Si no la publica ahora, se quedará en %@.</translation>
    </message>
    <message>
        <source>Publish…</source>
        <translation>Publicar…</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Ahora no</translation>
    </message>
    <message>
        <source>“%1” is still recording. Continue, publish or discard it?</source>
        <translation>«%1» sigue grabando. ¿Continuar, publicar o descartar la grabación?</translation>
    </message>
    <message>
        <source>Lumex ended while this camera was recording for you; it has gone on since.</source>
        <translation>Lumex se cerró mientras esta cámara grababa para usted; ha seguido grabando desde entonces.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuar</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Descartar</translation>
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
        <translation>Uso: lumex [ARCHIVO…]
Graba desde una cámara del servidor, la cámara y el micrófono de este equipo o la pantalla,
y publica en un servidor multimedia. Los archivos de vídeo indicados se ofrecen para su
envío; si Lumex ya está en ejecución, se le pasan a él.

  --version  muestra la versión y sale
  --help     muestra este texto y sale
</translation>
    </message>
</context>
<context>
    <name>LXController</name>
    <message>
        <source>The server&apos;s list of workflows could not be read.</source>
        <translation>No se pudo leer la lista de flujos de trabajo del servidor.</translation>
    </message>
    <message>
        <source>Do you want to delete the recording and Quit?</source>
        <translation>¿Quiere eliminar la grabación y salir?</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Keeps Lumex running with the recording</source>
        <translation>Mantiene Lumex abierto con la grabación</translation>
    </message>
    <message>
        <source>Deletes the recording and quits Lumex</source>
        <translation>Elimina la grabación y cierra Lumex</translation>
    </message>
    <message>
        <source>Recording Paused</source>
        <translation>Grabación en pausa</translation>
    </message>
    <message>
        <source>Your podcast is being submitted.</source>
        <translation>Se está enviando su podcast.</translation>
    </message>
    <message>
        <source>Your podcast has been successfully submitted.</source>
        <translation>Su podcast se ha enviado correctamente.</translation>
    </message>
    <message>
        <source>There was an error submitting your podcast.</source>
        <translation>Se produjo un error al enviar su podcast.</translation>
    </message>
    <message>
        <source>Delete recording and Start Over?</source>
        <translation>¿Eliminar la grabación y empezar de nuevo?</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Empezar de nuevo</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Pausar la grabación</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Reanudar la grabación</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Grabar podcast</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Pantalla</translation>
    </message>
    <message>
        <source>The recording could not be trimmed, so it is published whole.</source>
        <translation>No se ha podido recortar la grabación, así que se publica completa.</translation>
    </message>
    <message>
        <source>The screen is recorded without the camera. %1</source>
        <translation>La pantalla se graba sin la cámara. %1</translation>
    </message>
</context>
<context>
    <name>LXLoginPanelController</name>
    <message>
        <source>Connecting…</source>
        <translation>Conectando…</translation>
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
        <translation>Vuelve atrás, o descarta la grabación y empieza de nuevo</translation>
    </message>
    <message>
        <source>Goes on to describe and publish the recording</source>
        <translation>Pasa a describir y publicar la grabación</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Empezar de nuevo</translation>
    </message>
    <message>
        <source>Publish</source>
        <translation>Publicar</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Grabar</translation>
    </message>
    <message>
        <source>&amp;Lumex</source>
        <translation>&amp;Lumex</translation>
    </message>
    <message>
        <source>&amp;Sign In…</source>
        <translation>&amp;Iniciar sesión…</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Preferencias…</translation>
    </message>
    <message>
        <source>&amp;Quit Lumex</source>
        <translation>&amp;Salir de Lumex</translation>
    </message>
    <message>
        <source>&amp;Recording</source>
        <translation>&amp;Grabación</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Grabar podcast</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Ventana</translation>
    </message>
    <message>
        <source>&amp;Transfers</source>
        <translation>&amp;Transferencias</translation>
    </message>
    <message>
        <source>&amp;Camera Configuration…</source>
        <translation>Configuración de la &amp;cámara…</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Hecho</translation>
    </message>
    <message>
        <source>Choose Movie Files</source>
        <translation>Elegir archivos de vídeo</translation>
    </message>
</context>
<context>
    <name>LXRecordButton</name>
    <message>
        <source>Pause</source>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Grabar</translation>
    </message>
    <message>
        <source>Recording. Press to pause the recording.</source>
        <translation>Grabando. Pulse para pausar la grabación.</translation>
    </message>
    <message>
        <source>Not recording. Press to start or resume the recording.</source>
        <translation>Sin grabar. Pulse para iniciar o reanudar la grabación.</translation>
    </message>
</context>
<context>
    <name>LoginPanel</name>
    <message>
        <source>Sign In to Lumex</source>
        <translation>Iniciar sesión en Lumex</translation>
    </message>
    <message>
        <source>Sign in to your media server</source>
        <translation>Inicie sesión en su servidor multimedia</translation>
    </message>
    <message>
        <source>Lumex records to the workflows of your organisation&apos;s server. Enter the server&apos;s address and your account.</source>
        <translation>Lumex graba para los flujos de trabajo del servidor de su organización. Introduzca la dirección del servidor y su cuenta.</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Servidor:</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Servidor</translation>
    </message>
    <message>
        <source>The address of your organisation&apos;s media server</source>
        <translation>La dirección del servidor multimedia de su organización</translation>
    </message>
    <message>
        <source>media.example.edu</source>
        <translation>media.example.edu</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Nombre de usuario:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nombre de usuario</translation>
    </message>
    <message>
        <source>Your account on the media server</source>
        <translation>Su cuenta en el servidor multimedia</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Contraseña:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>The password of your account</source>
        <translation>La contraseña de su cuenta</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Closes this window without signing in</source>
        <translation>Cierra esta ventana sin iniciar sesión</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Conectar</translation>
    </message>
    <message>
        <source>Signs in to the server with this account</source>
        <translation>Inicia sesión en el servidor con esta cuenta</translation>
    </message>
</context>
<context>
    <name>MetadataPage</name>
    <message>
        <source>Describe your recording</source>
        <translation>Describa su grabación</translation>
    </message>
    <message>
        <source>Give the recording a title and a description, then choose where it goes.</source>
        <translation>Dé a la grabación un título y una descripción, y elija después su destino.</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ayuda</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Título</translation>
    </message>
    <message>
        <source>Title of the recording</source>
        <translation>Título de la grabación</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Descripción</translation>
    </message>
    <message>
        <source>What is it about?</source>
        <translation>¿De qué trata?</translation>
    </message>
    <message>
        <source>Workflow</source>
        <translation>Flujo de trabajo</translation>
    </message>
    <message>
        <source>What to fill in before publishing</source>
        <translation>Qué rellenar antes de publicar</translation>
    </message>
    <message>
        <source>The movie files that are published</source>
        <translation>Los archivos de vídeo que se publican</translation>
    </message>
    <message>
        <source>The title the recording is published with</source>
        <translation>El título con el que se publica la grabación</translation>
    </message>
    <message>
        <source>A description published with the recording</source>
        <translation>Una descripción que se publica con la grabación</translation>
    </message>
    <message>
        <source>The server workflow that processes the recording</source>
        <translation>El flujo de trabajo del servidor que procesa la grabación</translation>
    </message>
    <message>
        <source>Files to publish:</source>
        <translation>Archivos que publicar:</translation>
    </message>
</context>
<context>
    <name>MoviePlayer</name>
    <message>
        <source>This computer cannot play movies: a GStreamer plug-in is missing.</source>
        <translation>Este equipo no puede reproducir vídeos: falta un complemento de GStreamer.</translation>
    </message>
    <message>
        <source>The recording cannot be played.</source>
        <translation>No se puede reproducir la grabación.</translation>
    </message>
</context>
<context>
    <name>OrvaneServerInterface</name>
    <message>
        <source>%@ tool cannot be found.</source>
        <translation>No se encuentra la herramienta %@.</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be read from %@: %@</source>
        <translation>No se pudo leer la configuración del agente de cámara de %@: %@</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be saved to %@: %@</source>
        <translation>No se pudo guardar la configuración del agente de cámara en %@: %@</translation>
    </message>
    <message>
        <source>The folder for recording data could not be created at %@: %@</source>
        <translation>No se pudo crear la carpeta de datos de grabación en %@: %@</translation>
    </message>
    <message>
        <source>The recording data could not be saved to %@: %@</source>
        <translation>No se pudieron guardar los datos de grabación en %@: %@</translation>
    </message>
    <message>
        <source>Could not make destination folder for capture movie. mkdir returned status: %d.</source>
        <translation>No se pudo crear la carpeta de destino del vídeo capturado. mkdir devolvió el estado: %d.</translation>
    </message>
    <message>
        <source>Could not start %@. It terminates with status: %d.</source>
        <translation>No se pudo iniciar %@. Termina con el estado: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to stop.</source>
        <translation>El agente de captura local no se detuvo.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to pause signal with status: %d.</source>
        <translation>El agente de captura local no respondió a la señal de pausa; estado: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to resume signal with status: %d.</source>
        <translation>El agente de captura local no respondió a la señal de reanudación; estado: %d.</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation>Preferencias</translation>
    </message>
    <message>
        <source>Record/pause shortcut:</source>
        <translation>Atajo de grabar/pausar:</translation>
    </message>
    <message>
        <source>Record/pause shortcut</source>
        <translation>Atajo de grabar/pausar</translation>
    </message>
    <message>
        <source>The key combination that starts or pauses a recording from any application</source>
        <translation>La combinación de teclas que inicia o pausa una grabación desde cualquier aplicación</translation>
    </message>
    <message>
        <source>Choose a key, or click the field and press the combination you want.</source>
        <translation>Elija una tecla, o pulse en el campo y luego la combinación que desee.</translation>
    </message>
    <message>
        <source>Starts or pauses a recording from any application.</source>
        <translation>Inicia o pausa una grabación desde cualquier aplicación.</translation>
    </message>
</context>
<context>
    <name>PreferencesController</name>
    <message>
        <source>Press the key combination you want while this field has focus</source>
        <translation>Pulse la combinación de teclas que desee mientras este campo tiene el foco</translation>
    </message>
    <message>
        <source>This desktop offers no global record/pause key: on Wayland no application may take a key from the others. Use the Recording menu to start or pause a recording.</source>
        <translation>Este escritorio no ofrece ninguna tecla global para grabar y pausar: en Wayland ninguna aplicación puede quitarles una tecla a las demás. Use el menú Grabación para iniciar o pausar una grabación.</translation>
    </message>
</context>
<context>
    <name>RecordPage</name>
    <message>
        <source>Camera</source>
        <translation>Cámara</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Micrófono</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Nivel del micrófono</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vista previa</translation>
    </message>
    <message>
        <source>No preview yet</source>
        <translation>Aún no hay vista previa</translation>
    </message>
    <message>
        <source>Screen preview</source>
        <translation>Vista previa de la pantalla</translation>
    </message>
    <message>
        <source>Camera preview</source>
        <translation>Vista previa de la cámara</translation>
    </message>
    <message>
        <source>The camera to record from</source>
        <translation>La cámara con la que grabar</translation>
    </message>
    <message>
        <source>The microphone to record from</source>
        <translation>El micrófono con el que grabar</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Nivel sonoro del micrófono elegido</translation>
    </message>
    <message>
        <source>A recent picture from the remote camera</source>
        <translation>Una imagen reciente de la cámara remota</translation>
    </message>
    <message>
        <source>A picture of the screen that is recorded</source>
        <translation>Una imagen de la pantalla que se graba</translation>
    </message>
    <message>
        <source>The live picture of the chosen camera</source>
        <translation>La imagen en directo de la cámara elegida</translation>
    </message>
    <message>
        <source>Whether a recording is running or paused</source>
        <translation>Indica si hay una grabación en curso o en pausa</translation>
    </message>
    <message>
        <source>The key that starts or pauses a recording from any application</source>
        <translation>La tecla que inicia o pausa una grabación desde cualquier aplicación</translation>
    </message>
    <message>
        <source>How long the recording has run</source>
        <translation>Cuánto tiempo lleva la grabación</translation>
    </message>
    <message>
        <source>Use the Recording menu to start or pause recording: this desktop offers no key that works in any application.</source>
        <translation>Use el menú Grabación para iniciar o pausar la grabación: este escritorio no ofrece ninguna tecla que funcione en cualquier aplicación.</translation>
    </message>
    <message>
        <source>Press %1 in any application to start or pause recording.</source>
        <translation>Pulse %1 en cualquier aplicación para iniciar o pausar la grabación.</translation>
    </message>
    <message>
        <source>How much longer this disk can record</source>
        <translation>Cuánto tiempo más se puede grabar en este disco</translation>
    </message>
    <message>
        <source>A warning about the recording</source>
        <translation>Un aviso sobre la grabación</translation>
    </message>
</context>
<context>
    <name>RecordingGuard</name>
    <message>
        <source>No sound from “%1” for 10 seconds</source>
        <translation>Sin sonido de «%1» desde hace 10 segundos</translation>
    </message>
    <message>
        <source>“%1” is too loud</source>
        <translation>«%1» está demasiado alto</translation>
    </message>
    <message>
        <source>The picture from “%1” has stopped</source>
        <translation>La imagen de «%1» se ha detenido</translation>
    </message>
    <message>
        <source>The screen recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>La grabación de la pantalla se detuvo inesperadamente; lo grabado se conserva.</translation>
    </message>
    <message>
        <source>The sound recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>La grabación de sonido se detuvo inesperadamente; lo grabado se conserva.</translation>
    </message>
</context>
<context>
    <name>RecordingWatch</name>
    <message>
        <source>Less than 10 minutes of recording left on this disk. Free some space, or the recording pauses when the disk is full.</source>
        <translation>Quedan menos de 10 minutos de grabación en este disco. Libere espacio o la grabación se pausará cuando el disco esté lleno.</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>hours, then minutes</comment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>About %1 of recording left on this disk</source>
        <translation>Quedan unos %1 de grabación en este disco</translation>
    </message>
    <message>
        <source>Lumex: check your recording</source>
        <translation>Lumex: revise su grabación</translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 minuto</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minuto</numerusform>
            <numerusform>%n minutos</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 hora</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n hora</numerusform>
            <numerusform>%n horas</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on; its picture stays black until the recording ends.</source>
        <translation>Se ha desconectado «%1». La grabación continúa; su imagen queda en negro hasta que termine la grabación.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on without its sound until the recording ends.</source>
        <translation>Se ha desconectado «%1». La grabación continúa sin su sonido hasta que termine.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with a black picture and the sound of “%2”.</source>
        <translation>Se ha desconectado «%1». La grabación continúa con la imagen en negro y el sonido de «%2».</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with the sound of “%2”.</source>
        <translation>Se ha desconectado «%1». La grabación continúa con el sonido de «%2».</translation>
    </message>
</context>
<context>
    <name>ReviewPlayer</name>
    <message>
        <source>Recording</source>
        <translation>Grabación</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Posición</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Tiempo</translation>
    </message>
    <message>
        <source>Mark In</source>
        <translation>Marcar inicio</translation>
    </message>
    <message>
        <source>Mark Out</source>
        <translation>Marcar final</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Borrar</translation>
    </message>
    <message>
        <source>Clear marks</source>
        <translation>Borrar las marcas</translation>
    </message>
    <message>
        <source>Kept length</source>
        <translation>Duración conservada</translation>
    </message>
    <message>
        <source>Marks cleared: the whole recording is published.</source>
        <translation>Marcas borradas: se publica la grabación completa.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>The recording as it will be published</source>
        <translation>La grabación tal como se publicará</translation>
    </message>
    <message>
        <source>Left and Right step 5 seconds; I and O set the marks</source>
        <translation>Izquierda y Derecha saltan 5 segundos; I y O ponen las marcas</translation>
    </message>
    <message>
        <source>Plays or pauses the recording (Space)</source>
        <translation>Reproduce o pausa la grabación (Espacio)</translation>
    </message>
    <message>
        <source>Publishes the recording from the playhead on (I)</source>
        <translation>Publica la grabación desde el cabezal de reproducción (I)</translation>
    </message>
    <message>
        <source>Publishes the recording up to the playhead (O)</source>
        <translation>Publica la grabación hasta el cabezal de reproducción (O)</translation>
    </message>
    <message>
        <source>Publishes the whole recording again</source>
        <translation>Vuelve a publicar la grabación completa</translation>
    </message>
    <message>
        <source>The recording is on the server.</source>
        <translation>La grabación está en el servidor.</translation>
    </message>
    <message>
        <source>In mark at %1.</source>
        <translation>Marca de inicio en %1.</translation>
    </message>
    <message>
        <source>Out mark at %1.</source>
        <translation>Marca de final en %1.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 de %2</translation>
    </message>
    <message>
        <source>–</source>
        <translation>–</translation>
    </message>
    <message>
        <source>Keeps %1 (%2–%3)</source>
        <translation>Conserva %1 (%2–%3)</translation>
    </message>
    <message>
        <source>Keeps all</source>
        <translation>Conserva todo</translation>
    </message>
</context>
<context>
    <name>ScreenCastPortal</name>
    <message>
        <source>Lumex cannot see the screen: this desktop offers no screen sharing service (the desktop portal is not running).</source>
        <translation>Lumex no puede ver la pantalla: este escritorio no ofrece ningún servicio para compartir la pantalla (el portal del escritorio no está en ejecución).</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen because sharing it was declined. Choose the screen again to be asked once more.</source>
        <translation>Lumex no puede ver la pantalla porque se rechazó compartirla. Vuelva a elegir la pantalla para que se le pregunte otra vez.</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen: the desktop&apos;s screen sharing failed (%1).</source>
        <translation>Lumex no puede ver la pantalla: falló la función de compartir pantalla del escritorio (%1).</translation>
    </message>
</context>
<context>
    <name>Sheets</name>
    <message>
        <source>Server communication error.</source>
        <translation>Error de comunicación con el servidor.</translation>
    </message>
    <message>
        <source>An error occurred while communicating with the Orvane server. Please contact your network administrator for further help.</source>
        <translation>Se produjo un error al comunicarse con el servidor Orvane. Póngase en contacto con su administrador de red para obtener ayuda.</translation>
    </message>
    <message>
        <source>Authentication Failed</source>
        <translation>Error de autenticación</translation>
    </message>
    <message>
        <source>The username or password you entered may not be correct. Please retype the username and password and try again.</source>
        <translation>Puede que el nombre de usuario o la contraseña no sean correctos. Vuelva a escribirlos e inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Cierra este mensaje</translation>
    </message>
    <message>
        <source>Your current recording will be deleted. This action cannot be undone.</source>
        <translation>Se eliminará la grabación actual. Esta acción no se puede deshacer.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Not enough disk space available</source>
        <translation>No hay suficiente espacio en disco</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to continue recording the podcast. Your recording has been paused.</source>
        <translation>No hay suficiente espacio en el volumen %@ para seguir grabando el podcast. La grabación se ha pausado.</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to record a podcast.</source>
        <translation>No hay suficiente espacio en el volumen %@ para grabar un podcast.</translation>
    </message>
</context>
<context>
    <name>SourceChooserPage</name>
    <message>
        <source>What would you like to record?</source>
        <translation>¿Qué quiere grabar?</translation>
    </message>
    <message>
        <source>Choose a source. Recordings go to the workflow you pick when you publish.</source>
        <translation>Elija una fuente. Las grabaciones van al flujo de trabajo que elija al publicar.</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Vídeo</translation>
    </message>
    <message>
        <source>Record from a camera in a lecture hall or from this computer&apos;s camera</source>
        <translation>Grabar con la cámara de un aula o con la de este equipo</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>Record sound only</source>
        <translation>Grabar solo sonido</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Pantalla</translation>
    </message>
    <message>
        <source>Record this computer&apos;s screen with narration</source>
        <translation>Grabar la pantalla de este equipo con narración</translation>
    </message>
    <message>
        <source>Movie Files</source>
        <translation>Archivos de vídeo</translation>
    </message>
    <message>
        <source>Publish movie files you already have</source>
        <translation>Publicar archivos de vídeo que ya tiene</translation>
    </message>
    <message>
        <source>The server and account you are signed in with</source>
        <translation>El servidor y la cuenta con los que ha iniciado sesión</translation>
    </message>
    <message>
        <source>Signed in as %1 on %2.</source>
        <translation>Sesión iniciada como %1 en %2.</translation>
    </message>
    <message>
        <source>Not connected to a server yet. Choose Lumex ▸ Sign In… to connect.</source>
        <translation>Aún no está conectado a ningún servidor. Elija Lumex ▸ Iniciar sesión… para conectarse.</translation>
    </message>
</context>
<context>
    <name>TransferCell</name>
    <message>
        <source>Retry</source>
        <comment>button: upload again</comment>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>Upload the files of this transfer again</source>
        <translation>Volver a subir los archivos de esta transferencia</translation>
    </message>
    <message>
        <source>Retry Upload</source>
        <translation>Reintentar la subida</translation>
    </message>
</context>
<context>
    <name>Transfers</name>
    <message>
        <source>Transfers</source>
        <translation>Transferencias</translation>
    </message>
    <message>
        <source>The uploads of your recordings and how far each has got</source>
        <translation>Las subidas de sus grabaciones y el progreso de cada una</translation>
    </message>
    <message>
        <source>No Transfers</source>
        <translation>No hay transferencias</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Limpiar</translation>
    </message>
    <message>
        <source>Removes the completed uploads from the list</source>
        <translation>Quita de la lista las subidas completadas</translation>
    </message>
    <message>
        <source>Remove the completed uploads from the list</source>
        <translation>Quitar de la lista las subidas completadas</translation>
    </message>
</context>
<context>
    <name>TransfersController</name>
    <message>
        <source>No Transfers</source>
        <translation>No hay transferencias</translation>
    </message>
    <message>
        <source>1 Transfer</source>
        <translation>1 transferencia</translation>
    </message>
    <message numerus="yes">
        <source>%n Transfers</source>
        <translation>
            <numerusform>%n transferencia</numerusform>
            <numerusform>%n transferencias</numerusform>
        </translation>
    </message>
    <message>
        <source>(no file)</source>
        <translation>(sin archivo)</translation>
    </message>
    <message>
        <source>This upload can no longer be retried.</source>
        <translation>Esta subida ya no se puede reintentar.</translation>
    </message>
    <message>
        <source>Its files were moved or deleted:
%@</source>
        <translation>Sus archivos se han movido o eliminado:
%@</translation>
    </message>
    <message>
        <source>Sign in to retry this upload.</source>
        <translation>Inicie sesión para reintentar esta subida.</translation>
    </message>
    <message>
        <source>The upload is sent again under the name you sign in with.</source>
        <translation>La subida se vuelve a enviar con el nombre con el que inicie sesión.</translation>
    </message>
</context>
<context>
    <name>TransfersModel</name>
    <message>
        <source>progress %1 %</source>
        <translation>progreso %1 %</translation>
    </message>
    <message>
        <source>Press Return to retry the upload.</source>
        <translation>Pulse Intro para reintentar la subida.</translation>
    </message>
    <message>
        <source>&apos;%@&apos; by %@</source>
        <translation>«%@», de %@</translation>
    </message>
    <message>
        <source>Pending</source>
        <translation>Pendiente</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Completada</translation>
    </message>
    <message>
        <source>%d%% done — %@ remaining</source>
        <translation>%d&#xa0;%% completado — tiempo restante: %@</translation>
    </message>
    <message>
        <source>%d%% done</source>
        <translation>%d&#xa0;%% completado</translation>
    </message>
    <message>
        <source>1 second</source>
        <translation>1 segundo</translation>
    </message>
    <message numerus="yes">
        <source>%n seconds</source>
        <translation>
            <numerusform>%n segundo</numerusform>
            <numerusform>%n segundos</numerusform>
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
            <numerusform>%n minutos</numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 hora</translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n hora</numerusform>
            <numerusform>%n horas</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VKPopUpButton</name>
    <message>
        <source>In use, cannot be chosen</source>
        <translation>En uso, no se puede elegir</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <comment>a device, then the device recorded with it</comment>
        <translation>%1 — %2</translation>
    </message>
</context>
</TS>
