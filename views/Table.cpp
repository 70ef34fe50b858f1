#include "views/Table.h"

#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/RecordingHook.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "model/Register.h"
#include "shell/Dialogs.h"
#include "views/CellFormat.h"
#include "views/RegisterDecoder.h"
#include "views/RegisterView.h"
#include "views/TableFile.h"
#include "views/TableTransfer.h"
#include "views/ViewContext.h"

#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QResizeEvent>
#include <QSet>
#include <algorithm>

namespace {

// The kinds that make up a row's record, in record order.
const int kRecordKinds[6] = {Table::RegName, Table::Address, Table::Func, Table::Value, Table::Delay, Table::Comment};

bool disabledKind(int kind)
{
    return kind == Table::RegName || kind == Table::Address || kind == Table::Answer;
}

// A reserved define ($ADDRESS$, $VALUE$, $FUNC$) takes a number, when the
// document has it.
void setReserved(const char *name, quint64 value)
{
    DocumentTables *tables = DocumentTables::current();
    if (!tables)
        return;
    if (DataClass *data = tables->dataValue(QLatin1String(name)))
        data->setValue(quint32(value));
}

quint64 hexNumber(const QString &text)
{
    QString t = text.trimmed();
    if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        t = t.mid(2);
    return t.toULongLong(nullptr, 16);
}

} // namespace

Table::Table(QWidget *parent)
    : QTableView(parent)
{
    std::fill(std::begin(m_columnByKind), std::end(m_columnByKind), -1);
    setAlternatingRowColors(true);
    setEditTriggers(QAbstractItemView::AllEditTriggers);
    setDragDropMode(QAbstractItemView::InternalMove);
    setDragDropOverwriteMode(false);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    connect(this, &QTableView::clicked, this, &Table::onTableClicked);
    connect(this, &QTableView::pressed, this, &Table::onTablePressed);
    m_model = new QStandardItemModel(0, 0, this);
    setModel(m_model);
}

int Table::kindOf(const QString &type)
{
    static const char *const words[] = {"regname", "address", "func", "value", "delay", "answer", "comment", "delete"};
    for (int i = 0; i < 8; ++i) {
        if (type == QLatin1String(words[i]))
            return i;
    }
    if (type == QLatin1String("math") || type.startsWith(QLatin1String("math.")))
        return Math;
    return -1;
}

bool Table::addColumn(const TableColumn &column)
{
    if (m_columnCount >= kMaxColumns)
        return false;
    m_columns[m_columnCount] = column;
    if (column.kind >= 0 && column.kind < KindCount)
        m_columnByKind[column.kind] = m_columnCount;
    ++m_columnCount;
    return true;
}

void Table::clearColumns()
{
    m_columnCount = 0;
    for (int &column : m_columnByKind)
        column = -1;
}

void Table::setFormats(const QString &send, const QString &rec, const QString &tooltipRec)
{
    m_sendFormat = send;
    m_recFormat = rec;
    m_toolTipRecFormat = tooltipRec;
    QObject::setProperty("sendformat", send);
    QObject::setProperty("recformat", rec);
    QObject::setProperty("tooltiprecformat", tooltipRec);
}

QString Table::initialText(int column) const
{
    const TableColumn &c = m_columns[column];
    if (!c.defaultText.isEmpty())
        return c.defaultText;
    return CellFormat::apply(c.format, 0);
}

void Table::buildModel()
{
    auto *model = new QStandardItemModel(m_numRows, m_columnCount, this);
    for (int col = 0; col < m_columnCount; ++col) {
        const TableColumn &c = m_columns[col];
        auto *header = new QStandardItem(c.label);
        header->setToolTip(c.tooltip);
        model->setHorizontalHeaderItem(col, header);
        for (int row = 0; row < m_numRows; ++row) {
            auto *item = new QStandardItem;
            switch (c.kind) {
            case RegName:
            case Answer:
            case Comment:
                item->setText(c.defaultText);
                break;
            case Address:
            case Func:
            case Value:
            case Delay:
            case Math:
                item->setText(initialText(col));
                break;
            case Delete:
                item->setIcon(QIcon(QStringLiteral(":/images/remove.png")));
                item->setSizeHint(QSize(250, -1));
                item->setEditable(false);
                break;
            default:
                break;
            }
            item->setEnabled(c.columnWidth != 0 && c.kind != RegName && c.kind != Answer && c.kind != Address);
            model->setItem(row, col, item);
        }
    }
    QStandardItemModel *old = m_model;
    m_model = model;
    setModel(model);
    delete old;
    applyPlainWidths();
}

QStandardItem *Table::cell(int row, int kind) const
{
    const int col = columnOf(kind);
    if (col < 0 || row < 0)
        return nullptr;
    return m_model->item(row, col);
}

QString Table::cellText(int row, int kind) const
{
    const QStandardItem *item = cell(row, kind);
    return item ? item->text() : QString();
}

void Table::setItem(int row, int column, const QString &text, bool enabled, const QString &toolTip)
{
    if (column < 0 || row < 0)
        return;
    QStandardItem *item = m_model->item(row, column);
    if (!item) {
        item = new QStandardItem;
        m_model->setItem(row, column, item);
    }
    item->setText(text);
    item->setEnabled(enabled && m_columns[column].columnWidth != 0);
    if (!toolTip.isNull())
        item->setToolTip(toolTip);
}

void Table::ensureRow(int row)
{
    if (row >= m_model->rowCount())
        m_model->setRowCount(row + 1);
}

void Table::applyPlainWidths()
{
    for (int col = 0; col < m_columnCount; ++col)
        setColumnWidth(col, qMax(0, int(m_columns[col].columnWidth)));
}

void Table::applyScaledWidths()
{
    int sum = 0;
    for (int col = 0; col < m_columnCount; ++col)
        sum += qMax(0, int(m_columns[col].columnWidth));
    if (sum <= 0)
        return;
    const double scale = double(width()) / sum;
    for (int col = 0; col < m_columnCount; ++col) {
        const int w = m_columns[col].columnWidth;
        setColumnWidth(col, w >= 1 ? qMax(0, int(w * scale - 6)) : 0);
    }
}

// ------------------------------------------------------------ commands

QString Table::resolveArgument(const QString &text, int kind) const
{
    DocumentTables *tables = DocumentTables::current();
    if (!tables)
        return text;
    ActiveElement *source = tables->element(Selectors::stripSelector(text));
    if (!source || source == this)
        return text;
    if (kind == Selectors::SendLoop)
        return source->value(Selectors::Value);
    if (source->typeInfo() == QLatin1String("MathLabel")) {
        const QString result = source->value(Selectors::Value);
        if (kind == Selectors::Column || kind == Selectors::Row || kind == Selectors::DefineValue)
            return QString::number(qint64(result.toDouble()));
        return result;
    }
    const int own = Selectors::hasSelector(text) ? Selectors::selectorKind(text) : kind;
    return source->value(own);
}

bool Table::setValue(const QString &given, int kind)
{
    const QString text = resolveArgument(given, kind);
    bool isInt = false;
    const int number = text.trimmed().toInt(&isInt, 10);
    switch (kind) {
    case Selectors::Value:
        addRow(text);
        break;
    case Selectors::DefineValue: {
        const int col = m_currentColumn;
        if (col < 0 || col >= m_columnCount)
            break;
        QString shown = text;
        quint64 v = 0;
        if (!m_columns[col].format.isEmpty() && CellFormat::toUnsigned(text, &v))
            shown = CellFormat::apply(m_columns[col].format, v);
        setItem(m_currentRow, col, shown, false);
        break;
    }
    case Selectors::RegisterName:
        setRegisterName(text, given);
        break;
    case Selectors::Address:
        setAddress(text);
        break;
    case Selectors::Column:
        if (isInt)
            m_currentColumn = number;
        break;
    case Selectors::Row:
        if (isInt)
            m_currentRow = number;
        break;
    case Selectors::InsertMode:
        m_insertMode = number != 0;
        break;
    case Selectors::SingleStep:
        m_singleStep = number != 0;
        break;
    case Selectors::Func:
        m_func = text;
        break;
    case Selectors::SendLoop:
        m_sendLoop = isInt && number > 0 ? quint16(number) : 0;
        break;
    case Selectors::Delete:
        deleteRow();
        break;
    case Selectors::DeleteAll:
        deleteAll();
        break;
    case Selectors::SendUsb:
        TableTransfer::send(this);
        break;
    case Selectors::Load:
    case Selectors::LoadAt:
    case Selectors::Save:
    case Selectors::Export:
        if (!fileCommand(kind))
            return true; // cancelled: the widths stay scaled
        break;
    default:
        Report::invalidSetValue(define(), given);
        return false;
    }
    applyPlainWidths();
    return true;
}

bool Table::fileCommand(int kind)
{
    QString name;
    if (kind == Selectors::Save) {
        name = Dialogs::saveFileName(this, tr("Save RegView Table"), QDir::currentPath(),
                                     tr("Configuration Files (*.qlnp)"));
    } else if (kind == Selectors::Export) {
        name = Dialogs::saveFileName(this, tr("Export Table to C file"), QDir::currentPath(), tr("C Files (*.c)"));
    } else {
        name = Dialogs::openFileName(this, tr("Load RegView Table"), QDir::currentPath(),
                                     tr("Configuration Files (*.qlnp)"));
    }
    if (name.isEmpty())
        return false;
    if (kind == Selectors::Save)
        saveFile(name);
    else if (kind == Selectors::Export)
        exportFile(name);
    else
        loadFile(name, kind == Selectors::LoadAt);
    return true;
}

void Table::addRow(const QString &text)
{
    quint64 v = 0;
    if (!CellFormat::toUnsigned(text, &v)) {
        Report::invalidSetValue(define(), text);
        return;
    }
    const int valueCol = columnOf(Value);
    const QString shown = valueCol >= 0 ? CellFormat::apply(m_columns[valueCol].format, v) : QString::number(v);
    setReserved("$VALUE$", v);
    if (m_currentRow < 0)
        m_currentRow = 0;
    if (m_insertMode)
        m_model->insertRow(qMin(m_currentRow, m_model->rowCount()));
    ensureRow(m_currentRow);
    const int row = m_currentRow;
    setItem(row, valueCol, shown, true);
    if (const int col = columnOf(Delay); col >= 0)
        setItem(row, col, initialText(col), true);
    if (const int col = columnOf(Func); col >= 0) {
        quint64 f = 0;
        if (CellFormat::toUnsigned(m_func, &f))
            setReserved("$FUNC$", f);
        setItem(row, col, m_func.isEmpty() ? initialText(col) : m_func, true);
    }
    if (const int col = columnOf(Answer); col >= 0)
        setItem(row, col, QString(), false, QString(QLatin1String("")));
    if (const int col = columnOf(Comment); col >= 0)
        setItem(row, col, m_columns[col].defaultText, true);
    ++m_currentRow;
    selectRow(m_currentRow);
    setFocus();
    valueChanged(row);
}

void Table::setRegisterName(const QString &text, const QString &given)
{
    const int row = m_currentRow - 1;
    if (row < 0)
        return;
    QString toolTip;
    DocumentTables *tables = DocumentTables::current();
    ActiveElement *source = tables ? tables->element(Selectors::stripSelector(given)) : nullptr;
    if (auto *view = dynamic_cast<RegisterView *>(source)) {
        if (Register *reg = ViewContext::findRegister(view->value(Selectors::RegisterName)))
            toolTip = reg->description;
    }
    setItem(row, columnOf(RegName), text, false, toolTip.isEmpty() ? QString() : toolTip);
    quint64 v = 0;
    CellFormat::toUnsigned(cellText(row, Value), &v);
    decodeToolTip(v, row, 0, QString());
    fillMathColumns(row);
}

void Table::fillMathColumns(int row)
{
    DocumentTables *tables = DocumentTables::current();
    if (!tables)
        return;
    for (int col = 0; col < m_columnCount; ++col) {
        if (m_columns[col].kind != Math)
            continue;
        if (ActiveElement *source = tables->element(m_columns[col].source))
            setItem(row, col, source->value(Selectors::Value), true);
    }
}

void Table::setAddress(const QString &text)
{
    const int row = m_currentRow - 1;
    quint64 v = 0;
    if (!CellFormat::toUnsigned(text, &v)) {
        Report::invalidSetValue(define(), text);
        return;
    }
    const int col = columnOf(Address);
    if (row >= 0 && col >= 0)
        setItem(row, col, CellFormat::apply(m_columns[col].format, v), false);
    setReserved("$ADDRESS$", v);
}

void Table::deleteRow()
{
    const int row = currentIndex().isValid() ? currentIndex().row() : m_currentRow;
    qDebug() << "Delete row " << row;
    if (row >= 0 && row < m_model->rowCount())
        m_model->removeRow(row);
    selectRow(row);
    emit changedByUser();
}

void Table::deleteAll()
{
    buildModel();
    QResizeEvent event(size(), size());
    QApplication::sendEvent(this, &event);
    m_currentRow = 0;
    m_currentColumn = 0;
    selectRow(0);
}

void Table::selectLine(int row)
{
    m_currentRow = row;
    selectRow(row);
}

void Table::setTableValue(int row, int kind, const QString &text)
{
    m_currentRow = row;
    m_currentColumn = kind;
    selectRow(row);
    const int col = columnOf(kind);
    if (col < 0 || row < 0)
        return;
    setItem(row, col, text, !disabledKind(kind));
    if (kind == Value) {
        quint64 v = 0;
        CellFormat::toUnsigned(text, &v);
        decodeToolTip(v, row, 0, QString());
    }
}

void Table::decodeToolTip(quint64 value, int row, int offset, const QString &name)
{
    QString regName = name;
    QStandardItem *target = nullptr;
    if (name.isEmpty()) {
        regName = cellText(row + offset, RegName);
        target = cell(row, Value);
    } else {
        target = cell(row, Answer);
    }
    if (!target)
        return;
    target->setToolTip(decodeText(regName, value));
}

QString Table::decodeText(const QString &registerName, quint64 value)
{
    const Register *reg = ViewContext::findRegister(registerName);
    return reg ? RegisterDecoder::describe(reg, value) : RegisterDecoder::invalidRegisterText();
}

// -------------------------------------------------------- whole value

QString Table::referenceValue()
{
    QString text;
    const int rows = m_model->rowCount();
    text.reserve(rows * 48);
    for (int row = 0; row < rows; ++row) {
        for (int j = 0; j < 6; ++j) {
            if (j)
                text += QLatin1Char(',');
            text += cellText(row, kRecordKinds[j]);
        }
        text += QLatin1Char(';');
    }
    return text;
}

bool Table::loadValue(const QString &text)
{
    const QSignalBlocker blocker(this);
    const QVector<QStringRef> records = text.splitRef(QLatin1Char(';'));
    const int valueColumn = columnOf(Value);
    const int offset = m_loadAt ? m_currentRow : 0;
    auto usable = [](const QStringRef &record) {
        return record.count(QLatin1Char(',')) == 5 && !record.startsWith(QLatin1Char(','));
    };
    if (!(m_insertMode && m_loadAt)) {
        // The rows the records need, made at once: one change of the view
        // instead of one per row.
        int last = -1;
        for (int i = records.size() - 1; i >= 0 && last < 0; --i) {
            if (usable(records.at(i)))
                last = i;
        }
        if (last >= 0 && offset + last >= m_model->rowCount())
            m_model->setRowCount(offset + last + 1);
    }
    for (int i = 0; i < records.size(); ++i) {
        if (!usable(records.at(i)))
            continue;
        const QVector<QStringRef> fields = records.at(i).split(QLatin1Char(','));
        const int row = i + offset;
        if (m_insertMode && m_loadAt)
            m_model->insertRow(qMin(row, m_model->rowCount()));
        else if (row >= m_model->rowCount())
            m_model->setRowCount(row + 1);
        // The row's cells are made whole before they go into the model: a
        // change to a cell already in it costs a search of its row.
        QStandardItem *made[kMaxColumns] = {};
        for (int j = 0; j < 6; ++j) {
            const int col = columnOf(kRecordKinds[j]);
            if (col < 0)
                continue;
            made[col] = new QStandardItem(fields.at(j).toString());
            made[col]->setEnabled(!disabledKind(kRecordKinds[j]) && m_columns[col].columnWidth != 0);
        }
        auto itemAt = [&](int col) { return col < 0 ? nullptr : (made[col] ? made[col] : m_model->item(row, col)); };
        for (int j = 0; j < 6 && j < m_columnCount; ++j) {
            // A field position against a view column: tables whose columns
            // stand in record order (the usual layout) decode their value.
            if (j == valueColumn) {
                quint64 v = 0;
                CellFormat::toUnsigned(fields.at(j).toString(), &v);
                if (QStandardItem *target = itemAt(valueColumn)) {
                    const QStandardItem *name = itemAt(columnOf(RegName));
                    target->setToolTip(decodeText(name ? name->text() : QString(), v));
                }
            }
            QStandardItem *item = itemAt(j);
            if (!item)
                continue;
            const int kind = m_columns[j].kind;
            item->setEnabled(!disabledKind(kind) && m_columns[j].columnWidth != 0);
            if (kind == RegName) {
                if (const Register *reg = ViewContext::findRegister(item->text()))
                    item->setToolTip(reg->description);
            }
        }
        // Quietly: the view is told once, at the end, instead of once for
        // every cell.
        m_model->blockSignals(true);
        for (int col = 0; col < m_columnCount; ++col) {
            if (made[col])
                m_model->setItem(row, col, made[col]);
        }
        m_model->blockSignals(false);
    }
    viewport()->update();
    return true;
}

QString Table::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    QString module;
    QString reg;
    switch (kind) {
    case Selectors::Value:
    case Selectors::DefineValue:
        return cellText(m_currentRow, Value);
    case Selectors::Label:
        return cellText(m_currentRow, RegName);
    case Selectors::TypeInfo:
        return typeInfo();
    case Selectors::Module:
        ViewContext::splitRegisterName(cellText(m_currentRow, RegName), &module, &reg);
        return module;
    case Selectors::RegisterName:
        ViewContext::splitRegisterName(cellText(m_currentRow, RegName), &module, &reg);
        return reg;
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

// -------------------------------------------------------------- files

bool Table::loadFile(const QString &fileName, bool at)
{
    if (!at) {
        buildModel();
        QResizeEvent event(size(), size());
        QApplication::sendEvent(this, &event);
        selectRow(0);
    }
    m_loadAt = at;
    const bool ok = TableFile::load(fileName, this);
    m_loadAt = false;
    if (ok)
        QDir::setCurrent(QFileInfo(fileName).absolutePath());
    return ok;
}

bool Table::saveFile(const QString &fileName)
{
    const bool ok = TableFile::save(fileName, define(), referenceValue());
    if (ok)
        QDir::setCurrent(QFileInfo(fileName).absolutePath());
    return ok;
}

bool Table::exportFile(const QString &fileName)
{
    QStringList rows;
    QString text = QStringLiteral("void RegViewCode()\n{\n");
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QString name = cellText(row, RegName);
        if (name.isEmpty())
            break;
        const quint64 address = hexNumber(cellText(row, Address)) | ((hexNumber(cellText(row, Func)) & 1) << 7);
        QString regTip = cell(row, RegName) ? cell(row, RegName)->toolTip() : QString();
        QString valueTip = cell(row, Value) ? cell(row, Value)->toolTip() : QString();
        regTip.replace(QLatin1Char('\n'), QLatin1String("\n\t"));
        valueTip.replace(QLatin1Char('\n'), QLatin1String("\n\t\t"));
        text += QStringLiteral("\t/*\n\t") + regTip + QStringLiteral("\n\t\t") + valueTip + QStringLiteral("*/\n");
        const QString addressText = QString::number(address, 16);
        const QString comment = cellText(row, Comment);
        if (comment.isEmpty())
            text += QStringLiteral("  SetRegister(0x%1, %2);\n").arg(addressText, cellText(row, Value));
        else
            text += QStringLiteral("  SetRegister(0x%1, %2); /* %3 */\n").arg(addressText, cellText(row, Value), comment);
        const QString delay = cellText(row, Delay);
        quint64 d = 0;
        if (CellFormat::toUnsigned(delay, &d) && d != 0)
            text += QStringLiteral("  Delay(") + delay + QStringLiteral(");\n");
    }
    text += QStringLiteral("}\n");
    const bool ok = TableFile::writeText(fileName, text.toUtf8());
    if (ok)
        QDir::setCurrent(QFileInfo(fileName).absolutePath());
    return ok;
}

// ------------------------------------------------------ user editing

void Table::record(const QString &line)
{
    RecordingHook::record(line);
}

void Table::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    auto *lineEdit = qobject_cast<QLineEdit *>(editor);
    const QModelIndex index = m_editIndex.isValid() ? QModelIndex(m_editIndex) : currentIndex();
    // Only the editor's own close (Enter, Tab, Escape) moves on: the view
    // also closes editors itself when the current cell changes.
    const bool fromEditor = qobject_cast<QAbstractItemDelegate *>(sender()) != nullptr;
    m_editIndex = QPersistentModelIndex();
    if (!lineEdit || !index.isValid() || !fromEditor) {
        QTableView::closeEditor(editor, hint);
        return;
    }
    const int row = index.row();
    const int col = index.column();
    QString text = normaliseNumber(lineEdit->text());
    record(QStringLiteral("SetTableValue(%1)").arg(QStringList{define(), QString::number(row), QString::number(col), text}
                                                        .join(QStringLiteral(", "))));
    int nextRow = row;
    int nextCol = col + 1;
    if (nextCol >= m_model->columnCount()) {
        nextCol = 0;
        ++nextRow;
    }
    const QModelIndex next = m_model->index(nextRow, nextCol);
    if (hint != QAbstractItemDelegate::SubmitModelCache) {
        m_nextIndex = next;
        QTableView::closeEditor(editor, hint);
        return;
    }
    const int kind = m_columns[col].kind;
    quint64 v = 0;
    if ((kind == Address || kind == Func || kind == Value) && CellFormat::toUnsigned(text, &v))
        text = CellFormat::apply(m_columns[col].format, v);
    if (QStandardItem *item = m_model->item(row, col)) {
        item->setData(text, Qt::DisplayRole);
        item->setData(text, Qt::EditRole);
    }
    if (kind == Value)
        decodeToolTip(v, row, 0, QString());
    valueChangedByUser(row);
    QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    if (next.isValid()) {
        setCurrentIndex(next);
        m_currentRow = next.row();
        m_currentColumn = next.column();
        edit(next);
    }
}

bool Table::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    const bool opened = QTableView::edit(index, trigger, event);
    if (opened)
        m_editIndex = index;
    return opened;
}

void Table::keyPressEvent(QKeyEvent *event)
{
    const int row = currentIndex().isValid() ? currentIndex().row() : m_currentRow;
    if (event->matches(QKeySequence::Copy)) {
        for (int j = 0; j < 6; ++j)
            m_copyTexts[j] = cellText(row, kRecordKinds[j]);
        m_copyToolTips[0] = cell(row, RegName) ? cell(row, RegName)->toolTip() : QString();
        m_copyToolTips[1] = cell(row, Value) ? cell(row, Value)->toolTip() : QString();
        m_haveCopy = true;
        return;
    }
    if (event->matches(QKeySequence::Paste)) {
        if (!m_haveCopy || row < 0)
            return;
        for (int j = 0; j < 6; ++j) {
            const int col = columnOf(kRecordKinds[j]);
            if (col >= 0)
                setItem(row, col, m_copyTexts[j], !disabledKind(kRecordKinds[j]));
        }
        if (QStandardItem *item = cell(row, RegName))
            item->setToolTip(m_copyToolTips[0]);
        if (QStandardItem *item = cell(row, Value))
            item->setToolTip(m_copyToolTips[1]);
        valueChangedByUser(row);
        return;
    }
    if (event->matches(QKeySequence::Delete)) {
        deleteRow();
        return;
    }
    QTableView::keyPressEvent(event);
}

void Table::moveRows(QList<int> rows, int target)
{
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    rows.erase(std::remove_if(rows.begin(), rows.end(), [this](int r) { return r < 0 || r >= m_model->rowCount(); }),
               rows.end());
    if (rows.isEmpty())
        return;
    if (target < 0 || target > m_model->rowCount())
        target = m_model->rowCount();
    const int count = rows.size();
    const int columns = m_model->columnCount();
    m_model->insertRows(target, count);
    QList<int> shifted;
    for (int k = 0; k < count; ++k) {
        const int from = rows.at(k) >= target ? rows.at(k) + count : rows.at(k);
        shifted << from;
        for (int col = 0; col < columns; ++col)
            m_model->setItem(target + k, col, m_model->takeItem(from, col));
    }
    for (int k = shifted.size() - 1; k >= 0; --k)
        m_model->removeRow(shifted.at(k));
    emit changedByUser();
}

void Table::dropEvent(QDropEvent *event)
{
    if (event->source() != this) {
        event->ignore();
        return;
    }
    const int target = indexAt(event->pos()).row();
    QList<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedIndexes())
        rows << index.row();
    moveRows(rows, target);
    // The rows are moved already: a copy action keeps the view from
    // removing the dragged rows once more.
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void Table::onTableClicked(const QModelIndex &index)
{
    if (!index.isValid())
        return;
    m_currentRow = index.row();
    m_currentColumn = index.column();
    selectRow(m_currentRow);
    record(QStringLiteral("SetTableLine(%1, %2)").arg(define()).arg(m_currentRow));
    qDebug().noquote() << QStringLiteral("onTableClicked %1 / %2").arg(index.row()).arg(index.column());
}

void Table::onTablePressed(const QModelIndex &index)
{
    if (!index.isValid())
        return;
    m_currentRow = index.row();
    m_currentColumn = index.column();
    qDebug().noquote() << QStringLiteral("onTablePressed %1 / %2").arg(index.row()).arg(index.column());
}

void Table::valueChanged(int val)
{
    Q_UNUSED(val);
    emit updateMathLabels();
}

void Table::valueChangedByUser(int val)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    valueChanged(val);
}

void Table::enable(bool on)
{
    setElementEnabled(on);
}

void Table::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

bool Table::setBits(int msb, int lsb)
{
    Q_UNUSED(msb);
    Q_UNUSED(lsb);
    return true;
}

void Table::connectSignals()
{
    applyScaledWidths();
    QPalette p = palette();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        p.setColor(group, QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Inactive, QPalette::Highlight, QColor(64, 64, 64));
    p.setColor(QPalette::Active, QPalette::Highlight, QColor(54, 153, 253));
    setPalette(p);
}

void Table::resizeEvent(QResizeEvent *event)
{
    if (event->size().width() == -1 && event->size().height() == -1) {
        QTableView::resizeEvent(event);
        return;
    }
    QTableView::resizeEvent(event);
    applyScaledWidths();
}

QSize Table::minimumSizeHint() const
{
    int sum = 0;
    for (int col = 0; col < m_columnCount; ++col)
        sum += columnWidth(col);
    int rowHeight = m_model->rowCount() > 1 ? QTableView::rowHeight(1) : verticalHeader()->defaultSectionSize();
    if (rowHeight <= 0)
        rowHeight = verticalHeader()->defaultSectionSize();
    return QSize(sum + verticalHeader()->width(), 10 * rowHeight + horizontalHeader()->height());
}
