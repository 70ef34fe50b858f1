#include "elements/MathLabel.h"

#include "elements/ActionRunner.h"
#include "elements/DefineLookup.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "model/NumericCast.h"

#include <QRegularExpression>

#include <limits>

namespace {

QString withoutTrailingZeros(QString text)
{
    if (!text.contains(QLatin1Char('.')))
        return text;
    static const QRegularExpression zeros(QStringLiteral("0+$"));
    static const QRegularExpression point(QStringLiteral("\\.$"));
    text.remove(zeros);
    text.remove(point);
    return text;
}

} // namespace

MathLabel::MathLabel(QWidget *parent)
    : QLabel(parent)
    , m_format(ResultFormat::defaultFormat(false))
{
    QObject::setProperty("max", qlonglong(-1));
    QObject::setProperty("msb", -1);
    QObject::setProperty("lsb", -1);
    QObject::setProperty("prefix", QString());
    QObject::setProperty("suffix", QString());
}

void MathLabel::setFormula(const QString &formula)
{
    QObject::setProperty("expression", formula);
    m_expression = Expression::fromFormula(formula);
    postfix = m_expression.postfix();
    literals = m_expression.literals();
    names = m_expression.names();
}

bool MathLabel::setFormat(const QString &format)
{
    m_format = ResultFormat(format);
    QObject::setProperty("prefix", m_format.prefix());
    return m_format.isKnown();
}

void MathLabel::showText(const QString &text)
{
    setText(QStringLiteral("%1%2%3").arg(QObject::property("prefix").toString(), text,
                                         QObject::property("suffix").toString()));
}

void MathLabel::showResult(double value)
{
    m_result = value;
    showText(m_format.text(value));
    if (!objectName().isEmpty())
        updateToolTip();
    // The label declares only the setDef, sendUSB and recData signals, so
    // other commands of its entries drop out.
    ActionRunner::run(this, QStringLiteral("0"), QStringLiteral("changed"));
    if (!objectName().isEmpty())
        emit updateMathLabels();
}

QString MathLabel::numberText(bool unformatted) const
{
    if (unformatted)
        return ResultFormat::unformatted(m_result);
    if (m_format.kind() == ResultFormat::Floating)
        return withoutTrailingZeros(m_format.text(m_result));
    return QString::number(NumericCast::toInt64(m_result));
}

QString MathLabel::value(int kind, bool unformatted)
{
    switch (kind) {
    case Selectors::Value:
        return numberText(unformatted);
    case Selectors::Label:
        return QStringLiteral("%1%2 %3").arg(QObject::property("prefix").toString(), m_format.text(m_result),
                                             QObject::property("suffix").toString());
    case Selectors::DefineValue: {
        const int lsb = QObject::property("lsb").toInt();
        if (lsb < 0)
            return QString::number(NumericCast::toUInt64(m_result));
        // Shifting by 64 or more is undefined; such bits are out of any register.
        if (lsb >= 64)
            return QStringLiteral("0");
        return QString::number(NumericCast::toUInt64(m_result) << lsb);
    }
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

QString MathLabel::referenceValue()
{
    return value(Selectors::Value, true);
}

bool MathLabel::setValue(const QString &text, int kind)
{
    if (kind != Selectors::Value) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    // Another define stands for its value.
    bool found = false;
    QString number = DefineLookup::valueText(DocumentTables::current(), text, &found);
    if (!found)
        number = text;
    const NumberFormat::NumberClass cls = NumberFormat::classifyNumber(number);
    bool ok = cls <= NumberFormat::Binary;
    double v = 0.0;
    if (ok)
        v = NumberFormat::normaliseNumber(number).toDouble(&ok);
    if (!ok)
        v = number.trimmed().toDouble(&ok);
    if (!ok) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    showResult(v);
    return true;
}

bool MathLabel::loadValue(const QString &text)
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    m_result = v;
    showText(m_format.text(v));
    return true;
}

void MathLabel::updateToolTip()
{
    ElementToolTip::apply(this);
}

void MathLabel::connectSignals()
{
    updateToolTip();
    DocumentTables *tables = DocumentTables::current();
    if (tables && !objectName().isEmpty() && tables->mathDependents.contains(objectName()))
        emit updateMathLabels();
}

void MathLabel::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

bool MathLabel::setBits(int msb, int lsb)
{
    QObject::setProperty("msb", msb);
    QObject::setProperty("lsb", lsb);
    qlonglong max = -1;
    if (msb >= 0 && lsb >= 0 && msb >= lsb)
        max = msb - lsb + 1 >= 63 ? std::numeric_limits<qlonglong>::max() : (qlonglong(1) << (msb - lsb + 1)) - 1;
    QObject::setProperty("max", max);
    return true;
}
