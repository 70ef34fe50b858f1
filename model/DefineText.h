#pragma once
#include <QString>

// The pieces of a define "<peripheral>.<register>[.<field>][[msb:lsb]]" or
// with "[bit]". Descriptions in the field rely on the exact splitting rules,
// odd cases included, so they are kept as they are.
class DefineText
{
public:
    static DefineText parse(const QString &define);

    QString peripheral;
    // Text of the second piece up to its first "["; empty without one.
    QString registerName;
    // Only with exactly three pieces; may then be empty ("P.R.[1]").
    QString field;
    bool hasField = false;
    // -1 when the define selects no bits or a number can't be read.
    int msb = -1;
    int lsb = -1;
};
