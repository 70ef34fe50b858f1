#pragma once
#include <functional>
#include <QString>

class ActiveElement;

// The one point where a user's change to an element reaches the recording
// of scripts. Elements call userChange() before they emit changedByUser();
// nothing happens until a recorder is installed.
class RecordingHook
{
public:
    // Called with the element and its value(0) text; the recorder decides
    // (by the widget's focus) whether the line is written.
    using Recorder = std::function<void(ActiveElement *element, const QString &value)>;

    static void setRecorder(Recorder recorder);
    static void userChange(ActiveElement *element);
};
