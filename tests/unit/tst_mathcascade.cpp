#include <QtTest>

#include "FakeElement.h"
#include "RecordingSink.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/MathLabel.h"
#include "elements/Selectors.h"
#include "model/MathCascade.h"

#include <memory>

// MathLabel's values and display, and the cascade that recomputes labels
// when what they read changes: only the dependents, through chains of
// labels, with cycles reported instead of followed, and with the range
// check of labels on bit fields.
class TestMathCascade : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_sink = new RecordingSink;
        m_tables = new DocumentTables;
        DocumentTables::setCurrent(m_tables);
        m_cascade = new MathCascade(m_tables);
        m_owner = new QWidget;
    }

    void cleanup()
    {
        delete m_owner;
        delete m_cascade;
        DocumentTables::setCurrent(nullptr);
        delete m_tables;
        delete m_sink;
    }

    void labelKinds_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<int>("lsb");
        QTest::addColumn<double>("result");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("definevalue");

        QTest::newRow("decimal") << "%d" << "Hz" << -1 << 12.0 << "12Hz" << "12" << "12 Hz" << "12";
        QTest::newRow("floating, zeros dropped") << "%4.2f" << "V" << -1 << 1.5 << "1.5V" << "1.5" << "1.5 V" << "1";
        QTest::newRow("floating, point dropped") << "%4.2f" << "" << -1 << 2.0 << "2" << "2" << "2 " << "2";
        QTest::newRow("hex with prefix") << "%X" << "" << -1 << 255.0 << "0xFF" << "255" << "0xFF " << "255";
        QTest::newRow("binary groups") << "%08b" << "" << -1 << 5.0 << "0000 0101" << "5" << "0000 0101 " << "5";
        QTest::newRow("shifted by lsb") << "%d" << "" << 4 << 12.0 << "12" << "12" << "12 " << "192";
    }

    void labelKinds()
    {
        QFETCH(QString, format);
        QFETCH(QString, unit);
        QFETCH(int, lsb);
        QFETCH(double, result);
        QFETCH(QString, shown);
        QFETCH(QString, value);
        QFETCH(QString, label);
        QFETCH(QString, definevalue);

        MathLabel m;
        m.setObjectName(QStringLiteral("M"));
        QVERIFY(m.setFormat(format));
        static_cast<QObject &>(m).setProperty("suffix", unit);
        QVERIFY(m.setBits(lsb < 0 ? -1 : lsb + 7, lsb));
        m.showResult(result);
        QCOMPARE(m.text(), shown);
        QCOMPARE(m.value(Selectors::Value), value);
        QCOMPARE(m.value(Selectors::Label), label);
        QCOMPARE(m.value(Selectors::DefineValue), definevalue);
        QCOMPARE(m.value(Selectors::TypeInfo), QStringLiteral("MathLabel"));
        QCOMPARE(m.value(Selectors::Value, true).toDouble(), result);
        // The tool tip follows the shown value.
        QVERIFY2(m.toolTip().contains(QStringLiteral("M = ") + value), qPrintable(m.toolTip()));
        QVERIFY(m_sink->errors.isEmpty());

        QCOMPARE(m.value(Selectors::Index), QString());
        QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Can not return value of type \"index\" from \"M\"")});
    }

    void maxFromBits_data()
    {
        QTest::addColumn<int>("msb");
        QTest::addColumn<int>("lsb");
        QTest::addColumn<qlonglong>("max");
        QTest::newRow("no bits") << -1 << -1 << qlonglong(-1);
        QTest::newRow("one bit") << 5 << 5 << qlonglong(1);
        QTest::newRow("four bits") << 7 << 4 << qlonglong(15);
        QTest::newRow("32 bits") << 31 << 0 << qlonglong(4294967295LL);
        QTest::newRow("reversed") << 2 << 5 << qlonglong(-1);
    }

    void maxFromBits()
    {
        QFETCH(int, msb);
        QFETCH(int, lsb);
        QFETCH(qlonglong, max);
        MathLabel m;
        QVERIFY(m.setBits(msb, lsb));
        QCOMPARE(static_cast<QObject &>(m).property("max").toLongLong(), max);
    }

    void setValueTakesNumbersAndDefines()
    {
        element(QStringLiteral("SRC"), 9);
        MathLabel *m = label(QStringLiteral("M"), QStringLiteral("1"));
        QVERIFY(m->setValue(QStringLiteral("0x10"), Selectors::Value));
        QCOMPARE(m->result(), 16.0);
        QVERIFY(m->setValue(QStringLiteral("SRC"), Selectors::Value));
        QCOMPARE(m->result(), 9.0);
        QVERIFY(!m->setValue(QStringLiteral("fast"), Selectors::Value));
        QVERIFY(!m->setValue(QStringLiteral("1"), Selectors::Interval));
        QCOMPARE(m->result(), 9.0);
        QVERIFY(m->loadValue(QStringLiteral("2.5")));
        QCOMPARE(m->result(), 2.5);
        QCOMPARE(m_sink->errors, (QStringList{QStringLiteral("Trying to set \"M\" to invalid value \"fast\""),
                                              QStringLiteral("Trying to set \"M\" to invalid value \"1\"")}));
    }

    void onlyDependentsAreComputed()
    {
        element(QStringLiteral("X"), 3);
        element(QStringLiteral("Y"), 4);
        MathLabel *a = label(QStringLiteral("A"), QStringLiteral("X*2"));
        MathLabel *b = label(QStringLiteral("B"), QStringLiteral("Y+1"));
        MathLabel *both = label(QStringLiteral("C"), QStringLiteral("X+Y"));
        QSignalSpy aShown(a, &MathLabel::updateMathLabels);
        QSignalSpy bShown(b, &MathLabel::updateMathLabels);
        QSignalSpy cShown(both, &MathLabel::updateMathLabels);

        m_cascade->update(QStringLiteral("X"));
        QCOMPARE(aShown.count(), 1);
        QCOMPARE(bShown.count(), 0);
        QCOMPARE(cShown.count(), 1);
        QCOMPARE(a->text(), QStringLiteral("6"));
        QCOMPARE(both->text(), QStringLiteral("7"));
        QCOMPARE(b->text(), QString());

        m_cascade->update(QStringLiteral("Z"));
        m_cascade->update(QString());
        QCOMPARE(aShown.count() + bShown.count() + cShown.count(), 2);
        QVERIFY(m_sink->errors.isEmpty());
    }

    void chainsFollowDepthFirst()
    {
        FakeElement *x = element(QStringLiteral("X"), 2);
        label(QStringLiteral("A"), QStringLiteral("X*2"));
        label(QStringLiteral("B"), QStringLiteral("A+1"));
        MathLabel *c = label(QStringLiteral("C"), QStringLiteral("B*10"));
        // A label without a define shows, but nothing can follow it.
        MathLabel *anonymous = label(QString(), QStringLiteral("X"));
        QSignalSpy silent(anonymous, &MathLabel::updateMathLabels);

        m_cascade->update(QStringLiteral("X"));
        QCOMPARE(c->text(), QStringLiteral("50"));
        QCOMPARE(anonymous->text(), QStringLiteral("2"));
        QCOMPARE(silent.count(), 0);
        x->number = 5;
        m_cascade->update(x);
        QCOMPARE(c->text(), QStringLiteral("110"));
        QVERIFY(m_sink->errors.isEmpty());
    }

    void longChainsAreCut_data()
    {
        QTest::addColumn<int>("length");
        QTest::newRow("at the limit") << MathCascade::kMaxChain;
        QTest::newRow("one more") << MathCascade::kMaxChain + 1;
        // Overflowed the stack.
        QTest::newRow("20,000") << 20000;
    }

    void longChainsAreCut()
    {
        QFETCH(int, length);
        element(QStringLiteral("X"), 1);
        // L0 = X+1, L1 = L0+1, ...: each label reads the one before.
        QList<MathLabel *> labels;
        for (int i = 0; i < length; ++i)
            labels << label(QStringLiteral("L%1").arg(i), i == 0 ? QStringLiteral("X+1") : QStringLiteral("L%1+1").arg(i - 1));

        const int computed = qMin(length, int(MathCascade::kMaxChain));
        for (int round = 0; round < 2; ++round) {
            m_sink->clear();
            m_cascade->update(QStringLiteral("X"));
            QCOMPARE(labels.at(computed - 1)->text(), QString::number(computed + 1));
            if (length == computed) {
                QVERIFY(m_sink->errors.isEmpty());
            } else {
                QVERIFY(labels.at(computed)->text().isEmpty());
                // Told once per change, naming both ends of the chain.
                QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Formulas chained more than %1 labels deep: \"L0 -> ... -> L%2\"")
                                                         .arg(MathCascade::kMaxChain)
                                                         .arg(computed - 1)});
            }
        }
    }

    void cyclesAreReportedNotFollowed_data()
    {
        QTest::addColumn<QStringList>("defines");
        QTest::addColumn<QStringList>("formulas");
        QTest::addColumn<QString>("chain");

        QTest::newRow("itself") << QStringList{"A"} << QStringList{"A+X"} << "A -> A";
        QTest::newRow("two labels") << QStringList{"A", "B"} << QStringList{"B+X", "A+1"} << "A -> B -> A";
        QTest::newRow("three labels") << QStringList{"A", "B", "C"} << QStringList{"C+X", "A*2", "B-1"}
                                      << "A -> B -> C -> A";
        QTest::newRow("tail into a loop") << QStringList{"A", "B", "C"} << QStringList{"X", "A+C", "B"}
                                          << "B -> C -> B";
    }

    void cyclesAreReportedNotFollowed()
    {
        QFETCH(QStringList, defines);
        QFETCH(QStringList, formulas);
        QFETCH(QString, chain);

        element(QStringLiteral("X"), 1);
        QList<MathLabel *> labels;
        for (int i = 0; i < defines.size(); ++i)
            labels << label(defines.at(i), formulas.at(i));

        m_cascade->update(QStringLiteral("X"));
        QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Formula depends on itself: \"%1\"").arg(chain)});
        // Every label got a value on the way.
        for (MathLabel *m : qAsConst(labels))
            QVERIFY2(!m->text().isEmpty(), qPrintable(m->objectName()));

        // The cascade is left clean: the next change is handled the same way.
        m_sink->clear();
        m_cascade->update(QStringLiteral("X"));
        QCOMPARE(m_sink->errors.size(), 1);
    }

    void rangeConflicts()
    {
        FakeElement *x = element(QStringLiteral("X"), 0);
        MathLabel *m = label(QStringLiteral("P.R.F"), QStringLiteral("X"));
        QVERIFY(m->setBits(3, 0));

        x->number = 16;
        m_cascade->update(x);
        QCOMPARE(m_sink->console, QStringList{QStringLiteral(
                                      "<font color=\"red\"><b>Warning: </font></b> <a href=\"X\">X</a> has caused an overflow in <a href=\"P.R.F\">P.R.F</a>. Highest possible value: 15<br>")});
        QCOMPARE(m_cascade->overflowCount(), 1);
        QVERIFY(m_cascade->isOverflowing(m));
        // Still out of range, now the other way: already a conflict, no new line.
        x->number = -1;
        m_cascade->update(x);
        QCOMPARE(m_sink->console.size(), 1);

        x->number = 15;
        m_cascade->update(x);
        QCOMPARE(m_sink->console.size(), 2);
        QCOMPARE(m_sink->console.last(), QStringLiteral(
                                             "<font color=\"green\"><b>Conflict cleared: </font></b> Over-/Underflow in: <a href=\"P.R.F\">P.R.F</a>. (0 conflicts in current project)<br>"));
        QCOMPARE(m_cascade->overflowCount(), 0);

        x->number = -3;
        m_cascade->update(x);
        QVERIFY(m_sink->console.last().contains(QStringLiteral("has caused an underflow in")));
        QCOMPARE(m_cascade->overflowLabels(), QList<MathLabel *>{m});
        // A label that goes away leaves the list.
        delete m;
        QCOMPARE(m_cascade->overflowCount(), 0);

        // While a configuration loads, the range waits for a forced check.
        FakeElement *y = element(QStringLiteral("Y"), 99);
        m = label(QStringLiteral("F"), QStringLiteral("Y"));
        m->setBits(1, 0);
        m_tables->loading = true;
        m_cascade->update(y);
        QCOMPARE(m->text(), QStringLiteral("99"));
        QCOMPARE(m_cascade->overflowCount(), 0);
        m_cascade->forceConflictCheck = true;
        m_cascade->update(y);
        QCOMPARE(m_cascade->overflowCount(), 1);
    }

    void invalidFormulaNamesSender()
    {
        element(QStringLiteral("X"), 6);
        MathLabel *m = label(QStringLiteral("M"), QStringLiteral("X~1"));
        MathLabel *empty = label(QStringLiteral("E"), QString());
        m_tables->mathDependents[QStringLiteral("X")].append(empty);
        m_cascade->update(QStringLiteral("X"));
        QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Invalid formula: \"X\"")});
        QCOMPARE(m->text(), QStringLiteral("0"));
        QCOMPARE(empty->text(), QStringLiteral("0"));
    }

    void changedActionsRunPerResult()
    {
        FakeElement *x = element(QStringLiteral("X"), 1);
        MathLabel *m = label(QStringLiteral("M"), QStringLiteral("X+1"));
        QVariantMap data;
        data.insert(QStringLiteral("0"),
                    QStringList{QStringLiteral("changed_setDef"), QStringLiteral("M>2"), QStringLiteral("Y=M"),
                                QStringLiteral("changed_sendUSB"), QString(), QStringLiteral("AB"), QStringLiteral("CD"), QString()});
        static_cast<QObject *>(m)->setProperty("data", data);
        QSignalSpy setDefs(m, &MathLabel::changed_setDef);
        QSignalSpy sends(m, &MathLabel::changed_sendUSB);
        QSignalSpy replies(m, &MathLabel::changed_recData);

        m_cascade->update(x);
        QCOMPARE(setDefs.count(), 0);
        QCOMPARE(sends.count(), 1);
        x->number = 5;
        m_cascade->update(x);
        QCOMPARE(setDefs.count(), 1);
        QCOMPARE(setDefs.first().first().toString(), QStringLiteral("Y=M"));
        QCOMPARE(sends.count(), 2);
        QCOMPARE(replies.count(), 2);
        QCOMPARE(replies.first().first().toString(), QStringLiteral("CD"));
    }

    void recordsDriveLabels()
    {
        auto *record = m_tables->addDataValue(new DataClass(QStringLiteral("$VALUE$")));
        MathLabel *m = label(QStringLiteral("M"), QStringLiteral("$VALUE$*2"), QStringLiteral("%4.2f"));
        MathCascade *cascade = m_cascade;
        connect(record, &DataClass::updateMathLabels, this, [cascade, record] { cascade->update(record); });
        record->setValue(21);
        QCOMPARE(m->text(), QStringLiteral("42"));
    }

private:
    FakeElement *element(const QString &define, qint64 value = 0);
    // A label as the reader makes it: compiled, entered under its names,
    // its announcements wired back into the cascade.
    MathLabel *label(const QString &define, const QString &formula, const QString &format = QStringLiteral("%d"));

    RecordingSink *m_sink = nullptr;
    DocumentTables *m_tables = nullptr;
    MathCascade *m_cascade = nullptr;
    QWidget *m_owner = nullptr;
};

FakeElement *TestMathCascade::element(const QString &define, qint64 value)
{
    auto *e = new FakeElement(define, m_owner);
    e->number = value;
    e->maximum = 1 << 30;
    m_tables->addElement(define, e);
    return e;
}

MathLabel *TestMathCascade::label(const QString &define, const QString &formula, const QString &format)
{
    auto *m = new MathLabel(m_owner);
    m->setObjectName(define);
    m->setFormula(formula);
    m->setFormat(format);
    for (const QString &name : qAsConst(m->names))
        m_tables->mathDependents[name].append(m);
    if (!define.isEmpty())
        m_tables->addElement(define, m);
    MathCascade *cascade = m_cascade;
    connect(m, &MathLabel::updateMathLabels, this, [cascade, m] { cascade->update(m); });
    return m;
}

QTEST_MAIN(TestMathCascade)
#include "tst_mathcascade.moc"
