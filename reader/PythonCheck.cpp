#include "reader/PythonCheck.h"

#include "elements/MessageSink.h"
#include "shell/Dialogs.h"

#include <QCoreApplication>
#include <QFileInfo>

QString PythonCheck::bridgePath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/libquillon_python.so");
}

bool PythonCheck::bridgeAvailable()
{
    return QFileInfo::exists(bridgePath());
}

QString PythonCheck::missingText()
{
    return QStringLiteral(
        "WARNING: \nThis script uses Python but this is not installed correctly.\n"
        "Please ensure that Python 3 and the Quillon Python bridge (%1) are installed correctly.\n\n"
        "The script can not be executed.").arg(bridgePath());
}

void PythonCheck::warnMissing()
{
    if (Dialogs::quiet()) {
        consolePrint(QStringLiteral("<font color=\"red\"><b>Python integration: </b></font>%1<br>")
                         .arg(missingText().toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"))));
        return;
    }
    Dialogs::question(nullptr, QMessageBox::Warning, QStringLiteral("Python integration"), missingText(),
                      QMessageBox::Ok, QMessageBox::Ok);
}
