#pragma once
#include <QList>
#include <QString>

class Container;
class Document;
class QModelIndex;
class QObject;
class QStandardItem;
class QStandardItemModel;
class QWidget;

// The form editor's tree: one item per element of the live form, nested as
// the containers nest, then one item per hidden value. Each item holds the
// address of its object in WidgetRole. A radio group is one item (its
// anchor) with the group's buttons under it.
class FormTree
{
public:
    static const int WidgetRole = 0x101;

    FormTree(Document &document, QStandardItemModel *model);

    // Empties the model and fills it from the form's root.
    void fill();

    // The object behind an item or index; null when none.
    static QObject *objectOf(const QStandardItem *item);
    static QObject *objectOf(const QModelIndex &index);
    static QWidget *widgetOf(const QModelIndex &index);

    // An item for one object (text, icon, address), without children.
    static QStandardItem *makeItem(QObject *object);
    // An item for a widget with the items of everything inside it.
    QStandardItem *makeTree(QWidget *widget);

    // The item that holds an object; null when none does.
    QStandardItem *itemOf(const QObject *object) const;

    // The elements a container holds, in its own order (layout, pages, line
    // order of a grid, creation order of an absolute container). Spacers and
    // lines, which are no elements, are left out; radio buttons are there.
    static QList<QWidget *> elementsOf(Container *container);
    // The container a widget sits in (a tab page's is the tab).
    static Container *containerOf(const QWidget *widget);
    // The text an item shows: a container's label, else the define.
    static QString textOf(const QObject *object);

    // Names that every document has and the tree leaves out.
    static bool isBuiltInName(const QString &name);

private:
    void fillChildren(QStandardItem *parent, Container *container);

    Document &m_document;
    QStandardItemModel *m_model;
};
