#pragma once
#include <QString>

class ScriptInterpreter;

// The script keywords of tables and register views: LOADTABLE,
// LOADATTABLE, SAVETABLE, SETTABLELINE, SETTABLEVALUE, ASSERTTABLEVALUE and
// SETREGVIEWVALUE. A name that is no table (or register view) skips the
// command with the unknown-define message.
class TableCommands
{
public:
    TableCommands(ScriptInterpreter &interpreter, const QString &line, unsigned lineNumber);

    void loadTable(const QString &table, const QString &file, bool at);
    void saveTable(const QString &table, const QString &file);
    void setTableLine(const QString &table, const QString &row);
    void setTableValue(const QString &table, const QString &row, const QString &column, const QString &value);
    void assertTableValue(const QString &table, const QString &row, const QString &column, const QString &expected);
    void setRegViewValue(const QString &view, const QString &value, const QString &tableName);

private:
    class Table *table(const QString &name);
    QString inputPath(const QString &given) const;

    ScriptInterpreter &m_interpreter;
    QString m_line;
    unsigned m_lineNumber;
};
