#pragma once
#include <QStyledItemDelegate>

class RegisterView;

// A field of several bits without enumerated values: a spin box over the
// field's range.
class SpinBoxDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    SpinBoxDelegate(RegisterView *view, bool readOnly, int msb, int lsb);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // The largest number the field holds, within what a spin box shows.
    int maximum() const;

private:
    RegisterView *m_view;
    bool m_readOnly;
    int m_msb;
    int m_lsb;
};
