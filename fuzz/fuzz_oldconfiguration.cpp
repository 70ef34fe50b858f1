// The older #define configuration is plain text that users edit by hand.
// One input is one such file, applied to the example's form.
#include "FuzzEnvironment.h"

#include "config/OldConfigurationLoader.h"
#include "elements/DocumentTables.h"
#include "shell/Document.h"

#include <QWidget>
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
    FuzzEnvironment &environment = FuzzEnvironment::instance();
    MainWindow &window = environment.window();
    const QString path = environment.writeFile(QStringLiteral("old_config.h"),
                                               QByteArray(reinterpret_cast<const char *>(data), int(size)));
    // As MainWindow::loadOld does, minus the fallback to the home page.
    OldConfigurationLoader loader(window, window.document()->model());
    window.tables().loading = true;
    (void)loader.load(path);
    window.tables().loading = false;
    return 0;
}
