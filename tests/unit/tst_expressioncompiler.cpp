#include <QtTest>

#include "model/Expression.h"
#include "model/ExpressionCompiler.h"

// Tokens and postfix order of the formula language. Expected lists are
// written out by hand from the language's rules, one blank between tokens.
class TestExpressionCompiler : public QObject
{
    Q_OBJECT

private:
    static QString joined(const QStringList &list) { return list.join(QLatin1Char(' ')); }

private slots:
    void cleanFormula_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("cleaned");

        QTest::newRow("blanks removed") << " a +  b " << "a+b";
        QTest::newRow("tabs and line feeds") << "a\t*\n b" << "a*b";
        QTest::newRow("double minus becomes plus") << "a--5" << "a+5";
        QTest::newRow("double minus across blanks") << "a - -5" << "a+5";
        QTest::newRow("triple minus") << "a---5" << "a+-5";
        QTest::newRow("empty") << "" << "";
        QTest::newRow("only blanks") << "   \t " << "";
    }

    void cleanFormula()
    {
        QFETCH(QString, text);
        QFETCH(QString, cleaned);
        QCOMPARE(ExpressionCompiler::cleanFormula(text), cleaned);
    }

    void cleanConditionKeepsDoubleMinus()
    {
        QCOMPARE(ExpressionCompiler::cleanCondition(" a - -5 "), QStringLiteral("a--5"));
    }

    void tokenise_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tokens");
        QTest::addColumn<QString>("literals");
        QTest::addColumn<QString>("names");
        QTest::addColumn<bool>("hasString");

        // Unary minus
        QTest::newRow("minus after times") << "3*-2" << "3 * ( 0 - 2 )" << "3 0 2" << "" << false;
        QTest::newRow("minus after divide") << "a/-b" << "a / ( 0 - b )" << "0" << "a b" << false;
        QTest::newRow("minus after power") << "2^-1" << "2 ^ ( 0 - 1 )" << "2 0 1" << "" << false;
        QTest::newRow("minus after open") << "(-a)" << "( ( 0 - a ) )" << "0" << "a" << false;
        QTest::newRow("minus after shift") << "1<<-2" << "1 << ( 0 - 2 )" << "1 0 2" << "" << false;
        QTest::newRow("minus after less-equal") << "a<=-1" << "a <= ( 0 - 1 )" << "0 1" << "a" << false;
        QTest::newRow("close follows next operand only") << "3*-2+1" << "3 * ( 0 - 2 ) + 1" << "3 0 2 1" << "" << false;
        QTest::newRow("leading minus stays in literal") << "-5+2" << "-5 + 2" << "-5 2" << "" << false;
        QTest::newRow("binary minus") << "a-5" << "a - 5" << "5" << "a" << false;
        QTest::newRow("minus after greater is a literal") << "a>-1" << "a > -1" << "-1" << "a" << false;
        QTest::newRow("minus minus in a condition") << "a--5" << "a - -5" << "-5" << "a" << false;
        QTest::newRow("minus before parenthesis") << "a-(b)" << "a - ( b )" << "" << "a b" << false;

        // Dot operators and dotted names
        QTest::newRow("dot plus is or") << "5.+3" << "5 | 3" << "5 3" << "" << false;
        QTest::newRow("dot times is and") << "6.*3" << "6 & 3" << "6 3" << "" << false;
        QTest::newRow("dot caret is xor") << "6.^3" << "6 _ 3" << "6 3" << "" << false;
        QTest::newRow("written underscore stays in name") << "a_b+1" << "a_b + 1" << "1" << "a_b" << false;
        QTest::newRow("dotted define") << "ADC.CTRL.label*2" << "ADC.CTRL.label * 2" << "2" << "ADC.CTRL.label" << false;
        QTest::newRow("decimal point") << "1.5*2" << "1.5 * 2" << "1.5 2" << "" << false;
        QTest::newRow("trailing dot dropped") << "5." << "5" << "5" << "" << false;

        // Bit selections keep their colon
        QTest::newRow("bit selection") << "ADC.CTRL[7:4]+1" << "ADC.CTRL[7:4] + 1" << "1" << "ADC.CTRL[7:4]" << false;
        QTest::newRow("bit selection in conditional") << "R[1:0]?1:2" << "R[1:0] ? 1 : 2" << "1 2" << "R[1:0]" << false;
        QTest::newRow("unclosed bit selection") << "R[1:0" << "R[1:0" << "" << "R[1:0" << false;

        // Compound operators
        QTest::newRow("shift left") << "a<<2" << "a << 2" << "2" << "a" << false;
        QTest::newRow("shift right") << "a>>2" << "a >> 2" << "2" << "a" << false;
        QTest::newRow("less") << "a<b" << "a < b" << "" << "a b" << false;
        QTest::newRow("greater or equal") << "a>=b" << "a >= b" << "" << "a b" << false;
        QTest::newRow("equal") << "a==1" << "a == 1" << "1" << "a" << false;
        QTest::newRow("not equal") << "a!=1" << "a != 1" << "1" << "a" << false;
        QTest::newRow("single equal") << "a=1" << "a = 1" << "1" << "a" << false;
        QTest::newRow("not") << "!a" << "! a" << "" << "a" << false;
        QTest::newRow("modulo and tilde") << "a%b~c" << "a % b ~ c" << "" << "a b c" << false;
        QTest::newRow("conditional") << "a?b:c" << "a ? b : c" << "" << "a b c" << false;
        QTest::newRow("shift then parenthesis") << "1<<(2)" << "1 << ( 2 )" << "1 2" << "" << false;

        // Functions, hexadecimal, strings
        QTest::newRow("function") << "sqrt(a)" << "sqrt ( a )" << "" << "a" << false;
        QTest::newRow("log10 is a function") << "log10(100)" << "log10 ( 100 )" << "100" << "" << false;
        QTest::newRow("function name is case-sensitive") << "SQRT(a)" << "SQRT ( a )" << "" << "SQRT a" << false;
        QTest::newRow("hexadecimal") << "0x1F&a" << "0x1F & a" << "0x1F" << "a" << false;
        QTest::newRow("string") << "a==\"on\"" << "a == \"on\"" << "\"on\"" << "a" << true;

        // Pending operator at the end is dropped
        QTest::newRow("trailing times") << "a*" << "a" << "" << "a" << false;
        QTest::newRow("trailing less") << "a<" << "a" << "" << "a" << false;
        QTest::newRow("empty") << "" << "" << "" << "" << false;
    }

    void tokenise()
    {
        QFETCH(QString, text);
        QFETCH(QString, tokens);
        QFETCH(QString, literals);
        QFETCH(QString, names);
        QFETCH(bool, hasString);

        QStringList t, l, n;
        bool s = false;
        ExpressionCompiler::tokenise(text, t, l, n, s);
        QCOMPARE(joined(t), tokens);
        QCOMPARE(joined(l), literals);
        QCOMPARE(joined(n), names);
        QCOMPARE(s, hasString);
    }

    void toPostfix_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QString>("postfix");

        QTest::newRow("times before plus") << "1+2*3" << "1 2 3 * +";
        QTest::newRow("left to right") << "8-3-2" << "8 3 - 2 -";
        QTest::newRow("plus after times") << "1*2+3" << "1 2 * 3 +";
        QTest::newRow("comparison lowest") << "a+1<b*2" << "a 1 + b 2 * <";
        QTest::newRow("parentheses") << "(1+2)*3" << "1 2 + 3 *";
        QTest::newRow("shift takes the rest") << "1<<2+3" << "1 2 3 + <<";
        QTest::newRow("shift inside parentheses") << "(1<<2)+3" << "1 2 << 3 +";
        QTest::newRow("power takes the rest") << "2^3+1" << "2 3 1 + ^";
        QTest::newRow("power takes a product") << "2^3*2" << "2 3 2 * ^";
        QTest::newRow("modulo takes the rest") << "7%2+1" << "7 2 1 + %";
        QTest::newRow("or pops like plus") << "1.+2.+3" << "1 2 | 3 |";
        QTest::newRow("conditional") << "a?b:c" << "a b c : ?";
        QTest::newRow("conditional binds last") << "1+a?2:3" << "1 a + 2 3 : ?";
        QTest::newRow("nested conditional") << "a?b:c?d:e" << "a b c d e : ? : ?";
        QTest::newRow("function") << "sqrt(a)+1" << "a sqrt 1 +";
        QTest::newRow("function of expression") << "abs(a-b)*2" << "a b - abs 2 *";
        QTest::newRow("unary minus") << "3*-2" << "3 0 2 - *";
        QTest::newRow("single equal kept") << "a=1" << "a 1 =";
        QTest::newRow("unclosed parenthesis") << "((1+2" << "1 2 +";
        QTest::newRow("extra closing") << "1+2))" << "1 2 +";
        QTest::newRow("operator below open parenthesis is lost") << "3*-" << "3 0 -";
    }

    void toPostfix()
    {
        QFETCH(QString, formula);
        QFETCH(QString, postfix);
        QCOMPARE(joined(Expression::fromFormula(formula).postfix()), postfix);

        // The same through the separate stages.
        QStringList t, l, n;
        bool s = false;
        ExpressionCompiler::tokenise(ExpressionCompiler::cleanFormula(formula), t, l, n, s);
        QCOMPARE(joined(ExpressionCompiler::toPostfix(t, l, n)), postfix);
    }

    void formulaNamesAreUnique()
    {
        const Expression e = Expression::fromFormula("a+b*a-a.label+b");
        QCOMPARE(e.names(), QStringList({"a", "b", "a.label"}));
        QVERIFY(e.dependsOn("a.label"));
        QVERIFY(!e.dependsOn("c"));
    }

    void conditionKeepsBlanksOutOfStrings()
    {
        const Expression e = Expression::fromCondition("name == \"two words\"");
        QVERIFY(e.hasString());
        QCOMPARE(e.postfix(), QStringList({"name", "\"twowords\"", "=="}));
    }

    void addDependentEntersEachNameOnce()
    {
        QHash<QString, QList<QObject *>> table;
        QObject first, second;
        const Expression a = Expression::fromFormula("x+y*x");
        a.addDependent(table, &first);
        a.addDependent(table, &first);
        Expression::fromFormula("y-1").addDependent(table, &second);

        QCOMPARE(table.value("x"), QList<QObject *>({&first}));
        QCOMPARE(table.value("y"), QList<QObject *>({&first, &second}));
        QVERIFY(!table.contains("1"));
    }

    void preparedListsSurviveRoundTrip()
    {
        // An owner may keep only the three lists and rebuild the expression.
        const Expression original = Expression::fromFormula("a*2+(b<<1)");
        const Expression rebuilt(original.postfix(), original.literals(), original.names());
        QCOMPARE(rebuilt.steps().size(), original.steps().size());
        for (int i = 0; i < rebuilt.steps().size(); ++i) {
            QCOMPARE(rebuilt.steps().at(i).op, original.steps().at(i).op);
            QCOMPARE(rebuilt.steps().at(i).operand, original.steps().at(i).operand);
        }
    }

    void longFormulaCompilesCompletely()
    {
        // Over 10,000 characters.
        const int count = 2600;
        QStringList parts;
        for (int i = 0; i < count; ++i)
            parts << QStringLiteral("v%1").arg(i % 100);
        const QString formula = parts.join(QLatin1Char('+'));
        QVERIFY(formula.size() >= 10000);

        const Expression e = Expression::fromFormula(formula);
        QCOMPARE(e.postfix().size(), 2 * count - 1);
        QCOMPARE(e.names().size(), 100);
        QCOMPARE(e.operands().size(), 100);
    }
};

QTEST_MAIN(TestExpressionCompiler)
#include "tst_expressioncompiler.moc"
