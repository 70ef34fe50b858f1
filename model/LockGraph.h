#pragma once
#include <QList>
#include <QString>
#include <QStringList>

// The locks of a document as blocks and wires: one block per element that
// locks or is locked, one port per lock value of a source, one link per
// lock string from the source's port to the target's block. Filled by the
// check after load and drawn by LockDialog.
struct LockGraph
{
    struct Block
    {
        QString name;
        // The values (keys) under which the element carries locks.
        QStringList ports;
    };

    struct Link
    {
        QString source;
        QString port;
        QString target;
        QString value;
    };

    QList<Block> blocks;
    QList<Link> links;

    int blockIndex(const QString &name) const
    {
        for (int i = 0; i < blocks.size(); ++i) {
            if (blocks.at(i).name == name)
                return i;
        }
        return -1;
    }

    // The block of that name, appended when it is not there yet.
    Block &block(const QString &name)
    {
        const int i = blockIndex(name);
        if (i >= 0)
            return blocks[i];
        blocks.append(Block{name, {}});
        return blocks.last();
    }

    bool isEmpty() const { return blocks.isEmpty(); }
    void clear()
    {
        blocks.clear();
        links.clear();
    }
};
