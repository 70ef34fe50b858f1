#pragma once
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>
#include <functional>
#include <memory>

#include "reader/DocumentState.h"
#include "reader/KeptElement.h"

class Container;
class DocumentTables;
class ELFReader;
class HardwareModel;
class QIODevice;
class QObject;
class QWidget;

// What the reader needs from the run: the -d and -i texts of the command
// line, the home page (exempt from the version check), and the object whose
// slots the elements' signals end in (the main window; null in tests).
struct ReaderOptions
{
    QString defines;
    QString includePaths;
    QString homePage;
    QObject *slotHost = nullptr;
    // Where elements claim their register bits; null reads the form without
    // a hardware model (previews, tests of the layout).
    HardwareModel *model = nullptr;
};

// Turns an nvxmlcfg document into a live form in one forward pass, with no
// document tree: each element is made by its container's factory as it is
// met, in document order. Lives for one read.
class DescriptionReader
{
public:
    // The reader of one element kind: called with the current container
    // while the stream stands at the element's start tag; it must consume
    // the element up to its end tag.
    using Handler = std::function<void(DescriptionReader &reader, Container *container)>;

    DescriptionReader(DocumentTables &tables, const ReaderOptions &options);
    ~DescriptionReader();

    // Reads a document from an open device; fileName is used in messages
    // and for the folder of relative paths. True on success; the root
    // container then belongs to the caller (takeRootWidget).
    bool read(QIODevice *device, const QString &fileName);

    // The stream's error text with the file position, for "Cannot read file".
    QString errorString() const;

    // Sends a message about the element at the stream's position to the
    // console; the read goes on.
    void xmlMessage(const QString &text, const QString &define, bool isError);

    // Reads the children of the current element into a container.
    void readChildren(Container *container);

    // The root container's widget; ownership passes to the caller.
    QWidget *takeRootWidget();
    QWidget *rootWidget() const { return m_root; }

    const DocumentState &state() const { return m_state; }
    DocumentState &state() { return m_state; }
    QXmlStreamReader &xml() { return *m_xml; }
    DocumentTables &tables() { return m_tables; }
    const ReaderOptions &options() const { return m_options; }
    // The file named in messages (the include being read, or the document).
    QString fileName() const { return m_fileName; }
    // The folder relative paths are taken from.
    QString folder() const { return m_folder; }
    HardwareModel *model() const { return m_options.model; }
    // The SVD file named so far (elements bound to it record its name).
    QString svdName() const { return m_state.svdName; }

    // The header the following elements are exported to (the enclosing
    // `header` element's file).
    QString currentHeader() const { return m_header; }
    // The whole document, as read in text mode, for its digest.
    const QByteArray &content() const { return m_content; }

    // Registers the reader of an element kind (by exact, case-sensitive name).
    void registerHandler(const QString &name, Handler handler);

    enum DefineTable { ElementDefine, PushButtonDefine, VarDefine, ImageDefine };
    // Reports a non-empty define that is already in the given table; the
    // reader carries on with the duplicate. True when it was a duplicate.
    bool checkDuplicateDefine(const QString &define, DefineTable table);

    // Next running name of a container: prefix + "_" + number of containers.
    QString nextContainerName(const QString &prefix) const;

    // Connects a signal of the element to the host's slot of that name, if
    // the host has one.
    void connectToHost(QObject *sender, const char *signal, const char *slot);

    // Resolves a file named by the description: as given, else in the
    // document's folder. Empty when it is in neither.
    QString findFile(const QString &name) const;

    // Tells the reader which object the element being read became (the
    // first one told wins), so that the kept element knows it.
    void noteElement(QObject *object);

    // Raises an error on the stream, ending the read.
    void raiseError(const QString &text);
    // The symbols of the firmware named by `elf`, for `var` symbols; alive
    // with this reader.
    ELFReader &elfReader();

private:
    bool readRoot();
    bool checkVersion(const QString &rootName, const QString &version);
    bool checkChecksum(const QByteArray &bytes, bool &pendingChild);
    bool readRootLevelElement(bool &containerFound);
    bool readRootLevelElementOf(const QString &name, const QXmlStreamAttributes &a,
                                const std::function<QString(const char *)> &attr);
    void dispatch(Container *container);
    void readChildrenFrom(Container *container, bool pendingChild);
    void readInclude(Container *container);
    void readHeader(Container *container);
    void readBranch(Container *container);
    void readContainer(Container *parent, const QString &kind, const QString &name);
    bool readFileElement(const QString &kind);
    void readVersion();
    void registerBuiltinHandlers();
    QString positionText(bool withBreak) const;
    // Where the current start tag begins in the text being read.
    int startTagOffset() const;
    // Keeps the element just read (from its start tag at `start`).
    void keepRead(KeptElement *element, int start);
    void readVersionWith(const std::function<bool()> &readChild);

    DocumentTables &m_tables;
    ReaderOptions m_options;
    DocumentState m_state;
    std::unique_ptr<QXmlStreamReader> m_ownStream;
    QXmlStreamReader *m_xml = nullptr;
    QByteArray m_content;
    // The text of the stream being read (the document or an include):
    // kept elements take their text from it by the stream's offsets.
    QString m_text;
    QList<KeptElement *> m_keptStack;
    QString m_fileName;
    QString m_folder;
    QString m_header;
    QString m_documentVersion;
    QWidget *m_root = nullptr;
    QHash<QString, Handler> m_handlers;
    QList<Container *> m_containers;
    QStringList m_includeStack;
    // Elements being read inside each other (dispatch depth).
    int m_nesting = 0;
    // Includes read so far, nested ones counted.
    int m_includeCount = 0;
    std::unique_ptr<ELFReader> m_elf;
};
