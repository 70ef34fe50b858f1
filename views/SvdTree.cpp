#include "views/SvdTree.h"

#include "elements/DocumentTables.h"
#include "elements/RecordingHook.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "model/BitField.h"
#include "model/EnumeratedValue.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "views/ViewContext.h"

#include <algorithm>

SvdTree::SvdTree(QWidget *parent)
    : QTreeView(parent)
    , m_model(new QStandardItemModel(0, 2, this))
{
    setModel(m_model);
    setColumnHidden(1, true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
}

void SvdTree::setShowSvdOnly(bool on)
{
    m_showSvdOnly = on;
    QObject::setProperty("showSvdOnly", on ? 1 : 0);
}

void SvdTree::setShowValues(bool on)
{
    m_showValues = on;
    QObject::setProperty("showValues", on ? 1 : 0);
    setColumnHidden(1, !on);
}

QString SvdTree::fieldToolTip(const QString &description, const QList<EnumeratedValue> &values)
{
    QString text = description;
    for (const EnumeratedValue &v : values)
        text += QStringLiteral("\n-%1: %2").arg(v.value).arg(v.name);
    return values.isEmpty() ? text : text + QLatin1Char('\n');
}

void SvdTree::refresh()
{
    m_model->removeRows(0, m_model->rowCount());
    HardwareModel *hardware = ViewContext::model();
    if (!hardware)
        return;
    DocumentTables *tables = DocumentTables::current();
    auto valueOf = [tables](const QString &define) {
        ActiveElement *e = tables ? tables->element(define) : nullptr;
        return e ? e->value(Selectors::Value) : QStringLiteral("---");
    };
    for (Peripheral *peripheral : hardware->devicePeripherals()) {
        if (tables && tables->element(peripheral->name))
            continue;
        auto *root = new QStandardItem(peripheral->name);
        root->setToolTip(peripheral->description);
        for (Register *reg : peripheral->registersByAddress()) {
            const QString regDefine = peripheral->name + QLatin1Char('.') + reg->name;
            QList<QStandardItem *> row{new QStandardItem(reg->name)};
            row.first()->setToolTip(reg->description);
            if (m_showValues)
                row << new QStandardItem(valueOf(regDefine));
            QList<BitField *> fields = reg->fields.values();
            std::sort(fields.begin(), fields.end(), [](BitField *a, BitField *b) { return a->msb > b->msb; });
            for (BitField *field : fields) {
                QList<QStandardItem *> fieldRow{new QStandardItem(field->name)};
                fieldRow.first()->setToolTip(fieldToolTip(field->description, field->enumeratedValues));
                if (m_showValues)
                    fieldRow << new QStandardItem(valueOf(regDefine + QLatin1Char('.') + field->name));
                row.first()->appendRow(fieldRow);
            }
            root->appendRow(row);
        }
        m_model->appendRow(root);
    }
    expandAll();
}

bool SvdTree::setValue(const QString &text, int kind)
{
    Q_UNUSED(text);
    if (kind == Selectors::Value)
        refresh();
    return true;
}

bool SvdTree::loadValue(const QString &text)
{
    m_value = text;
    return true;
}

QString SvdTree::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    if (kind == Selectors::TypeInfo)
        return typeInfo();
    if (kind == Selectors::Value)
        return m_value;
    Report::cannotReturnValue(kind, define());
    return QString();
}

void SvdTree::connectSignals()
{
    refresh();
}

void SvdTree::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

bool SvdTree::setBits(int msb, int lsb)
{
    Q_UNUSED(msb);
    Q_UNUSED(lsb);
    return true;
}

void SvdTree::sendData(const QString &value)
{
    Q_UNUSED(value);
    emit updateMathLabels();
}

void SvdTree::enable(bool on)
{
    setElementEnabled(on);
}

void SvdTree::valueChanged(const QString &value)
{
    sendData(value);
}

void SvdTree::valueChangedByUser(const QString &value)
{
    if (hasFocus())
        RecordingHook::record(QStringLiteral("Set(%1,%2)").arg(define(), value));
    sendData(value);
    m_value = value;
}
