#pragma once

// The values an effect's dialog gives it, as a value that can be kept with a
// version and used again on another file.

#include <QString>
#include <QStringList>
#include <QVariant>
#include <initializer_list>
#include <map>
#include <variant>
#include <vector>

// How a property holds its value: the effects' real numbers are 32-bit floats,
// their whole numbers 64-bit, signed or not.
enum class ValueType { Real, Whole, Unsigned };
QString typeName(ValueType type); // "real", "whole", "unsigned whole"

// A dialog's accepted values by property name ("u_Percentage", "f_Delay_MS").
// Each value keeps its own type; reading converts as C++ converts, and a name
// that holds nothing reads 0. Every read is noted with the type asked for, so
// the catalogue's checker can see what an argument builder uses.
class EffectValues {
public:
    using Number = std::variant<float, qint64, quint64>;
    struct Read {
        QString key;
        ValueType type;
    };

    EffectValues() = default;
    EffectValues(std::initializer_list<std::pair<QString, Number>> values);

    void set(const QString& key, Number value) { m_values[key] = value; }
    bool contains(const QString& key) const { return m_values.count(key) != 0; }

    float real(const QString& key) const;
    qint64 whole(const QString& key) const;
    quint64 unsignedWhole(const QString& key) const;

    // The names held, in order; a value as a QVariant of its own type
    // (float, qlonglong or qulonglong), for showing and comparing.
    QStringList keys() const;
    QVariant variant(const QString& key) const;
    bool isEmpty() const { return m_values.empty(); }

    const std::vector<Read>& reads() const { return m_reads; }
    bool operator==(const EffectValues& other) const { return m_values == other.m_values; }

private:
    Number value(const QString& key, ValueType type) const;
    std::map<QString, Number> m_values;
    mutable std::vector<Read> m_reads;
};
