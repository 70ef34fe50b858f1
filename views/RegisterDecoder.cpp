#include "views/RegisterDecoder.h"

#include "model/BitField.h"
#include "model/Register.h"

#include <algorithm>

QString RegisterDecoder::binary(quint64 value, int width)
{
    const QString digits = QString::number(value, 2);
    return width > 1 ? digits.rightJustified(width, QLatin1Char('0')) : digits;
}

QString RegisterDecoder::describe(const Register *reg, quint64 value)
{
    QList<const BitField *> fields;
    for (const BitField *field : reg->fields)
        fields << field;
    // By upper bit, walked from the top so that the highest field leads;
    // equal tops fall back to the name, so the text does not depend on the
    // hash order of the fields.
    std::sort(fields.begin(), fields.end(), [](const BitField *a, const BitField *b) {
        return a->msb != b->msb ? a->msb < b->msb : a->name > b->name;
    });
    QString text;
    for (int i = fields.size() - 1; i >= 0; --i) {
        const BitField *field = fields.at(i);
        if (field->enumeratedValues.isEmpty())
            continue;
        quint64 fieldValue = value;
        if (field->lsb >= 0 && field->lsb < 64 && field->msb >= field->lsb) {
            const int width = qMin(64, field->msb - field->lsb + 1);
            const quint64 mask = width >= 64 ? ~quint64(0) : ((quint64(1) << width) - 1) << field->lsb;
            fieldValue = (value & mask) >> field->lsb;
        }
        const EnumeratedValue *found = nullptr;
        for (const EnumeratedValue &e : field->enumeratedValues) {
            if (quint64(qint64(e.value)) == fieldValue) {
                found = &e;
                break;
            }
        }
        if (!found) {
            text += QStringLiteral("%1: %2\n").arg(field->name).arg(fieldValue);
            continue;
        }
        const int width = field->msb - field->lsb + 1;
        const QString suffix = QStringLiteral(" (0b%1)").arg(binary(quint64(quint32(found->value)), width));
        if (field->lsb == -1 || field->msb == -1)
            text += QStringLiteral("%1: %2%3\n").arg(field->name, found->name, suffix);
        else if (field->lsb == field->msb)
            text += QStringLiteral("%1[%2]: %3%4\n").arg(field->name).arg(field->lsb).arg(found->name, suffix);
        else
            text += QStringLiteral("%1[%2..%3]: %4%5\n").arg(field->name).arg(field->msb).arg(field->lsb).arg(found->name, suffix);
    }
    return text;
}
