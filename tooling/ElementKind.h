#pragma once
#include <QList>
#include <QString>

class QObject;

// The element kinds the form editor knows, in the order its tree, its Add
// menu and its factory share: menu text, icon, the define a new element
// starts from, and the description element that makes one.
class ElementKind
{
public:
    enum Kind {
        Unknown = -1,
        Vertical,
        Horizontal,
        Grid,
        Tab,
        Absolute,
        Group,
        Radio,
        Combo,
        Checkbox,
        Spinbox,
        HexSpinbox,
        DoubleSpinbox,
        LineEdit,
        TextEdit,
        MathLabel,
        Text,
        Image,
        LED,
        Button,
        ToggleButton,
        Timer,
        Slider,
        Knob,
        Dial,
        Thermo,
        Plot,
        RegView,
        Table,
        Count,
        // A value without a widget (a `var`); not one of the form's kinds.
        Var = Count
    };

    static QString menuText(Kind kind);
    // ":/images/<Kind>.png"; the Var icon for Var.
    static QString imagePath(Kind kind);
    // The define a new element's name is numbered from; empty for an image,
    // which has none.
    static QString defaultDefine(Kind kind);
    // The description element that makes one ("verticalcontainer", "led"...).
    static QString xmlName(Kind kind);
    static bool isContainer(Kind kind);

    // The Add menu's order: the table's, with Knob and Slider moved behind
    // DoubleSpinbox (Var, which ends the menu, is not included).
    static QList<Kind> menuOrder();

    // The kind of a form widget (the anchor of a radio group counts as
    // Radio); Unknown for anything the editor has no kind for.
    static Kind of(const QObject *object);
};
