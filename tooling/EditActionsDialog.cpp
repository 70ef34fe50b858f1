#include "tooling/EditActionsDialog.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DoubleSpinBox.h"
#include "elements/MathLabel.h"
#include "elements/PushButton.h"
#include "elements/SpinBox.h"
#include "elements/TimerLabel.h"
#include "elements/ToggleButton.h"
#include "reader/ActionReader.h"
#include "tooling/ComboBoxActionDelegate.h"

#include <QCollator>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>
#include <QVariantMap>

namespace {

enum Column { Index, Event, Cmd, Data, RecData, Delay, Cond, ColumnCount };

bool isSendUsb(const QString &command)
{
    return command == QLatin1String("sendUSB");
}

QString cellText(const QString &text)
{
    return text.isEmpty() ? EditActionsDialog::none() : text;
}

QString entryText(const QString &cell)
{
    return cell == EditActionsDialog::none() ? QString() : cell;
}

} // namespace

EditActionsDialog::EditActionsDialog(QObject *element, QWidget *parent)
    : QDialog(parent)
    , m_element(element)
    , m_model(new QStandardItemModel(0, ColumnCount, this))
    , m_view(new QTableView(this))
    , m_events(new ComboBoxActionDelegate(this))
    , m_commands(new ComboBoxActionDelegate(this))
{
    setWindowTitle(tr("Actions of the UI element %1").arg(element ? element->objectName() : QString()));
    m_model->setHorizontalHeaderLabels({tr("Index"), tr("Event"), tr("Cmd"), tr("Data"), tr("RecData"), tr("Delay"),
                                        tr("Cond")});
    m_view->setModel(m_model);
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_events->setItems(eventsOf(element));
    m_commands->setItems(commands());
    m_view->setItemDelegateForColumn(Event, m_events);
    m_view->setItemDelegateForColumn(Cmd, m_commands);

    auto *insert = new QPushButton(tr("Insert"), this);
    auto *remove = new QPushButton(tr("Delete"), this);
    insert->setObjectName(QStringLiteral("insert"));
    remove->setObjectName(QStringLiteral("delete"));
    connect(insert, &QPushButton::clicked, this, &EditActionsDialog::insertLine);
    connect(remove, &QPushButton::clicked, this, &EditActionsDialog::deleteLine);
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    box->addButton(insert, QDialogButtonBox::ActionRole);
    box->addButton(remove, QDialogButtonBox::ActionRole);
    connect(box, &QDialogButtonBox::accepted, this, &EditActionsDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &EditActionsDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_view);
    layout->addWidget(box);
    resize(760, 320);
    fillRows();
}

QStringList EditActionsDialog::eventsOf(const QObject *element)
{
    auto *object = const_cast<QObject *>(element);
    if (qobject_cast<ComboBox *>(object) || qobject_cast<ButtonGroup *>(object))
        return {QStringLiteral("selected"), QStringLiteral("unselected")};
    if (qobject_cast<CheckBox *>(object) || qobject_cast<ToggleButton *>(object))
        return {QStringLiteral("checked"), QStringLiteral("unchecked")};
    if (qobject_cast<PushButton *>(object))
        return {QStringLiteral("clicked")};
    // Math labels, timers and every number element report a change.
    return {QStringLiteral("changed")};
}

QStringList EditActionsDialog::commands()
{
    return {QStringLiteral("sendUSB"),      QStringLiteral("setDef"),   QStringLiteral("resetGUI"),
            QStringLiteral("loadFile"),     QStringLiteral("startProgram"), QStringLiteral("runScript")};
}

void EditActionsDialog::fillRows()
{
    if (!m_element)
        return;
    const QVariantMap data = m_element->property("data").toMap();
    QStringList keys = data.keys();
    // Item keys are numbers: "10" after "9".
    QCollator numeric;
    numeric.setNumericMode(true);
    std::sort(keys.begin(), keys.end(), numeric);
    for (const QString &key : qAsConst(keys)) {
        const QStringList list = data.value(key).toStringList();
        int i = 0;
        while (i + 2 < list.size()) {
            const QString name = list.at(i);
            const int sep = name.indexOf(QLatin1Char('_'));
            const QString event = sep < 0 ? name : name.left(sep);
            const QString command = sep < 0 ? QString() : name.mid(sep + 1);
            const bool usb = isSendUsb(command);
            if (usb && i + 4 >= list.size())
                break;
            QList<QStandardItem *> row;
            row << new QStandardItem(key) << new QStandardItem(event) << new QStandardItem(command)
                << new QStandardItem(cellText(list.at(i + 2)))
                << new QStandardItem(usb ? cellText(list.at(i + 3)) : none())
                << new QStandardItem(usb ? cellText(list.at(i + 4)) : none())
                << new QStandardItem(cellText(list.at(i + 1)));
            m_model->appendRow(row);
            i += usb ? 5 : 3;
        }
    }
}

void EditActionsDialog::insertLine()
{
    const QModelIndex current = m_view->currentIndex();
    const int at = current.isValid() ? current.row() + 1 : m_model->rowCount();
    const QString key = current.isValid() ? m_model->item(current.row(), Index)->text() : QStringLiteral("0");
    const QStringList events = m_events->items();
    QList<QStandardItem *> row;
    row << new QStandardItem(key) << new QStandardItem(events.value(0)) << new QStandardItem(QStringLiteral("setDef"))
        << new QStandardItem(none()) << new QStandardItem(none()) << new QStandardItem(none())
        << new QStandardItem(none());
    m_model->insertRow(at, row);
    m_view->setCurrentIndex(m_model->index(at, Data));
}

void EditActionsDialog::deleteLine()
{
    const QModelIndex current = m_view->currentIndex();
    if (!current.isValid())
        return;
    m_model->removeRow(current.row());
}

void EditActionsDialog::accept()
{
    if (m_element) {
        QVariantMap data;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            auto cell = [this, row](int column) { return m_model->item(row, column)->text().trimmed(); };
            const QString event = cell(Event);
            const QString command = cell(Cmd);
            if (event.isEmpty() || command.isEmpty() || event == none() || command == none())
                continue;
            const QString key = entryText(cell(Index)).isEmpty() ? QStringLiteral("0") : cell(Index);
            QStringList entry = {event + QLatin1Char('_') + command, entryText(cell(Cond)), entryText(cell(Data))};
            // A send carries its expected reply and the wait behind it.
            if (isSendUsb(command))
                entry << entryText(cell(RecData)) << entryText(cell(Delay));
            data.insert(key, data.value(key).toStringList() + entry);
            // The same wiring the reader gives an action; a signal the
            // element does not have, or a repeated one, is left alone.
            if (m_slotHost)
                ActionReader::connectAction(m_element, entry.constFirst(), m_slotHost, command);
        }
        if (ActiveElement *element = asActiveElement(m_element))
            element->setProperty("data", data);
        else
            m_element->setProperty("data", data);
    }
    QDialog::accept();
}
