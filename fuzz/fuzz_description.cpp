// Descriptions are written by hand and shared between users: the streaming
// reader, with everything it builds, must survive any bytes. One input is a
// description, optionally followed by a line "--8<--" and the text of
// "part.xml", which the description can pull in with <include>part.xml</include>
// (so the fuzzer mutates both sides of an include, $name$ substitution
// included).
#include "FuzzEnvironment.h"

#include "reader/DescriptionReader.h"
#include "shell/Document.h"

#include <QWidget>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    FuzzEnvironment::start(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEnvironment &environment = FuzzEnvironment::instance();
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    static const QByteArray cut("\n--8<--\n");
    const int at = bytes.indexOf(cut);
    const QString path = environment.writeFile(QStringLiteral("form.xml"), at < 0 ? bytes : bytes.left(at));
    environment.writeFile(QStringLiteral("part.xml"), at < 0 ? QByteArray() : bytes.mid(at + cut.size()));

    // As the program reads a description, but without a window: the
    // document owns the form, and clearing it must free all of it.
    Document document(nullptr);
    ReaderOptions options;
    options.includePaths = QStringLiteral("lib;") + environment.folder();
    if (!document.read(path, options))
        (void)document.errorText();
    document.clear();
    return 0;
}
