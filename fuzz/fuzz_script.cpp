// Script lines come from .script files, recordings and the runScript
// actions of descriptions. One input is a script: each line goes through
// the lexer and then through execScriptLine on the loaded example, as
// runBatchfile would run it (loops aside: there is no script file to seek
// in), until a line ends the run.
//
// A few lines are not run, because what they do is right for a user and
// wrong for a fuzzer: leaving the scratch folder (CHDIR, SETWORKINGDIR,
// SETSCRIPTSDIR, and any parameter holding a path separator or ".."),
// waiting as long as asked (WAIT), ending the process (EXIT), and turning
// message boxes on (SETOUTPUTOPTIONS with bit 1), after which a MESSAGEBOX
// waits for a click that never comes.
#include "FuzzEnvironment.h"

#include "automation/ScriptCommands.h"
#include "automation/ScriptInterpreter.h"
#include "automation/ScriptLexer.h"
#include "shell/MainWindow.h"

#include <cstddef>
#include <cstdint>

namespace {

bool mayRun(const ScriptLine &line)
{
    static const QStringList refused{QStringLiteral("CHDIR"), QStringLiteral("SETWORKINGDIR"),
                                     QStringLiteral("SETSCRIPTSDIR"), QStringLiteral("WAIT"), QStringLiteral("EXIT")};
    const QString keyword = line.keyword.trimmed().toUpper();
    if (refused.contains(keyword))
        return false;
    if (keyword == QLatin1String("SETOUTPUTOPTIONS") && (line.parameter(0).trimmed().toUInt() & 2))
        return false;
    for (const QString &parameter : line.parameters) {
        if (parameter.contains(QLatin1Char('/')) || parameter.contains(QLatin1Char('\\'))
            || parameter.contains(QLatin1String("..")))
            return false;
    }
    return true;
}

void resetInterpreter(ScriptInterpreter &interpreter)
{
    interpreter.singleStep = false;
    interpreter.waitTime = 0;
    interpreter.loopDefine.clear();
    interpreter.loopStart = interpreter.loopStep = interpreter.loopStop = interpreter.loopCurrent = 0;
    interpreter.dirLoopFiles.clear();
    interpreter.dirLoopIndex = 0;
    interpreter.dirLoopCurrent.clear();
    interpreter.failedAsserts = 0;
    interpreter.bslBlocks.clear();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    FuzzEnvironment::start(argc, argv);
    FuzzEnvironment::instance().window();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    MainWindow &window = FuzzEnvironment::instance().window();
    ScriptInterpreter &interpreter = window.scriptInterpreter();
    resetInterpreter(interpreter);
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    unsigned number = 0;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        ++number;
        const ScriptLine parsed = ScriptLexer::lex(line);
        (void)ScriptCommands::find(parsed.keyword);
        if (!mayRun(parsed))
            continue;
        if (!window.execScriptLine(line, number) || window.exitRequested())
            break;
    }
    // The next input starts from the example's defaults.
    window.resetGUI();
    return 0;
}
