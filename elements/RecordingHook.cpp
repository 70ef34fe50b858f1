#include "elements/RecordingHook.h"

#include "elements/ActiveElement.h"

namespace {
RecordingHook::Recorder &recorder()
{
    static RecordingHook::Recorder r;
    return r;
}
} // namespace

void RecordingHook::setRecorder(Recorder r)
{
    recorder() = std::move(r);
}

void RecordingHook::userChange(ActiveElement *element)
{
    if (recorder())
        recorder()(element, element->value(0));
}
