#include "elements/Container.h"

#include "elements/AbsoluteWidget.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DoubleSpinBox.h"
#include "elements/HexSpinBox.h"
#include "elements/Knob.h"
#include "elements/LineEdit.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/TextEdit.h"
#include "elements/ToggleButton.h"
#include "elements/GridWidget.h"
#include "elements/GroupBox.h"
#include "elements/Image.h"
#include "elements/Led.h"
#include "elements/LogLabel.h"
#include "elements/MathLabel.h"
#include "elements/PushButton.h"
#include "elements/Text.h"
#include "elements/TimerLabel.h"
#include "elements/HorizontalWidget.h"
#include "elements/TabWidget.h"
#include "elements/TreeWidget.h"
#include "elements/VerticalWidget.h"
#include "views/MyQwtPlot.h"

#include <qwt_dial.h>
#include <qwt_thermo.h>

#include <QLayout>
#include <QRadioButton>

Container::~Container() = default;

QRadioButton *Container::addRadioButton(const QString &label, int index, const QString &define)
{
    auto *button = new QRadioButton(label, childParent());
    button->setObjectName(define);
    placeChild(button, label, index);
    return button;
}

// Value elements.

CheckBox *Container::addCheckBox(const QString &label, int index, const QString &define)
{
    CheckBox *box = make<CheckBox>(label, index, define);
    box->setText(label);
    return box;
}

ToggleButton *Container::addToggleButton(const QString &label, int index, const QString &define)
{
    ToggleButton *button = make<ToggleButton>(label, index, define);
    button->setText(label);
    return button;
}

ComboBox *Container::addComboBox(const QString &label, int index, const QString &define)
{
    return make<ComboBox>(label, index, define);
}

SpinBox *Container::addSpinBox(const QString &label, int index, const QString &define)
{
    return make<SpinBox>(label, index, define);
}

Slider *Container::addSlider(const QString &label, int index, const QString &define)
{
    return make<Slider>(label, index, define);
}

Knob *Container::addKnob(const QString &label, int index, const QString &define)
{
    return make<Knob>(label, index, define);
}

DoubleSpinBox *Container::addDoubleSpinBox(const QString &label, int index, const QString &define)
{
    return make<DoubleSpinBox>(label, index, define);
}

HexSpinBox *Container::addHexSpinBox(const QString &label, int index, const QString &define)
{
    return make<HexSpinBox>(label, index, define);
}

TextEdit *Container::addTextEdit(const QString &label, int index, const QString &define)
{
    return make<TextEdit>(label, index, define);
}

LineEdit *Container::addLineEdit(const QString &label, int index, const QString &define)
{
    return make<LineEdit>(label, index, define);
}

// Display elements.

PushButton *Container::addPushButton(const QString &label, int index, const QString &define)
{
    PushButton *button = make<PushButton>(label, index, define);
    button->setText(label);
    return button;
}

TimerLabel *Container::addTimer(const QString &label, int index, const QString &define)
{
    return make<TimerLabel>(label, index, define);
}

LogLabel *Container::addLog(const QString &label, int index, const QString &define)
{
    return make<LogLabel>(label, index, define);
}

Image *Container::addImage(const QString &label, int index, const QString &define)
{
    return make<Image>(label, index, define);
}

Led *Container::addLed(const QString &label, int index, const QString &define)
{
    return make<Led>(label, index, define);
}

Text *Container::addText(const QString &label, int index, const QString &define)
{
    Text *text = make<Text>(label, index, define);
    text->setText(label);
    return text;
}

MathLabel *Container::addMathLabel(const QString &label, int index, const QString &define)
{
    return make<MathLabel>(label, index, define);
}

// Views.

TabWidget *Container::addTabContainer(const QString &label, int index, const QString &name)
{
    return make<TabWidget>(label, index, name);
}

AbsoluteWidget *Container::addAbsoluteContainer(const QString &label, int index, const QString &name)
{
    return make<AbsoluteWidget>(label, index, name);
}

GroupBox *Container::addGroupContainer(const QString &label, int index, const QString &name)
{
    GroupBox *box = make<GroupBox>(label, index, name);
    box->setTitle(label);
    return box;
}

HorizontalWidget *Container::addHorizontalContainer(const QString &label, int index, const QString &name)
{
    return make<HorizontalWidget>(label, index, name);
}

GridWidget *Container::addGridContainer(const QString &label, int index, const QString &name)
{
    return make<GridWidget>(label, index, name);
}

VerticalWidget *Container::addVerticalContainer(const QString &label, int index, const QString &name)
{
    return make<VerticalWidget>(label, index, name);
}

TreeWidget *Container::addTreeContainer(const QString &label, int index, const QString &name)
{
    return make<TreeWidget>(label, index, name);
}

int Container::positionOf(QWidget *child)
{
    QWidget *self = containerWidget();
    if (!child || !self)
        return -1;
    if (auto *tab = qobject_cast<QTabWidget *>(self))
        return tab->indexOf(child);
    if (auto *grid = qobject_cast<GridWidget *>(self))
        return grid->orderedChildren().indexOf(child);
    if (qobject_cast<TreeWidget *>(self) || qobject_cast<AbsoluteWidget *>(self) || !self->layout())
        return -1;
    return self->layout()->indexOf(child);
}

void Container::releaseChild(QWidget *child)
{
    QWidget *self = containerWidget();
    if (!child || !self)
        return;
    if (auto *tab = qobject_cast<QTabWidget *>(self)) {
        const int page = tab->indexOf(child);
        if (page >= 0)
            tab->removeTab(page);
    } else if (auto *grid = qobject_cast<GridWidget *>(self)) {
        grid->removeChild(child);
    } else if (self->layout()) {
        self->layout()->removeWidget(child);
    }
}

Container *asContainer(QObject *object)
{
    return dynamic_cast<Container *>(object);
}

// Plots and gauges.

MyQwtPlot *Container::addPlot(const QString &label, int index, const QString &define)
{
    return make<MyQwtPlot>(label, index, define);
}

QwtDial *Container::addDial(const QString &label, int index, const QString &define)
{
    return make<QwtDial>(label, index, define);
}

QwtThermo *Container::addThermo(const QString &label, int index, const QString &define)
{
    return make<QwtThermo>(label, index, define);
}
