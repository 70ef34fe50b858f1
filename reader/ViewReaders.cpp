#include "reader/ViewReaders.h"

#include "elements/Container.h"
#include "elements/DocumentTables.h"
#include "reader/CommonAttributes.h"
#include "reader/DescriptionReader.h"
#include "views/RegisterView.h"
#include "views/SvdTree.h"
#include "views/Table.h"

namespace {

QString attribute(const QXmlStreamAttributes &a, const char *name)
{
    return a.value(QLatin1String(name)).toString();
}

bool has(const QXmlStreamAttributes &a, const char *name)
{
    return a.hasAttribute(QLatin1String(name));
}

// Steps every view shares: the define checked, the widget placed and named,
// the common attributes, the registration, and the window's refreshes.
template <class T>
T *place(DescriptionReader &reader, Container *container, const QXmlStreamAttributes &a)
{
    const QString define = attribute(a, "define");
    if (!define.isEmpty())
        reader.checkDuplicateDefine(define, DescriptionReader::ElementDefine);
    auto *view = new T(container->containerWidget());
    view->setObjectName(define);
    container->addWidget(view, attribute(a, "label"), -1);
    CommonAttributes::apply(reader, view, a);
    DocumentTables &tables = reader.tables();
    if (!define.isEmpty() && !tables.element(define))
        tables.addElement(define, view);
    reader.connectToHost(view, SIGNAL(updateMathLabels()), SLOT(on_updateMathLabel()));
    return view;
}

TableColumn readColumn(const QXmlStreamAttributes &a)
{
    TableColumn column;
    column.label = attribute(a, "label");
    column.tooltip = attribute(a, "tooltip");
    column.kind = has(a, "type") ? Table::kindOf(attribute(a, "type")) : -1;
    const QString width = attribute(a, "columnwidth").trimmed();
    if (!width.isEmpty())
        column.columnWidth = qint16(width.toInt());
    column.format = attribute(a, "format");
    column.defaultText = attribute(a, "default");
    column.source = attribute(a, "source");
    return column;
}

void readTable(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    Table *table = place<Table>(reader, container, a);
    reader.connectToHost(table, SIGNAL(changedByUser()), SLOT(changed()));
    if (has(a, "numrows")) {
        // Truncated to 16 bits, as the row count always was.
        const QString text = attribute(a, "numrows").trimmed();
        bool ok = false;
        quint64 rows = text.toULongLong(&ok);
        if (!ok)
            rows = quint64(text.toLongLong(&ok));
        table->setNumRows(ok ? quint16(rows & 0xFFFF) : 2);
    }
    table->setFormats(attribute(a, "sendformat"), attribute(a, "recformat"), attribute(a, "tooltiprecformat"));
    QXmlStreamReader &xml = reader.xml();
    while (!xml.hasError() && xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("column"))
            table->addColumn(readColumn(xml.attributes()));
        xml.skipCurrentElement();
    }
    table->buildModel();
}

void readRegisterView(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    RegisterView *view = place<RegisterView>(reader, container, a);
    if (has(a, "readwritebuddy"))
        view->setBuddy(attribute(a, "readwritebuddy"));
    reader.xml().skipCurrentElement();
}

void readSvdTree(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    if (attribute(a, "define").isEmpty())
        reader.xmlMessage(QStringLiteral("svdTree without define is not allowed: "), QString(), true);
    SvdTree *tree = place<SvdTree>(reader, container, a);
    reader.connectToHost(tree, SIGNAL(changedByUser()), SLOT(changed()));
    tree->setShowSvdOnly(attribute(a, "showSvdOnly").toInt() != 0);
    tree->setShowValues(attribute(a, "showValues").toInt() != 0);
    reader.xml().skipCurrentElement();
}

} // namespace

void ViewReaders::install(DescriptionReader &reader)
{
    reader.registerHandler(QStringLiteral("table"), readTable);
    reader.registerHandler(QStringLiteral("registerview"), readRegisterView);
    reader.registerHandler(QStringLiteral("svdtree"), readSvdTree);
}
