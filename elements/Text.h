#pragma once
#include <QLabel>

// A fixed text of the form: a caption, a heading, a note beside an element.
class Text : public QLabel
{
    Q_OBJECT
public:
    explicit Text(QWidget *parent = nullptr);
};
