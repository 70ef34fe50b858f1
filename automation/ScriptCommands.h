#pragma once
#include <QString>

#include "automation/ScriptLexer.h"

class ActiveElement;
class ScriptHost;
class ScriptInterpreter;

// The keywords of the script language and what each does. One object runs
// one command line; it returns false when the script is to stop.
class ScriptCommands
{
public:
    struct Command
    {
        int code;
        const char *keyword;
        int need;
    };

    // The command of a keyword, ignoring case; null when unknown.
    static const Command *find(const QString &keyword);

    ScriptCommands(ScriptInterpreter &interpreter, const QString &line, const ScriptLine &parsed, unsigned lineNumber);

    bool run(int code);

    // The seeded generator of GENERATETESTINPUT: the same seed gives the
    // same script on every platform, each number in [0, 1).
    static double nextRandom(quint32 &state);

private:
    QString p(int index) const { return m_parsed.parameter(index); }
    QString pTrimmed(int index) const { return m_parsed.parameter(index).trimmed(); }
    ActiveElement *element(const QString &name) const;
    void unknownDefine(const QString &define);
    void notAvailable();

    bool version();
    bool dumpVariables();
    bool dumpObjects();
    bool dumpAll();
    bool dump();
    bool generateTestInput();
    bool setOutputOptions();
    bool load();
    bool save(bool sorted);
    bool setFileName();
    bool setDefinePrefix();
    bool sign();
    bool generateXmlFromSvd();
    bool loopStart();
    bool loopStop();
    bool dirLoopStart();
    bool dirLoopStop();
    bool wait();
    bool messageBox();
    bool raise();
    bool setTab();
    bool assertValue();
    bool assertState(bool lockState);
    bool exit();
    bool bringTo(bool front);
    bool setNarrow(const QString &word);
    bool set();
    bool clicked();
    bool writeBsl();
    bool openFileDialog();
    bool download();
    void setDirElement(const QString &name);

    ScriptInterpreter &m_interpreter;
    ScriptHost &m_host;
    QString m_line;
    ScriptLine m_parsed;
    unsigned m_lineNumber;
};
