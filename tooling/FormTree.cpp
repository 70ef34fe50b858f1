#include "tooling/FormTree.h"

#include "elements/AbsoluteWidget.h"
#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "elements/GridWidget.h"
#include "elements/TreeWidget.h"
#include "shell/Document.h"
#include "tooling/ElementKind.h"

#include <QAbstractButton>
#include <QLayout>
#include <QStandardItemModel>
#include <QTabWidget>

namespace {

ButtonGroup *groupOfAnchor(const QObject *object)
{
    return object ? object->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

ButtonGroup *groupOfButton(const QWidget *widget)
{
    auto *button = qobject_cast<const QAbstractButton *>(widget);
    return button ? dynamic_cast<ButtonGroup *>(button->group()) : nullptr;
}

// What belongs in the tree: elements of a known kind, containers, value
// elements without a kind of the editor, and radio anchors.
bool isElement(QWidget *widget)
{
    return ElementKind::of(widget) != ElementKind::Unknown || asContainer(widget)
        || dynamic_cast<ActiveElement *>(widget);
}

} // namespace

FormTree::FormTree(Document &document, QStandardItemModel *model)
    : m_document(document)
    , m_model(model)
{
}

bool FormTree::isBuiltInName(const QString &name)
{
    return name == QLatin1String("$FUNC$") || name == QLatin1String("$VALUE$") || name == QLatin1String("$ADDRESS$")
        || name == QLatin1String("dummy_define");
}

QObject *FormTree::objectOf(const QStandardItem *item)
{
    if (!item)
        return nullptr;
    return reinterpret_cast<QObject *>(item->data(WidgetRole).value<quint64>());
}

QObject *FormTree::objectOf(const QModelIndex &index)
{
    if (!index.isValid())
        return nullptr;
    return reinterpret_cast<QObject *>(index.sibling(index.row(), 0).data(WidgetRole).value<quint64>());
}

QWidget *FormTree::widgetOf(const QModelIndex &index)
{
    return qobject_cast<QWidget *>(objectOf(index));
}

QString FormTree::textOf(const QObject *object)
{
    if (!object)
        return QString();
    if (asContainer(const_cast<QObject *>(object))) {
        const QString label = object->property("my_label").toString();
        return label.isEmpty() ? object->objectName() : label;
    }
    if (!object->objectName().isEmpty())
        return object->objectName();
    const QString label = object->property("my_label").toString();
    if (!label.isEmpty())
        return label;
    if (auto *button = qobject_cast<const QAbstractButton *>(object))
        return button->text();
    return ElementKind::menuText(ElementKind::of(object));
}

QStandardItem *FormTree::makeItem(QObject *object)
{
    ElementKind::Kind kind = ElementKind::of(object);
    if (qobject_cast<DataClass *>(object))
        kind = ElementKind::Var;
    QString text = textOf(object);
    if (kind == ElementKind::Radio && groupOfAnchor(object) && text.isEmpty())
        text = QStringLiteral("Radio");
    auto *item = new QStandardItem(text);
    const QString image = ElementKind::imagePath(kind == ElementKind::Unknown ? ElementKind::Text : kind);
    item->setIcon(QIcon(image));
    item->setData(QVariant::fromValue(quint64(reinterpret_cast<quintptr>(object))), WidgetRole);
    item->setEditable(false);
    item->setToolTip(QString::fromLatin1(object->metaObject()->className()));
    return item;
}

QStandardItem *FormTree::makeTree(QWidget *widget)
{
    QStandardItem *item = makeItem(widget);
    if (ButtonGroup *group = groupOfAnchor(widget)) {
        for (QAbstractButton *button : group->buttons())
            item->appendRow(makeItem(button));
    } else if (Container *container = asContainer(widget)) {
        fillChildren(item, container);
    }
    return item;
}

void FormTree::fill()
{
    m_model->clear();
    m_model->setColumnCount(1);
    if (QWidget *root = m_document.root())
        m_model->appendRow(makeTree(root));
    QStringList names = m_document.tables().dataValues.keys();
    names.sort();
    for (const QString &name : qAsConst(names)) {
        if (!isBuiltInName(name))
            m_model->appendRow(makeItem(m_document.tables().dataValue(name)));
    }
}

void FormTree::fillChildren(QStandardItem *parent, Container *container)
{
    // The displays and views are leaves; so is a tree container, whose rows
    // are no widgets of their own.
    if (qobject_cast<TreeWidget *>(container->containerWidget()))
        return;
    QList<ButtonGroup *> groupsDone;
    for (QWidget *child : elementsOf(container)) {
        if (ButtonGroup *group = groupOfButton(child)) {
            if (groupsDone.contains(group))
                continue;
            groupsDone << group;
            parent->appendRow(makeTree(group->widget()));
            continue;
        }
        parent->appendRow(makeTree(child));
    }
}

QList<QWidget *> FormTree::elementsOf(Container *container)
{
    QList<QWidget *> result;
    QWidget *self = container ? container->containerWidget() : nullptr;
    if (!self)
        return result;
    if (auto *tab = qobject_cast<QTabWidget *>(self)) {
        for (int i = 0; i < tab->count(); ++i)
            result << tab->widget(i);
    } else if (auto *grid = qobject_cast<GridWidget *>(self)) {
        result = grid->orderedChildren();
    } else if (qobject_cast<AbsoluteWidget *>(self) || !self->layout()) {
        for (QObject *object : self->children()) {
            auto *widget = qobject_cast<QWidget *>(object);
            if (widget && !widget->isWindow())
                result << widget;
        }
    } else {
        QLayout *layout = self->layout();
        for (int i = 0; i < layout->count(); ++i) {
            if (QWidget *widget = layout->itemAt(i)->widget())
                result << widget;
        }
    }
    QList<QWidget *> elements;
    for (QWidget *widget : qAsConst(result)) {
        // A radio anchor stands for its buttons, which are listed anyway.
        if (groupOfAnchor(widget))
            continue;
        if (isElement(widget))
            elements << widget;
    }
    return elements;
}

Container *FormTree::containerOf(const QWidget *widget)
{
    QWidget *parent = widget ? widget->parentWidget() : nullptr;
    while (parent) {
        if (Container *container = asContainer(parent))
            return container;
        parent = parent->parentWidget();
    }
    return nullptr;
}

QStandardItem *FormTree::itemOf(const QObject *object) const
{
    if (!object)
        return nullptr;
    const QModelIndexList found =
        m_model->match(m_model->index(0, 0), WidgetRole, QVariant::fromValue(quint64(reinterpret_cast<quintptr>(object))),
                       1, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : m_model->itemFromIndex(found.first());
}
