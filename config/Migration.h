#pragma once
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

class HardwareModel;
class Register;

// How the names of a description moved between its releases, read from the
// description's `migration` file: "OLD NEW" moves a value, a lone "OLD" says
// the name was dropped on purpose. After a configuration is loaded, the
// values that found no element are moved to their new registers, and what
// still can't be placed is left for the user to see.
class Migration
{
public:
    // Reads the file; false (error holds the reason) when it can't be read.
    // An empty path reads as a migration without entries.
    bool read(const QString &path, QString *error);
    // From a text of lines, as the file holds them.
    void parse(const QString &text);

    bool isEmpty() const { return m_moves.isEmpty() && m_dropped.isEmpty(); }
    // The new name of an old one; empty when the name did not move.
    QString newName(const QString &oldName) const { return m_moves.value(oldName); }
    bool isDropped(const QString &name) const { return m_dropped.contains(name); }
    // Whether some entry moves a value to this name.
    bool isTarget(const QString &name) const { return m_targets.contains(name); }

    // The unresolved "#define <name> <value>" lines whose name moved, with
    // the new name in its place, in the order of the file's entries; the old
    // names go to resolvedNames.
    QStringList apply(const QStringList &unresolved, QStringList *resolvedNames) const;

    // The register a joined name stands for: "<peripheral>_<register>",
    // split at the first "_" that gives both. Null when none does.
    static const Register *registerNamed(const HardwareModel &model, const QString &name);
    // Puts the value of a "#define <name> <value> [<peripheral.register>]"
    // line into its register's elements; false when no register takes it.
    static bool applyLine(const HardwareModel &model, const QString &line);

    // What is left of a load for the user, after the moves are applied:
    // the unresolved lines and the unseen defines (anchors to them).
    struct Leftovers
    {
        QStringList unresolved;
        QStringList unseen;
        QStringList anchors() const;
        bool isEmpty() const { return unresolved.isEmpty() && unseen.isEmpty(); }
    };
    Leftovers resolve(const HardwareModel &model, QStringList unresolved, QStringList unseen) const;

private:
    QHash<QString, QString> m_moves;
    // The entries' old names in file order, for a repeatable result.
    QStringList m_order;
    QSet<QString> m_dropped;
    QSet<QString> m_targets;
};
