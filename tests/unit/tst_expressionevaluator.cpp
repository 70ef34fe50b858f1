#include <QtTest>

#include <cmath>
#include <cstdlib>
#include <limits>

#include "support/FakeElement.h"
#include "support/RecordingSink.h"

#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/Selectors.h"
#include "model/Expression.h"
#include "model/ExpressionCompiler.h"
#include "model/ExpressionEvaluator.h"

namespace {

// A value element that answers with a text and a chosen class word, like a
// LineEdit or TextEdit does.
class TextFake : public FakeElement
{
public:
    TextFake(const QString &define, const QString &classWord)
        : FakeElement(define)
        , classWord(classWord)
    {
    }
    QString value(int kind, bool flag = false) override
    {
        return kind == Selectors::Value ? text : FakeElement::value(kind, flag);
    }
    QString typeInfo() const override { return classWord; }

    QString text;
    QString classWord;
};

double evaluateFormula(const QString &formula, bool *ok = nullptr)
{
    return ExpressionEvaluator().evaluate(Expression::fromFormula(formula), ok);
}

} // namespace

class TestExpressionEvaluator : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_sink = new RecordingSink;
        m_tables = new DocumentTables;
        DocumentTables::setCurrent(m_tables);

        m_a = new FakeElement("a");
        m_a->number = 5;
        m_tables->addElement("a", m_a);

        // An element bound to bits 7..4: its definevalue is its value << 4.
        m_bits = new FakeElement("ADC.CTRL[7:4]");
        m_bits->number = 3;
        m_bits->QObject::setProperty("lsb", 4);
        m_tables->addElement("ADC.CTRL[7:4]", m_bits);

        // Records: one beyond single precision, a float one whose integer is
        // not used, and one of the element's name, which the element hides.
        m_tables->addDataValue(new DataClass("big"))->value = (1u << 24) + 1;
        m_tables->addDataValue(new DataClass("thousand"))->value = 1000;
        DataClass *f = m_tables->addDataValue(new DataClass("f"));
        f->datatype = DataClass::Float;
        f->floatValue = 1.25f;
        f->value = 99;
        m_tables->addDataValue(new DataClass("a"))->value = 100;
    }

    void cleanup()
    {
        ExpressionEvaluator::setTabIndexLookup(nullptr);
        delete m_tables;
        m_tables = nullptr;
        DocumentTables::setCurrent(nullptr);
        delete m_a;
        delete m_bits;
        delete m_sink;
    }

    void arithmetic_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<double>("expected");

        // Unary minus and literals
        QTest::newRow("times minus") << "3*-2" << -6.0;
        QTest::newRow("leading negative literal") << "-5+2" << -3.0;
        QTest::newRow("negative float literal") << "-1.5*2" << -3.0;
        QTest::newRow("minus minus rewritten to plus") << "a--5" << 10.0;
        QTest::newRow("minus after open parenthesis") << "(-a)*2" << -10.0;

        // Precedence, including the operators that swallow the rest
        QTest::newRow("times before plus") << "2*3+4*5" << 26.0;
        QTest::newRow("left associative minus") << "10-2-3" << 5.0;
        QTest::newRow("left associative divide") << "8/2/2" << 2.0;
        QTest::newRow("shift swallows sum") << "1<<2+3" << 32.0;
        QTest::newRow("shift in parentheses") << "(1<<2)+3" << 7.0;
        QTest::newRow("power swallows sum") << "2^3+1" << 16.0;
        QTest::newRow("power swallows product") << "2^3*2" << 64.0;
        QTest::newRow("power in parentheses") << "(2^3)+1" << 9.0;
        QTest::newRow("modulo swallows sum") << "7%2+1" << 1.0;
        QTest::newRow("comparison below sum") << "1+1==2" << 1.0;

        // Modulo
        QTest::newRow("modulo by zero") << "7%0" << -1.0;
        QTest::newRow("negative modulo") << "-7%3" << -1.0;
        QTest::newRow("modulo") << "7%3" << 1.0;
        QTest::newRow("modulo truncates") << "7.9%3.9" << 1.0;
        QTest::newRow("modulo of minimum by minus one") << "(0-2147483648)%(0-1)" << 0.0;

        // Bitwise operators work on unsigned 32 bits
        QTest::newRow("dot plus or") << "5.+3" << 7.0;
        QTest::newRow("dot times and") << "6.*3" << 2.0;
        QTest::newRow("dot caret xor") << "6.^3" << 5.0;
        QTest::newRow("or of negative is unsigned") << "-1.+0" << 4294967295.0;
        QTest::newRow("and keeps low 32 bits") << "0x1FFFFFFFF.*0xFFFFFFFF" << 4294967295.0;

        // Shifts
        QTest::newRow("shift right") << "8>>1" << 4.0;
        QTest::newRow("negative shift left goes right") << "8<<-1" << 4.0;
        QTest::newRow("negative shift right goes left") << "8>>-1" << 16.0;
        QTest::newRow("shift beyond width") << "1<<64" << 0.0;
        QTest::newRow("shift is 64 bits wide") << "1<<40" << 1099511627776.0;

        // Comparisons
        QTest::newRow("less") << "3<4" << 1.0;
        QTest::newRow("not greater") << "3>4" << 0.0;
        QTest::newRow("less or equal") << "4<=4" << 1.0;
        QTest::newRow("greater or equal") << "3>=4" << 0.0;
        QTest::newRow("equal") << "3==3" << 1.0;
        QTest::newRow("not equal") << "3!=3" << 0.0;
        QTest::newRow("exact double comparison") << "0.1+0.2==0.3" << 0.0;

        // Conditional
        QTest::newRow("true condition") << "a?1:2" << 1.0;
        QTest::newRow("false condition") << "0?1:2" << 2.0;
        QTest::newRow("condition truncated to integer") << "0.5?1:2" << 2.0;
        QTest::newRow("nested conditional") << "0?1:a?3:4" << 3.0;
        QTest::newRow("comparison as condition") << "a>4?10:20" << 10.0;

        // Single tokens and number spellings
        QTest::newRow("hexadecimal alone") << "0x10" << 16.0;
        QTest::newRow("hexadecimal in sum") << "0x10+1" << 17.0;
        QTest::newRow("hexadecimal is signed 64 bits") << "0xFFFFFFFFFFFFFFFF" << -1.0;
        QTest::newRow("hexadecimal with suffix") << "0x5u" << 5.0;
        QTest::newRow("decimal with suffix") << "5u+1" << 1.0;
        QTest::newRow("binary") << "0b101" << 5.0;
        QTest::newRow("exponent") << "1e3" << 1000.0;
        QTest::newRow("float") << "1.50" << 1.5;
        QTest::newRow("lone element") << "a" << 5.0;

        // Functions
        QTest::newRow("sqrt") << "sqrt(16)" << 4.0;
        QTest::newRow("abs") << "abs(0-3)" << 3.0;
        QTest::newRow("round half away") << "round(2.5)" << 3.0;
        QTest::newRow("floor") << "floor(0-2.5)" << -3.0;
        QTest::newRow("ceil") << "ceil(2.1)" << 3.0;
        QTest::newRow("trunc") << "trunc(0-2.7)" << -2.0;
        QTest::newRow("natural log") << "log(exp(2))" << 2.0;
        QTest::newRow("log10") << "log10(1000)" << 3.0;
        QTest::newRow("sin") << "sin(0)" << 0.0;
        QTest::newRow("cos") << "cos(0)" << 1.0;
        QTest::newRow("function of sum") << "sqrt(a+4)*2" << 6.0;
        QTest::newRow("function without parentheses") << "sqrt+4" << 2.0;

        // Incomplete input gives what was computed
        QTest::newRow("trailing operator") << "a*" << 5.0;
        QTest::newRow("unclosed parenthesis") << "((1+2" << 3.0;
        QTest::newRow("extra closing parenthesis") << "1+2))" << 3.0;
        QTest::newRow("empty") << "" << 0.0;
    }

    void arithmetic()
    {
        QFETCH(QString, formula);
        QFETCH(double, expected);
        bool ok = false;
        const double result = evaluateFormula(formula, &ok);
        QVERIFY(ok);
        QCOMPARE(result, expected);
        QVERIFY2(m_sink->errors.isEmpty(), qPrintable(m_sink->errors.join('\n')));
    }

    void nonFiniteResults_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<int>("sign"); // 0 for NaN

        QTest::newRow("divide by zero") << "1/0" << 1;
        QTest::newRow("negative divide by zero") << "-1/0" << -1;
        QTest::newRow("log of zero") << "log(0)" << -1;
        QTest::newRow("sqrt of negative") << "sqrt(0-1)" << 0;
        QTest::newRow("zero by zero") << "0/0" << 0;
    }

    void nonFiniteResults()
    {
        QFETCH(QString, formula);
        QFETCH(int, sign);
        bool ok = false;
        const double result = evaluateFormula(formula, &ok);
        QVERIFY(ok);
        if (sign == 0) {
            QVERIFY(std::isnan(result));
        } else {
            QVERIFY(std::isinf(result));
            QCOMPARE(result > 0, sign > 0);
        }
    }

    void refusedOperators_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<bool>("ok");

        QTest::newRow("tilde") << "1~2" << false;
        QTest::newRow("tilde in larger formula") << "a+(1~2)*3" << false;
        QTest::newRow("single equal") << "a=5" << false;
        QTest::newRow("question mark without colon") << "1?2" << false;
        QTest::newRow("not") << "1!2" << false;
        // With fewer than two values an operator is skipped and nothing fails.
        QTest::newRow("tilde with one value") << "~5" << true;
    }

    void refusedOperators()
    {
        QFETCH(QString, formula);
        QFETCH(bool, ok);
        bool result_ok = !ok;
        const double result = evaluateFormula(formula, &result_ok);
        QCOMPARE(result_ok, ok);
        QCOMPARE(result, 0.0);
    }

    void resultIsValueComputedLast()
    {
        // Postfix "1 2 + 5": the stack top is 5, but 3 was computed last.
        const Expression e = Expression::fromFormula("(1+2)5");
        QCOMPARE(e.postfix(), QStringList({"1", "2", "+", "5"}));
        QCOMPARE(ExpressionEvaluator().evaluate(e), 3.0);

        // Operands alone compute nothing.
        QCOMPARE(ExpressionEvaluator().evaluate(Expression::fromFormula("(1)(2)")), 0.0);
    }

    void listsAndExpressionAgree()
    {
        const QString formula = "a*2+(ADC.CTRL[7:4]<<1)";
        QStringList tokens, literals, names;
        bool hasString = false;
        ExpressionCompiler::tokenise(ExpressionCompiler::cleanFormula(formula), tokens, literals, names, hasString);
        const QStringList postfix = ExpressionCompiler::toPostfix(tokens, literals, names);

        bool ok = false;
        QCOMPARE(ExpressionEvaluator().evaluate(postfix, literals, names, &ok), 5.0 * 2 + (3 << 1));
        QVERIFY(ok);
    }

    void elementOperands_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<double>("expected");

        QTest::newRow("plain define") << "a*2" << 10.0;
        QTest::newRow("define with bit selection") << "ADC.CTRL[7:4]+1" << 4.0;
        QTest::newRow("value selector") << "a.value+1" << 6.0;
        QTest::newRow("definevalue selector") << "ADC.CTRL[7:4].definevalue" << double(3 << 4);
        QTest::newRow("value selector repeated") << "a.value.value" << 5.0;
        QTest::newRow("definevalue in formula") << "ADC.CTRL[7:4].definevalue>>4" << 3.0;
        QTest::newRow("record through single precision") << "big" << double(1u << 24);
        QTest::newRow("record difference") << "big-16777216" << 0.0;
        QTest::newRow("record") << "thousand/8" << 125.0;
        QTest::newRow("float record") << "f*2" << 2.5;
        QTest::newRow("element before record") << "a+0" << 5.0;
    }

    void elementOperands()
    {
        QFETCH(QString, formula);
        QFETCH(double, expected);
        QCOMPARE(evaluateFormula(formula), expected);
        QVERIFY2(m_sink->errors.isEmpty(), qPrintable(m_sink->errors.join('\n')));
    }

    void operandsAreReadAtEachEvaluation()
    {
        const Expression e = Expression::fromFormula("a*a+1");
        ExpressionEvaluator evaluator;
        QCOMPARE(evaluator.evaluate(e), 26.0);
        m_a->number = 7;
        QCOMPARE(evaluator.evaluate(e), 50.0);
        m_a->number = -1;
        QCOMPARE(evaluator.evaluate(e), 2.0);
    }

    void unknownOperandReportsReducedName_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<double>("expected");
        QTest::addColumn<QString>("message");

        QTest::newRow("unknown name") << "nope+1" << 1.0 << "Invalid value in formula: \"nope\"";
        QTest::newRow("unknown with selector") << "nope.label*2" << 0.0 << "Invalid value in formula: \"nope\"";
        QTest::newRow("all occurrences removed") << "x.value.value" << 0.0 << "Invalid value in formula: \"x\"";
        QTest::newRow("lone operator") << "+" << 0.0 << "Invalid value in formula: \"+\"";
        QTest::newRow("string operand") << "\"on\"+1" << 1.0 << "Invalid value in formula: \"\"on\"\"";
        QTest::newRow("bad hexadecimal") << "0xZZ" << 0.0 << "Invalid value in formula: \"0xZZ\"";
        QTest::newRow("selector of other kind") << "a.typeinfo" << 0.0 << "Invalid value in formula: \"a\"";
    }

    void unknownOperandReportsReducedName()
    {
        QFETCH(QString, formula);
        QFETCH(double, expected);
        QFETCH(QString, message);
        bool ok = false;
        QCOMPARE(evaluateFormula(formula, &ok), expected);
        QVERIFY(ok);
        QCOMPARE(m_sink->errors, QStringList({message}));
    }

    void tabWidgetIndex()
    {
        ExpressionEvaluator::setTabIndexLookup([](const QString &name, int *index) {
            if (name != QLatin1String("TAB_ROOT"))
                return false;
            *index = 2;
            return true;
        });
        QCOMPARE(evaluateFormula("TAB_ROOT*10"), 20.0);
        QCOMPARE(evaluateFormula("TAB_ROOT.index+1"), 3.0);
        QVERIFY(m_sink->errors.isEmpty());
        QCOMPARE(evaluateFormula("TAB_OTHER"), 0.0);
        QCOMPARE(m_sink->errors, QStringList({"Invalid value in formula: \"TAB_OTHER\""}));
    }

    void noDocument()
    {
        DocumentTables::setCurrent(nullptr);
        QCOMPARE(evaluateFormula("a+1"), 1.0);
        QCOMPARE(m_sink->errors, QStringList({"Invalid value in formula: \"a\""}));
        // An evaluator bound to tables does not need the current ones.
        QCOMPARE(ExpressionEvaluator(m_tables).evaluate(Expression::fromFormula("a+1")), 6.0);
    }

    void randIgnoresItsArgument()
    {
        const Expression e = Expression::fromFormula("rand(0-1000)");
        QSet<double> seen;
        for (int i = 0; i < 50; ++i) {
            const double r = ExpressionEvaluator().evaluate(e);
            QCOMPARE(r, std::floor(r));
            QVERIFY(r >= 0 && r <= RAND_MAX);
            seen.insert(r);
        }
        QVERIFY(seen.size() > 1);
    }

    void hostileInput_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::newRow("only parentheses") << "(((";
        QTest::newRow("only closing") << ")))";
        QTest::newRow("reversed parentheses") << ")(";
        QTest::newRow("operators only") << "*/^%<<>>==!=";
        QTest::newRow("colon without question") << "a:b";
        QTest::newRow("conditional without values") << "?:";
        QTest::newRow("empty call") << "sqrt()";
        QTest::newRow("dangling minus") << "3*-";
        QTest::newRow("double dot") << "1..2";
        QTest::newRow("empty") << "";
        QTest::newRow("lone operator") << "+";
        QTest::newRow("lone minus") << "-";
        QTest::newRow("brackets") << "[[[]]]";
        QTest::newRow("quotes") << "\"\"\"";
        QTest::newRow("dots") << "....";
        QTest::newRow("non-ASCII") << QString::fromUtf8("µ+°C");
    }

    void hostileInput()
    {
        QFETCH(QString, formula);
        // Compiled: every operand step points at a prepared operand.
        const Expression e = Expression::fromFormula(formula);
        for (const Expression::Step &step : e.steps()) {
            if (step.op == Expression::Op::Operand)
                QVERIFY(step.operand >= 0 && step.operand < e.operands().size());
            else
                QCOMPARE(step.operand, -1);
        }
        QCOMPARE(e.steps().size(), e.postfix().size());
        bool ok = true;
        const double result = ExpressionEvaluator().evaluate(e, &ok);
        // No crash, and a finite result; any report is of the formula family.
        QVERIFY(std::isfinite(result));
        for (const QString &error : m_sink->errors)
            QVERIFY2(error.startsWith("Invalid value in formula: ") || error.startsWith("Can not return value"),
                     qPrintable(error));
    }

    void longFormula()
    {
        const int count = 2600;
        QStringList parts;
        for (int i = 0; i < count; ++i)
            parts << QStringLiteral("a");
        const QString formula = parts.join(QLatin1Char('+')) + QStringLiteral("-0x10");
        QVERIFY(formula.size() >= 5000);
        QCOMPARE(evaluateFormula(formula), 5.0 * count - 16);

        QString products;
        for (int i = 0; i < 2600; ++i)
            products += QStringLiteral("2*3+");
        products += QStringLiteral("1");
        QVERIFY(products.size() >= 10000);
        QCOMPARE(evaluateFormula(products), 6.0 * 2600 + 1);
    }

    void deepNesting()
    {
        const int depth = 20000;
        const QString nested = QString(depth, QLatin1Char('(')) + QStringLiteral("a+1") + QString(depth, QLatin1Char(')'));
        QCOMPARE(evaluateFormula(nested), 6.0);

        // Right-nested conditionals: every level is evaluated without recursion.
        QString chain;
        for (int i = 0; i < 5000; ++i)
            chain += QStringLiteral("0?%1:").arg(i);
        chain += QStringLiteral("a");
        QCOMPARE(evaluateFormula(chain), 5.0);

        QString unary = QStringLiteral("2");
        for (int i = 0; i < 3000; ++i)
            unary.prepend(QStringLiteral("1*-"));
        // An even number of minus signs.
        QCOMPARE(evaluateFormula(unary), 2.0);
    }

    void condition_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("expected");
        QTest::addColumn<bool>("refused");

        QTest::newRow("empty is true") << "" << true << false;
        QTest::newRow("blanks only are true") << "   " << true << false;
        QTest::newRow("comparison true") << "a>3" << true << false;
        QTest::newRow("comparison false") << "a>10" << false << false;
        QTest::newRow("blanks removed") << "a == 5" << true << false;
        QTest::newRow("non-zero value") << "a-4" << true << false;
        QTest::newRow("zero value") << "a-5" << false << false;
        QTest::newRow("negative is true") << "a-6" << true << false;
        QTest::newRow("minus minus is not rewritten") << "a--5==10" << true << false;
        QTest::newRow("conditional") << "a>3?0:1" << false << false;
        QTest::newRow("bitwise") << "a.*4" << true << false;
        QTest::newRow("refused operator") << "a~1" << false << true;
        QTest::newRow("single equal") << "a = 1" << false << true;
    }

    void condition()
    {
        QFETCH(QString, text);
        QFETCH(bool, expected);
        QFETCH(bool, refused);
        QCOMPARE(ExpressionEvaluator().evaluateCondition(text), expected);
        QCOMPARE(ExpressionEvaluator().evaluateEnabled(text), expected);
        // A formula that can't be computed is told, as written, by both.
        const QString message = QStringLiteral("Invalid formula: \"%1\"").arg(text);
        QCOMPARE(m_sink->errors, refused ? (QStringList{message, message}) : QStringList());
    }

    void stringCondition_data()
    {
        QTest::addColumn<QString>("classWord");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("condition");
        QTest::addColumn<bool>("expected");

        QTest::newRow("equal") << "LineEdit" << "abc" << "name==\"abc\"" << true;
        QTest::newRow("equal fails") << "LineEdit" << "abd" << "name==\"abc\"" << false;
        QTest::newRow("not equal") << "LineEdit" << "abd" << "name!=\"abc\"" << true;
        QTest::newRow("not equal fails") << "LineEdit" << "abc" << "name!=\"abc\"" << false;
        QTest::newRow("case-sensitive") << "LineEdit" << "ABC" << "name==\"abc\"" << false;
        QTest::newRow("text edit") << "EditBox" << "abc" << "name==\"abc\"" << true;
        QTest::newRow("blanks removed from string") << "LineEdit" << "ab" << "name == \"a b\"" << true;
        QTest::newRow("empty string") << "LineEdit" << "" << "name==\"\"" << true;
        QTest::newRow("other class") << "ComboBox" << "abc" << "name==\"abc\"" << false;
        QTest::newRow("other operator") << "LineEdit" << "abc" << "name<\"abc\"" << false;
        QTest::newRow("unknown element") << "LineEdit" << "abc" << "other==\"abc\"" << false;
        QTest::newRow("more than three tokens") << "LineEdit" << "abc" << "name==\"abc\"+0" << false;
        QTest::newRow("string first") << "LineEdit" << "abc" << "\"abc\"==name" << false;
    }

    void stringCondition()
    {
        QFETCH(QString, classWord);
        QFETCH(QString, text);
        QFETCH(QString, condition);
        QFETCH(bool, expected);

        TextFake field("name", classWord);
        field.text = text;
        m_tables->addElement("name", &field);
        QCOMPARE(ExpressionEvaluator().evaluateCondition(condition), expected);
        m_tables->elements.remove("name");
        m_tables->elementList.remove(&field);
    }

    void enabledHasNoStringBranch()
    {
        TextFake field("name", "LineEdit");
        field.text = "xyz";
        m_tables->addElement("name", &field);

        QVERIFY(!ExpressionEvaluator().evaluateCondition("name==\"abc\""));
        QVERIFY(m_sink->errors.isEmpty());
        // Numerically both sides read as 0, and the string is not a value.
        QVERIFY(ExpressionEvaluator().evaluateEnabled("name==\"abc\""));
        QCOMPARE(m_sink->errors, QStringList({"Invalid value in formula: \"\"abc\"\""}));

        m_tables->elements.remove("name");
        m_tables->elementList.remove(&field);
    }

private:
    DocumentTables *m_tables = nullptr;
    RecordingSink *m_sink = nullptr;
    FakeElement *m_a = nullptr;
    FakeElement *m_bits = nullptr;
};

QTEST_MAIN(TestExpressionEvaluator)
#include "tst_expressionevaluator.moc"
