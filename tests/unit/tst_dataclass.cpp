#include <QtTest>

#include "FakeElement.h"
#include "RecordingSink.h"
#include "device/TargetVariable.h"
#include "elements/DataClass.h"
#include "elements/DefineAssignment.h"
#include "elements/DocumentTables.h"

#include <QSignalSpy>
#include <cstring>

// A simulated target: a flat memory that records every access.
class FakeMemory : public TargetMemory
{
public:
    QByteArray bytes = QByteArray(64, '\0');
    int reads = 0;
    int writes = 0;
    bool read(quint32 address, quint32 size, quint8 *out) override
    {
        ++reads;
        if (address + size > quint32(bytes.size()))
            return false;
        std::memcpy(out, bytes.constData() + address, size);
        return true;
    }
    bool write(quint32 address, quint32 size, const quint8 *in) override
    {
        ++writes;
        if (address + size > quint32(bytes.size()))
            return false;
        std::memcpy(bytes.data() + address, in, size);
        return true;
    }
    quint32 word(quint32 address) const
    {
        quint32 v = 0;
        std::memcpy(&v, bytes.constData() + address, 4);
        return v;
    }
};

// Values without a widget, their binding to target memory, the element
// list's order of last change and the assignment used by -d.
class TestDataClass : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_memory = new FakeMemory;
        TargetMemory::install(m_memory);
        m_tables = new DocumentTables;
        DocumentTables::setCurrent(m_tables);
    }

    void cleanup()
    {
        TargetMemory::install(nullptr);
        delete m_memory;
        delete m_tables;
    }

    void plainValueEmitsInOrder()
    {
        DataClass d(QStringLiteral("speed"));
        QStringList order;
        connect(&d, &DataClass::updateLEDs, this, [&order] { order << "leds"; });
        connect(&d, &DataClass::updateMathLabels, this, [&order] { order << "math"; });
        d.setValue(7);
        QCOMPARE(d.getValue(), 7u);
        QCOMPARE(order, (QStringList{"leds", "math"}));
        // The value property reads and writes the same word.
        QVERIFY(d.setProperty("value", 9));
        QCOMPARE(d.property("value").toUInt(), 9u);
    }

    void defaults_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<quint32>("value");
        QTest::addColumn<float>("floatValue");
        QTest::newRow("empty") << "" << 0u << 0.0f;
        QTest::newRow("decimal") << "12" << 12u << 12.0f;
        QTest::newRow("hex") << "0x20" << 32u << 32.0f;
        QTest::newRow("binary") << "0b11" << 3u << 3.0f;
        QTest::newRow("float") << "2.5" << 2u << 2.5f;
    }

    void defaults()
    {
        QFETCH(QString, text);
        QFETCH(quint32, value);
        QFETCH(float, floatValue);
        DataClass d(QStringLiteral("x"));
        d.value = 99;
        d.setProperty("my_default", text);
        d.applyDefault();
        QCOMPARE(d.value, value);
        QCOMPARE(d.floatValue, floatValue);
    }

    void writesGoToTarget()
    {
        DataClass d(QStringLiteral("reg"));
        auto *t = new TargetVariable;
        t->address = 8;
        t->size = 4;
        t->bitOffset = 4;
        t->valid = 1;
        d.setTarget(t);
        QCOMPARE(t->dataClass, &d);
        QSignalSpy spy(&d, &DataClass::updateMathLabels);
        d.setValue(0x12);
        QCOMPARE(m_memory->word(8), 0x120u);
        QCOMPARE(spy.count(), 1);
    }

    void readOnlyAndInvalidTargetsOnlyEmit()
    {
        DataClass d(QStringLiteral("reg"));
        auto *t = new TargetVariable;
        t->address = 0;
        t->size = 4;
        t->readOnly = 1;
        t->valid = 1;
        d.setTarget(t);
        QSignalSpy spy(&d, &DataClass::updateLEDs);
        d.setValue(5);
        t->readOnly = 0;
        t->valid = 0;
        d.setValue(6);
        QCOMPARE(m_memory->writes, 0);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(d.value, 6u);
    }

    void readOnAccess()
    {
        DataClass d(QStringLiteral("counter"));
        auto *t = new TargetVariable;
        t->address = 16;
        t->size = 2;
        d.setTarget(t);
        d.readOnAccess = true;
        d.value = 0xFFFFFFFF;
        m_memory->bytes[16] = char(0x34);
        m_memory->bytes[17] = char(0x12);
        m_memory->bytes[18] = char(0x77);
        // A two-byte variable clears the rest of the word first.
        QCOMPARE(d.getValue(), 0x1234u);
        QCOMPARE(t->valid, quint8(1));
        m_memory->bytes[16] = char(0x35);
        QCOMPARE(d.getValue(), 0x1235u);
        QCOMPARE(m_memory->reads, 2);
    }

    void triggeredReadResetsNextDefine()
    {
        auto *trigger = m_tables->addDataValue(new DataClass(QStringLiteral("trigger")));
        auto *next = m_tables->addDataValue(new DataClass(QStringLiteral("busy")));
        next->value = 1;
        auto *t = new TargetVariable;
        t->address = 4;
        t->size = 8;
        trigger->setSize(8);
        trigger->setTarget(t);
        trigger->triggered = true;
        trigger->nextDefine = QStringLiteral("busy");
        m_memory->bytes.replace(4, 8, QByteArray("ABCDEFGH"));

        trigger->setValue(0);
        QCOMPARE(m_memory->reads, 0);
        QCOMPARE(next->value, 1u);

        trigger->setValue(1);
        QCOMPARE(m_memory->reads, 1);
        QCOMPARE(trigger->buffer(), QByteArray("ABCDEFGH"));
        QCOMPARE(t->valid, quint8(1));
        QCOMPARE(next->value, 0u);
    }

    void bytesComposeBigEndian()
    {
        DataClass d(QStringLiteral("frame"));
        d.setSize(6);
        d.buffer() = QByteArray("\x01\x02\x03\x04\x05\x06", 6);
        d.setBytes(1, 3);
        QCOMPARE(d.value, 0x020304u);
        d.setBytes(4, 10);
        QCOMPARE(d.value, 0x0506u);
    }

    void elementListMovesToEnd()
    {
        FakeElement a(QStringLiteral("a")), b(QStringLiteral("b")), c(QStringLiteral("c"));
        ElementList list;
        list.append(&a);
        list.append(&b);
        list.append(&c);
        list.append(&a); // already there: no second entry
        list.moveToEnd(&a);
        list.moveToEnd(&b);
        QCOMPARE(list.toList(), (QList<ActiveElement *>{&c, &a, &b}));
        list.remove(&a);
        QCOMPARE(list.toList(), (QList<ActiveElement *>{&c, &b}));
        QVERIFY(!list.contains(&a));
    }

    void assignmentToRecordsAndUnknownNames()
    {
        RecordingSink sink;
        auto *speed = m_tables->addDataValue(new DataClass(QStringLiteral("speed")));
        auto *ratio = m_tables->addDataValue(new DataClass(QStringLiteral("ratio")));
        ratio->datatype = DataClass::Float;

        QCOMPARE(DefineAssignment::setDefineValue(*m_tables, QStringLiteral("speed"), QStringLiteral("0x10")),
                 DefineAssignment::Done);
        QCOMPARE(speed->value, 16u);
        QCOMPARE(DefineAssignment::setDefineValue(*m_tables, QStringLiteral("ratio"), QStringLiteral("0.25")),
                 DefineAssignment::Done);
        QCOMPARE(ratio->floatValue, 0.25f);
        QCOMPARE(DefineAssignment::setDefineValue(*m_tables, QStringLiteral("speed"), QStringLiteral("fast")),
                 DefineAssignment::Refused);
        QCOMPARE(sink.errors.last(), QStringLiteral("Can not use \"Set\" with parameter \"speed\""));
        QCOMPARE(speed->value, 16u);
        QCOMPARE(DefineAssignment::setDefineValue(*m_tables, QStringLiteral("nobody"), QStringLiteral("1")),
                 DefineAssignment::UnknownDefine);
        QCOMPARE(DefineAssignment::unknownDefineText(QStringLiteral("nobody"), QStringLiteral("SET(nobody,1)"),
                                                     QStringLiteral("$xmlopen$a$-n3$-c1"), 3),
                 QStringLiteral("<font color=\"red\"> <b>Script Error: </b></font><b>Unknown define: nobody in line SET(nobody,1) <b><a href=\"$xmlopen$a$-n3$-c1\">file</a> line 3</b><b><br>"));
    }

private:
    FakeMemory *m_memory = nullptr;
    DocumentTables *m_tables = nullptr;
};

QTEST_MAIN(TestDataClass)
#include "tst_dataclass.moc"
