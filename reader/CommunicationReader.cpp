#include "reader/CommunicationReader.h"

#include "device/TimerTask.h"
#include "elements/DocumentTables.h"
#include "reader/DescriptionReader.h"

#include <QXmlStreamAttributes>

namespace {

// An unsigned millisecond count; anything else (junk, negative) is 0, which
// leaves the task idle.
quint32 milliseconds(const QXmlStreamAttributes &a, const char *name)
{
    bool ok = false;
    const quint32 v = a.value(QLatin1String(name)).toString().trimmed().toUInt(&ok, 10);
    return ok ? v : 0;
}

void readCommunication(DescriptionReader &reader, Container *)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    TimerTask task;
    task.data = a.value(QLatin1String("data")).toString();
    task.recdata = a.value(QLatin1String("recdata")).toString();
    task.onChanged = a.value(QLatin1String("OnChanged")).toString().trimmed() == QLatin1String("1");
    task.intervalTicks = milliseconds(a, "interval");
    task.timeoutTicks = milliseconds(a, "timeout");
    reader.tables().timerTasks.append(task);
    reader.xml().skipCurrentElement();
}

} // namespace

void CommunicationReader::install(DescriptionReader &reader)
{
    reader.registerHandler(QStringLiteral("communication"), readCommunication);
}
