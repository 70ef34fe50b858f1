#include <QtTest>

#include "FormWindow.h"
#include "RecordingSink.h"
#include "RegisterSvd.h"
#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "elements/GridWidget.h"
#include "elements/Led.h"
#include "elements/MathLabel.h"
#include "elements/SpinBox.h"
#include "elements/TimerLabel.h"
#include "model/BitField.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"
#include "tooling/ElementCloner.h"
#include "tooling/ElementFactory.h"
#include "tooling/ElementKind.h"
#include "tooling/FormEditor.h"
#include "tooling/FormTree.h"
#include "tooling/QMyTreeView.h"
#include "tooling/AttributeTable.h"
#include "tooling/ShowXMLDialog.h"
#include "views/MyQwtPlot.h"

#include <qwt_dial.h>
#include <qwt_plot_curve.h>
#include <qwt_thermo.h>

#include <QGridLayout>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QTabWidget>
#include <QTableView>

// The form editor on a real form: the tree it shows, adding every kind at
// the places the tree points to, removing with the tables cleaned, copy,
// cut and paste with the copies' settings, moves by drop position, and the
// dialog's menu, status text and selection; a document edited this way
// still dumps, exports and saves.
class TestFormEditor : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void kinds();
    void treeOfForm();
    void addEveryKind_data();
    void addEveryKind();
    void addPlaces_data();
    void addPlaces();
    void defineNumbering();
    void removeCleansTables_data();
    void removeCleansTables();
    void removeRefusals();
    void removeLockSource();
    void removeRadioButtons();
    void cutAndPaste();
    void clones_data();
    void clones();
    void cloneContainer();
    void cloneOfItemsFromTheDialog();
    void drops_data();
    void drops();
    void editedDocumentStillWorks();
    void dialog();

private:
    Document &doc() const { return *m_form.window->document(); }
    QModelIndex indexOf(const QString &name) const;
    QStringList childTexts(const QString &name) const;
    QStringList layoutNames(const QString &container) const;
    QWidget *widget(const QString &name) const;

    FormWindow m_form;
    QStandardItemModel *m_model = nullptr;
    FormEditor *m_editor = nullptr;
};

namespace {
const QByteArray kForm = R"(
<verticalcontainer>
 <header file="out.h">
 <horizontalcontainer label="Row">
  <checkbox define="P.R.EN" label="Enable"/>
  <combo define="P.R.MODE"><item label="Off" value="0"/><item label="Slow" value="1" lockon="P.R.COUNT=3"/><item label="Fast" value="2"/></combo>
  <spinbox define="P.R.COUNT" range="0;15" prefix="#" suffix=" n" step="2"/>
 </horizontalcontainer>
 </header>
 <gridcontainer columns="2" label="Grid">
  <text define="T1" label="one"/><text define="T2" label="two"/><text define="T3" label="three"/>
 </gridcontainer>
 <tabcontainer label="Tabs">
  <verticalcontainer label="PageA"><led define="L1" data="P.R.EN" bitmask="0x1" oncolor="green" offcolor="red"/></verticalcontainer>
  <verticalcontainer label="PageB">
   <dial define="D1" data="P.R.COUNT" min="0" max="15"/>
   <thermo define="TH" data="P.R.COUNT" min="0" max="15"/>
  </verticalcontainer>
 </tabcontainer>
 <plot define="PL" maxY="20"><curve label="count" data="P.R.COUNT" color="255;0;0"/></plot>
 <radio define="RAD" svd="0"><radiobutton label="A" value="0"/><radiobutton label="B" value="1"/></radio>
 <math define="M1" formula="P.R.COUNT*2" unit="x"/>
 <timer define="TM" interval="500" run="0"/>
 <var define="V1"/>
</verticalcontainer>
)";

QString nameOf(const QModelIndex &index)
{
    QObject *object = FormTree::objectOf(index);
    return object ? object->objectName() : QString();
}
} // namespace

void TestFormEditor::init()
{
    QVERIFY(m_form.write(registerSvd(), kForm));
    QVERIFY(m_form.open());
    m_model = new QStandardItemModel(this);
    m_editor = new FormEditor(doc(), m_model, this);
    m_editor->tree().fill();
}

void TestFormEditor::cleanup()
{
    delete m_editor;
    m_editor = nullptr;
    delete m_model;
    m_model = nullptr;
    m_form.close();
}

QModelIndex TestFormEditor::indexOf(const QString &name) const
{
    QObject *object = doc().tables().dataValue(name);
    if (!object)
        object = widget(name);
    QStandardItem *item = m_editor->tree().itemOf(object);
    return item ? item->index() : QModelIndex();
}

QWidget *TestFormEditor::widget(const QString &name) const
{
    if (!doc().root())
        return nullptr;
    if (doc().root()->objectName() == name)
        return doc().root();
    // An LED is registered under its define, named after what it watches.
    if (auto *led = qobject_cast<QWidget *>(doc().tables().leds.value(name)))
        return led;
    return doc().root()->findChild<QWidget *>(name);
}

QStringList TestFormEditor::childTexts(const QString &name) const
{
    QStringList texts;
    const QModelIndex parent = indexOf(name);
    for (int row = 0; row < m_model->rowCount(parent); ++row)
        texts << m_model->index(row, 0, parent).data().toString();
    return texts;
}

QStringList TestFormEditor::layoutNames(const QString &container) const
{
    QStringList names;
    for (QWidget *w : FormTree::elementsOf(asContainer(widget(container))))
        names << w->objectName();
    return names;
}

void TestFormEditor::kinds()
{
    // Every kind and Var has its picture, a menu text and an element name.
    for (int k = ElementKind::Vertical; k <= ElementKind::Var; ++k) {
        const auto kind = ElementKind::Kind(k);
        QVERIFY2(QFile::exists(ElementKind::imagePath(kind)), qPrintable(ElementKind::imagePath(kind)));
        QVERIFY(!ElementKind::menuText(kind).isEmpty());
        QVERIFY(!ElementKind::xmlName(kind).isEmpty());
        QCOMPARE(ElementKind::isContainer(kind), k <= ElementKind::Group);
    }
    QCOMPARE(ElementKind::defaultDefine(ElementKind::Image), QString());
    QCOMPARE(ElementKind::defaultDefine(ElementKind::LED), QStringLiteral("LedDefine"));
    const QList<ElementKind::Kind> order = ElementKind::menuOrder();
    QCOMPARE(order.size(), int(ElementKind::Count));
    const int dbl = order.indexOf(ElementKind::DoubleSpinbox);
    QCOMPARE(order.value(dbl + 1), ElementKind::Knob);
    QCOMPARE(order.value(dbl + 2), ElementKind::Slider);
    QCOMPARE(order.first(), ElementKind::Vertical);
    QCOMPARE(order.last(), ElementKind::Table);
}

void TestFormEditor::treeOfForm()
{
    // The root and then the hidden values, built-in ones left out.
    QStringList top;
    for (int row = 0; row < m_model->rowCount(); ++row)
        top << m_model->index(row, 0).data().toString();
    QCOMPARE(top.first(), doc().root()->objectName());
    QVERIFY(top.contains("V1"));
    for (const char *builtIn : {"$FUNC$", "$VALUE$", "$ADDRESS$", "dummy_define"})
        QVERIFY2(!top.contains(QLatin1String(builtIn)), builtIn);
    QCOMPARE(top.size(), 1 + doc().tables().dataValues.size() - 4);

    const QString root = doc().root()->objectName();
    QCOMPARE(childTexts(root), (QStringList{"Row", "Grid", "Tabs", "PL", "RAD", "M1", "TM"}));
    QCOMPARE(childTexts(widget("P.R.EN")->parentWidget()->objectName()), (QStringList{"P.R.EN", "P.R.MODE", "P.R.COUNT"}));
    QCOMPARE(childTexts("RAD"), (QStringList{"A", "B"}));
    QCOMPARE(childTexts(widget("L1")->parentWidget()->objectName()), QStringList{widget("L1")->objectName()});
    // Leaves have no rows; every item's address leads back to its widget.
    QCOMPARE(m_model->rowCount(indexOf("PL")), 0);
    QCOMPARE(FormTree::objectOf(indexOf("P.R.MODE")), widget("P.R.MODE"));
    QCOMPARE(FormTree::objectOf(indexOf("V1")), doc().tables().dataValue("V1"));
}

void TestFormEditor::addEveryKind_data()
{
    QTest::addColumn<int>("kind");
    for (int k = ElementKind::Vertical; k < ElementKind::Count; ++k)
        QTest::newRow(qPrintable(ElementKind::menuText(ElementKind::Kind(k)))) << k;
}

void TestFormEditor::addEveryKind()
{
    QFETCH(int, kind);
    const auto k = ElementKind::Kind(kind);
    const QString grid = widget("T1")->parentWidget()->objectName();
    const QModelIndex made = m_editor->add(k, indexOf(grid));
    QVERIFY(made.isValid());
    QWidget *w = FormTree::widgetOf(made);
    QVERIFY(w);
    QCOMPARE(ElementKind::of(w), k);
    // Appended to the container, in the form and in the tree.
    QCOMPARE(made.parent(), indexOf(grid));
    QCOMPARE(made.row(), 3);
    QWidget *placed = w;
    if (auto *group = w->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly))
        placed = group->buttons().value(0);
    QCOMPARE(FormTree::elementsOf(asContainer(widget(grid))).value(3), placed);
    const QString base = ElementKind::defaultDefine(k);
    if (!base.isEmpty())
        QCOMPARE(w->objectName(), base + "_0");
    if (auto *element = dynamic_cast<ActiveElement *>(placed == w ? w : static_cast<QObject *>(w->findChild<ButtonGroup *>())))
        QCOMPARE(doc().tables().element(w->objectName()), element);
    if (ElementKind::isContainer(k))
        QCOMPARE(doc().tables().container(w->objectName()), asContainer(w));
    // A second one takes the next number.
    const QModelIndex next = m_editor->add(k, indexOf(grid));
    QVERIFY(next.isValid());
    if (!base.isEmpty())
        QCOMPARE(FormTree::widgetOf(next)->objectName(), base + "_1");
}

void TestFormEditor::addPlaces_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("container");
    QTest::addColumn<int>("position");

    QTest::newRow("on a leaf: behind it") << "P.R.EN" << "P.R.EN" << 1;
    QTest::newRow("on the last leaf") << "P.R.COUNT" << "P.R.EN" << 3;
    QTest::newRow("in a grid: behind in line order") << "T1" << "T1" << 1;
    QTest::newRow("on a tab: a new page") << "Tabs" << "" << 2;
}

void TestFormEditor::addPlaces()
{
    QFETCH(QString, current);
    QFETCH(QString, container);
    QFETCH(int, position);
    QModelIndex index = indexOf(current);
    QString host = container.isEmpty() ? QString() : widget(container)->parentWidget()->objectName();
    if (current == "Tabs") {
        index = m_model->index(2, 0, m_model->index(0, 0));
        host = FormTree::widgetOf(index)->objectName();
    }
    const QModelIndex made = m_editor->add(ElementKind::Spinbox, index);
    QVERIFY(made.isValid());
    QCOMPARE(FormTree::widgetOf(made)->objectName(), QStringLiteral("SpinBoxDefine_0"));
    QCOMPARE(layoutNames(host).indexOf("SpinBoxDefine_0"), position);
    QCOMPARE(childTexts(host).indexOf("SpinBoxDefine_0"), position);
    if (auto *grid = qobject_cast<GridWidget *>(widget(host))) {
        // The cells behind moved on: T2 is now in the second line.
        int row = 0, column = 0, rs = 0, cs = 0;
        grid->gridLayout()->getItemPosition(grid->gridLayout()->indexOf(widget("T2")), &row, &column, &rs, &cs);
        QCOMPARE(row, 1);
        QCOMPARE(column, 0);
    }
    if (auto *tab = qobject_cast<QTabWidget *>(widget(host))) {
        QCOMPARE(tab->count(), 3);
        QCOMPARE(tab->widget(2)->objectName(), QStringLiteral("SpinBoxDefine_0"));
    }
}

void TestFormEditor::defineNumbering()
{
    QCOMPARE(ElementFactory::freeDefine(doc(), "CheckBoxDefine"), QStringLiteral("CheckBoxDefine_0"));
    // Taken by anything: a value, a display, an element.
    doc().tables().addDataValue(new DataClass("CheckBoxDefine_0"));
    doc().tables().leds.insert("CheckBoxDefine_1", nullptr);
    QCOMPARE(ElementFactory::freeDefine(doc(), "CheckBoxDefine"), QStringLiteral("CheckBoxDefine_2"));
    // The search ends at 9999, whose name then stands.
    for (int n = 0; n <= 9999; ++n)
        doc().tables().leds.insert(QStringLiteral("X_%1").arg(n), nullptr);
    QCOMPARE(ElementFactory::freeDefine(doc(), "X"), QStringLiteral("X_9999"));
    doc().tables().leds.remove("X_5000");
    QCOMPARE(ElementFactory::freeDefine(doc(), "X"), QStringLiteral("X_5000"));
    for (int n = 0; n <= 9999; ++n)
        doc().tables().leds.remove(QStringLiteral("X_%1").arg(n));
    doc().tables().leds.remove("CheckBoxDefine_1");
}

void TestFormEditor::removeCleansTables_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("led") << "L1";
    QTest::newRow("dial") << "D1";
    QTest::newRow("thermo") << "TH";
    QTest::newRow("plot") << "PL";
    QTest::newRow("combo") << "P.R.MODE";
    QTest::newRow("radio") << "RAD";
    QTest::newRow("math") << "M1";
    QTest::newRow("timer") << "TM";
    QTest::newRow("container") << "Row";
}

void TestFormEditor::removeCleansTables()
{
    QFETCH(QString, name);
    QWidget *w = name == "Row" ? widget("P.R.EN")->parentWidget() : widget(name);
    QVERIFY(w);
    QSet<QObject *> gone{w};
    for (QObject *child : w->findChildren<QObject *>())
        gone.insert(child);
    QSet<ActiveElement *> goneElements;
    for (QObject *o : gone)
        if (auto *e = dynamic_cast<ActiveElement *>(o))
            goneElements.insert(e);
    const QModelIndex index = m_editor->tree().itemOf(w)->index();
    const QPersistentModelIndex parent = index.parent();
    const int rowsBefore = m_model->rowCount(parent);
    QVERIFY(m_editor->remove(index));
    QCOMPARE(m_model->rowCount(parent), rowsBefore - 1);
    QVERIFY(!doc().root()->isAncestorOf(w));

    const DocumentTables &t = doc().tables();
    for (ActiveElement *e : t.elements)
        QVERIFY(!goneElements.contains(e));
    for (ActiveElement *e : t.elementList)
        QVERIFY(!goneElements.contains(e));
    for (auto *table : {&t.mathDependents, &t.ledDependents, &t.curveDependents, &t.dialDependents,
                        &t.thermoDependents, &t.svgImageDependents, &t.logDependents})
        for (const QList<QObject *> &list : *table)
            for (QObject *o : list)
                QVERIFY2(!gone.contains(o), qPrintable(name));
    for (auto *table : {&t.leds, &t.dials, &t.thermos, &t.plots, &t.timers, &t.images, &t.pushButtons})
        for (QObject *o : *table)
            QVERIFY(!gone.contains(o));
    for (Container *c : t.containers)
        QVERIFY(!gone.contains(c->containerWidget()));
    for (Peripheral *p : doc().model().peripherals())
        for (Register *r : p->registers) {
            for (ActiveElement *e : r->claims)
                QVERIFY(!goneElements.contains(e));
            for (BitField *f : r->fields)
                for (ActiveElement *e : f->claims)
                    QVERIFY(!goneElements.contains(e));
        }
    // The displays still refresh without what went.
    m_form.window->resetGUI();
}

void TestFormEditor::removeRefusals()
{
    // Not the root; a var goes with its record; nothing without a row.
    const int top = m_model->rowCount();
    QVERIFY(!m_editor->remove(m_model->index(0, 0)));
    QVERIFY(!m_editor->errorText().isEmpty());
    QVERIFY(doc().root());
    QVERIFY(!m_editor->remove(QModelIndex()));
    QVERIFY(m_editor->remove(indexOf("V1")));
    QVERIFY(!doc().tables().dataValue("V1"));
    QCOMPARE(m_model->rowCount(), top - 1);
    // A new var appears as a root item and is a real value.
    const QModelIndex var = m_editor->addVar("V2");
    QVERIFY(var.isValid());
    QCOMPARE(var.parent(), QModelIndex());
    QVERIFY(doc().tables().dataValue("V2"));
    QVERIFY(!m_editor->addVar("V2").isValid());
    QVERIFY(!m_editor->addVar("  ").isValid());
}

void TestFormEditor::removeLockSource()
{
    // The combo's "Slow" locks the counter at 3; removing the combo lets go.
    auto *combo = m_form.element<ComboBox>("P.R.MODE");
    auto *count = m_form.element<SpinBox>("P.R.COUNT");
    QVERIFY(combo && count);
    combo->setCurrentIndex(1);
    QVERIFY(count->locked);
    QCOMPARE(count->QSpinBox::value(), 3);
    QVERIFY(m_editor->remove(indexOf("P.R.MODE")));
    QVERIFY(!count->locked);
    QVERIFY(count->isEnabled());
    // Removing a locked target leaves its source working.
    combo = nullptr;
    QVERIFY(m_editor->remove(indexOf("P.R.COUNT")));
    QVERIFY(!doc().tables().element("P.R.COUNT"));
}

void TestFormEditor::removeRadioButtons()
{
    // One option of a group goes; the group keeps working with the other.
    auto *group = dynamic_cast<ButtonGroup *>(doc().tables().element("RAD"));
    QVERIFY(group);
    QVERIFY(m_editor->remove(m_model->index(0, 0, indexOf("RAD"))));
    QCOMPARE(group->buttons().size(), 1);
    QCOMPARE(childTexts("RAD"), QStringList{"B"});
    group->setValue("0", 0);
    QVERIFY(group->setValue("1", 0));
    QCOMPARE(group->value(0), QStringLiteral("1"));
    // Cutting the last button cuts the group, which paste brings back.
    QVERIFY(m_editor->cut(m_model->index(0, 0, indexOf("RAD"))));
    QVERIFY(!doc().tables().element("RAD"));
    QVERIFY(!indexOf("RAD").isValid());
    const QModelIndex pasted = m_editor->paste(indexOf("T1"));
    QVERIFY(pasted.isValid());
    QCOMPARE(m_model->rowCount(pasted), 1);
    QVERIFY(doc().tables().element("RAD_Copy"));
    // The editor goes with what it keeps; the form stays whole.
    delete m_editor;
    m_editor = nullptr;
    m_form.window->resetGUI();
    QVERIFY(doc().tables().element("RAD_Copy")->setValue("1", 0));
}

void TestFormEditor::cutAndPaste()
{
    const QStringList before = childTexts(doc().root()->objectName());
    // Nothing selected: nothing happens.
    QVERIFY(!m_editor->cut(QModelIndex()));
    QVERIFY(!m_editor->clipboard());
    QVERIFY(!m_editor->paste(QModelIndex()).isValid());
    QCOMPARE(childTexts(doc().root()->objectName()), before);

    // Cut the counter, paste it behind T1 in the grid.
    QVERIFY(m_editor->cut(indexOf("P.R.COUNT")));
    QVERIFY(!doc().tables().element("P.R.COUNT"));
    const QString row = widget("P.R.EN")->parentWidget()->objectName();
    QCOMPARE(childTexts(row), (QStringList{"P.R.EN", "P.R.MODE"}));
    const QModelIndex copy = m_editor->paste(indexOf("T1"));
    QVERIFY(copy.isValid());
    auto *spin = qobject_cast<SpinBox *>(FormTree::widgetOf(copy));
    QVERIFY(spin);
    QCOMPARE(spin->objectName(), QStringLiteral("P.R.COUNT_Copy"));
    QCOMPARE(layoutNames(widget("T1")->parentWidget()->objectName()),
             (QStringList{"T1", "P.R.COUNT_Copy", "T2", "T3"}));
    QCOMPARE(spin->maximum(), 15);
    QCOMPARE(spin->prefix(), QStringLiteral("#"));
    QCOMPARE(spin->suffix(), QStringLiteral(" n"));
    QCOMPARE(spin->singleStep(), 2);
    QCOMPARE(doc().tables().element("P.R.COUNT_Copy"), static_cast<ActiveElement *>(spin));
    // Pasted again: a fresh name, no collision.
    const QModelIndex second = m_editor->paste(indexOf("T1"));
    QVERIFY(second.isValid());
    QCOMPARE(FormTree::widgetOf(second)->objectName(), QStringLiteral("P.R.COUNT_Copy_0"));
    QVERIFY(doc().tables().element("P.R.COUNT_Copy"));
}

void TestFormEditor::clones_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("combo") << "P.R.MODE";
    QTest::newRow("checkbox") << "P.R.EN";
    QTest::newRow("led") << "L1";
    QTest::newRow("dial") << "D1";
    QTest::newRow("thermo") << "TH";
    QTest::newRow("plot") << "PL";
    QTest::newRow("math") << "M1";
    QTest::newRow("timer") << "TM";
    QTest::newRow("radio button") << "RAD";
}

void TestFormEditor::clones()
{
    QFETCH(QString, name);
    QModelIndex source = indexOf(name);
    if (name == "RAD")
        source = m_model->index(1, 0, source); // the button B stands for its group
    m_editor->copy(source);
    QVERIFY(m_editor->clipboard());
    const QModelIndex pasted = m_editor->paste(indexOf("T3"));
    QVERIFY(pasted.isValid());
    QWidget *copy = FormTree::widgetOf(pasted);
    QWidget *original = widget(name);
    if (name == "L1")
        QCOMPARE(doc().tables().leds.value("L1_Copy"), static_cast<QObject *>(copy));
    else
        QCOMPARE(copy->objectName(), name + "_Copy");
    QCOMPARE(ElementKind::of(copy), ElementKind::of(original));
    const DocumentTables &t = doc().tables();

    // The settings each family carries over.
    if (name == "P.R.MODE") {
        auto *c = qobject_cast<ComboBox *>(copy);
        QCOMPARE(c->count(), 3);
        QCOMPARE(c->itemText(1), QStringLiteral("Slow"));
        QCOMPARE(copy->property("itemText"), original->property("itemText"));
        QCOMPARE(copy->property("locks"), original->property("locks"));
        // The copy locks like the original.
        c->setCurrentIndex(1);
        QVERIFY(m_form.element<SpinBox>("P.R.COUNT")->locked);
    } else if (name == "P.R.EN") {
        QCOMPARE(qobject_cast<QCheckBox *>(copy)->text(), QStringLiteral("Enable"));
    } else if (name == "L1") {
        auto *led = qobject_cast<Led *>(copy);
        QCOMPARE(led->watchedDefine(), QStringLiteral("P.R.EN"));
        QCOMPARE(led->mask(), quint64(1));
        QCOMPARE(led->onColor(), QStringLiteral("green"));
        QCOMPARE(led->offColor(), QStringLiteral("red"));
        QVERIFY(t.ledDependents.value("P.R.EN").contains(copy));
    } else if (name == "D1") {
        QCOMPARE(qobject_cast<QwtDial *>(copy)->upperBound(), 15.0);
        QVERIFY(t.dialDependents.value("P.R.COUNT").contains(copy));
        QCOMPARE(copy->property("data"), original->property("data"));
    } else if (name == "TH") {
        QCOMPARE(qobject_cast<QwtThermo *>(copy)->upperBound(), 15.0);
        QVERIFY(t.thermoDependents.value("P.R.COUNT").contains(copy));
    } else if (name == "PL") {
        auto *plot = qobject_cast<MyQwtPlot *>(copy);
        QCOMPARE(plot->curveCount(), 1);
        QCOMPARE(plot->curveData(0), QStringLiteral("P.R.COUNT"));
        QCOMPARE(plot->curve(0)->pen().color(), QColor(255, 0, 0));
        QCOMPARE(plot->maxY, 20.0f);
        QCOMPARE(plot->font().family(), QStringLiteral("Helvetica"));
        QVERIFY(t.curveDependents.value("P.R.COUNT").contains(copy));
    } else if (name == "M1") {
        QCOMPARE(copy->property("expression"), original->property("expression"));
        QCOMPARE(static_cast<QObject *>(qobject_cast<MathLabel *>(copy))->property("suffix").toString(),
                 QStringLiteral("x"));
        QVERIFY(t.mathDependents.value("P.R.COUNT").contains(copy));
    } else if (name == "TM") {
        QCOMPARE(qobject_cast<TimerLabel *>(copy)->interval(), 500);
        QCOMPARE(qobject_cast<TimerLabel *>(copy)->run(), 0);
    } else if (name == "RAD") {
        auto *group = copy->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(group);
        QCOMPARE(group->buttons().size(), 2);
        QCOMPARE(group->buttons().at(1)->text(), QStringLiteral("B"));
        QCOMPARE(m_model->rowCount(pasted), 2);
        QCOMPARE(t.element("RAD_Copy"), static_cast<ActiveElement *>(group));
    }
}

void TestFormEditor::cloneOfItemsFromTheDialog()
{
    // The items dialog adds an override and a hidden value to an entry; the
    // copy takes the label alone and the override as its kind of item.
    QObject *combo = widget("P.R.MODE");
    combo->setProperty("itemText", QStringList{"0#$#Fast", "1#$#Slow#$#7#$#", "2#$#Gone#$##$#2"});
    m_editor->copy(indexOf("P.R.MODE"));
    const QModelIndex pasted = m_editor->paste(indexOf("T3"));
    auto *copy = qobject_cast<ComboBox *>(FormTree::widgetOf(pasted));
    QVERIFY(copy);
    QCOMPARE(copy->count(), 2);
    QCOMPARE(copy->itemText(0), QStringLiteral("Fast"));
    QCOMPARE(copy->itemText(1), QStringLiteral("Slow"));
}

void TestFormEditor::cloneContainer()
{
    // A container comes with everything inside, each with a name of its own.
    const QModelIndex tabs = m_model->index(2, 0, m_model->index(0, 0));
    m_editor->copy(tabs);
    const QModelIndex pasted = m_editor->paste(m_model->index(0, 0));
    QVERIFY(pasted.isValid());
    auto *tab = qobject_cast<QTabWidget *>(FormTree::widgetOf(pasted));
    QVERIFY(tab);
    QCOMPARE(tab->count(), 2);
    QCOMPARE(tab->tabText(1), QStringLiteral("PageB"));
    QCOMPARE(m_model->rowCount(pasted), 2);
    QVERIFY(tab->isAncestorOf(qobject_cast<QWidget *>(doc().tables().leds.value("L1_Copy"))));
    QVERIFY(tab->findChild<QwtDial *>("D1_Copy"));
    QVERIFY(doc().tables().leds.contains("L1_Copy"));
    QCOMPARE(tab->widget(0)->property("my_label").toString(), QStringLiteral("PageA"));
    // Pasting a tab page into a grid works like any container.
    m_editor->copy(m_model->index(0, 0, tabs));
    const QModelIndex page = m_editor->paste(indexOf("T1"));
    QVERIFY(page.isValid());
    QCOMPARE(layoutNames(widget("T1")->parentWidget()->objectName()).value(1), FormTree::widgetOf(page)->objectName());
    // Copying the root and pasting it into itself would never end: the root
    // is not copied.
    m_editor->copy(m_model->index(0, 0));
    QVERIFY(m_editor->clipboard() != doc().root());
}

void TestFormEditor::drops_data()
{
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("position");
    QTest::addColumn<bool>("moves");
    QTest::addColumn<QString>("container");
    QTest::addColumn<int>("index");

    QTest::newRow("on a container: at its end") << "P.R.EN" << "Grid" << int(FormEditor::OnItem) << true << "Grid" << 3;
    QTest::newRow("above a leaf") << "P.R.EN" << "T2" << int(FormEditor::AboveItem) << true << "Grid" << 1;
    QTest::newRow("below a leaf") << "P.R.EN" << "T2" << int(FormEditor::BelowItem) << true << "Grid" << 2;
    QTest::newRow("on a leaf: before it") << "T3" << "T1" << int(FormEditor::OnItem) << true << "Grid" << 0;
    QTest::newRow("within its container, down") << "P.R.EN" << "P.R.COUNT" << int(FormEditor::BelowItem) << true << "Row" << 2;
    QTest::newRow("below a container: behind it") << "M1" << "Grid" << int(FormEditor::BelowItem) << true << "ROOT" << 2;
    QTest::newRow("on the viewport: nothing") << "P.R.EN" << "Grid" << int(FormEditor::OnViewport) << false << "Row" << 0;
    QTest::newRow("a container into itself") << "Grid" << "Grid" << int(FormEditor::OnItem) << false << "ROOT" << 1;
    QTest::newRow("a container into its child") << "Tabs" << "PageA" << int(FormEditor::OnItem) << false << "ROOT" << 2;
}

void TestFormEditor::drops()
{
    QFETCH(QString, dragged);
    QFETCH(QString, target);
    QFETCH(int, position);
    QFETCH(bool, moves);
    QFETCH(QString, container);
    QFETCH(int, index);

    // Containers are named by their labels here.
    auto resolve = [this](const QString &name) -> QWidget * {
        if (name == "ROOT")
            return doc().root();
        if (name == "Row")
            return widget("P.R.EN")->parentWidget();
        if (name == "Grid")
            return widget("T1")->parentWidget();
        if (name == "Tabs")
            return FormTree::widgetOf(m_model->index(2, 0, m_model->index(0, 0)));
        if (name == "PageA")
            return widget("L1")->parentWidget();
        return widget(name);
    };
    QWidget *moved = resolve(dragged);
    QWidget *onto = resolve(target);
    const QModelIndex targetIndex = m_editor->tree().itemOf(onto)->index();
    const QModelIndexList selection{m_editor->tree().itemOf(moved)->index()};

    QMyTreeView view;
    view.setModel(m_model);
    view.setEditor(m_editor);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(".*"));
    QCOMPARE(view.dropRows(targetIndex, position, selection), moves);

    QWidget *host = resolve(container);
    QCOMPARE(FormTree::containerOf(moved), asContainer(host));
    QCOMPARE(FormTree::elementsOf(asContainer(host)).indexOf(moved), index);
    // The tree shows the form as it is.
    QStandardItem *item = m_editor->tree().itemOf(moved);
    QCOMPARE(FormTree::objectOf(item->parent()), static_cast<QObject *>(host));
    QCOMPARE(item->row(), FormTree::elementsOf(asContainer(host)).indexOf(moved));
}

void TestFormEditor::editedDocumentStillWorks()
{
    // A batch of edits of every sort, then what a user does with a form.
    QVERIFY(m_editor->add(ElementKind::Checkbox, indexOf("P.R.MODE")).isValid());
    QVERIFY(m_editor->add(ElementKind::Table, m_model->index(0, 0)).isValid());
    QVERIFY(m_editor->add(ElementKind::RegView, m_model->index(0, 0)).isValid());
    m_editor->copy(indexOf("P.R.MODE"));
    QVERIFY(m_editor->paste(indexOf("T2")).isValid());
    QVERIFY(m_editor->remove(indexOf("L1")));
    QVERIFY(m_editor->remove(indexOf("D1")));
    QVERIFY(m_editor->cut(indexOf("PL")));
    QVERIFY(m_editor->drop(indexOf("T3"), FormEditor::AboveItem, {indexOf("P.R.EN")}));
    QVERIFY(m_editor->addVar("V9").isValid());

    const QString dump = m_form.dir.filePath("dump.txt");
    const QString script = m_form.dir.filePath("dump.script");
    QFile s(script);
    QVERIFY(s.open(QIODevice::WriteOnly | QIODevice::Text));
    s.write(QStringLiteral("SetDef(P.R.MODE_Copy=2)\nDumpAll(%1)\n").arg(dump).toUtf8());
    s.close();
    m_form.window->runBatchfile(script);
    QFile d(dump);
    QVERIFY(d.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(d.readAll());
    QVERIFY2(text.contains("P.R.MODE_Copy(ComboBox) == 2"), qPrintable(text));
    QVERIFY(text.contains("CheckBoxDefine_0(CheckBox)"));
    QVERIFY(text.contains("V9 == "));
    QVERIFY(!text.contains("L1"));

    m_form.window->setExportFolder(m_form.dir.path());
    m_form.window->exportHeaderFiles(true);
    QFile header(m_form.dir.filePath("out.h"));
    QVERIFY(header.open(QIODevice::ReadOnly | QIODevice::Text));
    QVERIFY(header.readAll().contains("P_R"));

    const QString config = m_form.dir.filePath("edited.qlnp");
    QVERIFY(m_form.window->saveConfiguration(config));
    QVERIFY(m_form.window->load(config));
    QCOMPARE(m_form.element<ComboBox>("P.R.MODE_Copy")->currentIndex(), 2);
}

void TestFormEditor::dialog()
{
    ShowXMLDialog dialog(doc(), m_form.window);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Show the current loaded XML as a tree"));
    QVERIFY(!dialog.isModal());
    const QAbstractItemModel *table = dialog.tableView()->model();
    QCOMPARE(table->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Attribute"));
    QCOMPARE(table->headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString(), QStringLiteral("Current setting"));
    QCOMPARE(table->headerData(0, Qt::Horizontal, Qt::ToolTipRole).toString(), QStringLiteral("Attribute of GUI element"));
    for (const char *name : {"Expand all", "Properties", "Save"}) {
        bool found = false;
        for (QPushButton *b : dialog.findChildren<QPushButton *>())
            found = found || b->text() == QLatin1String(name);
        QVERIFY2(found, name);
    }
    for (const char *slot : {"addHoriontal()", "addVar()", "removeWidget()", "cut()", "paste()", "saveXML()",
                             "on_clicked(QModelIndex)", "onCustomContextMenu(QPoint)",
                             "closeEditor(QWidget*,QAbstractItemDelegate::EndEditHint)"})
        QVERIFY2(dialog.metaObject()->indexOfSlot(slot) >= 0, slot);

    // The menu: Add (in its order, a separator behind Group, Var last),
    // Remove, Copy, Paste.
    QMenu *menu = dialog.contextMenu();
    QCOMPARE(menu->title(), QStringLiteral("Menu"));
    const QList<QAction *> actions = menu->actions();
    QCOMPARE(actions.size(), 4);
    QCOMPARE(actions.at(0)->text(), QStringLiteral("Add"));
    QCOMPARE(actions.at(1)->text(), QStringLiteral("Remove"));
    QCOMPARE(actions.at(3)->text(), QStringLiteral("Paste"));
    QStringList add;
    for (QAction *a : actions.at(0)->menu()->actions())
        add << (a->isSeparator() ? QStringLiteral("|") : a->text());
    QCOMPARE(add.size(), ElementKind::Count + 2);
    QCOMPARE(add.indexOf("|"), add.indexOf("Group") + 1);
    QCOMPARE(add.indexOf("Knob"), add.indexOf("DoubleSpinbox") + 1);
    QCOMPARE(add.indexOf("Slider"), add.indexOf("DoubleSpinbox") + 2);
    QCOMPARE(add.last(), QStringLiteral("Var"));

    // Adding through the menu's slot puts the element behind the current one.
    QStandardItem *en = nullptr;
    const QModelIndexList found = dialog.treeModel()->match(dialog.treeModel()->index(0, 0), Qt::DisplayRole, "P.R.EN",
                                                            1, Qt::MatchExactly | Qt::MatchRecursive);
    QCOMPARE(found.size(), 1);
    en = dialog.treeModel()->itemFromIndex(found.first());
    dialog.treeView()->setCurrentIndex(en->index());
    dialog.addKnob();
    QCOMPARE(dialog.treeView()->currentIndex().data().toString(), QStringLiteral("KnobDefine_0"));
    QCOMPARE(dialog.treeView()->currentIndex().row(), 1);

    // The form tells where the mouse is and selects what is clicked.
    QSignalSpy status(&dialog, &ShowXMLDialog::statusText);
    QWidget *combo = widget("P.R.MODE");
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(combo, &enter);
    QCOMPARE(status.size(), 1);
    QCOMPARE(status.first().first().toString(), QStringLiteral("ComboBox P.R.MODE"));
    m_form.window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_form.window));
    QTest::mouseClick(widget("T2"), Qt::LeftButton, Qt::NoModifier, QPoint(2, 2));
    QCOMPARE(FormTree::objectOf(dialog.treeView()->currentIndex()), static_cast<QObject *>(widget("T2")));
    QCOMPARE(dialog.attributeTable()->target(), static_cast<QObject *>(widget("T2")));
    // A radio group's row shows the group's attributes.
    QAbstractButton *a = dynamic_cast<ButtonGroup *>(doc().tables().element("RAD"))->buttons().at(0);
    QTest::mouseClick(a, Qt::LeftButton, Qt::NoModifier, QPoint(2, 2));
    QCOMPARE(dialog.attributeTable()->target(), static_cast<QObject *>(a));
    const QModelIndex radio = dialog.treeView()->currentIndex().parent();
    dialog.on_clicked(radio);
    QCOMPARE(dialog.attributeTable()->target(), dynamic_cast<QObject *>(doc().tables().element("RAD")));

    // Quiet mode: the save dialog counts as cancelled and nothing is written.
    const QStringList before = QDir(m_form.dir.path()).entryList(QDir::Files);
    dialog.saveXML();
    QCOMPARE(QDir(m_form.dir.path()).entryList(QDir::Files), before);
    QVERIFY(m_form.sink->console.join('\n').contains("Save GUI XML"));
    // The form's next document ends the editor.
    QPointer<ShowXMLDialog> open = new ShowXMLDialog(doc(), m_form.window);
    open->setAttribute(Qt::WA_DeleteOnClose);
    open->show();
    QVERIFY(m_form.window->open(m_form.path));
    QTRY_VERIFY(open.isNull());
}

QTEST_MAIN(TestFormEditor)
#include "tst_formeditor.moc"
