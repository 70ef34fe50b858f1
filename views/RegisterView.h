#pragma once
#include <QList>
#include <QStandardItemModel>
#include <QTableView>

#include "elements/ActiveElement.h"
#include "model/EnumeratedValue.h"

class QStyledItemDelegate;

// One field column of a register view, as the rebuild lays it out.
struct RegisterViewField
{
    QString name;
    QString description;
    int msb = 0;
    int lsb = 0;
    bool readOnly = false;
    QList<EnumeratedValue> enumerated;
};

// One register of the SVD model as a table of one row: a column per bit
// field, highest bits on the left, gaps shown as "reserved" columns. The
// user edits field by field (check box, spin box or combo box); the value
// is the whole register word. Which register is shown is set at run time
// through the suffixes `module`, `register` and `value`.
class RegisterView : public QTableView, public ActiveElement
{
    Q_OBJECT
public:
    // Roles of a cell: the field's number for the word, and as first set.
    static const int WordRole = 0x100;
    static const int FirstRole = 0x101;
    // Combo texts carry the binary code beside the name.
    static const bool kShowBinary = true;

    explicit RegisterView(QWidget *parent = nullptr);

    void setBuddy(const QString &text);

    // ActiveElement
    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override { return QString(); }
    void connectSignals() override;
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override;
    bool setBits(int msb, int lsb) override;
    void updateToolTip() override;
    QWidget *widget() override { return this; }
    using ActiveElement::property;
    using ActiveElement::setProperty;
    QString typeInfo() const override { return QStringLiteral("RegView"); }

    // The word built from the cells.
    quint64 word() const;
    // After a delegate wrote a cell.
    void cellCommitted();

    QStandardItemModel *viewModel() const { return m_model; }
    const QList<RegisterViewField> &fields() const { return m_fields; }
    QString moduleName() const { return m_moduleName; }
    QString registerName() const { return m_registerName; }
    quint32 registerAddress() const { return m_registerAddress; }
    int registerWidth() const { return m_registerWidth; }
    bool buddyState() const { return m_buddyState; }

    // The text of an enumerated value in a combo: "name (0b0101)".
    static QString itemText(const EnumeratedValue &value, int width);
    // The fields of a register, highest first, with the gaps filled by
    // read-only "reserved" fields up to the top bit (width bits).
    static QList<RegisterViewField> layoutFields(QList<RegisterViewField> fields, int width);

    // The value shared by all register views until the next rebuild.
    static void setPending(quint64 value);
    static bool hasPending();

signals:
    void updateMathLabels() override;

public slots:
    void onTableClicked(const QModelIndex &index);
    void enable(bool enable);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void rebuild(const QString &text);
    void applyBuddy();

    QStandardItemModel *m_model = nullptr;
    QList<QStyledItemDelegate *> m_delegates;
    QList<RegisterViewField> m_fields;
    quint64 m_word = 0;
    int m_columnCount = 0;
    QList<int> m_shifts;
    QString m_registerName;
    quint32 m_registerAddress = 0;
    QString m_buddyName;
    int m_buddyValue = 0;
    bool m_buddyState = false;
    QString m_moduleName;
    quint16 m_pixelsPerBit = 0;
    quint16 m_registerWidth = 32;
    QList<quint16> m_bits;
};
