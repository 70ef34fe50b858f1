// quillon-svd-complete: writes a copy of a vendor CMSIS-SVD file that the
// program's SVD reader takes whole (see tooling/SvdCompleter.h).
#include "tooling/SvdCompleter.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTextStream>

namespace {

const char kUsage[] =
    "Usage: quillon-svd-complete [--quiet] <input.svd> [<output.svd>]\n"
    "\n"
    "Writes a completed copy of a CMSIS-SVD file for Quillon's SVD reader:\n"
    "  - derivedFrom peripherals, registers, clusters, fields and enumerations expanded;\n"
    "  - dim arrays and clusters unrolled into plain registers (CLUSTER_REGISTER names);\n"
    "  - size, access and reset value inherited from device and peripheral written on every register;\n"
    "  - bitOffset/bitWidth and bitRange turned into lsb/msb;\n"
    "  - every peripheral, register and field names itself first.\n"
    "Without <output.svd> the copy is <input>_completed.svd beside the input.\n"
    "\n"
    "Options:\n"
    "  -q, --quiet   print errors only\n"
    "  -h, --help    show this text\n"
    "\n"
    "Exit code: 0 written, 1 the input can't be completed (nothing written), 2 bad arguments.\n";

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList files;
    bool quiet = false;
    const QStringList args = app.arguments().mid(1);
    for (const QString &a : args) {
        if (a == QLatin1String("-h") || a == QLatin1String("--help")) {
            out << kUsage;
            return 0;
        }
        if (a == QLatin1String("-q") || a == QLatin1String("--quiet"))
            quiet = true;
        else if (a.startsWith('-') && a.size() > 1)
            files.append(QString()), err << "Unknown option " << a << "\n";
        else
            files.append(a);
    }
    if (files.isEmpty() || files.size() > 2 || files.contains(QString())) {
        err << kUsage;
        return 2;
    }
    const QString input = files[0];
    const QString output = files.value(1, SvdCompleter::defaultOutputPath(input));
    SvdCompleter completer;
    const bool ok = completer.completeFile(input, output);
    if (!quiet) {
        for (const QString &w : completer.warnings())
            err << "warning: " << w << "\n";
    }
    if (!ok) {
        err << "error: " << completer.errorString() << "\n";
        return 1;
    }
    if (!quiet)
        out << QStringLiteral("%1: %2 peripherals, %3 registers, %4 fields written to %5\n")
                   .arg(input)
                   .arg(completer.peripheralCount())
                   .arg(completer.registerCount())
                   .arg(completer.fieldCount())
                   .arg(output);
    return 0;
}
