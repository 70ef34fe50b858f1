#include "reader/ElementAttributes.h"

#include "elements/AbsoluteWidget.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DataClass.h"
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
#include "views/PinMapping.h"
#include "views/RegisterView.h"
#include "views/SvdTree.h"
#include "views/Table.h"

#include <QFrame>
#include <QRadioButton>
#include <QStringList>
#include <qwt_dial.h>
#include <qwt_thermo.h>

namespace {

// Builds an attribute list: the first value given for a name stands, empty
// values are left out.
class AttributeList
{
public:
    void add(const QString &name, const QString &value)
    {
        if (value.isEmpty() || m_names.contains(name))
            return;
        m_names.append(name);
        m_list.append({name, value});
    }
    void property(QObject *object, const char *name, const QString &attribute)
    {
        add(attribute, object->property(name).toString());
    }
    void property(QObject *object, const char *name) { property(object, name, QLatin1String(name)); }
    void append(const KeptElement::Attributes &more)
    {
        for (const auto &pair : more)
            add(pair.first, pair.second);
    }
    KeptElement::Attributes list() const { return m_list; }

private:
    QStringList m_names;
    KeptElement::Attributes m_list;
};

QString number(double value)
{
    return QString::number(value, 'g', 15);
}

QString range(double minimum, double maximum)
{
    return QStringLiteral("%1;%2").arg(number(minimum), number(maximum));
}

// The label a kind shows as its text: the kept text where the reader kept
// one, else what the widget shows.
QString labelOf(QObject *object, const QString &shown)
{
    const QVariant kept = object->property("my_label");
    return kept.isValid() ? kept.toString() : shown;
}

} // namespace

QObject *ElementAttributes::propertyHolder(QObject *object)
{
    if (!object || !object->isWidgetType())
        return object;
    if (auto *group = object->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (group->widget() == object)
            return group;
    }
    return object;
}

QString ElementAttributes::elementName(QObject *object)
{
    if (!object)
        return QString();
    if (qobject_cast<DataClass *>(object))
        return QStringLiteral("var");
    if (qobject_cast<ButtonGroup *>(propertyHolder(object)))
        return QStringLiteral("radio");
    // Containers: the tree, group and tab before the plain boxes they may
    // derive from.
    if (qobject_cast<TabWidget *>(object))
        return QStringLiteral("tabcontainer");
    if (qobject_cast<TreeWidget *>(object))
        return QStringLiteral("treecontainer");
    if (qobject_cast<GroupBox *>(object))
        return QStringLiteral("groupcontainer");
    if (qobject_cast<GridWidget *>(object))
        return QStringLiteral("gridcontainer");
    if (qobject_cast<AbsoluteWidget *>(object))
        return QStringLiteral("absolutecontainer");
    if (qobject_cast<HorizontalWidget *>(object))
        return QStringLiteral("horizontalcontainer");
    if (qobject_cast<VerticalWidget *>(object))
        return QStringLiteral("verticalcontainer");
    if (qobject_cast<QRadioButton *>(object))
        return QStringLiteral("radiobutton");
    if (qobject_cast<ComboBox *>(object))
        return QStringLiteral("combo");
    if (qobject_cast<CheckBox *>(object))
        return QStringLiteral("checkbox");
    if (qobject_cast<HexSpinBox *>(object))
        return QStringLiteral("hexspinbox");
    if (qobject_cast<SpinBox *>(object))
        return QStringLiteral("spinbox");
    if (qobject_cast<DoubleSpinBox *>(object))
        return QStringLiteral("doublespinbox");
    if (qobject_cast<Slider *>(object))
        return QStringLiteral("slider");
    if (qobject_cast<LineEdit *>(object))
        return QStringLiteral("edit");
    if (qobject_cast<TextEdit *>(object))
        return QStringLiteral("editbox");
    if (qobject_cast<MathLabel *>(object))
        return QStringLiteral("math");
    if (qobject_cast<TimerLabel *>(object))
        return QStringLiteral("timer");
    if (qobject_cast<LogLabel *>(object))
        return QStringLiteral("log");
    if (qobject_cast<Text *>(object))
        return QStringLiteral("text");
    if (qobject_cast<Led *>(object))
        return QStringLiteral("led");
    if (qobject_cast<ToggleButton *>(object))
        return QStringLiteral("togglebutton");
    if (qobject_cast<PushButton *>(object))
        return QStringLiteral("button");
    if (qobject_cast<Knob *>(object))
        return QStringLiteral("knob");
    if (qobject_cast<QwtDial *>(object))
        return QStringLiteral("dial");
    if (qobject_cast<QwtThermo *>(object))
        return QStringLiteral("thermo");
    if (qobject_cast<Image *>(object))
        return QStringLiteral("image");
    if (qobject_cast<MyQwtPlot *>(object))
        return QStringLiteral("plot");
    if (qobject_cast<RegisterView *>(object))
        return QStringLiteral("registerview");
    if (qobject_cast<Table *>(object))
        return QStringLiteral("table");
    if (qobject_cast<SvdTree *>(object))
        return QStringLiteral("svdtree");
    if (qobject_cast<PinMapping *>(object))
        return QStringLiteral("pinmapper");
    return QString();
}

KeptElement::Attributes ElementAttributes::commonBlock(QObject *object)
{
    QObject *holder = propertyHolder(object);
    AttributeList list;
    list.property(object, "Sizepolicy", QStringLiteral("sizepolicy"));
    list.property(object, "Size", QStringLiteral("size"));
    list.property(object, "Color", QStringLiteral("color"));
    list.property(object, "Pos", QStringLiteral("pos"));
    list.property(object, "my_font", QStringLiteral("font"));
    list.property(holder, "my_default", QStringLiteral("default"));
    list.property(holder, "header");
    list.property(holder, "my_svd", QStringLiteral("svd"));
    list.property(object, "my_label", QStringLiteral("label"));
    list.property(object, "my_readonly", QStringLiteral("readonly"));
    return list.list();
}

KeptElement::Attributes ElementAttributes::current(QObject *object)
{
    AttributeList list;
    if (!object)
        return {};
    const QString name = elementName(object);
    const QString define = object->objectName();
    auto withDefine = [&list, &define]() { list.add(QStringLiteral("define"), define); };

    if (auto *data = qobject_cast<DataClass *>(object)) {
        withDefine();
        list.property(data, "my_default", QStringLiteral("default"));
        return list.list();
    }
    if (name.endsWith(QLatin1String("container"))) {
        if (auto *grid = qobject_cast<GridWidget *>(object))
            list.add(QStringLiteral("columns"), QString::number(grid->columns()));
    } else if (name == QLatin1String("radio")) {
        withDefine();
    } else if (auto *button = qobject_cast<QRadioButton *>(object)) {
        list.add(QStringLiteral("label"), labelOf(button, button->text()));
    } else if (name == QLatin1String("combo") || name == QLatin1String("edit") || name == QLatin1String("editbox")
               || name == QLatin1String("registerview") || name == QLatin1String("svdtree")
               || name == QLatin1String("pinmapper")) {
        withDefine();
        list.property(object, "readwritebuddy");
    } else if (auto *box = qobject_cast<CheckBox *>(object)) {
        withDefine();
        list.add(QStringLiteral("label"), labelOf(box, box->text()));
    } else if (auto *spin = qobject_cast<SpinBox *>(object)) {
        withDefine();
        list.add(QStringLiteral("range"), range(spin->minimum(), spin->maximum()));
        list.add(QStringLiteral("prefix"), spin->prefix());
        list.add(QStringLiteral("suffix"), spin->suffix());
        list.add(QStringLiteral("step"), QString::number(spin->singleStep()));
    } else if (auto *spin = qobject_cast<DoubleSpinBox *>(object)) {
        withDefine();
        list.add(QStringLiteral("range"), range(spin->minimum(), spin->maximum()));
        list.add(QStringLiteral("prefix"), spin->prefix());
        list.add(QStringLiteral("suffix"), spin->suffix());
        list.add(QStringLiteral("step"), number(spin->singleStep()));
    } else if (auto *slider = qobject_cast<Slider *>(object)) {
        withDefine();
        list.add(QStringLiteral("range"), range(slider->minimum(), slider->maximum()));
        list.add(QStringLiteral("step"), QString::number(slider->singleStep()));
        list.property(slider, "orientation");
        list.property(slider, "image");
    } else if (auto *math = qobject_cast<MathLabel *>(object)) {
        withDefine();
        // The formula as written (the reader compiles a cleaned copy).
        list.property(math, "expression", QStringLiteral("formula"));
        list.add(QStringLiteral("format"), QString::fromUtf8(math->format()));
        list.property(math, "suffix", QStringLiteral("unit"));
    } else if (name == QLatin1String("timer")) {
        withDefine();
        list.property(object, "run");
        list.property(object, "singleShot");
        list.property(object, "interval");
    } else if (auto *text = qobject_cast<Text *>(object)) {
        withDefine();
        list.add(QStringLiteral("label"), labelOf(text, text->text()));
    } else if (name == QLatin1String("led")) {
        list.add(QStringLiteral("define"), define);
        list.property(object, "data");
        list.property(object, "bitmask");
        list.property(object, "OnColor", QStringLiteral("oncolor"));
        list.property(object, "OffColor", QStringLiteral("offcolor"));
    } else if (auto *toggle = qobject_cast<ToggleButton *>(object)) {
        withDefine();
        list.add(QStringLiteral("label"), labelOf(toggle, toggle->text()));
        list.property(toggle, "OnColor", QStringLiteral("oncolor"));
        list.property(toggle, "OffColor", QStringLiteral("offcolor"));
        list.property(toggle, "icon");
    } else if (auto *push = qobject_cast<PushButton *>(object)) {
        withDefine();
        list.add(QStringLiteral("label"), labelOf(push, push->text()));
        list.property(push, "Icon", QStringLiteral("icon"));
    } else if (auto *knob = qobject_cast<Knob *>(object)) {
        withDefine();
        list.add(QStringLiteral("range"), range(knob->lowerBound(), knob->upperBound()));
    } else if (name == QLatin1String("dial") || name == QLatin1String("thermo")) {
        withDefine();
        list.property(object, "data");
        list.property(object, "min");
        list.property(object, "max");
        for (const char *p : {"normalcolor", "alarmcolor", "alarmlevel"})
            list.property(object, p);
    } else if (name == QLatin1String("image")) {
        withDefine();
        list.property(object, "File", QStringLiteral("file"));
    } else if (name == QLatin1String("plot")) {
        withDefine();
        for (const char *p : {"minX", "maxX", "minY", "maxY", "oszi", "history", "xScaleFormat", "xLabel", "yLabel",
                              "autoScaleMinY", "autoScaleMaxY", "xFactor", "grid"})
            list.property(object, p);
    } else if (auto *table = qobject_cast<Table *>(object)) {
        withDefine();
        list.add(QStringLiteral("numrows"), QString::number(table->numRows()));
        for (const char *p : {"sendformat", "recformat", "tooltiprecformat"})
            list.property(table, p);
    } else {
        withDefine();
    }
    list.append(commonBlock(object));
    return list.list();
}

QVariantMap ElementAttributes::childState(QObject *object)
{
    QVariantMap state;
    if (!object)
        return state;
    QObject *holder = propertyHolder(object);
    for (const char *name : {"data", "itemText", "locks"}) {
        const QVariant value = holder->property(name);
        if (value.isValid())
            state.insert(QLatin1String(name), value);
    }
    if (auto *table = qobject_cast<Table *>(object)) {
        QVariantList columns;
        for (int i = 0; i < table->columnCount(); ++i) {
            const TableColumn &c = table->column(i);
            columns.append(QStringList{QString::number(c.kind), c.label, c.tooltip, c.format, c.defaultText, c.source,
                                       QString::number(c.columnWidth)});
        }
        state.insert(QStringLiteral("columns"), columns);
    }
    return state;
}
