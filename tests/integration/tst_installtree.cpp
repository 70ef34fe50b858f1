#include <QtTest>

#include "QuillonRun.h"
#include "shell/CommandLine.h"

#include <QDirIterator>
#include <QImage>
#include <QMimeDatabase>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

// The install tree: cmake --install into a scratch prefix gives a program
// folder with everything the program finds beside itself, a command on the
// PATH, the desktop entry, icon, file types and manual page; and the
// installed program does the main job on the bundled example.
class TestInstallTree : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefix;
    QString m_program;

    struct Result
    {
        int exitCode = -1;
        QString output;
    };

    static Result runTool(const QString &program, const QStringList &args, const QProcessEnvironment &env =
                                                                               QProcessEnvironment::systemEnvironment())
    {
        QProcess p;
        p.setProcessEnvironment(env);
        p.setProcessChannelMode(QProcess::MergedChannels);
        p.setStandardInputFile(QProcess::nullDevice());
        p.start(program, args);
        Result r;
        if (!p.waitForStarted(10000))
            return r;
        if (!p.waitForFinished(120000)) {
            p.kill();
            p.waitForFinished(5000);
            return r;
        }
        r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
        r.output = QString::fromLocal8Bit(p.readAll());
        return r;
    }

    QString installed(const QString &relative) const { return m_prefix.filePath(relative); }

private slots:
    void initTestCase()
    {
        QVERIFY(m_prefix.isValid());
        // A helper script and a schema that the build put beside the
        // program join the install by their names alone.
        const QString probe = QuillonRun::buildDir() + QStringLiteral("/quillon-install-probe");
        const QString schema = QuillonRun::buildDir() + QStringLiteral("/install-probe.xsd");
        QVERIFY(writeTextFile(probe, "#!/bin/sh\necho probe \"$@\"\n"));
        QFile::setPermissions(probe, QFile::permissions(probe) | QFileDevice::ExeOwner | QFileDevice::ExeGroup);
        QVERIFY(writeTextFile(schema, "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\"/>\n"));
        const Result r = runTool(QStringLiteral("cmake"),
                                 {"--install", QuillonRun::buildDir(), "--prefix", m_prefix.path()});
        QFile::remove(probe);
        QFile::remove(schema);
        QVERIFY2(r.exitCode == 0, qPrintable(r.output));
        m_program = installed(QStringLiteral("lib/quillon"));
    }

    void commandOnThePathFindsTheProgramFolder()
    {
        const QFileInfo link(installed(QStringLiteral("bin/quillon")));
        QVERIFY(link.isSymLink());
        QVERIFY(QFileInfo(link.symLinkTarget()).isRelative() || link.symLinkTarget().startsWith(m_prefix.path()));
        QCOMPARE(QFileInfo(link.canonicalFilePath()).absolutePath(), QFileInfo(m_program).canonicalFilePath());
        QVERIFY(QFileInfo(m_program + QStringLiteral("/quillon")).isExecutable());
    }

    void helpersJoinByName()
    {
        QVERIFY(QFileInfo(m_program + QStringLiteral("/quillon-install-probe")).isExecutable());
        QVERIFY(QFileInfo::exists(m_program + QStringLiteral("/install-probe.xsd")));
        const Result r = runTool(installed(QStringLiteral("bin/quillon-install-probe")), {"x"});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.output, QStringLiteral("probe x\n"));
    }

    void runtimeFilesLieBesideTheProgram()
    {
        // Everything the build places beside the executable from the
        // sources' runtime folder and examples.
        int checked = 0;
        for (const QString &root : {QStringLiteral("resources/runtime"), QStringLiteral("examples")}) {
            const QString source = QuillonRun::sourceDir() + QLatin1Char('/') + root;
            QDirIterator it(source, QDir::Files, QDirIterator::Subdirectories);
            while (it.hasNext()) {
                const QString file = it.next();
                if (file.endsWith(QLatin1String("screenshot.png")))
                    continue;
                QString relative = QDir(source).relativeFilePath(file);
                if (root == QLatin1String("examples"))
                    relative.prepend(QStringLiteral("examples/"));
                QVERIFY2(QFileInfo::exists(m_program + QLatin1Char('/') + relative), qPrintable(relative));
                ++checked;
            }
        }
        QVERIFY(checked >= 5);
        QVERIFY(QFileInfo::exists(m_program + QStringLiteral("/settings.ini")));
        QVERIFY(QFileInfo::exists(m_program + QStringLiteral("/scripts/index.xml")));
        // Helper tools built beside the program are installed beside it.
        QDirIterator helpers(QuillonRun::buildDir(), {QStringLiteral("quillon-*")}, QDir::Files | QDir::Executable);
        while (helpers.hasNext()) {
            const QString name = QFileInfo(helpers.next()).fileName();
            QVERIFY2(QFileInfo(m_program + QLatin1Char('/') + name).isExecutable(), qPrintable(name));
            QVERIFY2(QFileInfo(installed(QStringLiteral("bin/") + name)).isSymLink(), qPrintable(name));
        }
    }

    void installedProgramDoesTheMainJob()
    {
        QTemporaryDir work;
        QTemporaryDir config;
        const QString example = m_program + QStringLiteral("/examples/nrf52840");
        for (const QString &name : QDir(example).entryList(QDir::Files))
            QVERIFY(QFile::copy(example + QLatin1Char('/') + name, work.filePath(name)));
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), config.path());
        const QString log = work.filePath(QStringLiteral("console.log"));
        const Result r = runTool(installed(QStringLiteral("bin/quillon")),
                                 {"-q", "-s", "-c" + log, work.filePath(QStringLiteral("nrf52840_board.xml"))}, env);
        QCOMPARE(r.exitCode, 0);
        QVERIFY(QFileInfo::exists(work.filePath(QStringLiteral("nrf52840_board.qlnp"))));
        // Every header the description names was written.
        const QString description = readTextFile(work.filePath(QStringLiteral("nrf52840_board.xml")));
        QRegularExpression header(QStringLiteral("<header file=\"([^\"]+)\""));
        int headers = 0;
        for (auto it = header.globalMatch(description); it.hasNext();) {
            const QString name = it.next().captured(1);
            QVERIFY2(readTextFile(work.filePath(name)).contains(QLatin1String("#define")),
                     qPrintable(name + QStringLiteral("\n") + readTextFile(log)));
            ++headers;
        }
        QVERIFY(headers >= 1);
    }

    void desktopEntryIsValid()
    {
        const QString entry = installed(QStringLiteral("share/applications/quillon.desktop"));
        QVERIFY(QFileInfo::exists(entry));
        const Result r = runTool(QStringLiteral("desktop-file-validate"), {entry});
        QVERIFY2(r.exitCode == 0, qPrintable(QStringLiteral("desktop-file-validate (desktop-file-utils): ") + r.output));
        const QString text = readTextFile(entry);
        QVERIFY(text.contains(QLatin1String("Exec=quillon %f")));
        QVERIFY(text.contains(QLatin1String("application/x-quillon-configuration;")));
        QVERIFY(text.contains(QLatin1String("application/x-quillon-description;")));
        QVERIFY(QFileInfo(installed(QStringLiteral("share/icons/hicolor/64x64/apps/quillon.png"))).size() > 0);
        QCOMPARE(QImage(installed(QStringLiteral("share/icons/hicolor/64x64/apps/quillon.png"))).size(), QSize(64, 64));
    }

    void fileTypesOpenWithQuillon()
    {
        const QString package = installed(QStringLiteral("share/mime/packages/quillon.xml"));
        QFile f(package);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&f);
        QStringList seen;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement) {
                const auto a = xml.attributes();
                if (xml.name() == QLatin1String("glob"))
                    seen << QStringLiteral("glob ") + a.value(QLatin1String("pattern")).toString();
                else if (xml.name() == QLatin1String("root-XML"))
                    seen << QStringLiteral("root ") + a.value(QLatin1String("localName")).toString();
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QVERIFY(seen.contains(QStringLiteral("glob *.qlnp")));
        QVERIFY(seen.contains(QStringLiteral("root nvxmlcfg")));

        // The shared MIME database built from the installed package knows
        // configurations by their ending.
        const Result r = runTool(QStringLiteral("update-mime-database"), {installed(QStringLiteral("share/mime"))});
        QVERIFY2(r.exitCode == 0, qPrintable(r.output));
        QVERIFY(readTextFile(installed(QStringLiteral("share/mime/globs2"))).contains(
            QLatin1String("application/x-quillon-configuration:*.qlnp")));
        QVERIFY(QFileInfo::exists(installed(QStringLiteral("share/mime/application/x-quillon-description.xml"))));
    }

    void manualPageCoversEveryOption()
    {
        const QString page = installed(QStringLiteral("share/man/man1/quillon.1.gz"));
        QVERIFY(QFileInfo::exists(page));
        const Result r = runTool(QStringLiteral("gzip"), {"-dc", page});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.output.startsWith(QLatin1String(".TH QUILLON 1")));
        // Every option of the usage text has an entry of its own.
        QRegularExpression option(QStringLiteral("^  -(.)"), QRegularExpression::MultilineOption);
        int options = 0;
        for (auto it = option.globalMatch(CommandLine::usageText()); it.hasNext();) {
            const QString letter = it.next().captured(1);
            const QRegularExpression entry(QStringLiteral("^\\.TP\\n\\.(B|BI|BR) \\\\-") + QRegularExpression::escape(letter),
                                           QRegularExpression::MultilineOption);
            QVERIFY2(entry.match(r.output).hasMatch(), qPrintable(letter));
            ++options;
        }
        QCOMPARE(options, 11);
    }
};

QTEST_MAIN(TestInstallTree)
#include "tst_installtree.moc"
