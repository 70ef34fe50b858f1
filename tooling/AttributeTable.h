#pragma once
#include <QAbstractItemDelegate>
#include <QObject>
#include <QPointer>

class Document;
class QStandardItemModel;
class QTableView;

// The form editor's attribute table: two columns, "Attribute" and "Value",
// filled with the rows of the selected element and bound to the editors of
// their keys. An edited value is applied to the live widget at once.
class AttributeTable : public QObject
{
    Q_OBJECT
public:
    AttributeTable(Document &document, QTableView *view, QObject *parent = nullptr);

    QStandardItemModel *model() const { return m_model; }
    // Rebuilds the rows for target (a form widget, a radio group or a
    // DataClass); null empties the table.
    void fill(QObject *target);
    QObject *target() const { return m_target; }

    // The editor of a value cell closed: applies the row's key and value to
    // the target (the form editor's closeEditor forwards here).
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint);

private:
    Document &m_document;
    QTableView *m_view;
    QStandardItemModel *m_model;
    QPointer<QObject> m_target;
};
