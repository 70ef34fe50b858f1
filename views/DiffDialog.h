#pragma once
#include <QDialog>

class QModelIndex;
class QTableWidget;

// The current form against a saved configuration, one row per element
// whose value differs. Nothing in the form changes; a double-click on a row
// goes to its element.
class DiffDialog : public QDialog
{
    Q_OBJECT
public:
    explicit DiffDialog(QWidget *parent = nullptr);

    // The file compared with goes into the title.
    void setFileName(const QString &fileName);
    // Lines "<define>#:#<current>!=<in file>", each after a line feed (a
    // text of one line gives no rows; a first empty line is skipped).
    void setDifferences(const QString &text);
    int rowCount() const;
    // Column 0..2 of a row: define, current value, value in the file.
    QString cell(int row, int column) const;

signals:
    void elementRequested(const QString &define);

public slots:
    void on_doubleClicked(const QModelIndex &index);

private:
    QTableWidget *m_table;
};
