#include "shell/Document.h"

#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/MessageSink.h"
#include "elements/SlotWiring.h"
#include "reader/DescriptionReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

Document::Document(QObject *slotHost, QObject *parent)
    : QObject(parent)
    , m_slotHost(slotHost)
{
    DocumentTables::setCurrent(&m_tables);
}

Document::~Document()
{
    clear();
    if (DocumentTables::current() == &m_tables)
        DocumentTables::setCurrent(nullptr);
}

void Document::clear()
{
    // Containers own their elements: deleting the root ends the form. The
    // tables only point into it and are emptied with it.
    delete m_root.data();
    m_root = nullptr;
    m_tables.clear();
}

bool Document::read(const QString &fileName, const ReaderOptions &options)
{
    clear();
    m_errorText.clear();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        m_errorText = file.errorString();
        return false;
    }
    m_path = QFileInfo(fileName).absoluteFilePath();
    m_folder = QFileInfo(fileName).absolutePath();
    QDir::setCurrent(m_folder);

    DescriptionReader reader(m_tables, options);
    if (!reader.read(&file, fileName)) {
        m_errorText = reader.errorString();
        m_tables.clear();
        return false;
    }
    m_state = reader.state();
    m_root = reader.takeRootWidget();
    return true;
}

void Document::createReservedDefines()
{
    auto *dummy = m_tables.addDataValue(new DataClass(QStringLiteral("dummy_define")));
    const char *ledSlots[] = {SLOT(on_updateLED()), SLOT(on_updateSvgImage()), SLOT(on_updateCurve()),
                              SLOT(on_updateDial()), SLOT(on_updateThermo()), SLOT(on_updateLog())};
    for (const char *slot : ledSlots)
        SlotWiring::connectIfPresent(dummy, SIGNAL(updateLEDs()), m_slotHost, slot);
    SlotWiring::connectIfPresent(dummy, SIGNAL(updateMathLabels()), m_slotHost, SLOT(on_updateMathLabel()));

    for (const char *name : {"$ADDRESS$", "$VALUE$", "$FUNC$"}) {
        auto *data = m_tables.addDataValue(new DataClass(QLatin1String(name)));
        SlotWiring::connectIfPresent(data, SIGNAL(updateMathLabels()), m_slotHost, SLOT(on_updateMathLabel()));
    }
}

void Document::startUp(bool afterLoad, const QString &configurationName)
{
    bool anyHeader = false;
    for (ActiveElement *element : m_tables.elementList) {
        if (!element->property("header").toString().isEmpty()) {
            anyHeader = true;
            break;
        }
    }
    if (anyHeader) {
        const QString form = afterLoad
            ? QStringLiteral("<font color=\"blue\"><b>Loaded configuration: </font></b>%1. No headerfiles written. <b>To update configuration please save this file!</b><br>")
            : QStringLiteral("<font color=\"blue\"><b>New configuration: </font></b>%1. No headerfiles written. <b>To update configuration please save this file!</b><br>");
        consolePrint(form.arg(configurationName.isEmpty() ? m_path : configurationName));
    }

    for (DataClass *data : qAsConst(m_tables.dataValues))
        data->applyDefault();
    // Defaults first, signals afterwards: a default must not cause actions.
    for (ActiveElement *element : m_tables.elementList) {
        element->applyDefault();
        element->connectSignals();
    }
}

void Document::refreshDisplays()
{
    if (DataClass *dummy = m_tables.dataValue(QStringLiteral("dummy_define")))
        dummy->setValue(0);
}
