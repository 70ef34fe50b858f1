#include "tooling/ElementCloner.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/Container.h"
#include "elements/DoubleSpinBox.h"
#include "elements/GridWidget.h"
#include "elements/Knob.h"
#include "elements/Led.h"
#include "elements/LineEdit.h"
#include "elements/MathLabel.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/TimerLabel.h"
#include "reader/ActionReader.h"
#include "shell/Document.h"
#include "tooling/ComboItemText.h"
#include "tooling/ElementFactory.h"
#include "tooling/ElementKind.h"
#include "tooling/FormTree.h"
#include "views/MyQwtPlot.h"
#include "views/Table.h"

#include <qwt_dial.h>
#include <qwt_plot_curve.h>
#include <qwt_text.h>
#include <qwt_thermo.h>

#include <QAbstractButton>
#include <QPen>
#include <QVariantMap>
#include <QXmlStreamWriter>

namespace {

// Dynamic properties that describe the source's own place in the document
// rather than its settings: the copy gets its own.
bool isOwnState(const QByteArray &name)
{
    return name == "msb" || name == "lsb" || name == "address" || name == "isRaised" || name == "define"
        || name.startsWith("_q_");
}

QString text(const QObject *object, const char *name)
{
    return object->property(name).toString();
}

ButtonGroup *groupOf(QWidget *widget)
{
    if (auto *group = widget->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly))
        return group;
    auto *button = qobject_cast<QAbstractButton *>(widget);
    return button ? dynamic_cast<ButtonGroup *>(button->group()) : nullptr;
}

QString numberText(double value)
{
    return QString::number(value, 'g', 15);
}

const char *const kTableTypes[] = {"regname", "address", "func", "value", "delay", "answer", "comment", "delete", "math"};

} // namespace

ElementCloner::ElementCloner(Document &document, ElementFactory &factory)
    : m_document(document)
    , m_factory(factory)
{
}

QString ElementCloner::copyName(const QString &source) const
{
    const QString name = source + QStringLiteral("_Copy");
    return ElementFactory::isTaken(m_document, name) ? ElementFactory::freeDefine(m_document, name) : name;
}

QWidget *ElementCloner::clone(QWidget *source, Container *target, int index)
{
    if (!source || !target)
        return nullptr;
    if (asContainer(source))
        return cloneContainer(source, target, index);
    const ElementKind::Kind kind = ElementKind::of(source);
    if (kind == ElementKind::Unknown)
        return nullptr;
    QWidget *origin = source;
    if (ButtonGroup *group = groupOf(source))
        origin = group->widget();
    QString define = origin->objectName();
    // An LED's object name is made from what it watches; its define is the
    // name it is registered under.
    if (kind == ElementKind::LED)
        define = m_document.tables().leds.key(origin, define);
    if (define.isEmpty() && kind != ElementKind::Image)
        define = QStringLiteral("Neuerdefine");
    const QString name = define.isEmpty() ? QString() : copyName(define);
    const QList<QWidget *> made = m_factory.read(target, index, fragmentOf(origin, name));
    QWidget *copy = made.value(0);
    if (!copy)
        return nullptr;

    if (ButtonGroup *group = groupOf(origin)) {
        ButtonGroup *copyGroup = groupOf(copy);
        copyProperties(group, copyGroup);
        wireActions(copyGroup, m_document.slotHost());
        const QList<QAbstractButton *> buttons = group->buttons();
        const QList<QAbstractButton *> copies = copyGroup ? copyGroup->buttons() : QList<QAbstractButton *>();
        for (int i = 0; i < buttons.size() && i < copies.size(); ++i)
            copyProperties(buttons.at(i), copies.at(i));
        return copy;
    }
    copyProperties(origin, copy);
    if (!name.isEmpty() && kind != ElementKind::LED)
        copy->setObjectName(name);
    if (dynamic_cast<ActiveElement *>(copy) || ElementKind::of(copy) == ElementKind::Button)
        wireActions(copy, m_document.slotHost());
    if (kind == ElementKind::Slider)
        copy->setStyleSheet(origin->styleSheet());
    if (kind == ElementKind::Plot)
        copy->setFont(QFont(QStringLiteral("Helvetica")));
    return copy;
}

QWidget *ElementCloner::cloneContainer(QWidget *source, Container *target, int index)
{
    const ElementKind::Kind kind = ElementKind::of(source);
    if (!ElementKind::isContainer(kind))
        return nullptr;
    QString fragment;
    QXmlStreamWriter xml(&fragment);
    xml.writeStartElement(ElementKind::xmlName(kind));
    xml.writeAttribute(QStringLiteral("label"), text(source, "my_label"));
    if (auto *grid = qobject_cast<GridWidget *>(source))
        xml.writeAttribute(QStringLiteral("columns"), QString::number(grid->columns()));
    writeCommon(xml, source);
    xml.writeEndElement();

    QWidget *copy = m_factory.read(target, index, fragment).value(0);
    Container *container = asContainer(copy);
    if (!container)
        return copy;
    copyProperties(source, copy);
    m_factory.renameContainer(container, copyName(source->objectName().isEmpty() ? QStringLiteral("Neuerdefine")
                                                                                  : source->objectName()));
    QList<ButtonGroup *> groupsDone;
    for (QWidget *child : FormTree::elementsOf(asContainer(source))) {
        if (ButtonGroup *group = groupOf(child)) {
            if (groupsDone.contains(group))
                continue;
            groupsDone << group;
        }
        clone(child, container, -1);
    }
    return copy;
}

void ElementCloner::writeCommon(QXmlStreamWriter &xml, const QObject *source)
{
    static const char *const pairs[][2] = {
        {"Sizepolicy", "sizepolicy"}, {"Size", "size"},        {"Color", "color"},   {"Pos", "pos"},
        {"my_font", "font"},          {"my_default", "default"}, {"header", "header"}, {"my_svd", "svd"},
        {"my_readonly", "readonly"},
    };
    for (const auto &pair : pairs) {
        const QString value = text(source, pair[0]);
        if (!value.isEmpty())
            xml.writeAttribute(QLatin1String(pair[1]), value);
    }
}

QString ElementCloner::fragmentOf(QWidget *source, const QString &define)
{
    const ElementKind::Kind kind = ElementKind::of(source);
    QString fragment;
    QXmlStreamWriter xml(&fragment);
    xml.writeStartElement(ElementKind::xmlName(kind));
    if (!define.isEmpty())
        xml.writeAttribute(QStringLiteral("define"), define);
    auto attr = [&xml](const char *name, const QString &value) {
        if (!value.isEmpty())
            xml.writeAttribute(QLatin1String(name), value);
    };
    auto kept = [&](const char *property, const char *name) { attr(name, text(source, property)); };
    QString label = text(source, "my_label");
    if (auto *button = qobject_cast<QAbstractButton *>(source))
        label = button->text();
    if (label.isEmpty() && kind != ElementKind::Radio)
        label = QStringLiteral("NeuerLabel");

    switch (kind) {
    case ElementKind::Checkbox:
    case ElementKind::ToggleButton:
        attr("label", label);
        if (source->property("inverted").toBool())
            attr("role", QStringLiteral("inverted"));
        kept("lockinverted", "lockinverted");
        kept("OnColor", "oncolor");
        kept("OffColor", "offcolor");
        kept("icon", "icon");
        kept("nograyout", "nograyout");
        if (auto *element = dynamic_cast<ActiveElement *>(source)) {
            const QStringList locks = element->property("locks").toMap().value(QStringLiteral("0")).toStringList();
            attr("lockon", locks.join(QLatin1Char(';')));
        }
        break;
    case ElementKind::Button:
    case ElementKind::Text:
        attr("label", label);
        kept("Icon", "icon");
        kept("nograyout", "nograyout");
        break;
    case ElementKind::Spinbox:
    case ElementKind::HexSpinbox:
        if (auto *spin = qobject_cast<QSpinBox *>(source)) {
            attr("range", QStringLiteral("%1;%2").arg(spin->minimum()).arg(spin->maximum()));
            attr("step", QString::number(spin->singleStep()));
            attr("prefix", spin->prefix());
            attr("suffix", spin->suffix());
        }
        break;
    case ElementKind::DoubleSpinbox:
        if (auto *spin = qobject_cast<QDoubleSpinBox *>(source)) {
            attr("range", numberText(spin->minimum()) + QLatin1Char(';') + numberText(spin->maximum()));
            attr("step", numberText(spin->singleStep()));
            attr("prefix", spin->prefix());
            attr("suffix", spin->suffix());
        }
        break;
    case ElementKind::Slider:
        if (auto *slider = qobject_cast<QSlider *>(source)) {
            attr("range", QStringLiteral("%1;%2").arg(slider->minimum()).arg(slider->maximum()));
            attr("step", QString::number(slider->singleStep()));
            attr("orientation", QString::number(slider->orientation() == Qt::Horizontal ? 0 : 1));
        }
        break;
    case ElementKind::Knob:
        if (auto *knob = qobject_cast<Knob *>(source))
            attr("range", numberText(knob->lowerBound()) + QLatin1Char(';') + numberText(knob->upperBound()));
        break;
    case ElementKind::LineEdit:
        kept("numeric", "numeric");
        kept("validator", "validator");
        break;
    case ElementKind::MathLabel:
        if (auto *math = qobject_cast<MathLabel *>(source)) {
            attr("formula", text(source, "expression"));
            attr("format", QString::fromUtf8(math->format()));
        }
        kept("suffix", "unit");
        break;
    case ElementKind::Image:
        attr("label", label);
        kept("File", "file");
        break;
    case ElementKind::LED:
        if (auto *led = qobject_cast<Led *>(source)) {
            attr("data", led->watchedDefine());
            attr("bitmask", text(source, "bitmask").isEmpty() ? QStringLiteral("0x%1").arg(led->mask(), 0, 16)
                                                                : text(source, "bitmask"));
            attr("oncolor", led->onColor());
            attr("offcolor", led->offColor());
            attr("shape", led->shape());
        }
        break;
    case ElementKind::Timer:
        if (auto *timer = qobject_cast<TimerLabel *>(source)) {
            attr("run", QString::number(timer->run()));
            attr("singleShot", QString::number(timer->singleShot()));
            attr("interval", QString::number(timer->interval()));
        }
        break;
    case ElementKind::Dial:
    case ElementKind::Thermo:
    case ElementKind::Plot:
        // These keep every attribute they were read with.
        for (const QByteArray &name : source->dynamicPropertyNames()) {
            if (isOwnState(name) || name == "my_label" || name.startsWith("my_") || name.at(0) < 'a')
                continue;
            const QVariant value = source->property(name.constData());
            if (value.type() == QVariant::String && !value.toString().isEmpty())
                xml.writeAttribute(QString::fromLatin1(name), value.toString());
        }
        break;
    case ElementKind::RegView:
        kept("readwritebuddy", "readwritebuddy");
        break;
    case ElementKind::Table:
        if (auto *table = qobject_cast<Table *>(source)) {
            attr("numrows", QString::number(table->numRows()));
            attr("sendformat", table->sendFormat());
            attr("recformat", table->recFormat());
            attr("tooltiprecformat", table->toolTipRecFormat());
        }
        break;
    default:
        break;
    }
    if (kind != ElementKind::Dial && kind != ElementKind::Thermo && kind != ElementKind::Plot)
        writeCommon(xml, source);

    // Children: items, buttons, curves, columns.
    if (kind == ElementKind::Combo) {
        const QVariantMap locks = source->property("locks").toMap();
        for (const QString &entry : source->property("itemText").toStringList()) {
            const ComboItemText item = ComboItemText::parse(entry);
            xml.writeStartElement(QStringLiteral("item"));
            item.writeAttributes(xml);
            const QStringList lockList = locks.value(item.value).toStringList();
            if (item.hide.isEmpty() && !item.value.isEmpty() && !lockList.isEmpty())
                xml.writeAttribute(QStringLiteral("lockon"), lockList.join(QLatin1Char(';')));
            xml.writeEndElement();
        }
    } else if (kind == ElementKind::Radio) {
        if (ButtonGroup *group = groupOf(source)) {
            const QVariantMap locks = group->property("locks").toMap();
            for (QAbstractButton *button : group->buttons()) {
                xml.writeStartElement(QStringLiteral("radiobutton"));
                xml.writeAttribute(QStringLiteral("label"), button->text().isEmpty() ? QStringLiteral("NeuerLabel")
                                                                                     : button->text());
                if (!button->objectName().isEmpty())
                    xml.writeAttribute(QStringLiteral("define"), copyName(button->objectName()));
                const QString value = ButtonGroup::buttonValue(button);
                xml.writeAttribute(QStringLiteral("value"), value);
                const QStringList lockList = locks.value(value).toStringList();
                if (!lockList.isEmpty())
                    xml.writeAttribute(QStringLiteral("lockon"), lockList.join(QLatin1Char(';')));
                writeCommon(xml, button);
                xml.writeEndElement();
            }
        }
    } else if (auto *plot = qobject_cast<MyQwtPlot *>(source)) {
        for (int i = 0; i < plot->curveCount(); ++i) {
            xml.writeStartElement(QStringLiteral("curve"));
            xml.writeAttribute(QStringLiteral("label"), plot->curve(i)->title().text());
            xml.writeAttribute(QStringLiteral("data"), plot->curveData(i));
            const QColor color = plot->curve(i)->pen().color();
            xml.writeAttribute(QStringLiteral("color"),
                               QStringLiteral("%1;%2;%3").arg(color.red()).arg(color.green()).arg(color.blue()));
            xml.writeEndElement();
        }
    } else if (auto *table = qobject_cast<Table *>(source)) {
        for (int i = 0; i < table->columnCount(); ++i) {
            const TableColumn &column = table->column(i);
            xml.writeStartElement(QStringLiteral("column"));
            xml.writeAttribute(QStringLiteral("label"), column.label);
            xml.writeAttribute(QStringLiteral("tooltip"), column.tooltip);
            if (column.kind >= 0 && column.kind < int(sizeof kTableTypes / sizeof kTableTypes[0]))
                xml.writeAttribute(QStringLiteral("type"), QLatin1String(kTableTypes[column.kind]));
            xml.writeAttribute(QStringLiteral("columnwidth"), QString::number(column.columnWidth));
            xml.writeAttribute(QStringLiteral("format"), column.format);
            xml.writeAttribute(QStringLiteral("default"), column.defaultText);
            xml.writeAttribute(QStringLiteral("source"), column.source);
            xml.writeEndElement();
        }
    }
    xml.writeEndElement();
    return fragment;
}

void ElementCloner::copyProperties(const QObject *from, QObject *to)
{
    if (!from || !to)
        return;
    for (const QByteArray &name : from->dynamicPropertyNames()) {
        if (isOwnState(name))
            continue;
        // Through the element's own property access where it has one: a
        // radio group keeps its properties on the group, not the anchor.
        if (auto *element = dynamic_cast<ActiveElement *>(to))
            element->setProperty(name.constData(), from->property(name.constData()));
        else
            to->setProperty(name.constData(), from->property(name.constData()));
    }
}

void ElementCloner::wireActions(QObject *element, QObject *host)
{
    if (!element || !host)
        return;
    const QVariant data = element->property("data");
    if (data.type() != QVariant::Map)
        return;
    const QVariantMap map = data.toMap();
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        const QStringList entries = it.value().toStringList();
        for (int i = 0; i < entries.size();) {
            const QString name = entries.at(i);
            const QString command = name.section(QLatin1Char('_'), 1);
            if (command.isEmpty())
                break;
            ActionReader::connectAction(element, name, host, command);
            i += command == QLatin1String("sendUSB") ? 5 : 3;
        }
    }
}
