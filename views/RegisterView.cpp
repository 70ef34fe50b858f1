#include "views/RegisterView.h"

#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/RecordingHook.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "model/BitField.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "views/CheckBoxDelegate.h"
#include "views/ComboBoxDelegate.h"
#include "views/RegisterDecoder.h"
#include "views/SpinBoxDelegate.h"
#include "views/ViewContext.h"

#include <QHeaderView>
#include <QResizeEvent>
#include <algorithm>
#include <cmath>

namespace {
// Shared by every register view: a `value` meant for one view is taken by
// the next rebuild of any view.
quint64 g_pendingValue = 0;
bool g_pending = false;

quint64 fieldMask(int msb, int lsb)
{
    const int low = qMax(0, lsb);
    const int width = msb - low + 1;
    if (width <= 0 || low >= 64)
        return 0;
    return (width >= 64 ? ~quint64(0) : ((quint64(1) << width) - 1)) << low;
}

quint64 extract(quint64 word, int msb, int lsb)
{
    return (word & fieldMask(msb, lsb)) >> qMax(0, lsb);
}

RegisterViewField reservedField(int msb, int lsb)
{
    RegisterViewField f;
    f.name = QStringLiteral("reserved");
    f.msb = msb;
    f.lsb = lsb;
    f.readOnly = true;
    return f;
}
} // namespace

RegisterView::RegisterView(QWidget *parent)
    : QTableView(parent)
{
    m_model = new QStandardItemModel(0, 0, this);
    setModel(m_model);
    setSelectionMode(QAbstractItemView::NoSelection);
}

void RegisterView::setBuddy(const QString &text)
{
    QObject::setProperty("readwritebuddy", text);
    const QStringList parts = text.split(QLatin1Char(';'));
    m_buddyName = parts.value(0).trimmed();
    m_buddyValue = parts.value(1).trimmed().toInt();
}

void RegisterView::setPending(quint64 value)
{
    g_pendingValue = value;
    g_pending = true;
}

bool RegisterView::hasPending()
{
    return g_pending;
}

QString RegisterView::itemText(const EnumeratedValue &value, int width)
{
    if (!kShowBinary)
        return value.name;
    return QStringLiteral("%1 (0b%2)").arg(value.name, RegisterDecoder::binary(quint64(quint32(value.value)), width));
}

bool RegisterView::setValue(const QString &text, int kind)
{
    DocumentTables *tables = DocumentTables::current();
    switch (kind) {
    case Selectors::Value: {
        QString given = text;
        const int suffix = Selectors::hasSelector(text) ? Selectors::selectorKind(text) : Selectors::Value;
        ActiveElement *source = tables ? tables->element(Selectors::stripSelector(text)) : nullptr;
        if (source && source != this && suffix == Selectors::Value)
            given = source->value(Selectors::Value);
        const QString number = normaliseNumber(given.trimmed());
        bool ok = false;
        const quint64 v = number.startsWith(QLatin1Char('-')) ? quint64(number.toLongLong(&ok)) : number.toULongLong(&ok);
        if (!ok) {
            Report::invalidSetValue(define(), text);
            return false;
        }
        setPending(v);
        return true;
    }
    case Selectors::Module: {
        // "X.module" reads X's module; another selector reads that form of X
        // (a combo's label); a bare peripheral name is taken as it stands.
        const int suffix = Selectors::hasSelector(text) ? Selectors::selectorKind(text) : Selectors::Module;
        const QString name = Selectors::stripSelector(text);
        ActiveElement *source = tables ? tables->element(name) : nullptr;
        const QString module = source ? source->value(suffix) : text.trimmed();
        HardwareModel *model = ViewContext::model();
        if (model && model->findPeripheral(module))
            m_moduleName = module;
        return true;
    }
    case Selectors::Register:
        rebuild(text);
        return true;
    default:
        Report::invalidSetValue(define(), text);
        return false;
    }
}

bool RegisterView::loadValue(const QString &text)
{
    Q_UNUSED(text);
    return true;
}

QString RegisterView::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    switch (kind) {
    case Selectors::Value:
        return QString::number(word());
    case Selectors::Label:
        return m_registerName;
    case Selectors::DefineValue:
        return QString();
    case Selectors::TypeInfo:
        return typeInfo();
    case Selectors::RegisterName:
        // Nothing shown yet: no name, so a row added from here ends a send.
        return m_registerName.isEmpty() ? QString() : m_moduleName + QLatin1Char('.') + m_registerName;
    case Selectors::Address:
        return QString::number(m_registerAddress);
    case Selectors::Module:
        return m_moduleName;
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

quint64 RegisterView::word() const
{
    quint64 w = 0;
    for (int col = 0; col < m_model->columnCount() && col < m_shifts.size(); ++col) {
        const QStandardItem *item = m_model->item(0, col);
        if (!item)
            continue;
        const int shift = m_shifts.at(col);
        if (shift < 64)
            w |= item->data(WordRole).toULongLong() << shift;
    }
    return w;
}

QList<RegisterViewField> RegisterView::layoutFields(QList<RegisterViewField> fields, int width)
{
    std::stable_sort(fields.begin(), fields.end(),
                     [](const RegisterViewField &a, const RegisterViewField &b) { return a.msb > b.msb; });
    const int top = width - 1;
    int previous = -1;
    for (int i = fields.size() - 1; i >= 0; --i) {
        const int lsb = qMax(0, fields.at(i).lsb);
        if (previous + 1 < lsb)
            fields.insert(i + 1, reservedField(lsb - 1, previous + 1));
        previous = fields.at(i).msb;
        if (previous >= top)
            break;
    }
    if (fields.isEmpty())
        fields.prepend(reservedField(top, 0));
    else if (fields.first().msb < top)
        fields.prepend(reservedField(top, fields.first().msb + 1));
    return fields;
}

void RegisterView::rebuild(const QString &text)
{
    HardwareModel *model = ViewContext::model();
    DocumentTables *tables = DocumentTables::current();
    if (!model)
        return;
    const int suffix = Selectors::hasSelector(text) ? Selectors::selectorKind(text) : 0;
    const bool byRegisterName = suffix == Selectors::RegisterName;
    QString name;
    if (byRegisterName) {
        if (!model->findPeripheral(m_moduleName))
            return;
        ActiveElement *source = tables ? tables->element(Selectors::stripSelector(text)) : nullptr;
        name = source ? source->value(Selectors::RegisterName) : QString();
        if (name.isEmpty())
            name = m_registerName;
    } else {
        ActiveElement *source = tables ? tables->element(text) : nullptr;
        // A register named outright ("CONFIG" or "UARTE0.CONFIG") serves
        // as well as an element that lists registers.
        name = source ? source->value(Selectors::Label) : text.trimmed();
        if (name.isEmpty())
            return;
    }
    // A name in "module.register" form brings its module along.
    if (name.contains(QLatin1Char('.'))) {
        QString module;
        QString reg;
        ViewContext::splitRegisterName(name, &module, &reg);
        if (model->findPeripheral(module)) {
            m_moduleName = module;
            name = reg;
        }
    }
    Peripheral *peripheral = model->findPeripheral(m_moduleName);
    Register *reg = peripheral ? HardwareModel::findRegister(peripheral, name) : nullptr;
    if (!reg)
        return;

    m_registerName = reg->name;
    m_registerAddress = quint32(reg->address);
    quint64 working = g_pending ? g_pendingValue : 0;
    if (!byRegisterName) {
        working = quint64(quint32(reg->resetValue));
        g_pending = true;
    }
    QList<RegisterViewField> fields;
    for (const BitField *field : reg->fields) {
        RegisterViewField f;
        f.name = field->name;
        f.description = field->description;
        f.msb = field->msb;
        f.lsb = field->lsb;
        f.readOnly = field->readOnly;
        f.enumerated = field->enumeratedValues;
        fields << f;
    }
    // Equal tops: by name, so the layout does not follow the hash order.
    std::sort(fields.begin(), fields.end(), [](const RegisterViewField &a, const RegisterViewField &b) {
        return a.msb != b.msb ? a.msb > b.msb : a.name < b.name;
    });
    m_registerWidth = quint16(reg->size > 0 ? qMin(reg->size, 64) : 32);
    m_fields = layoutFields(fields, m_registerWidth);
    m_columnCount = m_fields.size();
    // Before the first layout the width is a guess: a column never starts
    // at no width, or it could never be scaled again.
    m_pixelsPerBit = quint16(qMax(1L, std::lround(double(width()) / m_registerWidth)));

    auto *newModel = new QStandardItemModel(1, m_columnCount, this);
    QList<QStyledItemDelegate *> delegates;
    m_shifts.clear();
    m_bits.clear();
    for (int col = 0; col < m_columnCount; ++col) {
        const RegisterViewField &f = m_fields.at(col);
        const QString access = f.readOnly ? QStringLiteral("R/O") : QStringLiteral("R/W");
        auto *header = new QStandardItem;
        if (f.lsb == f.msb) {
            header->setText(QStringLiteral("%1\n[%2] %3").arg(f.name).arg(f.msb).arg(access));
            header->setToolTip(QStringLiteral("%1 [%2]").arg(f.description).arg(f.msb));
        } else {
            header->setText(QStringLiteral("%1\n[%2..%3] %4").arg(f.name).arg(f.msb).arg(f.lsb).arg(access));
            header->setToolTip(QStringLiteral("%1 [%2..%3]").arg(f.description).arg(f.msb).arg(f.lsb));
        }
        if (f.readOnly)
            header->setForeground(QBrush(Qt::red));
        newModel->setHorizontalHeaderItem(col, header);
        m_shifts << qMax(0, f.lsb);

        auto *item = new QStandardItem;
        const int bits = f.msb - qMax(0, f.lsb) + 1;
        if (f.enumerated.isEmpty()) {
            const quint64 number = g_pending ? extract(working, f.msb, f.lsb) : 0;
            item->setText(QString::number(number));
            item->setData(number, FirstRole);
            item->setData(number, WordRole);
        } else {
            const EnumeratedValue *entry = &f.enumerated.first();
            if (g_pending) {
                const quint64 number = extract(working, f.msb, f.lsb);
                for (const EnumeratedValue &e : f.enumerated) {
                    if (quint64(quint32(e.value)) == number) {
                        entry = &e;
                        break;
                    }
                }
            } else {
                working |= quint64(quint32(entry->value)) << qMax(0, f.lsb);
            }
            item->setText(itemText(*entry, bits));
            item->setData(entry->value, FirstRole);
            item->setData(entry->value, WordRole);
        }
        item->setToolTip(f.description);
        newModel->setItem(0, col, item);

        QStyledItemDelegate *delegate = nullptr;
        if (!f.enumerated.isEmpty())
            delegate = new ComboBoxDelegate(this, f.readOnly, f.enumerated, bits);
        else if (f.lsb == f.msb)
            delegate = new CheckBoxDelegate(this, f.readOnly);
        else
            delegate = new SpinBoxDelegate(this, f.readOnly, f.msb, qMax(0, f.lsb));
        delegates << delegate;
        m_bits << quint16(qMax(1, bits));
    }
    QStandardItemModel *old = m_model;
    m_model = newModel;
    setModel(newModel);
    for (int col = 0; col < m_columnCount; ++col) {
        setItemDelegateForColumn(col, delegates.at(col));
        setColumnWidth(col, m_bits.at(col) * m_pixelsPerBit);
    }
    // Columns beyond the new count keep no delegate of the old register.
    for (int col = m_columnCount; col < m_delegates.size(); ++col)
        setItemDelegateForColumn(col, nullptr);
    qDeleteAll(m_delegates);
    m_delegates = delegates;
    delete old;
    g_pending = false;
    m_word = word();

    const int height = horizontalHeader()->sizeHint().height() + rowHeight(0) + 4;
    setMinimumHeight(height);
    setMaximumHeight(height);
    applyBuddy();
    emit updateMathLabels();
}

void RegisterView::applyBuddy()
{
    DocumentTables *tables = DocumentTables::current();
    if (m_buddyName.isEmpty() || !tables)
        return;
    ActiveElement *group = tables->element(m_buddyName);
    if (!group || group->typeInfo() != QLatin1String("ButtonGroup"))
        return;
    const bool anyWritable = std::any_of(m_fields.cbegin(), m_fields.cend(),
                                         [](const RegisterViewField &f) { return !f.readOnly; });
    group->setValue(QString::number(anyWritable ? (m_buddyState ? 1 : 0) : m_buddyValue), Selectors::Value);
    m_buddyState = group->value(Selectors::Value).toInt() == m_buddyValue;
}

void RegisterView::cellCommitted()
{
    m_word = word();
    updateToolTip();
    RecordingHook::record(QStringLiteral("SetRegViewValue(%1, %2)").arg(define()).arg(m_word));
    emit updateMathLabels();
}

void RegisterView::updateToolTip()
{
    if (m_registerName.isEmpty())
        return;
    setToolTip(QStringLiteral("%1.%2 = 0x%3").arg(m_moduleName, m_registerName, QString::number(m_word, 16)));
}

void RegisterView::connectSignals()
{
    verticalHeader()->hide();
    connect(this, &QTableView::clicked, this, &RegisterView::onTableClicked, Qt::UniqueConnection);
}

void RegisterView::onTableClicked(const QModelIndex &index)
{
    if (index.isValid())
        edit(index);
}

void RegisterView::enable(bool on)
{
    setElementEnabled(on);
}

void RegisterView::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

bool RegisterView::setBits(int msb, int lsb)
{
    Q_UNUSED(msb);
    Q_UNUSED(lsb);
    return true;
}

void RegisterView::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    if (event->size().width() == -1 && event->size().height() == -1)
        return;
    if (m_pixelsPerBit != 0 && m_registerWidth != 0) {
        m_pixelsPerBit = quint16(qMax(1, event->size().width() / m_registerWidth));
        for (int col = 0; col < m_bits.size(); ++col)
            setColumnWidth(col, m_bits.at(col) * m_pixelsPerBit);
    }
}
