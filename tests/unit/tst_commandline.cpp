#include <QtTest>

#include "reader/StartCondition.h"
#include "reader/VersionCheck.h"
#include "shell/AppVersion.h"
#include "shell/CommandLine.h"

static StartOptions parse(const QStringList &args)
{
    return CommandLine::parse(QStringList{QStringLiteral("quillon")} + args);
}

// Every option the arguments set, in a fixed order.
static QString summary(const StartOptions &o)
{
    QStringList parts;
    const QList<QPair<bool, const char *>> flags{{o.generate, "g"}, {o.quiet, "q"}, {o.keil, "k"}, {o.exitAfterKeil, "x"},
                                                 {o.save, "s"}, {o.usageRequested, "?"}};
    for (const auto &flag : flags) {
        if (flag.first)
            parts << QLatin1String(flag.second);
    }
    const QList<QPair<QString, const char *>> texts{{o.consoleLogFile, "c="}, {o.outputLogFile, "o="}, {o.batchFile, "b="},
                                                    {o.includePaths, "i="}, {o.defines, "d="}, {o.saveFile, "save="},
                                                    {o.fileName, "file="}, {o.hints.join(QLatin1Char('/')), "hints="}};
    for (const auto &text : texts) {
        if (!text.first.isEmpty())
            parts << QLatin1String(text.second) + text.first;
    }
    return parts.join(QLatin1Char('|'));
}

// The command line, the start conditions it feeds and the version rules of
// descriptions.
class TestCommandLine : public QObject
{
    Q_OBJECT
private slots:
    void options_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("options");
        // The argument is trimmed as a whole; its text starts right behind the
        // letter, blanks included (the items are trimmed when they are used).
        QTest::newRow("all") << QStringList{"-g", "-q", "-k", "-x", "-cmirror.log", "-oout.log", "-brun.script", "-ia;b", "-d x=1 ", "a.xml"}
                             << "g|q|k|x|c=mirror.log|o=out.log|b=run.script|i=a;b|d= x=1|file=a.xml";
        QTest::newRow("defines accumulate") << QStringList{"-da=1", "-db=2"} << "d=a=1;b=2";
        QTest::newRow("include paths accumulate") << QStringList{"-ip1", "-ip2", "-ip3"} << "i=p1;p2;p3";
        QTest::newRow("assigning options keep the last") << QStringList{"-cfirst", "-csecond"} << "c=second";
        QTest::newRow("last file wins") << QStringList{"a.xml", "-q", "b.qlnp"} << "q|file=b.qlnp";
        QTest::newRow("lone dash is a file name") << QStringList{"a.xml", "-"} << "file=-";
        QTest::newRow("save without file") << QStringList{"-s", "a.xml"} << "s|file=a.xml";
        QTest::newRow("save to a file") << QStringList{"-sout.qlnp"} << "s|save=out.qlnp";
        QTest::newRow("unknown options ignored") << QStringList{"-z", "-Q", "--", "a.xml"} << "file=a.xml";
        QTest::newRow("usage") << QStringList{"-?", "a.xml"} << "?|file=a.xml";
    }

    void options()
    {
        QFETCH(QStringList, args);
        QTEST(summary(parse(args)), "options");
    }

    void detachedFileIsHinted()
    {
        // The parse keeps its rule (the script becomes the document); the user
        // is told why.
        const StartOptions o = parse({"a.xml", "-b", "run.script", "-q"});
        QVERIFY(o.batchFile.isEmpty());
        QCOMPARE(o.fileName, QStringLiteral("run.script"));
        QCOMPARE(o.hints, QStringList{QStringLiteral("Quillon: option -b is empty: its file follows the letter without a "
                                                     "blank (-brun.script); \"run.script\" is taken as the file to open.")});
        QVERIFY(parse({"-s", "a.xml", "-c", "-q", "-brun.script", "-o"}).hints.isEmpty());
    }

    void usageText()
    {
        const QStringList lines = CommandLine::usageText().split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.value(0), QStringLiteral("Quillon <Filename.xml | Filename.qlnp> [options]"));
        QCOMPARE(lines.value(1), QStringLiteral("Options:"));
        QCOMPARE(lines.size(), 13);
        for (int i = 2; i < lines.size(); ++i)
            QVERIFY2(lines.at(i).startsWith(QLatin1String("  -")), qPrintable(lines.at(i)));
        QVERIFY(lines.contains(QStringLiteral("  -s[<qlnpFile>]\tSave configuration file, with correct Hash, and generate header files")));
    }

    void relativeNames_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("inProgram");
        QTest::addColumn<QString>("inStart");
        QTest::addColumn<QString>("expected");
        QTest::newRow("both: the program's folder wins") << "a.xml" << "a.xml" << "a.xml" << "program/a.xml";
        QTest::newRow("only the starting folder") << "b.xml" << "" << "b.xml" << "start/b.xml";
        QTest::newRow("neither: left as given") << "c.xml" << "" << "" << "c.xml";
        QTest::newRow("sub folder of the program") << "sub/d.xml" << "sub/d.xml" << "" << "program/sub/d.xml";
    }

    void relativeNames()
    {
        QFETCH(QString, given);
        QFETCH(QString, inProgram);
        QFETCH(QString, inStart);
        QFETCH(QString, expected);
        QTemporaryDir root;
        const QDir program(root.filePath(QStringLiteral("program")));
        const QDir start(root.filePath(QStringLiteral("start")));
        auto touch = [](const QDir &dir, const QString &name) {
            if (name.isEmpty())
                return;
            QDir().mkpath(QFileInfo(dir.filePath(name)).absolutePath());
            QFile f(dir.filePath(name));
            QVERIFY(f.open(QIODevice::WriteOnly));
        };
        touch(program, inProgram);
        touch(start, inStart);
        QDir().mkpath(program.path());
        QDir().mkpath(start.path());

        // Inputs (document and script) follow the same rule; outputs always
        // belong to the starting folder, even when the program's folder
        // holds a file of that name.
        StartOptions o = parse({given, QStringLiteral("-b") + given, QStringLiteral("-c") + given,
                                QStringLiteral("-o") + given, QStringLiteral("-s") + given});
        CommandLine::resolveNames(o, start, program);
        const QString want = expected == given ? given : root.filePath(expected);
        QCOMPARE(o.fileName, want);
        QCOMPARE(o.batchFile, want);
        for (const QString &output : {o.consoleLogFile, o.outputLogFile, o.saveFile})
            QCOMPARE(output, start.absoluteFilePath(given));
    }

    void defineItems()
    {
        const auto items = CommandLine::defineItems(QStringLiteral(" a = 1 ;broken; b=x=y;c="));
        QCOMPARE(items.size(), 3);
        QCOMPARE(items.at(0).first, QStringLiteral("a"));
        QCOMPARE(items.at(0).second, QStringLiteral("1"));
        QCOMPARE(items.at(1).first, QStringLiteral("b"));
        QCOMPARE(items.at(1).second, QStringLiteral("x=y"));
        QCOMPARE(items.at(2).second, QString());
    }

    void startCondition_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("defines");
        QTest::addColumn<bool>("holds");
        QTest::newRow("no -d, nothing holds") << "a==1" << "" << false;
        QTest::newRow("equal") << "a==1" << "a=1" << true;
        QTest::newRow("unequal value") << "a==1" << "a=2" << false;
        QTest::newRow("other name") << "a==1" << "b=1" << false;
        QTest::newRow("alternatives") << "a==1;2;3" << "a=2" << true;
        QTest::newRow("quotes and blanks") << " a == \"x\" " << "a=x" << true;
        QTest::newRow("!= holds on the name alone") << "a!=b" << "a=b" << true;
        QTest::newRow("!= needs the name") << "a!=b" << "c=1" << false;
        QTest::newRow("== wins over !=") << "a==b!=c" << "a=b!=c" << true;
        QTest::newRow("no operator") << "a=1" << "a=1" << false;
        QTest::newRow("among several") << "mode==fast" << "x=1;mode=fast;y=2" << true;
    }

    void startCondition()
    {
        QFETCH(QString, condition);
        QFETCH(QString, defines);
        QFETCH(bool, holds);
        QCOMPARE(StartCondition::holds(condition, defines), holds);
    }

    void versionNumbers_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<quint64>("number");
        QTest::newRow("three parts") << "2.5.0" << quint64(2005000);
        QTest::newRow("padded") << "1.0" << quint64(1000000);
        QTest::newRow("one part") << "3" << quint64(3000000);
        QTest::newRow("missing") << "" << quint64(0);
        QTest::newRow("V1 form") << "0.9.9" << quint64(9009);
        QTest::newRow("fourth part ignored") << "2.5.0.7" << quint64(2005000);
    }

    void versionNumbers()
    {
        QFETCH(QString, version);
        QFETCH(quint64, number);
        QCOMPARE(VersionCheck::number(version), number);
    }

    void versionVerdicts_data()
    {
        const QString newer = QStringLiteral("%1.%2.%3").arg(AppVersion::major()).arg(AppVersion::minor()).arg(AppVersion::patch() + 1);
        QTest::addColumn<QString>("root");
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("homePage");
        QTest::addColumn<int>("verdict");
        QTest::newRow("current") << "nvxmlcfg" << AppVersion::text() << false << int(VersionCheck::Accepted);
        QTest::newRow("older") << "nvxmlcfg" << "2.0" << false << int(VersionCheck::Accepted);
        QTest::newRow("missing version") << "nvxmlcfg" << "" << false << int(VersionCheck::Accepted);
        QTest::newRow("V1 document") << "nvxmlcfg" << "0.9.9" << false << int(VersionCheck::OnlyV1);
        QTest::newRow("newer") << "nvxmlcfg" << newer << false << int(VersionCheck::TooNew);
        QTest::newRow("newer home page") << "nvxmlcfg" << newer << true << int(VersionCheck::Accepted);
        QTest::newRow("wrong root") << "foo" << "2.0" << false << int(VersionCheck::TooNew);
        QTest::newRow("wrong root home page") << "foo" << "" << true << int(VersionCheck::Accepted);
    }

    void versionVerdicts()
    {
        QFETCH(QString, root);
        QFETCH(QString, version);
        QFETCH(bool, homePage);
        QFETCH(int, verdict);
        QCOMPARE(int(VersionCheck::check(root, version, homePage)), verdict);
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
