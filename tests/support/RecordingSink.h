#pragma once
#include <QStringList>

#include "elements/MessageSink.h"

// Installs itself as the message sink for its lifetime and keeps every
// console line and error text, so tests can check the exact messages.
class RecordingSink : public MessageSink
{
public:
    RecordingSink();
    ~RecordingSink() override;

    void consolePrint(const QString &html) override { console.append(html); }
    void showError(const QString &text) override { errors.append(text); }

    void clear() { console.clear(); errors.clear(); }
    // Whether any console line or error contains the text.
    bool contains(const QString &text) const;

    QStringList console;
    QStringList errors;

private:
    MessageSink *m_former = nullptr;
};
