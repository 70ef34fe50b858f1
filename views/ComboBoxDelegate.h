#pragma once
#include <QList>
#include <QStyledItemDelegate>

#include "model/EnumeratedValue.h"

class QComboBox;
class RegisterView;

// A field with enumerated values: a combo box of them, opened at once.
class ComboBoxDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    ComboBoxDelegate(RegisterView *view, bool readOnly, const QList<EnumeratedValue> &values, int width);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // Fills a box with the values: text, number (WordRole), description.
    void fill(QComboBox *box) const;

private:
    RegisterView *m_view;
    bool m_readOnly;
    QList<EnumeratedValue> m_values;
    int m_width;
};
