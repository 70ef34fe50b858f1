#pragma once
#include <QStyledItemDelegate>

class AttributeTable;

// The picture rows ("File" of an image, "image" of a slider, "Icon" of a
// button): a file dialog for image files in the description's folder. The
// cell keeps the name relative to that folder where it lies inside it, as
// a description would write it. In quiet mode the dialog counts as
// cancelled.
class FileDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit FileDelegate(AttributeTable *table, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *, const QStyleOptionViewItem &, const QModelIndex &) const override {}

private:
    AttributeTable *m_table;
};
