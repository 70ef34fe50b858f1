#include "tooling/ElementKind.h"

#include "elements/AbsoluteWidget.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DoubleSpinBox.h"
#include "elements/GridWidget.h"
#include "elements/GroupBox.h"
#include "elements/HexSpinBox.h"
#include "elements/HorizontalWidget.h"
#include "elements/Image.h"
#include "elements/Knob.h"
#include "elements/Led.h"
#include "elements/LineEdit.h"
#include "elements/MathLabel.h"
#include "elements/PushButton.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/TabWidget.h"
#include "elements/Text.h"
#include "elements/TextEdit.h"
#include "elements/TimerLabel.h"
#include "elements/ToggleButton.h"
#include "elements/VerticalWidget.h"
#include "views/MyQwtPlot.h"
#include "views/RegisterView.h"
#include "views/Table.h"

#include <qwt_dial.h>
#include <qwt_thermo.h>

#include <QRadioButton>

namespace {

struct Row
{
    const char *menu;
    const char *image;
    const char *define;
    const char *xml;
};

// In the order of the enumeration.
const Row kRows[] = {
    {"Vertical", "Vertical", "Vertical", "verticalcontainer"},
    {"Horizontal", "Horizontal", "Horizontal", "horizontalcontainer"},
    {"Grid", "Grid", "Grid", "gridcontainer"},
    {"Tab", "Tab", "Tab", "tabcontainer"},
    {"Absolute", "Absolute", "Absolute", "absolutecontainer"},
    {"Group", "Group", "Group", "groupcontainer"},
    {"Radio", "Radio", "RadioButtonDefine", "radio"},
    {"Combo", "Combo", "ComboBoxDefine", "combo"},
    {"Checkbox", "Checkbox", "CheckBoxDefine", "checkbox"},
    {"Spinbox", "Spinbox", "SpinBoxDefine", "spinbox"},
    {"HexSpinbox", "HexSpinbox", "HexSpinBoxDefine", "hexspinbox"},
    {"DoubleSpinbox", "DoubleSpinbox", "DoubleSpinBoxDefine", "doublespinbox"},
    {"LineEdit", "LineEdit", "LineEditDefine", "edit"},
    {"TextEdit", "TextEdit", "TextEditDefine", "editbox"},
    {"MathLabel", "MathLabel", "MathLabelDefine", "math"},
    {"Text", "Text", "TextDefine", "text"},
    {"Image", "Image", "", "image"},
    {"LED", "LED", "LedDefine", "led"},
    {"Button", "Button", "ButtonDefine", "button"},
    {"ToggleButton", "ToggleButton", "ToggleButtonDefine", "togglebutton"},
    {"Timer", "Timer", "TimerDefine", "timer"},
    {"Slider", "Slider", "SliderDefine", "slider"},
    {"Knob", "Knob", "KnobDefine", "knob"},
    {"Dial", "Dial", "DialDefine", "dial"},
    {"Thermo", "Thermo", "ThermoDefine", "thermo"},
    {"Plot", "Plot", "Plot", "plot"},
    {"RegView", "RegView", "RegViewDefine", "registerview"},
    {"Table", "Table", "TableDefine", "table"},
    {"Var", "Var", "", "var"},
};
static_assert(sizeof kRows / sizeof kRows[0] == ElementKind::Count + 1, "one row per kind");

const Row *rowOf(ElementKind::Kind kind)
{
    if (kind < 0 || kind > ElementKind::Var)
        return nullptr;
    return &kRows[kind];
}

} // namespace

QString ElementKind::menuText(Kind kind)
{
    const Row *row = rowOf(kind);
    return row ? QLatin1String(row->menu) : QString();
}

QString ElementKind::imagePath(Kind kind)
{
    const Row *row = rowOf(kind);
    return row ? QStringLiteral(":/images/%1.png").arg(QLatin1String(row->image)) : QString();
}

QString ElementKind::defaultDefine(Kind kind)
{
    const Row *row = rowOf(kind);
    return row ? QLatin1String(row->define) : QString();
}

QString ElementKind::xmlName(Kind kind)
{
    const Row *row = rowOf(kind);
    return row ? QLatin1String(row->xml) : QString();
}

bool ElementKind::isContainer(Kind kind)
{
    return kind >= Vertical && kind <= Group;
}

QList<ElementKind::Kind> ElementKind::menuOrder()
{
    QList<Kind> order;
    for (int k = Vertical; k < Count; ++k) {
        if (k == Knob || k == Slider)
            continue;
        order << Kind(k);
        if (k == DoubleSpinbox)
            order << Knob << Slider;
    }
    return order;
}

ElementKind::Kind ElementKind::of(const QObject *object)
{
    if (!object)
        return Unknown;
    // Subclasses before their bases: a hex spin box is a spin box, every
    // container a plain widget or frame underneath.
    if (qobject_cast<const TabWidget *>(object))
        return Tab;
    if (qobject_cast<const GridWidget *>(object))
        return Grid;
    if (qobject_cast<const AbsoluteWidget *>(object))
        return Absolute;
    if (qobject_cast<const GroupBox *>(object))
        return Group;
    if (qobject_cast<const HorizontalWidget *>(object))
        return Horizontal;
    if (qobject_cast<const VerticalWidget *>(object))
        return Vertical;
    if (qobject_cast<const QRadioButton *>(object) || object->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly))
        return Radio;
    if (qobject_cast<const ComboBox *>(object))
        return Combo;
    if (qobject_cast<const CheckBox *>(object))
        return Checkbox;
    if (qobject_cast<const HexSpinBox *>(object))
        return HexSpinbox;
    if (qobject_cast<const SpinBox *>(object))
        return Spinbox;
    if (qobject_cast<const DoubleSpinBox *>(object))
        return DoubleSpinbox;
    if (qobject_cast<const ::LineEdit *>(object))
        return LineEdit;
    if (qobject_cast<const ::TextEdit *>(object))
        return TextEdit;
    if (qobject_cast<const ::MathLabel *>(object))
        return MathLabel;
    if (qobject_cast<const ::Text *>(object))
        return Text;
    if (qobject_cast<const ::Image *>(object))
        return Image;
    if (qobject_cast<const Led *>(object))
        return LED;
    if (qobject_cast<const ::ToggleButton *>(object))
        return ToggleButton;
    if (qobject_cast<const PushButton *>(object))
        return Button;
    if (qobject_cast<const TimerLabel *>(object))
        return Timer;
    if (qobject_cast<const ::Slider *>(object))
        return Slider;
    if (qobject_cast<const ::Knob *>(object))
        return Knob;
    if (qobject_cast<const MyQwtPlot *>(object))
        return Plot;
    if (qobject_cast<const QwtDial *>(object))
        return Dial;
    if (qobject_cast<const QwtThermo *>(object))
        return Thermo;
    if (qobject_cast<const RegisterView *>(object))
        return RegView;
    if (qobject_cast<const ::Table *>(object))
        return Table;
    return Unknown;
}
