#include "tooling/InsertionPoint.h"

#include "elements/AbsoluteWidget.h"
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
#include "elements/LogLabel.h"
#include "elements/MathLabel.h"
#include "elements/PushButton.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/TabWidget.h"
#include "elements/Text.h"
#include "elements/TextEdit.h"
#include "elements/TimerLabel.h"
#include "elements/ToggleButton.h"
#include "elements/TreeWidget.h"
#include "elements/VerticalWidget.h"
#include "views/MyQwtPlot.h"

#include <qwt_dial.h>
#include <qwt_thermo.h>

#include <QRadioButton>

InsertionPoint::InsertionPoint(Container *target, int index)
    : m_target(target)
    , m_index(index)
{
}

int InsertionPoint::takeIndex()
{
    if (m_index < 0)
        return -1;
    return m_index++;
}

template <class T>
T *InsertionPoint::note(T *widget)
{
    if (widget) {
        m_placed << widget;
        // A widget made inside a form that is already on screen stays
        // hidden unless told (an absolute container does not show it).
        QWidget *parent = widget->parentWidget();
        if (parent && parent->isVisible() && !widget->testAttribute(Qt::WA_WState_ExplicitShowHide))
            widget->show();
    }
    return widget;
}

void InsertionPoint::addWidget(QWidget *widget, const QString &label, int)
{
    m_target->addWidget(widget, label, takeIndex());
    note(widget);
}

QString InsertionPoint::objectName() const
{
    return m_target->objectName();
}

QWidget *InsertionPoint::containerWidget()
{
    return m_target->containerWidget();
}

QWidget *InsertionPoint::childParent()
{
    return m_target->containerWidget();
}

void InsertionPoint::placeChild(QWidget *child, const QString &label, int)
{
    addWidget(child, label, -1);
}

#define FORWARD(Type, method)                                                       \
    Type *InsertionPoint::method(const QString &label, int, const QString &define) \
    {                                                                               \
        return note(m_target->method(label, takeIndex(), define));                  \
    }

FORWARD(QRadioButton, addRadioButton)
FORWARD(CheckBox, addCheckBox)
FORWARD(ToggleButton, addToggleButton)
FORWARD(ComboBox, addComboBox)
FORWARD(SpinBox, addSpinBox)
FORWARD(Slider, addSlider)
FORWARD(Knob, addKnob)
FORWARD(DoubleSpinBox, addDoubleSpinBox)
FORWARD(HexSpinBox, addHexSpinBox)
FORWARD(TextEdit, addTextEdit)
FORWARD(LineEdit, addLineEdit)
FORWARD(PushButton, addPushButton)
FORWARD(TimerLabel, addTimer)
FORWARD(LogLabel, addLog)
FORWARD(Image, addImage)
FORWARD(Led, addLed)
FORWARD(Text, addText)
FORWARD(MathLabel, addMathLabel)
FORWARD(MyQwtPlot, addPlot)
FORWARD(QwtDial, addDial)
FORWARD(QwtThermo, addThermo)
FORWARD(TabWidget, addTabContainer)
FORWARD(AbsoluteWidget, addAbsoluteContainer)
FORWARD(GroupBox, addGroupContainer)
FORWARD(HorizontalWidget, addHorizontalContainer)
FORWARD(GridWidget, addGridContainer)
FORWARD(VerticalWidget, addVerticalContainer)
FORWARD(TreeWidget, addTreeContainer)

#undef FORWARD
