#pragma once
#include <QDialog>
#include <QPointer>
#include <QStringList>

class ComboBoxActionDelegate;
class QStandardItemModel;
class QTableView;

// "Actions of the UI element %1": the entries of an element's `data` map as
// rows (index, event, command, data, reply, delay, condition). Nothing
// changes until accept(), which rebuilds the map from the rows.
class EditActionsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit EditActionsDialog(QObject *element, QWidget *parent = nullptr);

    // Actions accepted are wired to the host's command slots.
    void setSlotHost(QObject *host) { m_slotHost = host; }

    QStandardItemModel *model() const { return m_model; }
    QTableView *view() const { return m_view; }

    // The events the element's class can raise.
    static QStringList eventsOf(const QObject *element);
    static QStringList commands();
    // The text of an empty cell.
    static QString none() { return QStringLiteral("---"); }

public slots:
    void insertLine();
    void deleteLine();
    void accept() override;

private:
    void fillRows();

    QPointer<QObject> m_element;
    QPointer<QObject> m_slotHost;
    QStandardItemModel *m_model;
    QTableView *m_view;
    ComboBoxActionDelegate *m_events;
    ComboBoxActionDelegate *m_commands;
};
