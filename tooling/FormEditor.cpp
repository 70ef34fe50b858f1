#include "tooling/FormEditor.h"

#include "elements/ButtonGroup.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "shell/Document.h"
#include "tooling/ElementCloner.h"
#include "tooling/ElementFactory.h"
#include "tooling/ElementRemover.h"
#include "tooling/FormTree.h"

#include <QAbstractButton>
#include <QDebug>
#include <QStandardItemModel>
#include <QTabWidget>

namespace {

// A radio button stands for its group wherever a whole element is meant.
QWidget *wholeElement(QWidget *widget)
{
    auto *button = qobject_cast<QAbstractButton *>(widget);
    if (auto *group = button ? dynamic_cast<ButtonGroup *>(button->group()) : nullptr)
        return group->widget();
    return widget;
}

bool isRadioAnchor(const QWidget *widget)
{
    return widget && widget->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly);
}

// The label a widget is put into a container with (a tab's page text).
QString placeLabel(QWidget *widget)
{
    const QString label = widget->property("my_label").toString();
    return label.isEmpty() ? widget->objectName() : label;
}

} // namespace

FormEditor::FormEditor(Document &document, QStandardItemModel *model, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_model(model)
    , m_tree(new FormTree(document, model))
    , m_factory(new ElementFactory(document))
    , m_remover(new ElementRemover(document))
    , m_cloner(new ElementCloner(document, *m_factory))
{
}

FormEditor::~FormEditor() = default;

QString FormEditor::positionWord(int position)
{
    switch (position) {
    case OnItem:
        return QStringLiteral("OnItem");
    case AboveItem:
        return QStringLiteral("AboveItem");
    case BelowItem:
        return QStringLiteral("BelowItem");
    default:
        return QStringLiteral("OnViewport");
    }
}

QModelIndex FormEditor::insertItem(QWidget *widget, QStandardItem *parent, int row)
{
    QStandardItem *item = m_tree->makeTree(widget);
    if (row < 0 || row > parent->rowCount())
        row = parent->rowCount();
    parent->insertRow(row, item);
    emit formChanged();
    return item->index();
}

QModelIndex FormEditor::add(ElementKind::Kind kind, const QModelIndex &current)
{
    m_errorText.clear();
    QStandardItem *item = m_model->itemFromIndex(current.sibling(current.row(), 0));
    QWidget *widget = FormTree::widgetOf(current);
    if (!item || !widget)
        return QModelIndex();
    if (Container *container = asContainer(widget)) {
        if (QWidget *made = m_factory->add(container, -1, kind))
            return insertItem(made, item, -1);
        m_errorText = m_factory->errorText();
        return QModelIndex();
    }
    // Behind the current element, in the container its row sits in.
    QStandardItem *parentItem = item->parent();
    Container *container = parentItem ? asContainer(FormTree::objectOf(parentItem)) : nullptr;
    if (!container)
        return QModelIndex();
    const int position = container->positionOf(wholeElement(widget));
    QWidget *made = m_factory->add(container, position < 0 ? -1 : position + 1, kind);
    if (!made) {
        m_errorText = m_factory->errorText();
        return QModelIndex();
    }
    return insertItem(made, parentItem, item->row() + 1);
}

QModelIndex FormEditor::addVar(const QString &name)
{
    DataClass *data = m_factory->addVar(name);
    if (!data)
        return QModelIndex();
    QStandardItem *item = FormTree::makeItem(data);
    m_model->appendRow(item);
    emit formChanged();
    return item->index();
}

bool FormEditor::remove(const QModelIndex &index)
{
    m_errorText.clear();
    QStandardItem *item = m_model->itemFromIndex(index.sibling(index.row(), 0));
    QObject *object = FormTree::objectOf(index);
    if (!item || !object)
        return false;
    // The last button of a group takes the group along.
    QStandardItem *parent = item->parent();
    if (parent && parent->rowCount() == 1 && isRadioAnchor(qobject_cast<QWidget *>(FormTree::objectOf(parent))))
        return remove(parent->index());
    bool removed = false;
    if (qobject_cast<DataClass *>(object))
        removed = m_remover->removeValue(object);
    else if (auto *widget = qobject_cast<QWidget *>(object))
        removed = m_remover->removeWidget(widget);
    if (!removed) {
        m_errorText = m_remover->errorText();
        if (!m_errorText.isEmpty())
            qDebug() << m_errorText;
        return false;
    }
    (parent ? parent : m_model->invisibleRootItem())->removeRow(item->row());
    emit formChanged();
    return true;
}

void FormEditor::copy(const QModelIndex &index)
{
    QWidget *widget = FormTree::widgetOf(index);
    if (widget && widget != m_document.root())
        m_clipboard = wholeElement(widget);
}

bool FormEditor::cut(const QModelIndex &index)
{
    if (!FormTree::widgetOf(index) || FormTree::widgetOf(index) == m_document.root())
        return false;
    copy(index);
    // What is cut is what paste brings back: a radio button's whole group.
    QStandardItem *item = m_tree->itemOf(m_clipboard);
    return remove(item ? item->index() : index);
}

QModelIndex FormEditor::paste(const QModelIndex &current)
{
    m_errorText.clear();
    QStandardItem *item = m_model->itemFromIndex(current.sibling(current.row(), 0));
    QWidget *widget = FormTree::widgetOf(current);
    if (!m_clipboard || !item || !widget)
        return QModelIndex();
    QStandardItem *parentItem = item;
    Container *container = asContainer(widget);
    int position = -1;
    int row = -1;
    if (!container) {
        parentItem = item->parent();
        container = parentItem ? asContainer(FormTree::objectOf(parentItem)) : nullptr;
        if (!container)
            return QModelIndex();
        const int at = container->positionOf(wholeElement(widget));
        position = at < 0 ? -1 : at + 1;
        row = item->row() + 1;
    }
    QWidget *copy = m_cloner->clone(m_clipboard, container, position);
    if (!copy) {
        m_errorText = m_factory->errorText();
        return QModelIndex();
    }
    return insertItem(copy, parentItem, row);
}

bool FormEditor::moveWidget(QWidget *widget, QStandardItem *destination, int index, int row)
{
    Container *target = asContainer(FormTree::objectOf(destination));
    Container *source = FormTree::containerOf(widget);
    if (!target || !source)
        return false;
    QWidget *targetWidget = target->containerWidget();
    // Never into itself or into something inside it.
    if (targetWidget == widget || widget->isAncestorOf(targetWidget)) {
        m_errorText = tr("%1 can't be moved into itself.").arg(widget->objectName());
        qDebug() << m_errorText;
        return false;
    }
    QList<QWidget *> widgets;
    if (auto *group = widget->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly)) {
        for (QAbstractButton *button : group->buttons())
            widgets << button;
        // The anchor follows into the new container.
        widget->setParent(targetWidget);
        widget->hide();
    } else {
        widgets << widget;
    }
    for (QWidget *w : qAsConst(widgets)) {
        Container *from = FormTree::containerOf(w);
        const int old = from ? from->positionOf(w) : -1;
        if (from == target && index >= 0 && old >= 0 && old < index)
            --index;
        if (from)
            from->releaseChild(w);
        const bool shown = !w->isHidden() || !w->testAttribute(Qt::WA_WState_ExplicitShowHide);
        target->addWidget(w, placeLabel(w), index);
        if (w->parentWidget() != targetWidget && !qobject_cast<QTabWidget *>(targetWidget))
            w->setParent(targetWidget);
        if (shown)
            w->show();
        if (index >= 0)
            ++index;
    }

    // The row follows the widget.
    QStandardItem *item = m_tree->itemOf(widget);
    if (item) {
        QStandardItem *oldParent = item->parent() ? item->parent() : m_model->invisibleRootItem();
        const int oldRow = item->row();
        if (oldParent == destination && row > oldRow)
            --row;
        const QList<QStandardItem *> taken = oldParent->takeRow(oldRow);
        if (row < 0 || row > destination->rowCount())
            row = destination->rowCount();
        destination->insertRow(row, taken);
    }
    emit formChanged();
    return true;
}

bool FormEditor::drop(const QModelIndex &target, int position, const QModelIndexList &selection)
{
    m_errorText.clear();
    qDebug() << positionWord(position);
    if (position == OnViewport || !target.isValid())
        return false;
    QStandardItem *targetItem = m_model->itemFromIndex(target.sibling(target.row(), 0));
    QWidget *targetWidget = FormTree::widgetOf(target);
    if (!targetItem || !targetWidget)
        return false;

    // The widgets first: moving one changes the indexes of the others.
    QList<QWidget *> dragged;
    for (const QModelIndex &index : selection) {
        if (index.column() != 0 || !index.parent().isValid())
            continue;
        QWidget *widget = FormTree::widgetOf(index);
        if (widget && !dragged.contains(widget))
            dragged << widget;
    }
    bool moved = false;
    for (QWidget *widget : qAsConst(dragged)) {
        qDebug() << "Dropping " << widget->objectName() << targetWidget->objectName();
        if (widget == targetWidget)
            continue;
        QStandardItem *destination = nullptr;
        int index = -1;
        int row = -1;
        if (asContainer(targetWidget) && position == OnItem) {
            qDebug() << "Container case";
            destination = targetItem;
        } else {
            qDebug() << (asContainer(targetWidget) ? "Container case" : "Widget case");
            destination = targetItem->parent();
            Container *parent = destination ? asContainer(FormTree::objectOf(destination)) : nullptr;
            if (!parent)
                continue;
            const int at = parent->positionOf(wholeElement(targetWidget));
            index = at < 0 ? -1 : at + (position == BelowItem ? 1 : 0);
            row = targetItem->row() + (position == BelowItem ? 1 : 0);
        }
        moved = moveWidget(widget, destination, index, row) || moved;
    }
    return moved;
}
