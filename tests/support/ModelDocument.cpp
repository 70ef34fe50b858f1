#include "ModelDocument.h"

#include "FakeElement.h"
#include "model/Peripheral.h"
#include "model/SvdReader.h"

ModelDocument::ModelDocument() = default;

ModelDocument::~ModelDocument() = default;

FakeElement *ModelDocument::element(const QString &define, qint64 maximum)
{
    auto *e = new FakeElement(define, &owner);
    e->maximum = maximum;
    return e;
}

FakeElement *ModelDocument::claim(const QString &define, const QString &header, bool svdBound, const QString &svdFile)
{
    FakeElement *e = element(define);
    model.claimDefine(define, header, e, svdBound);
    if (!svdFile.isEmpty())
        e->QObject::setProperty("svd", svdFile);
    return e;
}

Register *ModelDocument::reg(const QString &peripheral, const QString &name) const
{
    return HardwareModel::findRegister(model.findPeripheral(peripheral), name);
}

bool ModelDocument::read(const QByteArray &svd)
{
    SvdReader reader(model);
    const bool ok = reader.read(svd);
    readError = ok ? QString() : reader.errorString();
    return ok;
}
