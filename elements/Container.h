#pragma once
#include <QString>

class QObject;
class QWidget;
class QRadioButton;
class ButtonGroup;
class CheckBox;
class ComboBox;
class DoubleSpinBox;
class HexSpinBox;
class Knob;
class LineEdit;
class Slider;
class SpinBox;
class TextEdit;
class ToggleButton;
class AbsoluteWidget;
class GridWidget;
class GroupBox;
class HorizontalWidget;
class TabWidget;
class TreeWidget;
class VerticalWidget;
class Image;
class Led;
class LogLabel;
class MathLabel;
class PushButton;
class Text;
class TimerLabel;
class MyQwtPlot;
class QwtDial;
class QwtThermo;

// Factory interface of every container. The reader never creates a form
// element itself: it asks the current container, which makes the element
// its child and lays it out in its own way (a box appends, a grid moves its
// cursor, a tab adds a page, a tree adds a row). A Container has no data of
// its own.
//
// Every factory takes the element's label, an insertion index (-1 appends)
// and its define, which becomes the object name.
class Container
{
public:
    virtual ~Container();

    // Puts an existing widget into the layout (a spacer, a line, an element
    // made elsewhere). Absolute containers and trees ignore it.
    virtual void addWidget(QWidget *widget, const QString &label = QString(), int index = -1) = 0;

    virtual QRadioButton *addRadioButton(const QString &label, int index, const QString &define);

    // Value elements.
    virtual CheckBox *addCheckBox(const QString &label, int index, const QString &define);
    virtual ToggleButton *addToggleButton(const QString &label, int index, const QString &define);
    virtual ComboBox *addComboBox(const QString &label, int index, const QString &define);
    virtual SpinBox *addSpinBox(const QString &label, int index, const QString &define);
    virtual Slider *addSlider(const QString &label, int index, const QString &define);
    virtual Knob *addKnob(const QString &label, int index, const QString &define);
    virtual DoubleSpinBox *addDoubleSpinBox(const QString &label, int index, const QString &define);
    virtual HexSpinBox *addHexSpinBox(const QString &label, int index, const QString &define);
    virtual TextEdit *addTextEdit(const QString &label, int index, const QString &define);
    virtual LineEdit *addLineEdit(const QString &label, int index, const QString &define);

    // Display elements.
    virtual PushButton *addPushButton(const QString &label, int index, const QString &define);
    virtual TimerLabel *addTimer(const QString &label, int index, const QString &define);
    virtual LogLabel *addLog(const QString &label, int index, const QString &define);
    virtual Image *addImage(const QString &label, int index, const QString &define);
    virtual Led *addLed(const QString &label, int index, const QString &define);
    virtual Text *addText(const QString &label, int index, const QString &define);
    virtual MathLabel *addMathLabel(const QString &label, int index, const QString &define);
    // Plots and gauges of live values.
    virtual MyQwtPlot *addPlot(const QString &label, int index, const QString &define);
    virtual QwtDial *addDial(const QString &label, int index, const QString &define);
    virtual QwtThermo *addThermo(const QString &label, int index, const QString &define);

    // Views.

    virtual TabWidget *addTabContainer(const QString &label, int index, const QString &name);
    virtual AbsoluteWidget *addAbsoluteContainer(const QString &label, int index, const QString &name);
    virtual GroupBox *addGroupContainer(const QString &label, int index, const QString &name);
    virtual HorizontalWidget *addHorizontalContainer(const QString &label, int index, const QString &name);
    virtual GridWidget *addGridContainer(const QString &label, int index, const QString &name);
    virtual VerticalWidget *addVerticalContainer(const QString &label, int index, const QString &name);
    virtual TreeWidget *addTreeContainer(const QString &label, int index, const QString &name);

    // The container's name (its object name; for a tree row, its branch name).
    virtual QString objectName() const = 0;

    // The widget this container is, or for a tree row the tree's widget.
    virtual QWidget *containerWidget() = 0;

    // Where a child stands in the container's own order: its place in the
    // layout, its page, its cell in line order. -1 when the container keeps
    // no order (absolute, tree) or the widget is not in it; the add
    // operations take -1 as "at the end".
    int positionOf(QWidget *child);
    // Takes a child out of the container's order (layout, page, cell)
    // without deleting or reparenting it.
    void releaseChild(QWidget *child);

protected:
    // The parent a new child is created with; null for tree rows, whose
    // children are parented when the row takes them.
    virtual QWidget *childParent() = 0;
    // Lays out a newly created child.
    virtual void placeChild(QWidget *child, const QString &label, int index) = 0;

    template <class T>
    T *make(const QString &label, int index, const QString &name)
    {
        T *child = new T(childParent());
        child->setObjectName(name);
        placeChild(child, label, index);
        return child;
    }
};

// The Container behind a widget, or null.
Container *asContainer(QObject *object);
