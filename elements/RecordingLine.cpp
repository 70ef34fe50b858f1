#include "elements/RecordingLine.h"

namespace {
RecordingLine::Recorder &recorder()
{
    static RecordingLine::Recorder r;
    return r;
}
} // namespace

void RecordingLine::setRecorder(Recorder r)
{
    recorder() = std::move(r);
}

bool RecordingLine::active()
{
    return bool(recorder());
}

void RecordingLine::write(const QString &command)
{
    if (recorder())
        recorder()(command);
}
