#pragma once
#include <QDialog>
#include <QModelIndex>
#include <memory>

class PinMappingDocument;
class QCheckBox;
class QStandardItemModel;
class QTableView;

// "Portmapping Details": every pin with the functions that may sit on it,
// their conditions (bold while they hold) and what each condition means.
class PortMappingDetailsDialog : public QDialog
{
    Q_OBJECT
public:
    PortMappingDetailsDialog(std::shared_ptr<PinMappingDocument> document, QWidget *parent = nullptr);

    QStandardItemModel *model() const { return m_model; }
    QCheckBox *connectedOnly() const { return m_connectedOnly; }
    QTableView *table() const { return m_table; }

    // The define a row leads to (what a double click opens).
    QString defineOfRow(int row) const;

public slots:
    void on_doubleClicked(QModelIndex index);
    void on_CheckboxClicked();

private:
    std::shared_ptr<PinMappingDocument> m_document;
    QStandardItemModel *m_model;
    QTableView *m_table;
    QCheckBox *m_connectedOnly;
};
