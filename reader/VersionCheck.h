#pragma once
#include <QString>

// Version numbers of descriptions: "a.b.c" read as (a * 1000 + b) * 1000 + c,
// with missing parts taken as 0.
class VersionCheck
{
public:
    static quint64 number(const QString &version);

    enum Verdict { Accepted, OnlyV1, TooNew };
    // The verdict for a document's root, against the running program.
    // The home page (scripts/index.xml) opens whatever its root and version.
    static Verdict check(const QString &rootName, const QString &version, bool homePage);

    static QString v1OnlyText();
};
