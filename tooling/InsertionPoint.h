#pragma once
#include <QList>

#include "elements/Container.h"

// Stands for a container while elements are read into it at a position:
// every factory call goes to the real container with the next index, so a
// fragment of several elements lands in order from that position on. It
// notes each widget put in.
class InsertionPoint : public Container
{
public:
    // index -1: at the end.
    InsertionPoint(Container *target, int index);

    QList<QWidget *> placed() const { return m_placed; }

    void addWidget(QWidget *widget, const QString &label = QString(), int index = -1) override;
    QString objectName() const override;
    QWidget *containerWidget() override;

    QRadioButton *addRadioButton(const QString &label, int index, const QString &define) override;
    CheckBox *addCheckBox(const QString &label, int index, const QString &define) override;
    ToggleButton *addToggleButton(const QString &label, int index, const QString &define) override;
    ComboBox *addComboBox(const QString &label, int index, const QString &define) override;
    SpinBox *addSpinBox(const QString &label, int index, const QString &define) override;
    Slider *addSlider(const QString &label, int index, const QString &define) override;
    Knob *addKnob(const QString &label, int index, const QString &define) override;
    DoubleSpinBox *addDoubleSpinBox(const QString &label, int index, const QString &define) override;
    HexSpinBox *addHexSpinBox(const QString &label, int index, const QString &define) override;
    TextEdit *addTextEdit(const QString &label, int index, const QString &define) override;
    LineEdit *addLineEdit(const QString &label, int index, const QString &define) override;
    PushButton *addPushButton(const QString &label, int index, const QString &define) override;
    TimerLabel *addTimer(const QString &label, int index, const QString &define) override;
    LogLabel *addLog(const QString &label, int index, const QString &define) override;
    Image *addImage(const QString &label, int index, const QString &define) override;
    Led *addLed(const QString &label, int index, const QString &define) override;
    Text *addText(const QString &label, int index, const QString &define) override;
    MathLabel *addMathLabel(const QString &label, int index, const QString &define) override;
    MyQwtPlot *addPlot(const QString &label, int index, const QString &define) override;
    QwtDial *addDial(const QString &label, int index, const QString &define) override;
    QwtThermo *addThermo(const QString &label, int index, const QString &define) override;
    TabWidget *addTabContainer(const QString &label, int index, const QString &name) override;
    AbsoluteWidget *addAbsoluteContainer(const QString &label, int index, const QString &name) override;
    GroupBox *addGroupContainer(const QString &label, int index, const QString &name) override;
    HorizontalWidget *addHorizontalContainer(const QString &label, int index, const QString &name) override;
    GridWidget *addGridContainer(const QString &label, int index, const QString &name) override;
    VerticalWidget *addVerticalContainer(const QString &label, int index, const QString &name) override;
    TreeWidget *addTreeContainer(const QString &label, int index, const QString &name) override;

protected:
    QWidget *childParent() override;
    void placeChild(QWidget *child, const QString &label, int index) override;

private:
    int takeIndex();
    template <class T>
    T *note(T *widget);

    Container *m_target;
    int m_index;
    QList<QWidget *> m_placed;
};
