#include "tooling/AttributeTable.h"

#include <QStandardItemModel>
#include <QTableView>

AttributeTable::AttributeTable(Document &document, QTableView *view, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_view(view)
    , m_model(new QStandardItemModel(0, 2, this))
{
    m_view->setModel(m_model);
}

void AttributeTable::fill(QObject *target)
{
    m_target = target;
    m_model->removeRows(0, m_model->rowCount());
}

void AttributeTable::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    Q_UNUSED(editor)
    Q_UNUSED(hint)
}
