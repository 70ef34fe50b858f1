#pragma once
#include <QString>

class DocumentTables;
class QObject;

// The refreshes of the displays that follow a define: each looks the
// changed define up in its dependents table and refreshes only those
// displays, which read the value themselves.
class DisplayRefresh
{
public:
    // LEDs watching the define take its value. Returns how many were fed.
    static int leds(DocumentTables *tables, const QString &define);
    // Embedded SVG pictures naming the define take its value and render again.
    static int svgImages(DocumentTables *tables, const QString &define);
    // Logs with a column for the define write a line.
    static int logs(DocumentTables *tables, const QString &define);

    // The define a signal came from: the sender's object name.
    static QString senderDefine(const QObject *sender);
};
