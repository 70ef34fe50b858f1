#pragma once
#include <QList>
#include <QPointer>
#include <QString>
#include <functional>

#include "model/ExpressionEvaluator.h"

class DocumentTables;
class MathLabel;
class QObject;

// Recomputes the math labels that read a define when that define changes.
// A label that shows a new value announces it in turn, so the change runs
// on, depth first, through every label that reads another label.
//
// A formula that depends on itself, directly or through other labels,
// would run forever: a label met again while it is still being computed is
// reported with the chain that leads back to it and is not computed again.
// The depth first walk recurses once per label of a chain, so a chain
// longer than kMaxChain labels is cut there and reported.
//
// Labels on a bit range whose result does not fit (above `max`, or
// negative) are kept in the overflow list, a conflict that blocks the
// export of headers until the value fits again.
class MathCascade
{
public:
    // Labels in one chain of labels that read each other; deeper ones are
    // not computed.
    static constexpr int kMaxChain = 200;

    // Lookups go to `tables`, or, when null, to DocumentTables::current().
    explicit MathCascade(DocumentTables *tables = nullptr);

    // Recomputes the dependents of the define, in list order.
    void update(const QString &define);
    // The define of a signal's sender.
    void update(const QObject *sender);

    // Computes one label and shows its result; `sender` names the change
    // in messages.
    void evaluate(MathLabel *label, const QString &sender);

    // Labels out of range, in the order they went out.
    QList<MathLabel *> overflowLabels() const;
    int overflowCount() const;
    bool isOverflowing(const MathLabel *label) const;
    void clear();

    // Range checks also run while a document is being loaded.
    bool forceConflictCheck = false;
    // The conflicts of the whole document, for the messages; by default the
    // overflow list alone.
    std::function<int()> conflictCount;

private:
    DocumentTables *tables() const;
    void checkRange(MathLabel *label, double result, const QString &sender);
    QString chainFrom(MathLabel *label) const;

    DocumentTables *m_tables = nullptr;
    ExpressionEvaluator m_evaluator;
    // The labels being computed, outermost first.
    QList<MathLabel *> m_active;
    // The chain of the current change grew too long and was reported.
    bool m_chainReported = false;
    QList<QPointer<MathLabel>> m_overflow;
};
