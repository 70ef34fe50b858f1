// Formulas and conditions are written by hand in descriptions and data
// strings. One input is one formula text; it goes through the tokeniser,
// the compiler and the evaluator as a formula, as a condition and as an
// enabled-check, against the example's form so that names resolve to real
// elements and records.
#include "FuzzEnvironment.h"

#include "model/Expression.h"
#include "model/ExpressionCompiler.h"
#include "model/ExpressionEvaluator.h"
#include "shell/MainWindow.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    FuzzEnvironment::start(argc, argv);
    FuzzEnvironment::instance().window();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    MainWindow &window = FuzzEnvironment::instance().window();
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    ExpressionEvaluator evaluator(&window.tables());
    bool ok = true;

    const Expression formula = Expression::fromFormula(text);
    (void)evaluator.evaluate(formula, &ok);
    // The uncompiled lists, as descriptions stored them, take the other path.
    (void)evaluator.evaluate(formula.postfix(), formula.literals(), formula.names(), &ok);

    const Expression condition = Expression::fromCondition(text);
    (void)evaluator.evaluate(condition, &ok);
    (void)evaluator.evaluateCondition(text);
    (void)evaluator.evaluateEnabled(text);
    (void)evaluator.operandValue(text);
    return 0;
}
