#pragma once
#include <QByteArray>
#include <QObject>
#include <QVariant>
#include <QString>
#include <memory>

struct TargetVariable;

// A value without a widget: from a description's `var` element and for the
// reserved defines. It may be bound to a variable in the target's memory.
class DataClass : public QObject
{
    Q_OBJECT
    Q_PROPERTY(ulong value READ propertyValue WRITE setPropertyValue)

public:
    enum DataType { UnsignedInteger = 0, Float = 1 };

    explicit DataClass(const QString &define, QObject *parent = nullptr);
    ~DataClass() override;

    quint32 getValue();
    float getFloat();
    void setValue(quint32 v);
    void setFloat(float v);
    // Composes a value from bytes first..last of the buffer (first is the
    // most significant) and stores it.
    void setBytes(int first, int last);
    // Folds bytes into the value, the first most significant (a reply from
    // the board), and announces the change.
    void setBytes(const QByteArray &bytes);
    void applyDefault();

    // Binds to the target; the DataClass owns the record.
    void setTarget(TargetVariable *target);
    TargetVariable *target() const { return m_target.get(); }
    void setSize(int size);
    int size() const { return m_size; }
    QByteArray &buffer() { return m_buffer; }

    quint32 value = 0;
    float floatValue = 0.0f;
    QString text;
    bool triggered = false;
    QString nextDefine;
    int datatype = UnsignedInteger;
    bool readOnAccess = false;

signals:
    void updateLEDs();
    void updateMathLabels();

private:
    ulong propertyValue() const { return value; }
    void setPropertyValue(ulong v) { setValue(static_cast<quint32>(v)); }
    void emitUpdates();
    void readTarget();
    void writeTarget(const quint8 *bytes);

    std::unique_ptr<TargetVariable> m_target;
    int m_size = 0;
    QByteArray m_buffer;
};
