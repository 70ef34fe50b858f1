#include "views/PinMappingExport.h"

#include "elements/Reports.h"
#include "shell/Dialogs.h"
#include "views/PinMappingDocument.h"
#include "views/PinMappingState.h"

#include <QObject>
#include <QSaveFile>
#include <QVector>

QString PinMappingExport::csvText(const PinMappingDocument &document, DocumentTables *tables)
{
    const PinMappingState state = PinMappingState::evaluate(document, tables);
    // The functions of each pin, in the order of their conditions.
    QVector<QStringList> perPin(document.pins.size());
    for (const PinMappingState::Placement &p : state.placements())
        perPin[p.pin].append(document.entries.at(p.entry).shownName());

    QString out;
    for (int i = 0; i < document.pins.size(); ++i) {
        out += document.pins.at(i).pinname;
        out += QLatin1Char(';');
        for (const QString &name : qAsConst(perPin[i])) {
            out += name;
            out += QLatin1Char(';');
        }
        out += QLatin1Char('\n');
    }
    return out;
}

bool PinMappingExport::writeFile(const QString &path, const QString &text, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    file.write(text.toUtf8());
    if (!file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

bool PinMappingExport::exportToFile(const PinMappingDocument &document, QWidget *parent)
{
    const QString path = Dialogs::saveFileName(parent, QObject::tr("Save mapping to CSV"), QString(),
                                               QObject::tr("CSV Files (*.csv)"));
    if (path.isEmpty())
        return false;
    QString error;
    if (!writeFile(path, csvText(document), &error)) {
        Report::cannotOpenFile(path, error);
        return false;
    }
    return true;
}
