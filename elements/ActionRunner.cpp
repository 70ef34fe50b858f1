#include "elements/ActionRunner.h"

#include "model/ExpressionEvaluator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>
#include <QObject>
#include <QThread>
#include <QVariantMap>

namespace {

bool isSendUsb(const QString &command)
{
    return command == QLatin1String("sendUSB");
}

} // namespace

bool ActionRunner::emitSignal(QObject *element, const QString &name, const QString &text)
{
    const QByteArray signature = name.toLatin1() + "(QString)";
    if (element->metaObject()->indexOfSignal(signature.constData()) < 0)
        return false;
    return QMetaObject::invokeMethod(element, name.toLatin1().constData(), Qt::DirectConnection,
                                     Q_ARG(QString, text));
}

void ActionRunner::emitEach(QObject *element, const char *signalName, const QStringList &texts)
{
    for (const QString &text : texts)
        emitSignal(element, QLatin1String(signalName), text);
}

bool ActionRunner::conditionHolds(const QString &condition)
{
    if (condition.trimmed().isEmpty())
        return true;
    return ExpressionEvaluator().evaluateCondition(condition);
}

void ActionRunner::wait(int milliseconds)
{
    if (milliseconds <= 0)
        return;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
}

int ActionRunner::run(QObject *element, const QString &key, const QString &event)
{
    // A copy: an action may change the element (setDef on itself) while the
    // list is being worked through.
    const QStringList list = element->property("data").toMap().value(key).toStringList();
    int ran = 0;
    int i = 0;
    while (i + 2 < list.size()) {
        const QString name = list.at(i);
        const int sep = name.indexOf(QLatin1Char('_'));
        const QString entryEvent = name.left(sep);
        const QString command = sep < 0 ? QString() : name.mid(sep + 1);
        const bool usb = isSendUsb(command);
        const int width = usb ? 5 : 3;
        if (usb && i + 4 >= list.size())
            break;
        const QString condition = list.at(i + 1);
        const QString data = list.at(i + 2);
        if (entryEvent == event && conditionHolds(condition)) {
            emitSignal(element, name, data);
            if (usb) {
                const QString reply = list.at(i + 3);
                if (!reply.isEmpty())
                    emitSignal(element, event + QStringLiteral("_recData"), reply);
                bool ok = false;
                const int delay = list.at(i + 4).trimmed().toInt(&ok);
                if (ok)
                    wait(delay);
            }
            ++ran;
        }
        i += width;
    }
    return ran;
}
