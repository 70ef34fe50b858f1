#pragma once
#include <QModelIndexList>
#include <QObject>
#include <QPointer>
#include <memory>

#include "tooling/ElementKind.h"

class Document;
class ElementCloner;
class ElementFactory;
class ElementRemover;
class FormTree;
class QStandardItem;
class QStandardItemModel;
class QWidget;

// The editing operations of the form editor on a live form and its tree:
// add, remove, copy, cut, paste and moves. Each changes the form and the
// tree together, so the tree always shows the form as it is. A target that
// does not fit is ignored (the operation returns an invalid index or false).
class FormEditor : public QObject
{
    Q_OBJECT
public:
    // Where a dropped row goes relative to the row it was dropped on (the
    // values of QAbstractItemView::DropIndicatorPosition).
    enum DropPosition { OnItem = 0, AboveItem = 1, BelowItem = 2, OnViewport = 3 };

    FormEditor(Document &document, QStandardItemModel *model, QObject *parent = nullptr);
    ~FormEditor() override;

    FormTree &tree() { return *m_tree; }

    // A new element of the kind: into the current container at its end, or
    // behind the current element in its container. The new item's index.
    QModelIndex add(ElementKind::Kind kind, const QModelIndex &current);
    // A hidden value; invalid index when the name is empty or taken.
    QModelIndex addVar(const QString &name);
    // Removes the element or hidden value of the index with its row.
    bool remove(const QModelIndex &index);
    // Keeps the element (for a radio button, its group) for paste.
    void copy(const QModelIndex &index);
    // copy() then remove(); nothing without a selection.
    bool cut(const QModelIndex &index);
    // A copy of the kept element into the current container, or behind the
    // current element. The copy's index.
    QModelIndex paste(const QModelIndex &current);
    QWidget *clipboard() const { return m_clipboard; }

    // Moves the selected rows' elements to the drop target. False when
    // nothing moved.
    bool drop(const QModelIndex &target, int position, const QModelIndexList &selection);

    // The word a drop position is logged with.
    static QString positionWord(int position);

    QString errorText() const { return m_errorText; }

signals:
    // The form changed (for the window's modified mark).
    void formChanged();

private:
    bool moveWidget(QWidget *widget, QStandardItem *destination, int index, int row);
    QModelIndex insertItem(QWidget *widget, QStandardItem *parent, int row);

    Document &m_document;
    QStandardItemModel *m_model;
    std::unique_ptr<FormTree> m_tree;
    std::unique_ptr<ElementFactory> m_factory;
    std::unique_ptr<ElementRemover> m_remover;
    std::unique_ptr<ElementCloner> m_cloner;
    QPointer<QWidget> m_clipboard;
    QString m_errorText;
};
