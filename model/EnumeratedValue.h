#pragma once
#include <QString>

// One value of a field's enumeration as the SVD file names it.
struct EnumeratedValue
{
    QString name;
    QString description;
    int value = 0;
};
