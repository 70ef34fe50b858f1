#pragma once
#include <QDialog>

class QTextEdit;

// Shown after a load when values of the configuration found no place in
// the form (left) or elements of the form found no value in the file
// (right). It never stops the load: it only tells what happened.
class UnresolvedDialog : public QDialog
{
    Q_OBJECT
public:
    explicit UnresolvedDialog(QWidget *parent = nullptr);

    // left: "#define" lines as text; right: anchors to the elements.
    void setLists(const QString &left, const QString &right);
    QString leftText() const;
    QString rightText() const;

signals:
    // A define of the right-hand list was clicked.
    void elementRequested(const QString &define);

private:
    QTextEdit *m_left;
    QTextEdit *m_right;
};
