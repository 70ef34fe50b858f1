#include "tooling/ElementFactory.h"

#include "config/Checksum.h"
#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "elements/SlotWiring.h"
#include "reader/DescriptionReader.h"
#include "shell/AppVersion.h"
#include "shell/Document.h"
#include "tooling/InsertionPoint.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QSet>
#include <QWidget>
#include <QXmlStreamWriter>

namespace {

// The element of the fragment inside which the new elements stand; the
// reader hands its children to the insertion point.
const char kPlaceElement[] = "editorplace";

QString escaped(const QString &text)
{
    return text.toHtmlEscaped();
}

QSet<ActiveElement *> elementSet(const DocumentTables &tables)
{
    QSet<ActiveElement *> set;
    for (ActiveElement *element : tables.elementList)
        set.insert(element);
    return set;
}

} // namespace

ElementFactory::ElementFactory(Document &document)
    : m_document(document)
{
}

bool ElementFactory::isTaken(const Document &document, const QString &name)
{
    auto &t = const_cast<Document &>(document).tables();
    if (t.elements.contains(name) || t.dataValues.contains(name) || t.containers.contains(name)
        || t.leds.contains(name) || t.images.contains(name) || t.dials.contains(name) || t.thermos.contains(name)
        || t.plots.contains(name) || t.timers.contains(name) || t.pushButtons.contains(name))
        return true;
    // Texts and lines are in no table, but their names are still taken.
    QWidget *root = document.root();
    return root && (root->objectName() == name || root->findChild<QObject *>(name));
}

QString ElementFactory::freeDefine(const Document &document, const QString &base)
{
    QString name;
    for (int n = 0; n <= 9999; ++n) {
        name = QStringLiteral("%1_%2").arg(base).arg(n);
        if (!isTaken(document, name))
            break;
    }
    return name;
}

QString ElementFactory::fragmentFor(ElementKind::Kind kind, const QString &define)
{
    const QString tag = ElementKind::xmlName(kind);
    const QString d = escaped(define);
    if (ElementKind::isContainer(kind))
        return QStringLiteral("<%1 label=\"%2\"/>").arg(tag, d);
    switch (kind) {
    case ElementKind::Radio:
        return QStringLiteral("<radio define=\"%1\"><radiobutton label=\"%1\" value=\"0\"/></radio>").arg(d);
    case ElementKind::Combo:
        return QStringLiteral("<combo define=\"%1\"><item label=\"0\" value=\"0\"/></combo>").arg(d);
    case ElementKind::Spinbox:
    case ElementKind::HexSpinbox:
    case ElementKind::Slider:
    case ElementKind::Knob:
    case ElementKind::DoubleSpinbox:
        return QStringLiteral("<%1 define=\"%2\" range=\"0;100\"/>").arg(tag, d);
    case ElementKind::MathLabel:
        return QStringLiteral("<math define=\"%1\" formula=\"0\"/>").arg(d);
    case ElementKind::Image:
        return QStringLiteral("<image label=\"Filename\"/>");
    case ElementKind::LED:
        return QStringLiteral("<led define=\"%1\" data=\"dummy_define\"/>").arg(d);
    case ElementKind::Timer:
        return QStringLiteral("<timer define=\"%1\" interval=\"1000\"/>").arg(d);
    case ElementKind::Dial:
    case ElementKind::Thermo:
        return QStringLiteral("<%1 define=\"%2\" min=\"0\" max=\"100\"/>").arg(tag, d);
    default:
        return QStringLiteral("<%1 define=\"%2\" label=\"%2\"/>").arg(tag, d);
    }
}

QWidget *ElementFactory::add(Container *target, int index, ElementKind::Kind kind)
{
    if (!target || kind < 0 || kind >= ElementKind::Count)
        return nullptr;
    const QString base = ElementKind::defaultDefine(kind);
    const QString define = base.isEmpty() ? QString() : freeDefine(m_document, base);
    const QList<QWidget *> made = read(target, index, fragmentFor(kind, define));
    QWidget *widget = made.value(0);
    if (ElementKind::isContainer(kind)) {
        if (Container *container = asContainer(widget))
            renameContainer(container, define);
    }
    // An LED is named after what it watches; a new one watches nothing yet.
    if (kind == ElementKind::LED && widget)
        widget->setObjectName(define);
    return widget;
}

QList<QWidget *> ElementFactory::read(Container *target, int index, const QString &fragment)
{
    m_errorText.clear();
    if (!target)
        return {};
    DocumentTables &tables = m_document.tables();
    const QHash<QString, Container *> containersBefore = tables.containers;
    const QSet<ActiveElement *> elementsBefore = elementSet(tables);

    // A whole signed description around the fragment, so that the reader
    // takes it like a file; the throw-away root hands its one child element
    // to the insertion point.
    const QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<nvxmlcfg version=\"%1\">\n"
                                        "<checksum>%2</checksum>\n<verticalcontainer><%3>%4</%3></verticalcontainer>\n"
                                        "</nvxmlcfg>\n")
                             .arg(AppVersion::text(), Checksum::placeholder(), QLatin1String(kPlaceElement), fragment);
    QByteArray bytes = Checksum::signedText(text);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);

    ReaderOptions options;
    options.slotHost = m_document.slotHost();
    options.model = &m_document.model();
    InsertionPoint place(target, index);
    DescriptionReader reader(tables, options);
    reader.registerHandler(QLatin1String(kPlaceElement),
                           [&place](DescriptionReader &r, Container *) { r.readChildren(&place); });
    const bool loading = tables.loading;
    tables.loading = true;
    const bool ok = reader.read(&buffer, m_document.path().isEmpty() ? QStringLiteral("fragment.xml") : m_document.path());
    tables.loading = loading;
    if (!ok)
        m_errorText = reader.errorString();
    QWidget *scratch = reader.takeRootWidget();

    // The throw-away root took an entry the real root may have had; every
    // container the fragment made gets a name of its own.
    const QList<Container *> oldList = containersBefore.values();
    const QSet<Container *> oldContainers(oldList.begin(), oldList.end());
    QList<Container *> fresh;
    for (Container *container : qAsConst(tables.containers)) {
        if (!oldContainers.contains(container) && container->containerWidget() != scratch && !fresh.contains(container))
            fresh << container;
    }
    tables.containers = containersBefore;
    for (Container *container : qAsConst(fresh)) {
        QString name = container->objectName();
        if (tables.containers.contains(name)) {
            name = freeDefine(m_document, name);
            if (auto *widget = dynamic_cast<QWidget *>(container))
                widget->setObjectName(name);
        }
        tables.containers.insert(name, container);
    }
    delete scratch;

    // Started like the elements of a new document: default first, then
    // signals, so that the default causes no action.
    for (ActiveElement *element : tables.elementList.toList()) {
        if (elementsBefore.contains(element))
            continue;
        element->applyDefault();
        element->connectSignals();
    }

    QList<QWidget *> made = place.placed();
    for (QWidget *widget : qAsConst(made)) {
        if (auto *radio = qobject_cast<QAbstractButton *>(widget)) {
            if (auto *group = dynamic_cast<ButtonGroup *>(radio->group())) {
                if (!made.contains(group->widget()))
                    made.prepend(group->widget());
            }
        }
    }
    return made;
}

DataClass *ElementFactory::addVar(const QString &name)
{
    const QString define = name.trimmed();
    if (define.isEmpty() || isTaken(m_document, define))
        return nullptr;
    // The `var` element's own reader registers and wires the value; a var
    // lives outside the form, so no widget is placed.
    Container *root = asContainer(m_document.root());
    if (!root)
        return nullptr;
    read(root, -1, QStringLiteral("<var define=\"%1\"/>").arg(escaped(define)));
    DataClass *data = m_document.tables().dataValue(define);
    if (data)
        data->applyDefault();
    return data;
}

void ElementFactory::renameContainer(Container *container, const QString &name)
{
    auto *widget = dynamic_cast<QWidget *>(container);
    if (!container || !widget || name.isEmpty())
        return;
    DocumentTables &tables = m_document.tables();
    const QString old = container->objectName();
    if (tables.containers.value(old) == container)
        tables.containers.remove(old);
    widget->setObjectName(name);
    tables.containers.insert(name, container);
}
