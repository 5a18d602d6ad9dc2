#include "ChosenFilesRoute.h"

#include "OrvaneServerInterface.h"

ChosenFilesRoute::ChosenFilesRoute(RecordingRouteDelegate &delegate, Files files)
    : RecordingRoute(delegate)
    , m_files(files)
{ }

void ChosenFilesRoute::stopAndHandOver()
{
    ask(m_files == Files::InterruptedRecording ? &OrvaneServerInterface::submitAndDeleteJobFilesWithDelegate
                                               : &OrvaneServerInterface::submitJobFilesWithDelegate,
        &RecordingRouteDelegate::jobDidStop);
}
