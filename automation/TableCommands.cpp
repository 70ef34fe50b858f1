#include "automation/TableCommands.h"

#include "automation/ScriptHost.h"
#include "automation/ScriptInterpreter.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/Selectors.h"
#include "elements/MessageSink.h"
#include "views/RegisterView.h"
#include "views/Table.h"

#include <QDir>
#include <QFileInfo>

TableCommands::TableCommands(ScriptInterpreter &interpreter, const QString &line, unsigned lineNumber)
    : m_interpreter(interpreter)
    , m_line(line)
    , m_lineNumber(lineNumber)
{
}

Table *TableCommands::table(const QString &name)
{
    const QString trimmed = name.trimmed();
    auto *found = dynamic_cast<Table *>(m_interpreter.host().tables().element(trimmed));
    if (!found)
        m_interpreter.reportUnknownDefine(trimmed, m_line, m_lineNumber);
    return found;
}

QString TableCommands::inputPath(const QString &given) const
{
    const QString name = m_interpreter.withDirLoop(given.trimmed());
    if (!QFileInfo(name).isRelative() || QFileInfo::exists(name))
        return name;
    ScriptHost &host = m_interpreter.host();
    const QString inWork = QDir(host.workingDir()).filePath(name);
    if (QFileInfo::exists(inWork))
        return inWork;
    const QString inDescription = QDir(QFileInfo(host.descriptionPath()).absolutePath()).filePath(name);
    return QFileInfo::exists(inDescription) ? inDescription : name;
}

void TableCommands::loadTable(const QString &name, const QString &file, bool at)
{
    if (Table *t = table(name))
        t->loadFile(inputPath(file), at);
}

void TableCommands::saveTable(const QString &name, const QString &file)
{
    if (Table *t = table(name))
        t->saveFile(m_interpreter.withDirLoop(file.trimmed()));
}

void TableCommands::setTableLine(const QString &name, const QString &row)
{
    if (Table *t = table(name))
        t->selectLine(row.trimmed().toInt());
}

void TableCommands::setTableValue(const QString &name, const QString &row, const QString &column, const QString &value)
{
    if (Table *t = table(name))
        t->setTableValue(row.trimmed().toInt(), column.trimmed().toInt(), value.trimmed());
}

void TableCommands::assertTableValue(const QString &name, const QString &row, const QString &column,
                                     const QString &expectedText)
{
    Table *t = table(name);
    if (!t)
        return;
    const QString expected = expectedText.trimmed();
    const QString actual = t->cellText(row.trimmed().toInt(), column.trimmed().toInt());
    bool ok = actual.compare(expected, Qt::CaseInsensitive) == 0;
    if (!ok && classifyNumber(actual.trimmed()) <= NumberFormat::Binary) {
        const QString a = normaliseNumber(actual.trimmed());
        ok = !a.isEmpty() && a == normaliseNumber(expected);
    }
    if (!ok)
        ++m_interpreter.failedAsserts;
    const QString t1 = name.trimmed();
    const QString r = row.trimmed();
    const QString c = column.trimmed();
    if (ok) {
        m_interpreter.writeOutput(QStringLiteral("AssertTableValue(%1, %2, %3, %4) == %5) OK\n").arg(t1, r, c, actual, expected));
        consolePrint(QStringLiteral("AssertTableValue(%1, %2, %3, %4)<b> ==  %5) <font color=\"green\">OK</b></font><br>")
                         .arg(t1, r, c, actual, expected));
    } else {
        m_interpreter.writeOutput(QStringLiteral("AssertTableValue(%1, %2, %3, %4) == %5 FAILED\n").arg(t1, r, c, actual, expected));
        consolePrint(QStringLiteral("AssertTableValue(%1, %2, %3, %4)<b> ==  %5) <font color=\"red\">FAILED</b></font><br>")
                         .arg(t1, r, c, actual, expected));
    }
}

void TableCommands::setRegViewValue(const QString &name, const QString &value, const QString &tableName)
{
    const QString trimmed = name.trimmed();
    auto *view = dynamic_cast<RegisterView *>(m_interpreter.host().tables().element(trimmed));
    if (!view) {
        m_interpreter.reportUnknownDefine(trimmed, m_line, m_lineNumber);
        return;
    }
    const QString source = tableName.trimmed().isEmpty() ? QStringLiteral("TABLE") : tableName.trimmed();
    // The value waits for the rebuild, which shows the register the table
    // names (or the one shown, when the table names none) with it.
    if (view->setValue(value.trimmed(), Selectors::Value))
        view->setValue(source + QStringLiteral(".registername"), Selectors::Register);
}
