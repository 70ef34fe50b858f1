#include "elements/RecordingHook.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DoubleSpinBox.h"
#include "elements/Knob.h"
#include "elements/LineEdit.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/TextEdit.h"
#include "elements/ToggleButton.h"

#include <QAbstractButton>

namespace {
RecordingHook::Writer &writer()
{
    static RecordingHook::Writer w;
    return w;
}

QString setLine(const QString &name, const QString &value)
{
    return QStringLiteral("Set(%1, %2)").arg(name, value);
}
} // namespace

void RecordingHook::setWriter(Writer w)
{
    writer() = std::move(w);
}

bool RecordingHook::recording()
{
    return bool(writer());
}

bool RecordingHook::hasFocus(const QObject *object)
{
    if (!object)
        return false;
    if (auto *group = qobject_cast<const QButtonGroup *>(object)) {
        const auto buttons = group->buttons();
        for (QAbstractButton *b : buttons) {
            if (b->hasFocus())
                return true;
        }
        return false;
    }
    if (object->isWidgetType())
        return static_cast<const QWidget *>(object)->hasFocus();
    return false;
}

void RecordingHook::record(const QString &command, const QObject *focusOwner)
{
    if (!writer() || command.isEmpty())
        return;
    if (focusOwner && !hasFocus(focusOwner))
        return;
    // Copied: the writer may be replaced while it runs (a stop from a slot).
    Writer w = writer();
    w(command);
}

QString RecordingHook::lineFor(ActiveElement *element)
{
    if (!element)
        return QString();
    const QString name = element->define();
    // Each kind records what the script command SET takes back.
    if (auto *toggle = dynamic_cast<ToggleButton *>(element)) {
        Q_UNUSED(toggle);
        return QStringLiteral("Clicked(%1)").arg(name);
    }
    if (auto *box = dynamic_cast<CheckBox *>(element))
        return setLine(name, box->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
    if (auto *group = dynamic_cast<ButtonGroup *>(element))
        return setLine(name, QString::number(group->checkedId()));
    if (auto *combo = dynamic_cast<ComboBox *>(element))
        return setLine(name, QString::number(combo->currentIndex()));
    if (auto *spin = dynamic_cast<DoubleSpinBox *>(element))
        return setLine(name, QString::number(spin->QDoubleSpinBox::value(), 'f', spin->decimals()));
    if (auto *spin = dynamic_cast<SpinBox *>(element))
        return setLine(name, QString::number(spin->QSpinBox::value()));
    if (auto *slider = dynamic_cast<Slider *>(element))
        return setLine(name, QString::number(slider->QSlider::value()));
    if (auto *knob = dynamic_cast<Knob *>(element))
        return setLine(name, QString::number(knob->QwtKnob::value(), 'g', 15));
    if (auto *line = dynamic_cast<LineEdit *>(element))
        return setLine(name, line->text());
    if (auto *edit = dynamic_cast<TextEdit *>(element)) {
        // A script line ends at the line end: the text's own breaks can't be
        // played back, so a multi-line text records its first line only.
        return setLine(name, edit->toPlainText().section(QLatin1Char('\n'), 0, 0));
    }
    return QString();
}

void RecordingHook::userChange(ActiveElement *element)
{
    if (!writer() || !element)
        return;
    const QObject *owner = dynamic_cast<QObject *>(element);
    record(lineFor(element), owner ? owner : element->widget());
}

void RecordingHook::clicked(const QObject *button)
{
    if (!writer() || !button)
        return;
    record(QStringLiteral("Clicked(%1)").arg(button->objectName()), button);
}
