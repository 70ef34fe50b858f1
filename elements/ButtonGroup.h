#pragma once
#include <QButtonGroup>
#include <QMap>

#include "elements/ActiveElement.h"

class QAbstractButton;
class QRadioButton;

// The radio buttons of a `radio` element as one value: the checked button's
// `userData` (its value text, or its index). The buttons themselves sit in
// whatever containers the description puts them in; the group is not a
// widget, so it keeps an invisible anchor widget that carries its define,
// its properties and its place in the widget tree.
class ButtonGroup : public QButtonGroup, public ActiveElement
{
    Q_OBJECT
public:
    // The anchor is made as a child of parentWidget.
    explicit ButtonGroup(QWidget *parentWidget, const QString &define);

    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override;
    void connectSignals() override;
    void applyDefault() override;
    void emitLocks() override;
    void setElementEnabled(bool enabled) override;
    void restoreReference() override;
    bool setBits(int msb, int lsb) override;
    void updateToolTip() override;
    void addItem(const QString &name, const QString &description, int value) override;
    QWidget *widget() override { return m_anchor; }
    // The element's properties (data, locks, my_default, bits) live on the
    // group itself; the anchor only carries the common attributes.
    void setProperty(const char *name, const QVariant &value) override { QObject::setProperty(name, value); }
    QVariant property(const char *name) const override { return QObject::property(name); }
    QString typeInfo() const override { return QStringLiteral("ButtonGroup"); }

    // Adds a button with the next id; value empty: its index.
    void addRadioButton(QRadioButton *button, const QString &value);
    // The button for a text in the form of kind (0 value, 1 label, 2 id).
    QAbstractButton *findButton(const QString &text, int kind) const;
    // The value text of a button: its userData, normalised.
    static QString buttonValue(const QAbstractButton *button);

    // Makes every button ignore the mouse and the focus (readonly).
    void setReadOnly(bool readOnly);

signals:
    void changedByUser();
    void updateMathLabels() override;
    void selected_sendUSB(const QString &data);
    void selected_recData(const QString &data);
    void selected_setDef(const QString &data);
    void unselected_sendUSB(const QString &data);
    void unselected_setDef(const QString &data);
    void sendLock(const QString &lock);
    void sendUnlock(const QString &lock);

public slots:
    void sendData(int index);
    void valueChanged(QAbstractButton *button);
    void valueChangedByUser(QAbstractButton *button);
    void valueChangedByUser();

private:
    void checkQuietly(QAbstractButton *button);
    void emitLockList(int index, bool lock);

    QWidget *m_anchor;
    int m_referenceIndex = -1;
    int m_currentIndex = -1;
    QMap<QString, QAbstractButton *> m_buttonByData;
    QMap<QAbstractButton *, QString> m_dataByButton;
};
