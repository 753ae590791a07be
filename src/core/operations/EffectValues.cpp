#include "EffectValues.h"

QString typeName(ValueType type) {
    switch (type) {
    case ValueType::Real:
        return QStringLiteral("real");
    case ValueType::Whole:
        return QStringLiteral("whole");
    case ValueType::Unsigned:
        return QStringLiteral("unsigned whole");
    }
    return {};
}

EffectValues::EffectValues(std::initializer_list<std::pair<QString, Number>> values) {
    for (const auto& [key, number] : values)
        m_values[key] = number;
}

EffectValues::Number EffectValues::value(const QString& key, ValueType type) const {
    m_reads.push_back({key, type});
    const auto found = m_values.find(key);
    return found == m_values.end() ? Number{qint64(0)} : found->second;
}

float EffectValues::real(const QString& key) const {
    return std::visit([](auto v) { return float(v); }, value(key, ValueType::Real));
}

qint64 EffectValues::whole(const QString& key) const {
    return std::visit([](auto v) { return qint64(v); }, value(key, ValueType::Whole));
}

quint64 EffectValues::unsignedWhole(const QString& key) const {
    return std::visit([](auto v) { return quint64(v); }, value(key, ValueType::Unsigned));
}

QStringList EffectValues::keys() const {
    QStringList names;
    for (const auto& entry : m_values)
        names << entry.first;
    return names;
}

QVariant EffectValues::variant(const QString& key) const {
    const auto found = m_values.find(key);
    if (found == m_values.end())
        return {};
    return std::visit([](auto v) { return QVariant::fromValue(v); }, found->second);
}
