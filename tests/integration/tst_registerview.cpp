#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "RegisterSvd.h"
#include "elements/ActiveElement.h"
#include "elements/RecordingHook.h"
#include "elements/RecordingHook.h"
#include "elements/SetDef.h"
#include "shell/MainWindow.h"
#include "views/CheckBoxDelegate.h"
#include "views/ComboBoxDelegate.h"
#include "views/RegisterView.h"
#include "views/ShowSvdDialog.h"
#include "views/SpinBoxDelegate.h"
#include "views/SvdTree.h"
#include "views/Table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QSpinBox>
#include <QStandardItemModel>

// The register view on a real form: its rebuild on registers with gaps,
// read-only fields and enumerations, the word it composes, the pending
// value shared by all views, its delegates and its read/write buddy; and
// the SVD tree views over the same model.
class TestRegisterView : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    // First: the buddy's state starts off only once per view.
    void buddy();
    void rebuild_data();
    void rebuild();
    void pendingValue();
    void unknownRegisterKeepsView();
    void delegates();
    void layoutGaps_data();
    void layoutGaps();
    void scriptValue();
    void svdTree();
    void showSvdDialog();

private:
    RegisterView *view() const { return m_form.element<RegisterView>(QStringLiteral("RV")); }
    QStringList headers() const;
    QStringList texts() const;
    void run(const QString &setDef) { SetDef::run(setDef, &m_form.tables()); }

    FormWindow m_form;
};

namespace {
const QByteArray kForm = R"(
<verticalcontainer>
 <radio define="RW" svd="0"><horizontalcontainer>
  <radiobutton label="Read" value="0"/><radiobutton label="Write" value="1"/>
 </horizontalcontainer></radio>
 <registerview define="RV" readwritebuddy="RW;1"/>
 <registerview define="OTHER"/>
 <combo define="REGS" svd="0"><item label="R" value="0"/><item label="RO" value="1"/><item label="EMPTY" value="2"/></combo>
 <spinbox define="P.R.COUNT"/>
 <svdtree define="TREE" showValues="1"/>
 <svdtree define="PLAIN"/>
 <table define="TABLE" numrows="2">
  <column type="regname"/><column type="address"/><column type="func"/><column type="value"/>
 </table>
</verticalcontainer>
)";
}

void TestRegisterView::initTestCase()
{
    QVERIFY(m_form.write(registerSvd(), kForm));
    QVERIFY(m_form.open());
    QVERIFY(view());
    QVERIFY2(m_form.openMessages.join('\n').isEmpty() || !m_form.openMessages.join('\n').contains("Error"),
             qPrintable(m_form.openMessages.join('\n')));
}

QStringList TestRegisterView::headers() const
{
    QStringList list;
    QStandardItemModel *model = view()->viewModel();
    for (int col = 0; col < model->columnCount(); ++col)
        list << model->horizontalHeaderItem(col)->text();
    return list;
}

QStringList TestRegisterView::texts() const
{
    QStringList list;
    QStandardItemModel *model = view()->viewModel();
    for (int col = 0; col < model->columnCount(); ++col)
        list << model->item(0, col)->text();
    return list;
}

void TestRegisterView::rebuild_data()
{
    QTest::addColumn<QString>("setDef");
    QTest::addColumn<QStringList>("headers");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<quint64>("word");
    QTest::addColumn<QString>("registerName");

    // Reset 0x305: MODE 2 has no entry, so the first entry (Off) shows and
    // the word carries it.
    const QStringList rHeaders{"reserved\n[31..13] R/O", "STATUS\n[12] R/O", "COUNT\n[11..8] R/W",
                               "reserved\n[7..3] R/O", "MODE\n[2..1] R/W", "EN\n[0] R/W"};
    QTest::newRow("by a combo's label") << "RV.register=REGS" << rHeaders
                                        << QStringList{"0", "Idle (0b0)", "3", "0", "Off (0b00)", "1"} << quint64(0x301)
                                        << "P.R";
    QTest::newRow("named outright") << "RV.register=R" << rHeaders
                                    << QStringList{"0", "Idle (0b0)", "3", "0", "Off (0b00)", "1"} << quint64(0x301) << "P.R";
    QTest::newRow("all read-only, 16 bits") << "RV.register=RO" << QStringList{"V\n[15..0] R/O"} << QStringList{"0"}
                                            << quint64(0) << "P.RO";
    QTest::newRow("no fields") << "RV.register=P.EMPTY" << QStringList{"reserved\n[7..0] R/O"} << QStringList{"0"}
                               << quint64(0) << "P.EMPTY";
}

void TestRegisterView::rebuild()
{
    QFETCH(QString, setDef);
    QFETCH(QStringList, headers);
    QFETCH(QStringList, texts);
    QFETCH(quint64, word);
    QFETCH(QString, registerName);
    run(QStringLiteral("RV.module=P"));
    run(setDef);
    QCOMPARE(this->headers(), headers);
    QCOMPARE(this->texts(), texts);
    QCOMPARE(view()->word(), word);
    QCOMPARE(view()->value(0), QString::number(word));
    QCOMPARE(view()->value(9), registerName);
    QCOMPARE(view()->value(4), QStringLiteral("RegView"));
    QCOMPARE(view()->value(3), QString());
    QVERIFY(!RegisterView::hasPending());
    // Read-only headers are red, the others are not.
    QStandardItemModel *model = view()->viewModel();
    for (int col = 0; col < model->columnCount(); ++col) {
        const bool readOnly = headers.at(col).endsWith(QLatin1String("R/O"));
        QCOMPARE(model->horizontalHeaderItem(col)->foreground().color() == Qt::red, readOnly);
    }
    // Each column is as wide as its bits.
    const int perBit = view()->columnWidth(model->columnCount() - 1) / qMax(1, view()->fields().last().msb - qMax(0, view()->fields().last().lsb) + 1);
    QVERIFY(perBit >= 1);
    // Nothing of it goes into a configuration.
    QCOMPARE(view()->referenceValue(), QString());
}

void TestRegisterView::pendingValue()
{
    run(QStringLiteral("RV.module=P"));
    run(QStringLiteral("RV.register=R"));
    // A value waits for the next rebuild, of any view; a registername
    // text whose element gives nothing keeps the register shown.
    run(QStringLiteral("RV.value=0x1E07"));
    QVERIFY(RegisterView::hasPending());
    QCOMPARE(view()->word(), quint64(0x301));
    view()->setValue(QStringLiteral("NOSUCH.registername"), 7);
    QVERIFY(!RegisterView::hasPending());
    QCOMPARE(texts(), (QStringList{"0", "Busy (0b1)", "14", "0", "Fast (0b11)", "1"}));
    QCOMPARE(view()->word(), quint64(0x1E07));
    // The value of another element, by its value.
    run(QStringLiteral("P.R.COUNT=5"));
    run(QStringLiteral("RV.value=P.R.COUNT"));
    view()->setValue(QStringLiteral("NOSUCH.registername"), 7);
    // 5 is EN 1 and MODE 2, which has no entry: MODE shows Off.
    QCOMPARE(view()->word(), quint64(1));
    QCOMPARE(texts().at(4), QStringLiteral("Off (0b00)"));
    // Not a number: reported, nothing pending.
    m_form.sink->clear();
    run(QStringLiteral("RV.value=junk"));
    QVERIFY(!RegisterView::hasPending());
    QVERIFY(!m_form.sink->errors.isEmpty());
}

void TestRegisterView::unknownRegisterKeepsView()
{
    run(QStringLiteral("RV.module=P"));
    run(QStringLiteral("RV.register=R"));
    const QStringList before = headers();
    run(QStringLiteral("RV.register=NOPE"));
    run(QStringLiteral("RV.module=NOMODULE"));
    QCOMPARE(view()->moduleName(), QStringLiteral("P"));
    QCOMPARE(headers(), before);
    QCOMPARE(view()->value(10), QString::number(0x40000010));
}

void TestRegisterView::delegates()
{
    run(QStringLiteral("RV.module=P"));
    run(QStringLiteral("RV.register=R"));
    QStringList recorded;
    RecordingHook::setWriter([&recorded](const QString &line) { recorded << line; });
    QStandardItemModel *model = view()->viewModel();
    QStyleOptionViewItem option;

    // EN: a check box.
    const QModelIndex en = model->index(0, 5);
    auto *check = qobject_cast<CheckBoxDelegate *>(view()->itemDelegateForColumn(5));
    QVERIFY(check);
    auto *box = qobject_cast<QCheckBox *>(check->createEditor(view()->viewport(), option, en));
    check->setEditorData(box, en);
    QVERIFY(box->isChecked());
    box->setChecked(false);
    check->setModelData(box, model, en);
    QCOMPARE(view()->word(), quint64(0x300));
    delete box;

    // COUNT: a spin box over four bits.
    const QModelIndex count = model->index(0, 2);
    auto *spinDelegate = qobject_cast<SpinBoxDelegate *>(view()->itemDelegateForColumn(2));
    QVERIFY(spinDelegate);
    auto *spin = qobject_cast<QSpinBox *>(spinDelegate->createEditor(view()->viewport(), option, count));
    QCOMPARE(spin->maximum(), 15);
    QVERIFY(spin->isEnabled());
    spin->setValue(9);
    spinDelegate->setModelData(spin, model, count);
    QCOMPARE(view()->word(), quint64(0x900));
    delete spin;

    // MODE: a combo of the enumeration with the binary codes.
    const QModelIndex mode = model->index(0, 4);
    auto *comboDelegate = qobject_cast<ComboBoxDelegate *>(view()->itemDelegateForColumn(4));
    QVERIFY(comboDelegate);
    auto *combo = qobject_cast<QComboBox *>(comboDelegate->createEditor(view()->viewport(), option, mode));
    comboDelegate->setEditorData(combo, mode);
    QCOMPARE(combo->count(), 3);
    QCOMPARE(combo->itemText(2), QStringLiteral("Fast (0b11)"));
    QCOMPARE(combo->itemData(1, Qt::ToolTipRole).toString(), QStringLiteral("slowly"));
    QCOMPARE(combo->currentText(), QStringLiteral("Off (0b00)"));
    combo->setCurrentIndex(2);
    comboDelegate->setModelData(combo, model, mode);
    QCOMPARE(model->item(0, 4)->text(), QStringLiteral("Fast (0b11)"));
    QCOMPARE(view()->word(), quint64(0x906));
    delete combo;

    // STATUS: read-only, every item disabled, nothing written.
    const QModelIndex status = model->index(0, 1);
    auto *roDelegate = qobject_cast<ComboBoxDelegate *>(view()->itemDelegateForColumn(1));
    auto *roCombo = qobject_cast<QComboBox *>(roDelegate->createEditor(view()->viewport(), option, status));
    roDelegate->setEditorData(roCombo, status);
    auto *items = qobject_cast<QStandardItemModel *>(roCombo->model());
    QVERIFY(!items->item(0)->isEnabled() && !items->item(1)->isEnabled());
    roCombo->setCurrentIndex(1);
    roDelegate->setModelData(roCombo, model, status);
    QCOMPARE(view()->word(), quint64(0x906));
    delete roCombo;
    // The reserved columns are spin boxes that can't be changed.
    auto *reserved = qobject_cast<QSpinBox *>(view()->itemDelegateForColumn(0)->createEditor(view()->viewport(), option, model->index(0, 0)));
    QVERIFY(!reserved->isEnabled());
    delete reserved;

    RecordingHook::setWriter(nullptr);
    QCOMPARE(recorded, (QStringList{"SetRegViewValue(RV, 768)", "SetRegViewValue(RV, 2304)", "SetRegViewValue(RV, 2310)"}));
}

void TestRegisterView::buddy()
{
    auto *group = m_form.tables().element(QStringLiteral("RW"));
    QVERIFY(group);
    run(QStringLiteral("RV.module=P"));
    // A writable register puts the group to the kept state (off at first).
    run(QStringLiteral("RV.register=R"));
    QCOMPARE(group->value(0), QStringLiteral("0"));
    QVERIFY(!view()->buddyState());
    // An all read-only register forces the read position (value 1 here).
    run(QStringLiteral("RV.register=RO"));
    QCOMPARE(group->value(0), QStringLiteral("1"));
    QVERIFY(view()->buddyState());
    // And the state comes back with the next writable register.
    run(QStringLiteral("RV.register=R"));
    QCOMPARE(group->value(0), QStringLiteral("1"));
}

void TestRegisterView::layoutGaps_data()
{
    QTest::addColumn<QList<int>>("bits");   // msb, lsb pairs of the fields
    QTest::addColumn<int>("width");
    QTest::addColumn<QStringList>("layout"); // name[msb..lsb]
    QTest::newRow("full") << QList<int>{31, 0} << 32 << QStringList{"F[31..0]"};
    QTest::newRow("gap at the top") << QList<int>{3, 0} << 8 << QStringList{"reserved[7..4]", "F[3..0]"};
    QTest::newRow("gap at the bottom") << QList<int>{7, 4} << 8 << QStringList{"F[7..4]", "reserved[3..0]"};
    QTest::newRow("gaps between") << QList<int>{7, 7, 2, 2} << 8
                                  << QStringList{"F[7..7]", "reserved[6..3]", "F[2..2]", "reserved[1..0]"};
    QTest::newRow("negative lsb counts as 0") << QList<int>{7, -1} << 8 << QStringList{"F[7..-1]"};
    QTest::newRow("none") << QList<int>{} << 16 << QStringList{"reserved[15..0]"};
}

void TestRegisterView::layoutGaps()
{
    QFETCH(QList<int>, bits);
    QFETCH(int, width);
    QFETCH(QStringList, layout);
    QList<RegisterViewField> fields;
    for (int i = 0; i + 1 < bits.size(); i += 2) {
        RegisterViewField f;
        f.name = QStringLiteral("F");
        f.msb = bits.at(i);
        f.lsb = bits.at(i + 1);
        fields << f;
    }
    QStringList got;
    for (const RegisterViewField &f : RegisterView::layoutFields(fields, width)) {
        got << QStringLiteral("%1[%2..%3]").arg(f.name).arg(f.msb).arg(f.lsb);
        QCOMPARE(f.readOnly, f.name == QLatin1String("reserved"));
    }
    QCOMPARE(got, layout);
}

void TestRegisterView::scriptValue()
{
    run(QStringLiteral("RV.module=P"));
    run(QStringLiteral("RV.register=R"));
    // The table's current row names the register the value is shown in.
    run(QStringLiteral("TABLE.value=1"));
    run(QStringLiteral("TABLE.registername=P.R"));
    run(QStringLiteral("TABLE.row=0"));
    QVERIFY(m_form.window->execScriptLine(QStringLiteral("SetRegViewValue(RV, 4103, TABLE)"), 1));
    QCOMPARE(view()->word(), quint64(4103 & 0x1F07));
    QCOMPARE(texts().at(1), QStringLiteral("Busy (0b1)"));
    // Without a table the register shown takes the value.
    QVERIFY(m_form.window->execScriptLine(QStringLiteral("SetRegViewValue(RV, 0x0F01)"), 2));
    QCOMPARE(view()->word(), quint64(0x0F01));
}

void TestRegisterView::svdTree()
{
    auto *tree = m_form.element<SvdTree>(QStringLiteral("TREE"));
    auto *plain = m_form.element<SvdTree>(QStringLiteral("PLAIN"));
    QVERIFY(tree && plain);
    QCOMPARE(tree->value(4), QStringLiteral("SvdTree"));
    QStandardItemModel *model = tree->treeModel();
    QCOMPARE(model->rowCount(), 1);
    QStandardItem *p = model->item(0);
    QCOMPARE(p->text(), QStringLiteral("P"));
    QCOMPARE(p->toolTip(), QStringLiteral("A peripheral"));
    QCOMPARE(p->rowCount(), 3);
    QStandardItem *r = p->child(0);
    QCOMPARE(r->text(), QStringLiteral("R"));
    QCOMPARE(p->child(0, 1)->text(), QStringLiteral("---"));
    // Fields, highest first; values of the elements bound to them.
    QCOMPARE(r->child(0)->text(), QStringLiteral("STATUS"));
    QCOMPARE(r->child(0)->toolTip(), QStringLiteral("Status\n-0: Idle\n-1: Busy\n"));
    QCOMPARE(r->child(1)->text(), QStringLiteral("COUNT"));
    QCOMPARE(r->child(1)->toolTip(), QStringLiteral("Count"));
    run(QStringLiteral("P.R.COUNT=7"));
    tree->setValue(QString(), 0);
    QCOMPARE(model->item(0)->child(0)->child(1, 1)->text(), QStringLiteral("7"));
    // Without showValues there is one column of names.
    QVERIFY(plain->isColumnHidden(1));
    QVERIFY(!plain->treeModel()->item(0)->child(0)->child(1, 1));
}

void TestRegisterView::showSvdDialog()
{
    ActiveElement *shown = nullptr;
    ShowSvdDialog dialog([&shown](ActiveElement *e) { shown = e; });
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Show the current loaded SVD as a tree"));
    QStandardItemModel *model = dialog.treeModel();
    QCOMPARE(model->item(0)->text(), QStringLiteral("P (40000010)"));
    QStandardItem *r = model->item(0)->child(0);
    QCOMPARE(r->text(), QStringLiteral("R (40000010)"));
    run(QStringLiteral("P.R.COUNT=7"));
    dialog.fill();
    r = model->item(0)->child(0);
    QCOMPARE(r->child(1)->text(), QStringLiteral("COUNT: 7"));
    QCOMPARE(r->child(0)->text(), QStringLiteral("STATUS"));
    dialog.on_doubleClicked(r->child(0)->index());
    QCOMPARE(shown, nullptr);
    dialog.on_doubleClicked(r->child(1)->index());
    QCOMPARE(shown, m_form.tables().element(QStringLiteral("P.R.COUNT")));
}

QTEST_MAIN(TestRegisterView)
#include "tst_registerview.moc"
