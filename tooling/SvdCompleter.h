#pragma once
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

class QIODevice;

// Writes a completed copy of a CMSIS-SVD file in the subset the program's
// one-pass SVD reader takes: derived peripherals, registers, clusters, fields
// and enumerations are expanded; dim arrays and clusters become plain
// registers; every register carries its inherited size, access and reset
// value; fields are placed by lsb/msb only; and every node names itself
// before anything else, so the reader knows what it is in when the rest
// comes. Vendor files use the whole format; the reader stays small.
class SvdCompleter
{
public:
    struct Node;
    using NodePtr = std::shared_ptr<const Node>;
    struct Node
    {
        QString tag;
        QString text;
        std::vector<std::pair<QString, QString>> attributes;
        std::vector<NodePtr> children;
        qint64 line = 0;

        NodePtr child(const QString &tag) const;
        QString childText(const QString &tag, const QString &fallback = QString()) const;
        QString attribute(const QString &name) const;
    };

    // Largest dim accepted: an array beyond it is taken for a broken file
    // rather than unrolled into an output of gigabytes.
    static constexpr qint64 kMaxDim = 65536;

    // False with errorString() set when the input can't be completed; the
    // output file is then left as it was.
    bool completeFile(const QString &inputPath, const QString &outputPath);
    bool complete(const QByteArray &input, QByteArray *output);

    QString errorString() const { return m_error; }
    // Things completed with a guess or left out (a field without position,
    // a dimIndex shorter than dim); each one line of plain text.
    QStringList warnings() const { return m_warnings; }

    int peripheralCount() const { return m_peripherals; }
    int registerCount() const { return m_registers; }
    int fieldCount() const { return m_fields; }

    // True when the file uses something the reader does not take, so that
    // completing it first would bind more. False also for a file that can't
    // be read (whose fault the reader will tell). One streaming pass.
    static bool needsCompletion(const QString &path);

    // The default name of the completed copy: "<base>_completed.svd" beside
    // the input.
    static QString defaultOutputPath(const QString &inputPath);

    // Numbers as SVD writes them: decimal, 0x hexadecimal, #binary, 0b
    // binary, with an optional k/M/G multiplier. False when not a number.
    static bool parseNumber(const QString &text, qint64 *value);

private:
    struct Properties
    {
        QString size, access, resetValue, resetMask, protection;
        Properties inherit(const Node &node) const;
    };
    struct Scope;

    bool run(const QByteArray &input, const std::function<void(const QByteArray &)> &output);
    NodePtr parse(const QByteArray &input);
    NodePtr resolvePeripheral(const QString &name, std::vector<const Node *> &visiting);
    NodePtr resolveDerived(const NodePtr &node, const Scope &scope, std::vector<const Node *> &visiting);
    NodePtr findInScope(const QString &path, const Scope &scope) const;
    bool expandDim(const Node &node, QStringList *names, std::vector<qint64> *steps);
    bool flattenRegisters(const Node &container, const Properties &inherited, const QString &prefix, qint64 offset,
                          const Scope &scope, std::vector<NodePtr> &out, int depth);
    NodePtr completeRegister(const NodePtr &reg, const QString &name, qint64 offset, const Properties &props,
                             const Scope &scope);
    void completeFields(const Node &fields, const QString &where, std::vector<NodePtr> &out);
    NodePtr completeEnumeratedValues(const NodePtr &values, std::vector<const Node *> &visiting);
    bool fail(const QString &message, qint64 line = 0);
    void warn(const QString &message, qint64 line = 0);

    QString m_error;
    QStringList m_warnings;
    int m_peripherals = 0;
    int m_registers = 0;
    int m_fields = 0;
    // Peripherals as read and as derived, and every named enumeration of
    // the file, by name: what derivedFrom may point at.
    QHash<QString, NodePtr> m_rawPeripherals;
    QHash<QString, NodePtr> m_resolvedPeripherals;
    QHash<QString, NodePtr> m_enumerations;
};
