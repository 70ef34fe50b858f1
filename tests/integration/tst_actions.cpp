#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/LineEdit.h"
#include "elements/SetDef.h"
#include "elements/SpinBox.h"
#include "elements/TabWidget.h"
#include "elements/ToggleButton.h"
#include "elements/TreeWidget.h"
#include "elements/TreeWidgetItem.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"

#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeWidget>

static const QByteArray kForm = R"(
<tabcontainer>
 <verticalcontainer label="Page 0" unselectsetdef="LOG=left0" selectsetdef="LOG=entered0">
  <spinbox define="N" svd="0" range="0;100">
   <action event="checked" cmd="setDef" data="X=1"/>
   <action event="changed" cmd="fly" data="X=1"/>
   <action event="wobble" cmd="setDef" data="X=1"/>
   <action event="changed" cmd="setdef" data="A=N"/>
   <action event="changed" cmd="setDef" data="B=2" cond="N==5"/>
   <action event="changed" cmd="setDef" data="C=3" cond=""/>
   <action event="changed" cmd="setDef" data="D=4" cond="GHOST==1"/>
   <action event="changed" cmd="setDef" data="X=9" cond="NAME==&quot;abc&quot;"/>
  </spinbox>
  <checkbox define="CB" svd="0" setDef="A=1;B=2" setDefInv="A=0"/>
  <combo define="MODE" svd="0">
   <item label="Slow" value="3"/>
   <item label="Fast" value="9"/>
  </combo>
  <edit define="A" svd="0"/>
  <edit define="B" svd="0"/>
  <edit define="C" svd="0"/>
  <edit define="D" svd="0"/>
  <edit define="X" svd="0"/>
  <edit define="LOG" svd="0"/>
  <edit define="NAME" svd="0" default="abc"/>
  <spinbox define="S" svd="0" range="0;50" default="7"/>
  <var define="RAW"/>
  <var define="RATIO" datatype="float"/>
 </verticalcontainer>
 <verticalcontainer label="Page 1" selectsetdef="LOG=entered1" unselectsetdef="LOG=left1"/>
 <verticalcontainer label="Page 2" selectsetdef="LOG=entered2" unselectsetdef="LOG=left2">
  <treecontainer>
   <checkbox define="TOP" svd="0" uielement="branch" label="Top">
    <spinbox define="T1" svd="0"/>
    <checkbox define="TL" svd="0" label="Hold" lockinverted="1" lockon="FREE=9"/>
    <checkbox define="INNER" svd="0" uielement="branch" label="Inner" role="inverted">
     <spinbox define="T2" svd="0"/>
    </checkbox>
    <action event="checked" cmd="setDef" data="LOG=top"/>
   </checkbox>
   <spinbox define="FREE" svd="0"/>
  </treecontainer>
 </verticalcontainer>
</tabcontainer>
)";

// Actions, setDef and their wiring on a form opened by the main window:
// event and command checks of `action`, conditions, setDef selectors and
// errors, tree branches switched by their controls and tab pages that run
// set-defs when entered or left.
class TestActions : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_form.write(miniSvd(), kForm));
    }

    void init()
    {
        QVERIFY(m_form.open());
    }

    void cleanup()
    {
        m_form.close();
    }

    void actionChecks()
    {
        const QString all = m_form.openMessages.join(QLatin1Char('\n'));
        QVERIFY2(all.contains(QLatin1String("Can't use event \"checked\" in UI element \"SpinBox\" <a href=\"N\">N</a>")),
                 qPrintable(all));
        QVERIFY(all.contains(QLatin1String("Unknown command \"fly\"in action:  <a href=\"N\">N</a>")));
        QVERIFY(all.contains(QLatin1String("Unknown event \"wobble\"in action:  <a href=\"N\">N</a>")));
        // Dropped actions leave no entry: five kept, three values each.
        const QStringList entries = m_form.element<SpinBox>(QStringLiteral("N"))->property("data").toMap().value(QStringLiteral("0")).toStringList();
        QCOMPARE(entries.size(), 5 * 3);
        QCOMPARE(entries.at(0), QStringLiteral("changed_setDef"));
        QCOMPARE(entries.at(2), QStringLiteral("A=N"));
    }

    void actionEntriesAndConditions_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<QString>("c");
        QTest::addColumn<QString>("d");
        // B only when its condition holds; C always (empty condition); D never
        // (its define does not exist).
        QTest::newRow("condition holds") << "5" << "5" << "2" << "3" << "";
        QTest::newRow("condition fails") << "6" << "6" << "" << "3" << "";
    }

    void actionEntriesAndConditions()
    {
        QFETCH(QString, value);
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(QString, c);
        QFETCH(QString, d);
        QVERIFY(m_form.element<SpinBox>(QStringLiteral("N"))->setValue(value, 0));
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("A"))->text(), a);
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("B"))->text(), b);
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("C"))->text(), c);
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("D"))->text(), d);
        // A text comparison with a line edit.
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("X"))->text(), QStringLiteral("9"));
        m_form.element<LineEdit>(QStringLiteral("X"))->clear();
        m_form.element<LineEdit>(QStringLiteral("NAME"))->setText(QStringLiteral("abd"));
        QVERIFY(m_form.element<SpinBox>(QStringLiteral("N"))->setValue(QStringLiteral("1"), 0));
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("X"))->text(), QString());
    }

    void setDefTargets_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("define");
        QTest::addColumn<QString>("value");
        // Whether the target's reference value moves with it: only a plain
        // value does; a selector on either side is a program change alone.
        QTest::addColumn<bool>("reference");
        QTest::newRow("number to spin box") << "S=0x10" << "S" << "16" << true;
        QTest::newRow("element to element") << "A=S" << "A" << "7" << true;
        QTest::newRow("list value") << "A=MODE" << "A" << "3" << true;
        QTest::newRow("list label") << "A=MODE.label" << "A" << "Slow" << false;
        QTest::newRow("list by index") << "MODE.index=1" << "MODE" << "9" << false;
        QTest::newRow("two parts") << "A=1;B=2" << "B" << "2" << true;
        QTest::newRow("trailing separator") << "A=4;" << "A" << "4" << true;
        QTest::newRow("record") << "RAW=0x20" << "RAW" << "32" << false;
        QTest::newRow("record from element") << "RAW=S" << "RAW" << "7" << false;
        QTest::newRow("float record") << "RATIO=2.5" << "RATIO" << "2.5" << false;
    }

    void setDefTargets()
    {
        QFETCH(QString, text);
        QFETCH(QString, define);
        QFETCH(QString, value);
        QFETCH(bool, reference);
        m_form.window->setDef(text);
        QVERIFY2(m_form.sink->errors.isEmpty(), qPrintable(m_form.sink->errors.join(QLatin1Char('\n'))));
        if (DataClass *data = tables().dataValue(define)) {
            const QString actual = data->datatype == DataClass::Float ? QString::number(double(data->getFloat()))
                                                                      : QString::number(data->getValue());
            QCOMPARE(actual, value);
        } else {
            QCOMPARE(tables().element(define)->value(0), value);
            QCOMPARE(tables().element(define)->referenceValue() == value, reference);
        }
    }

    void setDefErrors_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("a");
        QTest::newRow("three =") << "A=1;B=2=3=4;C=5" << "Invalid value in setdef: \"B=2=3=4\"" << "1";
        QTest::newRow("no =") << "A" << "Invalid value in setdef: \"A\"" << "";
        QTest::newRow("unknown target") << "NOBODY=1;A=9" << "Invalid value in setdef: \"NOBODY=1\"" << "";
        QTest::newRow("unknown with selector") << "NOBODY.visible=1" << "Invalid value in setdef: \"NOBODY.visible=1\"" << "";
        QTest::newRow("float record junk") << "RATIO=abc" << "Invalid value in setdef: \"RATIO=abc\"" << "";
        QTest::newRow("spin box out of range") << "S=500" << "Trying to set \"S\" to invalid value \"500\"" << "";
    }

    void setDefErrors()
    {
        QFETCH(QString, text);
        QFETCH(QString, error);
        QFETCH(QString, a);
        m_form.window->setDef(text);
        QVERIFY(!m_form.sink->errors.isEmpty());
        QCOMPARE(m_form.sink->errors.first(), error);
        // Parts before the error ran; nothing after it did.
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("A"))->text(), a);
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("C"))->text(), QString());
    }

    void setDefSelectors()
    {
        m_form.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_form.window));
        auto *spin = m_form.element<SpinBox>(QStringLiteral("S"));
        m_form.window->setDef(QStringLiteral("S.visible=0"));
        QVERIFY(spin->isHidden());
        m_form.window->setDef(QStringLiteral("S.visible=1;S.enabled=0"));
        QVERIFY(!spin->isHidden());
        QVERIFY(!spin->isEnabled());
        m_form.window->setDef(QStringLiteral("S.max=20;S.min=0x2"));
        QCOMPARE(spin->maximum(), 20);
        QCOMPARE(spin->minimum(), 2);
        m_form.window->setDef(QStringLiteral("A.color=0x0000FF"));
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("A"))->palette().color(QPalette::Base), QColor(0, 0, 255));
        m_form.window->setDef(QStringLiteral("S.textcolor=0xFF0000"));
        QCOMPARE(spin->palette().color(QPalette::Text), QColor(255, 0, 0));
        // A page of a tab goes out of the tab and comes back at its place.
        auto *tab = dynamic_cast<TabWidget *>(tables().container(QStringLiteral("TAB_ROOT")));
        QVERIFY(tab);
        const QString pageName = tab->widget(1)->objectName();
        m_form.window->setDef(pageName + QStringLiteral(".visible=0"));
        QCOMPARE(tab->count(), 2);
        m_form.window->setDef(pageName + QStringLiteral(".visible=1"));
        QCOMPARE(tab->count(), 3);
        QCOMPARE(tab->widget(1)->objectName(), pageName);
        QCOMPARE(tab->tabText(1), QStringLiteral("Page 1"));
        QVERIFY(m_form.sink->errors.isEmpty());

        // The trace switch shows each call.
        SetDef::setTrace(true);
        m_form.window->setDef(QStringLiteral("A=1"));
        SetDef::setTrace(false);
        QVERIFY(m_form.sink->console.contains(QStringLiteral("setDef(A=1)<br>")));
    }

    void treeBranches()
    {
        auto *top = m_form.element<CheckBox>(QStringLiteral("TOP"));
        auto *inner = m_form.element<CheckBox>(QStringLiteral("INNER"));
        QWidget *t1 = m_form.element<SpinBox>(QStringLiteral("T1"));
        QWidget *t2 = m_form.element<SpinBox>(QStringLiteral("T2"));
        QWidget *free = m_form.element<SpinBox>(QStringLiteral("FREE"));
        QVERIFY(top && inner && t1 && t2 && free);
        // The controls sit in branch rows of the tree, their rows below them.
        auto *tree = m_form.window->findChild<TreeWidget *>();
        QVERIFY(tree);
        QTreeWidgetItem *topRow = tree->branchOfControl(top);
        QVERIFY(topRow);
        QCOMPARE(tree->rowOf(t1)->parent(), topRow);
        QCOMPARE(tree->rowOf(t2)->parent(), static_cast<QTreeWidgetItem *>(tree->branchOfControl(inner)));

        // Off at start: the rows under the top control are disabled. The
        // inverted inner box starts ticked (value 0), but its branch follows
        // the top one.
        QVERIFY(!top->isChecked());
        QVERIFY(!t1->isEnabled());
        QVERIFY(inner->isChecked());
        QVERIFY(!t2->isEnabled());
        QVERIFY(free->isEnabled());

        m_form.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_form.window));
        QTest::mouseClick(top, Qt::LeftButton, Qt::NoModifier, QPoint(5, top->height() / 2));
        QVERIFY(top->isChecked());
        QVERIFY(t1->isEnabled());
        QVERIFY(inner->isEnabled());
        // The inner branch opens as far as its own control is ticked.
        QVERIFY(t2->isEnabled());
        // The top control's action (an action child among its rows) ran.
        QCOMPARE(m_form.element<LineEdit>(QStringLiteral("LOG"))->text(), QStringLiteral("top"));

        QVERIFY(inner->setValue(QStringLiteral("1"), 0));
        QVERIFY(!inner->isChecked());
        QVERIFY(!t2->isEnabled());
        QVERIFY(t1->isEnabled());

        QTest::mouseClick(top, Qt::LeftButton, Qt::NoModifier, QPoint(5, top->height() / 2));
        QVERIFY(!t1->isEnabled());
        QVERIFY(!inner->isEnabled());
        QVERIFY(!t2->isEnabled());
    }

    void treeBranchesCarryTheirLocks()
    {
        auto *top = m_form.element<CheckBox>(QStringLiteral("TOP"));
        auto *holder = m_form.element<CheckBox>(QStringLiteral("TL"));
        auto *free = m_form.element<SpinBox>(QStringLiteral("FREE"));
        // The holder's inverted lock would be in force, but its branch is off.
        QVERIFY(!holder->isEnabled());
        QVERIFY(holder->locking.isEmpty());
        QVERIFY(free->isEnabled());
        QCOMPARE(free->value(0), QStringLiteral("0"));

        top->click();
        QVERIFY(holder->isEnabled());
        QCOMPARE(free->value(0), QStringLiteral("9"));
        QVERIFY(!free->isEnabled());
        QCOMPARE(lockPeers(free->lockedBy), QStringList{QStringLiteral("TL")});
        // Switched on again while already on: still one lock.
        QVERIFY(top->setValue(QStringLiteral("1"), 0));
        QCOMPARE(holder->locking.size(), 1);

        top->click();
        QVERIFY(!holder->isEnabled());
        QVERIFY(holder->locking.isEmpty());
        QVERIFY(free->isEnabled());
        QVERIFY(!free->locked);
        QCOMPARE(free->value(0), QStringLiteral("0"));

        // A reset keeps the branch off whatever order the elements are in (the
        // holder was changed last, so it comes after the control).
        top->click();
        holder->click();
        holder->click();
        m_form.window->resetGUI();
        QVERIFY(!top->isChecked());
        QVERIFY(!holder->isEnabled());
        QVERIFY(free->isEnabled());
        QCOMPARE(free->value(0), QStringLiteral("0"));

        // A configuration with the branch on opens it (its values are loaded
        // with signals blocked, so no toggled() tells the tree).
        top->click();
        const QString saved = m_form.dir.filePath(QStringLiteral("branch.qlnp"));
        QVERIFY(m_form.window->saveConfiguration(saved));
        m_form.window->resetGUI();
        QVERIFY(!holder->isEnabled());
        QVERIFY(m_form.window->load(saved));
        QVERIFY(top->isChecked());
        QVERIFY(holder->isEnabled());
        QCOMPARE(free->value(0), QStringLiteral("9"));
        QCOMPARE(lockPeers(free->lockedBy), QStringList{QStringLiteral("TL")});
    }

    void tabPageSetDefs()
    {
        auto *tab = dynamic_cast<TabWidget *>(tables().container(QStringLiteral("TAB_ROOT")));
        QVERIFY(tab);
        auto *log = m_form.element<LineEdit>(QStringLiteral("LOG"));
        QStringList seen;
        connect(log, &QLineEdit::textChanged, this, [&seen](const QString &text) { seen << text; });
        tab->setCurrentIndex(2);
        // Page 0 ran its unselectsetdef, page 2 its selectsetdef, page 1 nothing.
        QCOMPARE(seen, (QStringList{QStringLiteral("left0"), QStringLiteral("entered2")}));
        seen.clear();
        tab->setCurrentIndex(1);
        // Pages answer in their order: page 1 enters before page 2 leaves.
        QCOMPARE(seen, (QStringList{QStringLiteral("entered1"), QStringLiteral("left2")}));
    }

    void resetReturnsToDefaults()
    {
        auto *spin = m_form.element<SpinBox>(QStringLiteral("S"));
        auto *name = m_form.element<LineEdit>(QStringLiteral("NAME"));
        QVERIFY(spin->setValue(QStringLiteral("30"), 0));
        QVERIFY(name->setValue(QStringLiteral("other"), 0));
        spin->setElementEnabled(false);
        m_form.window->resetGUI(QStringLiteral("ignored"));
        QCOMPARE(spin->value(0), QStringLiteral("7"));
        QCOMPARE(name->value(0), QStringLiteral("abc"));
        QVERIFY(spin->isEnabled());
        // Connected once only: one change still runs its actions once.
        QSignalSpy refresh(spin, SIGNAL(updateMathLabels()));
        QTest::keyClick(spin, Qt::Key_Up);
        QCOMPARE(refresh.count(), 1);
    }

private:
    DocumentTables &tables() const { return m_form.tables(); }

    FormWindow m_form;
};

QTEST_MAIN(TestActions)
#include "tst_actions.moc"
