#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DocumentTables.h"
#include "elements/DoubleSpinBox.h"
#include "elements/HexSpinBox.h"
#include "elements/Knob.h"
#include "elements/LineEdit.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/TextEdit.h"
#include "elements/ToggleButton.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"

#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>

static const QByteArray kForm = R"(
<tabcontainer>
 <verticalcontainer label="Values">
  <combo define="P.R.MODE" label="Mode"><item label="Idle state" override="IDLE"/><item hide="3"/></combo>
  <combo define="LIST" svd="0" default="label=Fast">
   <item label="Slow" value="0"/>
   <item label="Fast" value="0x10" setDef="OUT=fast"/>
   <item label="Off" value="7"><action event="selected" cmd="setdef" data="OUT=7"/></item>
  </combo>
  <combo define="DUP" svd="0"><item label="One" value="1"/><item label="Uno" value="1"/><item label="One" value="2"/></combo>
  <checkbox define="P.R.EN" label="Enable" setDef="OUT=1;OUT2=2" setDefInv="OUT=0"/>
  <checkbox define="INV" svd="0" role="inverted"/>
  <checkbox define="BAD" svd="0" default="2"/>
  <checkbox define="SURE" svd="0" label="Sure" confirmation="Really?"/>
  <togglebutton define="TB" svd="0" label="Toggle" setDef="OUT=on" setDefInv="OUT=off"/>
  <spinbox define="P.R.CNT" default="5"/>
  <spinbox define="P.T[7:0]" range="0;300"/>
  <spinbox define="WIDE" svd="0" range="junk;12" step="x"/>
  <spinbox define="LOW" svd="0" range="-5;5" default="9"/>
  <hexspinbox define="HEX" svd="0" range="0;0xFFFF" default="0x1F"/>
  <slider define="P.T[11:8]"/>
  <knob define="KNOB" svd="0" range="0;10" integer="1" default="3"/>
  <doublespinbox define="DBL" svd="0" range="0;10" default="1.25"/>
  <edit define="NUM" svd="0" numeric="1" default="0x10"/>
  <edit define="OUT" svd="0"/>
  <edit define="OUT2" svd="0"/>
  <editbox define="NOTE" svd="0" default="hello"/>
  <editbox/>
  <combo define="RO" svd="0" readonly="1"><item label="a"/><item label="b"/></combo>
  <radio define="RAD" svd="0">
   <horizontalcontainer>
    <radiobutton label="A" value="0x4"/>
    <radiobutton label="B"/>
   </horizontalcontainer>
  </radio>
 </verticalcontainer>
</tabcontainer>
)";

// Each value element class on a real form: opened by the main window from a
// description, driven by the user (mouse, keys, wheel) and by the program
// (setValue, loadValue, value), with the exact messages of bad input.
class TestValueElements : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QByteArray fields =
            "<field><name>MODE</name><lsb>0</lsb><msb>1</msb><enumeratedValues>\n"
            "<enumeratedValue><name>IDLE</name><description>idle d</description><value>0</value></enumeratedValue>\n"
            "<enumeratedValue><name>RUN</name><description>run d</description><value>1</value></enumeratedValue>\n"
            "<enumeratedValue><name>SLEEP</name><description>sleep d</description><value>2</value></enumeratedValue>\n"
            "<enumeratedValue><name>BOOT</name><description>boot d</description><value>3</value></enumeratedValue>\n"
            "</enumeratedValues></field>\n"
            "<field><name>EN</name><lsb>4</lsb><msb>4</msb></field>\n"
            "<field><name>CNT</name><lsb>8</lsb><msb>15</msb></field>\n";
        QVERIFY(m_form.write(miniSvd(fields, "<register><name>T</name><addressOffset>0x8</addressOffset><size>32</size></register>\n"), kForm));
    }

    void init()
    {
        QVERIFY(m_form.open(true));
    }

    void cleanup()
    {
        m_form.close();
    }

    void claimsAndRefusals()
    {
        const QString all = m_form.openMessages.join(QLatin1Char('\n'));
        // A declared range too wide for its bits.
        QVERIFY2(m_form.openMessages.contains(QStringLiteral("Trying to set MSB: 7 and LSB: 0 for P.T[7:0] which is of type: SpinBox\n")),
                 qPrintable(all));
        // No range: the bits give it, for a field and for an explicit range.
        QCOMPARE(m_form.element<SpinBox>(QStringLiteral("P.R.CNT"))->maximum(), 255);
        QCOMPARE(m_form.element<SpinBox>(QStringLiteral("P.R.CNT"))->minimum(), 0);
        QCOMPARE(m_form.element<Slider>(QStringLiteral("P.T[11:8]"))->maximum(), 15);
        QCOMPARE(m_form.element<SpinBox>(QStringLiteral("P.T[7:0]"))->maximum(), 300);
        // The reserved range is only the exact pair; a declared one is kept.
        double low = 0;
        double high = 300;
        QVERIFY(!SpinBox::fitBits(7, 0, &low, &high, 1e12));
        low = SpinBox::ReservedMinimum;
        high = SpinBox::ReservedMaximum;
        QVERIFY(SpinBox::fitBits(3, 0, &low, &high, 1e12));
        QCOMPARE(high, 15.0);
        QVERIFY(!all.contains(QLatin1String("Not found in svd file")));
        // Flags hold one bit; free texts and doubles none.
        QVERIFY(CheckBox::fitsOneBit(4, 4));
        QVERIFY(!CheckBox::fitsOneBit(5, 4));
        QVERIFY(!m_form.element<DoubleSpinBox>(QStringLiteral("DBL"))->setBits(3, 0));
        QVERIFY(m_form.element<LineEdit>(QStringLiteral("OUT"))->setBits(-1, -1));
        QVERIFY(!m_form.element<TextEdit>(QStringLiteral("NOTE"))->setBits(0, 0));
        QCOMPARE(m_form.element<HexSpinBox>(QStringLiteral("HEX"))->value(4), QStringLiteral("SpinBox"));
    }

    void readerMessages()
    {
        const QString all = m_form.openMessages.join(QLatin1Char('\n'));
        QVERIFY2(all.contains(QLatin1String("Editbox without define is not allowed: ")), qPrintable(all));
        QVERIFY(all.contains(QLatin1String("min range in spinbox is not a valid number")));
        QVERIFY(all.contains(QLatin1String("\"step\" attribute invalid.")));
        QVERIFY(m_form.openMessages.contains(QStringLiteral("Default value for LOW (9) is out of allowed range: -5..5")));
        QVERIFY(m_form.openMessages.contains(QStringLiteral("Trying to set \"BAD\" to invalid value \"2\"")));
        QVERIFY(!m_form.element<CheckBox>(QStringLiteral("BAD"))->isChecked());
        // Junk in the range leaves the element built, with its reserved range.
        QCOMPARE(m_form.element<SpinBox>(QStringLiteral("WIDE"))->maximum(), int(SpinBox::ReservedMaximum));
        // An out-of-range default is clamped.
        QCOMPARE(m_form.element<SpinBox>(QStringLiteral("LOW"))->value(0), QStringLiteral("5"));
        QVERIFY(all.contains(QLatin1String("Combobox <a href=\"DUP\">DUP</a> has duplicate values.")));
        QVERIFY(all.contains(QLatin1String("Combobox <a href=\"DUP\">DUP</a> has duplicate texts.")));
    }

    void comboMergesSvdValues()
    {
        auto *combo = m_form.element<ComboBox>(QStringLiteral("P.R.MODE"));
        QVERIFY(combo);
        QStringList texts;
        QStringList data;
        for (int i = 0; i < combo->count(); ++i) {
            texts << combo->itemText(i);
            data << combo->itemData(i).toString();
        }
        // IDLE is replaced by the description's text, BOOT is hidden.
        QCOMPARE(texts, (QStringList{QStringLiteral("Idle state"), QStringLiteral("RUN"), QStringLiteral("SLEEP")}));
        QCOMPARE(data, (QStringList{QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")}));
        QCOMPARE(combo->itemData(1, Qt::ToolTipRole).toString(), QStringLiteral("run d"));
        QCOMPARE(combo->enumerated.size(), 4);
        QVERIFY(combo->toolTip().contains(QLatin1String("Enumerated Values: ")));
    }

    void comboUserPickRunsItemSetDef()
    {
        auto *combo = m_form.element<ComboBox>(QStringLiteral("LIST"));
        auto *out = m_form.element<LineEdit>(QStringLiteral("OUT"));
        QCOMPARE(combo->currentText(), QStringLiteral("Fast"));
        QSignalSpy byUser(combo, SIGNAL(changedByUser()));
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(combo->currentText(), QStringLiteral("Off"));
        QCOMPARE(byUser.count(), 1);
        // The item's action (cmd="setdef") ran; its reference follows the user.
        QCOMPARE(out->text(), QStringLiteral("7"));
        QCOMPARE(combo->referenceValue(), QStringLiteral("7"));
        QTest::keyClick(combo, Qt::Key_Up);
        QCOMPARE(out->text(), QStringLiteral("fast"));
        QCOMPARE(byUser.count(), 2);
    }

    void comboProgramPath_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("error");

        const QString bad = QStringLiteral("Trying to set \"LIST\" to invalid value \"%1\"");
        QTest::newRow("value decimal") << "7" << 0 << "Off" << QString();
        QTest::newRow("value hex") << "0x10" << 0 << "Fast" << QString();
        QTest::newRow("value hex in parentheses") << "(0x7u)" << 0 << "Off" << QString();
        QTest::newRow("value unknown") << "5" << 0 << "Slow" << bad.arg(QStringLiteral("5"));
        QTest::newRow("value text") << "Fast" << 0 << "Slow" << bad.arg(QStringLiteral("Fast"));
        QTest::newRow("label") << "Fast" << 1 << "Fast" << QString();
        QTest::newRow("label case") << "fast" << 1 << "Slow" << bad.arg(QStringLiteral("fast"));
        QTest::newRow("index") << "2" << 2 << "Off" << QString();
        QTest::newRow("index too high") << "3" << 2 << "Slow" << bad.arg(QStringLiteral("3"));
        QTest::newRow("index negative") << "-1" << 2 << "Slow" << bad.arg(QStringLiteral("-1"));
        QTest::newRow("other define's label") << "OUT2.value" << 0 << "Off" << QString();
        QTest::newRow("kind without meaning") << "1" << 5 << "Slow" << bad.arg(QStringLiteral("1"));
    }

    void comboProgramPath()
    {
        QFETCH(QString, text);
        QFETCH(int, kind);
        QFETCH(QString, label);
        QFETCH(QString, error);
        auto *combo = m_form.element<ComboBox>(QStringLiteral("LIST"));
        m_form.element<LineEdit>(QStringLiteral("OUT2"))->setText(QStringLiteral("7"));
        combo->setCurrentIndex(0);
        m_form.sink->clear();
        QSignalSpy byUser(combo, SIGNAL(changedByUser()));
        QCOMPARE(combo->setValue(text, kind), error.isEmpty());
        QCOMPARE(combo->currentText(), label);
        QCOMPARE(m_form.sink->errors, error.isEmpty() ? QStringList() : QStringList{error});
        // A program change is no user change.
        QCOMPARE(byUser.count(), 0);
    }

    void comboLoadAndDuplicates()
    {
        auto *combo = m_form.element<ComboBox>(QStringLiteral("DUP"));
        QSignalSpy changes(combo, SIGNAL(updateMathLabels()));
        QVERIFY(combo->loadValue(QStringLiteral("1")));
        QCOMPARE(combo->currentIndex(), 0);
        QCOMPARE(combo->referenceValue(), QStringLiteral("1"));
        // Not item data: an index.
        QVERIFY(combo->loadValue(QStringLiteral("2")));
        QCOMPARE(combo->currentText(), QStringLiteral("One"));
        QCOMPARE(combo->currentIndex(), 2);
        QCOMPARE(changes.count(), 0);
        QVERIFY(!combo->loadValue(QStringLiteral("9")));
        QCOMPARE(m_form.sink->errors, QStringList{QStringLiteral("Trying to load \"DUP\" with invalid value \"9\"")});
        // value(1) follows the picked index, value(0) is shared.
        combo->setCurrentIndex(1);
        QCOMPARE(combo->value(0), QStringLiteral("1"));
        QCOMPARE(combo->value(1), QStringLiteral("Uno"));
        QCOMPARE(combo->value(2), QStringLiteral("1"));
        QCOMPARE(combo->value(4), QStringLiteral("ComboBox"));
        m_form.sink->clear();
        QCOMPARE(combo->value(5), QString());
        QCOMPARE(m_form.sink->errors, QStringList{QStringLiteral("Can not return value of type \"\" from \"DUP\"")});
    }

    void checkBoxUserAndProgram()
    {
        auto *box = m_form.element<CheckBox>(QStringLiteral("P.R.EN"));
        auto *out = m_form.element<LineEdit>(QStringLiteral("OUT"));
        auto *out2 = m_form.element<LineEdit>(QStringLiteral("OUT2"));
        QSignalSpy byUser(box, SIGNAL(changedByUser()));
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(5, box->height() / 2));
        QVERIFY(box->isChecked());
        QCOMPARE(byUser.count(), 1);
        // Both parts of setDef ran on ticking; setDefInv on unticking.
        QCOMPARE(out->text(), QStringLiteral("1"));
        QCOMPARE(out2->text(), QStringLiteral("2"));
        QCOMPARE(box->value(0), QStringLiteral("1"));
        QCOMPARE(box->value(3), QStringLiteral("16"));
        QCOMPARE(box->referenceValue(), QStringLiteral("1"));
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(5, box->height() / 2));
        QCOMPARE(out->text(), QStringLiteral("0"));
        QCOMPARE(box->value(3), QStringLiteral("0"));

        auto *inverted = m_form.element<CheckBox>(QStringLiteral("INV"));
        // Default 0 on an inverted box shows a tick; unticked is 1.
        QVERIFY(inverted->isChecked());
        QCOMPARE(inverted->value(0), QStringLiteral("0"));
        QVERIFY(inverted->loadValue(QStringLiteral("1")));
        QVERIFY(!inverted->isChecked());
        QCOMPARE(inverted->referenceValue(), QStringLiteral("1"));
    }

    void checkBoxSetValue_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<bool>("checked");
        QTest::newRow("one") << "1" << 0 << true << true;
        QTest::newRow("hex one") << "0x1" << 0 << true << true;
        QTest::newRow("two") << "2" << 0 << false << false;
        QTest::newRow("text") << "on" << 0 << false << false;
        QTest::newRow("register value, bit 4 set") << "16" << 3 << true << true;
        QTest::newRow("register value, bit 5 set") << "32" << 3 << false << false;
        QTest::newRow("label kind") << "1" << 1 << false << false;
    }

    void checkBoxSetValue()
    {
        QFETCH(QString, text);
        QFETCH(int, kind);
        QFETCH(bool, accepted);
        QFETCH(bool, checked);
        auto *box = m_form.element<CheckBox>(QStringLiteral("P.R.EN"));
        QCOMPARE(box->setValue(text, kind), accepted);
        QCOMPARE(box->isChecked(), checked);
        QCOMPARE(m_form.sink->errors.size(), accepted ? 0 : 1);
        if (!accepted)
            QCOMPARE(m_form.sink->errors.first(), QStringLiteral("Trying to set \"P.R.EN\" to invalid value \"%1\"").arg(text));
    }

    void toggleButtonClick()
    {
        auto *button = m_form.element<ToggleButton>(QStringLiteral("TB"));
        auto *out = m_form.element<LineEdit>(QStringLiteral("OUT"));
        QSignalSpy byUser(button, SIGNAL(changedByUser()));
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(button->isChecked());
        QCOMPARE(out->text(), QStringLiteral("on"));
        QCOMPARE(byUser.count(), 1);
        QVERIFY(button->setValue(QStringLiteral("0"), 0));
        QCOMPARE(out->text(), QStringLiteral("off"));
        QCOMPARE(byUser.count(), 1);
        QCOMPARE(button->value(4), QStringLiteral("ToggleButton"));
        QVERIFY(!button->setValue(QStringLiteral("/nowhere.png"), 24));
        QCOMPARE(m_form.sink->errors, QStringList{QStringLiteral("Icon of <button> element couldn't be loaded.")});
        QVERIFY(button->setValue(QStringLiteral("0xFF0000"), 25));
        QVERIFY(button->styleSheet().contains(QLatin1String("rgb(255,0,0)")));
    }

    void spinBoxes_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("load");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("error");
        QTest::newRow("spin in range") << "P.R.CNT" << "200" << false << "200" << QString();
        QTest::newRow("spin hex") << "P.R.CNT" << "0x20" << false << "32" << QString();
        QTest::newRow("spin above") << "P.R.CNT" << "256" << false << "5"
                                    << "Trying to set \"P.R.CNT\" to invalid value \"256\"";
        QTest::newRow("spin junk") << "P.R.CNT" << "abc" << false << "5"
                                   << "Trying to set \"P.R.CNT\" to invalid value \"abc\"";
        QTest::newRow("spin load") << "P.R.CNT" << "7" << true << "7" << QString();
        QTest::newRow("spin load bad") << "P.R.CNT" << "-1" << true << "5"
                                       << "Trying to load \"P.R.CNT\" with invalid value \"-1\"";
        QTest::newRow("slider") << "P.T[11:8]" << "15" << false << "15" << QString();
        QTest::newRow("slider above") << "P.T[11:8]" << "16" << false << "0"
                                      << "Trying to set \"P.T[11:8]\" to invalid value \"16\"";
        QTest::newRow("knob") << "KNOB" << "7" << false << "7" << QString();
        QTest::newRow("knob fraction") << "KNOB" << "2.5" << false << "3"
                                       << "Trying to set \"KNOB\" to invalid value \"2.5\"";
        QTest::newRow("double") << "DBL" << "2.5" << false << "2.50" << QString();
        QTest::newRow("double above") << "DBL" << "11" << false << "1.25"
                                      << "Trying to set \"DBL\" to invalid value \"11\"";
    }

    void spinBoxes()
    {
        QFETCH(QString, define);
        QFETCH(QString, text);
        QFETCH(bool, load);
        QFETCH(QString, value);
        QFETCH(QString, error);
        ActiveElement *e = m_form.tables().element(define);
        QVERIFY(e);
        QSignalSpy refresh(dynamic_cast<QObject *>(e), SIGNAL(updateMathLabels()));
        QSignalSpy byUser(dynamic_cast<QObject *>(e), SIGNAL(changedByUser()));
        QCOMPARE(load ? e->loadValue(text) : e->setValue(text, 0), error.isEmpty());
        QCOMPARE(e->value(0), value);
        QCOMPARE(m_form.sink->errors, error.isEmpty() ? QStringList() : QStringList{error});
        // A program change refreshes the displays; a load does not.
        QCOMPARE(refresh.count(), (!load && error.isEmpty()) ? 1 : 0);
        QCOMPARE(byUser.count(), 0);
    }

    void userKeys_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<QString>("typed");   // replaces the text; empty: the up arrow
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("registerValue");
        QTest::addColumn<QString>("shown");
        QTest::newRow("spin box up") << "P.R.CNT" << "" << "6" << QString::number(6 << 8) << "6";
        QTest::newRow("double spin box up") << "DBL" << "" << "2.25" << "2.25" << "2.25";
        QTest::newRow("hex spin box takes hex") << "HEX" << "a0" << "160" << "160" << "A0";
        // Not a hex digit: refused by the validator.
        QTest::newRow("hex spin box refuses") << "HEX" << "zz" << "31" << "31" << "1F";
    }

    void userKeys()
    {
        QFETCH(QString, define);
        QFETCH(QString, typed);
        QFETCH(QString, value);
        ActiveElement *e = m_form.tables().element(define);
        auto *box = qobject_cast<QAbstractSpinBox *>(e->widget());
        QVERIFY(box);
        QSignalSpy byUser(box, SIGNAL(changedByUser()));
        box->setFocus();
        if (typed.isEmpty()) {
            QTest::keyClick(box, Qt::Key_Up);
        } else {
            box->selectAll();
            QTest::keyClicks(box, typed);
            QTest::keyClick(box, Qt::Key_Enter);
        }
        QCOMPARE(e->value(0), value);
        QTEST(e->value(3), "registerValue");
        QTEST(box->text(), "shown");
        const bool changed = value != QLatin1String("31");
        if (typed.isEmpty())
            QCOMPARE(byUser.count(), 1);
        // The reference follows the user.
        if (changed)
            QCOMPARE(e->referenceValue(), value);
    }

    void wheelNeedsFocus_data()
    {
        QTest::addColumn<QString>("define");
        QTest::newRow("combo") << "LIST";
        QTest::newRow("spin box") << "P.R.CNT";
        QTest::newRow("double spin box") << "DBL";
    }

    void wheelNeedsFocus()
    {
        QFETCH(QString, define);
        ActiveElement *e = m_form.tables().element(define);
        QWidget *w = e->widget();
        const QString before = e->value(0);
        m_form.element<LineEdit>(QStringLiteral("OUT"))->setFocus();
        QVERIFY(!w->hasFocus());
        QWheelEvent wheel(QPointF(5, 5), QPointF(w->mapToGlobal(QPoint(5, 5))), QPoint(), QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(w, &wheel);
        QCOMPARE(e->value(0), before);
        w->setFocus();
        QVERIFY(w->hasFocus());
        QWheelEvent again(QPointF(5, 5), QPointF(w->mapToGlobal(QPoint(5, 5))), QPoint(), QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(w, &again);
        QVERIFY(e->value(0) != before);
    }

    void knobAndDoubleSpinBox()
    {
        auto *knob = m_form.element<Knob>(QStringLiteral("KNOB"));
        QCOMPARE(knob->value(0), QStringLiteral("3"));
        QVERIFY(knob->isInteger());
        QCOMPARE(knob->value(4), QStringLiteral("Knob"));
        auto *dbl = m_form.element<DoubleSpinBox>(QStringLiteral("DBL"));
        // Two digits behind the default's dot.
        QCOMPARE(dbl->decimals(), 2);
        QCOMPARE(dbl->value(0), QStringLiteral("1.25"));
        QCOMPARE(dbl->value(3), QStringLiteral("1.25"));
    }

    void lineAndTextEdits()
    {
        auto *num = m_form.element<LineEdit>(QStringLiteral("NUM"));
        QCOMPARE(num->value(0), QStringLiteral("16"));
        QCOMPARE(num->value(3), QStringLiteral("0x10"));
        auto *out = m_form.element<LineEdit>(QStringLiteral("OUT"));
        QSignalSpy byUser(out, SIGNAL(changedByUser()));
        out->setFocus();
        QTest::keyClicks(out, QStringLiteral("ab"));
        QCOMPARE(out->value(0), QStringLiteral("ab"));
        QCOMPARE(byUser.count(), 2);
        QVERIFY(out->setValue(QStringLiteral("xy"), 0));
        QCOMPARE(byUser.count(), 2);
        QVERIFY(out->setValue(QStringLiteral("0x00FF00"), 25));
        QCOMPARE(out->palette().color(QPalette::Base), QColor(0, 255, 0));

        auto *note = m_form.element<TextEdit>(QStringLiteral("NOTE"));
        QCOMPARE(note->value(0), QStringLiteral("hello"));
        QCOMPARE(note->value(4), QStringLiteral("EditBox"));
        QSignalSpy noteByUser(note, SIGNAL(changedByUser()));
        QSignalSpy noteRefresh(note, SIGNAL(updateMathLabels()));
        note->setFocus();
        note->moveCursor(QTextCursor::End);
        QTest::keyClicks(note, QStringLiteral("!"));
        QCOMPARE(note->value(0), QStringLiteral("hello!"));
        QCOMPARE(noteByUser.count(), 1);
        QCOMPARE(noteRefresh.count(), 1);
        QVERIFY(note->setValue(QStringLiteral("set"), 0));
        QCOMPARE(noteByUser.count(), 1);
        QCOMPARE(noteRefresh.count(), 2);
        QVERIFY(!note->setValue(QStringLiteral("x"), 1));
        QCOMPARE(m_form.sink->errors, QStringList{QStringLiteral("Trying to set \"NOTE\" to invalid value \"x\"")});
    }

    void radioGroup()
    {
        auto *group = m_form.element<ButtonGroup>(QStringLiteral("RAD"));
        QVERIFY(group);
        QCOMPARE(group->buttons().size(), 2);
        QCOMPARE(group->value(0), QStringLiteral("4"));
        QCOMPARE(group->value(4), QStringLiteral("ButtonGroup"));
        QAbstractButton *b = group->button(1);
        QSignalSpy byUser(group, SIGNAL(changedByUser()));
        QTest::mouseClick(b, Qt::LeftButton, Qt::NoModifier, QPoint(5, b->height() / 2));
        QVERIFY(b->isChecked());
        QCOMPARE(byUser.count(), 1);
        // A button without value stands for its index.
        QCOMPARE(group->value(0), QStringLiteral("1"));
        QCOMPARE(group->value(1), QStringLiteral("B"));
        QVERIFY(group->setValue(QStringLiteral("A"), 1));
        QCOMPARE(group->value(2), QStringLiteral("0"));
        QVERIFY(!group->setValue(QStringLiteral("5"), 0));
        QCOMPARE(m_form.sink->errors, QStringList{QStringLiteral("Trying to set \"RAD\" to invalid value \"5\"")});
        QVERIFY(group->loadValue(QStringLiteral("1")));
        QCOMPARE(group->value(1), QStringLiteral("B"));
        QCOMPARE(byUser.count(), 1);
    }

    void readOnlyIgnoresMouse()
    {
        auto *combo = m_form.element<ComboBox>(QStringLiteral("RO"));
        QVERIFY(combo->testAttribute(Qt::WA_TransparentForMouseEvents));
        QCOMPARE(combo->focusPolicy(), Qt::NoFocus);
        QVERIFY(combo->isEnabled());
    }

    void confirmationAsksFirst()
    {
        auto *box = m_form.element<CheckBox>(QStringLiteral("SURE"));
        QSignalSpy byUser(box, SIGNAL(changedByUser()));
        // Cancel: the press is dropped, nothing changes.
        Dialogs::setQuiet(false);
        QString asked;
        QTimer::singleShot(0, this, [&asked]() {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            asked = box->windowTitle() + QLatin1Char('|') + box->text();
            box->button(QMessageBox::Cancel)->click();
        });
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(5, box->height() / 2));
        QCoreApplication::processEvents();
        Dialogs::setQuiet(true);
        QCOMPARE(asked, QStringLiteral("Quillon|Really?"));
        QVERIFY(!box->isChecked());
        QCOMPARE(byUser.count(), 0);
        // Unattended, the question takes Ok: the click goes through.
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(5, box->height() / 2));
        QTRY_VERIFY(box->isChecked());
        QCOMPARE(byUser.count(), 1);
    }

    void userChangeMovesToEnd()
    {
        DocumentTables &tables = m_form.tables();
        auto *box = m_form.element<CheckBox>(QStringLiteral("P.R.EN"));
        QVERIFY(tables.elementList.toList().last() != box);
        QVERIFY(!m_form.window->isWindowModified());
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(5, box->height() / 2));
        QCOMPARE(tables.elementList.toList().last(), static_cast<ActiveElement *>(box));
        QVERIFY(m_form.window->isWindowModified());
        // A program change moves nothing.
        auto *spin = m_form.element<SpinBox>(QStringLiteral("P.R.CNT"));
        QVERIFY(spin->setValue(QStringLiteral("9"), 0));
        QCOMPARE(tables.elementList.toList().last(), static_cast<ActiveElement *>(box));
    }

private:

    FormWindow m_form;
};

QTEST_MAIN(TestValueElements)
#include "tst_valueelements.moc"
