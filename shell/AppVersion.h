#pragma once
#include <QString>

// The program's version, read once at start-up. Documents are checked
// against it, and exported headers carry it.
namespace AppVersion {

unsigned major();
unsigned minor();
unsigned patch();

// "a.b.c"
QString text();

// (a * 1000 + b) * 1000 + c
quint64 number();

} // namespace AppVersion
