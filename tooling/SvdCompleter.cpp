#include "tooling/SvdCompleter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>
#include <QXmlStreamReader>
#include <algorithm>
#include <functional>

namespace {

using Node = SvdCompleter::Node;
using NodePtr = SvdCompleter::NodePtr;

// Deeper than any real file nests clusters; beyond it a file is broken.
constexpr int kMaxClusterDepth = 32;

NodePtr leaf(const QString &tag, const QString &text)
{
    auto n = std::make_shared<Node>();
    n->tag = tag;
    n->text = text;
    return n;
}

bool isDimTag(const QString &tag)
{
    return tag == QLatin1String("dim") || tag == QLatin1String("dimIncrement") || tag == QLatin1String("dimIndex")
        || tag == QLatin1String("dimName") || tag == QLatin1String("dimArrayIndex");
}

// The derived node's own children replace the base's of the same tag; the
// rest of the base is kept in its order, the derived node's new children
// come after.
std::shared_ptr<Node> mergeDerived(const Node &base, const Node &derived)
{
    auto merged = std::make_shared<Node>();
    merged->tag = derived.tag;
    merged->line = derived.line;
    for (const auto &a : derived.attributes) {
        if (a.first != QLatin1String("derivedFrom"))
            merged->attributes.push_back(a);
    }
    QSet<QString> own;
    for (const NodePtr &c : derived.children)
        own.insert(c->tag);
    const bool derivedHasDim = own.contains(QStringLiteral("dim"));
    for (const NodePtr &c : base.children) {
        // An array base does not make its derivatives arrays.
        if (own.contains(c->tag) || (!derivedHasDim && isDimTag(c->tag)))
            continue;
        merged->children.push_back(c);
    }
    for (const NodePtr &c : derived.children)
        merged->children.push_back(c);
    return merged;
}

QString hex(qint64 value)
{
    return QStringLiteral("0x") + QString::number(value, 16).toUpper();
}

// Escapes text and attribute values; most texts need none, so the common
// case appends the string as it is.
void appendEscaped(QString &out, const QString &text)
{
    const QChar *begin = text.constData();
    const QChar *end = begin + text.size();
    const QChar *run = begin;
    for (const QChar *c = begin; c != end; ++c) {
        const char16_t u = c->unicode();
        const char *replacement = u == '&' ? "&amp;" : u == '<' ? "&lt;" : u == '>' ? "&gt;" : u == '"' ? "&quot;" : nullptr;
        if (!replacement)
            continue;
        out.append(run, int(c - run));
        out.append(QLatin1String(replacement));
        run = c + 1;
    }
    out.append(run, int(end - run));
}

// Written by hand rather than by QXmlStreamWriter: the output of a large
// vendor file is written several times faster this way, in the same form
// (two blanks of indentation per level, texts inline).
void indent(QString &out, int depth)
{
    static const QString blanks(128, QLatin1Char(' '));
    out.append(blanks.constData(), qMin(depth * 2, blanks.size()));
}

// The output goes out in chunks as it is written: a large vendor file's
// copy never stands in memory whole, twice (as text and as UTF-8).
struct ChunkWriter
{
    QString text;
    const std::function<void(const QByteArray &)> &deliver;

    void flush(bool always = false)
    {
        if (always || text.size() > 32768) {
            deliver(text.toUtf8());
            text.resize(0);
        }
    }
};

void writeNode(ChunkWriter &w, const Node &node, int depth)
{
    QString &out = w.text;
    indent(out, depth);
    out.append(QLatin1Char('<'));
    out.append(node.tag);
    for (const auto &a : node.attributes) {
        out.append(QLatin1Char(' '));
        out.append(a.first);
        out.append(QLatin1String("=\""));
        appendEscaped(out, a.second);
        out.append(QLatin1Char('"'));
    }
    if (node.children.empty()) {
        if (node.text.isEmpty()) {
            out.append(QLatin1String("/>\n"));
            return;
        }
        out.append(QLatin1Char('>'));
        appendEscaped(out, node.text);
    } else {
        out.append(QLatin1String(">\n"));
        for (const NodePtr &c : node.children)
            writeNode(w, *c, depth + 1);
        indent(out, depth);
    }
    out.append(QLatin1String("</"));
    out.append(node.tag);
    out.append(QLatin1String(">\n"));
    w.flush();
}

// The tags of SVD files, shared instead of allocated for each element.
QString internedTag(const QStringRef &name)
{
    static const QStringList common{
        QStringLiteral("name"), QStringLiteral("description"), QStringLiteral("field"), QStringLiteral("bitOffset"),
        QStringLiteral("bitWidth"), QStringLiteral("bitRange"), QStringLiteral("lsb"), QStringLiteral("msb"),
        QStringLiteral("access"), QStringLiteral("enumeratedValue"), QStringLiteral("value"),
        QStringLiteral("enumeratedValues"), QStringLiteral("register"), QStringLiteral("addressOffset"),
        QStringLiteral("size"), QStringLiteral("resetValue"), QStringLiteral("resetMask"), QStringLiteral("fields"),
        QStringLiteral("displayName"), QStringLiteral("usage"), QStringLiteral("dim"), QStringLiteral("dimIncrement"),
        QStringLiteral("dimIndex"), QStringLiteral("cluster"), QStringLiteral("modifiedWriteValues"),
        QStringLiteral("readAction"), QStringLiteral("writeConstraint"), QStringLiteral("range"),
        QStringLiteral("minimum"), QStringLiteral("maximum"), QStringLiteral("isDefault"), QStringLiteral("interrupt"),
        QStringLiteral("peripheral"), QStringLiteral("baseAddress"), QStringLiteral("addressBlock"),
        QStringLiteral("offset"), QStringLiteral("registers"), QStringLiteral("groupName")};
    for (const QString &tag : common) {
        if (name == tag)
            return tag;
    }
    return name.toString();
}

} // namespace

struct SvdCompleter::Scope
{
    const Node *container;  // the registers or cluster node the item sits in
    QString peripheral;
    const Scope *parent;
};

NodePtr SvdCompleter::Node::child(const QString &name) const
{
    for (const NodePtr &c : children) {
        if (c->tag == name)
            return c;
    }
    return nullptr;
}

QString SvdCompleter::Node::childText(const QString &name, const QString &fallback) const
{
    const NodePtr c = child(name);
    return c ? c->text : fallback;
}

QString SvdCompleter::Node::attribute(const QString &name) const
{
    for (const auto &a : attributes) {
        if (a.first == name)
            return a.second;
    }
    return QString();
}

SvdCompleter::Properties SvdCompleter::Properties::inherit(const Node &node) const
{
    Properties p = *this;
    for (const NodePtr &c : node.children) {
        if (c->tag == QLatin1String("size"))
            p.size = c->text;
        else if (c->tag == QLatin1String("access"))
            p.access = c->text;
        else if (c->tag == QLatin1String("resetValue"))
            p.resetValue = c->text;
        else if (c->tag == QLatin1String("resetMask"))
            p.resetMask = c->text;
        else if (c->tag == QLatin1String("protection"))
            p.protection = c->text;
    }
    return p;
}

bool SvdCompleter::parseNumber(const QString &input, qint64 *value)
{
    QString t = input.trimmed().toLower();
    if (t.isEmpty())
        return false;
    qint64 scale = 1;
    const QChar last = t.at(t.size() - 1);
    if (t.size() > 1 && !t.startsWith(QLatin1String("0x")) && (last == 'k' || last == 'm' || last == 'g')) {
        scale = last == 'k' ? 1024 : last == 'm' ? 1024 * 1024 : qint64(1024) * 1024 * 1024;
        t.chop(1);
    }
    bool ok = false;
    qint64 v = 0;
    if (t.startsWith(QLatin1String("0x")))
        v = t.mid(2).toLongLong(&ok, 16);
    else if (t.startsWith('#'))
        v = t.mid(1).toLongLong(&ok, 2);
    else if (t.startsWith(QLatin1String("0b")))
        v = t.mid(2).toLongLong(&ok, 2);
    else
        v = t.toLongLong(&ok, 10);
    if (!ok)
        return false;
    *value = v * scale;
    return true;
}

QString SvdCompleter::defaultOutputPath(const QString &inputPath)
{
    const QFileInfo info(inputPath);
    return info.dir().filePath(info.completeBaseName() + QStringLiteral("_completed.svd"));
}

bool SvdCompleter::fail(const QString &message, qint64 line)
{
    if (m_error.isEmpty())
        m_error = line > 0 ? QStringLiteral("%1 (line %2)").arg(message).arg(line) : message;
    return false;
}

void SvdCompleter::warn(const QString &message, qint64 line)
{
    m_warnings.append(line > 0 ? QStringLiteral("%1 (line %2)").arg(message).arg(line) : message);
}

NodePtr SvdCompleter::parse(const QByteArray &input)
{
    QXmlStreamReader xml(input);
    // Namespace declarations stay plain attributes, so that they are
    // written back as they came.
    xml.setNamespaceProcessing(false);
    std::vector<std::shared_ptr<Node>> stack;
    NodePtr root;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            auto n = std::make_shared<Node>();
            n->tag = internedTag(xml.name());
            n->line = xml.lineNumber();
            const QXmlStreamAttributes attrs = xml.attributes();
            n->attributes.reserve(size_t(attrs.size()));
            for (const QXmlStreamAttribute &a : attrs)
                n->attributes.emplace_back(a.qualifiedName().toString(), a.value().toString());
            if (!stack.empty())
                stack.back()->children.push_back(n);
            else if (!root)
                root = n;
            stack.push_back(n);
        } else if (token == QXmlStreamReader::Characters && !stack.empty()) {
            if (!xml.isWhitespace())
                stack.back()->text += xml.text();
        } else if (token == QXmlStreamReader::EndElement && !stack.empty()) {
            std::shared_ptr<Node> done = stack.back();
            stack.pop_back();
            if (!done->children.empty())
                done->text.clear();
            else
                done->text = done->text.trimmed();
            if (done->tag == QLatin1String("enumeratedValues")) {
                const QString name = done->childText(QStringLiteral("name"));
                if (!name.isEmpty() && !m_enumerations.contains(name))
                    m_enumerations.insert(name, done);
            }
        }
    }
    if (xml.hasError()) {
        fail(QStringLiteral("Not a readable XML file: %1 at line %2, column %3")
                 .arg(xml.errorString())
                 .arg(xml.lineNumber())
                 .arg(xml.columnNumber()));
        return nullptr;
    }
    if (!root)
        fail(QStringLiteral("The file holds no XML element"));
    return root;
}

bool SvdCompleter::completeFile(const QString &inputPath, const QString &outputPath)
{
    QFile in(inputPath);
    if (!in.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("Cannot open file %1:\n%2").arg(inputPath, in.errorString()));
    const QByteArray input = in.readAll();
    in.close();
    QSaveFile out(outputPath);
    if (!out.open(QIODevice::WriteOnly))
        return fail(QStringLiteral("Cannot open file %1:\n%2").arg(outputPath, out.errorString()));
    bool written = true;
    const bool ok = run(input, [&](const QByteArray &chunk) { written = written && out.write(chunk) == chunk.size(); });
    if (!ok) {
        // Nothing replaces the output file.
        out.cancelWriting();
        m_error = QStringLiteral("%1: %2").arg(inputPath, m_error);
        return false;
    }
    if (!written || !out.commit())
        return fail(QStringLiteral("Cannot open file %1:\n%2").arg(outputPath, out.errorString()));
    return true;
}

bool SvdCompleter::complete(const QByteArray &input, QByteArray *output)
{
    output->clear();
    return run(input, [output](const QByteArray &chunk) { output->append(chunk); });
}

bool SvdCompleter::run(const QByteArray &input, const std::function<void(const QByteArray &)> &deliver)
{
    m_error.clear();
    m_warnings.clear();
    m_peripherals = m_registers = m_fields = 0;
    m_rawPeripherals.clear();
    m_resolvedPeripherals.clear();
    m_enumerations.clear();

    const NodePtr device = parse(input);
    if (!device)
        return false;
    if (device->tag != QLatin1String("device"))
        return fail(QStringLiteral("The root element is <%1>, not <device>: not an SVD file").arg(device->tag), device->line);
    const NodePtr peripherals = device->child(QStringLiteral("peripherals"));
    std::vector<NodePtr> rawList;
    if (peripherals) {
        for (const NodePtr &p : peripherals->children) {
            if (p->tag != QLatin1String("peripheral"))
                continue;
            rawList.push_back(p);
            const QString name = p->childText(QStringLiteral("name"));
            if (name.isEmpty())
                warn(QStringLiteral("A peripheral without a name is left out"), p->line);
            else if (!m_rawPeripherals.contains(name))
                m_rawPeripherals.insert(name, p);
        }
    }
    if (m_rawPeripherals.isEmpty())
        return fail(QStringLiteral("The SVD file describes no peripherals"), device->line);

    const Properties deviceProps = Properties().inherit(*device);
    auto outPeripherals = std::make_shared<Node>();
    outPeripherals->tag = QStringLiteral("peripherals");
    QSet<QString> written;
    for (const NodePtr &raw : rawList) {
        const QString rawName = raw->childText(QStringLiteral("name"));
        if (rawName.isEmpty())
            continue;
        std::vector<const Node *> visiting;
        const NodePtr peripheral = resolvePeripheral(rawName, visiting);
        if (!peripheral)
            return false;
        QStringList names;
        std::vector<qint64> steps;
        if (!expandDim(*peripheral, &names, &steps))
            return false;
        qint64 base = 0;
        const QString baseText = peripheral->childText(QStringLiteral("baseAddress"));
        if (!baseText.isEmpty() && !parseNumber(baseText, &base))
            return fail(QStringLiteral("baseAddress \"%1\" of %2 is not a number").arg(baseText, rawName), peripheral->line);
        const Properties props = deviceProps.inherit(*peripheral);
        const Scope scope{peripheral->child(QStringLiteral("registers")).get(), rawName, nullptr};
        for (int i = 0; i < names.size(); ++i) {
            if (written.contains(names[i])) {
                warn(QStringLiteral("Peripheral %1 is named twice; the second is left out").arg(names[i]), peripheral->line);
                continue;
            }
            written.insert(names[i]);
            auto out = std::make_shared<Node>();
            out->tag = QStringLiteral("peripheral");
            for (const auto &a : peripheral->attributes) {
                if (a.first != QLatin1String("derivedFrom"))
                    out->attributes.push_back(a);
            }
            out->children.push_back(leaf(QStringLiteral("name"), names[i]));
            const QString desc = peripheral->childText(QStringLiteral("description"));
            if (!desc.isEmpty())
                out->children.push_back(leaf(QStringLiteral("description"), desc));
            if (!baseText.isEmpty())
                out->children.push_back(leaf(QStringLiteral("baseAddress"), hex(base + steps[size_t(i)])));
            for (const NodePtr &c : peripheral->children) {
                const QString &t = c->tag;
                if (t == QLatin1String("name") || t == QLatin1String("description") || t == QLatin1String("baseAddress")
                    || t == QLatin1String("registers") || isDimTag(t))
                    continue;
                out->children.push_back(c);
            }
            if (scope.container) {
                std::vector<NodePtr> regs;
                if (!flattenRegisters(*scope.container, props, QString(), 0, scope, regs, 0))
                    return false;
                auto registers = std::make_shared<Node>();
                registers->tag = QStringLiteral("registers");
                registers->children = std::move(regs);
                out->children.push_back(registers);
            }
            outPeripherals->children.push_back(out);
            ++m_peripherals;
        }
    }

    auto outDevice = std::make_shared<Node>();
    outDevice->tag = device->tag;
    outDevice->attributes = device->attributes;
    // The device's name first as well; the peripherals in place.
    if (const NodePtr name = device->child(QStringLiteral("name")))
        outDevice->children.push_back(name);
    for (const NodePtr &c : device->children) {
        if (c->tag == QLatin1String("name"))
            continue;
        outDevice->children.push_back(c->tag == QLatin1String("peripherals") ? NodePtr(outPeripherals) : c);
    }

    ChunkWriter writer{QString(), deliver};
    writer.text.reserve(40000);
    writer.text.append(QLatin1String("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
    writeNode(writer, *outDevice, 0);
    writer.flush(true);
    return true;
}

NodePtr SvdCompleter::resolvePeripheral(const QString &name, std::vector<const Node *> &visiting)
{
    if (const NodePtr done = m_resolvedPeripherals.value(name))
        return done;
    const NodePtr raw = m_rawPeripherals.value(name);
    const QString baseName = raw->attribute(QStringLiteral("derivedFrom")).trimmed();
    if (baseName.isEmpty()) {
        m_resolvedPeripherals.insert(name, raw);
        return raw;
    }
    if (!m_rawPeripherals.contains(baseName)) {
        fail(QStringLiteral("Peripheral %1 is derived from %2, which the file does not define").arg(name, baseName), raw->line);
        return nullptr;
    }
    if (std::find(visiting.begin(), visiting.end(), raw.get()) != visiting.end()) {
        fail(QStringLiteral("Peripheral %1 is derived from itself through derivedFrom").arg(name), raw->line);
        return nullptr;
    }
    visiting.push_back(raw.get());
    const NodePtr base = resolvePeripheral(baseName, visiting);
    visiting.pop_back();
    if (!base)
        return nullptr;
    std::shared_ptr<Node> merged = mergeDerived(*base, *raw);
    // Registers are merged one by one: the derived peripheral's own replace
    // the base's of the same name.
    const NodePtr ownRegs = raw->child(QStringLiteral("registers"));
    const NodePtr baseRegs = base->child(QStringLiteral("registers"));
    if (ownRegs && baseRegs) {
        auto regs = std::make_shared<Node>(*baseRegs);
        for (const NodePtr &r : ownRegs->children) {
            const QString n = r->childText(QStringLiteral("name"));
            auto same = std::find_if(regs->children.begin(), regs->children.end(), [&](const NodePtr &b) {
                return b->tag == r->tag && b->childText(QStringLiteral("name")) == n;
            });
            if (same != regs->children.end())
                *same = r;
            else
                regs->children.push_back(r);
        }
        for (NodePtr &c : merged->children) {
            if (c->tag == QLatin1String("registers"))
                c = regs;
        }
    }
    m_resolvedPeripherals.insert(name, merged);
    return merged;
}

NodePtr SvdCompleter::findInScope(const QString &path, const Scope &scope) const
{
    auto findChild = [](const Node *container, const QString &name) -> NodePtr {
        if (!container)
            return nullptr;
        for (const NodePtr &c : container->children) {
            if ((c->tag == QLatin1String("register") || c->tag == QLatin1String("cluster"))
                && c->childText(QStringLiteral("name")) == name)
                return c;
        }
        return nullptr;
    };
    const QStringList parts = path.split('.');
    if (parts.size() == 1) {
        for (const Scope *s = &scope; s; s = s->parent) {
            if (NodePtr found = findChild(s->container, path))
                return found;
        }
        return nullptr;
    }
    // A dotted path starts at a peripheral, or else at the current scope's
    // clusters.
    const Node *container = nullptr;
    int first = 0;
    if (const NodePtr p = m_resolvedPeripherals.value(parts[0], m_rawPeripherals.value(parts[0]))) {
        container = p->child(QStringLiteral("registers")).get();
        first = 1;
    } else {
        container = scope.container;
    }
    NodePtr found;
    for (int i = first; i < parts.size(); ++i) {
        found = findChild(container, parts[i]);
        if (!found)
            return nullptr;
        container = found.get();
    }
    return found;
}

NodePtr SvdCompleter::resolveDerived(const NodePtr &node, const Scope &scope, std::vector<const Node *> &visiting)
{
    const QString baseName = node->attribute(QStringLiteral("derivedFrom")).trimmed();
    if (baseName.isEmpty())
        return node;
    const QString what = node->tag + QLatin1Char(' ') + scope.peripheral + QLatin1Char('.') + node->childText(QStringLiteral("name"));
    const NodePtr base = findInScope(baseName, scope);
    if (!base) {
        fail(QStringLiteral("%1 is derived from %2, which the file does not define").arg(what, baseName), node->line);
        return nullptr;
    }
    if (base.get() == node.get() || std::find(visiting.begin(), visiting.end(), base.get()) != visiting.end()) {
        fail(QStringLiteral("%1 is derived from itself through derivedFrom").arg(what), node->line);
        return nullptr;
    }
    visiting.push_back(node.get());
    const NodePtr resolvedBase = resolveDerived(base, scope, visiting);
    visiting.pop_back();
    if (!resolvedBase)
        return nullptr;
    return mergeDerived(*resolvedBase, *node);
}

bool SvdCompleter::expandDim(const Node &node, QStringList *names, std::vector<qint64> *steps)
{
    const QString name = node.childText(QStringLiteral("name"));
    names->clear();
    steps->clear();
    const QString dimText = node.childText(QStringLiteral("dim"));
    if (dimText.isEmpty()) {
        names->append(name);
        steps->push_back(0);
        return true;
    }
    qint64 dim = 0;
    if (!parseNumber(dimText, &dim))
        return fail(QStringLiteral("dim \"%1\" of %2 is not a number").arg(dimText, name), node.line);
    if (dim < 1 || dim > kMaxDim)
        return fail(QStringLiteral("dim %1 of %2 is out of range (1 to %3)").arg(dim).arg(name).arg(kMaxDim), node.line);
    qint64 increment = 0;
    const QString incText = node.childText(QStringLiteral("dimIncrement"), QStringLiteral("0"));
    if (!parseNumber(incText, &increment))
        return fail(QStringLiteral("dimIncrement \"%1\" of %2 is not a number").arg(incText, name), node.line);

    QStringList indices;
    const QString indexText = node.childText(QStringLiteral("dimIndex"));
    static const QRegularExpression numberRange(QStringLiteral("^(\\d+)\\s*-\\s*(\\d+)$"));
    static const QRegularExpression letterRange(QStringLiteral("^([A-Za-z])\\s*-\\s*([A-Za-z])$"));
    if (indexText.isEmpty()) {
        for (qint64 i = 0; i < dim; ++i)
            indices.append(QString::number(i));
    } else if (const auto m = numberRange.match(indexText); m.hasMatch()) {
        const qint64 from = m.captured(1).toLongLong();
        const qint64 to = m.captured(2).toLongLong();
        for (qint64 i = from; i <= to && indices.size() < dim; ++i)
            indices.append(QString::number(i));
    } else if (const auto l = letterRange.match(indexText); l.hasMatch()) {
        for (QChar c = l.captured(1).at(0); c <= l.captured(2).at(0) && indices.size() < dim; c = QChar(c.unicode() + 1))
            indices.append(QString(c));
    } else {
        for (const QString &part : indexText.split(','))
            indices.append(part.trimmed());
    }
    if (indices.size() < dim) {
        warn(QStringLiteral("dimIndex of %1 names %2 of %3 elements; the rest are numbered")
                 .arg(name)
                 .arg(indices.size())
                 .arg(dim),
             node.line);
        for (qint64 i = indices.size(); i < dim; ++i)
            indices.append(QString::number(i));
    }
    QString pattern = name;
    pattern.replace(QLatin1String("[%s]"), QLatin1String("%s"));
    if (!pattern.contains(QLatin1String("%s"))) {
        warn(QStringLiteral("Array %1 has no %s in its name; the index is appended").arg(name), node.line);
        pattern += QLatin1String("%s");
    }
    for (qint64 i = 0; i < dim; ++i) {
        QString n = pattern;
        names->append(n.replace(QLatin1String("%s"), indices[int(i)]));
        steps->push_back(i * increment);
    }
    return true;
}

bool SvdCompleter::flattenRegisters(const Node &container, const Properties &inherited, const QString &prefix,
                                    qint64 offset, const Scope &scope, std::vector<NodePtr> &out, int depth)
{
    if (depth > kMaxClusterDepth)
        return fail(QStringLiteral("Clusters of %1 nest deeper than %2 levels").arg(scope.peripheral).arg(kMaxClusterDepth),
                    container.line);
    for (const NodePtr &raw : container.children) {
        const bool isCluster = raw->tag == QLatin1String("cluster");
        if (raw->tag != QLatin1String("register") && !isCluster)
            continue;
        std::vector<const Node *> visiting;
        const NodePtr node = resolveDerived(raw, scope, visiting);
        if (!node)
            return false;
        QStringList names;
        std::vector<qint64> steps;
        if (!expandDim(*node, &names, &steps))
            return false;
        qint64 own = 0;
        const QString offsetText = node->childText(QStringLiteral("addressOffset"), QStringLiteral("0"));
        if (!parseNumber(offsetText, &own))
            return fail(QStringLiteral("addressOffset \"%1\" of %2.%3 is not a number")
                            .arg(offsetText, scope.peripheral, names.value(0)),
                        node->line);
        const Properties props = inherited.inherit(*node);
        for (int i = 0; i < names.size(); ++i) {
            const qint64 at = offset + own + steps[size_t(i)];
            if (isCluster) {
                const Scope inner{node.get(), scope.peripheral, &scope};
                if (!flattenRegisters(*node, props, prefix + names[i] + QLatin1Char('_'), at, inner, out, depth + 1))
                    return false;
            } else {
                const NodePtr reg = completeRegister(node, prefix + names[i], at, props, scope);
                if (!reg)
                    return false;
                out.push_back(reg);
                ++m_registers;
            }
        }
    }
    return true;
}

NodePtr SvdCompleter::completeRegister(const NodePtr &reg, const QString &name, qint64 offset,
                                       const Properties &props, const Scope &scope)
{
    auto out = std::make_shared<Node>();
    out->tag = QStringLiteral("register");
    out->line = reg->line;
    for (const auto &a : reg->attributes) {
        if (a.first != QLatin1String("derivedFrom"))
            out->attributes.push_back(a);
    }
    out->children.push_back(leaf(QStringLiteral("name"), name));
    const QString desc = reg->childText(QStringLiteral("description"));
    if (!desc.isEmpty())
        out->children.push_back(leaf(QStringLiteral("description"), desc));
    out->children.push_back(leaf(QStringLiteral("addressOffset"), hex(offset)));
    // The reader takes size in decimal only.
    qint64 size = 0;
    if (props.size.isEmpty() || !parseNumber(props.size, &size) || size <= 0) {
        warn(QStringLiteral("Register %1.%2 has no size; 32 bits are written").arg(scope.peripheral, name), reg->line);
        size = 32;
    }
    out->children.push_back(leaf(QStringLiteral("size"), QString::number(size)));
    if (!props.access.isEmpty())
        out->children.push_back(leaf(QStringLiteral("access"), props.access));
    if (!props.protection.isEmpty())
        out->children.push_back(leaf(QStringLiteral("protection"), props.protection));
    if (!props.resetValue.isEmpty())
        out->children.push_back(leaf(QStringLiteral("resetValue"), props.resetValue));
    if (!props.resetMask.isEmpty())
        out->children.push_back(leaf(QStringLiteral("resetMask"), props.resetMask));
    NodePtr fields;
    for (const NodePtr &c : reg->children) {
        const QString &t = c->tag;
        if (t == QLatin1String("fields")) {
            fields = c;
            continue;
        }
        if (t == QLatin1String("name") || t == QLatin1String("description") || t == QLatin1String("addressOffset")
            || t == QLatin1String("size") || t == QLatin1String("access") || t == QLatin1String("protection")
            || t == QLatin1String("resetValue") || t == QLatin1String("resetMask") || isDimTag(t))
            continue;
        out->children.push_back(c);
    }
    if (fields) {
        auto outFields = std::make_shared<Node>();
        outFields->tag = QStringLiteral("fields");
        const int before = m_error.isEmpty() ? 0 : 1;
        completeFields(*fields, scope.peripheral + QLatin1Char('.') + name, outFields->children);
        if (!before && !m_error.isEmpty())
            return nullptr;
        out->children.push_back(outFields);
    }
    return out;
}

void SvdCompleter::completeFields(const Node &fields, const QString &where, std::vector<NodePtr> &out)
{
    static const QRegularExpression rangePattern(QStringLiteral("^\\[\\s*(\\d+)\\s*:\\s*(\\d+)\\s*\\]$"));
    QHash<QString, NodePtr> byName;
    for (const NodePtr &f : fields.children) {
        if (f->tag == QLatin1String("field"))
            byName.insert(f->childText(QStringLiteral("name")), f);
    }
    QSet<QString> written;
    for (const NodePtr &raw : fields.children) {
        if (raw->tag != QLatin1String("field"))
            continue;
        // A field derives from a sibling, or from a field named by a dotted
        // path whose last part is its name.
        NodePtr field = raw;
        std::vector<const Node *> visiting;
        while (true) {
            const QString baseName = field->attribute(QStringLiteral("derivedFrom")).trimmed();
            if (baseName.isEmpty())
                break;
            const NodePtr base = byName.value(baseName.section('.', -1));
            const QString what = where + QLatin1Char('.') + raw->childText(QStringLiteral("name"));
            if (!base) {
                fail(QStringLiteral("Field %1 is derived from %2, which the register does not define").arg(what, baseName),
                     raw->line);
                return;
            }
            if (std::find(visiting.begin(), visiting.end(), base.get()) != visiting.end() || base.get() == raw.get()) {
                fail(QStringLiteral("Field %1 is derived from itself through derivedFrom").arg(what), raw->line);
                return;
            }
            visiting.push_back(base.get());
            std::shared_ptr<Node> merged = mergeDerived(*base, *field);
            // The base's own derivedFrom carries on the walk.
            const QString next = base->attribute(QStringLiteral("derivedFrom"));
            if (!next.isEmpty())
                merged->attributes.emplace_back(QStringLiteral("derivedFrom"), next);
            field = merged;
        }

        QStringList names;
        std::vector<qint64> steps;
        if (!expandDim(*field, &names, &steps))
            return;
        qint64 lsb = -1, msb = -1;
        const QString lsbText = field->childText(QStringLiteral("lsb"));
        const QString msbText = field->childText(QStringLiteral("msb"));
        const QString offsetText = field->childText(QStringLiteral("bitOffset"));
        const QString rangeText = field->childText(QStringLiteral("bitRange"));
        const QString fieldName = field->childText(QStringLiteral("name"));
        bool placed = false;
        if (!lsbText.isEmpty() && !msbText.isEmpty()) {
            placed = parseNumber(lsbText, &lsb) && parseNumber(msbText, &msb);
        } else if (!offsetText.isEmpty()) {
            qint64 width = 1;
            placed = parseNumber(offsetText, &lsb)
                && parseNumber(field->childText(QStringLiteral("bitWidth"), QStringLiteral("1")), &width) && width >= 1;
            msb = lsb + width - 1;
        } else if (!rangeText.isEmpty()) {
            const auto m = rangePattern.match(rangeText);
            placed = m.hasMatch();
            msb = m.captured(1).toLongLong();
            lsb = m.captured(2).toLongLong();
        }
        if (!placed || lsb < 0 || msb < lsb || msb > 63) {
            warn(QStringLiteral("Field %1.%2 has no usable bit position and is left out").arg(where, fieldName), field->line);
            continue;
        }
        for (int i = 0; i < names.size(); ++i) {
            if (written.contains(names[i])) {
                warn(QStringLiteral("Field %1.%2 is named twice; the second is left out").arg(where, names[i]), field->line);
                continue;
            }
            written.insert(names[i]);
            auto outField = std::make_shared<Node>();
            outField->tag = QStringLiteral("field");
            for (const auto &a : field->attributes) {
                if (a.first != QLatin1String("derivedFrom"))
                    outField->attributes.push_back(a);
            }
            outField->children.push_back(leaf(QStringLiteral("name"), names[i]));
            const QString desc = field->childText(QStringLiteral("description"));
            if (!desc.isEmpty())
                outField->children.push_back(leaf(QStringLiteral("description"), desc));
            outField->children.push_back(leaf(QStringLiteral("lsb"), QString::number(lsb + steps[size_t(i)])));
            outField->children.push_back(leaf(QStringLiteral("msb"), QString::number(msb + steps[size_t(i)])));
            std::vector<NodePtr> enumerations;
            for (const NodePtr &c : field->children) {
                const QString &t = c->tag;
                if (t == QLatin1String("enumeratedValues")) {
                    std::vector<const Node *> seen;
                    const NodePtr values = completeEnumeratedValues(c, seen);
                    if (!values)
                        return;
                    enumerations.push_back(values);
                    continue;
                }
                if (t == QLatin1String("name") || t == QLatin1String("description") || t == QLatin1String("lsb")
                    || t == QLatin1String("msb") || t == QLatin1String("bitOffset") || t == QLatin1String("bitWidth")
                    || t == QLatin1String("bitRange") || isDimTag(t))
                    continue;
                outField->children.push_back(c);
            }
            // Vendors describe the read and the write side of a field in
            // two lists that share values; the reader merges all lists into
            // one, so a value is kept once, where it first comes.
            QSet<qint64> seenValues;
            for (const NodePtr &e : enumerations) {
                auto unique = std::make_shared<Node>(*e);
                unique->children.clear();
                for (const NodePtr &v : e->children) {
                    qint64 number = 0;
                    if (v->tag == QLatin1String("enumeratedValue")
                        && parseNumber(v->childText(QStringLiteral("value")), &number)) {
                        if (seenValues.contains(number))
                            continue;
                        seenValues.insert(number);
                    }
                    unique->children.push_back(v);
                }
                outField->children.push_back(unique);
            }
            out.push_back(outField);
            ++m_fields;
        }
    }
}

NodePtr SvdCompleter::completeEnumeratedValues(const NodePtr &values, std::vector<const Node *> &visiting)
{
    NodePtr source = values;
    const QString baseName = values->attribute(QStringLiteral("derivedFrom")).trimmed();
    if (!baseName.isEmpty()) {
        const NodePtr base = m_enumerations.value(baseName.section('.', -1));
        if (!base) {
            fail(QStringLiteral("Enumerated values are derived from %1, which the file does not define").arg(baseName),
                 values->line);
            return nullptr;
        }
        if (base.get() == values.get() || std::find(visiting.begin(), visiting.end(), base.get()) != visiting.end()) {
            fail(QStringLiteral("Enumerated values %1 are derived from themselves through derivedFrom").arg(baseName),
                 values->line);
            return nullptr;
        }
        visiting.push_back(values.get());
        const NodePtr resolvedBase = completeEnumeratedValues(base, visiting);
        visiting.pop_back();
        if (!resolvedBase)
            return nullptr;
        source = mergeDerived(*resolvedBase, *values);
    }
    // A default entry has no value of its own: the reader would take it for
    // a 0 and hide the real item of that value.
    auto out = std::make_shared<Node>();
    out->tag = source->tag;
    out->line = source->line;
    for (const auto &a : source->attributes) {
        if (a.first != QLatin1String("derivedFrom"))
            out->attributes.push_back(a);
    }
    for (const NodePtr &c : source->children) {
        if (c->tag == QLatin1String("enumeratedValue") && c->childText(QStringLiteral("value")).isEmpty())
            continue;
        out->children.push_back(c);
    }
    return out;
}

bool SvdCompleter::needsCompletion(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader xml(&file);
    // Per open element: whether its name was seen yet.
    std::vector<std::pair<QString, bool>> stack;
    bool inRegister = false;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement) {
            const QStringRef tag = xml.name();
            if (xml.attributes().hasAttribute(QLatin1String("derivedFrom")) || tag == QLatin1String("dim")
                || tag == QLatin1String("cluster") || tag == QLatin1String("bitOffset") || tag == QLatin1String("bitRange"))
                return true;
            if (!stack.empty()) {
                auto &parent = stack.back();
                const bool named = parent.first == QLatin1String("register") || parent.first == QLatin1String("field")
                    || parent.first == QLatin1String("peripheral");
                if (named && !parent.second && tag != QLatin1String("name"))
                    return true;
                if (tag == QLatin1String("name"))
                    parent.second = true;
            }
            if (tag == QLatin1String("register"))
                inRegister = false;
            if (tag == QLatin1String("size") && !stack.empty() && stack.back().first == QLatin1String("register"))
                inRegister = true;
            stack.emplace_back(tag.toString(), false);
        } else if (xml.isEndElement()) {
            if (!stack.empty()) {
                if (stack.back().first == QLatin1String("register") && !inRegister)
                    return true;  // a register without its own size
                stack.pop_back();
            }
        }
    }
    return false;
}
