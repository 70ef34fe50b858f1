#include "tooling/AttributeTable.h"

#include "shell/Document.h"
#include "tooling/ActionDelegate.h"
#include "tooling/AttributeRows.h"
#include "tooling/ColorDelegate.h"
#include "tooling/ColumnsDelegate.h"
#include "tooling/ComboBoxDelegate2.h"
#include "tooling/CurvesDelegate.h"
#include "tooling/FileDelegate.h"
#include "tooling/FontDelegate.h"
#include "tooling/ItemsDelegate.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTableView>

AttributeTable::AttributeTable(Document &document, QTableView *view, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_view(view)
    , m_model(new QStandardItemModel(0, 2, this))
    , m_applier(document)
{
    auto *key = new QStandardItem(tr("Attribute"));
    key->setToolTip(tr("Attribute of GUI element"));
    auto *value = new QStandardItem(tr("Value"));
    value->setToolTip(tr("Current setting"));
    m_model->setHorizontalHeaderItem(0, key);
    m_model->setHorizontalHeaderItem(1, value);
    m_view->setModel(m_model);
    m_view->horizontalHeader()->setStretchLastSection(true);
}

void AttributeTable::fill(QObject *target)
{
    m_target = target;
    m_showing = true;
    m_model->removeRows(0, m_model->rowCount());
    for (const QString &row : AttributeRows::build(target)) {
        auto *key = new QStandardItem(AttributeRows::keyOf(row));
        key->setEditable(false);
        auto *value = new QStandardItem(AttributeRows::valueOf(row));
        m_model->appendRow({key, value});
    }
    m_showing = false;
    bindDelegates();
}

void AttributeTable::bindDelegates()
{
    for (int row = 0; row < m_model->rowCount(); ++row)
        m_view->setItemDelegateForRow(row, nullptr);
    qDeleteAll(m_delegates);
    m_delegates.clear();
    if (!m_target)
        return;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QString key = m_model->item(row, 0)->text();
        QStyledItemDelegate *delegate = nullptr;
        if (key == QLatin1String("Font"))
            delegate = new FontDelegate(this, this);
        else if (key == QLatin1String("File") || key == QLatin1String("image") || key == QLatin1String("Icon"))
            delegate = new FileDelegate(this, this);
        else if (key == QLatin1String("Color") || key == QLatin1String("normalcolor")
                 || key == QLatin1String("alarmcolor"))
            delegate = new ColorDelegate(this, this);
        else if (key == QLatin1String("action"))
            delegate = new ActionDelegate(this, this);
        else if (key == QLatin1String("Curves"))
            delegate = new CurvesDelegate(this, this);
        else if (key == QLatin1String("Columns"))
            delegate = new ColumnsDelegate(this, this);
        else if (key == QLatin1String("Items"))
            delegate = new ItemsDelegate(this, this);
        else if (key == QLatin1String("SizePolH") || key == QLatin1String("SizePolV"))
            delegate = new ComboBoxDelegate2(this, this);
        if (delegate) {
            m_delegates.append(delegate);
            m_view->setItemDelegateForRow(row, delegate);
        }
    }
}

int AttributeTable::rowOf(const QString &key) const
{
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->item(row, 0)->text() == key)
            return row;
    }
    return -1;
}

QString AttributeTable::valueOf(const QString &key) const
{
    const int row = rowOf(key);
    return row < 0 ? QString() : m_model->item(row, 1)->text();
}

void AttributeTable::showValue(int row, const QString &value)
{
    if (row < 0)
        return;
    m_showing = true;
    m_model->item(row, 1)->setText(value);
    m_showing = false;
}

bool AttributeTable::setAttribute(const QString &key, const QString &value)
{
    if (!m_target)
        return false;
    QString shown;
    const bool ok = m_applier.apply(m_target, key, value, &shown);
    showValue(rowOf(key), shown);
    // Moving or sizing in a layout can change the other geometry rows too.
    for (const QString &row : AttributeRows::build(m_target)) {
        const QString k = AttributeRows::keyOf(row);
        if (k != key && (k == QLatin1String("X") || k == QLatin1String("Y") || k == QLatin1String("Width")
                         || k == QLatin1String("Height")))
            showValue(rowOf(k), AttributeRows::valueOf(row));
    }
    return ok;
}

void AttributeTable::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    Q_UNUSED(hint)
    const QModelIndex index = m_view->currentIndex();
    if (!index.isValid() || !m_target || index.row() >= m_model->rowCount())
        return;
    const QString key = m_model->item(index.row(), 0)->text();
    // Rows with an editor of their own applied the value when it was
    // chosen (or their dialog wrote the element); a second pass would
    // only repeat it.
    static const QStringList selfApplied = {
        QStringLiteral("Font"),     QStringLiteral("File"),     QStringLiteral("image"),
        QStringLiteral("Icon"),     QStringLiteral("Color"),    QStringLiteral("normalcolor"),
        QStringLiteral("alarmcolor"), QStringLiteral("SizePolH"), QStringLiteral("SizePolV"),
        QStringLiteral("action"),   QStringLiteral("Curves"),   QStringLiteral("Columns"),
        QStringLiteral("Items")};
    if (selfApplied.contains(key))
        return;
    const QString value = m_model->item(index.row(), 1)->text();
    setAttribute(key, value);
    if (auto *line = qobject_cast<QLineEdit *>(editor))
        line->setText(valueOf(key));
}
