#include "elements/Reports.h"

#include "elements/MessageSink.h"
#include "elements/Selectors.h"

namespace Report {

void invalidLoadValue(const QString &define, const QString &text)
{
    showError(QStringLiteral("Trying to load \"%1\" with invalid value \"%2\"").arg(define, text));
}

void invalidSetValue(const QString &define, const QString &text)
{
    showError(QStringLiteral("Trying to set \"%1\" to invalid value \"%2\"").arg(define, text));
}

void cannotReturnValue(int kind, const QString &define)
{
    // Only the four value forms are named; higher kinds leave the word empty.
    const QString word = kind >= 0 && kind <= Selectors::DefineValue ? Selectors::word(kind) : QString();
    showError(QStringLiteral("Can not return value of type \"%1\" from \"%2\"").arg(word, define));
}

void cannotUse(const QString &command, const QString &define)
{
    showError(QStringLiteral("Can not use \"%1\" with parameter \"%2\"").arg(command, define));
}

void indexOutOfRange(const QString &define, const QString &word, qint64 index, qint64 low, qint64 high)
{
    showError(QStringLiteral("Index for %1.%2 (%3) is out of allowed range: %4..%5")
                  .arg(define, word).arg(index).arg(low).arg(high));
}

void bitsAlreadyAssigned(const QString &define, int msb, int lsb)
{
    showError(QStringLiteral("Tried to assign a GUI element to already assigned bits: %1\nMSB: %2 LSB: %3")
                  .arg(define).arg(msb).arg(lsb));
}

void svdBitsAlreadyAssigned(const QString &peripheral, const QString &reg, const QString &field, int msb, int lsb)
{
    showError(QStringLiteral("Tried to assign a GUI element to already assigned bits: %1.%2.%3\nMSB: %4 LSB: %5")
                  .arg(peripheral, reg, field).arg(msb).arg(lsb));
}

void bitOrderError(const QString &define, int msb, int lsb)
{
    showError(QStringLiteral("Bit order error in %1: msb(%2) < lsb(%3)").arg(define).arg(msb).arg(lsb));
}

void cannotSetBits(const QString &define, const QString &classWord, int msb, int lsb)
{
    showError(QStringLiteral("Trying to set MSB: %3 and LSB: %4 for %1 which is of type: %2\n")
                  .arg(define, classWord).arg(msb).arg(lsb));
}

void fieldsWithoutSvd(const QString &define)
{
    showError(QStringLiteral("Defines not representing an svd value can't have fields: %1").arg(define));
}

void defaultOutOfRange(const QString &define, const QString &defaultText, const QString &min, const QString &max)
{
    showError(QStringLiteral("Default value for %1 (%2) is out of allowed range: %3..%4")
                  .arg(define, defaultText, min, max));
}

void svdOutOfSize(const QString &peripheral, const QString &reg, const QString &field, int size)
{
    showError(QStringLiteral("Out of size error while reading svd file: %1.%2.%3 Size=%4")
                  .arg(peripheral, reg, field).arg(size));
}

void formulaElementUndefined(const QString &name)
{
    showError(QStringLiteral("Element used in formula not defined: \"%1\"").arg(name));
}

void invalidFormula(const QString &formula)
{
    showError(QStringLiteral("Invalid formula: \"%1\"").arg(formula));
}

void invalidFormulaValue(const QString &value)
{
    showError(QStringLiteral("Invalid value in formula: \"%1\"").arg(value));
}

void invalidLedb(const QString &value)
{
    showError(QStringLiteral("Invalid value in ledb: \"%1\"").arg(value));
}

void invalidLock(const QString &lock)
{
    showError(QStringLiteral("XML ERROR!\nInvalid lock: \"%1\"").arg(lock));
}

void invalidRecData(const QString &value)
{
    showError(QStringLiteral("Invalid value in recdata: \"%1\"").arg(value));
}

void sendUsbCannotConvert(const QString &value)
{
    showError(QStringLiteral("Send USB: Cannot convert \"%1\"").arg(value));
}

void invalidSetDef(const QString &item)
{
    showError(QStringLiteral("Invalid value in setdef: \"%1\"").arg(item));
}

void notStartingWithContainer(const QString &file)
{
    showError(QStringLiteral("Cannot read file %1\nNot starting with a container type!").arg(file));
}

QString wrongVersionText(const QString &programVersion, const QString &file, const QString &documentVersion)
{
    return QStringLiteral("Error: Wrong version of Quillon.\n%2 requires minimum Quillon %3\nCurrent version of Quillon is %1\n")
        .arg(programVersion, file, documentVersion);
}

void wrongVersion(const QString &programVersion, const QString &file, const QString &documentVersion)
{
    showError(wrongVersionText(programVersion, file, documentVersion));
}

void noChecksumElement(const QString &file)
{
    showError(QStringLiteral("No checksum element found in %1").arg(file));
}

void notFoundIn(const QString &what, const QString &where)
{
    showError(QStringLiteral("No %1 found in %2").arg(what, where));
}

QString cannotOpenFileText(const QString &file, const QString &reason)
{
    return QStringLiteral("Cannot open file %1:\n%2").arg(file, reason);
}

void cannotOpenFile(const QString &file, const QString &reason)
{
    showError(cannotOpenFileText(file, reason));
}

QString cannotReadFileText(const QString &file, const QString &reason)
{
    return QStringLiteral("Cannot read file %1:\n%2").arg(file, reason);
}

void cannotReadFile(const QString &file, const QString &reason)
{
    showError(cannotReadFileText(file, reason));
}

void fileManipulated(const QString &file)
{
    showError(QStringLiteral("File %1 has been manipulated\nDo not use it!").arg(file));
}

void writeError(const QString &file)
{
    showError(QStringLiteral("Write error in file %1\n").arg(file));
}

void scriptNotFound(const QString &file)
{
    showError(QStringLiteral("Could not find \"%1\".\nPlease check script folder settings.").arg(file));
}

void signedFiles(int count, const QString &list)
{
    showError(QStringLiteral("Successfully signed %1 files\n\n%2").arg(count).arg(list));
}

void qlnpVersionMismatch(const QString &qlnpVersion, const QString &xmlVersion)
{
    showError(QStringLiteral("Version of this qlnp configuration file does not match the current XML release version.\nQlnp version: %1\nCurrent xml release: %2")
                  .arg(qlnpVersion, xmlVersion));
}

void tableFromOtherXml(const QString &original, const QString &current)
{
    showError(QStringLiteral("This table's qlnp was saved from another XML\nOriginal xml filename: %1\nCurrent xml filename: %2")
                  .arg(original, current));
}

void tableVersionMismatch(const QString &tableVersion, const QString &xmlVersion)
{
    showError(QStringLiteral("Version of this table's qlnp file does not match the current xml version.\nTables qlnp version: %1\nCurrent xml version: %2")
                  .arg(tableVersion, xmlVersion));
}

void pictureNotLoaded(const QString &tag)
{
    showError(QStringLiteral("Picture of <%1> element couldn't be loaded.").arg(tag));
}

void formulaCycle(const QString &chain)
{
    showError(QStringLiteral("Formula depends on itself: \"%1\"").arg(chain));
}

} // namespace Report
