#include "model/LockEngine.h"
#include "elements/SignalRelay.h"

#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "model/LockCheck.h"

#include <QMetaObject>
#include <QTimerEvent>
#include <QWidget>

namespace {

LockEngine *g_current = nullptr;

const int kRangeReportDelayMs = 100;

bool removeRecord(LockRecords &records, const QString &peer, const QString &value)
{
    for (int i = 0; i < records.size(); ++i) {
        if (records.at(i).peer == peer && records.at(i).value == value) {
            records.removeAt(i);
            return true;
        }
    }
    return false;
}

void appendOnce(LockRecords &records, const LockRecord &record)
{
    if (!records.contains(record))
        records.append(record);
}

// The QObject an element is: its widget for most, the group itself for a
// radio group, whose widget is only an anchor. Signals come from here.
QObject *objectOf(ActiveElement *element)
{
    if (auto *object = dynamic_cast<QObject *>(element))
        return object;
    return element->widget();
}

bool readOnlyByDescription(const ActiveElement *element)
{
    return element->property("my_readonly").toString().trimmed().toInt() != 0;
}

} // namespace

LockEngine::LockEngine(DocumentTables *tables, QObject *parent)
    : QObject(parent)
    , m_tables(tables)
{
}

LockEngine::~LockEngine()
{
    if (g_current == this)
        g_current = nullptr;
}

LockEngine *LockEngine::current()
{
    return g_current;
}

void LockEngine::setCurrent(LockEngine *engine)
{
    g_current = engine;
}

DocumentTables *LockEngine::tables() const
{
    return m_tables ? m_tables : DocumentTables::current();
}

ActiveElement *LockEngine::element(const QString &name) const
{
    DocumentTables *t = tables();
    return t && !name.isEmpty() ? t->element(name) : nullptr;
}

QString LockEngine::anchor(const QString &define)
{
    QString target = define;
    target.replace(QLatin1Char(':'), QLatin1String("$$$COLON$$$"));
    return target;
}

LockEngine::ParsedLock LockEngine::parse(const QString &lock) const
{
    ParsedLock parsed;
    const QStringList parts = lock.split(QLatin1Char('='));
    if (parts.size() != 2)
        return parsed;
    parsed.valid = true;
    parsed.target = parts.at(0).trimmed();
    parsed.value = parts.at(1);
    // A define may itself end in a selector word; only when no element has
    // the full name is the suffix a value form.
    if (!element(parsed.target)) {
        const int kind = Selectors::selectorKind(parsed.target);
        if ((kind == Selectors::Label || kind == Selectors::Index)) {
            parsed.kind = kind;
            parsed.target = Selectors::removeSelector(parsed.target, kind);
        }
    }
    return parsed;
}

QString LockEngine::lockString(const QString &target, const QString &value, int kind)
{
    QString name = target;
    if (kind == Selectors::Label)
        name += QLatin1String(".label");
    else if (kind == Selectors::Index)
        name += QLatin1String(".index");
    return QStringLiteral("%1=%2").arg(name, value);
}

bool LockEngine::enter(QObject *sender)
{
    if (m_depth >= maxDepth) {
        if (!m_depthReported) {
            const QString name = sender ? sender->objectName() : QString();
            consolePrint(QStringLiteral("<font color=\"red\"><b>Warning: </font></b> Locks keep setting each other "
                                        "at <a href=\"%1\">%2</a>; stopped after %3 nested locks<br>")
                             .arg(anchor(name), name)
                             .arg(maxDepth));
            m_depthReported = true;
        }
        return false;
    }
    ++m_depth;
    return true;
}

void LockEngine::leave()
{
    if (--m_depth == 0)
        m_depthReported = false;
}

void LockEngine::on_sendLock(const QString &lock)
{
    this->lock(signalSender(), lock);
}

void LockEngine::on_sendUnlock(const QString &lock)
{
    unlock(signalSender(), lock);
}

void LockEngine::lock(QObject *sender, const QString &lockText)
{
    const ParsedLock parsed = parse(lockText);
    if (!parsed.valid)
        return;
    ActiveElement *source = asActiveElement(sender);
    ActiveElement *target = element(parsed.target);
    if (!source || !target) {
        Report::invalidLock(lockText);
        return;
    }
    if (!enter(sender))
        return;
    // Setting the target's value runs its actions, which may close the
    // document; the guards tell whether the elements are still there.
    QPointer<QObject> sourceWidget = objectOf(source);
    QPointer<QObject> targetWidget = objectOf(target);
    const QString sourceName = source->define();
    const QString targetName = parsed.target;

    if (target->locked && !target->lockedBy.isEmpty() && target->lockedBy.first().value != parsed.value) {
        appendOnce(source->waitingToLock, LockRecord{targetName, parsed.value, parsed.kind});
        appendOnce(target->waitingToBeLockedBy, LockRecord{sourceName, parsed.value, 0});
        QStringList &waiting = m_conflicts[targetName];
        if (!waiting.contains(sourceName))
            waiting.append(sourceName);
        conflictMessage(targetName);
    } else {
        for (const LockRecord &r : qAsConst(target->lockedBy)) {
            if (r.peer == sourceName) {
                leave();
                return;
            }
        }
        appendOnce(source->locking, LockRecord{targetName, parsed.value, parsed.kind});
        const bool first = target->lockedBy.isEmpty();
        target->lockedBy.append(LockRecord{sourceName, parsed.value, parsed.kind});
        if (first) {
            target->locked = true;
            target->setValue(parsed.value, parsed.kind);
            if (targetWidget)
                target->setElementEnabled(false);
        }
        clearConflict(sourceName, targetName);
    }
    if (sourceWidget)
        source->updateToolTip();
    if (targetWidget)
        target->updateToolTip();
    leave();
}

void LockEngine::unlock(QObject *sender, const QString &lockText)
{
    const ParsedLock parsed = parse(lockText);
    if (!parsed.valid)
        return;
    ActiveElement *source = asActiveElement(sender);
    ActiveElement *target = element(parsed.target);
    if (!source || !target)
        return;
    if (!enter(sender))
        return;
    QPointer<QObject> sourceWidget = objectOf(source);
    QPointer<QObject> targetWidget = objectOf(target);
    const QString sourceName = source->define();
    const QString targetName = parsed.target;

    if (removeRecord(source->locking, targetName, parsed.value)) {
        const bool removed = removeRecord(target->lockedBy, sourceName, parsed.value);
        if (removed && target->lockedBy.isEmpty()) {
            target->locked = false;
            if (!readOnlyByDescription(target))
                target->setElementEnabled(true);
            target->restoreReference();
            if (targetWidget)
                handOver(target, targetName);
        }
    } else {
        // The sender never held the target: it was only waiting.
        removeRecord(source->waitingToLock, targetName, parsed.value);
        removeRecord(target->waitingToBeLockedBy, sourceName, parsed.value);
    }
    if (targetWidget)
        clearConflict(sourceName, targetName);
    if (sourceWidget)
        source->updateToolTip();
    if (targetWidget)
        target->updateToolTip();
    leave();
}

void LockEngine::handOver(ActiveElement *target, const QString &targetName)
{
    // The target is free: every source that waited on it gets its chance at
    // once, in the order they came. The first takes the target; those with
    // the same value join it, the others wait again.
    const LockRecords waiting = target->waitingToBeLockedBy;
    QPointer<QObject> targetWidget = objectOf(target);
    for (const LockRecord &w : waiting) {
        if (!targetWidget)
            return;
        ActiveElement *peer = element(w.peer);
        if (!peer)
            continue;
        LockRecord wanted;
        bool found = false;
        for (int i = 0; i < peer->waitingToLock.size(); ++i) {
            if (peer->waitingToLock.at(i).peer == targetName && peer->waitingToLock.at(i).value == w.value) {
                wanted = peer->waitingToLock.takeAt(i);
                found = true;
                break;
            }
        }
        target->waitingToBeLockedBy.removeOne(w);
        if (!found)
            continue;
        QPointer<QObject> peerWidget = objectOf(peer);
        const QString text = lockString(targetName, wanted.value, wanted.kind);
        // Through the peer's own signal, so that the lock travels the same
        // road as one the peer sends itself.
        if (!QMetaObject::invokeMethod(peerWidget.data(), "sendLock", Qt::DirectConnection, Q_ARG(QString, text)))
            lock(peerWidget.data(), text);
        if (peerWidget)
            peer->updateToolTip();
    }
}

void LockEngine::clearConflict(const QString &source, const QString &target)
{
    auto it = m_conflicts.find(target);
    if (it == m_conflicts.end())
        return;
    if (it->removeAll(source) == 0)
        return;
    if (it->isEmpty())
        m_conflicts.erase(it);
    conflictMessage(target);
}

QString LockEngine::links(const QStringList &names)
{
    QStringList parts;
    for (const QString &name : names)
        parts << anchor(name) + QStringLiteral("\">") + name;
    return parts.join(QStringLiteral("</a> and <a href=\"")) + QStringLiteral("</a>");
}

void LockEngine::conflictMessage(const QString &target)
{
    const int count = conflictCount();
    const auto it = m_conflicts.constFind(target);
    if (it == m_conflicts.constEnd()) {
        QString line = QStringLiteral("<font color=\"green\"><b>Conflict cleared:</font></b> %1 ").arg(target);
        line += (count == 1 ? QStringLiteral(" (%1 conflict remaining)") : QStringLiteral(" (%1 conflicts remaining)"))
                    .arg(count);
        consolePrint(line + QStringLiteral("<br>"));
        return;
    }
    QString line = QStringLiteral("<font color=\"red\"><b>Warning: </font></b> ");
    if (!it->isEmpty()) {
        line += QStringLiteral("<a href=\"%1\">%2</a> is waiting to be locked by <a href=\"").arg(anchor(target), target)
            + links(*it);
    }
    if (ActiveElement *t = element(target)) {
        const QStringList lockers = lockPeers(t->lockedBy);
        if (!lockers.isEmpty())
            line += QStringLiteral(" and is locked by <a href=\"") + links(lockers);
    }
    line += (count < 2 ? QStringLiteral(" (%1 conflict in current project)")
                       : QStringLiteral(" (%1 conflicts in current project)"))
                .arg(count);
    consolePrint(line + QStringLiteral("<br>"));
}

void LockEngine::addConflict(const QString &target, const QString &source)
{
    QStringList &waiting = m_conflicts[target];
    if (!waiting.contains(source))
        waiting.append(source);
    conflictMessage(target);
}

int LockEngine::conflictCount() const
{
    int count = 0;
    for (const QStringList &waiting : m_conflicts)
        count += waiting.size();
    return count + overflowLabels().size();
}

QList<QPair<QString, QString>> LockEngine::conflictedElements() const
{
    QList<QPair<QString, QString>> result;
    for (auto it = m_conflicts.constBegin(); it != m_conflicts.constEnd(); ++it)
        result.append({anchor(it.key()), it.key()});
    for (const QString &label : overflowLabels())
        result.append({anchor(label), label});
    return result;
}

void LockEngine::enterOverflow(QObject *label, qint64 max, const QString &sender, bool tooHigh)
{
    if (!label || isOverflowing(label))
        return;
    m_overflow.append(label);
    const QString name = label->objectName();
    consolePrint(QStringLiteral("<font color=\"red\"><b>Warning: </font></b> <a href=\"%1\">%2</a> has caused an %6 in "
                                "<a href=\"%3\">%4</a>. Highest possible value: %5<br>")
                     .arg(anchor(sender), sender, anchor(name), name, QString::number(max),
                          tooHigh ? QStringLiteral("overflow") : QStringLiteral("underflow")));
}

void LockEngine::leaveOverflow(QObject *label)
{
    if (!label || !isOverflowing(label))
        return;
    m_overflow.removeAll(QPointer<QObject>(label));
    const QString name = label->objectName();
    consolePrint(QStringLiteral("<font color=\"green\"><b>Conflict cleared: </font></b> Over-/Underflow in: "
                                "<a href=\"%1\">%2</a>. (%3 conflicts in current project)<br>")
                     .arg(anchor(name), name)
                     .arg(conflictCount()));
}

bool LockEngine::isOverflowing(const QObject *label) const
{
    for (const QPointer<QObject> &entry : m_overflow) {
        if (entry && entry.data() == label)
            return true;
    }
    return false;
}

QStringList LockEngine::overflowLabels() const
{
    // A label deleted with its form no longer counts.
    QStringList names;
    for (const QPointer<QObject> &entry : m_overflow) {
        if (entry)
            names << entry->objectName();
    }
    if (m_overflowSource)
        names += m_overflowSource();
    return names;
}

void LockEngine::queueRangeChange(const RangeChange &change)
{
    // Several bounds of one element set in one burst (min and max of one
    // setDef) make one line: from the first old state to the last new one.
    bool merged = false;
    for (RangeChange &queued : m_rangeChanges) {
        if (queued.element == change.element) {
            queued.setter = change.setter;
            queued.newValue = change.newValue;
            queued.newMin = change.newMin;
            queued.newMax = change.newMax;
            merged = true;
            break;
        }
    }
    if (!merged)
        m_rangeChanges.append(change);
    if (!m_rangeTimer.isActive())
        m_rangeTimer.start(kRangeReportDelayMs, this);
}

bool LockEngine::rangeState(const QObject *element, double *value, double *minimum, double *maximum)
{
    if (!element)
        return false;
    const QVariant v = element->property("value");
    const QVariant lo = element->property("minimum");
    const QVariant hi = element->property("maximum");
    if (!v.isValid() || !lo.isValid() || !hi.isValid())
        return false;
    *value = v.toDouble();
    *minimum = lo.toDouble();
    *maximum = hi.toDouble();
    return true;
}

void LockEngine::noteRangeChange(const QObject *element, double oldValue, double oldMin, double oldMax,
                                 const QString &setter)
{
    double value = 0, minimum = 0, maximum = 0;
    LockEngine *engine = current();
    if (!engine || !rangeState(element, &value, &minimum, &maximum))
        return;
    // A later bound of the same burst still belongs to the queued line.
    bool queued = false;
    for (const RangeChange &c : qAsConst(engine->m_rangeChanges))
        queued = queued || c.element == element->objectName();
    if (value == oldValue && !queued)
        return;
    engine->queueRangeChange(
        RangeChange{element->objectName(), setter, oldValue, value, oldMin, oldMax, minimum, maximum});
}

void LockEngine::flushRangeChanges()
{
    m_rangeTimer.stop();
    const QList<RangeChange> changes = m_rangeChanges;
    m_rangeChanges.clear();
    auto g = [](double v) { return QString::number(v, 'g'); };
    for (const RangeChange &c : changes) {
        QString line = QStringLiteral("<font color=\"darkorange\"><a href = \"%1\">%2</a> was set from %3 to %4 because "
                                      "its range was changed from %5..%6 to %7..%8")
                           .arg(anchor(c.element), c.element, g(c.oldValue), g(c.newValue), g(c.oldMin), g(c.oldMax),
                                g(c.newMin), g(c.newMax));
        if (!c.setter.isEmpty())
            line += QStringLiteral(" by <a href = \"%1\">%2</a>").arg(anchor(c.setter), c.setter);
        consolePrint(line + QStringLiteral("</font><br>"));
    }
}

void LockEngine::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_rangeTimer.timerId()) {
        flushRangeChanges();
        return;
    }
    QObject::timerEvent(event);
}

void LockEngine::checkAfterLoad()
{
    DocumentTables *t = tables();
    m_graph.clear();
    if (!t)
        return;
    LockCheck check(*t);
    check.run();
    m_graph = check.graph();
}

void LockEngine::releaseAll()
{
    DocumentTables *t = tables();
    if (!t)
        return;
    QList<ActiveElement *> held;
    for (ActiveElement *element : t->elementList) {
        if (element->locked)
            held.append(element);
        element->locked = false;
        element->locking.clear();
        element->lockedBy.clear();
        element->waitingToLock.clear();
        element->waitingToBeLockedBy.clear();
    }
    m_conflicts.clear();
    for (ActiveElement *element : qAsConst(held)) {
        if (!readOnlyByDescription(element))
            element->setElementEnabled(true);
        element->restoreReference();
        element->updateToolTip();
    }
}

void LockEngine::clear()
{
    m_conflicts.clear();
    m_overflow.clear();
    m_rangeChanges.clear();
    m_rangeTimer.stop();
    m_graph.clear();
    m_depth = 0;
    m_depthReported = false;
}

QObject *LockEngine::signalSender() const
{
    if (QObject *origin = SignalRelay::origin(this))
        return origin;
    return sender();
}
