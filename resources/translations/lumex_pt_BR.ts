<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR">
<context>
    <name>AudioLevelMeter</name>
    <message>
        <source>Microphone level</source>
        <translation>Nível do microfone</translation>
    </message>
</context>
<context>
    <name>CameraConfig</name>
    <message>
        <source>Camera Configuration</source>
        <translation>Configuração da câmera</translation>
    </message>
    <message>
        <source>No camera is connected to this computer.</source>
        <translation>Nenhuma câmera está conectada a este computador.</translation>
    </message>
    <message>
        <source>Camera:</source>
        <translation>Câmera:</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Câmera</translation>
    </message>
    <message>
        <source>The camera this computer records with for the server</source>
        <translation>A câmera com a qual este computador grava para o servidor</translation>
    </message>
    <message>
        <source>Microphone:</source>
        <translation>Microfone:</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Microfone</translation>
    </message>
    <message>
        <source>The microphone this computer records with for the server</source>
        <translation>O microfone com o qual este computador grava para o servidor</translation>
    </message>
    <message>
        <source>Input level:</source>
        <translation>Nível de entrada:</translation>
    </message>
    <message>
        <source>Input level</source>
        <translation>Nível de entrada</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Nível sonoro do microfone escolhido</translation>
    </message>
    <message>
        <source>Unlocks the settings with administrator rights, or locks them again</source>
        <translation>Desbloqueia as configurações com privilégios de administrador, ou as bloqueia novamente</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Clique no cadeado para fazer alterações.</translation>
    </message>
    <message>
        <source>Binds this computer as a camera to a server, or unbinds it</source>
        <translation>Vincula este computador a um servidor como câmera, ou o desvincula</translation>
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
        <translation>O endereço do servidor ao qual esta câmera está vinculada</translation>
    </message>
    <message>
        <source>User name:</source>
        <translation>Nome de usuário:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nome de usuário</translation>
    </message>
    <message>
        <source>The account of the server&apos;s administrator</source>
        <translation>A conta do administrador do servidor</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Senha:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Senha</translation>
    </message>
    <message>
        <source>The password of the administrator&apos;s account</source>
        <translation>A senha da conta de administrador</translation>
    </message>
    <message>
        <source>Camera name:</source>
        <translation>Nome da câmera:</translation>
    </message>
    <message>
        <source>Camera name</source>
        <translation>Nome da câmera</translation>
    </message>
    <message>
        <source>The name this camera has on the server</source>
        <translation>O nome desta câmera no servidor</translation>
    </message>
    <message>
        <source>Binds or unbinds this camera with the administrator&apos;s account</source>
        <translation>Vincula ou desvincula esta câmera com a conta de administrador</translation>
    </message>
    <message>
        <source>Closes this sheet and changes nothing</source>
        <translation>Fecha esta janela sem alterar nada</translation>
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
        <translation>O Lumex precisa que você se autentique como administrador do servidor %@.</translation>
    </message>
    <message>
        <source>Binding failed</source>
        <translation>Falha ao vincular</translation>
    </message>
    <message>
        <source>Please confirm that the server is reachable and that the server administrator user name and password are correct.</source>
        <translation>Verifique se o servidor está acessível e se o nome de usuário e a senha do administrador do servidor estão corretos.</translation>
    </message>
    <message>
        <source>Unbinding failed</source>
        <translation>Falha ao desvincular</translation>
    </message>
    <message>
        <source>Please confirm that the server administrator user name and password are correct and that the server is reachable.</source>
        <translation>Verifique se o nome de usuário e a senha do administrador do servidor estão corretos e se o servidor está acessível.</translation>
    </message>
    <message>
        <source>Unable to start/stop the camera agent.</source>
        <translation>Não foi possível iniciar ou parar o agente da câmera.</translation>
    </message>
    <message>
        <source>Received error status</source>
        <translation>Código de erro recebido:</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Fecha esta mensagem</translation>
    </message>
    <message>
        <source>Click the lock to prevent further changes.</source>
        <translation>Clique no cadeado para impedir novas alterações.</translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation>Clique no cadeado para fazer alterações.</translation>
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
        <translation>Não foi possível encontrar os dispositivos de áudio e vídeo</translation>
    </message>
</context>
<context>
    <name>CountdownView</name>
    <message>
        <source>Counts down the seconds before the recording starts</source>
        <translation>Conta os segundos que faltam para a gravação começar</translation>
    </message>
    <message>
        <source>Recording starts in 1 second</source>
        <translation>A gravação começa em 1 segundo</translation>
    </message>
    <message numerus="yes">
        <source>Recording starts in %n seconds</source>
        <translation>
            <numerusform>A gravação começa em %n segundo</numerusform>
            <numerusform>A gravação começa em %n segundos</numerusform>
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
        <translation>“%@” foi enviado.</translation>
    </message>
    <message>
        <source>Podcast Not Published</source>
        <translation>Podcast não publicado</translation>
    </message>
    <message>
        <source>&quot;%@&quot; could not be uploaded. You can retry it in the Transfers window.</source>
        <translation>Não foi possível enviar “%@”. Você pode tentar novamente na janela Transferências.</translation>
    </message>
</context>
<context>
    <name>DeviceChooser</name>
    <message>
        <source>No Camera</source>
        <translation>Nenhuma câmera</translation>
    </message>
</context>
<context>
    <name>DonePage</name>
    <message>
        <source>New Recording</source>
        <translation>Nova gravação</translation>
    </message>
    <message>
        <source>Whether the recording was handed to the server</source>
        <translation>Indica se a gravação foi entregue ao servidor</translation>
    </message>
    <message>
        <source>Starts a new recording</source>
        <translation>Inicia uma nova gravação</translation>
    </message>
</context>
<context>
    <name>GLScreenGrabController</name>
    <message>
        <source>Lumex cannot show the screen: no picture came from the desktop&apos;s screen sharing (%1).</source>
        <translation>O Lumex não consegue mostrar a tela: o compartilhamento de tela do ambiente de trabalho não enviou nenhuma imagem (%1).</translation>
    </message>
</context>
<context>
    <name>InterruptedRecordings</name>
    <message>
        <source>Publish the recording interrupted on %@?</source>
        <translation>Publicar a gravação interrompida em %@?</translation>
    </message>
    <message>
        <source>Lumex or the computer stopped while this recording was made. If you do not publish it now, it stays in %@.</source>
        <translation>O Lumex ou o computador parou durante esta gravação. Se você não publicá-la agora, ela ficará em %@.</translation>
    </message>
    <message>
        <source>Publish…</source>
        <translation>Publicar…</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Agora não</translation>
    </message>
    <message>
        <source>“%1” is still recording. Continue, publish or discard it?</source>
        <translation>“%1” ainda está gravando. Continuar, publicar ou descartar a gravação?</translation>
    </message>
    <message>
        <source>Lumex ended while this camera was recording for you; it has gone on since.</source>
        <translation>O Lumex foi encerrado enquanto esta câmera gravava para você; ela continuou gravando desde então.</translation>
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
        <translation>Uso: lumex [ARQUIVO…]
Grava de uma câmera do servidor, da câmera e do microfone deste computador ou da tela,
e publica em um servidor de mídia. Os arquivos de vídeo indicados são oferecidos para
envio; se o Lumex já estiver em execução, eles são repassados a ele.

  --version  mostra a versão e sai
  --help     mostra este texto e sai
</translation>
    </message>
</context>
<context>
    <name>LXController</name>
    <message>
        <source>The server&apos;s list of workflows could not be read.</source>
        <translation>Não foi possível ler a lista de fluxos de trabalho do servidor.</translation>
    </message>
    <message>
        <source>Do you want to delete the recording and Quit?</source>
        <translation>Deseja excluir a gravação e sair?</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Sair</translation>
    </message>
    <message>
        <source>Keeps Lumex running with the recording</source>
        <translation>Mantém o Lumex aberto com a gravação</translation>
    </message>
    <message>
        <source>Deletes the recording and quits Lumex</source>
        <translation>Exclui a gravação e fecha o Lumex</translation>
    </message>
    <message>
        <source>Recording Paused</source>
        <translation>Gravação pausada</translation>
    </message>
    <message>
        <source>Your podcast is being submitted.</source>
        <translation>Seu podcast está sendo enviado.</translation>
    </message>
    <message>
        <source>Your podcast has been successfully submitted.</source>
        <translation>Seu podcast foi enviado com sucesso.</translation>
    </message>
    <message>
        <source>There was an error submitting your podcast.</source>
        <translation>Ocorreu um erro ao enviar seu podcast.</translation>
    </message>
    <message>
        <source>Delete recording and Start Over?</source>
        <translation>Excluir a gravação e recomeçar?</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Recomeçar</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Pausar gravação</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Retomar gravação</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Gravar podcast</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Tela</translation>
    </message>
    <message>
        <source>The recording could not be trimmed, so it is published whole.</source>
        <translation>Não foi possível cortar a gravação, por isso ela será publicada inteira.</translation>
    </message>
    <message>
        <source>The screen is recorded without the camera. %1</source>
        <translation>A tela é gravada sem a câmera. %1</translation>
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
        <translation>Volta, ou descarta a gravação e recomeça</translation>
    </message>
    <message>
        <source>Goes on to describe and publish the recording</source>
        <translation>Segue para descrever e publicar a gravação</translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation>Recomeçar</translation>
    </message>
    <message>
        <source>Publish</source>
        <translation>Publicar</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Gravar</translation>
    </message>
    <message>
        <source>&amp;Lumex</source>
        <translation>&amp;Lumex</translation>
    </message>
    <message>
        <source>&amp;Sign In…</source>
        <translation>&amp;Entrar…</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Preferências…</translation>
    </message>
    <message>
        <source>&amp;Quit Lumex</source>
        <translation>&amp;Sair do Lumex</translation>
    </message>
    <message>
        <source>&amp;Recording</source>
        <translation>&amp;Gravação</translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation>Gravar podcast</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Janela</translation>
    </message>
    <message>
        <source>&amp;Transfers</source>
        <translation>&amp;Transferências</translation>
    </message>
    <message>
        <source>&amp;Camera Configuration…</source>
        <translation>Configuração da &amp;câmera…</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Voltar</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Concluído</translation>
    </message>
    <message>
        <source>Choose Movie Files</source>
        <translation>Escolher arquivos de vídeo</translation>
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
        <translation>Gravar</translation>
    </message>
    <message>
        <source>Recording. Press to pause the recording.</source>
        <translation>Gravando. Pressione para pausar a gravação.</translation>
    </message>
    <message>
        <source>Not recording. Press to start or resume the recording.</source>
        <translation>Sem gravação. Pressione para iniciar ou retomar a gravação.</translation>
    </message>
</context>
<context>
    <name>LoginPanel</name>
    <message>
        <source>Sign In to Lumex</source>
        <translation>Entrar no Lumex</translation>
    </message>
    <message>
        <source>Sign in to your media server</source>
        <translation>Entre no seu servidor de mídia</translation>
    </message>
    <message>
        <source>Lumex records to the workflows of your organisation&apos;s server. Enter the server&apos;s address and your account.</source>
        <translation>O Lumex grava para os fluxos de trabalho do servidor da sua organização. Informe o endereço do servidor e a sua conta.</translation>
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
        <translation>O endereço do servidor de mídia da sua organização</translation>
    </message>
    <message>
        <source>media.example.edu</source>
        <translation>media.example.edu</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Nome de usuário:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nome de usuário</translation>
    </message>
    <message>
        <source>Your account on the media server</source>
        <translation>Sua conta no servidor de mídia</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>S&amp;enha:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Senha</translation>
    </message>
    <message>
        <source>The password of your account</source>
        <translation>A senha da sua conta</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Closes this window without signing in</source>
        <translation>Fecha esta janela sem entrar</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Conectar</translation>
    </message>
    <message>
        <source>Signs in to the server with this account</source>
        <translation>Entra no servidor com esta conta</translation>
    </message>
</context>
<context>
    <name>MetadataPage</name>
    <message>
        <source>Describe your recording</source>
        <translation>Descreva sua gravação</translation>
    </message>
    <message>
        <source>Give the recording a title and a description, then choose where it goes.</source>
        <translation>Dê um título e uma descrição à gravação e depois escolha o destino dela.</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ajuda</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Título</translation>
    </message>
    <message>
        <source>Title of the recording</source>
        <translation>Título da gravação</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Descrição</translation>
    </message>
    <message>
        <source>What is it about?</source>
        <translation>Sobre o que é?</translation>
    </message>
    <message>
        <source>Workflow</source>
        <translation>Fluxo de trabalho</translation>
    </message>
    <message>
        <source>What to fill in before publishing</source>
        <translation>O que preencher antes de publicar</translation>
    </message>
    <message>
        <source>The movie files that are published</source>
        <translation>Os arquivos de vídeo que são publicados</translation>
    </message>
    <message>
        <source>The title the recording is published with</source>
        <translation>O título com que a gravação é publicada</translation>
    </message>
    <message>
        <source>A description published with the recording</source>
        <translation>Uma descrição publicada com a gravação</translation>
    </message>
    <message>
        <source>The server workflow that processes the recording</source>
        <translation>O fluxo de trabalho do servidor que processa a gravação</translation>
    </message>
    <message>
        <source>Files to publish:</source>
        <translation>Arquivos a publicar:</translation>
    </message>
</context>
<context>
    <name>MoviePlayer</name>
    <message>
        <source>This computer cannot play movies: a GStreamer plug-in is missing.</source>
        <translation>Este computador não consegue reproduzir vídeos: falta um plugin do GStreamer.</translation>
    </message>
    <message>
        <source>The recording cannot be played.</source>
        <translation>Não é possível reproduzir a gravação.</translation>
    </message>
</context>
<context>
    <name>OrvaneServerInterface</name>
    <message>
        <source>%@ tool cannot be found.</source>
        <translation>A ferramenta %@ não foi encontrada.</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be read from %@: %@</source>
        <translation>Não foi possível ler a configuração do agente da câmera de %@: %@</translation>
    </message>
    <message>
        <source>The camera agent configuration could not be saved to %@: %@</source>
        <translation>Não foi possível salvar a configuração do agente da câmera em %@: %@</translation>
    </message>
    <message>
        <source>The folder for recording data could not be created at %@: %@</source>
        <translation>Não foi possível criar a pasta de dados da gravação em %@: %@</translation>
    </message>
    <message>
        <source>The recording data could not be saved to %@: %@</source>
        <translation>Não foi possível salvar os dados da gravação em %@: %@</translation>
    </message>
    <message>
        <source>Could not make destination folder for capture movie. mkdir returned status: %d.</source>
        <translation>Não foi possível criar a pasta de destino do vídeo capturado. O mkdir retornou o status: %d.</translation>
    </message>
    <message>
        <source>Could not start %@. It terminates with status: %d.</source>
        <translation>Não foi possível iniciar %@. Ele termina com o status: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to stop.</source>
        <translation>O agente de captura local não conseguiu parar.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to pause signal with status: %d.</source>
        <translation>O agente de captura local não respondeu ao sinal de pausa, status: %d.</translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to resume signal with status: %d.</source>
        <translation>O agente de captura local não respondeu ao sinal de retomada, status: %d.</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation>Preferências</translation>
    </message>
    <message>
        <source>Record/pause shortcut:</source>
        <translation>Atalho de gravar/pausar:</translation>
    </message>
    <message>
        <source>Record/pause shortcut</source>
        <translation>Atalho de gravar/pausar</translation>
    </message>
    <message>
        <source>The key combination that starts or pauses a recording from any application</source>
        <translation>A combinação de teclas que inicia ou pausa uma gravação a partir de qualquer aplicativo</translation>
    </message>
    <message>
        <source>Choose a key, or click the field and press the combination you want.</source>
        <translation>Escolha uma tecla, ou clique no campo e pressione a combinação desejada.</translation>
    </message>
    <message>
        <source>Starts or pauses a recording from any application.</source>
        <translation>Inicia ou pausa uma gravação a partir de qualquer aplicativo.</translation>
    </message>
</context>
<context>
    <name>PreferencesController</name>
    <message>
        <source>Press the key combination you want while this field has focus</source>
        <translation>Pressione a combinação de teclas desejada enquanto este campo estiver em foco</translation>
    </message>
    <message>
        <source>This desktop offers no global record/pause key: on Wayland no application may take a key from the others. Use the Recording menu to start or pause a recording.</source>
        <translation>Este ambiente de trabalho não oferece uma tecla global para gravar e pausar: no Wayland, nenhum aplicativo pode tomar uma tecla dos outros. Use o menu Gravação para iniciar ou pausar uma gravação.</translation>
    </message>
</context>
<context>
    <name>RecordPage</name>
    <message>
        <source>Camera</source>
        <translation>Câmera</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Microfone</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Nível do microfone</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Pré-visualização</translation>
    </message>
    <message>
        <source>No preview yet</source>
        <translation>Ainda sem pré-visualização</translation>
    </message>
    <message>
        <source>Screen preview</source>
        <translation>Pré-visualização da tela</translation>
    </message>
    <message>
        <source>Camera preview</source>
        <translation>Pré-visualização da câmera</translation>
    </message>
    <message>
        <source>The camera to record from</source>
        <translation>A câmera com a qual gravar</translation>
    </message>
    <message>
        <source>The microphone to record from</source>
        <translation>O microfone com o qual gravar</translation>
    </message>
    <message>
        <source>How loud the chosen microphone is</source>
        <translation>Nível sonoro do microfone escolhido</translation>
    </message>
    <message>
        <source>A recent picture from the remote camera</source>
        <translation>Uma imagem recente da câmera remota</translation>
    </message>
    <message>
        <source>A picture of the screen that is recorded</source>
        <translation>Uma imagem da tela que é gravada</translation>
    </message>
    <message>
        <source>The live picture of the chosen camera</source>
        <translation>A imagem ao vivo da câmera escolhida</translation>
    </message>
    <message>
        <source>Whether a recording is running or paused</source>
        <translation>Indica se uma gravação está em andamento ou pausada</translation>
    </message>
    <message>
        <source>The key that starts or pauses a recording from any application</source>
        <translation>A tecla que inicia ou pausa uma gravação a partir de qualquer aplicativo</translation>
    </message>
    <message>
        <source>How long the recording has run</source>
        <translation>Há quanto tempo a gravação está em andamento</translation>
    </message>
    <message>
        <source>Use the Recording menu to start or pause recording: this desktop offers no key that works in any application.</source>
        <translation>Use o menu Gravação para iniciar ou pausar a gravação: este ambiente de trabalho não oferece nenhuma tecla que funcione em qualquer aplicativo.</translation>
    </message>
    <message>
        <source>Press %1 in any application to start or pause recording.</source>
        <translation>Pressione %1 em qualquer aplicativo para iniciar ou pausar a gravação.</translation>
    </message>
    <message>
        <source>How much longer this disk can record</source>
        <translation>Quanto tempo ainda é possível gravar neste disco</translation>
    </message>
    <message>
        <source>A warning about the recording</source>
        <translation>Um aviso sobre a gravação</translation>
    </message>
</context>
<context>
    <name>RecordingGuard</name>
    <message>
        <source>No sound from “%1” for 10 seconds</source>
        <translation>Sem som de “%1” há 10 segundos</translation>
    </message>
    <message>
        <source>“%1” is too loud</source>
        <translation>“%1” está alto demais</translation>
    </message>
    <message>
        <source>The picture from “%1” has stopped</source>
        <translation>A imagem de “%1” parou</translation>
    </message>
    <message>
        <source>The screen recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>A gravação da tela parou inesperadamente; o que foi gravado foi mantido.</translation>
    </message>
    <message>
        <source>The sound recording stopped unexpectedly; what was recorded is kept.</source>
        <translation>A gravação de som parou inesperadamente; o que foi gravado foi mantido.</translation>
    </message>
</context>
<context>
    <name>RecordingWatch</name>
    <message>
        <source>Less than 10 minutes of recording left on this disk. Free some space, or the recording pauses when the disk is full.</source>
        <translation>Restam menos de 10 minutos de gravação neste disco. Libere espaço, ou a gravação será pausada quando o disco ficar cheio.</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>hours, then minutes</comment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>About %1 of recording left on this disk</source>
        <translation>Restam cerca de %1 de gravação neste disco</translation>
    </message>
    <message>
        <source>Lumex: check your recording</source>
        <translation>Lumex: verifique sua gravação</translation>
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
        <translation>“%1” foi desconectado. A gravação continua; a imagem fica preta até o fim da gravação.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on without its sound until the recording ends.</source>
        <translation>“%1” foi desconectado. A gravação continua sem o som desse dispositivo até o fim.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with a black picture and the sound of “%2”.</source>
        <translation>“%1” foi desconectado. A gravação continua com a imagem preta e o som de “%2”.</translation>
    </message>
    <message>
        <source>“%1” was disconnected. The recording goes on with the sound of “%2”.</source>
        <translation>“%1” foi desconectado. A gravação continua com o som de “%2”.</translation>
    </message>
</context>
<context>
    <name>ReviewPlayer</name>
    <message>
        <source>Recording</source>
        <translation>Gravação</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Posição</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproduzir</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>Mark In</source>
        <translation>Marcar início</translation>
    </message>
    <message>
        <source>Mark Out</source>
        <translation>Marcar fim</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Limpar</translation>
    </message>
    <message>
        <source>Clear marks</source>
        <translation>Limpar as marcas</translation>
    </message>
    <message>
        <source>Kept length</source>
        <translation>Duração mantida</translation>
    </message>
    <message>
        <source>Marks cleared: the whole recording is published.</source>
        <translation>Marcas removidas: a gravação inteira será publicada.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>The recording as it will be published</source>
        <translation>A gravação como será publicada</translation>
    </message>
    <message>
        <source>Left and Right step 5 seconds; I and O set the marks</source>
        <translation>Esquerda e Direita avançam 5 segundos; I e O definem as marcas</translation>
    </message>
    <message>
        <source>Plays or pauses the recording (Space)</source>
        <translation>Reproduz ou pausa a gravação (Espaço)</translation>
    </message>
    <message>
        <source>Publishes the recording from the playhead on (I)</source>
        <translation>Publica a gravação a partir do cursor de reprodução (I)</translation>
    </message>
    <message>
        <source>Publishes the recording up to the playhead (O)</source>
        <translation>Publica a gravação até o cursor de reprodução (O)</translation>
    </message>
    <message>
        <source>Publishes the whole recording again</source>
        <translation>Volta a publicar a gravação inteira</translation>
    </message>
    <message>
        <source>The recording is on the server.</source>
        <translation>A gravação está no servidor.</translation>
    </message>
    <message>
        <source>In mark at %1.</source>
        <translation>Marca de início em %1.</translation>
    </message>
    <message>
        <source>Out mark at %1.</source>
        <translation>Marca de fim em %1.</translation>
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
        <translation>Mantém %1 (%2–%3)</translation>
    </message>
    <message>
        <source>Keeps all</source>
        <translation>Mantém tudo</translation>
    </message>
</context>
<context>
    <name>ScreenCastPortal</name>
    <message>
        <source>Lumex cannot see the screen: this desktop offers no screen sharing service (the desktop portal is not running).</source>
        <translation>O Lumex não consegue ver a tela: este ambiente de trabalho não oferece um serviço de compartilhamento de tela (o portal do ambiente de trabalho não está em execução).</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen because sharing it was declined. Choose the screen again to be asked once more.</source>
        <translation>O Lumex não consegue ver a tela porque o compartilhamento foi recusado. Escolha a tela de novo para que a pergunta seja feita outra vez.</translation>
    </message>
    <message>
        <source>Lumex cannot see the screen: the desktop&apos;s screen sharing failed (%1).</source>
        <translation>O Lumex não consegue ver a tela: o compartilhamento de tela do ambiente de trabalho falhou (%1).</translation>
    </message>
</context>
<context>
    <name>Sheets</name>
    <message>
        <source>Server communication error.</source>
        <translation>Erro de comunicação com o servidor.</translation>
    </message>
    <message>
        <source>An error occurred while communicating with the Orvane server. Please contact your network administrator for further help.</source>
        <translation>Ocorreu um erro na comunicação com o servidor Orvane. Entre em contato com o administrador da rede para obter ajuda.</translation>
    </message>
    <message>
        <source>Authentication Failed</source>
        <translation>Falha na autenticação</translation>
    </message>
    <message>
        <source>The username or password you entered may not be correct. Please retype the username and password and try again.</source>
        <translation>O nome de usuário ou a senha informados podem estar incorretos. Digite-os novamente e tente de novo.</translation>
    </message>
    <message>
        <source>Closes this message</source>
        <translation>Fecha esta mensagem</translation>
    </message>
    <message>
        <source>Your current recording will be deleted. This action cannot be undone.</source>
        <translation>A gravação atual será excluída. Esta ação não pode ser desfeita.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Not enough disk space available</source>
        <translation>Espaço em disco insuficiente</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to continue recording the podcast. Your recording has been paused.</source>
        <translation>Não há espaço suficiente no volume %@ para continuar gravando o podcast. A gravação foi pausada.</translation>
    </message>
    <message>
        <source>There is not enough disk space available on the volume %@ to record a podcast.</source>
        <translation>Não há espaço suficiente no volume %@ para gravar um podcast.</translation>
    </message>
</context>
<context>
    <name>SourceChooserPage</name>
    <message>
        <source>What would you like to record?</source>
        <translation>O que você deseja gravar?</translation>
    </message>
    <message>
        <source>Choose a source. Recordings go to the workflow you pick when you publish.</source>
        <translation>Escolha uma fonte. As gravações vão para o fluxo de trabalho que você escolher ao publicar.</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Vídeo</translation>
    </message>
    <message>
        <source>Record from a camera in a lecture hall or from this computer&apos;s camera</source>
        <translation>Gravar com uma câmera em sala de aula ou com a câmera deste computador</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Áudio</translation>
    </message>
    <message>
        <source>Record sound only</source>
        <translation>Gravar apenas o som</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Tela</translation>
    </message>
    <message>
        <source>Record this computer&apos;s screen with narration</source>
        <translation>Gravar a tela deste computador com narração</translation>
    </message>
    <message>
        <source>Movie Files</source>
        <translation>Arquivos de vídeo</translation>
    </message>
    <message>
        <source>Publish movie files you already have</source>
        <translation>Publicar arquivos de vídeo que você já tem</translation>
    </message>
    <message>
        <source>The server and account you are signed in with</source>
        <translation>O servidor e a conta com que você entrou</translation>
    </message>
    <message>
        <source>Signed in as %1 on %2.</source>
        <translation>Conectado como %1 em %2.</translation>
    </message>
    <message>
        <source>Not connected to a server yet. Choose Lumex ▸ Sign In… to connect.</source>
        <translation>Ainda não conectado a um servidor. Escolha Lumex ▸ Entrar… para se conectar.</translation>
    </message>
</context>
<context>
    <name>TransferCell</name>
    <message>
        <source>Retry</source>
        <comment>button: upload again</comment>
        <translation>Tentar de novo</translation>
    </message>
    <message>
        <source>Upload the files of this transfer again</source>
        <translation>Enviar de novo os arquivos desta transferência</translation>
    </message>
    <message>
        <source>Retry Upload</source>
        <translation>Tentar enviar de novo</translation>
    </message>
</context>
<context>
    <name>Transfers</name>
    <message>
        <source>Transfers</source>
        <translation>Transferências</translation>
    </message>
    <message>
        <source>The uploads of your recordings and how far each has got</source>
        <translation>Os envios das suas gravações e o andamento de cada um</translation>
    </message>
    <message>
        <source>No Transfers</source>
        <translation>Nenhuma transferência</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Limpar</translation>
    </message>
    <message>
        <source>Removes the completed uploads from the list</source>
        <translation>Remove da lista os envios concluídos</translation>
    </message>
    <message>
        <source>Remove the completed uploads from the list</source>
        <translation>Remover da lista os envios concluídos</translation>
    </message>
</context>
<context>
    <name>TransfersController</name>
    <message>
        <source>No Transfers</source>
        <translation>Nenhuma transferência</translation>
    </message>
    <message>
        <source>1 Transfer</source>
        <translation>1 transferência</translation>
    </message>
    <message numerus="yes">
        <source>%n Transfers</source>
        <translation>
            <numerusform>%n transferência</numerusform>
            <numerusform>%n transferências</numerusform>
        </translation>
    </message>
    <message>
        <source>(no file)</source>
        <translation>(nenhum arquivo)</translation>
    </message>
    <message>
        <source>This upload can no longer be retried.</source>
        <translation>Não é mais possível tentar este envio de novo.</translation>
    </message>
    <message>
        <source>Its files were moved or deleted:
%@</source>
        <translation>Os arquivos dele foram movidos ou excluídos:
%@</translation>
    </message>
    <message>
        <source>Sign in to retry this upload.</source>
        <translation>Entre para tentar este envio de novo.</translation>
    </message>
    <message>
        <source>The upload is sent again under the name you sign in with.</source>
        <translation>O envio é refeito com o nome com que você entrar.</translation>
    </message>
</context>
<context>
    <name>TransfersModel</name>
    <message>
        <source>progress %1 %</source>
        <translation>progresso %1 %</translation>
    </message>
    <message>
        <source>Press Return to retry the upload.</source>
        <translation>Pressione Enter para tentar o envio de novo.</translation>
    </message>
    <message>
        <source>&apos;%@&apos; by %@</source>
        <translation>“%@”, por %@</translation>
    </message>
    <message>
        <source>Pending</source>
        <translation>Pendente</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erro</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Concluída</translation>
    </message>
    <message>
        <source>%d%% done — %@ remaining</source>
        <translation>%d%% concluído — tempo restante: %@</translation>
    </message>
    <message>
        <source>%d%% done</source>
        <translation>%d%% concluído</translation>
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
        <translation>Em uso, não pode ser escolhido</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <comment>a device, then the device recorded with it</comment>
        <translation>%1 — %2</translation>
    </message>
</context>
</TS>
