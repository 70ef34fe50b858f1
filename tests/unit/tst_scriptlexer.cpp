#include <QtTest>

#include "automation/ScriptCommands.h"
#include "automation/ScriptLexer.h"
#include "device/IntelHexReader.h"

// The lexical rules of script lines, the keyword table, the test-input
// generator and the Intel HEX reader of WRITEBSL.
class TestScriptLexer : public QObject
{
    Q_OBJECT
private slots:
    void lexing_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("keyword");
        QTest::addColumn<QStringList>("parameters");
        QTest::addColumn<bool>("isShort");
        QTest::newRow("plain") << "Set(a,1)" << "Set" << QStringList{"a", "1"} << false;
        QTest::newRow("blanks kept") << "  Assert( a , value, 1 )  " << "Assert" << QStringList{" a ", " value", " 1 "} << false;
        QTest::newRow("no closing parenthesis") << "Wait(100" << "Wait" << QStringList{"100"} << false;
        QTest::newRow("last parenthesis removed") << "Set(a,(1))" << "Set" << QStringList{"a", "(1)"} << false;
        QTest::newRow("text after the parenthesis stays") << "Set(a,1)x" << "Set" << QStringList{"a", "1x"} << false;
        QTest::newRow("no parenthesis") << "Clear" << "Clear" << QStringList{} << false;
        QTest::newRow("empty parentheses") << "Clear()" << "Clear" << QStringList{""} << false;
        QTest::newRow("commas can't be escaped") << "MessageBox(a, b)" << "MessageBox" << QStringList{"a", " b"} << false;
        QTest::newRow("short") << "x" << "" << QStringList{} << true;
        QTest::newRow("empty") << "   " << "" << QStringList{} << true;
    }

    void lexing()
    {
        QFETCH(QString, line);
        QFETCH(QString, keyword);
        QFETCH(QStringList, parameters);
        QFETCH(bool, isShort);
        const ScriptLine l = ScriptLexer::lex(line);
        QCOMPARE(l.isShort, isShort);
        QCOMPARE(l.keyword, keyword);
        QCOMPARE(l.parameters, parameters);
    }

    void comments()
    {
        ScriptLine l = ScriptLexer::lex(QStringLiteral("// only a comment"));
        QVERIFY(l.hasComment);
        QCOMPARE(l.comment, QStringLiteral("// only a comment"));
        QVERIFY(l.isShort);

        l = ScriptLexer::lex(QStringLiteral("Set(a,1) // why"));
        QCOMPARE(l.comment, QStringLiteral("// why"));
        QCOMPARE(l.parameters, (QStringList{"a", "1"}));

        // A message box keeps its slashes and has no comment of its own.
        l = ScriptLexer::lex(QStringLiteral("MessageBox(a//b) // note"));
        QVERIFY(!l.hasComment);
        QCOMPARE(l.parameter(0), QStringLiteral("a//b // note"));

        // At most 999 characters are cut: the rest of a longer comment is left.
        const QString longComment = QStringLiteral("Clear //") + QString(1200, QLatin1Char('x'));
        l = ScriptLexer::lex(longComment);
        QCOMPARE(l.keyword, QStringLiteral("Clear ") + QString(203, QLatin1Char('x')));
    }

    void keywordsIgnoreCase()
    {
        QVERIFY(ScriptCommands::find(QStringLiteral("set")));
        QCOMPARE(ScriptCommands::find(QStringLiteral("SetWaitTime"))->code, 14);
        QCOMPARE(ScriptCommands::find(QStringLiteral("SETTAVCHECK"))->need, 2);
        QCOMPARE(ScriptCommands::find(QStringLiteral("exit"))->need, 1);
        QVERIFY(!ScriptCommands::find(QStringLiteral("Foo")));
        // No keyword has code 19.
        for (const char *k : {"SETDEFINEPREFIX", "SETFILENAME"})
            QVERIFY(ScriptCommands::find(QLatin1String(k))->code != 19);
    }

    void randomNumbersRepeat()
    {
        quint32 a = 0;
        quint32 b = 0;
        QList<double> first;
        for (int i = 0; i < 1000; ++i) {
            const double x = ScriptCommands::nextRandom(a);
            QVERIFY(x >= 0.0 && x < 1.0);
            first << x;
        }
        for (int i = 0; i < 1000; ++i)
            QCOMPARE(ScriptCommands::nextRandom(b), first.at(i));
        // Not a constant: the numbers spread over the range.
        QVERIFY(*std::max_element(first.begin(), first.end()) > 0.9);
        QVERIFY(*std::min_element(first.begin(), first.end()) < 0.1);
    }

    void intelHex()
    {
        const QByteArray hex =
            ":020000040800F2\n"
            ":10000000000102030405060708090A0B0C0D0E0F78\n"
            ":0400100010111213A2\n"
            ":02002000AABB79\n"
            ":00000001FF\n"
            ":0400300099999999FF\n";
        const QList<MemoryBlock> blocks = IntelHexReader::parse(hex);
        QCOMPARE(blocks.size(), 2);
        QCOMPARE(blocks.at(0).address, 0x08000000u);
        QCOMPARE(blocks.at(0).bytes.size(), 20);
        QCOMPARE(quint8(blocks.at(0).bytes.at(19)), quint8(0x13));
        QCOMPARE(blocks.at(1).address, 0x08000020u);
        QCOMPARE(blocks.at(1).bytes, QByteArray("\xAA\xBB"));
        // Reading ends at the first line that is not a record.
        QCOMPARE(IntelHexReader::parse("garbage\n:02000000AABB99\n").size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestScriptLexer)
#include "tst_scriptlexer.moc"
