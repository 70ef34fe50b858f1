#include "views/PinMappingDetails.h"

#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "model/BitField.h"
#include "model/ExpressionCompiler.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "views/PinMappingDocument.h"
#include "views/PinMappingState.h"

#include <QRegularExpression>
#include <QSet>
#include <QWidget>

namespace {

DocumentTables *resolve(DocumentTables *tables)
{
    return tables ? tables : DocumentTables::current();
}

// The SVD field a define is bound to, or null.
BitField *fieldOf(HardwareModel *model, const QString &define)
{
    if (!model)
        return nullptr;
    const QStringList parts = define.split(QLatin1Char('.'));
    if (parts.size() < 3)
        return nullptr;
    Peripheral *peripheral = model->findPeripheral(parts.at(0));
    Register *reg = peripheral ? HardwareModel::findRegister(peripheral, parts.at(1)) : nullptr;
    return reg ? HardwareModel::findField(reg, parts.at(2)) : nullptr;
}

} // namespace

QString PinMappingDetails::conditionText(const QString &cond)
{
    QString out;
    out.reserve(cond.size() + 8);
    for (const QChar c : cond) {
        out += c;
        if (c == QLatin1Char('&') || c == QLatin1Char('|'))
            out += QLatin1Char('\n');
    }
    // "&&" would otherwise get an empty line between its halves.
    out.replace(QLatin1String("&\n&\n"), QLatin1String("&&\n"));
    out.replace(QLatin1String("|\n|\n"), QLatin1String("||\n"));
    return out;
}

QString PinMappingDetails::explanation(const QString &cond, DocumentTables *tables, HardwareModel *model)
{
    DocumentTables *t = resolve(tables);
    QString clean = cond;
    clean.remove(QRegularExpression(QStringLiteral("\\s")));
    QStringList parts;
    for (QString part : clean.split(QRegularExpression(QStringLiteral("[&|]+")), Qt::SkipEmptyParts)) {
        part.remove(QLatin1Char('('));
        part.remove(QLatin1Char(')'));
        const int at = part.indexOf(QLatin1String("=="));
        if (at <= 0)
            continue;
        const QString left = part.left(at);
        QString right = part.mid(at + 2);
        right.remove(QLatin1Char('"'));
        ActiveElement *element = t ? t->element(left) : nullptr;
        if (!element || element->property("svd").toString().isEmpty())
            continue;
        QString text = QStringLiteral("Set ") + left;
        bool isNumber = false;
        const qlonglong number = normaliseNumber(right).toLongLong(&isNumber);
        QString named;
        if (isNumber) {
            if (BitField *field = fieldOf(model, left)) {
                for (const EnumeratedValue &value : qAsConst(field->enumeratedValues)) {
                    if (value.value == number) {
                        named = value.name;
                        break;
                    }
                }
            }
        }
        if (!named.isEmpty())
            text += QStringLiteral(" to \"%1\"").arg(named);
        else
            text += QStringLiteral(" to ") + right;
        parts.append(text);
    }
    return parts.join(QStringLiteral(",\n"));
}

QString PinMappingDetails::firstDefine(const QString &cond, DocumentTables *tables)
{
    DocumentTables *t = resolve(tables);
    QStringList tokens;
    QStringList literals;
    QStringList names;
    bool hasString = false;
    ExpressionCompiler::tokenise(ExpressionCompiler::cleanFormula(cond), tokens, literals, names, hasString);
    for (const QString &name : qAsConst(names)) {
        if (t && (t->elements.contains(name) || t->dataValues.contains(name)))
            return name;
    }
    return QString();
}

QList<PinMappingDetails::Row> PinMappingDetails::rows(const PinMappingDocument &document, bool connectedOnly,
                                                      DocumentTables *tables)
{
    const PinMappingState state = PinMappingState::evaluate(document, tables);
    QList<Row> out;
    for (int p = 0; p < document.pins.size(); ++p) {
        if (connectedOnly && state.countPerPin().at(p) == 0)
            continue;
        const Pin &pin = document.pins.at(p);
        Row pinRow;
        pinRow.kind = Row::PinRow;
        pinRow.pin = pin.pinname;
        pinRow.background = pin.color;
        out.append(pinRow);
        for (int e : document.entriesOfPin(pin.pinname)) {
            const MapEntry &entry = document.entries.at(e);
            Row functionRow;
            functionRow.kind = Row::FunctionRow;
            functionRow.function = entry.function;
            functionRow.background = entry.color;
            functionRow.define = entry.links().value(0);
            const int functionAt = out.size();
            out.append(functionRow);
            // Only conditions that reach this entry (a function name mapped
            // twice belongs to its later entry).
            if (document.functionIndex(entry.function) != e)
                continue;
            for (int c : document.conditionsOfFunction(entry.function)) {
                const MapCondEntry &cond = document.conditions.at(c);
                Row condRow;
                condRow.kind = Row::ConditionRow;
                condRow.condition = conditionText(cond.cond);
                condRow.explanation = explanation(cond.cond, tables, document.model);
                condRow.bold = state.holding().at(c);
                condRow.define = firstDefine(cond.cond, tables);
                if (condRow.define.isEmpty())
                    condRow.define = functionRow.define;
                if (condRow.bold)
                    out[functionAt].bold = true;
                out.append(condRow);
            }
        }
    }
    return out;
}
