#include "reader/ValueElementReaders.h"

#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/Container.h"
#include "elements/DocumentTables.h"
#include "elements/DoubleSpinBox.h"
#include "elements/HexSpinBox.h"
#include "elements/Knob.h"
#include "elements/LineEdit.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/TextEdit.h"
#include "elements/ToggleButton.h"
#include "elements/TreeWidget.h"
#include "elements/TreeWidgetItem.h"
#include "reader/ActionReader.h"
#include "reader/CommonAttributes.h"
#include "reader/DefaultReader.h"
#include "reader/DescriptionReader.h"
#include "reader/StartCondition.h"

#include <QRadioButton>
#include <QRegExp>
#include <QRegExpValidator>
#include <QTreeWidget>
#include <QVariantMap>

#include <climits>
#include <cmath>

namespace {

QString attribute(const QXmlStreamAttributes &a, const char *name)
{
    return a.value(QLatin1String(name)).toString();
}

bool has(const QXmlStreamAttributes &a, const char *name)
{
    return a.hasAttribute(QLatin1String(name));
}

// The element whose `action` children are being read while its children
// are read as rows of a branch (a check box with uielement="branch"), and
// the radio groups whose buttons are being read.
struct ActionOwner
{
    QObject *object;
    ActionReader::Events events;
    QString key;
};
QList<ActionOwner> g_actionOwners;
QList<ButtonGroup *> g_radioGroups;

enum class Refresh { Plain, List, Flag, Number };

// Step 7 of every element: the window's refreshes that fit the class.
void wireRefreshes(DescriptionReader &reader, QObject *element, Refresh refresh)
{
    reader.connectToHost(element, SIGNAL(changedByUser()), SLOT(changed()));
    reader.connectToHost(element, SIGNAL(updateMathLabels()), SLOT(on_updateMathLabel()));
    if (refresh != Refresh::Plain) {
        reader.connectToHost(element, SIGNAL(updateMathLabels()), SLOT(on_updateLED()));
        reader.connectToHost(element, SIGNAL(updateMathLabels()), SLOT(on_updateSvgImage()));
    }
    if (refresh == Refresh::Number) {
        reader.connectToHost(element, SIGNAL(updateMathLabels()), SLOT(on_updateCurve()));
        reader.connectToHost(element, SIGNAL(updateMathLabels()), SLOT(on_updateDial()));
        reader.connectToHost(element, SIGNAL(updateMathLabels()), SLOT(on_updateThermo()));
        reader.connectToHost(element, SIGNAL(updateMathLabels()), SLOT(on_updateLog()));
    }
    reader.connectToHost(element, SIGNAL(sendLock(QString)), SLOT(on_sendLock(QString)));
    reader.connectToHost(element, SIGNAL(sendUnlock(QString)), SLOT(on_sendUnlock(QString)));
}

void markRaised(ActiveElement *element)
{
    element->raised = 1;
    element->setProperty("isRaised", true);
}

// Steps 1 and 3: the define, checked for a duplicate before the element is
// made, and reported when missing once it is made.
QString takeDefine(DescriptionReader &reader, const QXmlStreamAttributes &a)
{
    const QString define = attribute(a, "define");
    reader.checkDuplicateDefine(define, DescriptionReader::ElementDefine);
    return define;
}

void requireDefine(DescriptionReader &reader, const QString &define, const char *word)
{
    if (define.isEmpty())
        reader.xmlMessage(QStringLiteral("%1 without define is not allowed: ").arg(QLatin1String(word)), define, true);
}

// Step 5: the default (and the claim), then the common attributes.
void readDefaultAndCommon(DescriptionReader &reader, QWidget *widget, ActiveElement *element,
                          const QXmlStreamAttributes &a)
{
    DefaultReader::read(reader, widget, element, a);
    CommonAttributes::apply(reader, widget, a);
}

// An item's or radio button's `setDef` attribute: an entry like an action.
void addSetDefEntry(DescriptionReader &reader, QObject *element, const QXmlStreamAttributes &a, const QString &key)
{
    if (!has(a, "setDef") && !has(a, "setdef"))
        return;
    const QString text = has(a, "setDef") ? attribute(a, "setDef") : attribute(a, "setdef");
    const QString joined = text.split(QLatin1Char(';')).join(QLatin1Char(';'));
    ActionReader::appendEntry(element, key, {QStringLiteral("selected_setDef"), attribute(a, "cond"), joined});
    ActionReader::connectAction(reader, element, QStringLiteral("selected_setDef"), QStringLiteral("setDef"));
}

// A `lockon` attribute: its lock strings, split at ";", go to the
// element's `locks` map under the key of the value that carries them.
void addLocks(ActiveElement *element, const QXmlStreamAttributes &a, const QString &key)
{
    if (!has(a, "lockon"))
        return;
    QStringList locks = attribute(a, "lockon").split(QLatin1Char(';'));
    locks.removeAll(QString());
    if (locks.isEmpty())
        return;
    QVariantMap map = element->property("locks").toMap();
    locks = map.value(key).toStringList() + locks;
    map.insert(key, locks);
    element->setProperty("locks", map);
}

// ---------------------------------------------------------------- numbers

// A bound of `range`: decimal, hexadecimal, binary and float texts are
// numbers; the integer elements read them as signed 32 bits.
bool rangeBound(const QString &text, bool asDouble, double *value)
{
    const NumberFormat::NumberClass cls = NumberFormat::classifyNumber(text);
    if (cls == NumberFormat::OtherText || cls == NumberFormat::Empty)
        return false;
    const QString normal = NumberFormat::normaliseNumber(text);
    bool ok = false;
    if (asDouble) {
        *value = normal.toDouble(&ok);
        return ok;
    }
    *value = normal.toInt(&ok);
    return ok;
}

// `range`, `default` and `step` of the numeric elements. Reports with the
// tag in messages; true with the bounds when `range` is usable.
bool readRange(DescriptionReader &reader, const QXmlStreamAttributes &a, const QString &tag, const QString &define,
               bool asDouble, double *minimum, double *maximum)
{
    if (!has(a, "range"))
        return false;
    const QStringList parts = attribute(a, "range").split(QLatin1Char(';'));
    bool minOk = rangeBound(parts.value(0).trimmed(), asDouble, minimum);
    bool maxOk = parts.size() == 2 && rangeBound(parts.value(1).trimmed(), asDouble, maximum);
    if (!minOk)
        reader.xmlMessage(QStringLiteral("min range in %1 is not a valid number").arg(tag), define, true);
    if (!maxOk)
        reader.xmlMessage(QStringLiteral("max range in %1 is not a valid number").arg(tag), define, true);
    if (minOk && maxOk && *minimum > *maximum) {
        reader.xmlMessage(QStringLiteral("min > max in %1").arg(tag), define, true);
        return false;
    }
    return minOk && maxOk;
}

void checkDefault(const QXmlStreamAttributes &a, const QString &define, double minimum, double maximum)
{
    QString text = attribute(a, "default");
    if (text.isEmpty())
        return;
    double v = 0;
    if (!SpinBox::numberOf(text, true, &v))
        return;
    if (v < minimum || v > maximum)
        Report::defaultOutOfRange(define, text, QString::number(minimum, 'g', 12), QString::number(maximum, 'g', 12));
}

bool readStep(DescriptionReader &reader, const QXmlStreamAttributes &a, const QString &define, double *step)
{
    if (!has(a, "step"))
        return false;
    const QString text = attribute(a, "step");
    const NumberFormat::NumberClass cls = NumberFormat::classifyNumber(text);
    if (cls != NumberFormat::Decimal && cls != NumberFormat::Hexadecimal) {
        reader.xmlMessage(QStringLiteral("\"step\" attribute invalid."), define, true);
        return false;
    }
    *step = NumberFormat::normaliseNumber(text).toDouble();
    return true;
}

template <class T>
void readIntegerAttributes(DescriptionReader &reader, T *widget, const QXmlStreamAttributes &a, const QString &tag)
{
    const QString define = widget->objectName();
    double minimum = 0;
    double maximum = 0;
    if (readRange(reader, a, tag, define, false, &minimum, &maximum))
        widget->setRange(int(minimum), int(maximum));
    checkDefault(a, define, widget->minimum(), widget->maximum());
    double step = 1;
    if (readStep(reader, a, define, &step))
        widget->setSingleStep(int(std::max(1.0, step)));
}

void readSpinText(QAbstractSpinBox *spin, const QXmlStreamAttributes &a)
{
    if (auto *s = qobject_cast<QSpinBox *>(spin)) {
        s->setPrefix(attribute(a, "prefix"));
        s->setSuffix(attribute(a, "suffix"));
    } else if (auto *d = qobject_cast<QDoubleSpinBox *>(spin)) {
        d->setPrefix(attribute(a, "prefix"));
        d->setSuffix(attribute(a, "suffix"));
    }
}

// -------------------------------------------------------------- branches

// Whether the element is to be a branch row of the tree it is read into.
bool isBranchControl(const QXmlStreamAttributes &a, Container *container)
{
    return attribute(a, "uielement") == QLatin1String("branch")
        && qobject_cast<TreeWidget *>(container->containerWidget());
}

// Makes the branch row the control sits in and wires the control's state
// to the rows under it.
TreeWidgetItem *makeBranch(DescriptionReader &reader, Container *container, QWidget *control,
                           const QXmlStreamAttributes &a)
{
    auto *tree = qobject_cast<TreeWidget *>(container->containerWidget());
    auto *parentRow = dynamic_cast<TreeWidgetItem *>(container);
    TreeWidgetItem *branch = tree->addBranch(parentRow, QString(), -1, reader.nextContainerName(QStringLiteral("BRANCH")));
    reader.tables().containers.insert(branch->objectName(), branch);
    tree->registerBranchControl(branch, control);
    QObject::connect(control, SIGNAL(toggled(bool)), tree, SLOT(disableBranch(bool)));
    if (has(a, "expand"))
        branch->applyExpand(attribute(a, "expand").toInt());
    return branch;
}

// The children of a branch control: `action` elements belong to the
// control, everything else becomes rows of its branch.
void readBranchChildren(DescriptionReader &reader, TreeWidgetItem *branch, QObject *owner,
                        const ActionReader::Events &events, const QString &key)
{
    g_actionOwners.append({owner, events, key});
    reader.readChildren(branch);
    g_actionOwners.removeLast();
}

// ----------------------------------------------------------------- flags

void readFlagAttributes(QWidget *widget, const QXmlStreamAttributes &a)
{
    if (attribute(a, "role") == QLatin1String("inverted"))
        widget->setProperty("inverted", true);
    widget->setProperty("lockinverted", attribute(a, "lockinverted").toUInt());
}

// The first steps a check box and a toggle share. A control that switches
// a tree branch stands in the branch row itself, so it is made without a
// parent; any other comes from its container.
template <class Flag>
Flag *makeFlag(DescriptionReader &reader, Container *container, const QXmlStreamAttributes &a, bool branch,
               Flag *(Container::*add)(const QString &, int, const QString &), const char *word)
{
    const QString define = takeDefine(reader, a);
    const QString label = attribute(a, "label");
    Flag *flag = nullptr;
    if (branch) {
        flag = new Flag(nullptr);
        flag->setObjectName(define);
        flag->setText(label);
    } else {
        flag = (container->*add)(label, -1, define);
    }
    requireDefine(reader, define, word);
    readFlagAttributes(flag, a);
    addLocks(flag, a, QStringLiteral("0"));
    return flag;
}

// The last steps: the children (branch rows, or only actions), refreshes.
template <class Flag>
void finishFlag(DescriptionReader &reader, Container *container, Flag *flag, const QXmlStreamAttributes &a,
                bool branch, const ActionReader::Events &events)
{
    if (branch)
        readBranchChildren(reader, makeBranch(reader, container, flag, a), flag, events, QStringLiteral("0"));
    else
        ActionReader::readActions(reader, flag, events);
    wireRefreshes(reader, flag, Refresh::Flag);
    markRaised(flag);
}

void readCheckBox(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const bool branch = isBranchControl(a, container);
    CheckBox *box = makeFlag<CheckBox>(reader, container, a, branch, &Container::addCheckBox, "Checkbox");
    readDefaultAndCommon(reader, box, box, a);
    finishFlag(reader, container, box, a, branch, ActionReader::checkBoxEvents());
}

void readToggleButton(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const bool branch = isBranchControl(a, container);
    ToggleButton *button =
        makeFlag<ToggleButton>(reader, container, a, branch, &Container::addToggleButton, "Togglebutton");
    const QString define = button->objectName();
    if (has(a, "icon")) {
        const QString path = reader.findFile(attribute(a, "icon"));
        button->setProperty("icon", attribute(a, "icon"));
        if (!button->setIconFile(path))
            reader.xmlMessage(QStringLiteral("Icon of <button> element couldn't be loaded."), define, true);
    }
    if (has(a, "nograyout"))
        button->setProperty("nograyout", attribute(a, "nograyout").toUInt());
    QString off;
    QString on;
    if (has(a, "offcolor")) {
        button->setProperty("OffColor", attribute(a, "offcolor"));
        off = attribute(a, "offcolor").replace(QLatin1Char(';'), QLatin1Char(','));
    }
    if (has(a, "oncolor")) {
        button->setProperty("OnColor", attribute(a, "oncolor"));
        on = attribute(a, "oncolor").replace(QLatin1Char(';'), QLatin1Char(','));
    }
    button->setColors(off, on);
    readDefaultAndCommon(reader, button, button, a);
    if (attribute(a, "enabled") == QLatin1String("false"))
        button->setEnabled(false);
    finishFlag(reader, container, button, a, branch, ActionReader::toggleButtonEvents());
}

// ----------------------------------------------------------------- lists

void readItem(DescriptionReader &reader, ComboBox *combo, QStringList &itemTexts)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    if (has(a, "startcond") && !StartCondition::holds(attribute(a, "startcond"), reader.options().defines)) {
        reader.xml().skipCurrentElement();
        return;
    }
    const QString label = attribute(a, "label");
    if (has(a, "hide")) {
        combo->hideEnumerated(NumberFormat::normaliseNumber(attribute(a, "hide")));
        reader.xml().skipCurrentElement();
        return;
    }
    const int index = combo->count();
    const QString key = QString::number(index);
    if (has(a, "override") || has(a, "overridevalue")) {
        const QString replaced = has(a, "override") ? attribute(a, "override") : attribute(a, "overridevalue");
        combo->addOverrideItem(label, NumberFormat::normaliseNumber(replaced));
    } else {
        const QString value = has(a, "value") ? NumberFormat::normaliseNumber(attribute(a, "value")) : key;
        combo->addListItem(label, value);
        itemTexts << value + QStringLiteral("#$#") + label;
        addLocks(combo, a, value);
    }
    addSetDefEntry(reader, combo, a, key);
    ActionReader::readActions(reader, combo, ActionReader::comboBoxEvents(), key, combo->objectName());
}

void readCombo(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = takeDefine(reader, a);
    ComboBox *combo = container->addComboBox(attribute(a, "label"), -1, define);
    requireDefine(reader, define, "Combobox");
    if (has(a, "lockon"))
        reader.xmlMessage(QStringLiteral("\"lockon\" is not allowed for combobox: "), define, true);
    readDefaultAndCommon(reader, combo, combo, a);

    QStringList itemTexts;
    QXmlStreamReader &xml = reader.xml();
    while (!xml.hasError() && xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("item"))
            readItem(reader, combo, itemTexts);
        else
            xml.skipCurrentElement();
    }
    combo->setProperty("itemText", itemTexts);
    wireRefreshes(reader, combo, Refresh::List);
    markRaised(combo);
}

void readRadio(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = takeDefine(reader, a);
    auto *group = new ButtonGroup(container->containerWidget(), define);
    requireDefine(reader, define, "Radio");
    if (has(a, "lockon"))
        reader.xmlMessage(QStringLiteral("\"lockon\" is not allowed for radio: "), define, true);
    readDefaultAndCommon(reader, group->widget(), group, a);
    // The anchor is no part of the form, whatever the attributes say.
    group->widget()->hide();

    g_radioGroups.append(group);
    reader.readChildren(container);
    g_radioGroups.removeLast();

    if (attribute(a, "readonly").toInt() != 0)
        group->setReadOnly(true);
    wireRefreshes(reader, group, Refresh::List);
    markRaised(group);
}

void readRadioButton(DescriptionReader &reader, Container *container)
{
    if (g_radioGroups.isEmpty()) {
        reader.xmlMessage(QStringLiteral("Found &lt;radiobutton&gt; element that's not within a &lt;radio&gt; element"),
                          QString(), true);
        reader.raiseError(QStringLiteral("Found <radiobutton> element that's not within a <radio> element at line nr.: %1")
                              .arg(reader.xml().lineNumber()));
        return;
    }
    ButtonGroup *group = g_radioGroups.last();
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString label = attribute(a, "label");
    const QString define = attribute(a, "define");
    const bool branch = isBranchControl(a, container);
    QRadioButton *button = nullptr;
    if (branch) {
        button = new QRadioButton(label, nullptr);
        button->setObjectName(define);
    } else {
        button = container->addRadioButton(label, -1, define);
    }
    group->addRadioButton(button, attribute(a, "value"));
    addLocks(group, a, ButtonGroup::buttonValue(button));
    const QString key = QString::number(group->id(button));
    // The button's own setDef counts under the group's first key.
    addSetDefEntry(reader, group, a, QStringLiteral("0"));
    CommonAttributes::apply(reader, button, a);
    if (branch)
        readBranchChildren(reader, makeBranch(reader, container, button, a), group, ActionReader::radioEvents(), key);
    else
        ActionReader::readActions(reader, group, ActionReader::radioEvents(), key, group->define());
}

// --------------------------------------------------------------- numbers

void readSpinBoxLike(DescriptionReader &reader, Container *container, bool hex)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = takeDefine(reader, a);
    const QString label = attribute(a, "label");
    SpinBox *spin = hex ? container->addHexSpinBox(label, -1, define) : container->addSpinBox(label, -1, define);
    requireDefine(reader, define, hex ? "Hexspinbox" : "Spinbox");
    readIntegerAttributes(reader, spin, a, hex ? QStringLiteral("hexspinbox") : QStringLiteral("spinbox"));
    readSpinText(spin, a);
    readDefaultAndCommon(reader, spin, spin, a);
    ActionReader::readActions(reader, spin, ActionReader::spinBoxEvents());
    wireRefreshes(reader, spin, Refresh::Number);
    markRaised(spin);
}

void readSlider(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = takeDefine(reader, a);
    Slider *slider = container->addSlider(attribute(a, "label"), -1, define);
    requireDefine(reader, define, "Slider");
    readIntegerAttributes(reader, slider, a, QStringLiteral("slider"));
    const int orientation = attribute(a, "orientation").toInt();
    slider->setProperty("orientation", orientation);
    slider->setOrientation(orientation == 0 ? Qt::Horizontal : Qt::Vertical);
    if (has(a, "image")) {
        const QString path = reader.findFile(attribute(a, "image"));
        if (path.isEmpty())
            reader.xmlMessage(QStringLiteral("Image file not found in UI element"), define, true);
        else
            slider->setStyleSheet(QStringLiteral("QSlider::groove:horizontal {background-image:url(%1); max-height: 20px;} QSlider::handle:horizontal {background-color:blue; height:16px; width: 4px;}")
                                      .arg(path));
    }
    // The groove image is the slider's own; the common step must not take
    // it for a background.
    QXmlStreamAttributes common;
    for (const QXmlStreamAttribute &attr : a) {
        if (attr.name() != QLatin1String("image"))
            common.append(attr);
    }
    readDefaultAndCommon(reader, slider, slider, common);
    ActionReader::readActions(reader, slider, ActionReader::spinBoxEvents());
    wireRefreshes(reader, slider, Refresh::Number);
    markRaised(slider);
}

void readKnob(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = takeDefine(reader, a);
    Knob *knob = container->addKnob(attribute(a, "label"), -1, define);
    requireDefine(reader, define, "Knob");
    double minimum = 0;
    double maximum = 0;
    if (readRange(reader, a, QStringLiteral("knob"), define, true, &minimum, &maximum))
        knob->setRange(minimum, maximum);
    checkDefault(a, define, knob->lowerBound(), knob->upperBound());
    double step = 1;
    if (readStep(reader, a, define, &step))
        knob->setStep(step);
    knob->setInteger(attribute(a, "integer").toInt() != 0);
    readDefaultAndCommon(reader, knob, knob, a);
    ActionReader::readActions(reader, knob, ActionReader::knobEvents());
    wireRefreshes(reader, knob, Refresh::Number);
    markRaised(knob);
}

void readDoubleSpinBox(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = takeDefine(reader, a);
    DoubleSpinBox *spin = container->addDoubleSpinBox(attribute(a, "label"), -1, define);
    requireDefine(reader, define, "Doublespinbox");
    double minimum = 0;
    double maximum = 0;
    if (readRange(reader, a, QStringLiteral("doublespinbox"), define, true, &minimum, &maximum))
        spin->setRange(minimum, maximum);
    if (has(a, "default"))
        spin->setDecimals(DoubleSpinBox::decimalsOf(attribute(a, "default")));
    checkDefault(a, define, spin->minimum(), spin->maximum());
    double step = 1;
    if (readStep(reader, a, define, &step))
        spin->setSingleStep(step);
    readSpinText(spin, a);
    readDefaultAndCommon(reader, spin, spin, a);
    ActionReader::readActions(reader, spin, ActionReader::doubleSpinBoxEvents());
    wireRefreshes(reader, spin, Refresh::Plain);
    markRaised(spin);
}

// ----------------------------------------------------------------- texts

void readLineEdit(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = takeDefine(reader, a);
    LineEdit *edit = container->addLineEdit(attribute(a, "label"), -1, define);
    requireDefine(reader, define, "Lineedit");
    edit->setNumeric(attribute(a, "numeric").toInt() != 0);
    if (has(a, "validator")) {
        edit->setProperty("validator", attribute(a, "validator"));
        edit->setValidator(new QRegExpValidator(QRegExp(attribute(a, "validator")), edit));
    }
    readDefaultAndCommon(reader, edit, edit, a);
    if (attribute(a, "visible") == QLatin1String("false"))
        edit->setVisible(false);
    ActionReader::readActions(reader, edit, ActionReader::Events());
    wireRefreshes(reader, edit, Refresh::Plain);
    markRaised(edit);
}

void readTextEdit(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = takeDefine(reader, a);
    TextEdit *edit = container->addTextEdit(attribute(a, "label"), -1, define);
    requireDefine(reader, define, "Editbox");
    readDefaultAndCommon(reader, edit, edit, a);
    ActionReader::readActions(reader, edit, ActionReader::Events());
    wireRefreshes(reader, edit, Refresh::Plain);
    markRaised(edit);
}

// An `action` met among the rows of a branch belongs to the control of
// that branch; anywhere else it is skipped like any unknown element.
void readStrayAction(DescriptionReader &reader, Container *)
{
    if (!g_actionOwners.isEmpty()) {
        const ActionOwner &owner = g_actionOwners.last();
        ActionReader::readAction(reader, owner.object, reader.xml().attributes(), owner.events, owner.key);
    }
    reader.xml().skipCurrentElement();
}

} // namespace

void ValueElementReaders::install(DescriptionReader &reader)
{
    reader.registerHandler(QStringLiteral("checkbox"), readCheckBox);
    reader.registerHandler(QStringLiteral("togglebutton"), readToggleButton);
    reader.registerHandler(QStringLiteral("combo"), readCombo);
    reader.registerHandler(QStringLiteral("radio"), readRadio);
    reader.registerHandler(QStringLiteral("radiobutton"), readRadioButton);
    reader.registerHandler(QStringLiteral("spinbox"),
                           [](DescriptionReader &r, Container *c) { readSpinBoxLike(r, c, false); });
    reader.registerHandler(QStringLiteral("hexspinbox"),
                           [](DescriptionReader &r, Container *c) { readSpinBoxLike(r, c, true); });
    reader.registerHandler(QStringLiteral("slider"), readSlider);
    reader.registerHandler(QStringLiteral("knob"), readKnob);
    reader.registerHandler(QStringLiteral("doublespinbox"), readDoubleSpinBox);
    reader.registerHandler(QStringLiteral("edit"), readLineEdit);
    reader.registerHandler(QStringLiteral("editbox"), readTextEdit);
    reader.registerHandler(QStringLiteral("action"), readStrayAction);
}
