#pragma once
#include <QString>

// Where the program's messages go. The console of the main window installs
// itself as the sink; without a window (unit tests, tools) a plain sink that
// writes to the debug channel stands in. Reports never throw: the caller
// hands over the finished text and goes on.
class MessageSink
{
public:
    virtual ~MessageSink() = default;

    // Appends rich text to the console.
    virtual void consolePrint(const QString &html) = 0;

    // The one error presenter: message box, console echo and mirror file,
    // as the run mode wants.
    virtual void showError(const QString &text) = 0;

    // The current sink; never null.
    static MessageSink *current();

    // Installs a sink (null restores the default). Returns the former one.
    static MessageSink *install(MessageSink *sink);
};

// Shorthands used throughout the program.
void consolePrint(const QString &html);
void showError(const QString &text);
