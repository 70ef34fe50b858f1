#include "automation/ScriptCommands.h"
#include "device/JLinkDownload.h"

#include "automation/ScriptHost.h"
#include "automation/ScriptInterpreter.h"
#include "automation/TableCommands.h"
#include "elements/ActiveElement.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "elements/DefineAssignment.h"
#include "tooling/DefineValidator.h"
#include "tooling/SchemaCheck.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "shell/AppVersion.h"
#include "shell/Dialogs.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTextEdit>
#include <QTime>
#include <algorithm>
#include <cmath>

namespace {

enum Code {
    Version = 1, DumpVariables, DumpObjects, DumpAll, Dump, LogSetDefs, SetTrigger, SetTriggerLock,
    GenerateTestInput, SetOutputOptions, SetSingleStep, SetTavLogging, SetTavCheck, SetWaitTime, Load, Save,
    SaveSorted, SetFileName, SetDefinePrefix = 20, SaveMcsData, SelectData, Export, Sign, Validate, CheckXsd,
    LoopStart, LoopStop, DirLoopStart, DirLoopStop, ChDir, SetWorkingDir, SetScriptsDir, Wait, MessageBox,
    Raise, SetFullScreen, SetTab, Assert, AssertTableValue, AssertLock, AssertEnabled, End, Exit,
    BringToFront, BringToBack, Clear, ShowConsole, ShowPinMapper, ResetGui, GenerateXmlFromSvd, SetDef, Lock,
    Unlock, SetChecked, SetValue, Clicked, SetItem, SetRbItem, SetText, Set, LoadTable, LoadAtTable, SaveTable,
    SetTableLine, SetTableValue, SetRegViewValue, SendTask, WriteBsl, ReadBsl, OpenFileDialog, Download
};

// SAVE and SETOUTPUTOPTIONS check their parameter themselves: a missing one
// does not always stop the script.
const ScriptCommands::Command kCommands[] = {
    {Version, "VERSION", 0}, {DumpVariables, "DUMPVARIABLES", 0}, {DumpObjects, "DUMPOBJECTS", 0},
    {DumpAll, "DUMPALL", 1}, {Dump, "DUMP", 2}, {LogSetDefs, "LOGSETDEFS", 1}, {SetTrigger, "SETTRIGGER", 0},
    {SetTriggerLock, "SETTRIGGERLOCK", 0}, {GenerateTestInput, "GENERATETESTINPUT", 1},
    {SetOutputOptions, "SETOUTPUTOPTIONS", 0}, {SetSingleStep, "SETSINGLESTEP", 1},
    {SetTavLogging, "SETTAVLOGGING", 3}, {SetTavCheck, "SETTAVCHECK", 2}, {SetWaitTime, "SETWAITTIME", 1},
    {Load, "LOAD", 1}, {Save, "SAVE", 0}, {SaveSorted, "SAVESORTED", 0}, {SetFileName, "SETFILENAME", 1},
    {SetDefinePrefix, "SETDEFINEPREFIX", 2}, {SaveMcsData, "SAVEMCSDATA", 0}, {SelectData, "SELECTDATA", 1},
    {Export, "EXPORT", 0}, {Sign, "SIGN", 1}, {Validate, "VALIDATE", 1}, {CheckXsd, "CHECKXSD", 1},
    {LoopStart, "LOOPSTART", 4}, {LoopStop, "LOOPSTOP", 0}, {DirLoopStart, "DIRLOOPSTART", 1},
    {DirLoopStop, "DIRLOOPSTOP", 0}, {ChDir, "CHDIR", 1}, {SetWorkingDir, "SETWORKINGDIR", 1},
    {SetScriptsDir, "SETSCRIPTSDIR", 1}, {Wait, "WAIT", 1}, {MessageBox, "MESSAGEBOX", 1}, {Raise, "RAISE", 1},
    {SetFullScreen, "SETFULLSCREEN", 1}, {SetTab, "SETTAB", 2}, {Assert, "ASSERT", 3},
    {AssertTableValue, "ASSERTTABLEVALUE", 4}, {AssertLock, "ASSERTLOCK", 2},
    {AssertEnabled, "ASSERTENABLED", 2}, {End, "END", 0}, {Exit, "EXIT", 1}, {BringToFront, "BRINGTOFRONT", 0},
    {BringToBack, "BRINGTOBACK", 0}, {Clear, "CLEAR", 0}, {ShowConsole, "SHOWCONSOLE", 1},
    {ShowPinMapper, "SHOWPINMAPPER", 0}, {ResetGui, "RESETGUI", 0},
    {GenerateXmlFromSvd, "GENERATEXMLFROMSVD", 2}, {SetDef, "SETDEF", 1}, {Lock, "LOCK", 1},
    {Unlock, "UNLOCK", 1}, {SetChecked, "SETCHECKED", 2}, {SetValue, "SETVALUE", 2}, {Clicked, "CLICKED", 1},
    {SetItem, "SETITEM", 2}, {SetRbItem, "SETRBITEM", 2}, {SetText, "SETTEXT", 2}, {Set, "SET", 2},
    {LoadTable, "LOADTABLE", 2}, {LoadAtTable, "LOADATTABLE", 2}, {SaveTable, "SAVETABLE", 2},
    {SetTableLine, "SETTABLELINE", 2}, {SetTableValue, "SETTABLEVALUE", 4},
    {SetRegViewValue, "SETREGVIEWVALUE", 2}, {SendTask, "SENDTASK", 5}, {WriteBsl, "WRITEBSL", 1},
    {ReadBsl, "READBSL", 1}, {OpenFileDialog, "OPENFILEDIALOG", 5}, {Download, "DOWNLOAD", 1},
};

const QHash<QString, const ScriptCommands::Command *> &commandIndex()
{
    static const QHash<QString, const ScriptCommands::Command *> index = [] {
        QHash<QString, const ScriptCommands::Command *> h;
        for (const auto &c : kCommands)
            h.insert(QLatin1String(c.keyword), &c);
        return h;
    }();
    return index;
}

bool isReservedRecord(const QString &name)
{
    return name == QLatin1String("$ADDRESS$") || name == QLatin1String("$FUNC$") || name == QLatin1String("$VALUE$")
        || name == QLatin1String("dummy_define");
}

} // namespace

const ScriptCommands::Command *ScriptCommands::find(const QString &keyword)
{
    return commandIndex().value(keyword.trimmed().toUpper());
}

double ScriptCommands::nextRandom(quint32 &state)
{
    state = state * 214013u + 2531011u;
    return double((state >> 16) & 0x7FFF) / 32768.0;
}

ScriptCommands::ScriptCommands(ScriptInterpreter &interpreter, const QString &line, const ScriptLine &parsed,
                               unsigned lineNumber)
    : m_interpreter(interpreter)
    , m_host(interpreter.host())
    , m_line(line)
    , m_parsed(parsed)
    , m_lineNumber(lineNumber)
{
}

ActiveElement *ScriptCommands::element(const QString &name) const
{
    return m_host.tables().element(name);
}

void ScriptCommands::unknownDefine(const QString &define)
{
    m_interpreter.reportUnknownDefine(define, m_line, m_lineNumber);
}

void ScriptCommands::notAvailable()
{
    consolePrint(QStringLiteral("<font color=\"orange\"><b>Script: </b></font>%1 is not available in this build (line %2)<br>")
                     .arg(m_parsed.keyword.toHtmlEscaped())
                     .arg(m_lineNumber));
}

bool ScriptCommands::run(int code)
{
    switch (code) {
    case Version: return version();
    case DumpVariables: return dumpVariables();
    case DumpObjects: return dumpObjects();
    case DumpAll: return dumpAll();
    case Dump: return dump();
    case LogSetDefs: m_host.logSetDefs(pTrimmed(0).toInt() != 0); return true;
    case SetTrigger: case SetTriggerLock: case SaveMcsData: return true;
    case GenerateTestInput: return generateTestInput();
    case SetOutputOptions: return setOutputOptions();
    case SetSingleStep: m_interpreter.singleStep = pTrimmed(0).toInt() != 0; return true;
    case SetWaitTime: m_interpreter.waitTime = pTrimmed(0).toInt(); return true;
    case Load: return load();
    case Save: return save(false);
    case SaveSorted: return save(true);
    case SetFileName: return setFileName();
    case SetDefinePrefix: return setDefinePrefix();
    case Export: m_host.exportHeaders(); return true;
    case Sign: return sign();
    case Validate: DefineValidator().validate(m_interpreter.withDirLoop(p(0))); return true;
    case CheckXsd: SchemaCheck::checkXsd(m_interpreter.withDirLoop(p(0))); return true;
    case GenerateXmlFromSvd: return generateXmlFromSvd();
    case LoopStart: return loopStart();
    case LoopStop: return loopStop();
    case DirLoopStart: return dirLoopStart();
    case DirLoopStop: return dirLoopStop();
    case ChDir: QDir::setCurrent(p(0)); return true;
    case SetWorkingDir: m_host.setWorkingDir(p(0)); return true;
    case SetScriptsDir: m_host.setScriptsDir(p(0)); return true;
    case Wait: return wait();
    case MessageBox: return messageBox();
    case Raise: return raise();
    case SetFullScreen: {
        const bool on = pTrimmed(0).toInt() != 0;
        if (on != m_host.isFullScreenMode())
            m_host.setFullScreen(on);
        return true;
    }
    case SetTab: return setTab();
    case Assert: return assertValue();
    case AssertLock: return assertState(true);
    case AssertEnabled: return assertState(false);
    case End: return false;
    case Exit: return exit();
    case BringToFront: return bringTo(true);
    case BringToBack: return bringTo(false);
    case Clear: m_host.clearConsole(); return true;
    case ShowConsole: m_host.showConsole(pTrimmed(0).toInt() != 0); return true;
    case ResetGui: m_host.resetForm(); return true;
    case ShowPinMapper: case SelectData: {
        // The window owns the mapping and the parameter map; a host
        // without these slots (a bare test host) has no such views.
        QObject *window = m_host.hostWindow();
        const bool show = code == ShowPinMapper;
        const QByteArray signature = show ? "showPortMapping()" : "selectData(QString)";
        if (!window || window->metaObject()->indexOfMethod(signature) < 0) {
            notAvailable();
            return true;
        }
        if (show) {
            QMetaObject::invokeMethod(window, "showPortMapping");
            return true;
        }
        // Relative to the working folder; a catalog that sits beside the
        // description (a button of the form naming it) is found there too.
        QString path = QDir(m_host.workingDir()).absoluteFilePath(p(0));
        const QString besideDescription = QFileInfo(m_host.descriptionPath()).dir().absoluteFilePath(p(0));
        if (!QFileInfo::exists(path) && !m_host.descriptionPath().isEmpty() && QFileInfo::exists(besideDescription))
            path = besideDescription;
        QMetaObject::invokeMethod(window, "selectData", Q_ARG(QString, path));
        return true;
    }
    case SetDef: m_host.applySetDef(p(0)); return true;
    case SetChecked: return setNarrow(QStringLiteral("setChecked"));
    case SetValue: return setNarrow(QStringLiteral("setValue"));
    case SetItem: return setNarrow(QStringLiteral("setItem"));
    case SetRbItem: return setNarrow(QStringLiteral("setRBItem"));
    case SetText: return setNarrow(QStringLiteral("setText"));
    case Set: return set();
    case Clicked: return clicked();
    case WriteBsl: return writeBsl();
    case SetTavLogging:
        m_host.setStickLogging(quint16(pTrimmed(0).toUInt()), pTrimmed(1).toUInt() != 0, p(2));
        return true;
    case SetTavCheck: m_host.setStickCheckMode(quint16(pTrimmed(0).toUInt())); return true;
    case SendTask: {
        // Unsigned 16-bit numbers; task and arg3 keep their low byte.
        auto number = [this](int i) { return quint16(pTrimmed(i).toUShort()); };
        m_host.sendTask(pTrimmed(0), quint8(number(1) & 0xFF), number(2), quint8(number(3) & 0xFF), number(4));
        return true;
    }
    case ReadBsl: return true;
    case OpenFileDialog: return openFileDialog();
    case Download: return download();
    case AssertTableValue:
        TableCommands(m_interpreter, m_line, m_lineNumber).assertTableValue(p(0), p(1), p(2), p(3));
        return true;
    case LoadTable: case LoadAtTable:
        TableCommands(m_interpreter, m_line, m_lineNumber).loadTable(p(0), p(1), code == LoadAtTable);
        return true;
    case SaveTable: TableCommands(m_interpreter, m_line, m_lineNumber).saveTable(p(0), p(1)); return true;
    case SetTableLine: TableCommands(m_interpreter, m_line, m_lineNumber).setTableLine(p(0), p(1)); return true;
    case SetTableValue:
        TableCommands(m_interpreter, m_line, m_lineNumber).setTableValue(p(0), p(1), p(2), p(3));
        return true;
    case SetRegViewValue:
        TableCommands(m_interpreter, m_line, m_lineNumber).setRegViewValue(p(0), p(1), p(2));
        return true;
    case Lock: case Unlock: {
        const char *slot = code == Lock ? "on_sendLock" : "on_sendUnlock";
        QObject *window = m_host.hostWindow();
        if (window && window->metaObject()->indexOfMethod(QByteArray(slot) + "(QString)") >= 0)
            QMetaObject::invokeMethod(window, slot, Q_ARG(QString, p(0)));
        else
            notAvailable();
        return true;
    }
    default:
        // Recognised keywords of tools this build does not have yet.
        notAvailable();
        return true;
    }
}

bool ScriptCommands::version()
{
    consolePrint(QStringLiteral("Version    : %1<br>Executable : %2<br>Current dir: %3<br>Script dir : %4<br>Work dir   : %5<br>"
                                "XML dir    : %6<br>Tav dir    : %7<br>Current XML: %8<br>Current svd: %9<br>Current mig: %10<br>")
                     .arg(AppVersion::text(), QCoreApplication::applicationFilePath(), QDir::currentPath(),
                          m_host.scriptsDir(), m_host.workingDir(),
                          QFileInfo(m_host.descriptionPath()).absolutePath(),
                          QCoreApplication::applicationDirPath() + QStringLiteral("/Tav-Stick_Firmware"),
                          m_host.descriptionPath(), m_host.svdPath())
                     .arg(m_host.migrationPath()));
    return true;
}

bool ScriptCommands::dumpVariables()
{
    DocumentTables &t = m_host.tables();
    QStringList names = t.dataValues.keys();
    std::sort(names.begin(), names.end());
    for (const QString &name : names)
        consolePrint(QStringLiteral("%1 == %2<br>").arg(name).arg(t.dataValues.value(name)->getValue()));
    return true;
}

bool ScriptCommands::dumpObjects()
{
    for (ActiveElement *e : m_host.tables().elementList.toList()) {
        consolePrint(QStringLiteral("%1(%2) == %3<br>").arg(e->define(), e->typeInfo(), e->value(Selectors::Value)));
        QCoreApplication::processEvents();
    }
    return true;
}

bool ScriptCommands::dumpAll()
{
    QFile file(p(0));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        Report::cannotOpenFile(QFileInfo(file).absoluteFilePath(), file.errorString());
        return true;
    }
    QList<ActiveElement *> elements = m_host.tables().elementList.toList();
    std::sort(elements.begin(), elements.end(), [](ActiveElement *a, ActiveElement *b) { return a->define() < b->define(); });
    for (ActiveElement *e : elements) {
        file.write(QStringLiteral("%1(%2) == %3 (%4/%5)\n")
                       .arg(e->define(), e->typeInfo(), e->value(Selectors::Value),
                            e->widget()->isEnabled() ? QStringLiteral("E") : QStringLiteral("D"),
                            e->locked ? QStringLiteral("L") : QStringLiteral("U"))
                       .toUtf8());
    }
    QStringList names = m_host.tables().dataValues.keys();
    std::sort(names.begin(), names.end());
    for (const QString &name : names) {
        if (isReservedRecord(name))
            continue;
        file.write(QStringLiteral("%1 == %2\n").arg(name).arg(m_host.tables().dataValue(name)->getValue()).toUtf8());
    }
    return true;
}

bool ScriptCommands::dump()
{
    const QString name = p(0);
    if (DataClass *data = m_host.tables().dataValue(name)) {
        consolePrint(QStringLiteral("Dump(%1<b>) == %3<br>").arg(name).arg(data->getValue()));
        m_interpreter.writeOutput(QStringLiteral("Dump(%1) == %2\n").arg(name).arg(data->getValue()));
        return true;
    }
    ActiveElement *e = element(name);
    if (!e)
        return true;
    static const struct { int kind; const char *word; } forms[] = {
        {Selectors::Value, "Value"}, {Selectors::DefineValue, "DefineValue"}, {Selectors::Label, "Label"},
        {Selectors::Index, "Index"}, {Selectors::TypeInfo, "TypeInfo"}};
    const int choice = pTrimmed(1).toInt();
    const auto &form = forms[choice >= 1 && choice <= 4 ? choice : 0];
    const QString value = e->value(form.kind);
    const QString lockedBy = e->lockedBy.isEmpty() ? QString()
                                                   : QStringLiteral("Locked by: ") + lockPeers(e->lockedBy).join(QStringLiteral(", "));
    const QString locking = e->locking.isEmpty() ? QString()
                                                 : QStringLiteral("Locking: ") + lockPeers(e->locking).join(QStringLiteral(", "));
    consolePrint(QStringLiteral("Dump(%1.%2<b>) == %3 <font color=\"red\">  %4 %5</b></font><br>")
                     .arg(name, QLatin1String(form.word), value, lockedBy, locking));
    m_interpreter.writeOutput(QStringLiteral("Dump(%1.%2) == %3\n").arg(name, QLatin1String(form.word), value));
    return true;
}

bool ScriptCommands::generateTestInput()
{
    quint32 state = p(0).trimmed().toUInt();
    QFile file(p(0));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        Report::cannotOpenFile(QFileInfo(file).absoluteFilePath(), file.errorString());
        return true;
    }
    for (ActiveElement *e : m_host.tables().elementList.toList()) {
        const QString name = e->define();
        const QString type = e->typeInfo();
        QWidget *w = e->widget();
        const double r = nextRandom(state);
        QString line;
        if (type == QLatin1String("ComboBox")) {
            const auto *combo = qobject_cast<QComboBox *>(w);
            line = QStringLiteral("Set(%1, %2)").arg(name).arg(int(r * (combo ? combo->count() : 0)));
        } else if (type == QLatin1String("CheckBox")) {
            line = QStringLiteral("Set(%1, %2)").arg(name).arg(int(r));
        } else if (type == QLatin1String("ButtonGroup")) {
            const QButtonGroup *group = w->findChild<QButtonGroup *>();
            line = QStringLiteral("Set(%1, %2)").arg(name).arg(int(r * (group ? group->buttons().size() : 0)));
        } else if (type == QLatin1String("SpinBox")) {
            const auto *spin = qobject_cast<QSpinBox *>(w);
            const int lo = spin ? qMax(spin->minimum(), 0) : 0;
            const int hi = spin ? qMin(spin->maximum(), 0x7FFF) : 0;
            line = QStringLiteral("Set(%1, %2)").arg(name).arg(lo + int(r * qMax(0, hi - lo)));
        } else if (type == QLatin1String("DoubleSpinBox")) {
            const auto *spin = qobject_cast<QDoubleSpinBox *>(w);
            const double lo = spin ? qMax(spin->minimum(), 0.0) : 0.0;
            const double hi = spin ? qMin(spin->maximum(), double(0x7FFF)) : 0.0;
            line = QStringLiteral("Set(%1, %2)").arg(name).arg(lo + r * qMax(0.0, hi - lo));
        } else if (type == QLatin1String("ToggleButton")) {
            line = (r > 0.5 ? QStringLiteral("Clicked(%1)") : QStringLiteral("//Clicked(%1)")).arg(name);
        } else if (type == QLatin1String("LineEdit") || type == QLatin1String("EditBox")) {
            line = QStringLiteral("Set(%1, TestText)").arg(name);
        } else {
            continue;
        }
        file.write(line.toUtf8() + '\n');
    }
    return true;
}

bool ScriptCommands::setOutputOptions()
{
    if (p(0).isEmpty()) {
        m_interpreter.checkParameters(m_line, m_parsed, 1, m_lineNumber);
        return false;
    }
    const uint mask = pTrimmed(0).toUInt();
    const QString file = p(1);
    m_host.setOutputOptions(mask & 2, mask & 1, file, true);
    return true;
}

bool ScriptCommands::load()
{
    const QString given = m_interpreter.withDirLoop(p(0));
    QString file = given;
    if (QFileInfo(file).isRelative() && !QFileInfo::exists(file)) {
        file = QDir(m_host.workingDir()).filePath(given);
        if (!QFileInfo::exists(file))
            file = QDir(QFileInfo(m_host.descriptionPath()).absolutePath()).filePath(given);
    }
    m_host.loadConfiguration(file);
    return true;
}

bool ScriptCommands::save(bool sorted)
{
    QString file = p(0);
    if (file.isEmpty()) {
        m_interpreter.checkParameters(m_line, m_parsed, 1, m_lineNumber);
        file = m_host.configurationPath();
        if (file.isEmpty())
            return false;
    }
    if (QFileInfo(file).isRelative())
        file = QDir(m_host.workingDir()).filePath(file);
    m_host.saveConfiguration(file, sorted);
    return true;
}

bool ScriptCommands::setFileName()
{
    const QString file = QFileInfo(p(0)).absoluteFilePath();
    m_host.setConfigurationPath(file);
    m_host.setWorkingDir(QFileInfo(file).absolutePath());
    return true;
}

bool ScriptCommands::setDefinePrefix()
{
    const QString value = p(1);
    QString prefix = value;
    if (DataClass *data = m_host.tables().dataValue(value))
        prefix = QString::number(data->getValue());
    else if (ActiveElement *e = element(value))
        prefix = e->value(Selectors::Value);
    else if (classifyNumber(value) <= NumberFormat::Binary)
        prefix = normaliseNumber(value);
    m_host.setDefinePrefix(p(0), prefix);
    return true;
}

bool ScriptCommands::sign()
{
    const QString file = m_interpreter.withDirLoop(p(0));
    if (m_host.signDescription(file))
        consolePrint(QStringLiteral("Successfully signed file %1.<br>").arg(file));
    return true;
}

bool ScriptCommands::generateXmlFromSvd()
{
    QString file = m_interpreter.withDirLoop(p(0));
    if (!QFileInfo::exists(file) && !m_host.scriptsDir().isEmpty()) {
        const QString inScripts = QDir(m_host.scriptsDir()).filePath(file);
        if (QFileInfo::exists(inScripts))
            file = inScripts;
    }
    m_host.generateXmlFromSvd(file, pTrimmed(1).toInt() != 0);
    return true;
}

bool ScriptCommands::loopStart()
{
    m_interpreter.loopDefine = p(0);
    m_interpreter.loopStart = pTrimmed(1).toUInt();
    m_interpreter.loopStep = pTrimmed(2).toUInt();
    m_interpreter.loopStop = pTrimmed(3).toUInt();
    m_interpreter.loopCurrent = m_interpreter.loopStart;
    m_interpreter.loopPosition = m_interpreter.scriptFile.isOpen() ? m_interpreter.scriptFile.pos() : 0;
    if (DataClass *data = m_host.tables().dataValue(m_interpreter.loopDefine))
        data->setValue(m_interpreter.loopCurrent);
    return true;
}

bool ScriptCommands::loopStop()
{
    m_interpreter.loopCurrent += m_interpreter.loopStep;
    if (DataClass *data = m_host.tables().dataValue(m_interpreter.loopDefine))
        data->setValue(m_interpreter.loopCurrent);
    if (m_interpreter.loopCurrent < m_interpreter.loopStop && m_interpreter.scriptFile.isOpen())
        m_interpreter.scriptFile.seek(m_interpreter.loopPosition);
    return true;
}

void ScriptCommands::setDirElement(const QString &name)
{
    m_interpreter.dirLoopCurrent = name;
    if (ActiveElement *dir = element(QStringLiteral("$DIR$"))) {
        if (auto *line = qobject_cast<QLineEdit *>(dir->widget()))
            line->setText(name);
        else
            dir->setValue(name, Selectors::Value);
    }
}

bool ScriptCommands::dirLoopStart()
{
    m_interpreter.dirLoopFiles = QDir::current().entryList(QStringList{p(0)}, QDir::AllEntries | QDir::NoDotAndDotDot);
    m_interpreter.dirLoopIndex = 0;
    m_interpreter.dirLoopPosition = m_interpreter.scriptFile.isOpen() ? m_interpreter.scriptFile.pos() : 0;
    const QString first = m_interpreter.dirLoopFiles.value(0);
    setDirElement(first);
    ++m_interpreter.dirLoopIndex;
    return true;
}

bool ScriptCommands::dirLoopStop()
{
    if (m_interpreter.dirLoopIndex >= quint32(m_interpreter.dirLoopFiles.size()))
        return true;
    setDirElement(m_interpreter.dirLoopFiles.at(int(m_interpreter.dirLoopIndex)));
    ++m_interpreter.dirLoopIndex;
    if (m_interpreter.scriptFile.isOpen())
        m_interpreter.scriptFile.seek(m_interpreter.dirLoopPosition);
    return true;
}

bool ScriptCommands::wait()
{
    // Compared by time of day alone, as users' scripts were timed: the
    // deadline is a time of day, so a wait that crosses midnight ends early.
    // Kept in 64 bits and taken modulo a day: a plain int sum overflowed for
    // waits near INT_MAX, and a deadline past the end of the day was never
    // reached, which hung the script.
    const qint64 ms = pTrimmed(0).toInt();
    if (ms <= 0)
        return true;
    constexpr qint64 day = 24 * 60 * 60 * 1000;
    const qint64 deadline = (QTime::currentTime().msecsSinceStartOfDay() + ms) % day;
    for (qint64 now = QTime::currentTime().msecsSinceStartOfDay(); now < deadline && !m_host.exitRequested();
         now = QTime::currentTime().msecsSinceStartOfDay())
        ScriptInterpreter::processEventsFor(int(qMin<qint64>(deadline - now, 20)));
    return true;
}

bool ScriptCommands::messageBox()
{
    if (!m_host.quiet())
        Dialogs::question(m_host.hostWindow(), QMessageBox::Information, QStringLiteral("Message from batchfile"), p(0),
                          QMessageBox::Ok, QMessageBox::Ok);
    return true;
}

bool ScriptCommands::raise()
{
    if (ActiveElement *e = element(Selectors::stripSelector(p(0))))
        m_host.raiseElement(e->widget());
    return true;
}

bool ScriptCommands::setTab()
{
    const QString name = p(0);
    QTabWidget *tab = nullptr;
    if (Container *c = m_host.tables().container(name))
        tab = qobject_cast<QTabWidget *>(c->containerWidget());
    if (!tab) {
        if (ActiveElement *e = element(name))
            tab = qobject_cast<QTabWidget *>(e->widget());
    }
    if (tab)
        tab->setCurrentIndex(pTrimmed(1).toInt());
    return true;
}

bool ScriptCommands::assertValue()
{
    // Only the kind and the expected value are trimmed: blanks around a
    // define are part of the name a script gives.
    const QString name = p(0);
    const QString kindText = pTrimmed(1).toLower();
    QString expected = pTrimmed(2);

    int kind = Selectors::Value;
    bool isNumber = false;
    const int number = kindText.toInt(&isNumber);
    if (isNumber) {
        static const int byNumber[] = {Selectors::Value, Selectors::DefineValue, Selectors::Label, Selectors::Index,
                                       Selectors::TypeInfo, 255};
        kind = number >= 0 && number <= 5 ? byNumber[number] : Selectors::Value;
    } else if (kindText == QLatin1String("definevalue")) {
        kind = Selectors::DefineValue;
    } else if (kindText == QLatin1String("label")) {
        kind = Selectors::Label;
    } else if (kindText == QLatin1String("index")) {
        kind = Selectors::Index;
    } else if (kindText == QLatin1String("typeinfo")) {
        kind = Selectors::TypeInfo;
    } else if (kindText == QLatin1String("registervalue")) {
        kind = 255;
    }

    QString actual;
    bool ok = false;
    if (DataClass *data = m_host.tables().dataValue(name)) {
        actual = QString::number(data->getValue());
        ok = data->getValue() == expected.toUInt();
    } else if (ActiveElement *e = element(name)) {
        actual = kind == 255 ? m_host.registerValue(e->define()) : e->value(kind);
        if (ActiveElement *other = element(expected))
            expected = other->value(Selectors::Value);
        if (kind == Selectors::Label || kind == Selectors::TypeInfo) {
            ok = actual.compare(expected, Qt::CaseInsensitive) == 0;
        } else if (e->typeInfo() == QLatin1String("LineEdit") || e->typeInfo() == QLatin1String("EditBox")) {
            ok = actual == expected;
        } else {
            QString cut = actual;
            const int dot = expected.indexOf(QLatin1Char('.'));
            const int actualDot = cut.indexOf(QLatin1Char('.'));
            if (dot >= 0 && actualDot >= 0) {
                const int digits = expected.size() - dot - 1;
                if (cut.size() - actualDot - 1 > digits)
                    cut = cut.left(actualDot + 1 + digits);
            }
            bool okA = false;
            bool okE = false;
            // Only the actual value is normalised: the expected one is read
            // as written, so that 16.00002 does not round to 16.
            const double a = normaliseNumber(cut).toDouble(&okA);
            const double x = expected.toDouble(&okE);
            ok = okA && okE && std::fabs(a - x) < 1e-05;
        }
    } else {
        unknownDefine(name);
        return true;
    }

    if (!ok)
        ++m_interpreter.failedAsserts;
    m_interpreter.writeOutput(QStringLiteral("Assert(%1(%2) == %3) %4\n")
                                  .arg(name, actual, expected, ok ? QStringLiteral("OK") : QStringLiteral("FAILED")));
    consolePrint(ok ? QStringLiteral("Assert(%1(%2)<b> ==  %3) <font color=\"green\">OK</b></font><br>").arg(name, actual, expected)
                    : QStringLiteral("Assert(%1(%2)<b> ==  %3) <font color=\"red\">FAILED</b></font><br>").arg(name, actual, expected));
    return true;
}

bool ScriptCommands::assertState(bool lockState)
{
    const QString name = Selectors::stripSelector(p(0));
    const QString state = pTrimmed(1);
    ActiveElement *e = element(name);
    if (!e) {
        unknownDefine(name);
        return true;
    }
    const int actual = lockState ? int(e->locked) : int(e->widget()->isEnabled());
    const bool ok = actual == state.toInt();
    if (!ok)
        ++m_interpreter.failedAsserts;
    const QString word = lockState ? QStringLiteral("AssertLock") : QStringLiteral("AssertEnabled");
    m_interpreter.writeOutput(QStringLiteral("%1(%2 == %3) %4\n").arg(word, name, state, ok ? QStringLiteral("OK") : QStringLiteral("FAILED")));
    consolePrint(ok ? QStringLiteral("%1(%2<b> ==  %3) <font color=\"green\">OK</b></font><br>").arg(word, name, state)
                    : QStringLiteral("%1(%2<b> ==  %3) <font color=\"red\">FAILED</b></font><br>").arg(word, name, state));
    return true;
}

bool ScriptCommands::exit()
{
    if (m_interpreter.scriptOutput.isOpen())
        m_interpreter.scriptOutput.close();
    m_host.exitWithCode(pTrimmed(0).toInt(), m_interpreter.failedAsserts);
    return false;
}

bool ScriptCommands::bringTo(bool front)
{
    if (QWidget *w = m_host.hostWindow()) {
        w->move(front ? QPoint(0, 0) : QPoint(9999, 9999));
        if (front)
            w->raise();
    }
    return true;
}

bool ScriptCommands::setNarrow(const QString &word)
{
    const QString name = p(0);
    ActiveElement *e = element(name);
    if (!e) {
        unknownDefine(name);
        return true;
    }
    QWidget *w = e->widget();
    bool fits = false;
    if (word == QLatin1String("setChecked"))
        fits = qobject_cast<QCheckBox *>(w) || qobject_cast<QPushButton *>(w);
    else if (word == QLatin1String("setValue"))
        fits = qobject_cast<QAbstractSpinBox *>(w);
    else if (word == QLatin1String("setItem"))
        fits = qobject_cast<QComboBox *>(w);
    else if (word == QLatin1String("setRBItem"))
        fits = e->typeInfo() == QLatin1String("ButtonGroup");
    else if (word == QLatin1String("setText"))
        fits = qobject_cast<QLineEdit *>(w) || qobject_cast<QTextEdit *>(w);
    if (!fits) {
        Report::cannotUse(word, name);
        return true;
    }
    DefineAssignment::setDefineValue(m_host.tables(), name, m_interpreter.withLoopValue(pTrimmed(1)));
    return true;
}

bool ScriptCommands::set()
{
    // SET trims its value, not its define.
    const QString name = p(0);
    const QString value = m_interpreter.withLoopValue(pTrimmed(1));
    if (DefineAssignment::setDefineValue(m_host.tables(), name, value) == DefineAssignment::UnknownDefine)
        unknownDefine(name);
    return true;
}

bool ScriptCommands::clicked()
{
    const QString name = p(0);
    if (ActiveElement *e = element(name)) {
        if (e->typeInfo() != QLatin1String("ToggleButton")) {
            Report::cannotUse(QStringLiteral("Clicked"), name);
            return true;
        }
        if (auto *button = qobject_cast<QAbstractButton *>(e->widget())) {
            if (button->isEnabled())
                button->click();
        }
        return true;
    }
    for (QObject *item : {m_host.tables().images.value(name), m_host.tables().pushButtons.value(name)}) {
        auto *w = qobject_cast<QWidget *>(item);
        if (w && w->isEnabled() && w->metaObject()->indexOfSignal("clicked()") >= 0) {
            QMetaObject::invokeMethod(w, "clicked");
            break;
        }
    }
    return true;
}

bool ScriptCommands::writeBsl()
{
    QString file;
    const QString name = p(0);
    if (ActiveElement *e = element(name))
        file = e->value(Selectors::Value);
    else if (DataClass *d = m_host.tables().dataValue(name))
        file = d->text;
    QString error;
    m_interpreter.bslBlocks = IntelHexReader::read(file, &error);
    if (!error.isEmpty())
        Report::cannotOpenFile(QFileInfo(file).absoluteFilePath(), error);
    return true;
}

bool ScriptCommands::openFileDialog()
{
    const QString caption = p(0);
    const QString directory = p(1);
    const QString filter = p(2);
    const QString define = p(3);
    const QString chosen = pTrimmed(4) == QLatin1String("1")
        ? Dialogs::openFileName(m_host.hostWindow(), caption, directory, filter)
        : Dialogs::saveFileName(m_host.hostWindow(), caption, directory, filter);
    if (chosen.isEmpty() || define.isEmpty())
        return true;
    ActiveElement *e = element(define);
    if (!e) {
        unknownDefine(define);
        return true;
    }
    if (!qobject_cast<QLineEdit *>(e->widget()) && !qobject_cast<QTextEdit *>(e->widget())) {
        Report::cannotUse(QStringLiteral("OpenFileDialog"), define);
        return true;
    }
    DefineAssignment::setDefineValue(m_host.tables(), define, chosen.trimmed());
    return true;
}

bool ScriptCommands::download()
{
    const QString file = p(0);
    const JLinkDownload::Result result = JLinkDownload::download(file);
    if (result == JLinkDownload::Skipped || result == JLinkDownload::Done)
        return true;
    // A failed connect or download stops the script.
    const QString what = result == JLinkDownload::ConnectFailed ? QStringLiteral("No J-Link connection for")
                                                                : QStringLiteral("J-Link download failed:");
    consolePrint(QStringLiteral("<font color=\"red\"> <b>Script Error: </b></font><b>%1 DOWNLOAD(%2) in <b><a href=\"%3\">file</a> line %4</b><b><br>")
                     .arg(what, file.toHtmlEscaped(), m_interpreter.lineLink(m_lineNumber))
                     .arg(m_lineNumber));
    return false;
}
