#include "elements/Text.h"

Text::Text(QWidget *parent)
    : QLabel(parent)
{
}
