#pragma once
#include <QString>
#include <QStringList>

// The words that may follow a define after a dot ("ADC.CTRL.label"). A word's
// position in the list is the "kind" number passed to ActiveElement::value()
// and setValue().
namespace Selectors {

enum Kind {
    Value = 0, Label, Index, DefineValue, TypeInfo, Interval, Run, Register,
    Module, RegisterName, Address, Column, Row, InsertMode, SingleStep, Func,
    SendLoop, Delete, DeleteAll, SendUsb, Load, LoadAt, Save, Export, Image,
    Color, Visible, Enabled, X, Y, Min, Max, TextColor, Update,
    Count
};

const QStringList &words();

// Word for a kind, empty for kinds outside the list.
QString word(int kind);

// Kind of the selector the text ends with (".label" -> 1); 0 when the text
// ends with no selector. Case-sensitive, first match in list order.
int selectorKind(const QString &text);

// Whether the text ends with one of the selector words.
bool hasSelector(const QString &text);

// Removes every occurrence of ".<word>" for the given kind.
QString removeSelector(const QString &text, int kind);

// The element name of a define with selector: the selector it ends with is
// removed (every occurrence of it).
QString stripSelector(const QString &text);

// A "word=" prefix of a default or setDef text ("label=Fast"): returns its
// kind and removes the prefix from text; -1 and no change when there is none.
int takePrefix(QString &text);

} // namespace Selectors
