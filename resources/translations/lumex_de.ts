<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AudioLevelMeter</name>
    <message>
        <source>Microphone level</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CameraConfig</name>
    <message>
        <source>Camera Configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No camera is connected to this computer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Camera:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input level:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bind</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CameraConfigController</name>
    <message>
        <source>Server:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>User name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Password:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Camera name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unbind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lumex requires that you authenticate as a server administrator to %@.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Binding failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please confirm that the server is reachable and that the server administrator user name and password are correct.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unbinding failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please confirm that the server administrator user name and password are correct and that the server is reachable.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to start/stop the camera agent.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Received error status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click the lock to prevent further changes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click the lock to make changes.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CaptureDevicesController</name>
    <message>
        <source>Cannot find the audio and video devices</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LXController</name>
    <message>
        <source>The server&apos;s list of workflows could not be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Server communication error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An error occurred while communicating with the Orvane server. Please contact your network administrator for further help.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Authentication Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The username or password you entered may not be correct. Please retype the username and password and try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to delete the recording and Quit?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your current recording will be deleted. This action cannot be undone.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose Movie Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press %1 in any application to start or pause recording.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LXLoginPanelController</name>
    <message>
        <source>Connecting…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LXMainWindow</name>
    <message>
        <source>Lumex</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start Over</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Publish</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What would you like to record?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a source. Recordings go to the workflow you pick when you publish.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Video</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Audio</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Movie Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record from a camera in a lecture hall or from this computer&apos;s camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record sound only</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record this computer&apos;s screen with narration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Publish movie files you already have</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Describe your recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Give the recording a title and a description, then choose where it goes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title of the recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Description</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What is it about?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Workflow</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Lumex</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Sign In…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Quit Lumex</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record Podcast</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Transfers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Camera Configuration…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Signed in as %1 on %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not connected to a server yet. Choose Lumex ▸ Sign In… to connect.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No preview yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Camera preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recording state</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keyboard shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recording time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files to publish</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Submission status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files to publish:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LXRecordButton</name>
    <message>
        <source>Record or pause</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LoginPanel</name>
    <message>
        <source>Sign In to Lumex</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sign in to your media server</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lumex records to the workflows of your organisation&apos;s server. Enter the server&apos;s address and your account.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>media.example.edu</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>OrvaneServerInterface</name>
    <message>
        <source>%@ tool cannot be found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The camera agent configuration could not be read from %@: %@</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The camera agent configuration could not be saved to %@: %@</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder for recording data could not be created at %@: %@</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The recording data could not be saved to %@: %@</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not make destination folder for capture movie. mkdir returned status: %d.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not start %@. It terminates with status: %d.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Local capture agent failed to stop.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to pause signal with status: %d.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Local capture agent failed to respond to resume signal with status: %d.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>Preferences</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record/pause shortcut:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a key, or click the field and press the combination you want.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts or pauses a recording from any application.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TransferCell</name>
    <message>
        <source>&apos;%@&apos; by %@</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pending</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Completed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%d%% done — %@ remaining</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%d%% done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 second</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n seconds</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Transfers</name>
    <message>
        <source>Transfers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Transfers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove the completed uploads from the list</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TransfersController</name>
    <message>
        <source>No Transfers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Transfer</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n Transfers</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
</context>
</TS>
