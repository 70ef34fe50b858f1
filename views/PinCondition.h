#pragma once
#include <QString>

#include "model/Expression.h"

class DocumentTables;

// The condition under which a function sits on a pin. Compiled once when
// the pin mapping file is read, evaluated at every refresh of the mapper.
//
// Two forms: `define==text` / `define!=text` (exactly three tokens, the
// first naming an element or record) compares the define's value with the
// text; anything else is an expression whose result other than 0 holds.
// An empty text always holds; a name that nothing bears never does (and
// says nothing, since the mapper asks many times a second).
class PinCondition
{
public:
    enum class Form { Always, TextCompare, Expression };

    PinCondition() = default;
    explicit PinCondition(const QString &text);

    // Compiles `text`. Whether a three-token text is a comparison depends
    // on whether its first token names something when it is evaluated.
    void compile(const QString &text);

    bool holds(DocumentTables *tables = nullptr) const;

    Form form() const { return m_form; }
    QString text() const { return m_text; }
    // The define and text of the three-token form.
    QString define() const { return m_define; }
    QString expected() const { return m_expected; }
    bool negated() const { return m_negated; }

private:
    bool expressionHolds(DocumentTables *tables) const;

    Form m_form = Form::Always;
    QString m_text;
    QString m_define;
    QString m_expected;
    bool m_negated = false;
    ::Expression m_expression;
};
