#pragma once
#include <QStyledItemDelegate>

class AttributeTable;

// Colour cells ("%1;%2;%3"): a colour dialog starting at the cell's colour,
// or at the widget's background. With a table (the "Color", "normalcolor"
// and "alarmcolor" rows) the choice is applied to the widget at once;
// without one (the curve dialog) only the cell changes.
class ColorDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit ColorDelegate(AttributeTable *table = nullptr, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *, const QStyleOptionViewItem &, const QModelIndex &) const override {}

    static QString text(const QColor &color);

private:
    AttributeTable *m_table;
};
