#include "RecordingSink.h"

RecordingSink::RecordingSink()
{
    m_former = MessageSink::install(this);
}

RecordingSink::~RecordingSink()
{
    MessageSink::install(m_former);
}

bool RecordingSink::contains(const QString &text) const
{
    for (const QString &line : console)
        if (line.contains(text))
            return true;
    for (const QString &line : errors)
        if (line.contains(text))
            return true;
    return false;
}
