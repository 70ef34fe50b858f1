#pragma once
#include <QAbstractItemDelegate>
#include <QList>
#include <QObject>
#include <QPointer>

#include "tooling/AttributeApplier.h"

class Document;
class QStandardItemModel;
class QTableView;
class QStyledItemDelegate;

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

    // The apply step on the current target: true when the widget took the
    // value. The value cell of the key's row then shows the normalised
    // value, or the value as it stayed.
    bool setAttribute(const QString &key, const QString &value);

    // The row of a key, -1 when the table has none.
    int rowOf(const QString &key) const;
    // The value cell's text of a key.
    QString valueOf(const QString &key) const;

    // Where the command slots of actions live (the main window): actions
    // added in the actions dialog are wired to it at once, so that the
    // preview runs them. Without a host they run after the next load.
    void setSlotHost(QObject *host) { m_slotHost = host; }
    QObject *slotHost() const { return m_slotHost; }

    Document &document() { return m_document; }
    AttributeApplier &applier() { return m_applier; }
    QTableView *view() const { return m_view; }

private:
    void bindDelegates();
    void showValue(int row, const QString &value);

    Document &m_document;
    QTableView *m_view;
    QStandardItemModel *m_model;
    QPointer<QObject> m_target;
    QPointer<QObject> m_slotHost;
    AttributeApplier m_applier;
    // The row delegates of the present rows; replaced at every fill.
    QList<QStyledItemDelegate *> m_delegates;
    bool m_showing = false;
};
