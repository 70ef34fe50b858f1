#include "tooling/ElementXmlWriter.h"

#include "elements/ButtonGroup.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "reader/ActionReader.h"
#include "reader/ElementAttributes.h"
#include "tooling/ComboItemText.h"
#include "views/Table.h"

#include <QAbstractButton>
#include <QHash>
#include <QWidget>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

// Writes the element the reader stands at, with everything inside it.
void copyCurrent(QXmlStreamReader &in, QXmlStreamWriter &out)
{
    out.writeStartElement(in.qualifiedName().toString());
    for (const QXmlStreamAttribute &a : in.attributes())
        out.writeAttribute(a.qualifiedName().toString(), a.value().toString());
    while (!in.atEnd() && !in.hasError()) {
        const QXmlStreamReader::TokenType token = in.readNext();
        if (token == QXmlStreamReader::StartElement) {
            copyCurrent(in, out);
        } else if (token == QXmlStreamReader::Characters) {
            if (in.isCDATA())
                out.writeCDATA(in.text().toString());
            else if (!in.isWhitespace())
                out.writeCharacters(in.text().toString());
        } else if (token == QXmlStreamReader::EndElement) {
            break;
        }
    }
    out.writeEndElement();
}

// The attributes of the child elements of a kept text with a given name.
QList<QXmlStreamAttributes> childAttributes(const QString &text, const QString &name)
{
    QList<QXmlStreamAttributes> list;
    QXmlStreamReader in(text);
    if (!in.readNextStartElement())
        return list;
    while (in.readNextStartElement()) {
        if (in.name() == name)
            list.append(in.attributes());
        in.skipCurrentElement();
    }
    return list;
}

bool isReservedVar(const QString &name)
{
    return name.startsWith(QLatin1Char('$')) || name == QLatin1String("dummy_define");
}

} // namespace

ElementXmlWriter::ElementXmlWriter(QXmlStreamWriter &xml, DocumentTables &tables)
    : m_xml(xml)
    , m_tables(tables)
{
}

void ElementXmlWriter::index(const KeptElement &document)
{
    for (const auto &child : document.children) {
        if (child->target)
            m_byObject.insert(child->target.data(), child.get());
        index(*child);
    }
}

KeptElement::Attributes ElementXmlWriter::merged(const KeptElement &element, QObject *object)
{
    KeptElement::Attributes out;
    QSet<QString> owned;
    if (object) {
        QHash<QString, QString> asRead;
        for (const auto &pair : element.readAttributes) {
            asRead.insert(pair.first, pair.second);
            owned.insert(pair.first);
        }
        QHash<QString, QString> kept;
        for (const auto &pair : element.attributes)
            kept.insert(pair.first, pair.second);
        for (const auto &pair : ElementAttributes::current(object)) {
            owned.insert(pair.first);
            // Untouched since reading: the text as the author wrote it.
            const bool same = asRead.contains(pair.first) && asRead.value(pair.first) == pair.second;
            if (!same)
                out.append(pair);
            else if (kept.contains(pair.first))
                out.append({pair.first, kept.value(pair.first)});
            else if (pair.first == QLatin1String("header"))
                // From the header group the element stood in: groups are
                // folded into the attribute.
                out.append(pair);
            // Else a value the reader made up itself: left for it to make
            // up again.
        }
    }
    for (const auto &pair : element.attributes) {
        // The start condition held, or the element would not be here.
        if (owned.contains(pair.first) || pair.first == QLatin1String("startcond"))
            continue;
        out.append(pair);
    }
    return out;
}

void ElementXmlWriter::copy(QXmlStreamWriter &xml, const QString &text)
{
    QXmlStreamReader in(text);
    if (in.readNextStartElement())
        copyCurrent(in, xml);
}

void ElementXmlWriter::writeAttributes(const KeptElement::Attributes &attributes)
{
    for (const auto &pair : attributes)
        m_xml.writeAttribute(pair.first, pair.second);
}

QWidget *ElementXmlWriter::containerWidgetOf(QObject *object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    for (QWidget *p = static_cast<QWidget *>(object)->parentWidget(); p; p = p->parentWidget()) {
        if (asContainer(p))
            return p;
    }
    return nullptr;
}

void ElementXmlWriter::writeKept(const KeptElement &element, QWidget *context, bool root)
{
    // Removed in the editor.
    if (element.hadTarget && !element.target)
        return;
    QObject *object = element.target.data();
    if (object && m_written.contains(object))
        return;
    // Moved to another container in the editor: written there.
    if (object && context && object->isWidgetType() && containerWidgetOf(object) != context)
        return;
    if (object)
        m_written.insert(object);

    m_xml.writeStartElement(element.name);
    writeAttributes(merged(element, object));
    Container *container = object ? asContainer(object) : nullptr;
    if (!element.children.isEmpty() || container) {
        QWidget *inner = container ? container->containerWidget() : context;
        // The elements of this container take the places they had when read,
        // in the order they stand in now: a move inside the container in the
        // form editor moves them in the file. What has no place in the form
        // (records, radio groups) stays where it was read.
        const QList<QWidget *> live = container && inner ? liveOrder(inner) : QList<QWidget *>();
        int next = 0;
        for (const auto &child : element.children) {
            QObject *target = child->target.data();
            if (!target || !target->isWidgetType() || !live.contains(static_cast<QWidget *>(target))) {
                writeKept(*child, inner);
                continue;
            }
            while (next < live.size() && m_written.contains(live.at(next)))
                ++next;
            if (next == live.size())
                continue;
            QWidget *widget = live.at(next++);
            if (const KeptElement *kept = m_byObject.value(widget))
                writeKept(*kept, nullptr);
            else
                writeLive(widget);
        }
        if (container && inner)
            writeUnkept(inner);
        if (root)
            writeNewVars();
    } else {
        writeKeptChildren(element, object);
    }
    m_xml.writeEndElement();
}

void ElementXmlWriter::writeKeptChildren(const KeptElement &element, QObject *object)
{
    // The child families the editor changed are written from the object;
    // the others as read.
    QStringList families;
    if (object) {
        const QVariantMap now = ElementAttributes::childState(object);
        auto changed = [&now, &element](const char *key) {
            return now.value(QLatin1String(key)) != element.readChildState.value(QLatin1String(key));
        };
        const QString name = ElementAttributes::elementName(object);
        if (name == QLatin1String("combo")) {
            if (changed("itemText") || changed("locks") || changed("data"))
                families << QStringLiteral("item");
        } else if (name == QLatin1String("table")) {
            if (changed("columns"))
                families << QStringLiteral("column");
        } else if (name == QLatin1String("plot")) {
            if (changed("data"))
                families << QStringLiteral("curve");
        } else if (name != QLatin1String("led") && name != QLatin1String("dial") && name != QLatin1String("thermo")
                   && name != QLatin1String("radiobutton") && changed("data")) {
            families << QStringLiteral("action");
        }
    }
    QXmlStreamReader in(element.text);
    if (in.readNextStartElement()) {
        while (!in.atEnd() && !in.hasError()) {
            const QXmlStreamReader::TokenType token = in.readNext();
            if (token == QXmlStreamReader::StartElement) {
                if (families.contains(in.name().toString()))
                    in.skipCurrentElement();
                else
                    copyCurrent(in, m_xml);
            } else if (token == QXmlStreamReader::Characters && !in.isWhitespace()) {
                m_xml.writeCharacters(in.text().toString());
            } else if (token == QXmlStreamReader::EndElement) {
                break;
            }
        }
    }
    if (families.contains(QLatin1String("item")))
        writeItems(object);
    if (families.contains(QLatin1String("column")))
        writeColumns(object);
    if (families.contains(QLatin1String("curve")))
        writeCurves(object, element.text);
    if (families.contains(QLatin1String("action")))
        writeActions(ElementAttributes::propertyHolder(object), QStringLiteral("0"));
}

void ElementXmlWriter::collectElements(QWidget *widget, QList<QWidget *> &elements)
{
    // Down to the first element on each path: what lies inside an element
    // (a spin box's line edit, a tab's pages behind its stack) is its own.
    for (QObject *child : widget->children()) {
        if (!child->isWidgetType())
            continue;
        auto *w = static_cast<QWidget *>(child);
        if (!ElementAttributes::elementName(w).isEmpty())
            elements.append(w);
        else
            collectElements(w, elements);
    }
}

QList<QWidget *> ElementXmlWriter::liveOrder(QWidget *container)
{
    QList<QWidget *> elements;
    collectElements(container, elements);
    // Radio buttons go with their group, which holds their place.
    elements.erase(std::remove_if(elements.begin(), elements.end(),
                                  [](QWidget *w) { return ElementAttributes::elementName(w) == QLatin1String("radiobutton"); }),
                   elements.end());
    Container *owner = asContainer(container);
    if (!owner)
        return elements;
    // The position in the container's layout, page or cell order, found
    // through the wrapper an element may sit in (a label row); -1 where the
    // container has no order for it (absolute, tree, a hidden element).
    auto positionOf = [owner, container](QWidget *w) {
        for (QWidget *at = w; at && at != container; at = at->parentWidget()) {
            const int position = owner->positionOf(at);
            if (position >= 0)
                return position;
        }
        return -1;
    };
    QList<int> places;
    QList<QPair<int, QWidget *>> placed;
    for (int i = 0; i < elements.size(); ++i) {
        const int position = positionOf(elements.at(i));
        if (position < 0)
            continue;
        places << i;
        placed << qMakePair(position, elements.at(i));
    }
    std::stable_sort(placed.begin(), placed.end(),
                     [](const QPair<int, QWidget *> &a, const QPair<int, QWidget *> &b) { return a.first < b.first; });
    for (int i = 0; i < places.size(); ++i)
        elements[places.at(i)] = placed.at(i).second;
    return elements;
}

void ElementXmlWriter::writeUnkept(QWidget *container)
{
    QList<QWidget *> widgets;
    collectElements(container, widgets);
    for (QWidget *widget : widgets) {
        if (m_written.contains(widget))
            continue;
        if (const KeptElement *kept = m_byObject.value(widget))
            writeKept(*kept, nullptr);
        else
            writeLive(widget);
    }
}

void ElementXmlWriter::writeLive(QObject *object)
{
    const QString name = ElementAttributes::elementName(object);
    // A radio button is written with its group.
    if (name.isEmpty() || name == QLatin1String("radiobutton") || m_written.contains(object))
        return;
    m_written.insert(object);
    m_xml.writeStartElement(name);
    writeAttributes(ElementAttributes::current(object));
    if (Container *container = asContainer(object)) {
        if (QWidget *inner = container->containerWidget())
            writeUnkept(inner);
    } else if (name == QLatin1String("radio")) {
        auto *group = qobject_cast<ButtonGroup *>(ElementAttributes::propertyHolder(object));
        const QVariantMap locks = group->property("locks").toMap();
        const QList<QAbstractButton *> buttons = group->buttons();
        for (int i = 0; i < buttons.size(); ++i) {
            QAbstractButton *button = buttons.at(i);
            m_written.insert(button);
            const QString value = ButtonGroup::buttonValue(button);
            m_xml.writeStartElement(QStringLiteral("radiobutton"));
            writeAttributes(ElementAttributes::current(button));
            m_xml.writeAttribute(QStringLiteral("value"), value);
            const QString lockOn = locks.value(value).toStringList().join(QLatin1Char(';'));
            if (!lockOn.isEmpty())
                m_xml.writeAttribute(QStringLiteral("lockon"), lockOn);
            writeActions(group, QString::number(i));
            m_xml.writeEndElement();
        }
    } else {
        writeLiveChildren(object, {QStringLiteral("item"), QStringLiteral("column"), QStringLiteral("curve"),
                                   QStringLiteral("action")});
    }
    m_xml.writeEndElement();
}

void ElementXmlWriter::writeLiveChildren(QObject *object, const QStringList &families)
{
    const QString name = ElementAttributes::elementName(object);
    if (name == QLatin1String("combo") && families.contains(QLatin1String("item")))
        writeItems(object);
    else if (name == QLatin1String("table") && families.contains(QLatin1String("column")))
        writeColumns(object);
    else if (name == QLatin1String("plot") && families.contains(QLatin1String("curve")))
        writeCurves(object, QString());
    else if (name != QLatin1String("led") && name != QLatin1String("dial") && name != QLatin1String("thermo")
             && families.contains(QLatin1String("action")))
        writeActions(ElementAttributes::propertyHolder(object), QStringLiteral("0"));
}

void ElementXmlWriter::writeActions(QObject *holder, const QString &key)
{
    const QStringList entries = holder->property("data").toMap().value(key).toStringList();
    int at = 0;
    while (at + 3 <= entries.size()) {
        const QString signal = entries.at(at);
        const bool send = ActionReader::isSendUsbName(signal);
        const int width = send ? 5 : 3;
        const int split = signal.indexOf(QLatin1Char('_'));
        m_xml.writeStartElement(QStringLiteral("action"));
        m_xml.writeAttribute(QStringLiteral("event"), signal.left(split));
        m_xml.writeAttribute(QStringLiteral("cmd"), signal.mid(split + 1));
        if (!entries.at(at + 1).isEmpty())
            m_xml.writeAttribute(QStringLiteral("cond"), entries.at(at + 1));
        m_xml.writeAttribute(QStringLiteral("data"), entries.at(at + 2));
        if (send && at + 4 < entries.size()) {
            if (!entries.at(at + 3).isEmpty())
                m_xml.writeAttribute(QStringLiteral("recdata"), entries.at(at + 3));
            if (!entries.at(at + 4).isEmpty())
                m_xml.writeAttribute(QStringLiteral("delay"), entries.at(at + 4));
        }
        m_xml.writeEndElement();
        at += width;
    }
}

void ElementXmlWriter::writeItems(QObject *combo)
{
    const QStringList items = combo->property("itemText").toStringList();
    const QVariantMap locks = combo->property("locks").toMap();
    for (int i = 0; i < items.size(); ++i) {
        const ComboItemText item = ComboItemText::parse(items.at(i));
        m_xml.writeStartElement(QStringLiteral("item"));
        item.writeAttributes(m_xml);
        // A hidden value is no entry of the list: nothing locks or acts.
        if (item.hide.isEmpty()) {
            const QString lockOn = locks.value(item.value).toStringList().join(QLatin1Char(';'));
            if (!item.value.isEmpty() && !lockOn.isEmpty())
                m_xml.writeAttribute(QStringLiteral("lockon"), lockOn);
            writeActions(combo, QString::number(i));
        }
        m_xml.writeEndElement();
    }
}

void ElementXmlWriter::writeCurves(QObject *plot, const QString &keptText)
{
    const QStringList data = plot->property("data").toStringList();
    const QList<QXmlStreamAttributes> kept = childAttributes(keptText, QStringLiteral("curve"));
    for (int i = 0; i < data.size(); ++i) {
        m_xml.writeStartElement(QStringLiteral("curve"));
        const QXmlStreamAttributes former = kept.value(i);
        if (former.hasAttribute(QLatin1String("label")))
            m_xml.writeAttribute(QStringLiteral("label"), former.value(QLatin1String("label")).toString());
        m_xml.writeAttribute(QStringLiteral("data"), data.at(i));
        for (const char *name : {"color", "width"}) {
            if (former.hasAttribute(QLatin1String(name)))
                m_xml.writeAttribute(QLatin1String(name), former.value(QLatin1String(name)).toString());
        }
        m_xml.writeEndElement();
    }
}

void ElementXmlWriter::writeColumns(QObject *object)
{
    auto *table = qobject_cast<Table *>(object);
    if (!table)
        return;
    static const char *const types[] = {"regname", "address", "func", "value", "delay",
                                        "answer",  "comment", "delete", "math"};
    for (int i = 0; i < table->columnCount(); ++i) {
        const TableColumn &c = table->column(i);
        m_xml.writeStartElement(QStringLiteral("column"));
        const QList<QPair<QString, QString>> attributes = {
            {QStringLiteral("label"), c.label},
            {QStringLiteral("tooltip"), c.tooltip},
            {QStringLiteral("type"), c.kind >= 0 && c.kind < 9 ? QLatin1String(types[c.kind]) : QString()},
            {QStringLiteral("columnwidth"), QString::number(c.columnWidth)},
            {QStringLiteral("format"), c.format},
            {QStringLiteral("default"), c.defaultText},
            {QStringLiteral("source"), c.source}};
        for (const auto &pair : attributes) {
            if (!pair.second.isEmpty())
                m_xml.writeAttribute(pair.first, pair.second);
        }
        m_xml.writeEndElement();
    }
}

void ElementXmlWriter::writeNewVars()
{
    QList<DataClass *> vars;
    for (DataClass *data : m_tables.dataValues) {
        if (data && !m_written.contains(data) && !isReservedVar(data->objectName()))
            vars.append(data);
    }
    std::sort(vars.begin(), vars.end(),
              [](DataClass *a, DataClass *b) { return a->objectName() < b->objectName(); });
    for (DataClass *data : vars) {
        m_written.insert(data);
        m_xml.writeStartElement(QStringLiteral("var"));
        writeAttributes(ElementAttributes::current(data));
        m_xml.writeEndElement();
    }
}
