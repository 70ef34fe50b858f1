#pragma once
#include <QDialog>
#include <functional>

class ActiveElement;
class QStandardItemModel;
class QTreeView;

// A window with the loaded SVD model as a tree: peripherals and registers
// with their addresses, fields with the value of the element bound to them.
// A double click on a field with an element shows that element.
class ShowSvdDialog : public QDialog
{
    Q_OBJECT
public:
    using ShowElement = std::function<void(ActiveElement *element)>;
    explicit ShowSvdDialog(ShowElement show, QWidget *parent = nullptr);

    QStandardItemModel *treeModel() const { return m_model; }
    void fill();

public slots:
    void on_doubleClicked(const QModelIndex &index);

private:
    ShowElement m_show;
    QTreeView *m_tree;
    QStandardItemModel *m_model;
};
