#include "EffectParameters.h"

#include "text/TextNumbers.h"

#include <algorithm>

QString Parameter::widgetName() const {
    switch (kind) {
    case ControlKind::Slider:
    case ControlKind::Band:
        return QStringLiteral("slider") + control;
    case ControlKind::Text:
        return QStringLiteral("text") + control;
    case ControlKind::List:
        return QStringLiteral("combo") + control;
    case ControlKind::Check:
        return QStringLiteral("check") + control;
    }
    return control;
}

QString Parameter::labelName() const {
    return QStringLiteral("label") + control;
}

QString Parameter::actionName() const {
    return changeAction.isEmpty() ? QStringLiteral("OnChange") + control : changeAction;
}

QString Parameter::labelText(int position) const {
    if (format == QLatin1String("%d"))
        return QString::asprintf("%d", position * times);
    return QString::asprintf(qPrintable(format), double(position) / divisor);
}

namespace {
EffectValues::Number fromWhole(qint64 value, ValueType type) {
    switch (type) {
    case ValueType::Real:
        return float(value);
    case ValueType::Whole:
        return value;
    case ValueType::Unsigned:
        // A negative entry converts as it stands, as every unsigned field does.
        return quint64(value);
    }
    return value;
}
} // namespace

EffectValues::Number Parameter::read(const QString& shown, int position) const {
    switch (kind) {
    case ControlKind::List:
        return quint64(std::max(0, position));
    case ControlKind::Check:
        return fromWhole(position, type);
    case ControlKind::Slider:
    case ControlKind::Band:
        if (fromSlider)
            return fromWhole(position, type);
        break;
    case ControlKind::Text:
        break;
    }
    if (type == ValueType::Real)
        return floatValue(shown);
    return fromWhole(intValue(shown), type);
}

Parameter Parameter::over(double by, const char* labelFormat) const {
    Parameter p = *this;
    p.divisor = by;
    p.format = QLatin1String(labelFormat);
    p.type = ValueType::Real;
    return p;
}

Parameter Parameter::timesBy(int factor) const {
    Parameter p = *this;
    p.times = factor;
    return p;
}

Parameter Parameter::as(ValueType t) const {
    Parameter p = *this;
    p.type = t;
    return p;
}

Parameter Parameter::readFromSlider() const {
    Parameter p = *this;
    p.fromSlider = true;
    return p;
}

Parameter Parameter::steps(int single, int pageStep) const {
    Parameter p = *this;
    p.step = single;
    p.page = pageStep;
    return p;
}

Parameter Parameter::action(const char* name) const {
    Parameter p = *this;
    p.changeAction = QLatin1String(name);
    return p;
}

Parameter Parameter::presetting(const char* sliderKey, QList<int> positions) const {
    Parameter p = *this;
    p.presetsFor = QLatin1String(sliderKey);
    p.presetPositions = std::move(positions);
    return p;
}

Parameter Parameter::because(const char* reason) const {
    Parameter p = *this;
    p.why = QString::fromUtf8(reason);
    return p;
}

Parameter slider(const char* key, const char* control, const char* caption, int minimum, int maximum,
                 int start) {
    Parameter p;
    p.key = QLatin1String(key);
    p.control = QLatin1String(control);
    p.caption = QString::fromUtf8(caption);
    p.minimum = minimum;
    p.maximum = maximum;
    p.start = start;
    return p;
}

Parameter band(const char* key, const char* control, const char* caption, const char* name, int minimum,
               int maximum, int start) {
    Parameter p = slider(key, control, caption, minimum, maximum, start);
    p.kind = ControlKind::Band;
    p.text = QLatin1String(name);
    return p;
}

Parameter textField(const char* key, const char* control, const char* caption, const char* text,
                    ValueType type) {
    Parameter p = slider(key, control, caption, 0, 0, 0);
    p.kind = ControlKind::Text;
    p.type = type;
    p.text = QLatin1String(text);
    return p;
}

Parameter list(const char* key, const char* control, const char* caption, const QStringList& items) {
    Parameter p = slider(key, control, caption, 0, int(items.size()) - 1, 0);
    p.kind = ControlKind::List;
    p.type = ValueType::Unsigned;
    p.items = items;
    return p;
}

Parameter checkBox(const char* key, const char* control, const char* caption, bool ticked) {
    Parameter p = slider(key, control, caption, 0, 1, ticked ? 1 : 0);
    p.kind = ControlKind::Check;
    return p;
}

const Parameter* DialogDeclaration::parameter(const QString& key) const {
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&key](const Parameter& p) { return p.key == key; });
    return found == parameters.end() ? nullptr : &*found;
}

EffectValues startValues(const DialogDeclaration& dialog) {
    EffectValues values;
    for (const Parameter& p : dialog.parameters)
        values.set(p.key, p.read(p.kind == ControlKind::Text ? p.text : p.labelText(p.start), p.start));
    return values;
}

namespace {
bool fails(Check::Rule rule, const EffectValues::Number& number) {
    const double v = std::visit([](auto n) { return double(n); }, number);
    switch (rule) {
    case Check::Zero:
        return v == 0;
    case Check::Negative:
        return v < 0;
    case Check::NotPositive:
        return !(v > 0);
    }
    return false;
}
} // namespace

QString refusal(const DialogDeclaration& dialog, const EffectValues& values) {
    for (const Check& check : dialog.checks) {
        const Parameter* p = dialog.parameter(check.key);
        const EffectValues::Number number = !p                            ? EffectValues::Number{qint64(0)}
                                            : p->type == ValueType::Real  ? values.real(check.key)
                                            : p->type == ValueType::Whole ? values.whole(check.key)
                                                                          : values.unsignedWhole(check.key);
        if (fails(check.rule, number))
            return check.message;
    }
    return {};
}
