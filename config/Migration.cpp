#include "config/Migration.h"

#include "config/OldConfigurationLoader.h"
#include "model/DefineText.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "model/LockEngine.h"

#include <QFile>
#include <QRegularExpression>

bool Migration::read(const QString &path, QString *error)
{
    m_moves.clear();
    m_order.clear();
    m_dropped.clear();
    m_targets.clear();
    if (path.isEmpty())
        return true;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    parse(QString::fromUtf8(file.readAll()));
    return true;
}

void Migration::parse(const QString &text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    for (const QString &raw : text.split(QLatin1Char('\n'))) {
        const QStringList tokens = raw.trimmed().split(blanks, Qt::SkipEmptyParts);
        if (tokens.isEmpty())
            continue;
        const QString &first = tokens.first();
        if (first.compare(QLatin1String("NVXQuillon_Version"), Qt::CaseInsensitive) == 0
            || first.compare(QLatin1String("Config_File"), Qt::CaseInsensitive) == 0
            || first.compare(QLatin1String("Config_File_Version"), Qt::CaseInsensitive) == 0)
            continue;
        if (tokens.size() == 1) {
            m_dropped.insert(first);
            continue;
        }
        if (!m_moves.contains(first))
            m_order.append(first);
        m_moves.insert(first, tokens.at(1));
        m_targets.insert(tokens.at(1));
    }
}

QStringList Migration::apply(const QStringList &unresolved, QStringList *resolvedNames) const
{
    // The line of each old name, found once.
    QHash<QString, QStringList> byName;
    for (const QString &line : unresolved) {
        const QStringList tokens = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (tokens.size() >= 2 && !byName.contains(tokens.at(1)))
            byName.insert(tokens.at(1), tokens);
    }
    QStringList result;
    for (const QString &oldName : m_order) {
        auto found = byName.constFind(oldName);
        if (found == byName.constEnd())
            continue;
        QStringList tokens = found.value();
        tokens[1] = m_moves.value(oldName);
        if (resolvedNames)
            resolvedNames->append(oldName);
        result.append(tokens.join(QLatin1Char(' ')));
    }
    return result;
}

const Register *Migration::registerNamed(const HardwareModel &model, const QString &name)
{
    for (int at = name.indexOf(QLatin1Char('_')); at >= 0; at = name.indexOf(QLatin1Char('_'), at + 1)) {
        const Peripheral *peripheral = model.findPeripheral(name.left(at));
        if (const Register *reg = peripheral ? HardwareModel::findRegister(peripheral, name.mid(at + 1)) : nullptr)
            return reg;
    }
    return nullptr;
}

namespace {

// "<peripheral>.<register>" of a fourth token, or of the joined name.
const Register *targetOf(const HardwareModel &model, const QStringList &tokens)
{
    if (tokens.size() >= 4) {
        const DefineText parts = DefineText::parse(tokens.at(3));
        const Peripheral *peripheral = model.findPeripheral(parts.peripheral);
        if (const Register *reg = peripheral ? HardwareModel::findRegister(peripheral, parts.registerName) : nullptr)
            return reg;
    }
    return Migration::registerNamed(model, tokens.at(1));
}

// The register a define of the form belongs to, as "<peripheral>_<register>".
QString registerKey(const QString &define)
{
    const DefineText parts = DefineText::parse(define);
    return parts.registerName.isEmpty() ? define : parts.peripheral + QLatin1Char('_') + parts.registerName;
}

} // namespace

bool Migration::applyLine(const HardwareModel &model, const QString &line)
{
    const QStringList tokens = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (tokens.size() < 3)
        return false;
    const Register *reg = targetOf(model, tokens);
    if (!reg)
        return false;
    OldConfigurationLoader::applyToRegister(reg, tokens.at(2));
    return true;
}

Migration::Leftovers Migration::resolve(const HardwareModel &model, QStringList unresolved, QStringList unseen) const
{
    // 1. Moved names go to their new registers; what they fill is no longer
    // unseen, and names dropped on purpose are no loss.
    QStringList resolvedNames;
    QSet<QString> filled;
    for (const QString &line : apply(unresolved, &resolvedNames)) {
        const QStringList tokens = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (!applyLine(model, line))
            continue;
        filled.insert(tokens.at(1));
        if (tokens.size() >= 4)
            filled.insert(registerKey(tokens.at(3)));
    }
    const QSet<QString> resolvedSet(resolvedNames.cbegin(), resolvedNames.cend());
    QStringList open;
    for (const QString &line : qAsConst(unresolved)) {
        const QString name = line.section(QLatin1Char(' '), 1, 1, QString::SectionSkipEmpty);
        if (!resolvedSet.contains(name) && !m_dropped.contains(name))
            open.append(line);
    }
    QStringList stillUnseen;
    for (const QString &define : qAsConst(unseen)) {
        const QString key = registerKey(define);
        // Registers the migration fills (or would fill) are accounted for.
        if (!filled.contains(key) && !filled.contains(define) && !m_targets.contains(key))
            stillUnseen.append(define);
    }

    // 2. A value whose define is unseen under the same name was only read
    // under another class: neither side is lost.
    const QSet<QString> unseenSet(stillUnseen.cbegin(), stillUnseen.cend());
    QSet<QString> matched;
    Leftovers left;
    for (const QString &line : qAsConst(open)) {
        const QString name = line.section(QLatin1Char(' '), 1, 1, QString::SectionSkipEmpty);
        if (unseenSet.contains(name))
            matched.insert(name);
        else
            left.unresolved.append(line);
    }
    // 3. The directory loop's element is never saved.
    for (const QString &define : qAsConst(stillUnseen)) {
        if (!matched.contains(define) && !define.contains(QLatin1String("$DIR$")))
            left.unseen.append(define);
    }
    return left;
}

QStringList Migration::Leftovers::anchors() const
{
    QStringList out;
    for (const QString &define : unseen)
        out.append(QStringLiteral("<a href=\"%1\">%2</a><br>").arg(LockEngine::anchor(define), define));
    return out;
}
