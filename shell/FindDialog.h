#pragma once
#include <QDialog>
#include <QStringList>

class QLineEdit;
class QListWidget;
class QListWidgetItem;

// Finds an element of the form by its define or its label: the list
// narrows as the user types; Enter or a double click goes to the element.
class FindDialog : public QDialog
{
    Q_OBJECT
public:
    // entries: define and the text shown for it (define and label).
    explicit FindDialog(const QList<QPair<QString, QString>> &entries, QWidget *parent = nullptr);

    QLineEdit *searchLine() const { return m_search; }
    QListWidget *results() const { return m_results; }

public slots:
    void filter(const QString &text);

signals:
    void elementChosen(const QString &define);

private slots:
    void choose(QListWidgetItem *item);
    void chooseCurrent();

private:
    QList<QPair<QString, QString>> m_entries;
    QLineEdit *m_search = nullptr;
    QListWidget *m_results = nullptr;
};
