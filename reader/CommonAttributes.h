#pragma once
#include <QSizePolicy>
#include <QString>

class DescriptionReader;
class QWidget;
class QXmlStreamAttributes;

// The attributes every element may carry (position, size, colour, font,
// visibility...), read after the element's own ones, in a fixed order. Each
// attribute's text is also kept as a property for the form editor.
class CommonAttributes
{
public:
    static void apply(DescriptionReader &reader, QWidget *widget, const QXmlStreamAttributes &attributes);

    // "r;g;b" or "r;g;b;a" -> the colour; false for anything else.
    static bool parseColor(const QString &text, int rgba[4], int *count);
    // Applies a background colour in the manner of the widget's class.
    static void setBackgroundColor(QWidget *widget, const QString &text);
    // Size policy names: fixed, minimum, maximum, preferred, expanding,
    // minimumexpanding, ignored.
    static bool sizePolicyByName(const QString &name, QSizePolicy::Policy *policy);
    // "a;b" as two integers.
    static bool parsePair(const QString &text, int *first, int *second);
};
