#pragma once
#include <QColor>
#include <QList>
#include <QMap>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include "views/PinCondition.h"

class HardwareModel;

// One pin of the package, placed on one side of the chip drawing.
struct Pin
{
    quint16 nr = 0;
    QString pinname;
    // 0 left, 1 bottom, 2 right, 3 top; anything else is kept (it still
    // counts in tables and exports) but is not drawn.
    quint16 quadrant = 0;
    // Position on its side, counted from the side's start.
    quint16 index = 0;
    QColor color = QColor(220, 220, 220);
    // The box last drawn for the pin, in chip coordinates (hit tests).
    QRectF rect;
    // Functions drawn on the pin at the last paint.
    quint16 mappedCount = 0;
};

// A function that can be routed to a pin.
struct MapEntry
{
    QString pinname;
    // The function drives the pin (arrow towards the chip).
    bool output = false;
    QString function;
    QString dispname;
    QString info;
    QString link;
    QColor color = QColor(128, 128, 128, 255);

    // The text a user sees for the function.
    QString shownName() const { return dispname.isEmpty() ? function : dispname; }
    // The defines the entry links to, each once ("A;B" names two).
    QStringList links() const;
};

// "The function is routed while cond holds."
struct MapCondEntry
{
    QString cond;
    QString function;
    // The condition compiled once: the mapper evaluates it on every refresh.
    PinCondition compiled;
};

// An extra picture on the scene (a board photo, a legend).
struct PinImage
{
    QString file;
    bool moveable = false;
    QPointF pos;
};

// The content of a pin mapping file: the package and which function goes
// to which pin under which condition. One per description.
class PinMappingDocument
{
public:
    // Limits that keep the drawing bounded whatever the file says.
    static constexpr quint32 kMinChipSize = 420;
    static constexpr quint32 kMaxChipSize = 20000;
    static constexpr quint32 kMaxBoxSize = 2000;

    void clear();

    bool isEmpty() const { return pins.isEmpty(); }
    // Index of a pin or of the entry of a function; -1 when unknown.
    int pinIndex(const QString &name) const { return pinsByName.value(name, -1); }
    int functionIndex(const QString &name) const { return functionsByName.value(name, -1); }
    // The map entries that sit on a pin, in file order.
    QList<int> entriesOfPin(const QString &pinName) const;
    // The conditions that route a function, in file order.
    QList<int> conditionsOfFunction(const QString &function) const;

    QString name;
    quint32 chipSize = 800;
    QColor chipColor = Qt::white;
    QColor backgroundColor = Qt::white;
    QPointF detailsButtonPos = QPointF(0, 300);
    QPointF exportButtonPos = QPointF(0, 330);
    bool tooltipsActive = true;
    quint32 pinSize = 0;
    quint32 arrowSize = 20;
    quint32 marginTopY = 0;
    quint32 marginBottomY = 0;
    quint32 marginLeftX = 0;
    quint32 marginRightX = 0;
    QList<PinImage> images;
    QList<Pin> pins;
    QList<MapEntry> entries;
    QList<MapCondEntry> conditions;
    QMap<QString, int> pinsByName;
    QMap<QString, int> functionsByName;

    // The file it came from; pictures are relative to the description.
    QString fileName;
    QString descriptionFolder;
    // The hardware model of the document, for the explanations of the
    // details table (may be null).
    HardwareModel *model = nullptr;
};
