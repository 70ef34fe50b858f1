#pragma once
#include "elements/SpinBox.h"

// A SpinBox that shows and takes its number in hexadecimal; its value
// texts stay decimal, and it reports itself as a SpinBox.
class HexSpinBox : public SpinBox
{
    Q_OBJECT
public:
    explicit HexSpinBox(QWidget *parent = nullptr);

protected:
    QString textFromValue(int value) const override;
    int valueFromText(const QString &text) const override;
    QValidator::State validate(QString &input, int &pos) const override;
};
