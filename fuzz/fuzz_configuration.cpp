// Configuration files (.qlnp) are edited by hand, merged by version control
// and cut short by full disks. One input is one configuration file, read
// into the example's form once as a load and once as a comparison.
#include "FuzzEnvironment.h"

#include "config/ConfigurationReader.h"
#include "elements/DocumentTables.h"
#include "shell/MainWindow.h"

#include <QFile>
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
    FuzzEnvironment &environment = FuzzEnvironment::instance();
    MainWindow &window = environment.window();
    const QString path = environment.writeFile(QStringLiteral("fuzz.qlnp"),
                                               QByteArray(reinterpret_cast<const char *>(data), int(size)));
    for (const bool compareOnly : {false, true}) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            return 0;
        // As MainWindow::load does, minus the fallback to the home page.
        ConfigurationReader reader(window);
        window.tables().loading = true;
        if (!reader.read(&file, path, compareOnly))
            (void)reader.errorString();
        window.tables().loading = false;
    }
    return 0;
}
