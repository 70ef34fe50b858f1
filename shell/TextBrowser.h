#pragma once
#include <QTextEdit>

// The writable script pane of the console.
class TextBrowser : public QTextEdit
{
    Q_OBJECT
public:
    explicit TextBrowser(QWidget *parent = nullptr);
};
