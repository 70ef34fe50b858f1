#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "automation/AddScriptCommandDialog.h"
#include "automation/RecordingControl.h"
#include "automation/ScriptRecorder.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DoubleSpinBox.h"
#include "elements/HexSpinBox.h"
#include "elements/Knob.h"
#include "elements/LineEdit.h"
#include "elements/RecordingHook.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/TextEdit.h"
#include "elements/ToggleButton.h"
#include "shell/MainWindow.h"
#include "views/Table.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QWheelEvent>
#include <functional>

static const QByteArray kFields = "<field><name>MODE</name><lsb>0</lsb><msb>1</msb></field>\n"
                                  "<field><name>EN</name><lsb>4</lsb><msb>4</msb></field>\n"
                                  "<field><name>INV</name><lsb>5</lsb><msb>5</msb></field>\n"
                                  "<field><name>CNT</name><lsb>8</lsb><msb>15</msb></field>\n"
                                  "<field><name>HX</name><lsb>16</lsb><msb>23</msb></field>\n"
                                  "<field><name>SEL</name><lsb>24</lsb><msb>25</msb></field>\n"
                                  "<field><name>SL</name><lsb>26</lsb><msb>28</msb></field>\n";

static const QByteArray kForm = R"(
<verticalcontainer label="Form">
 <header file="rec.h">
  <combo define="P.R.MODE"><item label="A" value="0"/><item label="B" value="1"/><item label="C" value="2"/></combo>
  <checkbox define="P.R.EN" label="Enable"/>
  <checkbox define="P.R.INV" label="Inverted" role="inverted"/>
  <spinbox define="P.R.CNT" range="0;255" default="5"/>
  <hexspinbox define="P.R.HX" range="0;0xFF"/>
  <radio define="P.R.SEL">
   <horizontalcontainer>
    <radiobutton label="X"/><radiobutton label="Y"/><radiobutton label="Z"/>
   </horizontalcontainer>
  </radio>
  <slider define="P.R.SL"/>
 </header>
 <edit define="NAME" svd="0"/>
 <edit define="OUT" svd="0"/>
 <doublespinbox define="DBL" svd="0" range="0;10" default="1.25"/>
 <knob define="KNOB" svd="0" range="0;10" integer="1" default="3"/>
 <editbox define="NOTE" svd="0"/>
 <togglebutton define="TB" svd="0" label="Toggle"/>
 <button define="GO" label="Go" setDef="OUT=clicked"/>
 <!-- Playback reads the recorded view column as a column kind: the two
      agree when the columns stand in kind order. Enter moves on to the next
      cell, in the same row while one follows. A recording holds the number
      as typed, normalised, and playback writes it as it stands: the value
      column shows numbers without a format so that both show the same. -->
 <table define="SEQ" svd="0" numrows="3">
  <column label="Register" type="regname"/>
  <column label="Address" type="address" format="0x%08X"/>
  <column label="Func" type="func" format="%d"/>
  <column label="Value" type="value"/>
  <column label="Delay" type="delay" format="%d"/>
 </table>
</verticalcontainer>
)";

// Recording a script from the user's hand on a real form: each element's
// own line, only for changes with the keyboard focus, the comment of the
// dialog, the frame of the file, the failure paths, and the measure of it
// all: a recorded session played back gives the same form and headers.
class TestRecording : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_form.write(miniSvd(kFields), kForm));
    }

    void init()
    {
        QVERIFY(m_form.open(true));
        QApplication::setActiveWindow(m_form.window);
        QVERIFY(QTest::qWaitForWindowActive(m_form.window));
        m_control = m_form.window->findChild<RecordingControl *>();
        QVERIFY(m_control);
        m_script = m_form.dir.filePath(QStringLiteral("rec-%1.script").arg(++m_count));
    }

    void cleanup()
    {
        m_form.close();
        QVERIFY(!RecordingHook::recording());
    }

    void eachElementWritesItsLine_data()
    {
        QTest::addColumn<QString>("element");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("combo by key") << "P.R.MODE" << QStringList{"Set(P.R.MODE, 1)"};
        QTest::newRow("check box by mouse") << "P.R.EN" << QStringList{"Set(P.R.EN, 1)"};
        // The state as shown, which is what SET takes back.
        // Shown checked (default 0, inverted); the click unchecks it.
        QTest::newRow("inverted check box") << "P.R.INV" << QStringList{"Set(P.R.INV, 0)"};
        QTest::newRow("spin box by key") << "P.R.CNT" << QStringList{"Set(P.R.CNT, 6)"};
        QTest::newRow("hex spin box in decimal") << "P.R.HX" << QStringList{"Set(P.R.HX, 1)", "Set(P.R.HX, 26)"};
        QTest::newRow("radio group index") << "P.R.SEL" << QStringList{"Set(P.R.SEL, 2)"};
        QTest::newRow("slider by key") << "P.R.SL" << QStringList{"Set(P.R.SL, 1)"};
        QTest::newRow("line edit per keystroke") << "NAME" << QStringList{"Set(NAME, a)", "Set(NAME, ab)"};
        QTest::newRow("double spin box") << "DBL" << QStringList{"Set(DBL, 2.25)"};
        QTest::newRow("knob by key") << "KNOB" << QStringList{"Set(KNOB, 4)"};
        QTest::newRow("text box") << "NOTE" << QStringList{"Set(NOTE, h)"};
        QTest::newRow("toggle button") << "TB" << QStringList{"Clicked(TB)"};
        QTest::newRow("push button") << "GO" << QStringList{"Clicked(GO)"};
    }

    void eachElementWritesItsLine()
    {
        QFETCH(QString, element);
        QFETCH(QStringList, lines);
        QVERIFY(m_control->start(m_script));
        m_form.sink->clear();
        QVERIFY(userChange(element));
        m_control->startStop();
        QCOMPARE(body(), lines);
        // The console shows the script grow, line by line.
        for (const QString &line : lines)
            QVERIFY2(m_form.sink->console.contains(line + QStringLiteral("<br>")), qPrintable(m_form.sink->console.join('\n')));
    }

    void fileFrameAndConsole()
    {
        QVERIFY(m_control->start(m_script));
        QCOMPARE(m_form.sink->console.last(), QStringLiteral("Starting macro recording<br>"));
        QVERIFY(userChange(QStringLiteral("P.R.EN")));
        m_control->startStop();
        QCOMPARE(m_form.sink->console.last(), QStringLiteral("Macro recording stopped<br>"));
        const QStringList all = readTextFile(m_script).split('\n');
        QCOMPARE(all, (QStringList{QStringLiteral("//Macro recorded with XML ") + m_form.path, "SetWaitTime(10)",
                                   "Set(P.R.EN, 1)", "//Exit(2)", ""}));
        QVERIFY(!m_control->recorder().isRecording());
    }

    void programChangesAndUnfocusedWheelRecordNothing()
    {
        QVERIFY(m_control->start(m_script));
        // A change by the program (a lock, a script, setDef) and a wheel
        // over a spin box that has no focus.
        m_form.element<SpinBox>(QStringLiteral("P.R.CNT"))->setValue(QStringLiteral("9"), 0);
        m_form.window->setDef(QStringLiteral("P.R.MODE=2"));
        m_form.window->execScriptLine(QStringLiteral("Set(P.R.EN, 1)"), 0);
        auto *spin = m_form.element<SpinBox>(QStringLiteral("P.R.HX"));
        m_form.element<LineEdit>(QStringLiteral("NAME"))->setFocus();
        QVERIFY(!spin->hasFocus());
        QWheelEvent wheel(QPointF(5, 5), spin->mapToGlobal(QPoint(5, 5)), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(spin, &wheel);
        m_control->startStop();
        QCOMPARE(body(), QStringList());
    }

    void commentStandsBehindElementLines()
    {
        QVERIFY(m_control->start(m_script));
        m_control->addCommand();
        AddScriptCommandDialog *dialog = m_control->dialog();
        QVERIFY(dialog && dialog->isVisible());
        dialog->commentEdit()->setText(QStringLiteral("check the mode"));
        dialog->radio(AddScriptCommandDialog::Clear)->setChecked(true);
        dialog->insertCommand();
        m_form.sink->clear();
        QVERIFY(userChange(QStringLiteral("P.R.MODE")));
        QVERIFY(m_form.sink->console.contains(QStringLiteral("Set(P.R.MODE, 1)//check the mode<br>")));
        // Cleared comment: the next line goes bare.
        dialog->commentEdit()->clear();
        dialog->radio(AddScriptCommandDialog::Comment)->setChecked(true);
        dialog->edit(AddScriptCommandDialog::Comment)->setText(QStringLiteral("next"));
        dialog->insertCommand();
        QVERIFY(userChange(QStringLiteral("P.R.EN")));
        m_control->startStop();
        QVERIFY(!dialog->isVisible());
        QCOMPARE(body(), (QStringList{"Clear()", "Set(P.R.MODE, 1)//check the mode", "//next", "Set(P.R.EN, 1)"}));
    }

    void dialogInsertsEachCommand_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("console");
        QTest::newRow("message box") << int(AddScriptCommandDialog::MessageBox) << "Plug the board in" << "MessageBox(Plug the board in)"
                                     << "MessageBox(Plug the board in)<br>";
        QTest::newRow("comment") << int(AddScriptCommandDialog::Comment) << "a <b> note" << "//a <b> note"
                                 << "//a &lt;b&gt; note<br>";
        QTest::newRow("wait time") << int(AddScriptCommandDialog::SetWaitTime) << "250" << "SetWaitTime(250)"
                                   << "SetWaitTime(250)<br>";
        QTest::newRow("wait") << int(AddScriptCommandDialog::Wait) << "1000" << "Wait(1000)" << "Wait(1000)<br>";
        QTest::newRow("single step") << int(AddScriptCommandDialog::SetSingleStep) << "1" << "SetSingleStep(1)"
                                     << "SetSingleStep(1)<br>";
        QTest::newRow("clear") << int(AddScriptCommandDialog::Clear) << "" << "Clear()" << "Clear()<br>";
    }

    void dialogInsertsEachCommand()
    {
        QFETCH(int, command);
        QFETCH(QString, text);
        QFETCH(QString, line);
        QFETCH(QString, console);
        QVERIFY(m_control->start(m_script));
        m_control->addCommand();
        AddScriptCommandDialog *dialog = m_control->dialog();
        const auto c = AddScriptCommandDialog::Command(command);
        if (QLineEdit *edit = dialog->edit(c)) {
            // Giving the field the cursor picks its radio button.
            dialog->radio(c == AddScriptCommandDialog::MessageBox ? AddScriptCommandDialog::Clear
                                                                   : AddScriptCommandDialog::MessageBox)
                ->setChecked(true);
            QApplication::setActiveWindow(dialog);
            QVERIFY(QTest::qWaitForWindowActive(dialog));
            edit->setFocus();
            QTRY_VERIFY(dialog->radio(c)->isChecked());
            QTest::keyClicks(edit, text);
        } else {
            dialog->radio(c)->setChecked(true);
        }
        m_form.sink->clear();
        QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("insert")), Qt::LeftButton);
        QCOMPARE(m_form.sink->console, QStringList{console});
        // Insert leaves the dialog open for more.
        QVERIFY(dialog->isVisible());
        m_control->startStop();
        QCOMPARE(body(), QStringList{line});
    }

    void unwritableFolderKeepsRecordingWithoutStream()
    {
        QAction record(QStringLiteral("&Record script..."), nullptr);
        QAction add(QStringLiteral("&Add script command..."), nullptr);
        RecordingSink sink;
        RecordingControl control(m_form.window, &record, &add, [] { return QString(); }, [] { return QStringLiteral("x.xml"); });
        QVERIFY(!add.isEnabled());
        const QString target = m_form.dir.filePath(QStringLiteral("no/such/folder/r.script"));
        QVERIFY(!control.start(target));
        QVERIFY(sink.contains(QStringLiteral("Cannot open ")));
        QVERIFY(control.recorder().isRecording());
        QVERIFY(!control.recorder().hasStream());
        QCOMPARE(record.text(), QStringLiteral("Stop recording"));
        QVERIFY(add.isEnabled());
        // Nothing is written and nothing breaks.
        QVERIFY(!RecordingHook::recording());
        QVERIFY(userChange(QStringLiteral("P.R.EN")));
        control.startStop();
        QVERIFY(!control.recorder().isRecording());
        QCOMPARE(record.text(), QStringLiteral("Record script..."));
        QVERIFY(!add.isEnabled());
        QVERIFY(!QFile::exists(target));
    }

    void stopWithoutStartAndCancelledDialog()
    {
        QAction record(QStringLiteral("&Record script..."), nullptr);
        QAction add(QStringLiteral("&Add script command..."), nullptr);
        RecordingSink sink;
        RecordingControl control(m_form.window, &record, &add, [] { return QString(); }, [] { return QString(); });
        control.recorder().stop();
        QVERIFY(sink.contains(QStringLiteral("No recording is running.")));
        // Quiet mode: the save dialog counts as cancelled.
        control.startStop();
        QVERIFY(!control.recorder().isRecording());
        QCOMPARE(record.text(), QStringLiteral("&Record script..."));
        control.addCommand();
        QVERIFY(!control.dialog());
        QVERIFY(sink.contains(QStringLiteral("only be added while recording")));
        // The window's slots forward to the same place.
        m_form.window->startStopRecording();
        QVERIFY(!m_control->recorder().isRecording());
    }

    void publicEntryForOtherElements()
    {
        // Without a recording nothing is written anywhere.
        RecordingHook::record(QStringLiteral("SetTableValue(T, 0, 0, 1)"));
        QVERIFY(m_control->start(m_script));
        m_control->recorder().setComment(QStringLiteral("cell"));
        RecordingHook::record(QStringLiteral("SetTableValue(T, 1, 2, 0x10)"));
        // With a focus owner, only while it has the focus.
        auto *edit = m_form.element<LineEdit>(QStringLiteral("NAME"));
        auto *spin = m_form.element<SpinBox>(QStringLiteral("P.R.CNT"));
        edit->setFocus();
        QTRY_VERIFY(edit->hasFocus());
        RecordingHook::record(QStringLiteral("SetRegViewValue(V, 5)"), spin);
        RecordingHook::record(QStringLiteral("SetRegViewValue(V, 6)"), edit);
        m_control->startStop();
        QCOMPARE(body(), (QStringList{"SetTableValue(T, 1, 2, 0x10)//cell", "SetRegViewValue(V, 6)//cell"}));
    }

    void closingTheWindowEndsTheFile()
    {
        QVERIFY(m_control->start(m_script));
        QVERIFY(userChange(QStringLiteral("P.R.EN")));
        m_form.close();
        QVERIFY(!RecordingHook::recording());
        QCOMPARE(body(), QStringList{"Set(P.R.EN, 1)"});
        QVERIFY(readTextFile(m_script).endsWith(QLatin1String("//Exit(2)\n")));
    }

    void recordedSessionPlaysBack()
    {
        QVERIFY(m_control->start(m_script));
        const QStringList session{"P.R.MODE", "P.R.EN", "P.R.INV", "P.R.CNT", "P.R.HX", "P.R.SEL", "P.R.SL",
                                  "NAME", "DBL", "KNOB", "TB", "GO", "SEQ"};
        for (const QString &element : session)
            QVERIFY2(userChange(element), qPrintable(element));
        m_control->startStop();

        const QString hand = m_form.dir.filePath(QStringLiteral("hand"));
        QVERIFY(QDir().mkpath(hand));
        m_form.window->execScriptLine(QStringLiteral("DumpAll(%1/dump.txt)").arg(hand), 0);
        m_form.window->setExportFolder(hand);
        m_form.window->exportHeaderFiles(true);
        const QString handDump = readTextFile(hand + QStringLiteral("/dump.txt"));
        const QString handHeader = readTextFile(hand + QStringLiteral("/rec.h"));
        QVERIFY(handDump.contains(QLatin1String("OUT(LineEdit) == clicked")));
        QVERIFY2(readTextFile(m_script).contains(QLatin1String("SetTableValue(SEQ, 1, 3, 42)")), qPrintable(readTextFile(m_script)));
        QVERIFY(handDump.contains(QLatin1String("SEQ(Table) == 42")));
        QVERIFY(!handHeader.isEmpty());

        // Reset: the form is back at its defaults, which differ.
        m_form.window->resetGUI();
        m_form.window->execScriptLine(QStringLiteral("DumpAll(%1/reset.txt)").arg(hand), 0);
        QVERIFY(readTextFile(hand + QStringLiteral("/reset.txt")) != handDump);

        // Played back in this window after the reset.
        m_form.window->runBatchfile(m_script);
        m_form.window->execScriptLine(QStringLiteral("DumpAll(%1/again.txt)").arg(hand), 0);
        QCOMPARE(readTextFile(hand + QStringLiteral("/again.txt")), handDump);

        // Played back by a fresh program with -b, with the lines a user adds
        // to make the recording a regression test.
        const QString replay = m_form.dir.filePath(QStringLiteral("replay"));
        QVERIFY(QDir().mkpath(replay));
        QString script = readTextFile(m_script);
        script += QStringLiteral("SetFileName(%1/cfg.qlnp)\nExport()\nDumpAll(%1/dump.txt)\nExit(2)\n").arg(replay);
        const QString test = m_form.dir.filePath(QStringLiteral("regression.script"));
        QVERIFY(writeTextFile(test, script.toUtf8()));
        const QuillonRun run = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-b") + test, m_form.path}, 60000);
        QVERIFY2(run.finished, "the replay hung");
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(readTextFile(replay + QStringLiteral("/dump.txt")), handDump);
        // The program beside its disclaimer file puts that text first.
        const QString replayHeader = readTextFile(replay + QStringLiteral("/rec.h"));
        QVERIFY(handHeader.startsWith(QLatin1String("#ifndef REC_H")));
        QCOMPARE(replayHeader.mid(replayHeader.indexOf(QLatin1String("#ifndef REC_H"))), handHeader);
    }

private:
    // The recorded lines between the header and the footer.
    QStringList body() const
    {
        QStringList lines = readTextFile(m_script).split('\n', Qt::SkipEmptyParts);
        if (lines.size() < 3)
            return QStringList{QStringLiteral("<no frame>")};
        return lines.mid(2, lines.size() - 3);
    }

    // One change by the user's hand, with real mouse and key input.
    bool userChange(const QString &define)
    {
        // The user works in the form (the dialog may have been in front).
        QApplication::setActiveWindow(m_form.window);
        if (!QTest::qWaitForWindowActive(m_form.window))
            return false;
        auto keyTo = [](QWidget *w, Qt::Key key) {
            w->setFocus();
            QTest::keyClick(w, key);
        };
        auto clickLeft = [](QWidget *w) { QTest::mouseClick(w, Qt::LeftButton, Qt::NoModifier, QPoint(6, w->height() / 2)); };
        if (define == QLatin1String("P.R.MODE"))
            keyTo(m_form.element<ComboBox>(define), Qt::Key_Down);
        else if (define == QLatin1String("P.R.EN") || define == QLatin1String("P.R.INV"))
            clickLeft(m_form.element<CheckBox>(define));
        else if (define == QLatin1String("P.R.CNT"))
            keyTo(m_form.element<SpinBox>(define), Qt::Key_Up);
        else if (define == QLatin1String("P.R.HX")) {
            auto *hex = m_form.element<HexSpinBox>(define);
            hex->setFocus();
            hex->selectAll();
            QTest::keyClicks(hex, QStringLiteral("1A"));
        } else if (define == QLatin1String("P.R.SEL")) {
            auto *group = m_form.element<ButtonGroup>(define);
            if (group->buttons().size() < 3)
                return false;
            clickLeft(group->buttons().at(2));
        } else if (define == QLatin1String("P.R.SL"))
            keyTo(m_form.element<Slider>(define), Qt::Key_Right);
        else if (define == QLatin1String("NAME")) {
            auto *edit = m_form.element<LineEdit>(define);
            edit->setFocus();
            QTest::keyClicks(edit, QStringLiteral("ab"));
        } else if (define == QLatin1String("DBL"))
            keyTo(m_form.element<DoubleSpinBox>(define), Qt::Key_Up);
        else if (define == QLatin1String("KNOB"))
            keyTo(m_form.element<Knob>(define), Qt::Key_Up);
        else if (define == QLatin1String("NOTE")) {
            auto *edit = m_form.element<TextEdit>(define);
            edit->setFocus();
            QTest::keyClicks(edit->viewport(), QStringLiteral("h"));
        } else if (define == QLatin1String("TB"))
            clickLeft(m_form.element<ToggleButton>(define));
        else if (define == QLatin1String("GO")) {
            auto *button = m_form.window->findChild<QPushButton *>(define);
            if (!button)
                return false;
            clickLeft(button);
        } else if (define == QLatin1String("SEQ")) {
            // A table cell typed into and confirmed with Enter.
            auto *table = m_form.element<Table>(define);
            const QModelIndex cell = table->model()->index(1, 3);
            table->setFocus();
            table->setCurrentIndex(cell);
            table->edit(cell);
            QLineEdit *editor = nullptr;
            for (QLineEdit *e : table->findChildren<QLineEdit *>()) {
                if (e->isVisible() && e->geometry().intersects(table->visualRect(cell)))
                    editor = e;
            }
            if (!editor)
                return false;
            editor->selectAll();
            QTest::keyClicks(editor, QStringLiteral("0x2A"));
            QTest::keyClick(editor, Qt::Key_Return);
            // The delegate closes its editor once the key press is through.
            if (!QTest::qWaitFor([&] { return cell.data().toString() == QLatin1String("42"); }))
                return false;
        } else
            return false;
        QCoreApplication::processEvents();
        return true;
    }

    FormWindow m_form;
    RecordingControl *m_control = nullptr;
    QString m_script;
    int m_count = 0;
};

QTEST_MAIN(TestRecording)
#include "tst_recording.moc"
