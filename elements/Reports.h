#pragma once
#include <QString>

// The family of report functions: one per message text. Each builds the
// finished text and hands it to the error presenter; none of them stops the
// caller, which leaves the value as it was or builds the element anyway.
namespace Report {

void invalidLoadValue(const QString &define, const QString &text);
void invalidSetValue(const QString &define, const QString &text);
void cannotReturnValue(int kind, const QString &define);
void cannotUse(const QString &command, const QString &define);
void indexOutOfRange(const QString &define, const QString &word, qint64 index, qint64 low, qint64 high);
void bitsAlreadyAssigned(const QString &define, int msb, int lsb);
void svdBitsAlreadyAssigned(const QString &peripheral, const QString &reg, const QString &field, int msb, int lsb);
void bitOrderError(const QString &define, int msb, int lsb);
void cannotSetBits(const QString &define, const QString &classWord, int msb, int lsb);
void fieldsWithoutSvd(const QString &define);
void defaultOutOfRange(const QString &define, const QString &defaultText, const QString &min, const QString &max);
void svdOutOfSize(const QString &peripheral, const QString &reg, const QString &field, int size);
void formulaElementUndefined(const QString &name);
void invalidFormula(const QString &formula);
void invalidFormulaValue(const QString &value);
void invalidLedb(const QString &value);
void invalidLock(const QString &lock);
void invalidRecData(const QString &value);
void sendUsbCannotConvert(const QString &value);
void invalidSetDef(const QString &item);
void notStartingWithContainer(const QString &file);
void wrongVersion(const QString &programVersion, const QString &file, const QString &documentVersion);
void noChecksumElement(const QString &file);
void notFoundIn(const QString &what, const QString &where);
void cannotOpenFile(const QString &file, const QString &reason);
void cannotReadFile(const QString &file, const QString &reason);
void fileManipulated(const QString &file);
void writeError(const QString &file);
void scriptNotFound(const QString &file);
void signedFiles(int count, const QString &list);
void qlnpVersionMismatch(const QString &qlnpVersion, const QString &xmlVersion);
void tableFromOtherXml(const QString &original, const QString &current);
void tableVersionMismatch(const QString &tableVersion, const QString &xmlVersion);
// Display elements: a picture that can't be read (%1 the element's tag,
// "image" or "button"), and formulas that depend on themselves.
void pictureNotLoaded(const QString &tag);
void formulaCycle(const QString &chain);

// Texts of the family, for callers that need them without presenting them
// (the stream error of a reader, for instance).
QString wrongVersionText(const QString &programVersion, const QString &file, const QString &documentVersion);
QString cannotOpenFileText(const QString &file, const QString &reason);
QString cannotReadFileText(const QString &file, const QString &reason);

} // namespace Report
