#include "elements/DisplayRefresh.h"

#include "elements/DocumentTables.h"
#include "elements/Image.h"
#include "elements/Led.h"
#include "elements/LogLabel.h"

#include <QPointer>

namespace {

// A copy of the dependents: a refresh may run actions that change the
// tables, or close the document, while the list is walked.
QList<QPointer<QObject>> dependents(DocumentTables *tables, QHash<QString, QList<QObject *>> DocumentTables::*table,
                                    const QString &define)
{
    QList<QPointer<QObject>> result;
    if (!tables || define.isEmpty())
        return result;
    const QList<QObject *> list = (tables->*table).value(define);
    for (QObject *object : list)
        result.append(object);
    return result;
}

} // namespace

QString DisplayRefresh::senderDefine(const QObject *sender)
{
    return sender ? sender->objectName() : QString();
}

int DisplayRefresh::leds(DocumentTables *tables, const QString &define)
{
    int count = 0;
    for (const QPointer<QObject> &object : dependents(tables, &DocumentTables::ledDependents, define)) {
        if (auto *led = qobject_cast<Led *>(object.data())) {
            if (led->refresh(tables))
                ++count;
        }
    }
    return count;
}

int DisplayRefresh::svgImages(DocumentTables *tables, const QString &define)
{
    int count = 0;
    for (const QPointer<QObject> &object : dependents(tables, &DocumentTables::svgImageDependents, define)) {
        auto *image = qobject_cast<Image *>(object.data());
        if (image && image->isSvg() && !image->isPassive()) {
            image->refreshSvg(tables);
            ++count;
        }
    }
    return count;
}

int DisplayRefresh::logs(DocumentTables *tables, const QString &define)
{
    int count = 0;
    for (const QPointer<QObject> &object : dependents(tables, &DocumentTables::logDependents, define)) {
        if (auto *log = qobject_cast<LogLabel *>(object.data())) {
            if (log->take(tables, define))
                ++count;
        }
    }
    return count;
}
