#pragma once
#include <QStandardItemModel>
#include <QTreeView>

#include "elements/ActiveElement.h"
#include "model/EnumeratedValue.h"

class HardwareModel;

// The SVD model on the form: peripherals, their registers and fields as a
// tree, with the current value of the element bound to each when asked.
class SvdTree : public QTreeView, public ActiveElement
{
    Q_OBJECT
public:
    explicit SvdTree(QWidget *parent = nullptr);

    void setShowSvdOnly(bool on);
    void setShowValues(bool on);
    bool showValues() const { return m_showValues; }
    QStandardItemModel *treeModel() const { return m_model; }

    // Empties and fills the tree from the model of the open document.
    void refresh();

    // The tool tip of a field: its description, then "-value: name" lines.
    static QString fieldToolTip(const QString &description, const QList<EnumeratedValue> &values);

    // ActiveElement
    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override { return m_value; }
    void connectSignals() override;
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override;
    bool setBits(int msb, int lsb) override;
    QWidget *widget() override { return this; }
    using ActiveElement::property;
    using ActiveElement::setProperty;
    QString typeInfo() const override { return QStringLiteral("SvdTree"); }

signals:
    void changedByUser();
    void updateMathLabels() override;

public slots:
    void sendData(const QString &value);
    void enable(bool enable);
    void valueChanged(const QString &value);
    void valueChangedByUser(const QString &value);

private:
    QStandardItemModel *m_model;
    bool m_showSvdOnly = false;
    bool m_showValues = false;
    QString m_value;
};
