#include <QtTest>

#include "EditorForm.h"
#include "elements/ActionRunner.h"
#include "elements/ComboBox.h"
#include "elements/DocumentTables.h"
#include "elements/Image.h"
#include "elements/NumberFormat.h"
#include "reader/DocumentState.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "tooling/ActionDelegate.h"
#include "tooling/AttributeTable.h"
#include "tooling/ColorDelegate.h"
#include "tooling/ComboBoxActionDelegate.h"
#include "tooling/ComboBoxDelegate2.h"
#include "tooling/EditActionsDialog.h"
#include "tooling/EditColumnsDialog.h"
#include "tooling/EditCurvesDialog.h"
#include "tooling/EditItemsDialog.h"
#include "tooling/FileDelegate.h"
#include "tooling/FontDelegate.h"
#include "tooling/XMLPropertiesDialog.h"
#include "views/MyQwtPlot.h"
#include "views/Table.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QFontDialog>
#include <QImage>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTableView>
#include <qwt_legend.h>
#include <qwt_plot_curve.h>

namespace {

const QByteArray kForm =
    "<verticalcontainer label=\"Main\">\n"
    " <combo define=\"CB\">\n"
    "  <item label=\"a\" value=\"1\">\n"
    "   <action event=\"selected\" cmd=\"sendUSB\" data=\"01 02\" recdata=\"R.X\" delay=\"5\"/>\n"
    "   <action event=\"unselected\" cmd=\"setDef\" data=\"S1=3\" cond=\"S1 &gt; 1\"/>\n"
    "  </item>\n"
    "  <item label=\"b\" value=\"2\"/>\n"
    " </combo>\n"
    " <combo define=\"EMPTY\"/>\n"
    " <spinbox define=\"S1\" range=\"0;15\"><action event=\"changed\" cmd=\"setDef\" data=\"K1=1\"/></spinbox>\n"
    " <checkbox define=\"C1\" label=\"Check\"/>\n"
    " <togglebutton define=\"TB\" label=\"Go\"/>\n"
    " <button define=\"B1\" label=\"Push\"/>\n"
    " <math define=\"M1\" formula=\"S1 * 2\"/>\n"
    " <timer define=\"T1\" interval=\"100\"/>\n"
    " <knob define=\"K1\" range=\"0;10\"/>\n"
    " <text define=\"TX\" label=\"Hello\"/>\n"
    " <image define=\"IM\" file=\"a.png\"/>\n"
    " <plot define=\"P1\"><curve label=\"c1\" data=\"S1\" color=\"255;0;0\"/></plot>\n"
    " <table define=\"TA\"><column label=\"Reg\" type=\"regname\"/><column label=\"Val\" type=\"value\" "
    "columnwidth=\"80\"/></table>\n"
    "</verticalcontainer>\n";

QStringList column(const QStandardItemModel *model, int col)
{
    QStringList result;
    for (int row = 0; row < model->rowCount(); ++row)
        result << model->item(row, col)->text();
    return result;
}

QStringList headers(const QStandardItemModel *model)
{
    QStringList result;
    for (int col = 0; col < model->columnCount(); ++col)
        result << model->horizontalHeaderItem(col)->text();
    return result;
}

bool writePicture(const QString &path, const QColor &color)
{
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(color);
    return image.save(path, "PNG");
}

// Stands in for the window's command slots.
class CommandHost : public QObject
{
    Q_OBJECT
public slots:
    void setDef(const QString &text) { received << text; }

public:
    QStringList received;
};

} // namespace

// The editors behind the attribute table's rows, used as the view would use
// them but without exec(): the dialog editors of fonts, files and colours,
// the policy list, and the dialogs of actions, items, columns, curves and the
// description's header.
class TestPropertyDialogs : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_form = new EditorForm;
        QVERIFY(writePicture(m_form->filePath(QStringLiteral("a.png")), Qt::red));
        QVERIFY2(m_form->load(QByteArray(), kForm), qPrintable(m_form->error()));
        m_view = new QTableView;
        m_table = new AttributeTable(m_form->document(), m_view);
    }

    void cleanup()
    {
        delete m_table;
        delete m_view;
        delete m_form;
        Dialogs::setQuiet(false);
    }

    void fontEditor()
    {
        QWidget *text = widget("TX");
        m_table->fill(text);
        const QModelIndex index = valueIndex("Font");
        FontDelegate delegate(m_table);
        QWidget *editor = delegate.createEditor(m_view->viewport(), QStyleOptionViewItem(), index);
        auto *dialog = qobject_cast<QFontDialog *>(editor);
        QVERIFY(dialog);
        QVERIFY(!dialog->isModal());
        delegate.setEditorData(editor, index);
        QCOMPARE(dialog->currentFont().pointSize(), text->font().pointSize());
        dialog->setCurrentFont(QFont(text->font().family(), 19));
        delegate.setModelData(editor, m_table->model(), index);
        QCOMPARE(text->font().pointSize(), 19);
        QCOMPARE(text->property("my_font").toString(), text->font().toString());
        QCOMPARE(index.data().toString(), text->font().toString());
        delete editor;
    }

    void colorEditor_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<int>("role");
        QTest::newRow("label") << "TX" << int(QPalette::Window);
        QTest::newRow("push button") << "B1" << int(QPalette::Button);
    }

    void colorEditor()
    {
        QFETCH(QString, define);
        QFETCH(int, role);
        QWidget *target = widget(define.toLatin1().constData());
        m_table->fill(target);
        const QModelIndex index = valueIndex("Color");
        ColorDelegate delegate(m_table);
        QWidget *editor = delegate.createEditor(m_view->viewport(), QStyleOptionViewItem(), index);
        auto *dialog = qobject_cast<QColorDialog *>(editor);
        QVERIFY(dialog);
        delegate.setEditorData(editor, index);
        // The dialog starts at the colour the widget shows.
        QCOMPARE(dialog->currentColor(), target->palette().color(QPalette::ColorRole(role)));
        dialog->setCurrentColor(QColor(11, 22, 33));
        delegate.setModelData(editor, m_table->model(), index);
        QCOMPARE(target->palette().color(QPalette::ColorRole(role)), QColor(11, 22, 33));
        QCOMPARE(target->property("Color").toString(), QStringLiteral("11;22;33"));
        QCOMPARE(index.data().toString(), QStringLiteral("11;22;33"));
        delete editor;
    }

    void fileEditor()
    {
        QVERIFY(writePicture(m_form->filePath(QStringLiteral("b.png")), Qt::blue));
        auto *image = qobject_cast<Image *>(widget("IM"));
        QVERIFY(image);
        QCOMPARE(image->property("File").toString(), QStringLiteral("a.png"));
        m_table->fill(image);
        const QModelIndex index = valueIndex("File");
        FileDelegate delegate(m_table);
        QWidget *editor = delegate.createEditor(m_view->viewport(), QStyleOptionViewItem(), index);
        auto *dialog = qobject_cast<QFileDialog *>(editor);
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Select image file"));
        QCOMPARE(QDir(dialog->directory()).canonicalPath(), QDir(m_form->folder()).canonicalPath());
        QVERIFY(dialog->nameFilters().join(QString()).contains(QStringLiteral("*.png *.gif *.jpg *.jpeg *.bmp")));
        dialog->selectFile(m_form->filePath(QStringLiteral("b.png")));
        delegate.setModelData(editor, m_table->model(), index);
        // Kept as the description would name it: beside the description.
        QCOMPARE(image->property("File").toString(), QStringLiteral("b.png"));
        QCOMPARE(index.data().toString(), QStringLiteral("b.png"));
        delete editor;

        // Quiet runs get no dialog at all.
        Dialogs::setQuiet(true);
        QVERIFY(!delegate.createEditor(m_view->viewport(), QStyleOptionViewItem(), index));
    }

    void policyEditor()
    {
        QWidget *text = widget("TX");
        m_table->fill(text);
        const QModelIndex index = valueIndex("SizePolV");
        ComboBoxDelegate2 delegate(m_table);
        QWidget *editor = delegate.createEditor(m_view->viewport(), QStyleOptionViewItem(), index);
        auto *box = qobject_cast<QComboBox *>(editor);
        QVERIFY(box);
        delegate.setEditorData(editor, index);
        QStringList items;
        for (int i = 0; i < box->count(); ++i)
            items << box->itemText(i);
        QCOMPARE(items, (QStringList{"fixed", "expanding", "minimum", "maximum", "preferred", "minimumexpanding",
                                     "ignored"}));
        QCOMPARE(box->currentText(), index.data().toString());
        box->setCurrentIndex(box->findText(QStringLiteral("maximum")));
        delegate.setModelData(editor, m_table->model(), index);
        QCOMPARE(text->sizePolicy().verticalPolicy(), QSizePolicy::Maximum);
        QCOMPARE(index.data().toString(), QStringLiteral("maximum"));
        QCOMPARE(index.data(Qt::UserRole).toInt(), int(QSizePolicy::Maximum));
        delete editor;
    }

    void actionRows()
    {
        EditActionsDialog dialog(m_form->find(QStringLiteral("CB")));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Actions of the UI element CB"));
        QStandardItemModel *model = dialog.model();
        QCOMPARE(headers(model), (QStringList{"Index", "Event", "Cmd", "Data", "RecData", "Delay", "Cond"}));
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(column(model, 1), (QStringList{"selected", "unselected"}));
        QCOMPARE(column(model, 2), (QStringList{"sendUSB", "setDef"}));
        QCOMPARE(column(model, 3), (QStringList{"01 02", "S1=3"}));
        QCOMPARE(column(model, 4), (QStringList{"R.X", "---"}));
        QCOMPARE(column(model, 5), (QStringList{"5", "---"}));
        QCOMPARE(column(model, 6), (QStringList{"---", "S1 > 1"}));
        auto *commands = qobject_cast<ComboBoxActionDelegate *>(dialog.view()->itemDelegateForColumn(2));
        QVERIFY(commands);
        QCOMPARE(commands->items(),
                 (QStringList{"sendUSB", "setDef", "resetGUI", "loadFile", "startProgram", "runScript"}));
    }

    void actionEvents_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<QStringList>("events");
        QTest::newRow("combo") << "CB" << QStringList{"selected", "unselected"};
        QTest::newRow("checkbox") << "C1" << QStringList{"checked", "unchecked"};
        QTest::newRow("toggle") << "TB" << QStringList{"checked", "unchecked"};
        QTest::newRow("button") << "B1" << QStringList{"clicked"};
        QTest::newRow("math") << "M1" << QStringList{"changed"};
        QTest::newRow("timer") << "T1" << QStringList{"changed"};
        QTest::newRow("spinbox") << "S1" << QStringList{"changed"};
    }

    void actionEvents()
    {
        QFETCH(QString, define);
        QFETCH(QStringList, events);
        EditActionsDialog dialog(m_form->find(define));
        auto *delegate = qobject_cast<ComboBoxActionDelegate *>(dialog.view()->itemDelegateForColumn(1));
        QVERIFY(delegate);
        QCOMPARE(delegate->items(), events);
    }

    void actionAcceptReject()
    {
        QObject *combo = m_form->find(QStringLiteral("CB"));
        const QVariantMap original = combo->property("data").toMap();
        QVERIFY(!original.isEmpty());

        // Unchanged rows give back the same map: nothing is lost or added.
        {
            EditActionsDialog dialog(combo);
            dialog.accept();
            QCOMPARE(combo->property("data").toMap(), original);
        }
        // Reject keeps the map whatever the rows say.
        {
            EditActionsDialog dialog(combo);
            dialog.model()->item(0, 3)->setText(QStringLiteral("FF"));
            dialog.reject();
            QCOMPARE(combo->property("data").toMap(), original);
        }
        // Edits, a deleted and an inserted line.
        {
            EditActionsDialog dialog(combo);
            dialog.model()->item(0, 3)->setText(QStringLiteral("AA BB"));
            dialog.view()->setCurrentIndex(dialog.model()->index(1, 0));
            dialog.deleteLine();
            QCOMPARE(dialog.model()->rowCount(), 1);
            dialog.view()->setCurrentIndex(dialog.model()->index(0, 0));
            dialog.insertLine();
            QCOMPARE(dialog.model()->rowCount(), 2);
            dialog.model()->item(1, 2)->setText(QStringLiteral("runScript"));
            dialog.model()->item(1, 3)->setText(QStringLiteral("go.script"));
            dialog.accept();
        }
        const QVariantMap data = combo->property("data").toMap();
        const QString key = original.firstKey();
        const QStringList expected = {"selected_sendUSB", "", "AA BB", "R.X", "5",
                                      "selected_runScript", "", "go.script"};
        QCOMPARE(data.value(key).toStringList(), expected);
    }

    void acceptedActionsRun()
    {
        QObject *spin = m_form->find(QStringLiteral("S1"));
        CommandHost host;
        // Read without a window: the action of the description reaches no one.
        ActionRunner::run(spin, QStringLiteral("0"), QStringLiteral("changed"));
        QVERIFY(host.received.isEmpty());

        m_table->setSlotHost(&host);
        m_table->fill(spin);
        ActionDelegate delegate(m_table);
        QWidget *editor = delegate.createEditor(m_view->viewport(), QStyleOptionViewItem(),
                                                m_table->model()->index(m_table->rowOf(QStringLiteral("action")), 1));
        auto *dialog = qobject_cast<EditActionsDialog *>(editor);
        QVERIFY(dialog);
        QCOMPARE(dialog->model()->rowCount(), 1);
        dialog->insertLine();
        dialog->model()->item(1, 3)->setText(QStringLiteral("K1=4"));
        dialog->accept();
        ActionRunner::run(spin, QStringLiteral("0"), QStringLiteral("changed"));
        QCOMPARE(host.received, (QStringList{"K1=1", "K1=4"}));
        delete editor;
    }

    void itemsDialog()
    {
        auto *combo = qobject_cast<ComboBox *>(m_form->find(QStringLiteral("CB")));
        QVERIFY(combo);
        {
            EditItemsDialog dialog(combo);
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Items of the Combobox CB"));
            QCOMPARE(headers(dialog.model()), (QStringList{"Text", "Value", "Override", "Hide"}));
            QCOMPARE(column(dialog.model(), 0), (QStringList{"a", "b"}));
            QCOMPARE(column(dialog.model(), 1), (QStringList{"1", "2"}));
            dialog.model()->item(0, 0)->setText(QStringLiteral("changed"));
            dialog.reject();
        }
        QCOMPARE(combo->itemText(0), QStringLiteral("a"));
        const QStringList before = static_cast<QObject *>(combo)->property("itemText").toStringList();
        {
            EditItemsDialog dialog(combo);
            dialog.accept();
        }
        QCOMPARE(static_cast<QObject *>(combo)->property("itemText").toStringList(), before);
        QCOMPARE(combo->count(), 2);
        {
            EditItemsDialog dialog(combo);
            dialog.model()->item(1, 0)->setText(QStringLiteral("bee"));
            dialog.view()->setCurrentIndex(dialog.model()->index(1, 0));
            dialog.insertLine();
            dialog.model()->item(2, 0)->setText(QStringLiteral("c"));
            dialog.model()->item(2, 1)->setText(QStringLiteral("0x7"));
            dialog.accept();
        }
        QCOMPARE(combo->count(), 3);
        QCOMPARE(combo->itemText(1), QStringLiteral("bee"));
        QCOMPARE(combo->itemText(2), QStringLiteral("c"));
        QCOMPARE(combo->itemData(2).toString(), NumberFormat::normaliseNumber(QStringLiteral("0x7")));
        const QStringList after = static_cast<QObject *>(combo)->property("itemText").toStringList();
        QCOMPARE(after.size(), 3);
        QCOMPARE(after.at(0), before.at(0));
        QVERIFY(after.at(1).endsWith(QStringLiteral("#$#bee")));
        QVERIFY(after.at(2).endsWith(QStringLiteral("#$#c")));
    }

    void itemsDialogOnEmptyBox()
    {
        auto *combo = qobject_cast<ComboBox *>(m_form->find(QStringLiteral("EMPTY")));
        QVERIFY(combo);
        EditItemsDialog dialog(combo);
        QCOMPARE(dialog.model()->rowCount(), 0);
        dialog.deleteLine();
        QCOMPARE(dialog.model()->rowCount(), 0);
        dialog.accept();
        QCOMPARE(combo->count(), 0);
        QVERIFY(static_cast<QObject *>(combo)->property("itemText").toStringList().isEmpty());
    }

    void columnsDialog()
    {
        auto *table = qobject_cast<Table *>(m_form->find(QStringLiteral("TA")));
        QVERIFY(table);
        {
            EditColumnsDialog dialog(table);
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Columns within the table element"));
            QCOMPARE(headers(dialog.model()),
                     (QStringList{"Index", "Label", "Type", "Tooltip", "Width", "Format", "Default", "Source"}));
            QCOMPARE(column(dialog.model(), 1), (QStringList{"Reg", "Val"}));
            QCOMPARE(column(dialog.model(), 2), (QStringList{"regname", "value"}));
            QCOMPARE(column(dialog.model(), 4), (QStringList{"100", "80"}));
            QVERIFY(qobject_cast<ComboBoxActionDelegate *>(dialog.view()->itemDelegateForColumn(2)));
            dialog.model()->item(0, 1)->setText(QStringLiteral("nope"));
            dialog.reject();
        }
        QCOMPARE(table->column(0).label, QStringLiteral("Reg"));
        {
            EditColumnsDialog dialog(table);
            dialog.view()->setCurrentIndex(dialog.model()->index(0, 0));
            dialog.deleteLine();
            dialog.insertLine();
            dialog.model()->item(1, 1)->setText(QStringLiteral("Note"));
            dialog.model()->item(1, 2)->setText(QStringLiteral("comment"));
            dialog.model()->item(0, 1)->setText(QStringLiteral("Value"));
            dialog.accept();
        }
        QCOMPARE(table->columnCount(), 2);
        QCOMPARE(table->column(0).label, QStringLiteral("Value"));
        QCOMPARE(table->column(0).kind, int(Table::Value));
        QCOMPARE(table->column(1).kind, int(Table::Comment));
        QCOMPARE(table->columnOf(Table::RegName), -1);
        QCOMPARE(table->tableModel()->columnCount(), 2);
        QCOMPARE(table->tableModel()->horizontalHeaderItem(1)->text(), QStringLiteral("Note"));
    }

    void curvesDialog()
    {
        auto *plot = qobject_cast<MyQwtPlot *>(m_form->find(QStringLiteral("P1")));
        QVERIFY(plot);
        DocumentTables &tables = m_form->document().tables();
        {
            EditCurvesDialog dialog(plot);
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Curves within the plot element"));
            QCOMPARE(headers(dialog.model()), (QStringList{"Index", "Label", "Color", "Data"}));
            QCOMPARE(column(dialog.model(), 1), QStringList{"c1"});
            QCOMPARE(column(dialog.model(), 2), QStringList{"255;0;0"});
            QCOMPARE(column(dialog.model(), 3), QStringList{"S1"});
            QVERIFY(qobject_cast<ColorDelegate *>(dialog.view()->itemDelegateForColumn(2)));
            dialog.model()->item(0, 1)->setText(QStringLiteral("gone"));
            dialog.reject();
        }
        QCOMPARE(plot->curveCount(), 1);
        QCOMPARE(plot->curve(0)->title().text(), QStringLiteral("c1"));
        {
            EditCurvesDialog dialog(plot);
            dialog.model()->item(0, 3)->setText(QStringLiteral("K1"));
            dialog.insertLine();
            dialog.model()->item(1, 1)->setText(QStringLiteral("second"));
            dialog.model()->item(1, 2)->setText(QStringLiteral("0;0;200"));
            dialog.model()->item(1, 3)->setText(QStringLiteral("T1"));
            dialog.accept();
        }
        QCOMPARE(plot->curveCount(), 2);
        QCOMPARE(plot->curve(1)->title().text(), QStringLiteral("second"));
        QCOMPARE(plot->curve(1)->pen().color(), QColor(0, 0, 200));
        QCOMPARE(plot->property("data").toStringList(), (QStringList{"K1", "T1"}));
        QVERIFY(plot->legend());
        QVERIFY(tables.curveDependents.value(QStringLiteral("K1")).contains(plot));
        QVERIFY(tables.curveDependents.value(QStringLiteral("T1")).contains(plot));
        QVERIFY(!tables.curveDependents.value(QStringLiteral("S1")).contains(plot));
        // The new curves are fed.
        QCOMPARE(plot->feed(QStringLiteral("T1"), 3.0), 1);
    }

    void headerDialog()
    {
        DocumentState state;
        state.versionLabel = QStringLiteral("1.2.3");
        state.svdName = QStringLiteral("d.svd");
        state.fwVersionMin = QStringLiteral("2.0.0");
        {
            XMLPropertiesDialog dialog(state);
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Edit XML properties"));
            QVERIFY(dialog.rowCheck(QStringLiteral("version"))->isChecked());
            QVERIFY(!dialog.rowCheck(QStringLiteral("migration"))->isChecked());
            QVERIFY(!dialog.editor(QStringLiteral("migration"))->isEnabled());
            QCOMPARE(dialog.editor(QStringLiteral("version"))->text(), QStringLiteral("1.2.3"));
            dialog.editor(QStringLiteral("version"))->setText(QStringLiteral("9.9.9"));
            dialog.reject();
        }
        QCOMPARE(state.versionLabel, QStringLiteral("1.2.3"));

        XMLPropertiesDialog dialog(state);
        const QStringList labels = {"Version: ",       "Min-Version: ",  "Max-Version: ", "SVD-File: ", "Migration-File: ",
                                    "Disclaimer-File: ", "IO-Port: ", "Parameters: ",  "Forum-URL: "};
        QStringList shown;
        for (QLabel *label : dialog.findChildren<QLabel *>())
            shown << label->text();
        for (const QString &label : labels)
            QVERIFY2(shown.contains(label), qPrintable(label));
        dialog.editor(QStringLiteral("version"))->setText(QStringLiteral("2.0.1"));
        dialog.rowCheck(QStringLiteral("svd"))->setChecked(false);
        dialog.rowCheck(QStringLiteral("migration"))->setChecked(true);
        QVERIFY(dialog.editor(QStringLiteral("migration"))->isEnabled());
        dialog.editor(QStringLiteral("migration"))->setText(QStringLiteral("mig.xml"));
        dialog.rowCheck(QStringLiteral("io"))->setChecked(true);
        dialog.editor(QStringLiteral("ioPort"))->setText(QStringLiteral("COM3"));
        dialog.editor(QStringLiteral("ioSettings"))->setText(QStringLiteral("115200,8,N,1"));
        dialog.rowCheck(QStringLiteral("loadSave"))->setChecked(true);
        dialog.findChild<QCheckBox *>(QStringLiteral("loadSave"))->setChecked(false);
        dialog.rowCheck(QStringLiteral("forum"))->setChecked(true);
        dialog.editor(QStringLiteral("forumUrl"))->setText(QStringLiteral("https://forum.example"));
        dialog.rowCheck(QStringLiteral("disclaimer"))->setChecked(true);
        dialog.editor(QStringLiteral("disclaimer"))->setText(QStringLiteral("legal.txt"));
        dialog.accept();

        QCOMPARE(state.versionLabel, QStringLiteral("2.0.1"));
        QCOMPARE(state.fwVersionMin, QStringLiteral("2.0.0"));
        QVERIFY(state.svdName.isEmpty());
        QCOMPARE(state.migrationFile, QStringLiteral("mig.xml"));
        QCOMPARE(state.ioPort, QStringLiteral("COM3"));
        QCOMPARE(state.ioSettings, QStringLiteral("115200,8,N,1"));
        QVERIFY(state.loadSaveAllowedSet);
        QVERIFY(!state.loadSaveAllowed);
        QCOMPARE(state.forumUrl, QStringLiteral("https://forum.example"));
        QVERIFY(state.disclaimerSet);
        QCOMPARE(state.disclaimerName, QStringLiteral("legal.txt"));
    }

private:
    QWidget *widget(const char *name) const { return qobject_cast<QWidget *>(m_form->find(QLatin1String(name))); }
    QModelIndex valueIndex(const char *key) const
    {
        const int row = m_table->rowOf(QLatin1String(key));
        return row < 0 ? QModelIndex() : m_table->model()->index(row, 1);
    }

    EditorForm *m_form = nullptr;
    QTableView *m_view = nullptr;
    AttributeTable *m_table = nullptr;
};

QTEST_MAIN(TestPropertyDialogs)
#include "tst_propertydialogs.moc"
