#include "elements/MessageSink.h"

#include <QDebug>

namespace {

class DebugSink : public MessageSink
{
public:
    void consolePrint(const QString &html) override { qDebug().noquote() << html; }
    void showError(const QString &text) override { qWarning().noquote() << text; }
};

DebugSink &debugSink()
{
    static DebugSink sink;
    return sink;
}

MessageSink *g_sink = nullptr;

} // namespace

MessageSink *MessageSink::current()
{
    return g_sink ? g_sink : &debugSink();
}

MessageSink *MessageSink::install(MessageSink *sink)
{
    MessageSink *former = g_sink;
    g_sink = sink;
    return former;
}

void consolePrint(const QString &html)
{
    MessageSink::current()->consolePrint(html);
}

void showError(const QString &text)
{
    MessageSink::current()->showError(text);
}
