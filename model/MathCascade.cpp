#include "model/MathCascade.h"

#include "elements/DocumentTables.h"
#include "elements/MathLabel.h"
#include "elements/MessageSink.h"
#include "elements/Reports.h"
#include "model/NumericCast.h"

namespace {

QString anchor(const QString &define)
{
    QString target = define;
    target.replace(QLatin1Char(':'), QLatin1String("$$$COLON$$$"));
    return target;
}

} // namespace

MathCascade::MathCascade(DocumentTables *tables)
    : m_tables(tables)
    , m_evaluator(tables)
{
}

DocumentTables *MathCascade::tables() const
{
    return m_tables ? m_tables : DocumentTables::current();
}

void MathCascade::update(const QObject *sender)
{
    if (sender)
        update(sender->objectName());
}

void MathCascade::update(const QString &define)
{
    DocumentTables *t = tables();
    if (!t || define.isEmpty())
        return;
    // A copy with guards: a label's actions may change the tables or close
    // the document while the list is walked.
    QList<QPointer<MathLabel>> labels;
    for (QObject *object : t->mathDependents.value(define)) {
        if (auto *label = qobject_cast<MathLabel *>(object))
            labels.append(label);
    }
    // Each label of a chain is a level of recursion (its result announces
    // itself and comes back here): a description with 20,000 labels in a
    // chain overflowed the stack. The change stops at the limit, once told.
    if (!labels.isEmpty() && m_active.size() >= kMaxChain) {
        if (!m_chainReported) {
            m_chainReported = true;
            showError(QStringLiteral("Formulas chained more than %1 labels deep: \"%2 -> ... -> %3\"")
                          .arg(kMaxChain)
                          .arg(m_active.first()->objectName(), m_active.last()->objectName()));
        }
        return;
    }
    for (const QPointer<MathLabel> &label : qAsConst(labels)) {
        if (!label)
            continue;
        if (m_active.contains(label.data())) {
            Report::formulaCycle(chainFrom(label.data()));
            continue;
        }
        evaluate(label.data(), define);
    }
}

QString MathCascade::chainFrom(MathLabel *label) const
{
    QStringList names;
    for (int i = m_active.indexOf(label); i >= 0 && i < m_active.size(); ++i)
        names.append(m_active.at(i)->objectName());
    names.append(label->objectName());
    return names.join(QLatin1String(" -> "));
}

void MathCascade::evaluate(MathLabel *label, const QString &sender)
{
    if (!label)
        return;
    m_active.append(label);

    bool ok = true;
    const double result = m_evaluator.evaluate(label->compiled(), &ok);
    if (!ok)
        Report::invalidFormula(sender);
    checkRange(label, result, sender);
    label->showResult(result);

    m_active.removeOne(label);
    if (m_active.isEmpty())
        m_chainReported = false;
}

void MathCascade::checkRange(MathLabel *label, double result, const QString &sender)
{
    DocumentTables *t = tables();
    if (t && t->loading && !forceConflictCheck)
        return;
    const qlonglong max = static_cast<const QObject *>(label)->property("max").toLongLong();
    if (max == -1)
        return;
    const qint32 v = NumericCast::toInt32(result);
    const bool tooHigh = v > max;
    if (tooHigh || v < 0) {
        if (isOverflowing(label))
            return;
        m_overflow.append(label);
        consolePrint(QStringLiteral("<font color=\"red\"><b>Warning: </font></b> <a href=\"%1\">%2</a> has caused an %6 in <a href=\"%3\">%4</a>. Highest possible value: %5<br>")
                         .arg(anchor(sender), sender, anchor(label->objectName()), label->objectName(),
                              QString::number(max), tooHigh ? QStringLiteral("overflow") : QStringLiteral("underflow")));
        return;
    }
    if (!isOverflowing(label))
        return;
    for (int i = m_overflow.size() - 1; i >= 0; --i) {
        if (m_overflow.at(i) == label)
            m_overflow.removeAt(i);
    }
    const int conflicts = conflictCount ? conflictCount() : overflowCount();
    consolePrint(QStringLiteral("<font color=\"green\"><b>Conflict cleared: </font></b> Over-/Underflow in: <a href=\"%1\">%2</a>. (%3 conflicts in current project)<br>")
                     .arg(anchor(label->objectName()), label->objectName())
                     .arg(conflicts));
}

QList<MathLabel *> MathCascade::overflowLabels() const
{
    QList<MathLabel *> result;
    for (const QPointer<MathLabel> &label : m_overflow) {
        if (label)
            result.append(label.data());
    }
    return result;
}

int MathCascade::overflowCount() const
{
    return overflowLabels().size();
}

bool MathCascade::isOverflowing(const MathLabel *label) const
{
    for (const QPointer<MathLabel> &entry : m_overflow) {
        if (entry.data() == label)
            return true;
    }
    return false;
}

void MathCascade::clear()
{
    m_overflow.clear();
    m_active.clear();
}
