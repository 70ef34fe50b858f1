#pragma once
#include <QSizePolicy>
#include <QString>
#include <QStringList>

class QObject;
class QWidget;

// The attribute rows of one form object, as "key!value" texts in the order
// the editor shows them. Built fresh for every selection, so the rows always
// show the widget as it stands, including what earlier edits changed.
class AttributeRows
{
public:
    static QStringList build(QObject *target);

    // A row split at its first "!": the key and the value (which may hold
    // further "!").
    static QString keyOf(const QString &row);
    static QString valueOf(const QString &row);

    // The size policy words, both ways; false for a word or value outside
    // the seven.
    static QString policyWord(QSizePolicy::Policy policy);
    static bool policyOfWord(const QString &word, QSizePolicy::Policy *policy);
    // The words in the order the editor's list offers them.
    static QStringList policyWords();

    // The widget that stands for the object in the form: itself, or a radio
    // group's anchor; null for data holders.
    static QWidget *widgetOf(QObject *target);
    // The colour shown in the "Color" row: "%1;%2;%3" of the background
    // (the button role of a push button).
    static QString colorText(const QWidget *widget);
};
