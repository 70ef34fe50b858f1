#include "shell/TextBrowser.h"

TextBrowser::TextBrowser(QWidget *parent)
    : QTextEdit(parent)
{
    setAcceptRichText(true);
    setReadOnly(false);
}
