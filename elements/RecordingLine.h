#pragma once
#include <QString>
#include <functional>

// Elements whose recording is a command of its own (a table's cell or line,
// a register view's word) hand the finished command text here, e.g.
// "SetTableValue(T, 1, 3, 0x10)". The recorder adds the recording comment,
// the line end and the console echo. Nothing happens until a recorder is
// installed (RecordingHook carries the plain value changes).
class RecordingLine
{
public:
    using Recorder = std::function<void(const QString &command)>;
    static void setRecorder(Recorder recorder);
    static bool active();
    static void write(const QString &command);
};
