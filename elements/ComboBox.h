#pragma once
#include <QComboBox>
#include <QMap>

#include "elements/ActiveElement.h"

class HardwareModel;

// A list of items: each item's value is its data (user role, as text), its
// label the display text and its description the tool tip. Items may stand
// in for enumerated values of the SVD file (override), or suppress them
// (hide).
class ComboBox : public QComboBox, public ActiveElement
{
    Q_OBJECT
public:
    explicit ComboBox(QWidget *parent = nullptr);

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
    QWidget *widget() override { return this; }
    // One object, two bases: both reach the widget's properties.
    using ActiveElement::property;
    using ActiveElement::setProperty;
    QString typeInfo() const override { return QStringLiteral("ComboBox"); }

    // An item of the description: value is kept normalised as item data.
    void addListItem(const QString &label, const QString &value, const QString &description = QString());
    // An item that takes the place of the SVD enumerated value named by
    // `replaced` (its name, or its value in decimal).
    void addOverrideItem(const QString &label, const QString &replaced);
    // Suppresses the SVD enumerated value with that name or value.
    void hideEnumerated(const QString &nameOrValue);

    // Text and data markers of items standing for SVD values.
    static QString overrideMarker() { return QStringLiteral("$$$OVERRIDE$$$"); }
    static QString hideMarker() { return QStringLiteral("$$$HIDE$$$"); }

    // Where kind 7 (fill with a peripheral's registers) looks peripherals up.
    static void setHardwareModel(HardwareModel *model);

    // The item for a text in the form of kind (0 data, 1 label, 2 index),
    // after resolving a define with selector; -1 when there is none.
    int findItem(const QString &text, int kind) const;

    int currentIndexValue() const { return m_currentIndex; }
    int referenceIndex() const { return m_referenceIndex; }
    QString peripheralName() const { return m_peripheral; }

signals:
    void changedByUser();
    void updateMathLabels() override;
    void selected_sendUSB(const QString &data);
    void selected_recData(const QString &data);
    void selected_setDef(const QString &data);
    void selected_runScript(const QString &data);
    void selected_loadFile(const QString &data);
    void unselected_setDef(const QString &data);
    void unselected_sendUSB(const QString &data);
    void unselected_recData(const QString &data);
    void sendLock(const QString &lock);
    void sendUnlock(const QString &lock);

public slots:
    void sendData(int index);
    void valueChanged(int index);
    void valueChangedByUser(int index);
    // The by-user path for the current item, for assignments made on the
    // user's behalf (-d, SET).
    void valueChangedByUser();

private:
    void fillFromPeripheral(const QString &text);
    void setIndexQuietly(int index);
    void emitLockList(int index, bool lock);

    int m_currentIndex = 0;
    int m_referenceIndex = 0;
    QString m_peripheral;
    // Override map: key (SVD name or value) -> label, or the hide marker.
    QMap<QString, QString> m_overrides;
};
