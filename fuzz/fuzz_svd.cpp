// SVD files come from chip vendors and from users' own edits: the reader
// must survive any bytes. One input is one SVD file, read as the program
// reads it: after the example's form has claimed its register bits, so that
// sizes, fields and enumerated values meet real claims.
#include "FuzzEnvironment.h"

#include "model/SvdReader.h"
#include "reader/DescriptionReader.h"
#include "shell/Document.h"

#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    FuzzEnvironment::start(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzEnvironment &environment = FuzzEnvironment::instance();
    Document document(nullptr);
    if (!document.read(environment.examplePath(), ReaderOptions())) {
        std::fprintf(stderr, "fuzz: cannot read the example: %s\n", qPrintable(document.errorText()));
        std::abort();
    }
    SvdReader reader(document.model());
    reader.setFileName(QStringLiteral("fuzz.svd"));
    if (!reader.read(QByteArray(reinterpret_cast<const char *>(data), int(size))))
        (void)reader.errorString();
    document.clear();
    return 0;
}
