#include "elements/HexSpinBox.h"

#include <QRegExp>
#include <QRegExpValidator>

namespace {
// The digits between prefix and suffix.
QString digitsOf(const QString &text, const QString &prefix, const QString &suffix)
{
    QString t = text;
    if (!prefix.isEmpty() && t.startsWith(prefix))
        t.remove(0, prefix.size());
    if (!suffix.isEmpty() && t.endsWith(suffix))
        t.chop(suffix.size());
    t = t.trimmed();
    if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        t.remove(0, 2);
    return t;
}
} // namespace

HexSpinBox::HexSpinBox(QWidget *parent)
    : SpinBox(parent)
{
    setDisplayIntegerBase(16);
}

QString HexSpinBox::textFromValue(int value) const
{
    // Negative values only occur in the reserved range, before the bits
    // gave the real one.
    if (value < 0)
        return QLatin1Char('-') + QString::number(-qint64(value), 16).toUpper();
    return QString::number(uint(value), 16).toUpper();
}

int HexSpinBox::valueFromText(const QString &text) const
{
    const QString digits = digitsOf(text, prefix(), suffix());
    bool ok = false;
    const qint64 v = digits.toLongLong(&ok, 16);
    return ok ? int(v) : 0;
}

QValidator::State HexSpinBox::validate(QString &input, int &pos) const
{
    QString digits = digitsOf(input, prefix(), suffix());
    if (digits.isEmpty())
        return QValidator::Intermediate;
    QRegExpValidator validator(QRegExp(QStringLiteral("-?[0-9A-Fa-f]{1,8}")));
    int p = pos;
    const QValidator::State state = validator.validate(digits, p);
    if (state != QValidator::Acceptable)
        return state;
    bool ok = false;
    const qint64 v = digits.toLongLong(&ok, 16);
    if (!ok || v < minimum() || v > maximum())
        return QValidator::Intermediate;
    return QValidator::Acceptable;
}
